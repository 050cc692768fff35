// Media metadata: dispatch by kind and codec display names. The readers follow.
#include "scan/metadata_extractor.h"

namespace orrelin {

MetadataExtractor::Output MetadataExtractor::extract(const std::filesystem::path& path, FileKind kind) {
  switch (kind) {
    case FileKind::video:
      return av(path, /*isVideo=*/true);
    case FileKind::audio:
      return av(path, /*isVideo=*/false);
    case FileKind::image:
      return image(path);
    case FileKind::pdf:
      return pdf(path);
    default:
      return {};
  }
}

MetadataExtractor::Output MetadataExtractor::image(const std::filesystem::path&) { return {}; }
MetadataExtractor::Output MetadataExtractor::pdf(const std::filesystem::path&) { return {}; }
MetadataExtractor::Output MetadataExtractor::av(const std::filesystem::path&, bool) { return {}; }
std::string MetadataExtractor::fourCC(uint32_t) { return "?"; }

}  // namespace orrelin
