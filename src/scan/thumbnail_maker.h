// One JPEG preview per image, video or PDF, at most 320 pixels on the longer side.
#pragma once

#include <filesystem>

#include "scan/file_kind.h"

namespace orrelin {

struct ThumbnailMaker {
  static constexpr double maxPixel = 320.0;

  // Writes the preview of `source` (a real path on disk) to `destination`, creating its folder. True when
  // the file was written. Gives up after 15 seconds.
  static bool make(const std::filesystem::path& source, FileKind kind,
                   const std::filesystem::path& destination);
};

}  // namespace orrelin
