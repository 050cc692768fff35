// The kinds' names, symbols and hues, and the classification of an entry.
#include "scan/file_kind.h"

#include <algorithm>
#include <span>
#include <utility>

#include "scan/content_type.h"

namespace orrelin {
namespace {

struct KindInfo {
  FileKind kind;
  std::string_view rawValue;
  std::string_view symbol;
  double hue;
};

// Indexed by FileKind.
constexpr std::array<KindInfo, 12> kKinds = {{
    {FileKind::folder, "Folder", "folder.fill", 0.53},
    {FileKind::image, "Image", "photo.fill", 0.83},
    {FileKind::video, "Video", "film.fill", 0.95},
    {FileKind::audio, "Audio", "waveform", 0.47},
    {FileKind::pdf, "PDF", "doc.richtext.fill", 0.02},
    {FileKind::document, "Document", "doc.text.fill", 0.6},
    {FileKind::archive, "Archive", "archivebox.fill", 0.11},
    {FileKind::code, "Code", "chevron.left.forwardslash.chevron.right", 0.33},
    {FileKind::application, "Application", "app.badge.fill", 0.7},
    {FileKind::font, "Font", "textformat", 0.16},
    {FileKind::diskImage, "Disk Image", "opticaldiscdrive.fill", 0.76},
    {FileKind::other, "Other", "doc.fill", 0.58},
}};

constexpr bool kindsIndexedByKind() {
  for (size_t i = 0; i < kKinds.size(); ++i) {
    if (kKinds[i].kind != kAllFileKinds[i] || static_cast<size_t>(kKinds[i].kind) != i) return false;
  }
  return true;
}
static_assert(kindsIndexedByKind(), "kKinds must list the kinds in declaration order");

const KindInfo& info(FileKind kind) { return kKinds[static_cast<size_t>(kind)]; }

using Extensions = std::span<const std::string_view>;

// Looked at before the content type, so that a disk image is never taken for an archive or a package.
constexpr std::string_view kDiskImageExtensions[] = {"dmg", "iso",   "sparseimage", "sparsebundle",
                                                     "img", "toast", "cdr"};

// The content-type checks, first match wins. The order matters where families overlap: scripts are
// also executables, SVG is also XML, source code is also text.
constexpr std::pair<ContentCheck, FileKind> kTypeChecks[] = {
    {ContentCheck::application, FileKind::application},
    {ContentCheck::pdf, FileKind::pdf},
    {ContentCheck::image, FileKind::image},
    {ContentCheck::movie, FileKind::video},
    {ContentCheck::audio, FileKind::audio},
    {ContentCheck::archive, FileKind::archive},
    {ContentCheck::font, FileKind::font},
    {ContentCheck::sourceCode, FileKind::code},
    {ContentCheck::text, FileKind::document},
};

constexpr std::string_view kImageExtensions[] = {"jpg",  "jpeg", "png",  "gif", "heic", "tif",
                                                 "tiff", "bmp",  "webp", "raw", "cr2",  "cr3",
                                                 "nef",  "arw",  "dng",  "psd", "svg"};
constexpr std::string_view kVideoExtensions[] = {"mov", "mp4",  "m4v",  "avi", "mkv",  "mpg", "mpeg", "wmv",
                                                 "mts", "m2ts", "webm", "flv", "braw", "r3d", "mxf"};
constexpr std::string_view kAudioExtensions[] = {"mp3", "wav", "aif",  "aiff", "m4a",  "flac",
                                                 "aac", "ogg", "alac", "wma",  "opus", "caf"};
constexpr std::string_view kPdfExtensions[] = {"pdf"};
constexpr std::string_view kDocumentExtensions[] = {"doc", "docx", "pages", "txt",  "rtf",
                                                    "md",  "odt",  "xls",   "xlsx", "numbers",
                                                    "key", "ppt",  "pptx",  "csv",  "epub"};
constexpr std::string_view kArchiveExtensions[] = {"zip", "rar", "7z", "tar", "gz", "bz2", "xz", "tgz"};
constexpr std::string_view kCodeExtensions[] = {"swift", "c",    "h",    "m",   "cpp",  "py",   "js",
                                                "ts",    "html", "css",  "php", "java", "rb",   "go",
                                                "rs",    "sh",   "json", "xml", "yml",  "yaml", "sql"};
constexpr std::string_view kApplicationExtensions[] = {"app", "pkg", "exe", "msi"};
constexpr std::string_view kFontExtensions[] = {"ttf", "otf", "ttc", "woff", "woff2"};

// What decides when the content type does not: no extension stands in two sets.
constexpr std::pair<FileKind, Extensions> kExtensionSets[] = {
    {FileKind::image, kImageExtensions},       {FileKind::video, kVideoExtensions},
    {FileKind::audio, kAudioExtensions},       {FileKind::pdf, kPdfExtensions},
    {FileKind::document, kDocumentExtensions}, {FileKind::archive, kArchiveExtensions},
    {FileKind::code, kCodeExtensions},         {FileKind::application, kApplicationExtensions},
    {FileKind::font, kFontExtensions},
};

bool contains(Extensions set, std::string_view e) {
  return std::find(set.begin(), set.end(), e) != set.end();
}

// Extensions in the sets are ASCII, so ASCII folding is all that matching them needs.
std::string asciiLower(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
  return out;
}

}  // namespace

std::string_view rawValue(FileKind kind) { return info(kind).rawValue; }

std::optional<FileKind> fileKindFromRaw(std::string_view text) {
  for (const KindInfo& k : kKinds) {
    if (k.rawValue == text) return k.kind;
  }
  return std::nullopt;
}

std::string_view symbol(FileKind kind) { return info(kind).symbol; }

double hue(FileKind kind) { return info(kind).hue; }

FileKind classify(const std::optional<std::string>& mimeType, std::string_view ext, bool isDirectory,
                  bool isPackage) {
  const std::string e = asciiLower(ext);
  if (isDirectory && !isPackage) return FileKind::folder;
  if (contains(kDiskImageExtensions, e)) return FileKind::diskImage;
  if (mimeType) {
    for (const auto& [check, kind] : kTypeChecks) {
      if (conformsTo(*mimeType, check)) return kind;
    }
  }
  for (const auto& [kind, set] : kExtensionSets) {
    if (contains(set, e)) return kind;
  }
  return FileKind::other;
}

}  // namespace orrelin
