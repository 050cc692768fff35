// Tests of FileKind: classification of real names through the installed shared-mime-info database,
// the folder and package rules, the order of the rules, and the stored names.
#include "scan/file_kind.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "scan/content_type.h"

namespace orrelin {
namespace {

// The extension as the scan worker takes it: after the last dot, nothing when there is none.
std::string extensionOf(const std::string& name) {
  const size_t dot = name.rfind('.');
  return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

TEST(FileKindTest, FileNamesClassifyThroughTheirGuessedType) {
  struct Case {
    std::string name;
    std::string mime;  // Empty when the name should give no type.
    FileKind kind;
  };
  const std::vector<Case> cases = {
      {"IMG_0001.jpg", "image/jpeg", FileKind::image},
      {"IMG_0001.JPG", "image/jpeg", FileKind::image},
      {"holiday.mov", "video/quicktime", FileKind::video},
      {"song.mp3", "audio/mpeg", FileKind::audio},
      {"song.ogg", "audio/ogg", FileKind::audio},
      {"paper.pdf", "application/pdf", FileKind::pdf},
      {"letter.docx", "application/vnd.openxmlformats-officedocument.wordprocessingml.document",
       FileKind::document},
      {"notes.md", "text/markdown", FileKind::document},
      {"table.csv", "text/csv", FileKind::document},
      {"photos.zip", "application/zip", FileKind::archive},
      {"backup.tar.gz", "application/x-compressed-tar", FileKind::archive},
      {"Inter.ttf", "font/ttf", FileKind::font},
      {"Inter.OTF", "font/otf", FileKind::font},  // Tied in the database with an ODF formula template.
      {"tool.py", "text/x-python", FileKind::code},
      {"main.c", "text/x-csrc", FileKind::code},
      {"data.json", "application/json", FileKind::code},
      {"ci.yml", "application/x-yaml", FileKind::code},
      {"Makefile", "text/x-makefile", FileKind::code},
      {"README", "text/x-readme", FileKind::document},
      {"Setup.exe", "application/x-ms-dos-executable", FileKind::application},
      {"Installer.pkg", "application/x-xar", FileKind::application},
      {"disc.iso", "application/x-cd-image", FileKind::diskImage},
      {"Install.dmg", "application/x-apple-diskimage", FileKind::diskImage},
      {"drawing.cdr", "application/vnd.corel-draw", FileKind::diskImage},  // The extension comes first.
      // Families that overlap in the database, decided by the order of the checks.
      {"run.sh", "application/x-shellscript", FileKind::code},     // Also an executable.
      {"logo.svg", "image/svg+xml", FileKind::image},              // Also XML.
      {"track.wma", "audio/x-ms-wma", FileKind::audio},            // Also ASF, a video container.
      {"novel.epub", "application/epub+zip", FileKind::document},  // Also a zip.
      {"deck.key", "application/vnd.apple.keynote", FileKind::document},
      {"game.apk", "application/vnd.android.package-archive", FileKind::application},
      {"lib.jar", "application/x-java-archive", FileKind::archive},
      // A text type that is neither code nor data outranks the code extension.
      {"index.html", "text/html", FileKind::document},
      {"launcher.desktop", "application/x-desktop", FileKind::document},
      // Names the database does not know fall back to the extension.
      {"App.swift", "", FileKind::code},
      {"clip.braw", "", FileKind::video},
      {"Backup.sparseimage", "", FileKind::diskImage},
      {"noextension", "", FileKind::other},
      {"blob.qqqzz", "", FileKind::other},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::optional<std::string> mime = contentTypeForName(c.name);
    EXPECT_EQ(mime.value_or(""), c.mime);
    EXPECT_EQ(rawValue(classify(mime, extensionOf(c.name), /*isDirectory=*/false, /*isPackage=*/false)),
              rawValue(c.kind));
  }
}

TEST(FileKindTest, FoldersAndPackages) {
  struct Case {
    std::optional<std::string> mime;
    std::string ext;
    bool isDirectory;
    bool isPackage;
    FileKind kind;
  };
  const std::vector<Case> cases = {
      // A plain folder is a folder whatever its name or type says.
      {"application/zip", "zip", true, false, FileKind::folder},
      {"inode/directory", "app", true, false, FileKind::folder},
      {std::nullopt, "sparsebundle", true, false, FileKind::folder},
      // A package counted as a file goes by its extension; a folder's type conforms to nothing.
      {std::nullopt, "sparsebundle", true, true, FileKind::diskImage},
      {"inode/directory", "SparseBundle", true, true, FileKind::diskImage},
      {std::nullopt, "pages", true, true, FileKind::document},
      {"inode/directory", "pages", true, true, FileKind::document},
      {std::nullopt, "app", true, true, FileKind::application},
      {"inode/directory", "APP", true, true, FileKind::application},
      {std::nullopt, "photoslibrary", true, true, FileKind::other},
      {std::nullopt, "", true, true, FileKind::other},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mime.value_or("(none)") + " ." + c.ext + (c.isPackage ? " package" : " folder"));
    EXPECT_EQ(rawValue(classify(c.mime, c.ext, c.isDirectory, c.isPackage)), rawValue(c.kind));
  }
}

TEST(FileKindTest, TypeOutranksExtensionExceptForDiskImages) {
  struct Case {
    std::optional<std::string> mime;
    std::string ext;
    FileKind kind;
  };
  const std::vector<Case> cases = {
      {std::nullopt, "html", FileKind::code},
      {"text/plain", "html", FileKind::document},
      {"image/png", "mp3", FileKind::image},
      {"application/zip", "dmg", FileKind::diskImage},
      {"application/x-cd-image", "ISO", FileKind::diskImage},
      // A type no check accepts leaves the decision to the extension.
      {"application/x-cd-image", "bin", FileKind::other},
      {"application/x-sharedlib", "so", FileKind::other},
      {"application/octet-stream", "jpg", FileKind::image},
      {"", "JPEG", FileKind::image},
      {"not a type", "woff2", FileKind::font},
      // Types are matched whatever their case or alias.
      {"APPLICATION/PDF", "", FileKind::pdf},
      {"application/x-rar", "", FileKind::archive},
      {"application/x-font-ttf", "", FileKind::font},
      // Without a type: one extension from each set, in any case.
      {std::nullopt, "Cr3", FileKind::image},
      {std::nullopt, "M2TS", FileKind::video},
      {std::nullopt, "opus", FileKind::audio},
      {std::nullopt, "PDF", FileKind::pdf},
      {std::nullopt, "numbers", FileKind::document},
      {std::nullopt, "tgz", FileKind::archive},
      {std::nullopt, "yaml", FileKind::code},
      {std::nullopt, "msi", FileKind::application},
      {std::nullopt, "ttc", FileKind::font},
      {std::nullopt, "toast", FileKind::diskImage},
      {std::nullopt, "", FileKind::other},
      {std::nullopt, "bak", FileKind::other},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mime.value_or("(none)") + " ." + c.ext);
    EXPECT_EQ(rawValue(classify(c.mime, c.ext, /*isDirectory=*/false, /*isPackage=*/false)),
              rawValue(c.kind));
  }
}

// The display names are stored in catalogs, so a renamed kind would orphan existing rows.
TEST(FileKindTest, StoredNamesRoundTrip) {
  std::vector<std::string_view> names;
  std::set<std::string_view> symbols;
  for (FileKind kind : kAllFileKinds) {
    names.push_back(rawValue(kind));
    symbols.insert(symbol(kind));
    EXPECT_EQ(fileKindFromRaw(rawValue(kind)), kind);
    EXPECT_GE(hue(kind), 0.0);
    EXPECT_LE(hue(kind), 1.0);
  }
  EXPECT_EQ(names,
            (std::vector<std::string_view>{"Folder", "Image", "Video", "Audio", "PDF", "Document", "Archive",
                                           "Code", "Application", "Font", "Disk Image", "Other"}));
  EXPECT_EQ(symbols.size(), kAllFileKinds.size());

  for (std::string_view text :
       {"", "image", "IMAGE", "Pdf", "Disk image", "DiskImage", "Folder ", "Unknown"}) {
    EXPECT_EQ(fileKindFromRaw(text), std::nullopt) << "'" << text << "'";
  }
}

}  // namespace
}  // namespace orrelin
