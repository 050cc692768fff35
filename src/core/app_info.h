// The program's name, maker, version, build number and web site.
#pragma once

#include <string>
#include <string_view>

namespace orrelin::AppInfo {

inline constexpr std::string_view name = "TVRL Orrelin";
inline constexpr std::string_view company = "Tavrel Works";
inline constexpr std::string_view website = "https://tavrel.works/orrelin";

// Returns the version of this build ("1.0"), or "1.0" when the build set none.
std::string version();

// Returns the build number of this build, or "1" when the build set none.
std::string build();

}  // namespace orrelin::AppInfo
