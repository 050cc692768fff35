// Linux file names are bytes; the catalog stores text. Every byte that is not part of valid UTF-8 (and every
// byte of a character that is itself in U+EF80…U+EFFF) becomes one character U+EF80 + (byte − 0x80), so
// stored names are always valid UTF-8, the mapping is reversible, and two names never collide. Whenever the
// disk is touched, the stored text is mapped back to the real bytes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orrelin::NameMapping {

// The stored (always valid UTF-8) form of a name or path as found on disk.
std::string fromDisk(std::string_view bytes);
// The real bytes of a stored name or path. Exact inverse of fromDisk.
std::string toDisk(std::string_view stored);

// The real path on disk of a stored path.
inline std::filesystem::path diskPath(std::string_view stored) { return std::filesystem::path(toDisk(stored)); }
// The stored form of a real path.
inline std::string storedPath(const std::filesystem::path& path) { return fromDisk(path.native()); }

// True when `text` is valid UTF-8 (no overlong forms, surrogates or code points above U+10FFFF).
bool isValidUTF8(std::string_view text);

}  // namespace orrelin::NameMapping
