// A prepared statement, finalized by its owner's destruction, with typed column reads.
#pragma once

#include <cstdint>
#include <string>

#include "core/date.h"
#include "store/sql_value.h"

struct sqlite3_stmt;

namespace orrelin {

class Statement {
 public:
  // Takes ownership of `raw`, which may be null only for a moved-from statement.
  explicit Statement(sqlite3_stmt* raw) : m_raw(raw) {}
  ~Statement();
  Statement(Statement&& other) noexcept : m_raw(other.m_raw) { other.m_raw = nullptr; }
  Statement& operator=(Statement&& other) noexcept;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  // Resets the statement, clears old bindings, and binds `values` from parameter 1 on.
  void bind(const SQLArgs& values);

  // Column reads by index from 0. Integers go through the 64-bit read.
  int integer(int i) const { return static_cast<int>(int64(i)); }
  int64_t int64(int i) const;
  double real(int i) const;
  bool boolean(int i) const { return int64(i) != 0; }
  bool isNull(int i) const;
  // The column's text, or empty text for NULL.
  std::string text(int i) const;
  // Absent for NULL, else the column's double as seconds since 1970.
  OptionalDate date(int i) const;

  sqlite3_stmt* raw() const { return m_raw; }

 private:
  sqlite3_stmt* m_raw;
};

}  // namespace orrelin
