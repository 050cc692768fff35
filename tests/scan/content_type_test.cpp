// Tests of the MIME families against the installed shared-mime-info database, and of package names.
#include "scan/content_type.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace orrelin {
namespace {

using enum ContentCheck;
constexpr ContentCheck kAllChecks[] = {application, pdf,  image,      movie, audio,
                                       archive,     font, sourceCode, text};

std::set<ContentCheck> checksPassed(const std::string& mime) {
  std::set<ContentCheck> passed;
  for (ContentCheck check : kAllChecks) {
    if (conformsTo(mime, check)) passed.insert(check);
  }
  return passed;
}

// Every family a type belongs to, so that a type slipping into an extra family is caught too: the
// order of the checks only works if the overlaps are the intended ones.
TEST(ContentTypeTest, FamiliesOfTypes) {
  struct Case {
    std::string mime;
    std::set<ContentCheck> checks;
  };
  const std::vector<Case> cases = {
      {"application/x-ms-dos-executable", {application}},
      {"application/x-executable", {application}},
      {"application/vnd.appimage", {application}},
      {"application/vnd.android.package-archive", {application, archive}},
      {"application/pdf", {pdf}},
      {"image/jpeg", {image}},
      {"image/svg+xml", {image, sourceCode, text}},
      {"application/illustrator", {image}},
      {"video/mp4", {movie}},
      {"application/mxf", {movie}},
      {"audio/flac", {audio}},
      {"audio/x-ms-wma", {audio}},
      {"application/zip", {archive}},
      {"application/x-xz-compressed-tar", {archive}},
      {"application/x-rar", {archive}},
      {"application/x-java-archive", {archive}},
      {"font/woff2", {font}},
      {"application/x-font-type1", {font, text}},
      // Scripts inherit from application/x-executable, but are not programs here.
      {"application/x-shellscript", {sourceCode, text}},
      {"text/x-python", {sourceCode, text}},
      {"application/json", {sourceCode, text}},
      {"application/xml", {sourceCode, text}},
      {"text/css", {sourceCode, text}},
      {"text/html", {text}},
      {"text/markdown", {text}},
      {"application/rtf", {text}},
      {"application/x-desktop", {text}},
      // Office documents are zip or XML inside, but neither archives nor code.
      {"application/vnd.openxmlformats-officedocument.presentationml.presentation", {text}},
      {"application/vnd.oasis.opendocument.spreadsheet", {text}},
      {"application/vnd.oasis.opendocument.text-flat-xml", {text}},
      {"application/vnd.ms-excel.sheet.macroEnabled.12", {text}},
      {"application/epub+zip", {text}},
      {"application/vnd.apple.numbers", {text}},
      // Known to the database, but in no family.
      {"application/x-sharedlib", {}},
      {"application/x-apple-diskimage", {}},
      {"inode/directory", {}},
      // Not types at all.
      {"application/octet-stream", {}},
      {"", {}},
      {"nonsense/thing", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mime);
    EXPECT_EQ(checksPassed(c.mime), c.checks);
  }
}

TEST(ContentTypeTest, NamesWithoutAKnownTypeGiveNothing) {
  for (const char* name : {"", "noextension", "archive.qqqzz", "LICENSE", "name.", ".bashrc"}) {
    EXPECT_EQ(contentTypeForName(name), std::nullopt) << "'" << name << "'";
  }
}

TEST(ContentTypeTest, PackageExtensions) {
  for (const char* ext : {"app", "APP", "Pages", "numbers", "key", "rtfd", "sparsebundle", "photoslibrary",
                          "fcpbundle", "logicx", "xcarchive", "playground", "framework", "kext"}) {
    EXPECT_TRUE(isPackageExtension(ext)) << ext;
  }
  for (const char* ext : {"", "zip", "apps", "ap", "sparseimage", "dmg", "docx", "app "}) {
    EXPECT_FALSE(isPackageExtension(ext)) << "'" << ext << "'";
  }
}

}  // namespace
}  // namespace orrelin
