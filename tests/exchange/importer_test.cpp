// Reading exchange files back: the CSV parser, the two importers' defaults, groupings and refusals.
#include <gtest/gtest.h>

#include "exchange_fixture.h"
#include "organize/export_error.h"
#include "store/fmt.h"

namespace orrelin::testing {
namespace {

using Rows = std::vector<std::vector<std::string>>;

TEST(ParseCSV, FollowsTheDialectOfTheExport) {
  const std::pair<std::string, Rows> cases[] = {
      {"", {}},
      {"a,b\nc,d", {{"a", "b"}, {"c", "d"}}},
      {"a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
      {"a\r\n\r\nb", {{"a"}, {""}, {"b"}}},  // A blank line in the middle is one empty field.
      {"x\ry", {{"xy"}}},                    // A bare CR outside quotes is dropped.
      {"\"a,b\",c", {{"a,b", "c"}}},
      {"\"say \"\"hi\"\"\"", {{"say \"hi\""}}},
      {"\"line\nbreak\r\n\",z", {{"line\nbreak\r\n", "z"}}},  // Inside quotes every character counts.
      {"\"ab\"c,d", {{"abc", "d"}}},                          // A closing quote, then outside again.
      {"ab\"c,d\"e", {{"abc,de"}}},                           // A quote inside a field opens quotes.
      {"\"unterminated,\nrest", {{"unterminated,\nrest"}}},
      {"\"\"", {}},  // Nothing but an empty field and row: no row.
      {"a,", {{"a", ""}}},
      {",", {{"", ""}}},
      {"\n", {{""}}},
      {"\xEF\xBB\xBF"
       "Catalog",
       {{"\xEF\xBB\xBF"
         "Catalog"}}},  // No treatment of a byte order mark.
      {"a;b\tc", {{"a;b\tc"}}},
  };
  for (const auto& [text, rows] : cases) EXPECT_EQ(Exporter::parseCSV(text), rows) << text;
}

class ImportTest : public ExchangeTest {
 protected:
  std::string write(const std::string& name, const std::string& text) {
    writeFile(dir.path() / name, text);
    return dir.file(name);
  }
  // Runs `import` and returns its error text, or "" when it succeeded.
  template <class Fn>
  std::string errorOf(Fn&& import) {
    try {
      import();
      return "";
    } catch (const ExportError& e) {
      return e.what();
    }
  }
};

const std::string kHeader =
    "Catalog,Path,Name,Folder,Kind,Size,Modified,Created,Tags,Label,Hidden,UTI,Duration,Width,Height,SHA256,"
    "Metadata\r\n";

TEST_F(ImportTest, CsvRowsBecomeOneCatalogPerNameInOrderOfFirstAppearance) {
  std::string path =
      write("export.csv", kHeader +
                              "Music,song.mp3,x,No,Audio,99,2024-03-05T14:07:09Z,bad date,rock; "
                              "live,Orange,Yes,audio/mpeg,187.25,,,ff00,Artist: A\r\n"
                              "Photos,\"a\nb/c, \"\"d\"\".jpg\",ignored,No,Image,1.5,,,,Purple,No,,,640,"
                              "480,,\r\n"
                              "Music,albums,,Yes,,12,,,,red,No,,,,,,\r\n"
                              ",loose,,No,Nonsense,-,,,,,,,nan,x,,,\r\n"
                              "Music,short,No\r\n"
                              "Music,one-less,,No,Other,7,,,,,,,,,,");  // 16 of 17 fields.
  EXPECT_EQ(Exporter::importCSV(store, path), 3);

  std::vector<Catalog> made = store.catalogs();
  ASSERT_EQ(made.size(), 3u);
  Catalog music = catalogNamed("Music (Imported)");
  Catalog photos = catalogNamed("Photos (Imported)");
  Catalog loose = catalogNamed("Imported Catalog (Imported)");
  EXPECT_LT(music.id, photos.id);
  EXPECT_LT(photos.id, loose.id);
  EXPECT_EQ(music.notes, "Imported from export.csv");
  EXPECT_EQ(music.volumeName, "Music");
  EXPECT_EQ(music.rootPath, "");
  EXPECT_FALSE(music.isFolder);
  EXPECT_TRUE(music.scannedAt);

  auto m = records(music.id);
  ASSERT_EQ(m.size(), 3u) << "song.mp3, albums, one-less; the short row is skipped";
  const FileRecord& song = m["song.mp3"];
  EXPECT_EQ(song.name, "song.mp3");
  EXPECT_EQ(song.kind, FileKind::audio);
  EXPECT_EQ(song.size, 99);
  EXPECT_EQ(song.modified, Date{1709647629});
  EXPECT_FALSE(song.created);
  EXPECT_EQ(song.tags, (std::vector<std::string>{"rock", "live"}));
  EXPECT_EQ(song.label, 7);
  EXPECT_TRUE(song.hidden);
  EXPECT_EQ(song.uti, "audio/mpeg");
  EXPECT_EQ(song.duration, 187.25);
  EXPECT_EQ(song.sha256, "ff00");
  EXPECT_TRUE(song.meta.empty());  // Metadata does not come back from a CSV.
  EXPECT_TRUE(m["albums"].isDir);
  EXPECT_EQ(m["albums"].size, 0);   // Folder sizes are rolled up, not read.
  EXPECT_EQ(m["albums"].label, 0);  // Label names are matched exactly.
  EXPECT_EQ(m["one-less"].size, 7);

  auto p = records(photos.id);
  ASSERT_EQ(p.size(), 2u);
  const FileRecord& photo = p["a\nb/c, \"d\".jpg"];
  EXPECT_EQ(photo.name, "c, \"d\".jpg");
  EXPECT_EQ(photo.parentID, p["a\nb"].id);
  EXPECT_EQ(photo.size, 0);  // "1.5" is no whole number.
  EXPECT_EQ(photo.width, 640);
  EXPECT_EQ(photo.height, 480);
  EXPECT_EQ(photo.label, 3);

  auto l = records(loose.id);
  EXPECT_EQ(l["loose"].kind, FileKind::other);
  EXPECT_EQ(l["loose"].duration, 0);
}

TEST_F(ImportTest, CsvColumnsAreFoundByNameWhereverTheyStand) {
  std::string path =
      write("reordered.CSV", "Size,Path,Folder,Kind,Extra,Catalog\nX,f.txt,No,Code,?,Mine\n12,g,Yes,,,");
  EXPECT_EQ(Exporter::importCSV(store, path), 2);
  Catalog mine = catalogNamed("Mine (Imported)");
  EXPECT_EQ(records(mine.id)["f.txt"].kind, FileKind::code);
  const FileRecord g = records(catalogNamed("Imported Catalog (Imported)").id)["g"];
  EXPECT_TRUE(g.isDir);
  EXPECT_EQ(g.kind, FileKind::other);  // An empty kind reads as "Other", a kind in its own right.

  EXPECT_EQ(Exporter::importCSV(store, write("header.csv", kHeader)), 0);
  EXPECT_EQ(store.catalogs().size(), 2u);
}

TEST_F(ImportTest, ACsvWithoutTheLayoutIsRefusedAndChangesNothing) {
  Exporter::insertImported(store, "Existing", "", VolumeInfo{}, false, {item("x", 1)}, "");
  const std::string before = snapshot();
  const std::string layout = std::string(Exporter::kNotCSVExport);
  EXPECT_EQ(layout,
            "This CSV file does not have the TVRL Orrelin column layout (Catalog, Path, Name, \u2026).");
  const std::pair<const char*, std::string> cases[] = {
      {"", layout},
      {"\n\n", layout},
      {"Catalog,Path,Name,Folder,Kind\nA,b,c,d,e", layout},              // Five columns.
      {"Catalog,path,Name,Folder,Kind,Size\nA,b,c,No,Other,1", layout},  // Names are exact.
      {"Catalog,Path,Name,Folder,Kind,Size\nA,\xFF\xFE,c,No,Other,1", "not UTF-8"},
  };
  for (const auto& [text, message] : cases) {
    std::string error = errorOf([&] { Exporter::importCSV(store, write("bad.csv", text)); });
    EXPECT_NE(error.find(message), std::string::npos) << text << " gave: " << error;
  }
  EXPECT_NE(errorOf([&] { Exporter::importCSV(store, dir.path() / "nowhere.csv"); }).find("nowhere.csv"),
            std::string::npos);
  EXPECT_EQ(snapshot(), before);
}

TEST_F(ImportTest, JsonKeysOfAnotherTypeTakeTheirDefaults) {
  std::string path = write("odd.json", R"({
    "catalogs": [
      {"items": [
        {"name": "named-only.txt", "size": 1500.9, "label": 2.0, "width": 10.5, "height": 7,
         "tags": ["a", 1], "metadata": {"k": 1}, "kind": 5, "isFolder": "yes", "hidden": 1,
         "modified": "yesterday", "created": "2020-01-02T03:04:05+01:00", "duration": "long"},
        {"path": "p/q", "name": "ignored", "kind": "Folder", "isFolder": true, "size": -5,
         "tags": ["x, y"], "metadata": {"a": "b"}, "sha256": "00"},
        {"path": 7, "name": "fallback"},
        {}
      ]},
      {"name": 3, "rootPath": "/r", "volumeName": "V", "volumeUUID": "U", "format": "F",
       "capacity": 1e12, "free": 18446744073709551615, "network": true, "removable": true,
       "folderCatalog": true, "notes": "N", "files": 99, "totalSize": 99, "scanned": "1999-01-01T00:00:00Z",
       "items": [{"path": "ok"}, 3]}
    ],
    "format": "something else", "version": 99
  })");
  EXPECT_EQ(Exporter::importJSON(store, path), 2);
  std::vector<Catalog> all = store.catalogs();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].name, "Imported Catalog");
  EXPECT_EQ(all[1].name, "Imported Catalog");
  const Catalog& first = all[0].id < all[1].id ? all[0] : all[1];
  const Catalog& second = all[0].id < all[1].id ? all[1] : all[0];

  auto r = records(first.id);
  ASSERT_EQ(r.size(), 4u) << "named-only.txt, p, p/q, fallback";
  const FileRecord& named = r["named-only.txt"];
  EXPECT_EQ(named.size, 1500);
  EXPECT_EQ(named.label, 2);
  EXPECT_EQ(named.width, 0);
  EXPECT_EQ(named.height, 7);
  EXPECT_TRUE(named.tags.empty());
  EXPECT_TRUE(named.meta.empty());
  EXPECT_EQ(named.kind, FileKind::other);
  EXPECT_FALSE(named.isDir);
  EXPECT_FALSE(named.hidden);
  EXPECT_FALSE(named.modified);
  EXPECT_EQ(named.created, Date{1577930645});
  EXPECT_EQ(named.duration, 0);
  EXPECT_EQ(r["p/q"].tags, (std::vector<std::string>{"x", "y"}));  // A tag holding ", " reads back as two.
  EXPECT_EQ(r["p/q"].meta.at("a"), "b");
  EXPECT_EQ(r["p/q"].size, 0);
  EXPECT_TRUE(r.count("fallback"));

  EXPECT_EQ(second.rootPath, "/r");
  EXPECT_EQ(second.volumeName, "V");
  EXPECT_EQ(second.volumeUUID, "U");
  EXPECT_EQ(second.volumeFormat, "F");
  EXPECT_EQ(second.capacity, 1000000000000);
  EXPECT_EQ(second.freeSpace, 0);  // Beyond a 64-bit integer.
  EXPECT_TRUE(second.isNetwork && second.isRemovable && second.isFolder);
  EXPECT_EQ(second.notes, "N");
  EXPECT_EQ(second.fileCount, 0);  // The file's totals are not trusted.
  EXPECT_NE(Fmt::iso(*second.scannedAt), "1999-01-01T00:00:00Z");
  EXPECT_TRUE(store.allFiles(second.id).empty()) << "a list with a non-object is no list of items";
}

TEST_F(ImportTest, JsonOfAnotherShapeIsRefusedAndChangesNothing) {
  EXPECT_EQ(Exporter::importJSON(store, write("empty.json", R"({"catalogs": []})")), 0);
  Exporter::insertImported(store, "Existing", "", VolumeInfo{}, false, {item("x", 1)}, "");
  const std::string before = snapshot();
  const std::string shape = "This file is not a TVRL Orrelin catalog export.";
  const std::pair<const char*, std::string> cases[] = {
      {R"({"catalogs": 5})", shape},
      {R"([{"catalogs": []}])", shape},
      {R"({"catalogs": [{}, 1]})", shape},
      {R"({"Catalogs": []})", shape},
      {R"("text")", shape},
      {"", "not valid JSON"},
      {R"({"catalogs": [)", "not valid JSON"},
      {"{\"catalogs\": [{\"name\": \"\xFF\"}]}", "not valid JSON"},
  };
  for (const auto& [text, message] : cases) {
    std::string error = errorOf([&] { Exporter::importJSON(store, write("bad.json", text)); });
    EXPECT_NE(error.find(message), std::string::npos) << text << " gave: " << error;
    EXPECT_EQ(error.find("json.exception"), std::string::npos) << error;
  }
  EXPECT_EQ(snapshot(), before);
}

}  // namespace
}  // namespace orrelin::testing
