// The commands of orrelin-cli: each takes its own arguments and returns the process's exit status.
#pragma once

#include <string>
#include <vector>

namespace orrelin::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;  // The command ran and failed (a database error, a missing catalog).
inline constexpr int kExitUsage = 2;    // The command line was wrong.

// Settings shared by every command.
struct Context {
  std::string databasePath;  // Empty: the database of the data folder.
};

// "TVRL Orrelin 1.0 (build N)".
std::string versionText();

// One line per command, "  NAME       SUMMARY", by name.
std::string commandList();

// Runs `command` with its arguments. Unknown commands are usage errors. Throws on database failures.
int runCommand(const std::string& command, const std::vector<std::string>& args, const Context& context);

}  // namespace orrelin::cli
