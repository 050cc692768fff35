// Scan options as stored settings, and scan result identifiers.
#include "scan/scan_records.h"

#include <gtest/gtest.h>

#include <set>

#include "core/user_defaults.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using nlohmann::json;

TEST(ScanOptions, JSONNeedsAllFiveBooleanKeys) {
  ScanOptions options{.includeHidden = true, .metadata = false, .thumbnails = true, .hashes = true,
                      .treatPackagesAsFiles = false};
  const json encoded = options.toJSON();
  EXPECT_EQ(encoded.dump(), R"({"hashes":true,"includeHidden":true,"metadata":false,"thumbnails":true,)"
                            R"("treatPackagesAsFiles":false})");
  EXPECT_EQ(ScanOptions::fromJSON(encoded), options);

  json older = encoded;
  older.erase("treatPackagesAsFiles");  // Written by a build that knew one option fewer.
  EXPECT_EQ(ScanOptions::fromJSON(older), std::nullopt);
  json wrongType = encoded;
  wrongType["hashes"] = 1;
  EXPECT_EQ(ScanOptions::fromJSON(wrongType), std::nullopt);
  EXPECT_EQ(ScanOptions::fromJSON(json::array()), std::nullopt);
  json extra = encoded;
  extra["future"] = "ignored";
  EXPECT_EQ(ScanOptions::fromJSON(extra), options);
}

TEST(ScanOptions, DefaultsAreStoredUnderTheirKeyAndFallBackSilently) {
  testing::TempDir dir;
  testing::ScopedEnv env;
  env.set("XDG_CONFIG_HOME", dir.path().string());
  EXPECT_EQ(ScanOptions::defaults(), ScanOptions{});

  ScanOptions mine;
  mine.hashes = true;
  mine.includeHidden = true;
  ASSERT_TRUE(ScanOptions::setDefaults(mine));
  EXPECT_EQ(ScanOptions::defaults(), mine);
  EXPECT_EQ(UserDefaults::get("scanDefaults"), mine.toJSON());

  ASSERT_TRUE(UserDefaults::set("scanDefaults", json{{"includeHidden", true}}));
  EXPECT_EQ(ScanOptions::defaults(), ScanOptions{});
  ASSERT_TRUE(UserDefaults::set("scanDefaults", "not a document"));
  EXPECT_EQ(ScanOptions::defaults(), ScanOptions{});
}

TEST(ScanResult, IdentifiersAreFreshUUIDs) {
  std::set<std::string> ids;
  for (int i = 0; i < 100; ++i) ids.insert(ScanResult::newID());
  EXPECT_EQ(ids.size(), 100u);
  const std::string id = *ids.begin();
  ASSERT_EQ(id.size(), 36u);
  EXPECT_EQ(id[8], '-');
  EXPECT_EQ(id[14], '4');  // Version 4: random.
  EXPECT_EQ(id.find_first_not_of("0123456789ABCDEF-"), std::string::npos);
}

}  // namespace
}  // namespace orrelin
