// Searching real catalog databases: the match modes, the switch between the name index and LIKE, literal
// wildcards and quotes, case rules, filters and their bind order, and the failure of a bad pattern.
#include <gtest/gtest.h>

#include <algorithm>

#include "search/search_fixture.h"
#include "store/catalog_schema.h"

namespace orrelin {
namespace {

using testing::addCatalog;
using testing::addRow;
using testing::names;
using testing::Row;
using testing::TempDir;
using testing::textQuery;
using Mode = SearchQuery::Mode;

class CatalogSearchTest : public ::testing::Test {
 protected:
  TempDir dir;
  CatalogDB store{dir.file("Catalogs.sqlite")};
  int64_t alpha = addCatalog(store, "Alpha");
  int64_t beta = addCatalog(store, "Beta");

  void add(const std::vector<std::string>& paths, int64_t catalogID = 0) {
    for (const std::string& p : paths) addRow(store, catalogID == 0 ? alpha : catalogID, Row{p});
  }
  std::vector<std::string> find(const SearchQuery& query) { return names(store.search(query)); }
  std::vector<std::string> find(const std::string& text, Mode mode = Mode::contains, bool metadata = false) {
    return find(textQuery(text, mode, metadata));
  }
  bool usesIndex(const std::string& text) {
    return searchStatement(textQuery(text), store.ftsTrigram()).sql.find("files_fts MATCH") !=
           std::string::npos;
  }
};

TEST_F(CatalogSearchTest, EmptyOrBlankTextListsEveryRecordByNameUpToTheLimit) {
  addRow(store, alpha, Row{"photos", 0, "Folder", Date{1}, "", "", true});
  add({"photos/cherry.txt", "Banana.txt", "apple.txt"});
  addRow(store, beta, Row{"Date.txt"});

  EXPECT_EQ(find(""),
            (std::vector<std::string>{"apple.txt", "Banana.txt", "cherry.txt", "Date.txt", "photos"}));
  EXPECT_EQ(find(" \n\t\u00a0"), find(""));
  SearchQuery limited = textQuery("  ");
  limited.limit = 2;
  EXPECT_EQ(find(limited), (std::vector<std::string>{"apple.txt", "Banana.txt"}));

  // Each hit carries its own catalog's name and the whole record.
  auto hits = store.search(textQuery("Date"));
  ASSERT_EQ(hits.size(), 1u);
  EXPECT_EQ(hits[0].catalogName, "Beta");
  EXPECT_EQ(hits[0].file, *store.file(hits[0].id()));
}

TEST_F(CatalogSearchTest, ContainsTakesTheIndexFromThreeUserPerceivedCharacters) {
  add({"xxabyy.txt", "note-écoute.txt", "ÉCOLE.txt", "family 👨‍👩‍👧 trip.jpg", "flags 🇫🇷🇩🇪.png",
       "cafe\u0301 menu.pdf"});

  // Both paths find the letters anywhere in a name.
  EXPECT_FALSE(usesIndex("ab"));
  EXPECT_EQ(find("ab"), (std::vector<std::string>{"xxabyy.txt"}));
  EXPECT_TRUE(usesIndex("aby"));
  EXPECT_EQ(find("ABY"), (std::vector<std::string>{"xxabyy.txt"}));

  // Counted in grapheme clusters, not bytes or code points.
  struct Case {
    const char* text;
    bool index;
    std::vector<std::string> found;
  };
  const Case cases[] = {
      {"👨‍👩‍👧",
       false,
       {"family 👨‍👩‍👧 trip.jpg"}},  // One cluster of five code points.
      {" 👨‍👩‍👧 ", false, {"family 👨‍👩‍👧 trip.jpg"}},  // Trimmed first.
      {"👨‍👩‍👧 t", true, {"family 👨‍👩‍👧 trip.jpg"}},
      {"🇫🇷🇩🇪", false, {"flags 🇫🇷🇩🇪.png"}},  // Two flags, four code points.
      {"🇫🇷🇩🇪.", true, {"flags 🇫🇷🇩🇪.png"}},
      {"e\u0301 ", false, {"cafe\u0301 menu.pdf"}},  // Two clusters, three code points.
      {"fe\u0301", false, {"cafe\u0301 menu.pdf"}},
      {"afe\u0301", true, {"cafe\u0301 menu.pdf"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(usesIndex(c.text), c.index);
    EXPECT_EQ(find(c.text), c.found);
  }

  // The index folds case beyond ASCII; LIKE folds ASCII letters only. So "ÉCO" finds the lower-case
  // "écoute" through the index, while the two-character "ÉC" and "éc" each find only their own case.
  EXPECT_EQ(find("ÉCO"), (std::vector<std::string>{"note-écoute.txt", "ÉCOLE.txt"}));
  EXPECT_EQ(find("ÉC"), (std::vector<std::string>{"ÉCOLE.txt"}));
  EXPECT_EQ(find("éc"), (std::vector<std::string>{"note-écoute.txt"}));
}

TEST_F(CatalogSearchTest, WildcardsBackslashesAndQuotesMatchThemselves) {
  add({"100%_done.txt", "100 done.txt", "1000done.txt", "a_b.txt", "axb.txt", "back\\slash.txt",
       "backslash.txt", "say \"hi\".txt", "say hi.txt", "a OR b.txt", "NEAR(x y).txt", "star*.txt"});
  struct Case {
    const char* text;
    Mode mode;
    std::vector<std::string> found;
  };
  const Case cases[] = {
      {"%", Mode::contains, {"100%_done.txt"}},
      {"_", Mode::contains, {"100%_done.txt", "a_b.txt"}},
      {"%_", Mode::contains, {"100%_done.txt"}},
      {"0%_", Mode::contains, {"100%_done.txt"}},  // Through the index.
      {"\\", Mode::contains, {"back\\slash.txt"}},
      {"k\\s", Mode::contains, {"back\\slash.txt"}},
      {"a_", Mode::startsWith, {"a_b.txt"}},
      {"100%", Mode::startsWith, {"100%_done.txt"}},
      {"back\\", Mode::startsWith, {"back\\slash.txt"}},
      {"\"", Mode::contains, {"say \"hi\".txt"}},
      {"\"hi\"", Mode::contains, {"say \"hi\".txt"}},
      {"say \"hi\"", Mode::contains, {"say \"hi\".txt"}},
      {"a_b.txt", Mode::exact, {"a_b.txt"}},
      // FTS5 query syntax in the text is literal too: no operator, prefix or NEAR group.
      {"a OR b", Mode::contains, {"a OR b.txt"}},
      {"NEAR(x y)", Mode::contains, {"NEAR(x y).txt"}},
      {"star*", Mode::contains, {"star*.txt"}},
      {"sta*", Mode::contains, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(find(c.text, c.mode), c.found);
  }
}

TEST_F(CatalogSearchTest, ModesAndTheirCaseRules) {
  add({"Report.pdf", "myreport.pdf", "été.txt", "ÉTÉ.txt", "img_0001.JPG", "IMG_12.jpg", "Holiday"});
  addRow(store, alpha, Row{"Holiday/beach.jpg", 10, "Image", Date{5}, "Travel", R"({"Camera":"Canon EOS"})"});

  EXPECT_EQ(find("rep", Mode::startsWith), (std::vector<std::string>{"Report.pdf"}));
  EXPECT_EQ(find("report.PDF", Mode::exact), (std::vector<std::string>{"Report.pdf"}));
  EXPECT_EQ(find("report", Mode::exact), (std::vector<std::string>{}));
  // NOCASE folds ASCII letters only: accented capitals compare exactly.
  EXPECT_EQ(find("été.TXT", Mode::exact), (std::vector<std::string>{"été.txt"}));
  EXPECT_EQ(find("ÉTÉ.txt", Mode::exact), (std::vector<std::string>{"ÉTÉ.txt"}));
  EXPECT_EQ(find("Été", Mode::startsWith), (std::vector<std::string>{}));
  // Regular expressions ignore case, beyond ASCII too.
  EXPECT_EQ(find(R"(^img_\d{4}\.jpg$)", Mode::regex), (std::vector<std::string>{"img_0001.JPG"}));
  EXPECT_EQ(find("^été", Mode::regex), (std::vector<std::string>{"ÉTÉ.txt", "été.txt"}));

  // The path is never searched: the folder matches, the file inside it does not.
  EXPECT_EQ(find("Holiday"), (std::vector<std::string>{"Holiday"}));

  // Widening to metadata: contains covers name, tags and meta, by index and by LIKE alike; regex covers
  // name and meta but not tags; startsWith and exact look at names only.
  EXPECT_EQ(find("canon", Mode::contains, true), (std::vector<std::string>{"beach.jpg"}));
  EXPECT_EQ(find("travel", Mode::contains, true), (std::vector<std::string>{"beach.jpg"}));
  EXPECT_EQ(find("Ca", Mode::contains, true), (std::vector<std::string>{"beach.jpg"}));
  EXPECT_EQ(find("canon", Mode::contains, false), (std::vector<std::string>{}));
  EXPECT_EQ(find("CAMERA\":", Mode::contains, true), (std::vector<std::string>{"beach.jpg"}));  // Raw JSON.
  EXPECT_EQ(find("can.n", Mode::regex, true), (std::vector<std::string>{"beach.jpg"}));
  EXPECT_EQ(find("trav", Mode::regex, true), (std::vector<std::string>{}));
  EXPECT_EQ(find("Canon", Mode::startsWith, true), (std::vector<std::string>{}));
  EXPECT_EQ(find("Canon EOS", Mode::exact, true), (std::vector<std::string>{}));
}

TEST_F(CatalogSearchTest, AnInvalidPatternFailsBeforeAnySqlRuns) {
  add({"a.txt"});
  SearchQuery query = textQuery("([", Mode::regex);
  query.catalogIDs = {9999};  // Would match nothing, yet the pattern is still refused.
  try {
    store.search(query);
    FAIL() << "no error";
  } catch (const DBError& error) {
    EXPECT_EQ(error.kind(), DBError::Kind::prepare);
    EXPECT_STREQ(error.what(), "Database query error: That regular expression is not valid.");
  }

  // With the connection closed, any statement would fail with another message: the pattern is
  // refused first.
  store.db().close();
  try {
    store.search(textQuery(" ([ ", Mode::regex, true));
    FAIL() << "no error";
  } catch (const DBError& error) {
    EXPECT_EQ(error.text(), "That regular expression is not valid.");
  }
  // A pattern of blanks is no regex search at all; it reaches SQL, which fails here for the closed
  // connection and not for the pattern.
  try {
    store.search(textQuery("   ", Mode::regex));
    FAIL() << "no error";
  } catch (const DBError& error) {
    EXPECT_NE(error.text(), "That regular expression is not valid.");
  }
}

TEST_F(CatalogSearchTest, ABlankRegexIsNoFilter) {
  add({"a.txt", "b.txt"});
  EXPECT_EQ(find(" \n ", Mode::regex), (std::vector<std::string>{"a.txt", "b.txt"}));
}

// One row passes every filter; each decoy fails exactly one. Put in the wrong order, the bound values
// would land on the wrong columns and the match would change.
TEST_F(CatalogSearchTest, EveryFilterAppliesWithItsOwnValue) {
  const Row match{"Target scan.jpg", 150, "Image", Date{2000}, "Red, Work", R"({"Camera":"Sony"})"};
  addRow(store, alpha, match);
  struct Decoy {
    const char* why;
    Row row;
    int64_t catalogID;
  };
  auto variant = [&](auto change) {
    Row r = match;
    change(r);
    return r;
  };
  const Decoy decoys[] = {
      {"text", variant([](Row& r) { r.path = "Other scan.jpg", r.meta = ""; }), alpha},
      {"kind", variant([](Row& r) { r.path = "Target scan 2.mp3", r.kind = "Audio"; }), alpha},
      {"folder", variant([](Row& r) { r.path = "Target scan folder", r.isDir = true; }), alpha},
      {"min size", variant([](Row& r) { r.path = "Target scan small.jpg", r.size = 99; }), alpha},
      {"max size", variant([](Row& r) { r.path = "Target scan big.jpg", r.size = 201; }), alpha},
      {"from", variant([](Row& r) { r.path = "Target scan early.jpg", r.modified = Date{999}; }), alpha},
      {"to", variant([](Row& r) { r.path = "Target scan late.jpg", r.modified = Date{3001}; }), alpha},
      {"no date", variant([](Row& r) { r.path = "Target scan undated.jpg", r.modified = std::nullopt; }),
       alpha},
      {"tag", variant([](Row& r) { r.path = "Target scan untagged.jpg", r.tags = "Red"; }), alpha},
      {"catalog", variant([](Row& r) { r.path = "Target scan beta.jpg"; }), beta},
  };
  for (const Decoy& d : decoys) addRow(store, d.catalogID, d.row);

  SearchQuery query;
  query.kinds = {FileKind::video, FileKind::image, FileKind::folder};
  query.includeFolders = false;
  query.minSize = 100;
  query.maxSize = 200;
  query.modifiedFrom = Date{1000};
  query.modifiedTo = Date{3000};
  query.tag = " Work\t";
  query.catalogIDs = {alpha, 424242};

  // Each text path binds a different number of values ahead of the filters.
  const SearchQuery texts[] = {
      textQuery("target scan"),               // Index phrase.
      textQuery("ta", Mode::contains),        // LIKE: one value.
      textQuery("So", Mode::contains, true),  // LIKE over name, meta and tags: three values.
      textQuery("^target", Mode::regex),
      textQuery("sony", Mode::regex, true),  // Two values.
      textQuery("TARGET", Mode::startsWith),
      textQuery("target SCAN.jpg", Mode::exact),
  };
  for (const SearchQuery& text : texts) {
    SCOPED_TRACE(text.text);
    SearchQuery q = query;
    q.text = text.text;
    q.mode = text.mode;
    q.searchMetadata = text.searchMetadata;
    EXPECT_EQ(find(q), (std::vector<std::string>{"Target scan.jpg"}));
  }

  // Bounds are inclusive, and every decoy is found once its own filter is loosened.
  SearchQuery inclusive = query;
  inclusive.text = "target";
  inclusive.minSize = inclusive.maxSize = 150;
  inclusive.modifiedFrom = inclusive.modifiedTo = Date{2000};
  EXPECT_EQ(find(inclusive), (std::vector<std::string>{"Target scan.jpg"}));
  SearchQuery loose = query;
  loose.text = "target";
  loose.kinds.insert(FileKind::audio);
  loose.includeFolders = true;
  loose.minSize = 0;
  loose.maxSize = 1000;
  loose.modifiedFrom = loose.modifiedTo = std::nullopt;
  loose.tag = "";
  loose.catalogIDs.clear();
  EXPECT_EQ(find(loose).size(), std::size(decoys));  // All but "text"; the folder's size is its own.
}

TEST_F(CatalogSearchTest, FolderSizesDatesTagsAndCatalogs) {
  int64_t folder = addRow(store, alpha, Row{"Music", 0, "Folder", Date{10}, "", "", true});
  addRow(store, alpha, Row{"Music/a.mp3", 300, "Audio", Date{10}, "", "", false, folder});
  addRow(store, alpha, Row{"Music/b.mp3", 200, "Audio", Date{10}, "", "", false, folder});
  addRow(store, alpha, Row{"c.mp3", 500, "Audio", std::nullopt, "50%, Blue_Ribbon"});
  addRow(store, alpha, Row{"d.mp3", 500, "Audio", Date{10}, "50 Blue Ribbon"});
  store.recomputeTotals(alpha);

  // Folders are measured by their rolled-up size unless left out.
  SearchQuery size;
  size.minSize = size.maxSize = 500;
  EXPECT_EQ(find(size), (std::vector<std::string>{"c.mp3", "d.mp3", "Music"}));
  size.includeFolders = false;
  EXPECT_EQ(find(size), (std::vector<std::string>{"c.mp3", "d.mp3"}));
  size.minSize = -5;  // A negative bound is passed on and matches every size from 0 up.
  size.maxSize = std::nullopt;
  EXPECT_EQ(find(size).size(), 4u);

  // A record without a date never meets a date bound.
  SearchQuery dated;
  dated.modifiedFrom = Date{0};
  EXPECT_EQ(find(dated), (std::vector<std::string>{"a.mp3", "b.mp3", "d.mp3", "Music"}));

  // Tags: trimmed of blanks, wildcards literal, a tag of blanks is no filter.
  SearchQuery tag;
  tag.tag = "%";
  EXPECT_EQ(find(tag), (std::vector<std::string>{"c.mp3"}));
  tag.tag = "e_R";
  EXPECT_EQ(find(tag), (std::vector<std::string>{"c.mp3"}));
  tag.tag = " \t ";
  EXPECT_EQ(find(tag).size(), 5u);

  // A catalog id that names nothing, alone, finds nothing; rows whose catalog row is gone never show.
  SearchQuery gone;
  gone.catalogIDs = {777};
  EXPECT_TRUE(find(gone).empty());
  store.db().exec("PRAGMA foreign_keys=OFF");
  addRow(store, 777, Row{"orphan.txt"});
  store.db().exec("PRAGMA foreign_keys=ON");
  EXPECT_TRUE(find(gone).empty());
  EXPECT_TRUE(find("orphan").empty());
}

// A database whose name index was made with the unicode61 tokenizer never queries it: every contains
// search takes LIKE, which finds substrings inside words that the word index could not.
TEST(CatalogSearchUnicode61Test, ContainsAlwaysTakesLike) {
  TempDir dir;
  std::string path = dir.file("Old.sqlite");
  {
    SQLiteDB db(path);
    db.exec(schema::kTables);
    db.exec(schema::kFtsUnicode61);
    db.exec(schema::kFtsMarkUnicode61);
  }
  CatalogDB store(path);
  ASSERT_FALSE(store.ftsTrigram());
  int64_t id = addCatalog(store, "Old");
  addRow(store, id, Row{"holidayphotos.zip"});
  addRow(store, id, Row{"Crème brûlée.txt"});
  addRow(store, id, Row{"x.bin", 1, "Other", Date{1}, "", R"({"Title":"dayphot"})"});

  EXPECT_EQ(searchStatement(textQuery("dayphot"), false).sql.find("files_fts"), std::string::npos);
  EXPECT_EQ(names(store.search(textQuery("DAYPHOT"))), (std::vector<std::string>{"holidayphotos.zip"}));
  EXPECT_EQ(names(store.search(textQuery("dayphot", Mode::contains, true))),
            (std::vector<std::string>{"holidayphotos.zip", "x.bin"}));
  // LIKE folds ASCII only: no diacritics folding here, unlike the unicode61 index itself.
  EXPECT_TRUE(store.search(textQuery("CRÈME")).empty());
  EXPECT_TRUE(store.search(textQuery("creme")).empty());
  EXPECT_EQ(names(store.search(textQuery("crème"))), (std::vector<std::string>{"Crème brûlée.txt"}));
}

TEST(SearchTextTest, EscapingQuotingTrimmingAndCounting) {
  EXPECT_EQ(CatalogDB::likeEscape(R"(50%_off\now)"), R"(50\%\_off\\now)");
  EXPECT_EQ(CatalogDB::likeEscape(R"(\%)"), R"(\\\%)");
  EXPECT_EQ(ftsPhraseQuery(R"(say "hi")", false), R"({name} : "say ""hi""")");
  EXPECT_EQ(ftsPhraseQuery("a b", true), R"({name tags meta} : "a b")");

  EXPECT_EQ(trimWhitespaceAndNewlines("\u00a0\n\t report \u2028\r\n\u3000"), "report");
  EXPECT_EQ(trimWhitespaceAndNewlines("a \n b"), "a \n b");
  EXPECT_EQ(trimBlanks("\u00a0 \tWork\n \u2003"), "Work\n");
  EXPECT_EQ(trimBlanks("\nWork"), "\nWork");
  EXPECT_EQ(trimWhitespaceAndNewlines("\xff "), "\xff");  // Bytes that are not UTF-8 stay.

  struct Case {
    const char* text;
    int graphemes;
  };
  const Case cases[] = {{"", 0},         {"ab", 2},    {"abc", 3},  {"\r\n\r\n", 2},          {"e\u0301", 1},
                        {"👍🏽", 1}, {"🇫🇷🇩🇪x", 3}, {"한국", 2}, {"\u1100\u1161\u11a8", 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_TRUE(hasAtLeastGraphemes(c.text, c.graphemes));
    EXPECT_FALSE(hasAtLeastGraphemes(c.text, c.graphemes + 1));
  }
}

TEST(SearchModeTest, RawValuesRoundTripInOrder) {
  std::vector<std::string> raws;
  for (Mode mode : SearchQuery::allCases) {
    raws.emplace_back(rawValue(mode));
    EXPECT_EQ(searchModeFromRaw(rawValue(mode)), mode);
  }
  EXPECT_EQ(raws, (std::vector<std::string>{"Contains", "Starts With", "Exact Name", "Regex"}));
  EXPECT_EQ(searchModeFromRaw("contains"), std::nullopt);
}

}  // namespace
}  // namespace orrelin
