// Sets or clears environment variables for one scope, restoring the former values when it ends.
#pragma once

#include <stdlib.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orrelin::testing {

class ScopedEnv {
 public:
  ScopedEnv() = default;
  ~ScopedEnv() {
    for (auto it = m_saved.rbegin(); it != m_saved.rend(); ++it) apply(it->first, it->second);
  }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

  // Sets `name` to `value`, or removes it when `value` is nullopt.
  void set(const std::string& name, std::optional<std::string> value) {
    const char* old = ::getenv(name.c_str());
    m_saved.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
    apply(name, value);
  }

 private:
  static void apply(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name.c_str(), value->c_str(), /*overwrite=*/1);
    } else {
      ::unsetenv(name.c_str());
    }
  }

  std::vector<std::pair<std::string, std::optional<std::string>>> m_saved;
};

}  // namespace orrelin::testing
