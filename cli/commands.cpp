// The command table of orrelin-cli and the helpers its commands share.
#include "cli/commands.h"

#include <unistd.h>

#include <cstdio>

#include "cli/command_table.h"
#include "core/app_info.h"
#include "core/app_paths.h"
#include "store/catalog_db.h"

namespace orrelin::cli {

namespace {

const CommandTable& commands() {
  static const CommandTable table = [] {
    CommandTable t;
    addCatalogCommands(t);
    addOrganizeCommands(t);
    addRenameCommands(t);
    addSearchCommands(t);
    addAnalysisCommands(t);
    addScanCommands(t);
    addExportCommands(t);
    addBackupCommands(t);
    addSampleCommands(t);
    addWatchCommands(t);
    addImportCommands(t);
    return t;
  }();
  return table;
}

bool asciiEqualIgnoringCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    unsigned char x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
    if (x < 0x80 && y < 0x80 ? std::tolower(x) != std::tolower(y) : x != y) return false;
  }
  return true;
}

}  // namespace

std::string databasePath(const Context& context) {
  return context.databasePath.empty() ? AppPaths::database().string() : context.databasePath;
}

int usageError(const std::string& command, const std::string& message) {
  std::fprintf(stderr, "orrelin-cli: %s: %s\nTry 'orrelin-cli %s --help'.\n", command.c_str(), message.c_str(),
               command.c_str());
  return kExitUsage;
}

int failure(const std::string& message) {
  std::fprintf(stderr, "orrelin-cli: %s\n", message.c_str());
  return kExitFailure;
}

std::optional<Catalog> findCatalog(CatalogDB& store, const std::string& idOrName, std::string& error) {
  auto catalogs = store.catalogs();
  if (!idOrName.empty() && idOrName.find_first_not_of("0123456789") == std::string::npos &&
      idOrName.size() < 19) {
    int64_t id = std::stoll(idOrName);
    for (const Catalog& c : catalogs)
      if (c.id == id) return c;
  }
  for (const Catalog& c : catalogs)
    if (c.name == idOrName) return c;
  std::vector<const Catalog*> loose;
  for (const Catalog& c : catalogs)
    if (asciiEqualIgnoringCase(c.name, idOrName)) loose.push_back(&c);
  if (loose.size() == 1) return *loose.front();
  error = loose.empty() ? "no cartridge is called '" + idOrName + "' (see 'orrelin-cli list')"
                        : "several cartridges are called '" + idOrName + "'; give its id instead";
  return std::nullopt;
}

bool stdoutIsTerminal() { return isatty(STDOUT_FILENO) == 1; }

std::string versionText() {
  return std::string(AppInfo::name) + " " + AppInfo::version() + " (build " + AppInfo::build() + ")";
}

std::string commandList() {
  std::string text;
  char line[256];
  for (const auto& [key, command] : commands()) {
    std::snprintf(line, sizeof line, "  %-10s %s\n", key.c_str(), command.summary);
    text += line;
  }
  return text;
}

int runCommand(const std::string& name, const std::vector<std::string>& args, const Context& context) {
  auto it = commands().find(name);
  if (it == commands().end()) {
    std::fprintf(stderr, "orrelin-cli: unknown command '%s'. Commands:\n%s", name.c_str(),
                 commandList().c_str());
    return kExitUsage;
  }
  for (const std::string& a : args) {
    if (a == "--" || it->second.handlesHelp) break;
    if (a == "--help" || a == "-h") {
      std::fputs(it->second.help, stdout);
      return kExitOk;
    }
  }
  return it->second.run(args, context);
}

}  // namespace orrelin::cli
