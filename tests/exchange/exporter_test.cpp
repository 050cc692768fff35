// Writing catalogs and hits as CSV and JSON: the dialect, the key rules, and atomic replacement.
#include <gtest/gtest.h>

#include <algorithm>

#include "comma_locale.h"
#include "exchange_fixture.h"
#include "organize/export_error.h"
#include "store/db_error.h"
#include "store/fmt.h"

namespace orrelin::testing {
namespace {

using nlohmann::json;

FileRecord bareRecord() {
  FileRecord r;
  r.path = "dir/file.txt";
  r.name = "file.txt";
  r.size = 12;
  return r;
}

TEST(CsvField, QuotesExactlyTheFieldsThatNeedIt) {
  const std::pair<std::string, std::string> cases[] = {
      {"plain", "plain"},
      {"", ""},
      {" padded ", " padded "},  // Blanks alone do not quote.
      {"a,b", "\"a,b\""},
      {"say \"hi\"", "\"say \"\"hi\"\"\""},
      {"\"", "\"\"\"\""},
      {"two\nlines", "\"two\nlines\""},
      {"cr\r", "\"cr\r\""},
      {"semi; colon", "semi; colon"},
      {"Gr\u00FC\u00DFe", "Gr\u00FC\u00DFe"},
  };
  for (const auto& [in, out] : cases) EXPECT_EQ(Exporter::csvField(in), out) << in;
}

TEST(CsvRow, HasSeventeenFieldsInTheHeaderOrder) {
  std::string header;
  for (std::string_view name : Exporter::csvHeader())
    header += (header.empty() ? "" : ",") + std::string(name);
  EXPECT_EQ(header,
            "Catalog,Path,Name,Folder,Kind,Size,Modified,Created,Tags,Label,Hidden,UTI,Duration,Width,Height,"
            "SHA256,Metadata");

  FileRecord full = bareRecord();
  full.name = "a, \"quoted\"\nname";
  full.kind = FileKind::diskImage;
  full.modified = Date{1709647629.9};
  full.created = Date{0};
  full.tags = {"red", "", "x,y"};
  full.label = 6;
  full.hidden = true;
  full.uti = "application/x-iso9660-image";
  full.duration = 61.5;
  full.width = 100;
  full.height = 0;
  full.sha256 = "abc";
  full.meta = {{"b", "2"}, {"a", "1, or so"}, {"B", "upper"}};

  const auto rows = Exporter::parseCSV(Exporter::csvRow(full, "My, Disk"));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0],
            (std::vector<std::string>{"My, Disk", "dir/file.txt", "a, \"quoted\"\nname", "No", "Disk Image",
                                      "12", "2024-03-05T14:07:09Z", "1970-01-01T00:00:00Z", "red; ; x,y",
                                      "Red", "Yes", "application/x-iso9660-image", "61.50", "100", "", "abc",
                                      "B: upper; a: 1, or so; b: 2"}));

  FileRecord bare = bareRecord();
  bare.isDir = true;
  bare.label = 42;
  bare.duration = -1;
  const auto bareRows = Exporter::parseCSV(Exporter::csvRow(bare, ""));
  ASSERT_EQ(bareRows.size(), 1u);
  EXPECT_EQ(bareRows[0], (std::vector<std::string>{"", "dir/file.txt", "file.txt", "Yes", "Other", "12", "",
                                                   "", "", "None", "No", "", "", "", "", "", ""}));
}

TEST(CsvRow, DurationHasAPointWhateverTheProcessLocale) {
  CommaDecimalLocale comma;
  if (!comma.active()) GTEST_SKIP() << "localedef could not make a locale with a decimal comma";
  FileRecord r = bareRecord();
  r.duration = 61.5;
  const auto rows = Exporter::parseCSV(Exporter::csvRow(r, "Disk"));
  ASSERT_EQ(rows.size(), 1u);
  ASSERT_EQ(rows[0].size(), 17u);
  EXPECT_EQ(rows[0][12], "61.50");
}

TEST(FileDict, KeysArePresentOnlyWhenTheRecordHasTheValue) {
  json bare = Exporter::fileDict(bareRecord());
  std::vector<std::string> keys;
  for (const auto& [key, value] : bare.items()) keys.push_back(key);
  EXPECT_EQ(keys, (std::vector<std::string>{"hidden", "isFolder", "kind", "label", "name", "path", "size",
                                            "tags", "uti"}));
  EXPECT_EQ(bare["tags"], json::array());
  EXPECT_EQ(bare["kind"], "Other");

  FileRecord r = bareRecord();
  r.width = 100;
  r.height = 0;
  r.duration = 2.5;
  r.modified = Date{1709647629};
  r.sha256 = "ff";
  r.meta = {{"k", "v"}};
  r.tags = {"a", "b"};
  r.label = 3;
  json d = Exporter::fileDict(r);
  EXPECT_EQ(d["width"], 100);
  EXPECT_EQ(d["height"], 0);  // Goes with the width, whatever its own value.
  EXPECT_EQ(d["duration"], 2.5);
  EXPECT_EQ(d["modified"], "2024-03-05T14:07:09Z");
  EXPECT_FALSE(d.contains("created"));
  EXPECT_EQ(d["sha256"], "ff");
  EXPECT_EQ(d["metadata"], (json{{"k", "v"}}));
  EXPECT_EQ(d["tags"], (json{"a", "b"}));
  EXPECT_EQ(d["label"], 3);

  r.width = 0;
  r.height = 50;
  EXPECT_FALSE(Exporter::fileDict(r).contains("height"));

  Catalog neverScanned;
  EXPECT_FALSE(Exporter::catalogDict(neverScanned).contains("scanned"));
  EXPECT_FALSE(Exporter::catalogDict(neverScanned).contains("items"));
  neverScanned.scannedAt = Date{1709647630};
  EXPECT_EQ(Exporter::catalogDict(neverScanned)["scanned"], "2024-03-05T14:07:10Z");
}

class ExportFileTest : public ExchangeTest {
 protected:
  void SetUp() override {
    ImportedFile photo = item("Photos/b.jpg", 300);
    photo.kind = "Image";
    photo.meta = {{"Camera", "X"}};
    photo.tags = "one, two";
    first = store
                .catalog(Exporter::insertImported(store, "First", "/m/first", VolumeInfo{}, false,
                                                  {photo, item("Photos/a.jpg", 100), item("z.txt", 1)}, ""))
                .value();
    second = store
                 .catalog(Exporter::insertImported(store, "Second", "", VolumeInfo{}, true, {item("only", 5)},
                                                   "note"))
                 .value();
  }
  using ImportedFile = Exporter::ImportedFile;
  Catalog first, second;
};

TEST_F(ExportFileTest, CsvEndsRowsWithCrlfExceptTheLastAndKeepsTheGivenCatalogOrder) {
  std::string path = dir.file("out.csv");
  EXPECT_EQ(Exporter::exportCSV(store, {second, first}, path), 5);
  std::string text = readFile(path);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 5);
  EXPECT_NE(text.back(), '\n');
  auto rows = Exporter::parseCSV(text);
  ASSERT_EQ(rows.size(), 6u);
  std::vector<std::string> order;
  for (size_t i = 1; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].size(), 17u);
    order.push_back(rows[i][0] + ":" + rows[i][1]);
  }
  EXPECT_EQ(order, (std::vector<std::string>{"Second:only", "First:Photos", "First:Photos/a.jpg",
                                             "First:Photos/b.jpg", "First:z.txt"}));
  EXPECT_EQ(rows[4][16], "Camera: X");
  EXPECT_EQ(rows[4][8], "one; two");

  EXPECT_EQ(Exporter::exportCSV(store, {}, path), 0);
  EXPECT_EQ(readFile(path), std::string(text.substr(0, text.find("\r\n") + 2)));
}

TEST_F(ExportFileTest, JsonIsTheSameTextAsTheWholeDocumentPrettyPrinted) {
  std::string path = dir.file("out.json");
  EXPECT_EQ(Exporter::exportJSON(store, {first, second}, path), 5);
  const std::string text = readFile(path);
  json doc = json::parse(text);

  // The document as one tree, dumped at once, must give the very text that was streamed.
  json expected = {{"app", "TVRL Orrelin"},
                   {"format", "tavrel-orrelin-catalog"},
                   {"version", 1},
                   {"exported", doc["exported"]},
                   {"catalogs", json::array()}};
  for (const Catalog& c : {first, second}) {
    json d = Exporter::catalogDict(c);
    d["items"] = json::array();
    for (const FileRecord& r : store.allFiles(c.id)) d["items"].push_back(Exporter::fileDict(r));
    expected["catalogs"].push_back(d);
  }
  EXPECT_EQ(text, expected.dump(2) + "\n");
  EXPECT_TRUE(Fmt::parseIso(doc["exported"].get<std::string>()));
  EXPECT_EQ(doc["catalogs"][0]["items"][1]["path"], "Photos/a.jpg");
  EXPECT_EQ(doc["catalogs"][1]["items"].size(), 1u);

  EXPECT_EQ(Exporter::exportJSON(store, {}, path), 0);
  doc = json::parse(readFile(path));
  EXPECT_EQ(doc["catalogs"], json::array());
  const json empty = {{"app", "TVRL Orrelin"},
                      {"format", "tavrel-orrelin-catalog"},
                      {"version", 1},
                      {"exported", doc["exported"]},
                      {"catalogs", json::array()}};
  EXPECT_EQ(readFile(path), empty.dump(2) + "\n");
}

TEST_F(ExportFileTest, HitsCarryTheirCatalogNameAndNoArchiveKeys) {
  std::vector<SearchHit> hits;
  for (const FileRecord& r : store.allFiles(first.id)) hits.push_back({r, "First"});
  hits.push_back({store.allFiles(second.id).front(), "Second"});

  Exporter::exportHitsJSON(hits, dir.file("hits.json"));
  json doc = json::parse(readFile(dir.path() / "hits.json"));
  EXPECT_EQ(doc.size(), 2u);
  EXPECT_EQ(doc["app"], "TVRL Orrelin");
  ASSERT_EQ(doc["results"].size(), 5u);
  json expected = Exporter::fileDict(hits[4].file);
  expected["catalog"] = "Second";
  EXPECT_EQ(doc["results"][4], expected);

  Exporter::exportHitsCSV(hits, dir.file("hits.csv"));
  auto rows = Exporter::parseCSV(readFile(dir.path() / "hits.csv"));
  ASSERT_EQ(rows.size(), 6u);
  EXPECT_EQ(rows[5][0], "Second");
  EXPECT_EQ(rows[5][1], "only");

  Exporter::exportHitsCSV({}, dir.file("none.csv"));
  EXPECT_EQ(readFile(dir.path() / "none.csv").size(), Exporter::hitsCSV({}).size());
  EXPECT_TRUE(Exporter::hitsCSV({}).ends_with("Metadata\r\n"));
}

TEST_F(ExportFileTest, AFailedExportLeavesTheTargetAsItWasAndNoTemporaryFile) {
  std::string target = dir.file("keep.csv");
  writeFile(target, "precious");
  auto entries = [&] {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir.path()))
      names.push_back(e.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  };
  const auto before = entries();

  // A folder that does not exist: nothing can be made.
  EXPECT_THROW(Exporter::exportCSV(store, {first}, dir.path() / "missing" / "x.csv"), ExportError);
  // The target is a folder: the document is written, but cannot take its place.
  std::filesystem::create_directory(dir.path() / "folder.json");
  try {
    Exporter::exportJSON(store, {first}, dir.path() / "folder.json");
    ADD_FAILURE() << "a folder was replaced";
  } catch (const ExportError& e) {
    EXPECT_NE(std::string(e.what()).find("folder.json"), std::string::npos) << e.what();
  }
  std::filesystem::remove(dir.path() / "folder.json");
  // The store fails after the file was begun.
  Catalog ghost = first;
  store.db().exec("ALTER TABLE files RENAME TO files_gone");
  EXPECT_THROW(Exporter::exportCSV(store, {ghost}, target), DBError);
  EXPECT_THROW(Exporter::exportJSON(store, {ghost}, target), DBError);
  store.db().exec("ALTER TABLE files_gone RENAME TO files");

  EXPECT_EQ(readFile(target), "precious");
  EXPECT_EQ(entries(), before);

  // A good export replaces the target and keeps its permissions.
  std::filesystem::permissions(target, std::filesystem::perms(0640));
  EXPECT_EQ(Exporter::exportCSV(store, {first}, target), 4);
  EXPECT_TRUE(readFile(target).starts_with("Catalog,Path"));
  EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms(0640));
  EXPECT_EQ(entries(), before);
}

}  // namespace
}  // namespace orrelin::testing
