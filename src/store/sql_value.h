// One value bound to a statement parameter, and the argument list of a statement.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "core/date.h"

namespace orrelin {

// Binary data, bound as a blob.
struct Blob {
  std::vector<unsigned char> bytes;
};

// A value to bind: absent (NULL), integer, boolean, double, date, text or binary data. Integers of any
// width convert to 64 bits; an optional converts to its value or to NULL.
class SQLValue {
 public:
  using Storage = std::variant<std::monostate, int64_t, bool, double, Date, std::string, Blob>;

  SQLValue() = default;
  SQLValue(std::nullopt_t) {}
  SQLValue(std::nullptr_t) {}
  SQLValue(bool v) : m_value(v) {}
  template <class T>
  requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) SQLValue(T v)
      : m_value(static_cast<int64_t>(v)) {}
  SQLValue(double v) : m_value(v) {}
  SQLValue(float v) : m_value(static_cast<double>(v)) {}
  SQLValue(Date v) : m_value(v) {}
  SQLValue(std::string v) : m_value(std::move(v)) {}
  SQLValue(std::string_view v) : m_value(std::string(v)) {}
  SQLValue(const char* v) : m_value(std::string(v)) {}
  SQLValue(Blob v) : m_value(std::move(v)) {}
  template <class T>
  SQLValue(const std::optional<T>& v) {
    if (v) *this = SQLValue(*v);
  }

  const Storage& storage() const { return m_value; }
  bool isNull() const { return std::holds_alternative<std::monostate>(m_value); }

 private:
  Storage m_value;
};

using SQLArgs = std::vector<SQLValue>;

}  // namespace orrelin
