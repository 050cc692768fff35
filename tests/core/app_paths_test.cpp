// Tests of the data folder: where it lies, what is created when, and the copy from the former name.
#include "core/app_paths.h"

#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::readFile;
using testing::writeFile;

class AppPathsTest : public ::testing::Test {
 protected:
  AppPathsTest() {
    m_env.set("HOME", (m_temp.path() / "home").string());
    m_env.set("XDG_DATA_HOME", data().string());
  }

  fs::path data() const { return m_temp.path() / "data"; }

  TempDir m_temp;
  testing::ScopedEnv m_env;
};

TEST_F(AppPathsTest, FoldersAppearOnDemandAndComeBackWhenRemoved) {
  fs::path support = data() / "TVRL Orrelin";
  EXPECT_FALSE(fs::exists(data()));
  EXPECT_EQ(AppPaths::support(), support);
  EXPECT_TRUE(fs::is_directory(support));

  EXPECT_EQ(AppPaths::database(), support / "Catalogs.sqlite");
  EXPECT_FALSE(fs::exists(support / "Catalogs.sqlite"));
  EXPECT_FALSE(fs::exists(support / "Thumbnails"));
  EXPECT_FALSE(fs::exists(support / "Backups"));

  const std::pair<fs::path (*)(), const char*> subfolders[] = {{AppPaths::thumbnails, "Thumbnails"},
                                                               {AppPaths::backups, "Backups"},
                                                               {AppPaths::undoLogs, "Undo Logs"}};
  for (auto [folder, name] : subfolders) {
    EXPECT_EQ(folder(), support / name);
    EXPECT_TRUE(fs::is_directory(support / name)) << name;
    // Removed behind the program's back (the user cleaning up): asked again, it is back.
    fs::remove_all(data());
    EXPECT_EQ(folder(), support / name);
    EXPECT_TRUE(fs::is_directory(support / name)) << name;
  }
  EXPECT_EQ(AppPaths::thumbnailFile(12, 345), support / "Thumbnails" / "12" / "345.jpg");
}

TEST_F(AppPathsTest, BaseFolderFollowsXdgRules) {
  fs::path fallback = m_temp.path() / "home" / ".local" / "share" / "TVRL Orrelin";
  struct Case {
    std::optional<std::string> xdgDataHome;
    fs::path expected;
  };
  const Case cases[] = {
      {m_temp.file("elsewhere"), m_temp.path() / "elsewhere" / "TVRL Orrelin"},
      {std::nullopt, fallback},
      {"", fallback},
      {"relative/data", fallback},  // Relative values are invalid and ignored.
  };
  for (const Case& c : cases) {
    testing::ScopedEnv env;
    env.set("XDG_DATA_HOME", c.xdgDataHome);
    EXPECT_EQ(AppPaths::support(), c.expected) << c.xdgDataHome.value_or("(unset)");
    EXPECT_TRUE(fs::is_directory(c.expected));
  }
}

TEST_F(AppPathsTest, FailureToCreateStillGivesThePath) {
  writeFile(data(), "a file where the base folder should be");
  EXPECT_EQ(AppPaths::support(), data() / "TVRL Orrelin");
  EXPECT_EQ(AppPaths::backups(), data() / "TVRL Orrelin" / "Backups");
  EXPECT_FALSE(fs::exists(data() / "TVRL Orrelin"));
}

TEST_F(AppPathsTest, LegacyFolderIsCopiedAndKept) {
  fs::path legacy = data() / "Tavrel Orrelin";
  writeFile(legacy / "Catalogs.sqlite", "database");
  writeFile(legacy / "Thumbnails" / "3" / "7.jpg", "jpeg");
  fs::create_symlink("Thumbnails/3/7.jpg", legacy / "link");

  fs::path support = AppPaths::support();
  EXPECT_EQ(readFile(support / "Catalogs.sqlite"), "database");
  EXPECT_EQ(readFile(support / "Thumbnails" / "3" / "7.jpg"), "jpeg");
  ASSERT_TRUE(fs::is_symlink(support / "link"));
  EXPECT_EQ(fs::read_symlink(support / "link"), "Thumbnails/3/7.jpg");
  // The old folder stays for an older version of the program that may still use it.
  EXPECT_EQ(readFile(legacy / "Catalogs.sqlite"), "database");

  // Copied once: later changes to the old folder do not reach the new one.
  writeFile(legacy / "Catalogs.sqlite", "changed by the old version");
  EXPECT_EQ(readFile(AppPaths::database()), "database");
}

TEST_F(AppPathsTest, LegacyFolderIsIgnoredWhenTheNewOneExists) {
  writeFile(data() / "Tavrel Orrelin" / "Catalogs.sqlite", "old");
  writeFile(data() / "Tavrel Orrelin" / "only-in-old", "old");
  writeFile(data() / "TVRL Orrelin" / "Catalogs.sqlite", "new");

  EXPECT_EQ(readFile(AppPaths::database()), "new");
  EXPECT_FALSE(fs::exists(AppPaths::support() / "only-in-old"));
}

TEST_F(AppPathsTest, OnlyTvrlNamesHaveALegacyFolder) {
  writeFile(data() / "Tavrel Other" / "file", "old");
  writeFile(data() / "Tavrel TVRL Other" / "file", "old");
  EXPECT_EQ(AppPaths::tvrlAppFolder(data(), "Other"), data() / "Other");
  EXPECT_EQ(AppPaths::tvrlAppFolder(data(), "tvrl Other"), data() / "tvrl Other");
  EXPECT_FALSE(fs::exists(data() / "Other"));
  EXPECT_FALSE(fs::exists(data() / "tvrl Other"));

  EXPECT_EQ(AppPaths::tvrlAppFolder(data(), "TVRL Other"), data() / "TVRL Other");
  EXPECT_EQ(readFile(data() / "TVRL Other" / "file"), "old");
}

TEST_F(AppPathsTest, FailedLegacyCopyIsSwallowed) {
  // A FIFO cannot be copied, so the copy stops part way; the program carries on with what was made.
  fs::path legacy = data() / "Tavrel Orrelin";
  writeFile(legacy / "Catalogs.sqlite", "database");
  ASSERT_EQ(::mkfifo((legacy / "pipe").c_str(), 0600), 0);

  fs::path support;
  EXPECT_NO_THROW(support = AppPaths::support());
  EXPECT_EQ(support, data() / "TVRL Orrelin");
  EXPECT_TRUE(fs::is_directory(support));
  EXPECT_TRUE(fs::exists(legacy / "Catalogs.sqlite"));
}

}  // namespace
}  // namespace orrelin
