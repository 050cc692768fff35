// The SQLite connection: opening, statements, transactions and the online backup.
#include "store/sqlite_db.h"

#include <sqlite3.h>

#include "store/regex_cache.h"

namespace orrelin {

namespace {

constexpr int kOpenFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
constexpr int kBusyTimeoutMs = 10000;
constexpr const char* kPragmas =
    "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA foreign_keys=ON; PRAGMA temp_store=MEMORY;";
// Tuning on top of the batch above, measured with bench/store_bench: a 64 MiB page cache keeps the indexes
// of a large catalog in memory while a scan writes, memory-mapped reads spare a copy of every page read,
// and checkpointing the write-ahead log every 10,000 pages instead of 1,000 takes a sixth off a scan's
// writing time. The log is cut back to 64 MiB after each checkpoint so it does not stay large.
constexpr const char* kTuning =
    "PRAGMA cache_size=-65536; PRAGMA mmap_size=268435456; PRAGMA wal_autocheckpoint=10000; "
    "PRAGMA journal_size_limit=67108864;";
constexpr size_t kSqlInErrorChars = 120;

// The first `count` characters (code points, not bytes) of UTF-8 text.
std::string firstCharacters(const std::string& text, size_t count) {
  size_t i = 0;
  for (size_t seen = 0; i < text.size() && seen < count; ++seen) {
    ++i;
    while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) ++i;
  }
  return text.substr(0, i);
}

}  // namespace

SQLiteDB::SQLiteDB(std::string path) : m_path(std::move(path)) {
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(m_path.c_str(), &handle, kOpenFlags, nullptr) != SQLITE_OK) {
    std::string message = handle != nullptr ? sqlite3_errmsg(handle) : "unknown error";
    sqlite3_close_v2(handle);
    throw DBError::open(message);
  }
  m_handle = handle;
  sqlite3_busy_timeout(m_handle, kBusyTimeoutMs);
  try {
    exec(kPragmas);
    exec(kTuning);
  } catch (...) {
    close();
    throw;
  }
  registerRegexpFunction(m_handle);
}

SQLiteDB::~SQLiteDB() { close(); }

void SQLiteDB::close() {
  std::lock_guard guard(m_lock);
  if (m_handle != nullptr) {
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
  }
}

std::string SQLiteDB::errorMessage() const {
  if (m_handle == nullptr) return "closed";
  return sqlite3_errmsg(m_handle);
}

void SQLiteDB::exec(const std::string& sql) {
  std::lock_guard guard(m_lock);
  char* message = nullptr;
  int rc =
      m_handle != nullptr ? sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, &message) : SQLITE_MISUSE;
  if (rc != SQLITE_OK) {
    std::string text = message != nullptr ? message : errorMessage();
    sqlite3_free(message);
    throw DBError::step(text);
  }
}

Statement SQLiteDB::prepare(const std::string& sql) {
  std::lock_guard guard(m_lock);
  sqlite3_stmt* raw = nullptr;
  int rc = m_handle != nullptr
               ? sqlite3_prepare_v2(m_handle, sql.c_str(), static_cast<int>(sql.size()), &raw, nullptr)
               : SQLITE_MISUSE;
  if (rc != SQLITE_OK || raw == nullptr) {
    sqlite3_finalize(raw);
    throw DBError::prepare(errorMessage() + " — " + firstCharacters(sql, kSqlInErrorChars));
  }
  return Statement(raw);
}

bool SQLiteDB::step(Statement& statement, const SQLArgs& args) {
  std::lock_guard guard(m_lock);
  statement.bind(args);
  int rc = sqlite3_step(statement.raw());
  if (rc == SQLITE_ROW) return true;
  if (rc == SQLITE_DONE) return false;
  throw DBError::step(errorMessage());
}

int64_t SQLiteDB::run(const std::string& sql, const SQLArgs& args) {
  std::lock_guard guard(m_lock);
  Statement statement = prepare(sql);
  step(statement, args);
  return sqlite3_changes64(m_handle);
}

bool SQLiteDB::stepQuery(Statement& statement) {
  int rc = sqlite3_step(statement.raw());
  if (rc == SQLITE_ROW) return true;
  if (rc == SQLITE_DONE) return false;
  throw DBError::step(errorMessage());
}

int64_t SQLiteDB::scalarInt(const std::string& sql, const SQLArgs& args) {
  std::optional<int64_t> first;
  forEachRow(sql, args, [&](Statement& st) {
    if (!first) first = st.int64(0);
  });
  return first.value_or(0);
}

std::optional<std::string> SQLiteDB::scalarText(const std::string& sql, const SQLArgs& args) {
  std::optional<std::string> first;
  bool seen = false;
  forEachRow(sql, args, [&](Statement& st) {
    if (seen) return;
    seen = true;
    if (!st.isNull(0)) first = st.text(0);
  });
  return first;
}

int64_t SQLiteDB::lastInsertID() {
  std::lock_guard guard(m_lock);
  return m_handle != nullptr ? sqlite3_last_insert_rowid(m_handle) : 0;
}

void SQLiteDB::backup(const std::string& path) {
  std::lock_guard guard(m_lock);
  sqlite3* dest = nullptr;
  if (sqlite3_open(path.c_str(), &dest) != SQLITE_OK) {
    sqlite3_close(dest);
    throw DBError::open("backup destination");
  }
  sqlite3_backup* job = sqlite3_backup_init(dest, "main", m_handle, "main");
  if (job == nullptr) {
    std::string message = sqlite3_errmsg(dest);
    sqlite3_close(dest);
    throw DBError::step(message);
  }
  int rc = sqlite3_backup_step(job, -1);
  sqlite3_backup_finish(job);
  sqlite3_close(dest);
  if (rc != SQLITE_DONE) throw DBError::step("backup failed (" + std::to_string(rc) + ")");
}

}  // namespace orrelin
