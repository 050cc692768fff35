// Binding and column reads of a prepared statement.
#include "store/statement.h"

#include <sqlite3.h>

namespace orrelin {

Statement::~Statement() {
  if (m_raw != nullptr) sqlite3_finalize(m_raw);
}

Statement& Statement::operator=(Statement&& other) noexcept {
  if (this != &other) {
    if (m_raw != nullptr) sqlite3_finalize(m_raw);
    m_raw = other.m_raw;
    other.m_raw = nullptr;
  }
  return *this;
}

namespace {

// Binds one value at parameter `index`; SQLite copies text and blobs, so the caller's buffers may go.
void bindOne(sqlite3_stmt* stmt, int index, const SQLValue& value) {
  struct Binder {
    sqlite3_stmt* stmt;
    int index;
    void operator()(std::monostate) const { sqlite3_bind_null(stmt, index); }
    void operator()(int64_t v) const { sqlite3_bind_int64(stmt, index, v); }
    void operator()(bool v) const { sqlite3_bind_int64(stmt, index, v ? 1 : 0); }
    void operator()(double v) const { sqlite3_bind_double(stmt, index, v); }
    void operator()(Date v) const { sqlite3_bind_double(stmt, index, v.seconds); }
    // Length -1: the text ends at its first NUL, as C text would.
    void operator()(const std::string& v) const {
      sqlite3_bind_text(stmt, index, v.c_str(), -1, SQLITE_TRANSIENT);
    }
    void operator()(const Blob& v) const {
      if (v.bytes.empty()) {
        sqlite3_bind_zeroblob(stmt, index, 0);
      } else {
        sqlite3_bind_blob64(stmt, index, v.bytes.data(), v.bytes.size(), SQLITE_TRANSIENT);
      }
    }
  };
  std::visit(Binder{stmt, index}, value.storage());
}

}  // namespace

void Statement::bind(const SQLArgs& values) {
  sqlite3_reset(m_raw);
  sqlite3_clear_bindings(m_raw);
  int index = 1;
  for (const SQLValue& value : values) bindOne(m_raw, index++, value);
}

int64_t Statement::int64(int i) const { return sqlite3_column_int64(m_raw, i); }

double Statement::real(int i) const { return sqlite3_column_double(m_raw, i); }

bool Statement::isNull(int i) const { return sqlite3_column_type(m_raw, i) == SQLITE_NULL; }

std::string Statement::text(int i) const {
  const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(m_raw, i));
  if (p == nullptr) return {};
  return std::string(p, static_cast<size_t>(sqlite3_column_bytes(m_raw, i)));
}

OptionalDate Statement::date(int i) const {
  if (isNull(i)) return std::nullopt;
  return Date{real(i)};
}

}  // namespace orrelin
