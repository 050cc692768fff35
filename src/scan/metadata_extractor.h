// What a media file says about itself, as display-ready texts plus duration and pixel (or point) size.
// Images through exiv2, audio and video through FFmpeg, PDF through poppler. Never throws; a file that
// cannot be read gives an empty output.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "scan/file_kind.h"

namespace orrelin {

struct MetadataExtractor {
  struct Output {
    std::map<std::string, std::string> meta;
    double duration = 0;  // Seconds; 0 when unknown.
    int64_t width = 0;    // Pixels, or points for PDF; 0 when unknown.
    int64_t height = 0;
  };

  // `path` is the file's real path on disk. Image, video, audio and PDF kinds are read; others give nothing.
  static Output extract(const std::filesystem::path& path, FileKind kind);
  static Output image(const std::filesystem::path& path);
  static Output pdf(const std::filesystem::path& path);
  // The file's tracks decide what is read; `isVideo` does not change the result.
  static Output av(const std::filesystem::path& path, bool isVideo);
  // The display name of a QuickTime/MP4 codec code.
  static std::string fourCC(uint32_t code);
};

}  // namespace orrelin
