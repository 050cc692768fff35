// One SQLite connection, used by one operation at a time, with the program's pragmas and REGEXP.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "store/db_error.h"
#include "store/sql_value.h"
#include "store/statement.h"

struct sqlite3;

namespace orrelin {

class SQLiteDB {
 public:
  // Opens (creating if needed) the database at `path` in WAL mode with a 10 s busy timeout, and registers
  // REGEXP. Throws DBError::open when the file cannot be opened, DBError::step when the pragmas fail.
  explicit SQLiteDB(std::string path);
  // Closes the connection.
  ~SQLiteDB();
  SQLiteDB(const SQLiteDB&) = delete;
  SQLiteDB& operator=(const SQLiteDB&) = delete;

  // Runs text of one or more statements without arguments. Throws DBError::step.
  void exec(const std::string& sql);
  // Compiles one statement. Throws DBError::prepare with the message and the first 120 characters of `sql`.
  Statement prepare(const std::string& sql);
  // Prepares, binds and steps `sql` once; returns sqlite3_changes. Throws DBError.
  int64_t run(const std::string& sql, const SQLArgs& args = {});
  // Binds `args` to `statement` and steps it once; returns true when the step produced a row.
  bool step(Statement& statement, const SQLArgs& args);
  // Runs `sql` and returns `row(statement)` for each result row, in order. A throwing `row` ends the query.
  template <class RowFn>
  auto query(const std::string& sql, const SQLArgs& args, RowFn&& row)
      -> std::vector<std::invoke_result_t<RowFn&, Statement&>>;
  // Calls `row(statement)` for each result row without collecting anything.
  template <class RowFn>
  void forEachRow(const std::string& sql, const SQLArgs& args, RowFn&& row);
  // Column 0 of the first row as a 64-bit integer, or 0 when there is no row.
  int64_t scalarInt(const std::string& sql, const SQLArgs& args = {});
  // Column 0 of the first row, or nothing when there is no row or the value is NULL.
  std::optional<std::string> scalarText(const std::string& sql, const SQLArgs& args = {});
  // The rowid of the last insert on this connection.
  int64_t lastInsertID();

  // Runs `body` between "BEGIN IMMEDIATE" and "COMMIT" under the lock; on any failure of the body or the
  // commit, rolls back and rethrows the first failure. A failing BEGIN is passed on without rollback.
  template <class Body>
  void transaction(Body&& body);

  // Copies the whole database to a new file at `path` through SQLite's online backup. Throws DBError.
  void backup(const std::string& path);

  // The connection's last error message, or "closed" after close().
  std::string errorMessage() const;
  // Closes the connection; safe to call twice.
  void close();

  const std::string& path() const { return m_path; }
  // The connection's lock, for callers that must keep two calls together (an insert and its rowid).
  std::recursive_mutex& mutex() const { return m_lock; }
  // The raw handle, for callers that need a SQLite call this layer does not wrap. Null after close().
  sqlite3* handle() const { return m_handle; }

 private:
  // Steps a statement of a query: true for a row, false at the end, DBError::step otherwise.
  bool stepQuery(Statement& statement);

  sqlite3* m_handle = nullptr;  // Under m_lock.
  const std::string m_path;
  mutable std::recursive_mutex m_lock;
};

template <class RowFn>
auto SQLiteDB::query(const std::string& sql, const SQLArgs& args, RowFn&& row)
    -> std::vector<std::invoke_result_t<RowFn&, Statement&>> {
  std::vector<std::invoke_result_t<RowFn&, Statement&>> out;
  forEachRow(sql, args, [&](Statement& st) { out.push_back(row(st)); });
  return out;
}

template <class RowFn>
void SQLiteDB::forEachRow(const std::string& sql, const SQLArgs& args, RowFn&& row) {
  std::lock_guard guard(m_lock);
  Statement statement = prepare(sql);
  statement.bind(args);
  while (stepQuery(statement)) row(statement);
}

template <class Body>
void SQLiteDB::transaction(Body&& body) {
  std::lock_guard guard(m_lock);
  exec("BEGIN IMMEDIATE");
  try {
    body();
    exec("COMMIT");
  } catch (...) {
    try {
      exec("ROLLBACK");
    } catch (...) {
      // The first failure is the one worth reporting.
    }
    throw;
  }
}

}  // namespace orrelin
