// Saved searches: their JSON form, strict on reading, and the list kept in the user's settings.
#include "search/saved_search.h"

#include <uuid/uuid.h>

#include <cctype>
#include <cmath>

#include "core/user_defaults.h"

namespace orrelin {

using nlohmann::json;

namespace {

// Reads the value under `key` into `out`; false when the key is missing or the value has another type.
bool read(const json& object, const char* key, std::string& out) {
  auto it = object.find(key);
  if (it == object.end() || !it->is_string()) return false;
  out = it->get<std::string>();
  return true;
}

bool read(const json& object, const char* key, bool& out) {
  auto it = object.find(key);
  if (it == object.end() || !it->is_boolean()) return false;
  out = it->get<bool>();
  return true;
}

// A whole number within the signed 64-bit range; a float counts when it holds a whole number exactly.
bool asInt64(const json& value, int64_t& out) {
  if (value.is_number_integer() && !value.is_number_unsigned()) {
    out = value.get<int64_t>();
    return true;
  }
  if (value.is_number_unsigned()) {
    uint64_t u = value.get<uint64_t>();
    if (u > static_cast<uint64_t>(INT64_MAX)) return false;
    out = static_cast<int64_t>(u);
    return true;
  }
  if (value.is_number_float()) {
    double d = value.get<double>();
    if (!(d >= -9.2233720368547758e18 && d < 9.2233720368547758e18) || std::trunc(d) != d) return false;
    out = static_cast<int64_t>(d);
    return true;
  }
  return false;
}

bool read(const json& object, const char* key, int64_t& out) {
  auto it = object.find(key);
  return it != object.end() && asInt64(*it, out);
}

bool read(const json& object, const char* key, Date& out) {
  auto it = object.find(key);
  if (it == object.end() || !it->is_number()) return false;
  out = Date{it->get<double>() + kSecondsFrom1970To2001};
  return true;
}

bool read(const json& object, const char* key, std::vector<std::string>& out) {
  auto it = object.find(key);
  if (it == object.end() || !it->is_array()) return false;
  out.clear();
  for (const json& item : *it) {
    if (!item.is_string()) return false;
    out.push_back(item.get<std::string>());
  }
  return true;
}

bool read(const json& object, const char* key, std::vector<int64_t>& out) {
  auto it = object.find(key);
  if (it == object.end() || !it->is_array()) return false;
  out.clear();
  for (const json& item : *it) {
    int64_t value = 0;
    if (!asInt64(item, value)) return false;
    out.push_back(value);
  }
  return true;
}

// The canonical upper-case form of a UUID text, or nothing when `text` is not a UUID.
std::optional<std::string> canonicalUUID(const std::string& text) {
  uuid_t bytes;
  if (text.size() != 36 || uuid_parse(text.c_str(), bytes) != 0) return std::nullopt;
  char out[37];
  uuid_unparse_upper(bytes, out);
  return std::string(out);
}

}  // namespace

std::optional<json> SavedSearch::toJSON() const {
  if (!std::isfinite(from.seconds) || !std::isfinite(to.seconds)) return std::nullopt;
  return json{{"id", id},
              {"name", name},
              {"text", text},
              {"mode", mode},
              {"searchMetadata", searchMetadata},
              {"kinds", kinds},
              {"minSizeText", minSizeText},
              {"maxSizeText", maxSizeText},
              {"sizeUnit", sizeUnit},
              {"useDates", useDates},
              {"from", from.seconds - kSecondsFrom1970To2001},
              {"to", to.seconds - kSecondsFrom1970To2001},
              {"tag", tag},
              {"catalogIDs", catalogIDs},
              {"includeFolders", includeFolders}};
}

std::optional<SavedSearch> SavedSearch::fromJSON(const json& object) {
  if (!object.is_object()) return std::nullopt;
  SavedSearch s;
  std::string id;
  bool ok = read(object, "id", id) && read(object, "name", s.name) && read(object, "text", s.text) &&
            read(object, "mode", s.mode) && read(object, "searchMetadata", s.searchMetadata) &&
            read(object, "kinds", s.kinds) && read(object, "minSizeText", s.minSizeText) &&
            read(object, "maxSizeText", s.maxSizeText) && read(object, "sizeUnit", s.sizeUnit) &&
            read(object, "useDates", s.useDates) && read(object, "from", s.from) &&
            read(object, "to", s.to) && read(object, "tag", s.tag) &&
            read(object, "catalogIDs", s.catalogIDs) && read(object, "includeFolders", s.includeFolders);
  if (!ok) return std::nullopt;
  std::optional<std::string> canonical = canonicalUUID(id);
  if (!canonical) return std::nullopt;
  s.id = *canonical;
  return s;
}

std::vector<SavedSearch> SavedSearch::all() {
  std::optional<json> stored = UserDefaults::get(kDefaultsKey);
  if (!stored || !stored->is_array()) return {};
  std::vector<SavedSearch> list;
  for (const json& item : *stored) {
    std::optional<SavedSearch> search = fromJSON(item);
    if (!search) return {};  // One bad entry loses the whole list, as a failed decode of the array would.
    list.push_back(std::move(*search));
  }
  return list;
}

bool SavedSearch::setAll(const std::vector<SavedSearch>& list) {
  json array = json::array();
  for (const SavedSearch& search : list) {
    std::optional<json> object = search.toJSON();
    if (!object) return UserDefaults::remove(kDefaultsKey);
    array.push_back(std::move(*object));
  }
  return UserDefaults::set(kDefaultsKey, array);
}

std::string SavedSearch::newID() {
  uuid_t bytes;
  uuid_generate_random(bytes);
  char out[37];
  uuid_unparse_upper(bytes, out);
  return out;
}

}  // namespace orrelin

size_t std::hash<orrelin::SavedSearch>::operator()(const orrelin::SavedSearch& s) const noexcept {
  size_t h = 0;
  auto mix = [&h](size_t v) { h ^= v + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2); };
  std::hash<std::string> text;
  for (const std::string* part : {&s.id, &s.name, &s.text, &s.mode, &s.minSizeText, &s.maxSizeText, &s.tag})
    mix(text(*part));
  for (const std::string& kind : s.kinds) mix(text(kind));
  for (int64_t id : s.catalogIDs) mix(std::hash<int64_t>()(id));
  mix(std::hash<int64_t>()(s.sizeUnit));
  mix(std::hash<double>()(s.from.seconds));
  mix(std::hash<double>()(s.to.seconds));
  mix((s.searchMetadata ? 1u : 0u) | (s.useDates ? 2u : 0u) | (s.includeFolders ? 4u : 0u));
  return h;
}
