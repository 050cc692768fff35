// Inserting an imported catalog: rebuilt parent folders, order, kinds, values, totals, and failure.
#include <gtest/gtest.h>

#include "exchange_fixture.h"
#include "store/db_error.h"

namespace orrelin::testing {
namespace {

using Exporter::ImportedFile;
using Exporter::insertImported;

TEST_F(ExchangeTest, FoldersMissingAboveAnItemAreMadeWithTheirParents) {
  VolumeInfo volume;
  volume.name = "Backup Disk";
  volume.format = "ext4";
  volume.capacity = 5000;
  int64_t id = insertImported(store, "Drive", "/media/drive", volume, /*isFolder=*/true,
                              {item("a/b/c/deep.TXT", 700), item("top.bin", 50)}, "notes here");

  std::optional<Catalog> c = store.catalog(id);
  ASSERT_TRUE(c);
  EXPECT_EQ(c->name, "Drive");  // Used as given, no suffix.
  EXPECT_EQ(c->rootPath, "/media/drive");
  EXPECT_EQ(c->volumeName, "Backup Disk");
  EXPECT_EQ(c->capacity, 5000);
  EXPECT_TRUE(c->isFolder);
  EXPECT_EQ(c->notes, "notes here");
  EXPECT_FALSE(c->groupID);
  EXPECT_FALSE(c->isSample);
  ASSERT_TRUE(c->scannedAt);
  EXPECT_NEAR(c->scannedAt->seconds, Date::now().seconds, 60);
  EXPECT_EQ(c->fileCount, 2);
  EXPECT_EQ(c->folderCount, 3);
  EXPECT_EQ(c->totalSize, 750);

  auto rows = records(id);
  ASSERT_EQ(rows.size(), 5u);
  const FileRecord &a = rows["a"], &b = rows["a/b"], &abc = rows["a/b/c"], &deep = rows["a/b/c/deep.TXT"];
  EXPECT_EQ(a.parentID, 0);
  EXPECT_EQ(b.parentID, a.id);
  EXPECT_EQ(abc.parentID, b.id);
  EXPECT_EQ(deep.parentID, abc.id);
  EXPECT_EQ(rows["top.bin"].parentID, 0);
  for (const FileRecord* folder : {&a, &b, &abc}) {
    EXPECT_TRUE(folder->isDir);
    EXPECT_EQ(folder->kind, FileKind::folder);
    EXPECT_EQ(folder->uti, "inode/directory");
    EXPECT_FALSE(folder->modified);
    EXPECT_EQ(folder->size, 700);  // Rolled up from the file below.
    EXPECT_EQ(folder->itemCount, 1);
  }
  EXPECT_EQ(a.name, "a");
  EXPECT_EQ(abc.name, "c");
  EXPECT_EQ(deep.name, "deep.TXT");
  EXPECT_EQ(deep.ext, "txt");
  EXPECT_EQ(deep.kind, FileKind::other);
  // Parents are inserted before their children.
  EXPECT_LT(a.id, b.id);
  EXPECT_LT(b.id, abc.id);
  EXPECT_LT(abc.id, deep.id);
}

TEST_F(ExchangeTest, EveryFieldOfAnItemIsStoredAndFolderSizesInTheFileAreNotTrusted) {
  ImportedFile photo = item("Photos/IMG_1.JPG", 4096);
  photo.kind = "Image";
  photo.uti = "image/jpeg";
  photo.modified = Date{1700000000.5};
  photo.created = Date{1600000000};
  photo.tags = "red, holiday";
  photo.label = 6;
  photo.hidden = true;
  photo.duration = 0;
  photo.width = 4000;
  photo.height = 3000;
  photo.sha = "ab12";
  photo.meta = {{"Camera", "X100"}, {"ISO", "200"}};
  ImportedFile folder = item("Photos", /*size=*/999999, /*isDir=*/true);
  folder.tags = "keep";
  folder.hidden = true;
  ImportedFile song = item("Music/song.MP3", 10);
  song.kind = "Audio";
  song.duration = 187.25;
  ImportedFile oddFile = item("odd", 1);
  oddFile.kind = "Spaceship";
  ImportedFile oddFolder = item("oddfolder", 0, true);
  oddFolder.kind = "folder";  // Kinds are matched exactly.

  int64_t id =
      insertImported(store, "Mixed", "", VolumeInfo{}, false, {photo, folder, song, oddFile, oddFolder}, "");
  auto rows = records(id);
  const FileRecord& p = rows["Photos/IMG_1.JPG"];
  EXPECT_EQ(p.kind, FileKind::image);
  EXPECT_EQ(p.uti, "image/jpeg");
  EXPECT_EQ(p.ext, "jpg");
  EXPECT_EQ(p.modified, Date{1700000000.5});
  EXPECT_EQ(p.created, Date{1600000000});
  EXPECT_EQ(p.tags, (std::vector<std::string>{"red", "holiday"}));
  EXPECT_EQ(p.label, 6);
  EXPECT_TRUE(p.hidden);
  EXPECT_EQ(p.width, 4000);
  EXPECT_EQ(p.height, 3000);
  EXPECT_EQ(p.sha256, "ab12");
  EXPECT_EQ(p.meta, photo.meta);
  EXPECT_FALSE(p.hasThumb);
  EXPECT_EQ(store.db().scalarText("SELECT meta FROM files WHERE id=?", {p.id}),
            R"({"Camera":"X100","ISO":"200"})");
  EXPECT_EQ(store.db().scalarText("SELECT meta FROM files WHERE path='Music/song.MP3'"), "");

  // The listed folder keeps its own fields, but its size is rolled up afresh.
  EXPECT_EQ(rows["Photos"].tags, std::vector<std::string>{"keep"});
  EXPECT_TRUE(rows["Photos"].hidden);
  EXPECT_EQ(rows["Photos"].size, 4096);
  EXPECT_EQ(rows["Music"].size, 10);
  EXPECT_EQ(rows["Music/song.MP3"].duration, 187.25);
  EXPECT_EQ(rows["odd"].kind, FileKind::other);
  EXPECT_EQ(store.db().scalarText("SELECT kind FROM files WHERE path='oddfolder'"), "Folder");
  EXPECT_EQ(store.catalog(id)->totalSize, 4096 + 10 + 1);
}

TEST_F(ExchangeTest, LaterDuplicatesWinAndEmptyOrUntidyPathsAreHandled) {
  int64_t id = insertImported(
      store, "Dups", "", VolumeInfo{}, false,
      {item("x/file", 1), item(""), item("/"), item("x/file", 2), item("/y//z/", 5), item("x", 0, true),
       item(std::string("nul\0a", 5), 1), item(std::string("nul\0b", 5), 1)},
      "");
  auto rows = records(id);
  ASSERT_EQ(rows.size(), 6u) << "x, x/file, y, y/z and the two names with a NUL";
  EXPECT_EQ(rows["nul\uFFFDa"].name, "nul\uFFFDa");
  EXPECT_EQ(rows["nul\uFFFDb"].size, 1);
  EXPECT_EQ(rows["x/file"].size, 2);
  EXPECT_EQ(rows["y/z"].size, 5);
  EXPECT_EQ(rows["y/z"].name, "z");
  EXPECT_EQ(rows["y/z"].parentID, rows["y"].id);
  EXPECT_TRUE(rows["y"].isDir);
  EXPECT_EQ(store.catalog(id)->fileCount, 4);
}

TEST_F(ExchangeTest, AListedFileWithItemsBelowItBecomesTheirFolder) {
  ImportedFile file = item("notes.txt", 40);
  file.kind = "Document";
  file.tags = "kept";
  int64_t id =
      insertImported(store, "Damaged", "", VolumeInfo{}, false, {file, item("notes.txt/inner", 3)}, "");
  auto rows = records(id);
  EXPECT_TRUE(rows["notes.txt"].isDir);
  EXPECT_EQ(rows["notes.txt"].kind, FileKind::folder);
  EXPECT_EQ(rows["notes.txt"].tags, std::vector<std::string>{"kept"});
  EXPECT_EQ(rows["notes.txt"].size, 3);
  EXPECT_EQ(rows["notes.txt/inner"].parentID, rows["notes.txt"].id);
  EXPECT_EQ(store.children(id, rows["notes.txt"].id, true).size(), 1u);
}

TEST_F(ExchangeTest, NoItemsGiveAnEmptyScannedCatalog) {
  int64_t id = insertImported(store, "Empty", "", VolumeInfo{}, false, {}, "");
  EXPECT_TRUE(store.allFiles(id).empty());
  EXPECT_TRUE(store.catalog(id)->scannedAt);
  EXPECT_EQ(store.catalog(id)->fileCount, 0);
}

TEST_F(ExchangeTest, AFailedInsertLeavesNoCatalogBehind) {
  insertImported(store, "Before", "", VolumeInfo{}, false, {item("keep/me", 3)}, "");
  store.db().exec(
      "CREATE TRIGGER refuse BEFORE INSERT ON files WHEN new.name='boom' "
      "BEGIN SELECT RAISE(ABORT, 'refused'); END;");
  const std::string before = snapshot();
  EXPECT_THROW(insertImported(store, "Broken", "", VolumeInfo{}, false,
                              {item("a/fine", 1), item("a/b/boom", 2), item("z", 3)}, "n"),
               DBError);
  EXPECT_EQ(snapshot(), before);
  EXPECT_EQ(store.catalogs().size(), 1u);
}

}  // namespace
}  // namespace orrelin::testing
