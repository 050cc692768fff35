// Name-based MIME guessing through GIO, and the table that maps classification checks to MIME families.
#include "scan/content_type.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>
#include <utility>

namespace orrelin {
namespace {

struct GFreeDeleter {
  void operator()(gchar* p) const { g_free(p); }
};
using GCharPtr = std::unique_ptr<gchar, GFreeDeleter>;

std::string asciiLower(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c); });
  return out;
}

using Names = std::span<const std::string_view>;

// A set of types: those that are, or inherit from, one of `supertypes` (shared-mime-info's
// sub-class-of, aliases resolved), and those whose name starts with one of `prefixes`.
struct Members {
  Names supertypes;
  Names prefixes;
};
using MemberSets = std::span<const Members>;

// One family: the types in any of `members`, less those in any of `except`.
struct Family {
  ContentCheck check;
  MemberSets members;
  MemberSets except;
};

// Programs and installable packages. ELF and PE executables are listed under both their older and
// newer database names so that either version of shared-mime-info answers.
constexpr std::string_view kApplicationTypes[] = {
    "application/x-executable",
    "application/x-pie-executable",
    "application/x-ms-dos-executable",
    "application/x-msdownload",
    "application/vnd.microsoft.portable-executable",
    "application/x-msi",
    "application/vnd.debian.binary-package",
    "application/x-rpm",
    "application/vnd.flatpak",
    "application/vnd.snap",
    "application/vnd.appimage",
    "application/x-iso9660-appimage",
    "application/vnd.android.package-archive",
    // xar is, in practice, the container of a Mac installer package (.pkg).
    "application/x-xar",
};

constexpr std::string_view kPlainTextTypes[] = {"text/plain"};

constexpr std::string_view kPdfTypes[] = {"application/pdf"};

// Drawings the database files under application/.
constexpr std::string_view kImageTypes[] = {"application/illustrator", "application/x-krita"};
constexpr std::string_view kImagePrefixes[] = {"image/"};

// Video containers the database files under application/.
constexpr std::string_view kMovieTypes[] = {"application/mxf", "application/vnd.rn-realmedia",
                                            "application/vnd.ms-asf"};
constexpr std::string_view kMoviePrefixes[] = {"video/"};

constexpr std::string_view kAudioPrefixes[] = {"audio/"};

// Compressed tars (x-compressed-tar, x-xz-compressed-tar, ...) inherit from their compressor's type,
// and so do the many zip-based formats (jar, kmz, cbz, ...).
constexpr std::string_view kArchiveTypes[] = {
    "application/zip",
    "application/gzip",
    "application/x-tar",
    "application/x-ustar",
    "application/x-7z-compressed",
    "application/vnd.rar",
    "application/x-bzip",
    "application/x-bzip2",
    "application/x-xz",
    "application/zstd",
    "application/x-lzip",
    "application/x-lzma",
    "application/x-lz4",
    "application/x-lzop",
    "application/x-lrzip",
    "application/x-compress",
    "application/x-cpio",
    "application/x-archive",
    "application/vnd.ms-cab-compressed",
    "application/x-stuffit",
    "application/x-lha",
    "application/x-lhz",
    "application/x-arj",
    "application/x-ace",
    "application/x-alz",
    "application/x-arc",
    "application/x-zoo",
};

constexpr std::string_view kFontTypes[] = {"application/vnd.ms-fontobject"};
constexpr std::string_view kFontPrefixes[] = {"font/", "application/x-font-"};

// Languages people write programs, build files and structured data in; every XML and JSON format
// inherits from the first two. HTML and the other markup for people to read are not here on purpose:
// they are documents, as on a Mac, where HTML is text and not source code.
constexpr std::string_view kSourceCodeTypes[] = {
    // Data languages read by programs.
    "application/json",
    "application/xml",
    "application/x-yaml",
    "application/toml",
    // Scripts.
    "application/x-shellscript",
    "application/x-csh",
    "application/ecmascript",
    "application/javascript",
    "application/x-perl",
    "application/x-ruby",
    "application/x-php",
    "text/x-python",
    "text/x-python3",
    "application/x-awk",
    "text/x-tcl",
    "text/x-lua",
    "text/x-groovy",
    "application/x-m4",
    "text/vbscript",
    "application/vnd.coffeescript",
    "application/x-asp",
    "application/sql",
    "text/x-matlab",
    // Compiled languages.
    "text/x-csrc",
    "text/x-chdr",
    "text/x-c++src",
    "text/x-c++hdr",
    "text/x-objcsrc",
    "text/x-objc++src",
    "text/x-java",
    "text/x-csharp",
    "text/x-go",
    "text/rust",
    "text/x-swift",
    "text/x-kotlin",
    "text/x-scala",
    "text/x-dart",
    "text/x-haskell",
    "text/x-ocaml",
    "text/x-erlang",
    "text/x-elixir",
    "text/x-crystal",
    "text/x-pascal",
    "text/x-fortran",
    "text/x-adasrc",
    "text/x-cobol",
    "text/x-common-lisp",
    "text/x-scheme",
    "text/x-vala",
    "text/x-qml",
    "text/x-vhdl",
    "text/x-verilog",
    // Style sheets and build files.
    "text/css",
    "text/x-scss",
    "text/x-sass",
    "text/x-makefile",
    "text/x-cmake",
    "text/x-meson",
};

// Word-processor, spreadsheet, presentation and e-book formats. Many are zip or XML inside, so the
// archive and source-code families except them.
constexpr std::string_view kOfficeTypes[] = {
    "application/rtf",
    "application/msword",
    "application/epub+zip",
    "application/x-mobipocket-ebook",
    "application/vnd.amazon.mobi8-ebook",
    "application/x-fictionbook+xml",
    "application/vnd.apple.pages",
    "application/vnd.apple.numbers",
    "application/vnd.apple.keynote",
    "application/vnd.wordperfect",
    "application/vnd.ms-works",
    "application/x-mswrite",
    "application/x-abiword",
    "application/x-gnumeric",
    "application/oxps",
    "application/vnd.ms-xpsdocument",
};
constexpr std::string_view kOfficePrefixes[] = {
    "application/vnd.oasis.opendocument.",
    "application/vnd.openxmlformats-officedocument.",
    "application/vnd.sun.xml.",
    "application/vnd.stardivision.",
    "application/vnd.ms-word",
    "application/vnd.ms-excel",
    "application/vnd.ms-powerpoint",
};

constexpr Members kApplication[] = {{kApplicationTypes, {}}};
constexpr Members kPlainText[] = {{kPlainTextTypes, {}}};
constexpr Members kPdf[] = {{kPdfTypes, {}}};
constexpr Members kImage[] = {{kImageTypes, kImagePrefixes}};
constexpr Members kMovie[] = {{kMovieTypes, kMoviePrefixes}};
constexpr Members kAudio[] = {{{}, kAudioPrefixes}};
constexpr Members kArchive[] = {{kArchiveTypes, {}}};
constexpr Members kFont[] = {{kFontTypes, kFontPrefixes}};
constexpr Members kSourceCode[] = {{kSourceCodeTypes, {}}};
constexpr Members kOffice[] = {{kOfficeTypes, kOfficePrefixes}};
constexpr Members kTextAndOffice[] = {{kPlainTextTypes, {}}, {kOfficeTypes, kOfficePrefixes}};

// Indexed by ContentCheck. Scripts inherit from application/x-executable in the database, which is why
// text is excepted from applications: they are source code here.
constexpr std::array<Family, 9> kFamilies = {{
    {ContentCheck::application, kApplication, kPlainText},
    {ContentCheck::pdf, kPdf, {}},
    {ContentCheck::image, kImage, {}},
    {ContentCheck::movie, kMovie, kAudio},
    {ContentCheck::audio, kAudio, {}},
    {ContentCheck::archive, kArchive, kOffice},
    {ContentCheck::font, kFont, {}},
    {ContentCheck::sourceCode, kSourceCode, kOffice},
    {ContentCheck::text, kTextAndOffice, {}},
}};

constexpr bool familiesIndexedByCheck() {
  for (size_t i = 0; i < kFamilies.size(); ++i) {
    if (static_cast<size_t>(kFamilies[i].check) != i) return false;
  }
  return true;
}
static_assert(familiesIndexedByCheck(), "kFamilies must list the checks in declaration order");

// `type` is a canonical name (see canonicalName).
bool isMember(const std::string& type, MemberSets sets) {
  const auto inherits = [&](std::string_view super) {
    return g_content_type_is_a(type.c_str(), std::string(super).c_str());
  };
  const auto named = [&](std::string_view prefix) { return type.starts_with(prefix); };
  return std::any_of(sets.begin(), sets.end(), [&](const Members& m) {
    return std::any_of(m.supertypes.begin(), m.supertypes.end(), inherits) ||
           std::any_of(m.prefixes.begin(), m.prefixes.end(), named);
  });
}

// Where several types claim a name's extension at the same weight, GIO's pick among them is arbitrary;
// these are the meanings such names have on nearly every drive.
constexpr std::pair<std::string_view, std::string_view> kPreferredOnTie[] = {
    {"otf", "font/otf"},  // Otherwise an OpenDocument formula template, and every font a document.
};

// The database's own name for `mimeType`: lower-cased (MIME names are case-insensitive) and unaliased,
// so that prefixes see "application/vnd.rar" when given "application/x-rar".
std::string canonicalName(std::string_view mimeType) {
  const std::string lowered = asciiLower(mimeType);
  GCharPtr unaliased(g_content_type_from_mime_type(lowered.c_str()));
  return unaliased ? std::string(unaliased.get()) : lowered;
}

// Bit i set when `mimeType` belongs to the family of ContentCheck i.
uint32_t computeFamilyMask(std::string_view mimeType) {
  if (mimeType.empty()) return 0;
  const std::string type = canonicalName(mimeType);
  if (g_content_type_is_unknown(type.c_str())) return 0;
  uint32_t mask = 0;
  for (const Family& family : kFamilies) {
    if (isMember(type, family.members) && !isMember(type, family.except)) {
      mask |= 1u << static_cast<unsigned>(family.check);
    }
  }
  return mask;
}

// Placing a type takes some hundred database look-ups, each under GIO's lock (tens of microseconds in
// all), while a scan asks about the same few hundred types for millions of entries: so each type's
// answer is kept for the life of the process. The bound only guards against a stream of nonsense types.
uint32_t familyMask(std::string_view mimeType) {
  static std::mutex mu;
  static std::unordered_map<std::string, uint32_t> cache;  // Under mu.
  constexpr size_t kMaxCached = 4096;
  std::string key(mimeType);
  {
    std::lock_guard lock(mu);
    if (auto it = cache.find(key); it != cache.end()) return it->second;
  }
  const uint32_t mask = computeFamilyMask(mimeType);
  std::lock_guard lock(mu);
  if (cache.size() >= kMaxCached) cache.clear();
  cache.emplace(std::move(key), mask);
  return mask;
}

}  // namespace

std::optional<std::string> contentTypeForName(std::string_view fileName) {
  if (fileName.empty()) return std::nullopt;
  const std::string name(fileName);
  // `uncertain` only says that the name matched more than one glob: GIO then returns the heaviest
  // match (text/html over application/xhtml+xml for "x.html"), which is still the best guess a name
  // can give. Dropping those would lose ".py", ".json", ".html" and ".iso".
  gboolean uncertain = FALSE;
  GCharPtr type(g_content_type_guess(name.c_str(), /*data=*/nullptr, /*data_size=*/0, &uncertain));
  if (!type || g_content_type_is_unknown(type.get())) return std::nullopt;
  if (uncertain) {
    const size_t dot = name.rfind('.');
    const std::string ext = dot == std::string::npos ? std::string() : asciiLower(name.substr(dot + 1));
    for (const auto& [tiedExt, preferred] : kPreferredOnTie) {
      if (ext == tiedExt) return std::string(preferred);
    }
  }
  GCharPtr mime(g_content_type_get_mime_type(type.get()));
  if (!mime) return std::nullopt;
  return std::string(mime.get());
}

bool conformsTo(std::string_view mimeType, ContentCheck check) {
  return (familyMask(mimeType) >> static_cast<unsigned>(check)) & 1u;
}

bool isPackageExtension(std::string_view ext) {
  static constexpr std::string_view kPackageExtensions[] = {
      "app",       "bundle",  "framework", "plugin",    "kext",         "appex",
      "pages",     "numbers", "key",       "rtfd",      "sparsebundle", "photoslibrary",
      "fcpbundle", "logicx",  "band",      "xcarchive", "playground",
  };
  const std::string e = asciiLower(ext);
  return std::find(std::begin(kPackageExtensions), std::end(kPackageExtensions), e) !=
         std::end(kPackageExtensions);
}

}  // namespace orrelin
