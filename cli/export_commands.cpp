// `orrelin-cli export FORMAT ...`: one command whose formats come from the feature files.
#include <cstdio>
#include <string>

#include "cli/command_table.h"
#include "cli/export_formats.h"

namespace orrelin::cli {

// Format registrations, one per feature file (each defined next to its format's code).
void addDataExportFormats(ExportFormatTable& table);    // csv, json
void addClaudeExportFormats(ExportFormatTable& table);  // claude
void addWebExportFormats(ExportFormatTable& table);     // web

void registerExportFormats(ExportFormatTable& table) {
  addDataExportFormats(table);
  addClaudeExportFormats(table);
  addWebExportFormats(table);
}

namespace {

const ExportFormatTable& formats() {
  static const ExportFormatTable table = [] {
    ExportFormatTable t;
    registerExportFormats(t);
    return t;
  }();
  return table;
}

std::string exportHelp() {
  std::string text =
      "usage: orrelin-cli export FORMAT ARGUMENTS...\n\n"
      "Writes catalogs out of the database. Nothing in the catalogs changes.\n\nFormats:\n";
  for (const auto& [name, format] : formats()) {
    text += "  " + name + std::string(name.size() < 10 ? 10 - name.size() : 1, ' ') + format.summary + "\n";
  }
  text += "\n'orrelin-cli export FORMAT --help' describes one format.\n";
  return text;
}

int runExport(const std::vector<std::string>& args, const Context& context) {
  if (args.empty()) return usageError("export", "which format? (" + [] {
    std::string names;
    for (const auto& [name, format] : formats()) names += (names.empty() ? "" : ", ") + name;
    return names;
  }() + ")");
  if (args[0] == "--help" || args[0] == "-h") {
    std::fputs(exportHelp().c_str(), stdout);
    return kExitOk;
  }
  auto found = formats().find(args[0]);
  if (found == formats().end()) return usageError("export", "unknown format '" + args[0] + "'");
  std::vector<std::string> rest(args.begin() + 1, args.end());
  for (const std::string& arg : rest) {
    if (arg == "--help" || arg == "-h") {
      std::fputs(found->second.help, stdout);
      return kExitOk;
    }
  }
  return found->second.run(rest, context);
}

}  // namespace

void addExportCommands(CommandTable& table) {
  static const std::string help = exportHelp();
  table["export"] = {"write catalogs as CSV, JSON, a bundle for Claude or a web site", help.c_str(), runExport,
                     true};
}

}  // namespace orrelin::cli
