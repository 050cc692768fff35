// The renderers behind ThumbnailMaker: each turns one file into the bytes of a JPEG of at most 320
// pixels on the longer side, or nothing. They take a name that opens the file (see RegularFile).
#pragma once

#include <vips/vips.h>

#include <memory>
#include <optional>
#include <string>

#include "scan/ffmpeg_handles.h"

namespace orrelin::thumbs {

inline constexpr int kMaxPixel = 320;
inline constexpr int kJpegQuality = 78;

struct VipsUnref {
  void operator()(VipsImage* image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, VipsUnref>;

// An image file, shrunk while it loads where the format allows, its EXIF orientation applied.
std::optional<std::string> fromImage(const std::string& name);
// One frame of a video from about a tenth of its length, turned as the file's display matrix says.
// Gives up when `deadline` passes.
std::optional<std::string> fromVideo(const std::string& name, const ffmpeg::Deadline& deadline);
// Page 1 of a PDF, rendered at the resolution that makes its longer side 320 pixels.
std::optional<std::string> fromPdf(const std::string& name);

// Packed 8-bit RGB pixels, rows without padding, as a libvips image (copied). Nothing on failure.
Image fromRgb(const unsigned char* pixels, int width, int height);
// Fits `image` into 320 × 320 (never enlarging), lays any transparency over white, converts it to sRGB or
// grey, and encodes it as JPEG without metadata. Nothing on failure.
std::optional<std::string> encodeJpeg(VipsImage* image);

}  // namespace orrelin::thumbs
