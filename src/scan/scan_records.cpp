// The JSON form of scan options, the stored defaults, and scan result identifiers.
#include "scan/scan_records.h"

#include <uuid/uuid.h>

#include "core/user_defaults.h"

namespace orrelin {

namespace {

constexpr const char* kIncludeHidden = "includeHidden";
constexpr const char* kMetadata = "metadata";
constexpr const char* kThumbnails = "thumbnails";
constexpr const char* kHashes = "hashes";
constexpr const char* kTreatPackagesAsFiles = "treatPackagesAsFiles";

}  // namespace

nlohmann::json ScanOptions::toJSON() const {
  return {{kIncludeHidden, includeHidden},
          {kMetadata, metadata},
          {kThumbnails, thumbnails},
          {kHashes, hashes},
          {kTreatPackagesAsFiles, treatPackagesAsFiles}};
}

std::optional<ScanOptions> ScanOptions::fromJSON(const nlohmann::json& json) {
  if (!json.is_object()) return std::nullopt;
  ScanOptions options;
  // Every key is required: a document from a build that knew fewer options decodes to nothing, so the
  // defaults apply as a whole rather than half of an old choice.
  const std::pair<const char*, bool*> fields[] = {{kIncludeHidden, &options.includeHidden},
                                                  {kMetadata, &options.metadata},
                                                  {kThumbnails, &options.thumbnails},
                                                  {kHashes, &options.hashes},
                                                  {kTreatPackagesAsFiles, &options.treatPackagesAsFiles}};
  for (const auto& [key, field] : fields) {
    auto it = json.find(key);
    if (it == json.end() || !it->is_boolean()) return std::nullopt;
    *field = it->get<bool>();
  }
  return options;
}

ScanOptions ScanOptions::defaults() {
  std::optional<nlohmann::json> stored = UserDefaults::data(kDefaultsKey);
  if (!stored) return ScanOptions{};
  return fromJSON(*stored).value_or(ScanOptions{});
}

bool ScanOptions::setDefaults(const ScanOptions& options) {
  return UserDefaults::set(kDefaultsKey, options.toJSON());
}

std::string ScanResult::newID() {
  uuid_t uuid;
  uuid_generate_random(uuid);
  char text[37];
  uuid_unparse_upper(uuid, text);
  return text;
}

}  // namespace orrelin
