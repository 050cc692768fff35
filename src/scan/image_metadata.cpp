// What an image says about itself: pixel size, colour model, camera, exposure and position. EXIF, TIFF
// and GPS tags come from exiv2; the pixel size comes from exiv2 too, or from libvips' header reader for
// formats exiv2 does not know; the colour model from libvips.
#include <vips/vips.h>

#include <cmath>
#include <cstdio>
#include <exiv2/exiv2.hpp>
#include <optional>
#include <string_view>

#include "scan/media_libs.h"
#include "scan/metadata_extractor.h"
#include "scan/regular_file.h"
#include "store/safe_int.h"

namespace orrelin {

namespace {

std::string format(const char* pattern, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, pattern, value);
  return buffer;
}

std::string trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r\n\v\f";
  // Tag texts are NUL-padded by some cameras; a NUL is never part of the value.
  while (!text.empty() && (kBlank.find(text.back()) != std::string_view::npos || text.back() == '\0')) {
    text.remove_suffix(1);
  }
  while (!text.empty() && kBlank.find(text.front()) != std::string_view::npos) text.remove_prefix(1);
  return std::string(text);
}

// A tag's text with trailing NULs dropped, or nothing when the tag is absent.
std::optional<std::string> tagText(const Exiv2::ExifData& exif, const char* key) {
  auto it = exif.findKey(Exiv2::ExifKey(key));
  if (it == exif.end()) return std::nullopt;
  std::string text = it->toString();
  while (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

// Component `n` of a rational tag as a double, or nothing when absent or divided by zero.
std::optional<double> rational(const Exiv2::ExifData& exif, const char* key, long n = 0) {
  auto it = exif.findKey(Exiv2::ExifKey(key));
  if (it == exif.end() || it->count() <= n) return std::nullopt;
  Exiv2::Rational r = it->value().toRational(n);
  if (r.second == 0) return std::nullopt;
  return static_cast<double>(r.first) / r.second;
}

// Degrees, minutes and seconds as decimal degrees (always positive; the reference gives the sign).
std::optional<double> coordinate(const Exiv2::ExifData& exif, const char* key) {
  auto degrees = rational(exif, key, 0);
  if (!degrees) return std::nullopt;
  double value = *degrees;
  // Unused minutes or seconds are often written as 0/0; they count as zero.
  if (auto minutes = rational(exif, key, 1)) value += *minutes / 60.0;
  if (auto seconds = rational(exif, key, 2)) value += *seconds / 3600.0;
  return value;
}

// The camera text: the model alone when it already begins with the make, else make and model joined.
std::string cameraText(const std::string& make, const std::string& model) {
  std::string lowerMake = make, lowerModel = model;
  for (auto& c : lowerMake) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (auto& c : lowerModel) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (lowerModel.starts_with(lowerMake)) return model;
  if (make.empty()) return model;
  if (model.empty()) return make;
  return make + " " + model;
}

void readExif(const Exiv2::ExifData& exif, std::map<std::string, std::string>& meta) {
  std::string camera = cameraText(trimmed(tagText(exif, "Exif.Image.Make").value_or("")),
                                  trimmed(tagText(exif, "Exif.Image.Model").value_or("")));
  if (!camera.empty()) meta["Camera"] = camera;

  if (auto date = tagText(exif, "Exif.Photo.DateTimeOriginal")) meta["Date Taken"] = *date;
  if (auto lens = tagText(exif, "Exif.Photo.LensModel")) meta["Lens"] = *lens;
  if (auto fNumber = rational(exif, "Exif.Photo.FNumber")) meta["Aperture"] = format("f/%.1f", *fNumber);
  if (auto t = rational(exif, "Exif.Photo.ExposureTime"); t && *t > 0) {
    if (*t < 1) {
      meta["Shutter"] = "1/" + std::to_string(SafeInt::from(std::round(1.0 / *t))) + " s";
    } else {
      meta["Shutter"] = format("%.1f s", *t);
    }
  }
  if (auto it = exif.findKey(Exiv2::ExifKey("Exif.Photo.ISOSpeedRatings"));
      it != exif.end() && it->count() > 0) {
    meta["ISO"] = std::to_string(it->toLong(0));
  }

  auto latitude = coordinate(exif, "Exif.GPSInfo.GPSLatitude");
  auto longitude = coordinate(exif, "Exif.GPSInfo.GPSLongitude");
  if (latitude && longitude) {
    if (trimmed(tagText(exif, "Exif.GPSInfo.GPSLatitudeRef").value_or("N")) == "S") *latitude = -*latitude;
    if (trimmed(tagText(exif, "Exif.GPSInfo.GPSLongitudeRef").value_or("E")) == "W") *longitude = -*longitude;
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%.5f, %.5f", *latitude, *longitude);
    meta["GPS"] = buffer;
    if (auto altitude = rational(exif, "Exif.GPSInfo.GPSAltitude"))
      meta["Altitude"] = format("%.0f m", *altitude);
  }
}

std::optional<std::string> colorModel(VipsInterpretation interpretation) {
  switch (interpretation) {
    case VIPS_INTERPRETATION_sRGB:
    case VIPS_INTERPRETATION_RGB:
    case VIPS_INTERPRETATION_RGB16:
    case VIPS_INTERPRETATION_scRGB:
      return "RGB";
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16:
      return "Gray";
    case VIPS_INTERPRETATION_CMYK:
      return "CMYK";
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABQ:
    case VIPS_INTERPRETATION_LABS:
      return "Lab";
    default:
      return std::nullopt;
  }
}

struct Header {
  int64_t width = 0, height = 0;
  std::optional<std::string> colorModel;
};

// The header of the image as libvips reads it, without decoding pixels. The ImageMagick loader is left
// out: it may run external converters, far too slow for a fact that is merely nice to have.
std::optional<Header> vipsHeader(const std::string& name) {
  const char* loader = vips_foreign_find_load(name.c_str());
  if (!loader) {
    vips_error_clear();
    return std::nullopt;
  }
  if (std::string_view(loader).find("Magick") != std::string_view::npos) return std::nullopt;
  VipsImage* image = vips_image_new_from_file(name.c_str(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
  if (!image) {
    vips_error_clear();
    return std::nullopt;
  }
  Header header{vips_image_get_width(image), vips_image_get_height(image),
                colorModel(vips_image_get_interpretation(image))};
  g_object_unref(image);
  return header;
}

}  // namespace

MetadataExtractor::Output MetadataExtractor::image(const std::filesystem::path& path) {
  MediaLibs::init();
  RegularFile file(path);
  if (!file.ok()) return {};
  std::string name = file.reopenPath();

  Output out;
  bool exivRead = false;
  try {
    Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(name);
    if (image.get()) {
      image->readMetadata();
      exivRead = true;
      out.width = image->pixelWidth();
      out.height = image->pixelHeight();
      readExif(image->exifData(), out.meta);
    }
  } catch (...) {
    // exiv2 throws on formats it does not know and on damaged files; libvips may still read the header.
  }

  std::optional<Header> header = vipsHeader(name);
  if (!exivRead && !header) return {};
  if (out.width <= 0 && header) {
    out.width = header->width;
    out.height = header->height;
  }
  if (out.width >= 1)
    out.meta["Dimensions"] = std::to_string(out.width) + " \u00d7 " + std::to_string(out.height);
  if (header && header->colorModel) out.meta["Color Model"] = *header->colorModel;
  return out;
}

}  // namespace orrelin
