// Backups of the catalog database: their settings, names, listing, pruning, the check of a file chosen for
// a restore and the swap of the database file.
#include "app/backup_manager.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <system_error>
#include <utility>

#include "core/app_paths.h"
#include "core/user_defaults.h"
#include "store/catalog_db.h"
#include "store/sqlite_db.h"

namespace orrelin::BackupManager {

namespace fs = std::filesystem;

namespace {

constexpr const char* kAutoKey = "autoBackup";
constexpr const char* kKeepKey = "backupKeep";
constexpr const char* kLastKey = "lastBackup";
constexpr int kDefaultKeep = 10;
constexpr int kMinKeep = 1;
constexpr int kMaxKeep = 60;
constexpr double kAutoInterval = 72000;  // 20 hours: a daily backup that does not drift with launch times.

}  // namespace

bool autoBackupEnabled() {
  if (!UserDefaults::get(kAutoKey)) return true;
  return UserDefaults::boolean(kAutoKey);
}

void setAutoBackupEnabled(bool enabled) { UserDefaults::set(kAutoKey, enabled); }

int keepCount() {
  int64_t stored = UserDefaults::integer(kKeepKey);
  if (stored == 0) return kDefaultKeep;
  // The setter keeps the value in range; a hand-edited file must not make prune() delete every backup.
  return static_cast<int>(std::clamp<int64_t>(stored, kMinKeep, kMaxKeep));
}

void setKeepCount(int64_t count) {
  UserDefaults::set(kKeepKey, std::clamp<int64_t>(count, kMinKeep, kMaxKeep));
}

std::optional<Date> lastBackup() {
  auto value = UserDefaults::get(kLastKey);
  if (!value || !value->is_number()) return std::nullopt;
  double seconds = value->get<double>();
  if (!std::isfinite(seconds)) return std::nullopt;
  return Date::fromSeconds(seconds);
}

void setLastBackup(Date when) { UserDefaults::set(kLastKey, when.seconds); }

std::string fileName(Date when, std::string_view reason) {
  time_t seconds = static_cast<time_t>(std::floor(when.seconds));
  struct tm local {};
  localtime_r(&seconds, &local);
  char stamp[32];
  strftime(stamp, sizeof stamp, "%Y-%m-%d_%H%M%S", &local);
  return "Catalogs_" + std::string(stamp) + "_" + std::string(reason) + ".sqlite";
}

fs::path backupNow(CatalogDB& store, std::string_view reason) { return backupNow(store, reason, fs::path()); }

fs::path backupNow(CatalogDB& store, std::string_view reason, const fs::path& spare) {
  Date now = Date::now();
  fs::path file = AppPaths::backups() / fileName(now, reason);
  // Names have a resolution of one second: restoring a safety backup made in this same second would
  // otherwise overwrite the very file about to be read. Wait for the next second's name instead.
  std::error_code ec;
  for (int tries = 0; !spare.empty() && fs::equivalent(file, spare, ec) && tries < 30; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    now = Date::now();
    file = AppPaths::backups() / fileName(now, reason);
  }
  store.db().backup(file.string());
  setLastBackup(now);
  prune(spare);
  return file;
}

bool isAutoBackupDue(CatalogDB* store, Date now) {
  if (!autoBackupEnabled() || store == nullptr) return false;
  if (auto last = lastBackup()) {
    double elapsed = now.seconds - last->seconds;
    // A date in the future means the clock was wrong when it was stored; waiting for it could take years.
    if (elapsed >= 0 && elapsed < kAutoInterval) return false;
  }
  int64_t count = 0;
  try {
    count = store->db().scalarInt("SELECT count(*) FROM catalogs");
  } catch (const DBError&) {
    count = 0;
  }
  return count > 0;
}

std::vector<fs::path> list() {
  std::vector<std::pair<fs::file_time_type, fs::path>> found;
  std::error_code ec;
  fs::directory_iterator it(AppPaths::backups(), ec);
  for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
    const fs::path& path = it->path();
    std::error_code typeError;
    if (path.extension() != ".sqlite" || !it->is_regular_file(typeError)) continue;
    std::error_code timeError;
    fs::file_time_type modified = fs::last_write_time(path, timeError);
    if (timeError) modified = fs::file_time_type::min();  // No date: the distant past.
    found.emplace_back(modified, path);
  }
  // Newest first; equal dates by name, newest-looking name first, so the order does not depend on the
  // order of the directory.
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    if (a.first != b.first) return a.first > b.first;
    return a.second.filename() > b.second.filename();
  });
  std::vector<fs::path> out;
  out.reserve(found.size());
  for (auto& [modified, path] : found) out.push_back(std::move(path));
  return out;
}

void prune() { prune(fs::path()); }

void prune(const fs::path& spare) {
  std::vector<fs::path> backups = list();
  if (!spare.empty()) {
    std::erase_if(backups, [&](const fs::path& file) {
      std::error_code ec;
      return fs::equivalent(file, spare, ec);
    });
  }
  size_t keep = static_cast<size_t>(keepCount());
  for (size_t i = keep; i < backups.size(); ++i) {
    std::error_code ignored;
    fs::remove(backups[i], ignored);
  }
}

void checkBackupFile(const fs::path& file) {
  // SQLite would create a missing file, leaving an empty database behind at a path the user only named.
  std::error_code ec;
  if (!fs::is_regular_file(file, ec)) throw DBError::open("unable to open database file");
  SQLiteDB db(file.string());
  db.scalarInt("SELECT count(*) FROM catalogs");
  db.close();
}

void replaceDatabase(const fs::path& backup, const fs::path& database) {
  std::error_code ec;
  if (fs::equivalent(backup, database, ec)) {
    // Deleting the database first would delete the very file that was to be copied.
    throw fs::filesystem_error("the backup is the catalog database itself", backup, database,
                               std::make_error_code(std::errc::invalid_argument));
  }
  // The copy is made beside the database first and only then takes its place: a copy that fails (a full
  // disk, an unreadable file) leaves the current database as it was, rather than already deleted.
  const fs::path incoming(database.string() + ".restoring");
  try {
    fs::copy_file(backup, incoming, fs::copy_options::overwrite_existing);
  } catch (const fs::filesystem_error&) {
    std::error_code ignored;
    fs::remove(incoming, ignored);
    throw;
  }
  // The side files go first: a log left beside the new file would be read as its own. The rename then
  // replaces the database in one step.
  for (const char* suffix : {"-wal", "-shm"}) {
    std::error_code ignored;
    fs::remove(fs::path(database.string() + suffix), ignored);
  }
  fs::rename(incoming, database);
}

}  // namespace orrelin::BackupManager
