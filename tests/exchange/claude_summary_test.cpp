// SUMMARY.md and the naming problems of the export for Claude, on catalogs scanned from real trees.
#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <algorithm>

#include "exchange/claude_fixture.h"
#include "store/fmt.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::ClaudeExportTest;

size_t countOf(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++n;
  return n;
}

TEST_F(ClaudeExportTest, SummaryHasEverySectionInOrderWithTheDrivesFacts) {
  put("Music/a.mp3", 3000);
  put("Music/b.mp3", 1000);
  put("Photos/c.jpg", 1000);
  put("Left/dup.bin", 1500);
  put("Right/dup.bin", 1500);
  put("Right/other.bin", 1500);  // Same size, other name: no duplicate by name and size.
  Catalog c = scanTree();
  // The same file on another drive is no duplicate on this one.
  fs::create_directories(m_dir.path() / "other");
  testing::writeFile(m_dir.path() / "other" / "dup.bin", std::string(1500, 'y'));
  scan(testing::plainOptions(), std::nullopt, nullptr, nullptr, (m_dir.path() / "other").string());

  std::string s = summaryOf(c);
  std::vector<std::string> headings = {"# Drive summary: " + c.name,
                                       "## Drive",
                                       "## File types",
                                       "## Folder tree (to depth 3)",
                                       "## Largest folders",
                                       "## Largest files",
                                       "## Duplicates on this drive (same name and size)",
                                       "## Naming problems",
                                       "## Proposing a reorganization"};
  size_t at = 0;
  for (const std::string& h : headings) {
    size_t found = s.find(h + "\n", at);
    ASSERT_NE(found, std::string::npos) << "missing or out of order: " << h;
    at = found + h.size();
  }
  EXPECT_NE(s.find("_" + ClaudeExporter::credit() + ". Generated "), std::string::npos);

  std::string drive = section(s, "## Drive");
  EXPECT_NE(drive.find("| Catalog | " + c.name + " |"), std::string::npos);
  EXPECT_NE(drive.find("| Root path | " + c.rootPath + " |"), std::string::npos);
  EXPECT_NE(drive.find("| Files | " + Fmt::count(6) + " |"), std::string::npos);
  EXPECT_NE(drive.find("| Cataloged size | " + Fmt::size(9500) + " |"), std::string::npos);
  EXPECT_NE(drive.find("| Last scanned | " + Fmt::date(c.scannedAt) + " |"), std::string::npos);

  std::string kinds = section(s, "## File types");
  size_t audio = kinds.find("| Audio | " + Fmt::count(2) + " | " + Fmt::size(4000) + " | 42.1% |");
  size_t image = kinds.find("| Image | " + Fmt::count(1) + " | " + Fmt::size(1000) + " | 10.5% |");
  ASSERT_NE(audio, std::string::npos) << kinds;
  ASSERT_NE(image, std::string::npos) << kinds;
  EXPECT_LT(audio, image) << "largest kind first";
  EXPECT_NE(kinds.find("Top extensions: .bin (3), .mp3 (2), .jpg (1)\n"), std::string::npos) << kinds;

  std::string files = section(s, "## Largest files");
  EXPECT_LT(files.find("`Music/a.mp3`"), files.find("`Left/dup.bin`"));
  std::string folders = section(s, "## Largest folders");
  EXPECT_NE(folders.find("| `Right` | " + Fmt::size(3000) + " | " + Fmt::count(2) + " |"), std::string::npos)
      << folders;

  std::string dupes = section(s, "## Duplicates on this drive (same name and size)");
  EXPECT_NE(dupes.find("- **dup.bin** \u2014 " + Fmt::count(2) + " copies \u00D7 " + Fmt::size(1500) + " (" +
                       Fmt::size(1500) + " reclaimable)\n  - `Left/dup.bin`\n  - `Right/dup.bin`\n"),
            std::string::npos)
      << dupes;
  EXPECT_EQ(countOf(dupes, "- **"), 1u);
  EXPECT_NE(s.find("No naming problems found."), std::string::npos);
}

TEST_F(ClaudeExportTest, DriveTableEscapesBarsAndShowsDashesForUnknownValues) {
  put("a.txt");
  Catalog c = scanTree();
  CatalogDB store(dbPath);
  store.renameCatalog(c.id, "Left | Right");
  store.db().run("UPDATE catalogs SET capacity=0, free_space=99, volume_uuid='' WHERE id=?", {c.id});
  c = *store.catalog(c.id);
  std::string drive = section(ClaudeExporter::summary(c, store.allFiles(c.id), store), "## Drive");
  EXPECT_NE(drive.find("| Catalog | Left \\| Right |"), std::string::npos) << drive;
  EXPECT_NE(drive.find("| Capacity | \u2014 |\n| Free | \u2014 |"), std::string::npos) << drive;
  EXPECT_NE(drive.find("| UUID | \u2014 |"), std::string::npos) << drive;
}

TEST_F(ClaudeExportTest, FolderTreeShowsThreeLevelsAndSixtyFoldersALevel) {
  for (int i = 0; i < 61; ++i) folder("Wide/w" + std::to_string(100 + i));
  for (int i = 0; i < 60; ++i) folder("Exact/e" + std::to_string(100 + i));
  folder("Deep/L1/L2/L3/L4");
  put("Deep/L1/L2/file.bin", 2000);
  for (const char* name : {"b", "A", "c"}) folder(std::string("Order/") + name);
  Catalog c = scanTree();
  std::string shown = section(summaryOf(c), "## Folder tree (to depth 3)");

  std::string item1 = Fmt::count(1) + " item, ";
  EXPECT_NE(shown.find("```\n" + c.name + "/\n\u251C\u2500\u2500 Deep/  (" + item1 + Fmt::size(2000) +
                       ")\n\u2502   \u2514\u2500\u2500 L1/  (" + item1 + Fmt::size(2000) +
                       ")\n\u2502       \u2514\u2500\u2500 L2/  (" + Fmt::count(2) + " items, " +
                       Fmt::size(2000) + ")\n\u251C\u2500\u2500 Exact/"),
            std::string::npos)
      << shown;
  EXPECT_EQ(shown.find("L3/"), std::string::npos) << "a fourth level of folders is not shown";

  // 61 folders: sixty lines that all go on, then the count of the rest, in the plural even for one.
  // Wide is the last top-level folder, so no line runs on beside its entries.
  EXPECT_EQ(countOf(shown, "\n    \u251C\u2500\u2500 w1"), 60u);
  EXPECT_EQ(shown.find("w160/"), std::string::npos);
  EXPECT_NE(shown.find("\n    \u2514\u2500\u2500 \u2026 1 more folders\n```"), std::string::npos) << shown;
  // Exactly 60: the last one closes the list.
  EXPECT_EQ(countOf(shown, "\u2502   \u251C\u2500\u2500 e1"), 59u);
  EXPECT_NE(shown.find("\u2502   \u2514\u2500\u2500 e159/  (" + Fmt::count(0) + " items, "),
            std::string::npos);
  // Names in order ignoring case; the last top-level folder closes the tree.
  EXPECT_NE(shown.find("Order/  (" + Fmt::count(3) + " items, " + Fmt::size(0) +
                       ")\n\u2502   \u251C\u2500\u2500 A/"),
            std::string::npos);
  EXPECT_LT(shown.find("\u251C\u2500\u2500 b/"), shown.find("\u2514\u2500\u2500 c/"));
  EXPECT_NE(shown.find("\u2514\u2500\u2500 Wide/"), std::string::npos);
}

TEST_F(ClaudeExportTest, FolderTreeCountsTheFoldersLeftOutLikeEveryOtherCount) {
  std::vector<FileRecord> folders;
  for (int i = 0; i < 1061; ++i) {
    FileRecord f;
    f.id = i + 1;
    f.isDir = true;
    f.kind = FileKind::folder;
    f.path = f.name = "f" + std::to_string(10000 + i);
    folders.push_back(f);
  }
  Catalog c;
  c.name = "Wide";
  CatalogDB store(dbPath);
  // A locale that groups digits (the tests' own, C.UTF-8, groups none).
  const icu::Locale saved = icu::Locale::getDefault();
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale::setDefault(icu::Locale("en_US"), status);
  std::string shown = section(ClaudeExporter::summary(c, folders, store), "## Folder tree (to depth 3)");
  const std::string more = "\u2026 " + Fmt::count(1001) + " more folders";
  icu::Locale::setDefault(saved, status);
  ASSERT_EQ(more, "\u2026 1,001 more folders");
  EXPECT_NE(shown.find("\n\u2514\u2500\u2500 " + more + "\n```"), std::string::npos)
      << shown.substr(shown.size() - 200);
}

TEST_F(ClaudeExportTest, NamingProblemsFollowTheirRules) {
  put(" lead.txt");
  put("trail.txt ");
  put("a:b.txt");
  put("ctl\x01name.txt");
  put("two  spaces.txt");
  put(std::string(116, 'n') + ".txt");                                                      // 120 characters.
  put(std::string(117, 'm') + ".txt");                                                      // 121 characters.
  std::string deep = "Paths/" + std::string(100, 'p') + "/" + std::string(100, 'q') + "/";  // 208 characters.
  put(deep + std::string(43, 's') + ".txt");  // A path of 255 characters.
  put(deep + std::string(44, 't') + ".txt");  // 256.
  put("README");
  put(".profile");
  folder("NoExtFolder/inside");
  put("Song (2).mp3");
  put("Track (12)");
  put("Song copy.mp3");
  put("Copy of Notes.txt");
  put("Songcopy.mp3");
  put("Song (a).mp3");
  folder("Nothing");
  put("Case/Photo.jpg");
  put("Case/photo.jpg");
  put("Case/PHOTO.jpg");
  put("X/Same.txt");
  put("Y/same.txt");
  Catalog c = scanTree(/*includeHidden=*/true);
  std::vector<FileRecord> rows = records(c);
  ASSERT_EQ(std::count_if(rows.begin(), rows.end(), [](auto& f) { return f.name == ".profile"; }), 1);

  std::vector<ClaudeExporter::Problem> problems = ClaudeExporter::namingProblems(rows);
  auto pathsOf = [&](const std::string& category) {
    std::vector<std::string> out;
    for (const auto& p : problems)
      if (p.category == category) out.push_back(p.path + (p.detail.empty() ? "" : " | " + p.detail));
    return out;
  };
  using V = std::vector<std::string>;
  EXPECT_EQ(pathsOf("Leading or trailing spaces"),
            (V{" lead.txt | \u201C lead.txt\u201D", "trail.txt  | \u201Ctrail.txt \u201D"}));
  EXPECT_EQ(pathsOf("Characters that break on Windows/web servers"),
            (V{"a:b.txt | a:b.txt", "ctl\x01name.txt | ctl\x01name.txt"}));
  EXPECT_EQ(pathsOf("Double spaces"), (V{"two  spaces.txt | two  spaces.txt"}));
  EXPECT_EQ(pathsOf("Very long names (over 120 characters)"),
            (V{std::string(117, 'm') + ".txt | 121 characters"}));
  EXPECT_EQ(pathsOf("Very long paths (over 255 characters)"),
            (V{deep + std::string(44, 't') + ".txt | 256 characters"}));
  EXPECT_EQ(pathsOf("Files without an extension"), (V{"README | README", "Track (12) | Track (12)"}));
  EXPECT_EQ(pathsOf("Names that look like accidental copies"),
            (V{"Copy of Notes.txt | Copy of Notes.txt", "Song (2).mp3 | Song (2).mp3",
               "Song copy.mp3 | Song copy.mp3", "Track (12) | Track (12)"}));
  EXPECT_EQ(pathsOf("Empty folders"), (V{"NoExtFolder/inside", "Nothing"}));
  EXPECT_EQ(pathsOf("Names that differ only by upper/lower case"),
            (V{"Case/PHOTO.jpg | PHOTO.jpg / Photo.jpg / photo.jpg"}));

  std::string s = section(summaryOf(c), "## Naming problems");
  // Categories in code-unit order, each with its count, details after a dash.
  EXPECT_LT(s.find("### Characters that break"), s.find("### Double spaces"));
  EXPECT_LT(s.find("### Very long names"), s.find("### Very long paths"));
  EXPECT_NE(s.find("### Empty folders (" + Fmt::count(2) + ")\n\n- `NoExtFolder/inside`\n- `Nothing`\n"),
            std::string::npos)
      << s;
  EXPECT_NE(s.find("- `Song (2).mp3` \u2014 Song (2).mp3\n"), std::string::npos);
}

TEST_F(ClaudeExportTest, ACategoryListsFortyProblemsAndCountsTheRest) {
  for (int i = 0; i < 41; ++i) put("bare" + std::to_string(100 + i));
  Catalog c = scanTree();
  std::string s = section(summaryOf(c), "## Naming problems");
  EXPECT_NE(s.find("### Files without an extension (" + Fmt::count(41) + ")\n"), std::string::npos) << s;
  EXPECT_EQ(countOf(s, "- `bare"), 40u);
  EXPECT_EQ(s.find("bare140"), std::string::npos);
  EXPECT_NE(s.find("- `bare139` \u2014 bare139\n- \u2026 and 1 more\n"), std::string::npos) << s;
}

TEST_F(ClaudeExportTest, LengthsCountWhatAReaderSeesAsOneCharacter) {
  auto lengthProblems = [](const std::string& name, const std::string& path) {
    FileRecord f;
    f.name = name;
    f.path = path;
    f.ext = "x";
    std::vector<std::string> out;
    for (const auto& p : ClaudeExporter::namingProblems({f})) out.push_back(p.category + ": " + p.detail);
    return out;
  };
  auto repeat = [](const std::string& piece, int n) {
    std::string out;
    for (int i = 0; i < n; ++i) out += piece;
    return out;
  };
  const std::string accent = "e\u0301", flag = "\U0001F1FA\U0001F1F8", family = "\U0001F468\u200D\U0001F469";
  for (const std::string& piece : {accent, flag, family, std::string("\u00E9")}) {
    EXPECT_EQ(ClaudeExporter::characterCount(repeat(piece, 7)), 7u);
    EXPECT_TRUE(lengthProblems(repeat(piece, 120), "p").empty());
    EXPECT_EQ(lengthProblems(repeat(piece, 121), "p"),
              std::vector<std::string>{"Very long names (over 120 characters): 121 characters"});
    EXPECT_TRUE(lengthProblems("n", repeat(piece, 255)).empty());
    EXPECT_EQ(lengthProblems("n", repeat(piece, 256)),
              std::vector<std::string>{"Very long paths (over 255 characters): 256 characters"});
  }
  EXPECT_EQ(ClaudeExporter::characterCount("a\r\nb"), 3u);
  EXPECT_EQ(ClaudeExporter::characterCount(""), 0u);
}

}  // namespace
}  // namespace orrelin
