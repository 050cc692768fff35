// A C library locale whose decimal sign is a comma, switched on for numbers while the object lives, as a
// Qt program switches to the user's locale when it starts. The locale is compiled by localedef at test
// time, once per process, into a temporary folder; where localedef is missing, active() is false.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temp_dir.h"

namespace orrelin::testing {

class CommaDecimalLocale {
 public:
  CommaDecimalLocale() {
    const std::filesystem::path* folder = compiled();
    if (!folder) return;
    const char* previous = std::getenv("LOCPATH");
    if (previous) m_previousPath = previous;
    m_hadPath = previous != nullptr;
    ::setenv("LOCPATH", folder->c_str(), 1);
    m_previousLocale = std::setlocale(LC_NUMERIC, nullptr);
    m_active = std::setlocale(LC_NUMERIC, "comma.UTF-8") != nullptr;
  }
  ~CommaDecimalLocale() {
    if (!m_previousLocale.empty()) std::setlocale(LC_NUMERIC, m_previousLocale.c_str());
    if (m_hadPath)
      ::setenv("LOCPATH", m_previousPath.c_str(), 1);
    else
      ::unsetenv("LOCPATH");
  }
  CommaDecimalLocale(const CommaDecimalLocale&) = delete;
  CommaDecimalLocale& operator=(const CommaDecimalLocale&) = delete;

  // True when printf now writes 1.5 as "1,5".
  bool active() const { return m_active; }

 private:
  static const std::filesystem::path* compiled() {
    static TempDir dir;
    static const bool made = [] {
      writeFile(dir.path() / "comma.def",
                "LC_NUMERIC\ndecimal_point \"<U002C>\"\nthousands_sep \"<U002E>\"\ngrouping 3;3\n"
                "END LC_NUMERIC\n");
      // -c: the other categories are missing on purpose; localedef warns and writes the locale anyway.
      const std::string command = "localedef -c -i '" + (dir.path() / "comma.def").string() + "' -f UTF-8 '" +
                                  (dir.path() / "comma.UTF-8").string() + "' >/dev/null 2>&1";
      [[maybe_unused]] int status = std::system(command.c_str());
      return std::filesystem::exists(dir.path() / "comma.UTF-8" / "LC_NUMERIC");
    }();
    return made ? &dir.path() : nullptr;
  }

  std::string m_previousLocale;
  std::string m_previousPath;
  bool m_hadPath = false;
  bool m_active = false;
};

}  // namespace orrelin::testing
