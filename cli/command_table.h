// The command table of orrelin-cli and the helpers its commands share. Each group of commands lives in a
// file of its own and adds its entries through one add…Commands function.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "store/records.h"

namespace orrelin {
class CatalogDB;
}

namespace orrelin::cli {

struct Command {
  const char* summary;  // One line for the list of commands.
  const char* help;     // The whole text of "--help", starting with "usage: ".
  std::function<int(const std::vector<std::string>&, const Context&)> run;
  bool handlesHelp = false;  // The command answers "--help" itself (its subcommands have their own).
};

using CommandTable = std::map<std::string, Command>;

void addCatalogCommands(CommandTable& table);  // info, list, volumes
void addOrganizeCommands(CommandTable& table);  // plan, undo
void addRenameCommands(CommandTable& table);   // rename
void addSearchCommands(CommandTable& table);    // search
void addAnalysisCommands(CommandTable& table);  // dupes, stats, report, compare
void addScanCommands(CommandTable& table);     // scan, rescan
void addExportCommands(CommandTable& table);   // export (its formats are in cli/export_formats.h)
void addBackupCommands(CommandTable& table);   // backup, restore
void addSampleCommands(CommandTable& table);   // sample
void addWatchCommands(CommandTable& table);    // watch
void addImportCommands(CommandTable& table);   // import

// The database file the command works on: --db, else the one in the data folder.
std::string databasePath(const Context& context);

// Prints "orrelin-cli: COMMAND: MESSAGE" and a pointer to the command's help; returns kExitUsage.
int usageError(const std::string& command, const std::string& message);
// Prints "orrelin-cli: MESSAGE"; returns kExitFailure.
int failure(const std::string& message);

// A catalog named on the command line: its id when the text is a number that names one, else the catalog
// whose name equals the text, else the only one whose name equals it ignoring ASCII case. Sets `error` to
// a readable message when none or several match.
std::optional<Catalog> findCatalog(CatalogDB& store, const std::string& idOrName, std::string& error);

// True when standard output is a terminal (live progress lines, colours).
bool stdoutIsTerminal();

}  // namespace orrelin::cli
