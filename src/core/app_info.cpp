// Version and build number, from the header that CMake writes at configure time.
#include "core/app_info.h"

#include "build_config.h"

namespace orrelin::AppInfo {

namespace {

std::string orDefault(std::string_view value, std::string_view fallback) {
  return std::string(value.empty() ? fallback : value);
}

}  // namespace

std::string version() { return orDefault(ORRELIN_VERSION, "1.0"); }

std::string build() { return orDefault(ORRELIN_BUILD_NUMBER, "1"); }

}  // namespace orrelin::AppInfo
