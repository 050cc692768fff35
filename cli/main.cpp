// orrelin-cli: the command-line tool over the catalog store, for terminals, scripts and headless machines.
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "cli/commands.h"

namespace {

constexpr const char* kUsage =
    "usage: orrelin-cli [--db PATH] COMMAND [ARGS]\n"
    "\n"
    "Commands:\n"
    "  info       where the data lives, the database's schema and what it holds\n"
    "  list       the catalogs (cartridges) in the database\n"
    "  volumes    the mounted volumes that can be cataloged\n"
    "  scan       catalog a folder or drive as a new cartridge\n"
    "  rescan     bring a cartridge up to date with its folder or drive\n"
    "\n"
    "Options:\n"
    "  --db PATH  use the catalog database at PATH instead of the one in the data folder\n"
    "  --help     this text; 'orrelin-cli COMMAND --help' describes one command\n"
    "  --version  the program's version and build\n";

}  // namespace

int main(int argc, char** argv) {
  using namespace orrelin::cli;
  std::vector<std::string> args(argv + 1, argv + argc);
  Context context;
  size_t i = 0;
  for (; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a == "--help" || a == "-h") {
      std::fputs(kUsage, stdout);
      return kExitOk;
    } else if (a == "--version") {
      std::printf("%s\n", versionText().c_str());
      return kExitOk;
    } else if (a == "--db") {
      if (i + 1 >= args.size()) {
        std::fputs("orrelin-cli: --db needs a path\n", stderr);
        return kExitUsage;
      }
      context.databasePath = args[++i];
    } else if (a.rfind("--db=", 0) == 0) {
      context.databasePath = a.substr(5);
    } else if (!a.empty() && a[0] == '-') {
      std::fprintf(stderr, "orrelin-cli: unknown option %s\n\n%s", a.c_str(), kUsage);
      return kExitUsage;
    } else {
      break;
    }
  }
  if (i >= args.size()) {
    std::fputs(kUsage, stderr);
    return kExitUsage;
  }
  const std::string command = args[i];
  std::vector<std::string> rest(args.begin() + static_cast<long>(i) + 1, args.end());
  try {
    return runCommand(command, rest, context);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "orrelin-cli: %s\n", e.what());
    return kExitFailure;
  }
}
