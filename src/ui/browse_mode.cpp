#include "ui/browse_mode.h"

#include "core/user_defaults.h"

namespace orrelin {

namespace {
constexpr const char* kPreference = "browseMode";
}

QString rawText(BrowseMode mode) {
  return mode == BrowseMode::list ? QStringLiteral("List") : QStringLiteral("Columns");
}

QString symbol(BrowseMode mode) {
  return mode == BrowseMode::list ? QStringLiteral("list.bullet") : QStringLiteral("rectangle.split.3x1");
}

BrowseMode storedBrowseMode() {
  return UserDefaults::string(kPreference) == std::optional<std::string>("List") ? BrowseMode::list
                                                                                 : BrowseMode::columns;
}

void storeBrowseMode(BrowseMode mode) { UserDefaults::set(kPreference, rawText(mode).toStdString()); }

}  // namespace orrelin
