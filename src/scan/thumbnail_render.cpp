// Image and PDF thumbnails, and the JPEG encoding shared by every kind.
#include "scan/thumbnail_render.h"

#include <poppler-document.h>
#include <poppler-image.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>
#include <algorithm>
#include <cmath>
#include <vector>

namespace orrelin::thumbs {

namespace {

// Takes ownership of `out`, made by a libvips call that answered `status`, or nothing when it failed.
// (Call first, then take: as two arguments of one call they would be read in no fixed order.)
Image take(int status, VipsImage* out) {
  if (status != 0) {
    if (out) g_object_unref(out);
    vips_error_clear();
    return nullptr;
  }
  return Image(out);
}

}  // namespace

Image fromRgb(const unsigned char* pixels, int width, int height) {
  VipsImage* image = vips_image_new_from_memory_copy(pixels, static_cast<size_t>(width) * height * 3, width,
                                                     height, 3, VIPS_FORMAT_UCHAR);
  if (!image) {
    vips_error_clear();
    return nullptr;
  }
  image->Type = VIPS_INTERPRETATION_sRGB;  // Raw memory would otherwise read as plain multiband data.
  return Image(image);
}

std::optional<std::string> encodeJpeg(VipsImage* source) {
  Image image(source);
  g_object_ref(source);  // `image` holds its own reference; the caller keeps theirs.

  if (std::max(vips_image_get_width(image.get()), vips_image_get_height(image.get())) > kMaxPixel) {
    VipsImage* out = nullptr;
    int status = vips_thumbnail_image(image.get(), &out, kMaxPixel, "height", kMaxPixel, "size",
                                      VIPS_SIZE_DOWN, nullptr);
    image = take(status, out);
    if (!image) return std::nullopt;
  }
  if (vips_image_hasalpha(image.get())) {
    VipsArrayDouble* white = vips_array_double_newv(1, 255.0);
    VipsImage* out = nullptr;
    int status = vips_flatten(image.get(), &out, "background", white, nullptr);
    vips_area_unref(VIPS_AREA(white));
    image = take(status, out);
    if (!image) return std::nullopt;
  }
  VipsInterpretation interpretation = vips_image_get_interpretation(image.get());
  if (interpretation != VIPS_INTERPRETATION_sRGB && interpretation != VIPS_INTERPRETATION_B_W) {
    bool grey = interpretation == VIPS_INTERPRETATION_GREY16 || vips_image_get_bands(image.get()) == 1;
    VipsImage* out = nullptr;
    int status = vips_colourspace(image.get(), &out,
                                  grey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB, nullptr);
    image = take(status, out);
    if (!image) return std::nullopt;
  }

  void* buffer = nullptr;
  size_t length = 0;
  if (vips_jpegsave_buffer(image.get(), &buffer, &length, "Q", kJpegQuality, "strip", TRUE, nullptr) != 0) {
    vips_error_clear();
    return std::nullopt;
  }
  std::string bytes(static_cast<const char*>(buffer), length);
  g_free(buffer);
  return bytes;
}

std::optional<std::string> fromImage(const std::string& name) {
  VipsImage* out = nullptr;
  // Fitting into a 320 box scales the longer side to 320; SIZE_DOWN leaves smaller images as they are.
  int status =
      vips_thumbnail(name.c_str(), &out, kMaxPixel, "height", kMaxPixel, "size", VIPS_SIZE_DOWN, nullptr);
  Image image = take(status, out);
  if (!image) return std::nullopt;
  return encodeJpeg(image.get());
}

std::optional<std::string> fromPdf(const std::string& name) {
  std::unique_ptr<poppler::document> document(poppler::document::load_from_file(name));
  if (!document || document->is_locked() || document->pages() < 1) return std::nullopt;
  std::unique_ptr<poppler::page> page(document->create_page(0));
  if (!page) return std::nullopt;

  // The renderer draws the crop box, so that box decides the resolution.
  poppler::rectf box = page->page_rect(poppler::crop_box);
  double longer = std::max(std::abs(box.width()), std::abs(box.height()));
  if (!(longer > 0)) return std::nullopt;
  double dpi = kMaxPixel * 72.0 / longer;

  poppler::page_renderer renderer;
  renderer.set_image_format(poppler::image::format_rgb24);
  renderer.set_render_hint(poppler::page_renderer::antialiasing, true);
  renderer.set_render_hint(poppler::page_renderer::text_antialiasing, true);
  poppler::image rendered = renderer.render_page(page.get(), dpi, dpi);
  if (!rendered.is_valid() || rendered.width() < 1 || rendered.height() < 1) return std::nullopt;

  // Rows of the rendering may be padded; libvips wants them packed.
  int width = rendered.width(), height = rendered.height();
  std::vector<unsigned char> packed(static_cast<size_t>(width) * height * 3);
  const char* row = rendered.const_data();
  for (int y = 0; y < height; ++y, row += rendered.bytes_per_row()) {
    std::copy_n(reinterpret_cast<const unsigned char*>(row), static_cast<size_t>(width) * 3,
                packed.begin() + static_cast<ptrdiff_t>(y) * width * 3);
  }
  Image image = fromRgb(packed.data(), width, height);
  if (!image) return std::nullopt;
  return encodeJpeg(image.get());
}

}  // namespace orrelin::thumbs
