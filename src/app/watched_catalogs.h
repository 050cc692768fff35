// The catalogs switched to auto-update, kept in the user's settings under "watchedCatalogs" as an array
// of catalog ids. Shared by the program and the command-line tool.
#pragma once

#include <cstdint>
#include <set>

namespace orrelin::WatchedCatalogs {

inline constexpr const char* kDefaultsKey = "watchedCatalogs";

// The stored ids. Empty when nothing is stored, and also when the value is not an array of integers
// throughout (one stray element spoils the whole list).
std::set<int64_t> read();

// Stores `ids` (in ascending order). Returns false when the settings could not be written.
bool write(const std::set<int64_t>& ids);

}  // namespace orrelin::WatchedCatalogs
