// `orrelin-cli export csv|json` and `orrelin-cli import`: catalogs out to the exchange files and back.
#include <cstdio>
#include <filesystem>
#include <set>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/export_formats.h"
#include "exchange/exporter.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kCsvHelp =
    "usage: orrelin-cli export csv CATALOG... [-o FILE]\n"
    "       orrelin-cli export csv --all [-o FILE]\n"
    "\n"
    "Writes every file and folder of the cartridges to one CSV file for spreadsheets: a header line, then "
    "one\n"
    "row per record, cartridge by cartridge in the order given, each by path. Seventeen columns:\n"
    "Catalog, Path, Name, Folder, Kind, Size, Modified, Created, Tags, Label, Hidden, UTI, Duration, Width,\n"
    "Height, SHA256, Metadata. Fields are separated by commas and quoted (\"...\", quotes doubled) when "
    "they\n"
    "hold a comma, a quote or a line break; rows end with CR LF, the last one with nothing. Dates are ISO "
    "8601\n"
    "in UTC; sizes are bytes; tags and metadata entries are separated by \"; \".\n"
    "\n"
    "'orrelin-cli import' reads the file back as new cartridges, without the metadata.\n"
    "\n"
    "  CATALOG     a cartridge, by id or by name; several may be given\n"
    "  --all       every cartridge, by name\n"
    "  -o FILE     the file to write (default: \"<cartridge>.csv\" for one cartridge, else\n"
    "              \"TVRL Orrelin Catalogs.csv\", in the current folder, which must not exist yet).\n"
    "              FILE is replaced whole only once the export is complete; '-o -' writes to standard "
    "output.\n";

constexpr const char* kJsonHelp =
    "usage: orrelin-cli export json CATALOG... [-o FILE]\n"
    "       orrelin-cli export json --all [-o FILE]\n"
    "\n"
    "Writes the cartridges as one complete JSON archive, which 'orrelin-cli import' (and the program's\n"
    "Import) reads back as new cartridges with everything they hold: names, sizes, dates, kinds, tags,\n"
    "labels, hidden flags, checksums and media metadata, and each cartridge's volume facts and notes.\n"
    "\n"
    "The document is {\"app\", \"format\": \"tavrel-orrelin-catalog\", \"version\": 1, \"exported\", "
    "\"catalogs\"},\n"
    "each catalog with its \"items\" (one object per file or folder, by path); keys are sorted, dates are\n"
    "ISO 8601 in UTC, text is UTF-8.\n"
    "\n"
    "  CATALOG     a cartridge, by id or by name; several may be given\n"
    "  --all       every cartridge, by name\n"
    "  -o FILE     the file to write (default: \"<cartridge>.json\" for one cartridge, else\n"
    "              \"TVRL Orrelin Catalogs.json\", in the current folder, which must not exist yet).\n"
    "              FILE is replaced whole only once the export is complete; '-o -' writes to standard "
    "output.\n";

constexpr const char* kImportHelp =
    "usage: orrelin-cli [--db PATH] import FILE [--format csv|json]\n"
    "\n"
    "Reads a CSV or JSON catalog export and adds what it holds as new cartridges; nothing that exists is\n"
    "changed or merged. A file whose name ends in .csv (any case) is read as CSV, any other as JSON, unless\n"
    "--format says otherwise.\n"
    "\n"
    "  JSON   one cartridge per catalog in the file, under its own name, with all its records, root path "
    "and\n"
    "         volume facts.\n"
    "  CSV    one cartridge per distinct Catalog column, named \"<name> (Imported)\", with no root path.\n"
    "         Columns are found by their names (Path is required); media metadata does not come back.\n"
    "\n"
    "Folders missing above a listed path are made, folder sizes and totals are counted afresh, and each\n"
    "cartridge counts as scanned now. An imported cartridge is an offline copy: its drive need not be "
    "known.\n"
    "Prints the cartridges made.\n";

// The catalogs named on the command line, or all with --all. Returns an exit status other than kExitOk
// when they cannot be found.
int chosenCatalogs(const std::string& command, const Args& args, CatalogDB& store,
                   std::vector<Catalog>& out) {
  if (args.flag("--all")) {
    if (!args.positionals().empty()) return usageError(command, "give cartridges or --all, not both");
    out = store.catalogs();
    return kExitOk;
  }
  for (const std::string& name : args.positionals()) {
    std::string error;
    std::optional<Catalog> catalog = findCatalog(store, name, error);
    if (!catalog) return failure(error);
    out.push_back(*catalog);
  }
  return kExitOk;
}

// The name the program's save panel suggests, usable as one file name.
std::string suggestedName(const std::vector<Catalog>& catalogs, const std::string& ext) {
  std::string name = catalogs.size() == 1 ? catalogs.front().name : "TVRL Orrelin Catalogs";
  for (char& c : name)
    if (c == '/' || c == '\0') c = '-';
  if (name.empty() || name == "." || name == "..") name = "TVRL Orrelin Catalogs";
  return name + "." + ext;
}

int runDataExport(const std::string& format, const std::vector<std::string>& argv, const Context& context) {
  const std::string command = "export " + format;
  const bool csv = format == "csv";
  Args args(argv, {"--all"}, {"-o", "--output"});
  if (!args.ok()) return usageError(command, args.error());
  if (args.positionals().empty() && !args.flag("--all"))
    return usageError(command, "Choose at least one catalog first (give ids or names, or --all).");
  std::optional<std::string> output = args.value("--output");
  if (auto o = args.value("-o")) output = o;
  if (output && output->empty()) return usageError(command, "-o needs a file name");

  CatalogDB store(databasePath(context));
  std::vector<Catalog> catalogs;
  if (int status = chosenCatalogs(command, args, store, catalogs)) return status;
  if (catalogs.empty()) return failure("Nothing to Export: Choose at least one catalog first.");

  const bool toStdout = output && *output == "-";
  fs::path target = output ? fs::path(*output) : fs::path(suggestedName(catalogs, format));
  if (!output && fs::symlink_status(target).type() != fs::file_type::not_found)
    return failure(target.string() + " exists already; choose the file to write with -o FILE");

  int64_t count = 0;
  try {
    if (toStdout) {
      Exporter::Sink out = [](std::string_view text) {
        if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
          throw std::runtime_error("could not write to standard output");
      };
      count = csv ? Exporter::writeCSV(store, catalogs, out) : Exporter::writeJSON(store, catalogs, out);
      if (std::fflush(stdout) != 0) throw std::runtime_error("could not write to standard output");
    } else {
      count =
          csv ? Exporter::exportCSV(store, catalogs, target) : Exporter::exportJSON(store, catalogs, target);
    }
  } catch (const std::exception& e) {
    return failure(std::string("Export Failed: ") + e.what());
  }
  // With the document on standard output, the report goes to standard error so as not to mix with it.
  std::fprintf(toStdout ? stderr : stdout, "Exported %s records to %s\n", Fmt::count(count).c_str(),
               csv ? "CSV" : "JSON");
  if (!output) std::printf("%s\n", target.c_str());
  return kExitOk;
}

bool endsWithCsv(const fs::path& path) {
  std::string ext = path.extension().string();
  for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return ext == ".csv";
}

int runImport(const std::vector<std::string>& argv, const Context& context) {
  const std::string command = "import";
  Args args(argv, {}, {"--format"});
  if (!args.ok()) return usageError(command, args.error());
  if (args.positionals().empty()) return usageError(command, "which file? (a CSV or JSON catalog export)");
  if (args.positionals().size() > 1)
    return usageError(command, "imports one file at a time (got '" + args.positionals()[1] + "' too)");
  const fs::path file = args.positionals().front();
  bool csv = endsWithCsv(file);
  if (auto format = args.value("--format")) {
    if (*format != "csv" && *format != "json") return usageError(command, "--format is csv or json");
    csv = *format == "csv";
  }

  CatalogDB store(databasePath(context));
  std::set<int64_t> before;
  for (const Catalog& c : store.catalogs()) before.insert(c.id);
  int64_t count = 0;
  std::string error;
  try {
    count = csv ? Exporter::importCSV(store, file) : Exporter::importJSON(store, file);
  } catch (const std::exception& e) {
    error = e.what();
  }
  // What was made, also when a later catalog of the file failed: those before it stay.
  std::vector<Catalog> made;
  for (const Catalog& c : store.catalogs())
    if (!before.count(c.id)) made.push_back(c);
  std::sort(made.begin(), made.end(), [](const Catalog& a, const Catalog& b) { return a.id < b.id; });
  if (!error.empty() && made.empty()) return failure("Import Failed: " + error);

  if (error.empty()) std::printf("Imported %s catalog%s\n", Fmt::count(count).c_str(), count == 1 ? "" : "s");
  for (const Catalog& c : made) {
    std::printf("%6lld  %s  (%s files, %s folders, %s)\n", static_cast<long long>(c.id), c.name.c_str(),
                Fmt::count(c.fileCount).c_str(), Fmt::count(c.folderCount).c_str(),
                Fmt::size(c.totalSize).c_str());
  }
  if (!error.empty()) return failure("Import Failed: " + error);
  return kExitOk;
}

}  // namespace

void addDataExportFormats(ExportFormatTable& table) {
  table["csv"] = {"cartridges as one CSV file for spreadsheets", kCsvHelp,
                  [](const std::vector<std::string>& argv, const Context& context) {
                    return runDataExport("csv", argv, context);
                  }};
  table["json"] = {"cartridges as a complete JSON archive that 'import' reads back", kJsonHelp,
                   [](const std::vector<std::string>& argv, const Context& context) {
                     return runDataExport("json", argv, context);
                   }};
}

void addImportCommands(CommandTable& table) {
  table["import"] = {"add cartridges from a CSV or JSON catalog export", kImportHelp, runImport};
}

}  // namespace orrelin::cli
