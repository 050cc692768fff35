// Damaged and hostile exchange files: seeded random mutations of valid exports must either import or fail
// with the importer's own error, never crash, and a failed import must leave the database as it was.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <random>

#include "exchange_fixture.h"
#include "organize/export_error.h"

namespace orrelin::testing {
namespace {

class Mutator {
 public:
  explicit Mutator(uint64_t seed) : m_rng(seed) {}

  int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_rng); }

  // One to four random damages of `text`.
  std::string mutate(std::string text, bool json) {
    for (int n = pick(1, 4); n > 0; --n) damage(text, json);
    return text;
  }

 private:
  // A position in `text`; a quarter of them in its first line or so, where a header or the root is.
  size_t at(const std::string& text) {
    int end = int(text.size());
    return static_cast<size_t>(pick(0, pick(0, 3) == 0 ? std::min(end, 150) : end));
  }

  void damage(std::string& text, bool json) {
    static const std::string pieces[] = {"\"",
                                         "\"\"",
                                         ",",
                                         "\r",
                                         "\n",
                                         "\r\n",
                                         std::string(1, '\0'),
                                         "\xFF",
                                         "\xC3",
                                         "; ",
                                         "/",
                                         "//",
                                         "../",
                                         "{",
                                         "}",
                                         "[",
                                         "]",
                                         ":",
                                         "null",
                                         "true",
                                         "-1",
                                         "1e999",
                                         "18446744073709551616",
                                         "\"\\u0000\"",
                                         "\"\\ud800\"",
                                         "-9223372036854775808",
                                         "0.5",
                                         "\xEF\xBB\xBF"};
    static const std::pair<std::string, std::string> retypes[] = {
        {"\"size\": ", "\"size\": \"12\", \"x\": "},
        {"\"items\": [", "\"items\": {\"a\": ["},
        {"\"tags\": [", "\"tags\": [7, "},
        {"\"path\": ", "\"path\": 1, \"name\": "},
        {"\"catalogs\": [", "\"catalogs\": [3, "},
        {"\"isFolder\": ", "\"isFolder\": 1, \"y\": "},
        {"\"label\": ", "\"label\": 1e300, \"z\": "},
        {"\"metadata\": {", "\"metadata\": {\"n\": 1, "},
    };
    switch (pick(0, 9)) {
      case 0:  // Flip a byte.
        if (!text.empty()) text[at(text) % text.size()] ^= static_cast<char>(1 << pick(0, 7));
        break;
      case 1:  // Cut short.
        text.resize(at(text));
        break;
      case 2: {  // Repeat a slice.
        size_t from = at(text), length = static_cast<size_t>(pick(0, 400));
        text.insert(at(text), text.substr(from, length));
        break;
      }
      case 3:
      case 4:  // Insert a character that means something to one of the parsers.
        text.insert(at(text), pieces[pick(0, int(std::size(pieces)) - 1)]);
        break;
      case 5:  // A huge field.
        text.insert(at(text), std::string(static_cast<size_t>(pick(1000, 200000)), "x\",a"[pick(0, 3)]));
        break;
      case 6:  // Remove a slice.
        if (!text.empty()) text.erase(at(text), static_cast<size_t>(pick(1, 50)));
        break;
      case 7: {  // Deep nesting.
        size_t depth = static_cast<size_t>(pick(1, 20000));
        text.insert(at(text), std::string(depth, json ? '[' : '"'));
        break;
      }
      default: {  // A value of the wrong type.
        const auto& [from, to] = retypes[pick(0, int(std::size(retypes)) - 1)];
        size_t found = text.find(from, at(text));
        if (found == std::string::npos) found = text.find(from);
        if (found != std::string::npos) text.replace(found, from.size(), to);
        break;
      }
    }
  }

  std::mt19937_64 m_rng;
};

class HostileInputTest : public ExchangeTest {
 protected:
  void SetUp() override {
    Exporter::ImportedFile photo = item("Photos/2024/IMG_0001.JPG", 5000);
    photo.kind = "Image";
    photo.tags = "red, trip";
    photo.meta = {{"Camera", "X, \"100\""}};
    photo.modified = Date{1709647629};
    photo.width = 6000;
    photo.height = 4000;
    photo.label = 6;
    Exporter::ImportedFile song = item("Music/a \"b\", c\nd.mp3", 300);
    song.duration = 12.5;
    song.sha = "ab";
    song.hidden = true;
    int64_t a = Exporter::insertImported(store, "Seed, \"A\"", "/media/a", VolumeInfo{}, false,
                                         {photo, song, item("top.txt", 1)}, "notes");
    int64_t b = Exporter::insertImported(store, "Seed B", "", VolumeInfo{}, true, {item("x/y/z", 2)}, "");
    Exporter::exportCSV(store, {*store.catalog(a), *store.catalog(b)}, dir.file("seed.csv"));
    Exporter::exportJSON(store, {*store.catalog(a), *store.catalog(b)}, dir.file("seed.json"));
    csvSeed = readFile(dir.path() / "seed.csv");
    jsonSeed = readFile(dir.path() / "seed.json");
  }

  // Imports `text` as CSV or JSON; fails the test unless it imports or fails with ExportError having
  // changed nothing. After a success every record's parent is a folder of its own catalog.
  void importOne(const std::string& text, bool json, const std::string& what) {
    writeFile(dir.path() / "in.data", text);
    const int changesBefore = sqlite3_total_changes(store.db().handle());
    const int64_t catalogsBefore = static_cast<int64_t>(store.catalogs().size());
    try {
      int64_t made = json ? Exporter::importJSON(store, dir.path() / "in.data")
                          : Exporter::importCSV(store, dir.path() / "in.data");
      ++successes;
      ASSERT_EQ(static_cast<int64_t>(store.catalogs().size()), catalogsBefore + made) << what;
      ASSERT_EQ(store.db().scalarInt("SELECT count(*) FROM files f WHERE f.parent_id<>0 AND NOT EXISTS("
                                     "SELECT 1 FROM files p WHERE p.id=f.parent_id AND p.is_dir=1 AND "
                                     "p.catalog_id=f.catalog_id)"),
                0)
          << what;
    } catch (const ExportError&) {
      ++failures;
      ASSERT_EQ(sqlite3_total_changes(store.db().handle()), changesBefore) << what;
    } catch (const std::exception& e) {
      FAIL() << what << ": unexpected " << e.what();
    }
    // Keep the database small so that every round costs the same.
    if (store.catalogs().size() > 12) store.db().exec("DELETE FROM files; DELETE FROM catalogs;");
  }

  std::string csvSeed, jsonSeed;
  int successes = 0, failures = 0;
};

TEST_F(HostileInputTest, MutatedCsvImportsOrFailsCleanly) {
  Mutator mutator(20240601);
  for (int round = 0; round < 250 && !HasFatalFailure(); ++round) {
    std::string text = mutator.mutate(csvSeed, /*json=*/false);
    // The parser alone: every row it gives is made of the text's own bytes.
    size_t bytes = 0;
    for (const auto& row : Exporter::parseCSV(text))
      for (const auto& field : row) bytes += field.size();
    ASSERT_LE(bytes, text.size());
    importOne(text, /*json=*/false, "csv round " + std::to_string(round));
  }
  // Both outcomes must have been exercised, or the mutations are too mild or too harsh to mean much.
  EXPECT_GT(successes, 20);
  EXPECT_GT(failures, 5);
}

TEST_F(HostileInputTest, MutatedJsonImportsOrFailsCleanly) {
  Mutator mutator(19700101);
  for (int round = 0; round < 250 && !HasFatalFailure(); ++round)
    importOne(mutator.mutate(jsonSeed, /*json=*/true), /*json=*/true, "json round " + std::to_string(round));
  EXPECT_GT(successes, 10);
  EXPECT_GT(failures, 20);
}

TEST_F(HostileInputTest, ExtremeButValidFilesImport) {
  // A path deeper than the roll-up reaches, and a million-byte name.
  std::string deep;
  for (int i = 0; i < 700; ++i) deep += "d/";
  importOne(std::string("{\"catalogs\": [{\"items\": [{\"path\": \"") + deep +
                "f\", \"size\": 5}, {\"path\": \"" + std::string(1'000'000, 'n') + "\"}]}]}",
            /*json=*/true, "deep");
  ASSERT_EQ(successes, 1);
  const Catalog c = store.catalogs().front();
  EXPECT_EQ(c.folderCount, 700);
  EXPECT_EQ(c.totalSize, 5);
  EXPECT_EQ(store.db().scalarInt("SELECT size FROM files WHERE path='d'"), 0) << "beyond 512 levels up";
  EXPECT_EQ(store.db().scalarInt("SELECT length(name) FROM files WHERE length(name) > 1000"), 1'000'000);
}

}  // namespace
}  // namespace orrelin::testing
