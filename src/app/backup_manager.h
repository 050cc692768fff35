// Whole-file copies of the catalog database in the data folder's "Backups" folder, and their settings.
// The dialogue around a backup (toasts, alerts, the restore question) belongs to AppModel; this is the
// file work, shared with the command-line tool.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"

namespace orrelin {
class CatalogDB;
}

namespace orrelin::BackupManager {

// Settings, kept in the user defaults under "autoBackup", "backupKeep" and "lastBackup".
bool autoBackupEnabled();                 // true when the key is missing
void setAutoBackupEnabled(bool enabled);
int keepCount();                          // 10 when missing or 0
void setKeepCount(int64_t count);         // held within 1 and 60
std::optional<Date> lastBackup();
void setLastBackup(Date when);

// "Catalogs_<yyyy-MM-dd_HHmmss in local time>_<reason>.sqlite".
std::string fileName(Date when, std::string_view reason);

// Copies the live database to AppPaths::backups() / fileName(now, reason) with SQLite's online backup;
// then sets lastBackup and prunes. Returns the new file. Throws DBError when the copy fails.
std::filesystem::path backupNow(CatalogDB& store, std::string_view reason = "manual");
// The same, but the prune spares `spare` (the file chosen for a restore, which may be the oldest backup
// and would otherwise be deleted by the safety backup made just before it is read), and when the new
// name is that of `spare` (a safety backup restored within the second it was made) it waits for the
// next second's name rather than overwrite it.
std::filesystem::path backupNow(CatalogDB& store, std::string_view reason,
                                const std::filesystem::path& spare);

// Whether the daily backup is due at `now`: enabled, a store present, no backup in the last 20 hours,
// and at least one catalog (a failed count counts as 0).
bool isAutoBackupDue(CatalogDB* store, Date now);

// The backups, newest modification date first; a failed listing is empty. Only "*.sqlite" files.
std::vector<std::filesystem::path> list();

// Deletes every backup past the newest keepCount(); failed deletes are ignored.
void prune();
// The same, but `spare` is never deleted and does not count toward keepCount().
void prune(const std::filesystem::path& spare);

// Opens `file` as a database and counts its catalogs; throws DBError when it is not a usable backup.
void checkBackupFile(const std::filesystem::path& file);

// Copies `backup` beside `database`, then deletes the database's "-wal" and "-shm" files (failures
// ignored) and renames the copy over the database. Throws std::filesystem::filesystem_error when the
// copy fails, with the database left as it was.
void replaceDatabase(const std::filesystem::path& backup, const std::filesystem::path& database);

}  // namespace orrelin::BackupManager
