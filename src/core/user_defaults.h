// The user's settings: one JSON object in a file, read at every get and written through at every set.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace orrelin::UserDefaults {

// Returns configHome() / "TVRL Orrelin" / "defaults.json". A missing file holds no settings.
std::filesystem::path filePath();

// Returns the value stored under `key`, or nullopt when there is none. A file that is missing, is not
// JSON or does not hold an object reads as empty.
std::optional<nlohmann::json> get(std::string_view key);

// Stores `value` under `key` and writes the file at once, atomically; a null `value` removes the key.
// A broken file is replaced by one that holds this key alone. Returns false when the file could not be
// written, in which case it is left as it was.
bool set(std::string_view key, const nlohmann::json& value);

// Removes `key` and writes the file; removing an absent key writes nothing. Returns false on a failed write.
bool remove(std::string_view key);

// Returns the value as a boolean: a boolean as it is, a number true when not 0, anything else false.
bool boolean(std::string_view key);

// Returns a number truncated toward zero (0 beyond ±9e18), a boolean as 0 or 1, anything else 0.
int64_t integer(std::string_view key);

// Returns a number, a boolean as 0 or 1, anything else 0.
double real(std::string_view key);

// Returns a text value, or nullopt when the value is absent or not text.
std::optional<std::string> string(std::string_view key);

// Returns a document value (a JSON object or array, as the scan defaults and saved searches are kept),
// or nullopt when the value is absent or of another type.
std::optional<nlohmann::json> data(std::string_view key);

}  // namespace orrelin::UserDefaults
