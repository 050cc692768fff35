// The catalog commands of orrelin-cli: what the database holds and what can be cataloged.
#include <cstdio>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/table_text.h"
#include "core/app_info.h"
#include "core/app_paths.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

int noArguments(const char* command, const std::vector<std::string>& argv) {
  Args args(argv, {}, {});
  if (!args.ok()) return usageError(command, args.error());
  if (!args.positionals().empty()) return usageError(command, "takes no arguments (got '" + args.positionals().front() + "')");
  return 0;
}

int info(const std::vector<std::string>& argv, const Context& context) {
  if (int status = noArguments("info", argv)) return status;
  std::string path = databasePath(context);
  CatalogDB store(path);
  std::printf("%s\n", versionText().c_str());
  std::printf("Data folder:  %s\n", AppPaths::support().string().c_str());
  std::printf("Database:     %s\n", path.c_str());
  std::printf("Schema:       %s\n",
              store.db().scalarText("SELECT value FROM meta WHERE key='schema'").value_or("?").c_str());
  std::printf("Name index:   %s\n", store.ftsTrigram() ? "trigram" : "unicode61");
  auto catalogs = store.catalogs();
  int64_t files = 0, bytes = 0;
  for (const Catalog& c : catalogs) files += c.fileCount, bytes += c.totalSize;
  std::printf("Cartridges:   %s\n", Fmt::count(static_cast<int64_t>(catalogs.size())).c_str());
  std::printf("Files:        %s (%s)\n", Fmt::count(files).c_str(), Fmt::size(bytes).c_str());
  std::printf("Groups:       %s\n", Fmt::count(static_cast<int64_t>(store.groups().size())).c_str());
  return kExitOk;
}

int list(const std::vector<std::string>& argv, const Context& context) {
  if (int status = noArguments("list", argv)) return status;
  CatalogDB store(databasePath(context));
  auto catalogs = store.catalogs();
  if (catalogs.empty()) {
    std::puts("No cartridges yet.");
    return kExitOk;
  }
  std::printf("%6s  %-28s %12s %10s %12s  %s\n", "ID", "NAME", "FILES", "FOLDERS", "SIZE", "SCANNED");
  for (const Catalog& c : catalogs) {
    std::printf("%6lld  %s %12s %10s %12s  %s\n", static_cast<long long>(c.id), padded(c.name, 28).c_str(),
                Fmt::count(c.fileCount).c_str(), Fmt::count(c.folderCount).c_str(),
                Fmt::size(c.totalSize).c_str(), Fmt::date(c.scannedAt).c_str());
  }
  return kExitOk;
}

int volumes(const std::vector<std::string>& argv, const Context&) {
  if (int status = noArguments("volumes", argv)) return status;
  auto mounted = VolumeInfo::mounted();
  std::printf("%-28s %-20s %-16s %12s %12s  %s\n", "MOUNT POINT", "NAME", "FORMAT", "CAPACITY", "AVAILABLE",
              "FLAGS");
  for (const MountedVolume& v : mounted) {
    std::string flags;
    if (v.info.isNetwork) flags += "network ";
    if (v.info.isRemovable) flags += "removable ";
    std::printf("%s %s %-16s %12s %12s  %s\n", padded(v.url, 28).c_str(), padded(v.info.name, 20).c_str(),
                v.info.format.c_str(), Fmt::size(v.info.capacity).c_str(), Fmt::size(v.info.free).c_str(),
                flags.c_str());
  }
  return kExitOk;
}

}  // namespace

void addCatalogCommands(CommandTable& table) {
  table["info"] = {"where the data lives and what the database holds",
        "usage: orrelin-cli [--db PATH] info\n\nPrints the data folder, the database file, its schema, the "
        "kind "
        "of name index and the totals of its cartridges. Creates the database if it does not exist yet.\n",
        info};
  table["list"] = {"the catalogs in the database",
        "usage: orrelin-cli [--db PATH] list\n\nLists every cartridge with its id, name, counts, size and "
        "the "
        "time of its last scan, by name.\n",
        list};
  table["volumes"] = {"the mounted volumes that can be cataloged",
        "usage: orrelin-cli volumes\n\nLists the mounted volumes a file manager would show, with their "
        "format, capacity, available space and whether they are removable or on the network.\n",
        volumes};
}

}  // namespace orrelin::cli
