// `orrelin-cli export web`: the inventory web site of chosen catalogs.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/export_formats.h"
#include "core/app_info.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "exchange/web_exporter.h"
#include "store/catalog_db.h"

namespace orrelin::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kHelp =
    "usage: orrelin-cli [--db PATH] export web CATALOG... -o DIR [--title T] [--no-thumbnails] [--hidden]\n"
    "\n"
    "Writes a static inventory web site of the catalogs (ids or names, in the order given) into DIR: an\n"
    "index of the drives, one browsable page per drive with search, kinds, sizes and thumbnails, and the\n"
    "drives' records as data scripts. It needs no server: open DIR/index.html in any browser, from a\n"
    "USB stick, a NAS or a web server. Prints the path of index.html.\n"
    "\n"
    "DIR is created when missing. It must be new, empty, or a site made earlier, whose files are then\n"
    "replaced; no other folder is written into.\n"
    "\n"
    "  -o, --output DIR  the folder of the site\n"
    "  --title T         the index page's title (default \"Drive Inventory\")\n"
    "  --no-thumbnails   leave out the cached thumbnails (smaller site, kind icons only)\n"
    "  --hidden          list hidden files too\n";

// Thumbnails live beside the database: in the data folder, or beside a database given with --db.
fs::path thumbnailsFor(const Context& context) {
  if (context.databasePath.empty()) return AppPaths::thumbnails();
  return fs::absolute(fs::path(context.databasePath)).parent_path() / "Thumbnails";
}

// True when the page at `index` was written by this program: its generator line names it.
bool isGeneratedPage(const fs::path& index) {
  std::ifstream in(index, std::ios::binary);
  std::string head(2048, '\0');
  in.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<size_t>(in.gcount()));
  return head.find("<meta name=\"generator\" content=\"" + std::string(AppInfo::name) + " ") !=
         std::string::npos;
}

// Empty when the site may be written into `dir`, else why not.
std::string refusalFor(const fs::path& dir) {
  std::error_code ec;
  fs::file_status status = fs::status(dir, ec);
  if (ec || !fs::exists(status)) return "";
  std::string shown = NameMapping::storedPath(dir);
  if (!fs::is_directory(status)) return "\u201C" + shown + "\u201D exists and is not a folder.";
  if (fs::is_empty(dir, ec) && !ec) return "";
  if (fs::is_regular_file(dir / "index.html", ec) && isGeneratedPage(dir / "index.html")) return "";
  return "The folder \u201C" + shown +
         "\u201D is not empty and holds no inventory site. Choose a new or empty folder, or the folder of "
         "a site made earlier to replace it.";
}

int exportWeb(const std::vector<std::string>& argv, const Context& context) {
  // "-o" is the usual short form; after "--" it is a catalog's name like any other word.
  std::vector<std::string> normalized;
  bool optionsEnded = false;
  for (const std::string& arg : argv) {
    normalized.push_back(arg == "-o" && !optionsEnded ? "--output" : arg);
    optionsEnded = optionsEnded || arg == "--";
  }
  Args args(normalized, {"--no-thumbnails", "--hidden"}, {"--output", "--title"});
  if (!args.ok()) return usageError("export web", args.error());
  if (args.positionals().empty()) return usageError("export web", "which catalogs? Name at least one");
  std::optional<std::string> output = args.value("--output");
  if (!output || output->empty())
    return usageError("export web", "where to? Give the site's folder with -o DIR");

  CatalogDB store(databasePath(context));
  std::vector<Catalog> catalogs;
  std::set<int64_t> seen;
  for (const std::string& name : args.positionals()) {
    std::string error;
    std::optional<Catalog> catalog = findCatalog(store, name, error);
    if (!catalog) return usageError("export web", error);
    if (seen.insert(catalog->id).second) catalogs.push_back(std::move(*catalog));
  }

  fs::path dir = fs::absolute(fs::path(*output));
  if (std::string refusal = refusalFor(dir); !refusal.empty()) return failure(refusal);

  WebExporter::Options options;
  if (std::optional<std::string> title = args.value("--title")) options.title = *title;
  options.includeThumbnails = !args.flag("--no-thumbnails");
  options.includeHidden = args.flag("--hidden");
  fs::path index = WebExporter::exportSite(store, catalogs, dir, thumbnailsFor(context), options);
  std::printf("%s\n", index.lexically_normal().c_str());
  return kExitOk;
}

}  // namespace

void addWebExportFormats(ExportFormatTable& table) {
  table["web"] = {"a static inventory web site of the catalogs, browsable without a server", kHelp,
                  exportWeb};
}

}  // namespace orrelin::cli
