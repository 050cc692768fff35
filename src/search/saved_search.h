// A search kept under a name: its filters, not its hits, stored as JSON in the user's settings.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/date.h"

namespace orrelin {

struct SavedSearch {
  std::string id;  // A UUID in its upper-case text form.
  std::string name;
  std::string text;
  std::string mode;  // A mode's raw value, such as "Starts With".
  bool searchMetadata = false;
  std::vector<std::string> kinds;  // Raw values of file kinds.
  std::string minSizeText;
  std::string maxSizeText;
  int64_t sizeUnit = 1'000'000;
  bool useDates = false;
  Date from;
  Date to;
  std::string tag;
  std::vector<int64_t> catalogIDs;
  bool includeFolders = true;

  bool operator==(const SavedSearch&) const = default;

  // The settings key of the saved list.
  static constexpr const char* kDefaultsKey = "savedSearches";

  // The JSON object of this search: every field under its own name, dates as seconds since
  // 2001-01-01 00:00:00 UTC. Nothing when a date is not finite, which JSON cannot hold.
  std::optional<nlohmann::json> toJSON() const;
  // Reads one object. Every key is required and must have its type; the id must be a UUID. Unknown
  // keys are ignored. Nothing when the object does not decode.
  static std::optional<SavedSearch> fromJSON(const nlohmann::json& object);

  // The stored list, in order. Empty when nothing is stored, and also when any part of the stored value
  // does not decode: the whole list is lost then, without a message.
  static std::vector<SavedSearch> all();
  // Stores the list, replacing the old one. When it cannot be encoded, the stored list is removed instead.
  // Returns false when the settings file could not be written.
  static bool setAll(const std::vector<SavedSearch>& list);

  // A new random UUID in upper-case text form.
  static std::string newID();
};

// Seconds between 1970-01-01 and 2001-01-01, both UTC: the epoch of dates in saved searches.
inline constexpr double kSecondsFrom1970To2001 = 978'307'200;

}  // namespace orrelin

template <>
struct std::hash<orrelin::SavedSearch> {
  size_t operator()(const orrelin::SavedSearch& s) const noexcept;
};
