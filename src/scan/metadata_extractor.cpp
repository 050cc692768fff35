// Media metadata: dispatch by kind, codec display names, and what a PDF says about itself (through
// poppler). Images and audio/video have files of their own.
#include "scan/metadata_extractor.h"

#include <poppler-document.h>
#include <poppler-page.h>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include "scan/media_libs.h"
#include "scan/regular_file.h"
#include "store/safe_int.h"

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

std::string MetadataExtractor::fourCC(uint32_t code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    unsigned char byte = static_cast<unsigned char>(code >> shift);
    if (byte > 0x7f) return "?";
    text.push_back(static_cast<char>(byte));
  }

  static constexpr std::array<std::pair<std::string_view, std::string_view>, 10> kNames = {{
      {"avc1", "H.264"},
      {"hvc1", "HEVC (H.265)"},
      {"hev1", "HEVC (H.265)"},
      {"mp4v", "MPEG-4"},
      {"jpeg", "Motion JPEG"},
      {"aac ", "AAC"},
      {".mp3", "MP3"},
      {"lpcm", "Linear PCM"},
      {"alac", "Apple Lossless"},
      {"flac", "FLAC"},
  }};
  for (const auto& [key, name] : kNames) {
    if (text == key) return std::string(name);
  }
  static constexpr std::array<std::string_view, 6> kProRes = {"ap4h", "apch", "apcn", "apcs", "apco", "ap4x"};
  for (std::string_view prores : kProRes) {
    if (text == prores) return "Apple ProRes (" + text + ")";
  }

  constexpr std::string_view kBlank = " \t\n\v\f\r";
  size_t first = text.find_first_not_of(kBlank);
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

MetadataExtractor::Output MetadataExtractor::pdf(const std::filesystem::path& path) {
  MediaLibs::init();
  RegularFile file(path);
  if (!file.ok()) return {};
  std::unique_ptr<poppler::document> document(poppler::document::load_from_file(file.reopenPath()));
  // A document locked by a password tells nothing reliable, not even its page count.
  if (!document || document->is_locked()) return {};

  Output out;
  int pages = document->pages();
  out.meta["Pages"] = std::to_string(pages);
  if (pages > 0) {
    std::unique_ptr<poppler::page> first(document->create_page(0));
    if (first) {
      poppler::rectf box = first->page_rect(poppler::media_box);
      out.width = SafeInt::from(box.width());
      out.height = SafeInt::from(box.height());
      out.meta["Page Size"] = std::to_string(out.width) + " \u00d7 " + std::to_string(out.height) + " pt";
    }
  }
  for (const char* key : {"Title", "Author"}) {
    poppler::byte_array utf8 = document->info_key(key).to_utf8();
    std::string value(utf8.begin(), utf8.end());
    while (!value.empty() && value.back() == '\0') value.pop_back();
    if (!value.empty()) out.meta[key] = value;
  }
  return out;
}

}  // namespace orrelin
