// Import read in pieces: the incremental CSV and UTF-8 readers against the whole-text ones, documents
// larger than one piece, the last of a repeated key, and failures found late in a large file.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "core/name_mapping.h"
#include "exchange/import_source.h"
#include "exchange_fixture.h"
#include "organize/export_error.h"
#include "store/fmt.h"

namespace orrelin::testing {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows parseInPieces(std::string_view text, const std::vector<size_t>& cuts) {
  Rows rows;
  auto take = [&](std::span<std::string> fields) { rows.emplace_back(fields.begin(), fields.end()); };
  Exporter::CSVReader reader;
  size_t from = 0;
  for (size_t cut : cuts) {
    reader.feed(text.substr(from, cut - from), take);
    from = cut;
  }
  reader.feed(text.substr(from), take);
  reader.finish(take);
  return rows;
}

TEST(CSVReader, AnyCutGivesTheRowsOfTheWholeText) {
  const std::string texts[] = {
      "a,\"b \"\"q\"\" c\",d\r\n\"x\ny\",\"\"\r\n\r\nlast,\"",
      "\"\"\"\",\"\"\"\"\"\",\r\r\n,\n\"ab\"c,d\"e",
      "Gr\u00FC\u00DFe,\u65E5\u672C\r\n\"a,\"\"\"",
  };
  for (const std::string& text : texts) {
    const Rows whole = Exporter::parseCSV(text);
    for (size_t one = 0; one <= text.size(); ++one) {
      ASSERT_EQ(parseInPieces(text, {one}), whole) << "cut at " << one << " of " << text;
      for (size_t two = one; two <= text.size(); ++two)
        ASSERT_EQ(parseInPieces(text, {one, two}), whole) << "cuts at " << one << ", " << two << " of " << text;
    }
  }
}

TEST(UTF8Check, AnyCutGivesTheVerdictOfTheWholeText) {
  const std::string texts[] = {
      "a\u00E9\u65E5\U0001F600z",
      "\xC3",                   // Cut off at the end of the text.
      "ok\xE6\x97",             // Likewise, two bytes of three.
      "a\xFF" "b",              // Never valid.
      "\xED\xA0\x80",           // A surrogate.
      "\xC0\xAF",               // Overlong.
      "\x80" "abc",             // A continuation byte with no start.
      "\xF0\x9F\x98\x80\xF0\x9F\x98",
  };
  for (const std::string& text : texts) {
    const bool whole = NameMapping::isValidUTF8(text);
    for (size_t one = 0; one <= text.size(); ++one) {
      for (size_t two = one; two <= text.size(); ++two) {
        Exporter::UTF8Check check;
        check.feed(text.substr(0, one));
        check.feed(text.substr(one, two - one));
        check.feed(text.substr(two));
        ASSERT_EQ(check.valid(), whole) << "cuts at " << one << ", " << two;
      }
    }
  }
}

class LargeImportTest : public ExchangeTest {
 protected:
  // A catalog of `count` files with long names and every field set, so that its export spans many of the
  // importer's pieces.
  int64_t bigCatalog(const std::string& name, int count) {
    std::vector<Exporter::ImportedFile> items;
    for (int i = 0; i < count; ++i) {
      Exporter::ImportedFile f = item("Folder " + std::to_string(i % 37) + "/\u00E9l\u00E9ment " +
                                          std::string(40, "abc,\"\n"[i % 6]) + " " + std::to_string(i) + ".jpg",
                                      1000 + i);
      f.kind = "Image";
      f.tags = i % 3 ? "red, trip" : "";
      f.meta = {{"Camera", "X " + std::to_string(i)}};
      f.modified = Date{1600000000.0 + i};
      f.width = 10 + i;
      f.height = 20;
      f.sha = std::string(64, 'f');
      items.push_back(std::move(f));
    }
    return Exporter::insertImported(store, name, "/media/" + name, VolumeInfo{}, false, items, "n");
  }

  // The records of a catalog without their ids, in path order.
  std::vector<std::string> contents(int64_t catalogID) {
    std::vector<std::string> out;
    for (const FileRecord& f : store.allFiles(catalogID))
      out.push_back(f.path + "|" + std::string(rawValue(f.kind)) + "|" + std::to_string(f.size) + "|" +
                    joinTags(f.tags) + "|" + metaJSON(f.meta) + "|" + std::to_string(f.width) + "|" +
                    std::to_string(f.height) + "|" + f.sha256 + "|" + (f.modified ? Fmt::iso(*f.modified) : ""));
    return out;
  }

  // The catalog called `name` other than `besides`.
  int64_t otherNamed(const std::string& name, int64_t besides) {
    for (const Catalog& c : store.catalogs())
      if (c.name == name && c.id != besides) return c.id;
    return 0;
  }
};

TEST_F(LargeImportTest, ExportsOfManyPiecesComeBackWhole) {
  const int64_t a = bigCatalog("A", 6000), b = bigCatalog("B", 4000);
  Exporter::exportJSON(store, {*store.catalog(a), *store.catalog(b)}, dir.file("big.json"));
  Exporter::exportCSV(store, {*store.catalog(a), *store.catalog(b)}, dir.file("big.csv"));
  ASSERT_GT(std::filesystem::file_size(dir.path() / "big.json"), 3u << 20);
  ASSERT_GT(std::filesystem::file_size(dir.path() / "big.csv"), 2u << 20);

  EXPECT_EQ(Exporter::importJSON(store, dir.path() / "big.json"), 2);
  EXPECT_EQ(contents(otherNamed("A", a)), contents(a));
  EXPECT_EQ(contents(otherNamed("B", b)), contents(b));
  EXPECT_EQ(Exporter::importCSV(store, dir.path() / "big.csv"), 2);
  Catalog csvA = catalogNamed("A (Imported)"), csvB = catalogNamed("B (Imported)");
  EXPECT_LT(csvA.id, csvB.id);
  EXPECT_EQ(csvA.fileCount, 6000);
  EXPECT_EQ(csvB.fileCount, 4000);
  EXPECT_EQ(csvB.folderCount, 37);
  EXPECT_EQ(records(csvB.id).at("Folder 5/\u00E9l\u00E9ment " + std::string(40, 'a') + " 42.jpg").size, 1042);
}

TEST_F(LargeImportTest, CsvCatalogsWhoseRowsAlternateKeepTheOrderOfFirstAppearance) {
  std::string text = "Catalog,Path,Folder,Kind,Size,Tags\r\n";
  for (int i = 0; i < 30000; ++i)
    text += std::string(i % 3 == 2 ? "Second" : "First") + ",dir/" + std::string(60, 'n') + std::to_string(i) +
            ",No,Other,1,\r\n";
  text += "Third,x,No,Other,5,\r\nSecond,y,No,Other,7,";
  writeFile(dir.path() / "mixed.csv", text);
  EXPECT_EQ(Exporter::importCSV(store, dir.path() / "mixed.csv"), 3);
  Catalog first = catalogNamed("First (Imported)"), second = catalogNamed("Second (Imported)"),
          third = catalogNamed("Third (Imported)");
  EXPECT_LT(first.id, second.id);
  EXPECT_LT(second.id, third.id);
  EXPECT_EQ(first.fileCount, 20000);
  EXPECT_EQ(second.fileCount, 10001);
  EXPECT_EQ(third.totalSize, 5);
}

TEST_F(LargeImportTest, AFailureFoundLateInALargeFileChangesNothing) {
  const int64_t a = bigCatalog("A", 5000), b = bigCatalog("B", 500);
  Exporter::exportJSON(store, {*store.catalog(a), *store.catalog(b)}, dir.file("two.json"));
  Exporter::exportCSV(store, {*store.catalog(a), *store.catalog(b)}, dir.file("two.csv"));
  const std::string json = readFile(dir.path() / "two.json"), csv = readFile(dir.path() / "two.csv");
  // Each break stands after the whole first catalog, beyond the first piece of the file.
  const std::pair<std::string, std::string> broken[] = {
      {json.substr(0, json.size() - 100), "not valid JSON"},
      {json.substr(0, json.rfind(']')) + ", 7]}", "not a TVRL Orrelin catalog export"},
      {json.substr(0, json.rfind('}')) + ", \"catalogs\": 5}", "not a TVRL Orrelin catalog export"},
  };
  const int changes = sqlite3_total_changes(store.db().handle());
  for (const auto& [text, message] : broken) {
    writeFile(dir.path() / "broken.json", text);
    try {
      Exporter::importJSON(store, dir.path() / "broken.json");
      ADD_FAILURE() << "imported: " << text.substr(text.size() - 60);
    } catch (const ExportError& e) {
      EXPECT_NE(std::string(e.what()).find(message), std::string::npos) << e.what();
    }
  }
  writeFile(dir.path() / "broken.csv", csv + "\r\nB,\xFF,x");
  EXPECT_THROW(Exporter::importCSV(store, dir.path() / "broken.csv"), ExportError);
  EXPECT_EQ(sqlite3_total_changes(store.db().handle()), changes);
  EXPECT_EQ(store.catalogs().size(), 2u);
}

TEST_F(ExchangeTest, ARepeatedKeyCountsByItsLastValue) {
  writeFile(dir.path() / "repeated.json", R"({
    "catalogs": [1],
    "catalogs": [{
      "items": [{"path": "dropped"}],
      "name": "Kept",
      "items": [{"path": "kept", "metadata": {"n": 1, "k": "v", "n": "now text"}, "size": 3, "size": "x",
                 "tags": ["a"], "tags": 5}],
      "notes": 1, "notes": "last"
    }],
    "app": {"catalogs": 5}
  })");
  EXPECT_EQ(Exporter::importJSON(store, dir.path() / "repeated.json"), 1);
  Catalog kept = catalogNamed("Kept");
  EXPECT_EQ(kept.notes, "last");
  auto r = records(kept.id);
  ASSERT_EQ(r.size(), 1u);
  EXPECT_EQ(r["kept"].meta, (std::map<std::string, std::string>{{"k", "v"}, {"n", "now text"}}));
  EXPECT_EQ(r["kept"].size, 0);
  EXPECT_TRUE(r["kept"].tags.empty());

  writeFile(dir.path() / "overruled.json", R"({"catalogs": [{"name": "Gone"}], "catalogs": {}})");
  EXPECT_THROW(Exporter::importJSON(store, dir.path() / "overruled.json"), ExportError);
  EXPECT_EQ(store.catalogs().size(), 1u);
}

}  // namespace
}  // namespace orrelin::testing

namespace orrelin::testing {
namespace {

TEST_F(ExchangeTest, AFileNameThatIsNotUTF8IsNamedInTheCatalogsOwnForm) {
  const std::filesystem::path file = dir.path() / "caf\xE9.csv";  // Latin-1, as old drives have.
  writeFile(file, "Catalog,Path,Name,Folder,Kind,Size\nC,a,a,No,Other,1\n");
  ASSERT_EQ(Exporter::importCSV(store, file), 1);
  const std::string notes = catalogNamed("C (Imported)").notes;
  EXPECT_TRUE(NameMapping::isValidUTF8(notes)) << notes;
  EXPECT_EQ(notes, "Imported from " + NameMapping::storedPath(file.filename()));
  EXPECT_EQ(NameMapping::toDisk(notes.substr(14)), "caf\xE9.csv");

  writeFile(file, "Catalog,Path,Name,Folder,Kind,Size\nC,\xFF,a,No,Other,1\n");
  try {
    Exporter::importCSV(store, file);
    ADD_FAILURE();
  } catch (const ExportError& e) {
    EXPECT_TRUE(NameMapping::isValidUTF8(e.what())) << e.what();
  }
}

}  // namespace
}  // namespace orrelin::testing
