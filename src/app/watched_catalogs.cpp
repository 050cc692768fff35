// The "watchedCatalogs" setting.
#include "app/watched_catalogs.h"

#include <limits>

#include "core/user_defaults.h"

namespace orrelin::WatchedCatalogs {

std::set<int64_t> read() {
  std::set<int64_t> ids;
  std::optional<nlohmann::json> value = UserDefaults::get(kDefaultsKey);
  if (!value || !value->is_array()) return ids;
  for (const nlohmann::json& element : *value) {
    // A float, even a whole one, is not an id; an unsigned number past int64's range is not one either.
    if (!element.is_number_integer()) return {};
    if (element.is_number_unsigned() &&
        element.get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
      return {};
    ids.insert(element.get<int64_t>());
  }
  return ids;
}

bool write(const std::set<int64_t>& ids) {
  nlohmann::json array = nlohmann::json::array();
  for (int64_t id : ids) array.push_back(id);
  return UserDefaults::set(kDefaultsKey, array);
}

}  // namespace orrelin::WatchedCatalogs
