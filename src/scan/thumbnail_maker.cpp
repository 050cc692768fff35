// Thumbnails of images, videos and PDFs.
#include "scan/thumbnail_maker.h"

namespace orrelin {

bool ThumbnailMaker::make(const std::filesystem::path&, FileKind, const std::filesystem::path&) {
  return false;
}

}  // namespace orrelin
