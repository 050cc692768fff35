// The error of the SQLite layer: one of three cases, each with a text fit for the user.
#pragma once

#include <stdexcept>
#include <string>

namespace orrelin {

class DBError : public std::runtime_error {
 public:
  enum class Kind { open, prepare, step };

  // Makes the error of `kind` whose user-facing description is the case's prefix followed by `text`.
  DBError(Kind kind, std::string text)
      : std::runtime_error(prefix(kind) + text), m_kind(kind), m_text(std::move(text)) {}

  static DBError open(std::string text) { return DBError(Kind::open, std::move(text)); }
  static DBError prepare(std::string text) { return DBError(Kind::prepare, std::move(text)); }
  static DBError step(std::string text) { return DBError(Kind::step, std::move(text)); }

  Kind kind() const { return m_kind; }
  // The text without the case's prefix.
  const std::string& text() const { return m_text; }
  // The description shown to the user; same as what().
  std::string errorDescription() const { return what(); }

 private:
  static std::string prefix(Kind kind) {
    switch (kind) {
      case Kind::open:
        return "Could not open the catalog database: ";
      case Kind::prepare:
        return "Database query error: ";
      case Kind::step:
        return "Database error: ";
    }
    return {};
  }

  Kind m_kind;
  std::string m_text;
};

}  // namespace orrelin
