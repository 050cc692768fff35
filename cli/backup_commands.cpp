// The backup commands of orrelin-cli: make a backup, list the backups, restore one.
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "app/backup_manager.h"
#include "cli/args.h"
#include "cli/command_table.h"
#include "core/app_paths.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

namespace fs = std::filesystem;

const char* const kBackupHelp =
    "usage: orrelin-cli [--db PATH] backup\n"
    "       orrelin-cli [--db PATH] backup list [--json]\n"
    "\n"
    "Without a subcommand, copies the whole catalog database into the Backups folder of the data folder\n"
    "as Catalogs_<yyyy-MM-dd_HHmmss>_manual.sqlite (local time), through SQLite's online backup, so it may\n"
    "run while the program is open. Then it deletes the oldest backups beyond the number the program keeps\n"
    "(10 unless changed in its Settings, at most 60); every kind of backup counts alike: the daily\n"
    "ones (auto), those made before a cartridge is deleted (before-delete) or a restore (before-restore),\n"
    "and manual ones.\n"
    "\n"
    "  list     the backups, newest first, with their date, size and file name\n"
    "  --json   with list: print them as JSON, {\"backups\": [{\"name\", \"path\", \"modified\", "
    "\"size\"}]}\n"
    "\n"
    "Restore one with 'orrelin-cli restore FILE'.\n";

const char* const kRestoreHelp =
    "usage: orrelin-cli [--db PATH] restore FILE\n"
    "\n"
    "Replaces every catalog in the database with the contents of FILE, a backup made by the program or\n"
    "by 'orrelin-cli backup' (see 'orrelin-cli backup list' for their paths).\n"
    "\n"
    "A safety backup of the current state is made first (Catalogs_<time>_before-restore.sqlite in the\n"
    "Backups folder), so a restore can itself be undone by restoring that file. FILE must be a catalog\n"
    "database: anything else is refused and the current catalogs stay as they are. A backup from an older\n"
    "version of the program is brought up to date as it is opened. Thumbnails are left as they are.\n"
    "\n"
    "Close the desktop program first: it keeps the database open and would not see the change.\n";

// The modification date of a file; absent when it cannot be read.
OptionalDate modified(const fs::path& file) {
  struct stat st;
  if (::stat(file.c_str(), &st) != 0) return std::nullopt;
  return Date::fromSeconds(static_cast<double>(st.st_mtim.tv_sec) + st.st_mtim.tv_nsec / 1e9);
}

int64_t sizeOf(const fs::path& file) {
  std::error_code ec;
  auto size = fs::file_size(file, ec);
  return ec ? 0 : static_cast<int64_t>(size);
}

int listBackups(bool asJSON) {
  auto backups = BackupManager::list();
  if (asJSON) {
    nlohmann::json rows = nlohmann::json::array();
    for (const fs::path& file : backups) {
      OptionalDate date = modified(file);
      rows.push_back({{"name", file.filename().string()},
                      {"path", file.string()},
                      {"modified", date ? nlohmann::json(Fmt::iso(*date)) : nlohmann::json(nullptr)},
                      {"size", sizeOf(file)}});
    }
    std::printf("%s\n", nlohmann::json{{"backups", rows}}.dump(2).c_str());
    return kExitOk;
  }
  if (backups.empty()) {
    std::printf("No backups yet in %s\n", AppPaths::backups().c_str());
    return kExitOk;
  }
  std::printf("%-24s %12s  %s\n", "DATE", "SIZE", "FILE");
  for (const fs::path& file : backups) {
    std::printf("%-24s %12s  %s\n", Fmt::date(modified(file)).c_str(), Fmt::size(sizeOf(file)).c_str(),
                file.filename().c_str());
  }
  std::printf("\nIn %s\n", AppPaths::backups().c_str());
  return kExitOk;
}

int backup(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json"}, {});
  if (!args.ok()) return usageError("backup", args.error());
  const auto& positionals = args.positionals();
  if (positionals.size() > 1) return usageError("backup", "too many arguments");
  if (!positionals.empty()) {
    if (positionals.front() != "list")
      return usageError("backup", "unknown subcommand '" + positionals.front() + "'");
    return listBackups(args.flag("--json"));
  }
  if (args.flag("--json")) return usageError("backup", "--json goes with 'backup list'");
  CatalogDB store(databasePath(context));
  try {
    fs::path file = BackupManager::backupNow(store, "manual");
    std::printf("Backup saved: %s\n", file.filename().c_str());
  } catch (const DBError& e) {
    return failure(std::string("Backup Failed: ") + e.what());
  }
  return kExitOk;
}

int restoreFailed(const std::string& description) {
  return failure("Restore Failed: That file could not be used as a backup. " + description);
}

int restore(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {}, {});
  if (!args.ok()) return usageError("restore", args.error());
  if (args.positionals().size() != 1) return usageError("restore", "needs exactly one backup FILE");
  const fs::path file = args.positionals().front();
  const fs::path database = databasePath(context);
  std::error_code ec;
  if (fs::equivalent(file, database, ec)) return restoreFailed("It is the catalog database itself.");

  // A database that does not open is no reason to refuse: a restore is the way to mend it. There is
  // nothing to copy for safety then.
  std::unique_ptr<CatalogDB> store;
  try {
    store = std::make_unique<CatalogDB>(database.string());
  } catch (const DBError&) {
  }
  if (store) {
    try {
      BackupManager::backupNow(*store, "before-restore", file);
    } catch (const DBError&) {
      // The safety copy is best effort, as in the program: the restore goes on.
    }
  }
  try {
    BackupManager::checkBackupFile(file);
  } catch (const DBError& e) {
    return restoreFailed(e.what());
  }
  store.reset();
  try {
    BackupManager::replaceDatabase(file, database);
  } catch (const fs::filesystem_error& e) {
    return restoreFailed("The file could not be copied: " + e.code().message() + ".");
  }
  try {
    CatalogDB restored(database.string());  // Brings an older schema up to date.
    std::printf("Catalogs restored from backup\n");
  } catch (const DBError& e) {
    return restoreFailed(e.what());
  }
  return kExitOk;
}

}  // namespace

void addBackupCommands(CommandTable& table) {
  table["backup"] = {"back up the catalog database, or list the backups", kBackupHelp, backup};
  table["restore"] = {"replace the catalogs with a backup (a safety backup is made first)", kRestoreHelp,
                      restore};
}

}  // namespace orrelin::cli
