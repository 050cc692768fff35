// `orrelin-cli sample load|remove`: the demonstration cartridges, for trying every feature without a drive.
#include <cstdio>
#include <filesystem>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/table_text.h"
#include "core/app_paths.h"
#include "exchange/sample_data.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kHelp =
    "usage: orrelin-cli sample load\n"
    "       orrelin-cli sample remove\n"
    "\n"
    "Demonstration data, so that every feature can be tried without scanning a drive.\n"
    "\n"
    "  load    adds four sample cartridges, made up but realistic, in the groups \"Studio (Sample)\" and\n"
    "          \"Media (Sample)\": \"DJ Crates SSD\" (music), \"Studio Archive 4TB\" (projects, videos,\n"
    "          masters and a backup of the DJ crates, hence duplicates across drives), \"Photo Vault\" and\n"
    "          \"Home NAS \u2014 Business\". The names are the same every time; the dates follow the clock.\n"
    "          Loading twice adds them twice.\n"
    "  remove  deletes every sample cartridge, and every group whose name ends in \"(Sample)\" that no\n"
    "          cartridge is left in. Real cartridges are never touched, and a sample group holding one\n"
    "          stays. No backup is made.\n";

// Thumbnails live beside the database: in the data folder, or beside a database given with --db.
fs::path thumbnailsRoot(const Context& context) {
  if (context.databasePath.empty()) return AppPaths::thumbnails();
  return fs::absolute(fs::path(context.databasePath)).parent_path() / "Thumbnails";
}

int load(CatalogDB& store) {
  std::vector<int64_t> ids;
  try {
    ids = SampleData::load(store);
  } catch (const std::exception& e) {
    return failure(std::string("Could Not Load Sample Data: ") + e.what());
  }
  std::puts("Sample cartridges loaded");
  for (int64_t id : ids) {
    if (std::optional<Catalog> c = store.catalog(id)) {
      std::printf("%6lld  %s %10s files %12s\n", static_cast<long long>(c->id), padded(c->name, 28).c_str(),
                  Fmt::count(c->fileCount).c_str(), Fmt::size(c->totalSize).c_str());
    }
  }
  return kExitOk;
}

int remove(CatalogDB& store, const Context& context) {
  size_t removed = 0;
  try {
    removed = SampleData::removeSampleData(store, thumbnailsRoot(context));
  } catch (const std::exception& e) {
    return failure(std::string("Could Not Remove Sample Data: ") + e.what());
  }
  std::puts(removed == 0 ? "There is no sample data to remove" : "Sample data removed");
  return kExitOk;
}

int runSample(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {}, {});
  if (!args.ok()) return usageError("sample", args.error());
  const std::vector<std::string>& words = args.positionals();
  if (words.empty()) return usageError("sample", "load or remove?");
  if (words.size() > 1) return usageError("sample", "takes one word (got '" + words[1] + "' too)");
  if (words[0] != "load" && words[0] != "remove") {
    return usageError("sample", "unknown subcommand '" + words[0] + "' (load or remove)");
  }
  CatalogDB store(databasePath(context));
  return words[0] == "load" ? load(store) : remove(store, context);
}

}  // namespace

void addSampleCommands(CommandTable& table) {
  table["sample"] = {"load or remove the demonstration cartridges", kHelp, runSample};
}

}  // namespace orrelin::cli
