// Tests of the settings file: typed reads, write-through, broken files and concurrent writers.
#include "core/user_defaults.h"

#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::TempDir;
using testing::writeFile;

class UserDefaultsTest : public ::testing::Test {
 protected:
  UserDefaultsTest() {
    m_env.set("HOME", (m_temp.path() / "home").string());
    m_env.set("XDG_CONFIG_HOME", (m_temp.path() / "config").string());
  }

  fs::path folder() const { return m_temp.path() / "config" / "TVRL Orrelin"; }

  // The file as another program would read it.
  json onDisk() const {
    std::ifstream in(UserDefaults::filePath());
    return json::parse(in);
  }

  TempDir m_temp;
  testing::ScopedEnv m_env;
};

TEST_F(UserDefaultsTest, FileLiesUnderTheConfigFolder) {
  EXPECT_EQ(UserDefaults::filePath(), folder() / "defaults.json");
  testing::ScopedEnv env;
  env.set("XDG_CONFIG_HOME", std::nullopt);
  EXPECT_EQ(UserDefaults::filePath(), m_temp.path() / "home" / ".config" / "TVRL Orrelin" / "defaults.json");
}

TEST_F(UserDefaultsTest, ValuesAreWrittenThroughAndReadBack) {
  EXPECT_FALSE(UserDefaults::get("theme").has_value());
  const json scanDefaults = {{"thumbnails", true}, {"checksums", false}, {"skip", json::array({".git"})}};
  ASSERT_TRUE(UserDefaults::set("theme", "Solar Flare"));
  ASSERT_TRUE(UserDefaults::set("zoom", 1.25));
  ASSERT_TRUE(UserDefaults::set("scanDefaults", scanDefaults));

  json stored = onDisk();
  EXPECT_EQ(stored, (json{{"theme", "Solar Flare"}, {"zoom", 1.25}, {"scanDefaults", scanDefaults}}));
  EXPECT_EQ(UserDefaults::data("scanDefaults"), scanDefaults);

  // Each get reads the file, so a change made by another process is seen at once.
  writeFile(UserDefaults::filePath(), R"({"theme": "Mono"})");
  EXPECT_EQ(UserDefaults::string("theme"), "Mono");
  EXPECT_FALSE(UserDefaults::get("zoom").has_value());

  ASSERT_TRUE(UserDefaults::set("zoom", 2));
  ASSERT_TRUE(UserDefaults::remove("theme"));
  ASSERT_TRUE(UserDefaults::remove("never set"));
  ASSERT_TRUE(UserDefaults::set("backupKeep", nullptr));  // Null removes, as it does on macOS.
  EXPECT_EQ(onDisk(), (json{{"zoom", 2}}));
}

TEST_F(UserDefaultsTest, TypedReadersConvertLikeTheMacDefaults) {
  struct Case {
    const char* key;
    json value;
    bool boolean;
    int64_t integer;
    double real;
    std::optional<std::string> string;
    bool isData;
  };
  const Case cases[] = {
      {"true", true, true, 1, 1, std::nullopt, false},
      {"false", false, false, 0, 0, std::nullopt, false},
      {"zero", 0, false, 0, 0, std::nullopt, false},
      {"seven", 7, true, 7, 7, std::nullopt, false},
      {"fraction", 2.9, true, 2, 2.9, std::nullopt, false},
      {"negative", -2.9, true, -2, -2.9, std::nullopt, false},
      {"huge", 1e300, true, 0, 1e300, std::nullopt, false},
      {"unsigned", json(uint64_t{18'000'000'000'000'000'000u}), true, 0, 1.8e19, std::nullopt, false},
      {"text", "yes", false, 0, 0, "yes", false},
      {"numeric text", "12", false, 0, 0, "12", false},
      {"object", json{{"a", 1}}, false, 0, 0, std::nullopt, true},
      {"array", json::array({1, 2}), false, 0, 0, std::nullopt, true},
  };
  for (const Case& c : cases) ASSERT_TRUE(UserDefaults::set(c.key, c.value)) << c.key;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.key);
    EXPECT_EQ(UserDefaults::boolean(c.key), c.boolean);
    EXPECT_EQ(UserDefaults::integer(c.key), c.integer);
    EXPECT_EQ(UserDefaults::real(c.key), c.real);
    EXPECT_EQ(UserDefaults::string(c.key), c.string);
    EXPECT_EQ(UserDefaults::data(c.key).has_value(), c.isData);
  }
  EXPECT_FALSE(UserDefaults::boolean("absent"));
  EXPECT_EQ(UserDefaults::integer("absent"), 0);
  EXPECT_EQ(UserDefaults::real("absent"), 0);
  EXPECT_FALSE(UserDefaults::string("absent").has_value());
  EXPECT_FALSE(UserDefaults::data("absent").has_value());
}

TEST_F(UserDefaultsTest, BrokenFileReadsEmptyAndIsReplacedBySet) {
  for (const char* broken : {"", "not json", "{\"theme\": ", "[1, 2]", "\"text\"", "null"}) {
    SCOPED_TRACE(broken);
    writeFile(UserDefaults::filePath(), broken);
    EXPECT_FALSE(UserDefaults::get("theme").has_value());
    EXPECT_FALSE(UserDefaults::boolean("autoBackup"));
    ASSERT_TRUE(UserDefaults::set("autoBackup", true));
    EXPECT_TRUE(UserDefaults::boolean("autoBackup"));
    EXPECT_EQ(onDisk(), (json{{"autoBackup", true}}));
  }
}

TEST_F(UserDefaultsTest, UnwritableFolderFailsWithoutHarm) {
  // A file where the settings folder should be: nothing can be written, and nothing throws.
  writeFile(folder(), "in the way");
  EXPECT_FALSE(UserDefaults::set("theme", "Mono"));
  EXPECT_FALSE(UserDefaults::get("theme").has_value());
}

TEST_F(UserDefaultsTest, WritesLeaveNoTemporaryFiles) {
  for (int i = 0; i < 20; ++i) ASSERT_TRUE(UserDefaults::set("zoom", i));
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder()))
    names.push_back(entry.path().filename().string());
  EXPECT_EQ(names, std::vector<std::string>{"defaults.json"});
}

TEST_F(UserDefaultsTest, ConcurrentSetsLoseNoKey) {
  constexpr int kThreads = 8;
  constexpr int kKeysEach = 25;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      for (int k = 0; k < kKeysEach; ++k)
        UserDefaults::set("key " + std::to_string(t) + "/" + std::to_string(k), t * 100 + k);
    });
  }
  for (auto& thread : threads) thread.join();
  json stored = onDisk();
  EXPECT_EQ(stored.size(), std::size_t{kThreads * kKeysEach});
  for (int t = 0; t < kThreads; ++t)
    for (int k = 0; k < kKeysEach; ++k)
      EXPECT_EQ(UserDefaults::integer("key " + std::to_string(t) + "/" + std::to_string(k)), t * 100 + k);
}

}  // namespace
}  // namespace orrelin
