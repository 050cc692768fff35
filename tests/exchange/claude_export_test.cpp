// The export for Claude on real scanned catalogs: the bundle and its files, the JSON Lines records, the
// README's example and the plan template, the folder's name, and what a failed write leaves behind.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "comma_locale.h"
#include "exchange/claude_fixture.h"
#include "organize/export_error.h"
#include "search/search_fixture.h"
#include "store/fmt.h"

namespace orrelin {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;
using testing::ClaudeExportTest;
using testing::readFile;

TEST_F(ClaudeExportTest, WritesTheFiveFilesInOrderAndOneJsonLinePerRecord) {
  put("Music/House/01 Track.mp3", 300);
  put("Music/line\nbreak.mp3", 20);
  put("notes", 5);
  folder("Empty");
  Catalog c = scanTree();
  std::vector<FileRecord> rows = records(c);
  ASSERT_EQ(rows.size(), 6u);

  std::vector<fs::path> files = exportBundle(c);
  ASSERT_EQ(files.size(), 5u);
  for (size_t i = 0; i < files.size(); ++i) {
    EXPECT_EQ(files[i], m_dir.path() / "out" / "bundle" / ClaudeExporter::kFileNames[i]);
    EXPECT_TRUE(fs::is_regular_file(files[i])) << files[i];
  }
  // Nothing else is left in the folder: every temporary file went by its rename.
  EXPECT_EQ(std::distance(fs::directory_iterator(files[0].parent_path()), fs::directory_iterator()), 5);

  std::string jsonl = readFile(files[0]);
  ASSERT_FALSE(jsonl.empty());
  EXPECT_EQ(jsonl.back(), '\n');
  std::vector<std::string> lines = ClaudeExportTest::lines(jsonl);
  ASSERT_EQ(lines.size(), rows.size());  // The line feed in a name is escaped, never a line of its own.
  for (size_t i = 0; i < lines.size(); ++i) {
    json line = json::parse(lines[i]);  // Throws, and fails the test, on a line that is no JSON.
    EXPECT_EQ(line["path"], rows[i].path);
    EXPECT_EQ(line["catalog"], c.name);
    EXPECT_EQ(line.dump(), lines[i]) << "compact, with sorted keys";
    EXPECT_EQ(line.contains("item_count"), rows[i].isDir) << rows[i].path;
  }
}

TEST_F(ClaudeExportTest, RecordHoldsEachKeyOnlyWhenItHasAValue) {
  Catalog c;
  c.name = "Drive";
  FileRecord f;
  f.path = "a/b.mp3";
  f.name = "b.mp3";
  f.ext = "mp3";
  f.kind = FileKind::audio;
  f.uti = "audio/mpeg";
  f.size = 1234;
  f.label = 6;
  f.tags = {"live", "Red"};
  json plain = ClaudeExporter::record(f, c);
  std::vector<std::string> keys;
  for (const auto& [key, value] : plain.items()) keys.push_back(key);
  EXPECT_EQ(keys, (std::vector<std::string>{"catalog", "ext", "hidden", "is_folder", "kind", "label", "name",
                                            "path", "size", "tags", "uti"}));
  EXPECT_EQ(plain["label"], "Red");
  EXPECT_EQ(plain["kind"], "Audio");
  EXPECT_EQ(plain["tags"], json({"live", "Red"}));

  f.modified = Date{1'700'000'000.75};
  f.created = Date{1'600'000'000};
  f.sha256 = "ab12";
  f.duration = 61.5;
  f.width = 0;  // No pixel size: neither width nor height, whatever height holds.
  f.height = 10;
  f.meta = {{"Artist", "Nova"}};
  json full = ClaudeExporter::record(f, c);
  EXPECT_EQ(full["modified"], "2023-11-14T22:13:20Z");
  EXPECT_EQ(full["created"], Fmt::iso(Date{1'600'000'000}));
  EXPECT_EQ(full["sha256"], "ab12");
  EXPECT_EQ(full["duration_seconds"], 61.5);
  EXPECT_EQ(full["metadata"], json({{"Artist", "Nova"}}));
  EXPECT_FALSE(full.contains("width") || full.contains("height") || full.contains("item_count"));
  f.width = 1;
  EXPECT_EQ(ClaudeExporter::record(f, c)["height"], 10);
}

TEST_F(ClaudeExportTest, ReadmeExampleAndPlanTemplateAreJsonWhateverTheName) {
  for (std::string name : {"Plain", "Say \"hi\"", R"(C:\Backups\"old")", "tab\there", "\\\"\\"}) {
    Catalog c;
    c.name = name;
    std::string readme = ClaudeExporter::readme(c);
    size_t begin = readme.find("```json\n");
    ASSERT_NE(begin, std::string::npos);
    begin += 8;
    size_t end = readme.find("```", begin);
    json example = json::parse(readme.substr(begin, end - begin));
    EXPECT_EQ(example["catalog"], name);
    EXPECT_EQ(example["format"], "tvrl-organization-plan");
    EXPECT_EQ(example["moves"][0]["to"], "Music/House/Track 01.mp3");
    EXPECT_NE(readme.find("This folder describes the drive **" + name + "** so an AI"), std::string::npos);

    json plan = json::parse(ClaudeExporter::planTemplate(c));
    EXPECT_EQ(plan, json({{"catalog", name},
                          {"description", "Describe what this plan does"},
                          {"format", "tvrl-organization-plan"},
                          {"moves", json::array()},
                          {"newFolders", json::array()},
                          {"version", 1}}));
  }
  Catalog broken;
  broken.name = "bad \xff";
  EXPECT_EQ(ClaudeExporter::planTemplate(broken), "{}");
  std::string readme = ClaudeExporter::readme(broken);
  size_t begin = readme.find("```json\n") + 8;
  EXPECT_EQ(json::parse(readme.substr(begin, readme.find("```", begin) - begin))["catalog"], "bad \uFFFD");
}

TEST_F(ClaudeExportTest, NumbersHaveAPointWhateverTheProcessLocale) {
  testing::CommaDecimalLocale comma;
  if (!comma.active()) GTEST_SKIP() << "localedef could not make a locale with a decimal comma";
  Catalog c;
  c.name = "Drive";
  FileRecord song, photo;
  song.id = 1;
  song.path = song.name = "song.mp3";
  song.kind = FileKind::audio;
  song.size = 1000;
  song.duration = 61.5;
  photo.id = 2;
  photo.path = photo.name = "photo.jpg";
  photo.kind = FileKind::image;
  photo.size = 2000;

  EXPECT_NE(ClaudeExporter::xml(c, {song}).find(" duration=\"61.50\""), std::string::npos);
  CatalogDB store(dbPath);
  std::string s = ClaudeExporter::summary(c, {song, photo}, store);
  EXPECT_NE(s.find(" | 66.7% |\n"), std::string::npos) << s;
  EXPECT_NE(s.find(" | 33.3% |\n"), std::string::npos) << s;
}

TEST_F(ClaudeExportTest, EmptyCatalogGivesAllFilesAndEmptySections) {
  Catalog c = scanTree();
  std::vector<fs::path> files = exportBundle(c);
  ASSERT_EQ(files.size(), 5u);
  EXPECT_EQ(readFile(files[0]), "");
  std::string xml = readFile(files[1]);
  EXPECT_NE(xml.find("  <items>\n  </items>\n</catalog>\n"), std::string::npos);
  std::string summary = readFile(files[2]);
  EXPECT_NE(summary.find("None found."), std::string::npos);
  EXPECT_NE(summary.find("No naming problems found."), std::string::npos);
  EXPECT_NE(summary.find("\nTop extensions: \n"), std::string::npos) << "an empty list, not a dash";
  EXPECT_NE(summary.find("```\n" + c.name + "/\n```"), std::string::npos);
}

TEST_F(ClaudeExportTest, BundleNameIsOneFolderAndNeverAnEarlierExport) {
  Date at = Date::now();
  std::string name = ClaudeExporter::bundleName("Photos/2024", at);
  EXPECT_EQ(name.rfind("Photos-2024 \u2014 Claude Export ", 0), 0u) << name;
  // "yyyy-MM-dd HHmm" at the end.
  std::string stamp = name.substr(name.size() - 15);
  EXPECT_EQ(stamp[4], '-');
  EXPECT_EQ(stamp[7], '-');
  EXPECT_EQ(stamp[10], ' ');
  EXPECT_EQ(stamp.find_first_not_of("0123456789- "), std::string::npos) << stamp;

  // Shortened to fit a file name, at a character's boundary.
  std::string accents;
  for (int i = 0; i < 20; ++i) accents += "\u00E9";
  for (const std::string& source : {std::string(300, 'a'), std::string(200, 'a') + accents}) {
    std::string longName = ClaudeExporter::bundleName(source, at);
    EXPECT_LE(longName.size(), 255u);
    EXPECT_GE(longName.size(), 240u);
    EXPECT_TRUE(NameMapping::isValidUTF8(longName)) << longName;
  }

  fs::path parent = m_dir.path() / "exports";
  fs::path first = ClaudeExporter::bundleFolder(parent, "Drive", at);
  EXPECT_EQ(first, parent / ClaudeExporter::bundleName("Drive", at));
  fs::create_directories(first);
  EXPECT_EQ(ClaudeExporter::bundleFolder(parent, "Drive", at).filename().string(),
            first.filename().string() + " 2");
}

TEST_F(ClaudeExportTest, FailedWriteStopsTheExportAndKeepsWhatWasWritten) {
  put("a.txt");
  Catalog c = scanTree();
  fs::path target = m_dir.path() / "out" / "bundle";
  // A folder where catalog.xml should go: its rename fails, and the files after it are never written.
  fs::create_directories(target / "catalog.xml" / "inside");
  CatalogDB store(dbPath);
  try {
    ClaudeExporter::exportTo(store, c, target);
    FAIL() << "the export went through a folder in its way";
  } catch (const ExportError& e) {
    EXPECT_NE(std::string(e.what()).find("catalog.xml"), std::string::npos) << e.what();
  }
  EXPECT_TRUE(fs::is_regular_file(target / "files.jsonl"));
  EXPECT_TRUE(fs::is_directory(target / "catalog.xml" / "inside"));
  EXPECT_FALSE(fs::exists(target / "SUMMARY.md"));
  EXPECT_EQ(std::distance(fs::directory_iterator(target), fs::directory_iterator()), 2)
      << "no temporary left";

  // A file where the folder should be.
  testing::writeFile(m_dir.path() / "out" / "plain", "x");
  EXPECT_THROW(ClaudeExporter::exportTo(store, c, m_dir.path() / "out" / "plain" / "sub"), ExportError);
}

}  // namespace
}  // namespace orrelin
