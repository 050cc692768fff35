// Export then import: JSON brings a catalog back whole; CSV loses only its metadata and volume facts.
#include <gtest/gtest.h>

#include "exchange_fixture.h"

namespace orrelin::testing {
namespace {

using Exporter::ImportedFile;

// A catalog with the awkward values an export must carry: separators and quotes in names, line breaks,
// non-ASCII text, every kind, labels, hidden items, dates before 1970 and far ahead, empty tags.
std::vector<ImportedFile> awkwardItems() {
  std::vector<ImportedFile> items;
  const char* names[] = {"plain.txt",
                         "comma, here.jpg",
                         "quote \"q\".mp4",
                         "line\nbreak.pdf",
                         "Gr\u00FC\u00DFe \u65E5\u672C.doc",
                         " padded .zip",
                         "semi; colon.ttf",
                         ".hidden"};
  int n = 0;
  for (const char* folder : {"", "Top/", "Top/Deeper, still/"}) {
    for (const char* name : names) {
      ImportedFile f;
      f.path = std::string(folder) + name;
      f.size = 1000 + n * 7;
      f.kind = std::string(rawValue(kAllFileKinds[static_cast<size_t>(n) % kAllFileKinds.size()]));
      if (f.kind == "Folder") f.kind = "Other";
      f.uti = n % 2 ? "text/plain" : "";
      if (n % 3 != 0) f.modified = Date{1700000000.0 + n * 86400};
      if (n % 4 == 1) f.created = Date{-86400.0 * 365 * 10};
      if (n % 4 == 2) f.created = Date{4102444800};  // 2100.
      if (n % 5 == 0) f.tags = "red, Work, \u00E9t\u00E9";
      if (n % 5 == 1) f.tags = "single";
      f.label = n % 8;
      f.hidden = n % 3 == 1;
      if (n % 4 == 0) f.duration = 12.5 + n;
      if (n % 3 == 0) f.width = 1920, f.height = n % 2 ? 1080 : 0;
      if (n % 2 == 0) f.sha = std::string(64, "0123456789abcdef"[n % 16]);
      if (n % 3 == 2) f.meta = {{"Camera", "X, 100"}, {"Title", "a \"b\"\nc"}, {"\u00DCber", "\u00E4"}};
      items.push_back(f);
      ++n;
    }
  }
  ImportedFile taggedFolder;
  taggedFolder.path = "Top";
  taggedFolder.isDir = true;
  taggedFolder.kind = "Folder";
  taggedFolder.uti = "inode/directory";
  taggedFolder.tags = "blue";
  taggedFolder.label = 4;
  taggedFolder.hidden = true;
  taggedFolder.modified = Date{1600000000};
  items.push_back(taggedFolder);
  return items;
}

// A record as it should survive: everything but the row ids, which an import gives anew.
struct Comparable {
  FileRecord record;
  std::string parentPath;
  bool operator==(const Comparable&) const = default;
};
void PrintTo(const Comparable& c, std::ostream* os) {
  *os << c.record.path << " (parent " << c.parentPath << ", size " << c.record.size << ")";
}

std::map<std::string, Comparable> comparable(CatalogDB& store, int64_t catalogID) {
  std::map<int64_t, std::string> pathOf;
  std::vector<FileRecord> all = store.allFiles(catalogID);
  for (const FileRecord& f : all) pathOf[f.id] = f.path;
  std::map<std::string, Comparable> out;
  for (FileRecord f : all) {
    Comparable c{f, f.parentID ? pathOf.at(f.parentID) : ""};
    c.record.id = c.record.catalogID = c.record.parentID = 0;
    out.emplace(f.path, c);
  }
  return out;
}

class RoundTripTest : public ExchangeTest {
 protected:
  void SetUp() override {
    VolumeInfo volume;
    volume.name = "Archive Disk";
    volume.uuid = "1234-ABCD";
    volume.format = "ExFAT";
    volume.capacity = 2'000'000'000'000;
    volume.free = 500'000'000'000;
    volume.isRemovable = true;
    original = store
                   .catalog(Exporter::insertImported(store, "Archive, \"2024\"", "/media/archive", volume,
                                                     false, awkwardItems(), "Shelf 3\nbox 2"))
                   .value();
    other =
        store.catalog(Exporter::insertImported(store, "Other", "", VolumeInfo{}, true, {item("x/y", 3)}, ""))
            .value();
  }

  Catalog original, other;
};

TEST_F(RoundTripTest, JsonBringsBackEveryRecordAndTheCatalogsFacts) {
  std::string path = dir.file("both.json");
  ASSERT_EQ(Exporter::exportJSON(store, {original, other}, path), 26 + 2);
  EXPECT_EQ(Exporter::importJSON(store, path), 2);

  std::vector<Catalog> all = store.catalogs();
  ASSERT_EQ(all.size(), 4u);
  std::vector<Catalog> copies;
  for (const Catalog& c : all)
    if (c.id != original.id && c.id != other.id) copies.push_back(c);
  std::sort(copies.begin(), copies.end(), [](const Catalog& a, const Catalog& b) { return a.id < b.id; });
  ASSERT_EQ(copies.size(), 2u);

  for (auto [source, copy] : {std::pair{original, copies[0]}, std::pair{other, copies[1]}}) {
    EXPECT_EQ(comparable(store, copy.id), comparable(store, source.id)) << source.name;
    // The same name, unchanged; the same facts, apart from when it was made and scanned.
    Catalog expected = source;
    expected.id = copy.id;
    expected.createdAt = copy.createdAt;
    expected.scannedAt = copy.scannedAt;
    EXPECT_EQ(copy, expected);
  }
}

TEST_F(RoundTripTest, CsvLosesOnlyMetadataAndTheVolumesFacts) {
  std::string path = dir.file("Archive.csv");
  ASSERT_EQ(Exporter::exportCSV(store, {original}, path), 26);
  EXPECT_EQ(Exporter::importCSV(store, path), 1);

  Catalog copy = catalogNamed("Archive, \"2024\" (Imported)");
  EXPECT_EQ(copy.rootPath, "");
  EXPECT_EQ(copy.volumeName, "Archive, \"2024\"");
  EXPECT_EQ(copy.capacity, 0);
  EXPECT_EQ(copy.notes, "Imported from Archive.csv");
  EXPECT_EQ(copy.fileCount, original.fileCount);
  EXPECT_EQ(copy.folderCount, original.folderCount);
  EXPECT_EQ(copy.totalSize, original.totalSize);

  auto expected = comparable(store, original.id);
  int hadMeta = 0;
  for (auto& [unused, c] : expected) {
    hadMeta += !c.record.meta.empty();
    c.record.meta.clear();
  }
  EXPECT_GT(hadMeta, 0);
  EXPECT_EQ(comparable(store, copy.id), expected);
}

}  // namespace
}  // namespace orrelin::testing
