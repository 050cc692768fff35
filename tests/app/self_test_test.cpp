// The built-in self-test run for real: it passes on this build, leaves the environment as it found it, and
// reports the checks that fail.
#include "app/self_test.h"

#include <stdlib.h>

#include <gtest/gtest.h>

#include <sstream>

#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::ScopedEnv;
using testing::TempDir;

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) out.push_back(line);
  return out;
}

TEST(SelfTest, PassesInAFolderOfItsOwnAndPutsTheEnvironmentBack) {
  TempDir base;
  ScopedEnv env;
  env.set("XDG_DATA_HOME", (base.path() / "users-data").string());
  env.set("XDG_CONFIG_HOME", std::nullopt);

  std::ostringstream out;
  int status = runSelfTest(out, base.path());
  auto printed = lines(out.str());
  EXPECT_EQ(status, 0) << out.str();
  ASSERT_GE(printed.size(), 7u) << out.str();
  for (size_t i = 0; i + 1 < printed.size(); ++i) EXPECT_TRUE(printed[i].starts_with("ok   ")) << printed[i];
  EXPECT_EQ(printed.back(), std::to_string(printed.size() - 1) + " passed, 0 failed");
  for (const char* name : {"ok   schema", "ok   scan", "ok   search", "ok   plan dry run", "ok   backup",
                           "ok   export and import"})
    EXPECT_NE(std::find(printed.begin(), printed.end(), name), printed.end()) << name << "\n" << out.str();

  EXPECT_EQ(std::string(::getenv("XDG_DATA_HOME")), (base.path() / "users-data").string());
  EXPECT_EQ(::getenv("XDG_CONFIG_HOME"), nullptr);
  // Nothing reached the user's folders, and the run cleaned up after itself.
  EXPECT_FALSE(fs::exists(base.path() / "users-data"));
  EXPECT_TRUE(fs::is_empty(base.path()));
}

TEST(SelfTest, ReportsEveryCheckThatFailsAndExitsWithOne) {
  // A base below a regular file cannot hold a folder, even for root.
  TempDir dir;
  testing::writeFile(dir.path() / "file", "x");
  ScopedEnv env;
  env.set("XDG_DATA_HOME", (dir.path() / "users-data").string());

  std::ostringstream out;
  int status = runSelfTest(out, dir.path() / "file");
  auto printed = lines(out.str());
  EXPECT_EQ(status, 1);
  ASSERT_FALSE(printed.empty());
  EXPECT_TRUE(printed.front().starts_with("FAIL temporary data folder: could not create a folder in"))
      << printed.front();
  EXPECT_TRUE(printed[1].starts_with("FAIL schema: ")) << printed[1];
  EXPECT_TRUE(printed[2].starts_with("FAIL scan: ")) << printed[2];
  EXPECT_EQ(printed.back(), "0 passed, " + std::to_string(printed.size() - 1) + " failed");
  EXPECT_FALSE(fs::exists(dir.path() / "users-data"));
  EXPECT_EQ(std::string(::getenv("XDG_DATA_HOME")), (dir.path() / "users-data").string());
}

}  // namespace
}  // namespace orrelin
