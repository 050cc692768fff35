// `orrelin-cli export claude CATALOG -o DIR`: a cartridge as a folder that an AI assistant can read.
#include <cstdio>
#include <filesystem>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/export_formats.h"
#include "exchange/claude_exporter.h"
#include "organize/export_error.h"
#include "store/catalog_db.h"

namespace orrelin::cli {

namespace {

constexpr const char* kHelp =
    "usage: orrelin-cli export claude CATALOG -o DIR\n"
    "\n"
    "Writes one cartridge as a folder that an AI assistant such as Claude can read and reason about while\n"
    "the drive is unplugged. The folder is made inside DIR (created if need be) and named\n"
    "\"<cartridge> \u2014 Claude Export <yyyy-MM-dd HHmm>\"; should that name be taken, \" 2\", \" 3\", ...\n"
    "is added, so no earlier export is written over. It holds five files:\n"
    "\n"
    "  files.jsonl                      one JSON object per file or folder\n"
    "  catalog.xml                      the same records as XML\n"
    "  SUMMARY.md                       drive facts, file types, folder tree to depth 3, largest folders\n"
    "                                   and files, duplicates and naming problems; start here\n"
    "  README.md                        what the files are, the record schema and the plan schema\n"
    "  organization-plan.template.json  a starting point for a plan the assistant can write back\n"
    "\n"
    "Everything comes from the catalog database; the drive itself is not touched. Prints the path of each\n"
    "file written, one per line.\n"
    "\n"
    "  CATALOG     the cartridge, by id or by name\n"
    "  -o DIR      the folder to make the export in\n";

int runClaudeExport(const std::vector<std::string>& argv, const Context& context) {
  const std::string command = "export claude";
  Args args(argv, {}, {"-o", "--output"});
  if (!args.ok()) return usageError(command, args.error());
  if (args.positionals().empty()) return usageError(command, "which cartridge? (give its id or name)");
  if (args.positionals().size() > 1) {
    return usageError(command, "exports one cartridge at a time (got '" + args.positionals()[1] + "' too)");
  }
  std::optional<std::string> dir = args.value("-o");
  if (!dir) dir = args.value("--output");
  if (!dir || dir->empty()) return usageError(command, "where to? give the folder with -o DIR");

  CatalogDB store(databasePath(context));
  std::string error;
  std::optional<Catalog> catalog = findCatalog(store, args.positionals().front(), error);
  if (!catalog) return failure(error);
  std::filesystem::path folder = ClaudeExporter::bundleFolder(*dir, catalog->name, Date::now());
  std::vector<std::filesystem::path> written;
  try {
    written = ClaudeExporter::exportTo(store, *catalog, folder);
  } catch (const std::exception& e) {
    return failure(std::string("Export Failed: ") + e.what());
  }
  for (const std::filesystem::path& path : written) std::printf("%s\n", path.c_str());
  return kExitOk;
}

}  // namespace

void addClaudeExportFormats(ExportFormatTable& table) {
  table["claude"] = {"one cartridge as a folder an AI assistant can read (Markdown, JSON Lines, XML)", kHelp,
                     runClaudeExport};
}

}  // namespace orrelin::cli
