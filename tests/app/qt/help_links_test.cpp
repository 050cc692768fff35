// Where the user guide is found: installed beside the program, or in the source tree of a build folder.
#include "app/qt/help_links.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::writeFile;

TEST(HelpLinks, TheGuideIsFoundInstalledOrInTheSourceTreeOfABuild) {
  TempDir dir;
  const fs::path root = dir.path();

  // Installed: <prefix>/bin/orrelin and <prefix>/share/tvrl-orrelin/Help.html.
  writeFile(root / "usr/share/tvrl-orrelin/Help.html", "<html>");
  fs::create_directories(root / "usr/bin");
  EXPECT_EQ(HelpLinks::helpFile(root / "usr/bin"), root / "usr/share/tvrl-orrelin/Help.html");

  // A build folder outside the source tree, found through the cache of the build, from the program's own
  // folder and from a folder below it.
  writeFile(root / "src/data/Help.html", "<html>");
  writeFile(root / "out/CMakeCache.txt",
            "# comment\nCMAKE_BUILD_TYPE:STRING=Release\nCMAKE_HOME_DIRECTORY:INTERNAL=" +
                (root / "src").string() + "\n");
  fs::create_directories(root / "out/tests");
  EXPECT_EQ(HelpLinks::helpFile(root / "out"), root / "src/data/Help.html");
  EXPECT_EQ(HelpLinks::helpFile(root / "out/tests"), root / "src/data/Help.html");

  // A build folder inside the source tree, without a cache.
  writeFile(root / "tree/data/Help.html", "<html>");
  fs::create_directories(root / "tree/build");
  EXPECT_EQ(HelpLinks::helpFile(root / "tree/build"), root / "tree/data/Help.html");

  // Nowhere.
  fs::create_directories(root / "lonely/bin");
  EXPECT_EQ(HelpLinks::helpFile(root / "lonely/bin"), std::nullopt);
  EXPECT_EQ(HelpLinks::helpFile(fs::path()), std::nullopt);
  fs::remove(root / "src/data/Help.html");
  EXPECT_EQ(HelpLinks::helpFile(root / "out"), std::nullopt);
}

TEST(HelpLinks, ThisBuildFindsItsRealGuide) {
  // These tests run from the build folder, so the guide is the one in this source tree.
  auto file = HelpLinks::helpFile(HelpLinks::executableDir());
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->filename(), "Help.html");
  std::string html = testing::readFile(*file);
  for (const char* part : {"<!DOCTYPE html>", "<title>TVRL Orrelin Help</title>", "id=\"backups\"",
                           "id=\"search\"", "id=\"duplicates\"", "id=\"exports\"", "id=\"auto\"", "</html>"})
    EXPECT_NE(html.find(part), std::string::npos) << part;
}

}  // namespace
}  // namespace orrelin
