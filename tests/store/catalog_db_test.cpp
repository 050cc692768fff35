// The catalog database on real files: schema and migration, row mapping, operations and roll-ups.
#include "store/catalog_db.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "scan/volume_info.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::TempDir;

std::set<std::string> schemaNames(SQLiteDB& db, const std::string& type) {
  auto names = db.query("SELECT name FROM sqlite_master WHERE type=? AND name NOT LIKE 'sqlite_%'", {type},
                        [](const Statement& r) { return r.text(0); });
  std::set<std::string> out(names.begin(), names.end());
  // The shadow tables of the full-text index are FTS5's own business.
  std::erase_if(out, [](const std::string& n) { return n.rfind("files_fts_", 0) == 0; });
  return out;
}

// Inserts a row the way the scanner does, with the columns that matter to these tests.
int64_t addFile(CatalogDB& store, int64_t catalogID, int64_t parentID, const std::string& path, bool isDir,
                int64_t size, bool hidden = false) {
  std::string name = path.substr(path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1);
  store.db().run(
      "INSERT INTO files(catalog_id, parent_id, path, name, is_dir, size, kind, hidden) "
      "VALUES(?,?,?,?,?,?,?,?)",
      {catalogID, parentID, path, name, isDir, size, isDir ? "Folder" : "Other", hidden});
  return store.db().lastInsertID();
}

class CatalogDBTest : public ::testing::Test {
 protected:
  TempDir dir;
  std::string path = dir.file("Catalogs.sqlite");
  CatalogDB store{path};

  int64_t newCatalog(const std::string& name = "Drive") {
    VolumeInfo volume;
    volume.name = "Vol";
    volume.uuid = "UUID-1";
    volume.format = "ext4";
    volume.capacity = 1000;
    volume.free = 250;
    volume.isRemovable = true;
    return store.insertCatalog(name, "/media/drive", volume, false, std::nullopt, false);
  }
};

TEST_F(CatalogDBTest, ANewFileHoldsExactlyTheSchema) {
  SQLiteDB& db = store.db();
  EXPECT_EQ(schemaNames(db, "table"),
            (std::set<std::string>{"meta", "groups", "catalogs", "files", "scan_log", "files_fts"}));
  EXPECT_EQ(schemaNames(db, "index"),
            (std::set<std::string>{"files_cat_path", "files_parent", "files_size", "files_kind",
                                   "files_name_size", "files_sha", "files_stats"}));
  EXPECT_EQ(schemaNames(db, "trigger"), (std::set<std::string>{"files_ai", "files_ad", "files_au"}));
  auto meta = db.query("SELECT key, value FROM meta ORDER BY key", {},
                       [](const Statement& r) { return r.text(0) + "=" + r.text(1); });
  // Debian's SQLite has the trigram tokenizer.
  EXPECT_EQ(meta, (std::vector<std::string>{"fts=trigram", "schema=1"}));
  EXPECT_TRUE(store.ftsTrigram());
  EXPECT_NE(db.scalarText("SELECT sql FROM sqlite_master WHERE name='files_fts'")->find("tokenize='trigram'"),
            std::string::npos);
}

TEST_F(CatalogDBTest, MigrationIsIdempotentAndKeepsData) {
  int64_t id = newCatalog();
  addFile(store, id, 0, "a.txt", false, 5);
  CatalogDB again(path);  // A second connection migrates the same file.
  CatalogDB third(path);
  EXPECT_EQ(again.catalogs().size(), 1u);
  EXPECT_EQ(again.db().scalarInt("SELECT count(*) FROM files_fts WHERE files_fts MATCH 'txt'"), 1);
  EXPECT_EQ(again.db().scalarInt("SELECT count(*) FROM meta"), 2);
}

TEST(CatalogDBMigration, AnOldFileWithoutTheIndexGetsOneFilledFromItsRows) {
  TempDir dir;
  std::string path = dir.file("old.sqlite");
  {
    CatalogDB store(path);
    int64_t id = store.insertCatalog("Old", "/old", VolumeInfo{}, true, std::nullopt, false);
    addFile(store, id, 0, "holiday-photo.jpg", false, 10);
    // What an older build left: the tables without the index, its triggers or its meta row.
    store.db().exec(
        "DROP TRIGGER files_ai; DROP TRIGGER files_ad; DROP TRIGGER files_au; DROP TABLE files_fts; "
        "DELETE FROM meta;");
  }
  CatalogDB store(path);
  EXPECT_TRUE(store.ftsTrigram());
  EXPECT_EQ(store.db().scalarText("SELECT value FROM meta WHERE key='fts'"), "trigram");
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM files_fts WHERE files_fts MATCH '\"photo\"'"), 1);
  EXPECT_NO_THROW(store.db().exec("INSERT INTO files_fts(files_fts) VALUES('integrity-check')"));
}

TEST(CatalogDBMigration, TheIndexFormIsReadFromMetaAndKept) {
  TempDir dir;
  std::string path = dir.file("u.sqlite");
  {
    CatalogDB store(path);
    // As if made by a build without trigram: a unicode61 index, recorded in meta.
    store.db().exec(
        "DROP TRIGGER files_ai; DROP TRIGGER files_ad; DROP TRIGGER files_au; DROP TABLE files_fts;"
        "CREATE VIRTUAL TABLE files_fts USING fts5(name, path, tags, meta, content='files', "
        "content_rowid='id', tokenize='unicode61 remove_diacritics 2');"
        "UPDATE meta SET value='unicode61' WHERE key='fts';");
  }
  {
    CatalogDB store(path);
    EXPECT_FALSE(store.ftsTrigram());
    EXPECT_NE(
        store.db().scalarText("SELECT sql FROM sqlite_master WHERE name='files_fts'")->find("unicode61"),
        std::string::npos);
    // An index present but no meta row: taken as trigram, and the index is not touched.
    store.db().exec("DELETE FROM meta WHERE key='fts'");
  }
  CatalogDB store(path);
  EXPECT_TRUE(store.ftsTrigram());
  EXPECT_EQ(store.db().scalarText("SELECT value FROM meta WHERE key='fts'"), std::nullopt);
}

TEST(CatalogDBMigration, AFileThatIsNoDatabaseFails) {
  TempDir dir;
  const std::string text = "this is a text file, not a database\n" + std::string(600, '.');
  testing::writeFile(dir.path() / "x.sqlite", text);
  EXPECT_THROW(CatalogDB(dir.file("x.sqlite")), DBError);
  // Nothing was written over the user's file.
  EXPECT_EQ(std::filesystem::file_size(dir.path() / "x.sqlite"), text.size());
}

TEST_F(CatalogDBTest, TheIndexFollowsInsertsUpdatesAndDeletes) {
  int64_t id = newCatalog();
  int64_t f = addFile(store, id, 0, "summer-holiday.mov", false, 1);
  auto hits = [&](const std::string& q) {
    return store.db().scalarInt("SELECT count(*) FROM files_fts WHERE files_fts MATCH ?", {q});
  };
  EXPECT_EQ(hits("\"holiday\""), 1);
  store.db().run("UPDATE files SET name='winter-trip.mov', path='winter-trip.mov' WHERE id=?", {f});
  EXPECT_EQ(hits("\"holiday\""), 0);
  EXPECT_EQ(hits("\"winter\""), 1);
  store.db().run("UPDATE files SET size=99, sha256='ab' WHERE id=?", {f});  // Does not touch the index.
  EXPECT_EQ(hits("\"winter\""), 1);
  store.db().run("DELETE FROM files WHERE id=?", {f});
  EXPECT_EQ(hits("\"winter\""), 0);
  EXPECT_NO_THROW(store.db().exec("INSERT INTO files_fts(files_fts) VALUES('integrity-check')"));
}

TEST_F(CatalogDBTest, PathsAreUniquePerCatalogAndDeletesCascade) {
  int64_t a = newCatalog("A"), b = newCatalog("B");
  addFile(store, a, 0, "same/path", false, 1);
  EXPECT_THROW(addFile(store, a, 0, "same/path", false, 2), DBError);
  EXPECT_NO_THROW(addFile(store, b, 0, "same/path", false, 3));
  store.db().run("DELETE FROM catalogs WHERE id=?", {a});  // No explicit delete of its files.
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM files WHERE catalog_id=?", {a}), 0);
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM files WHERE catalog_id=?", {b}), 1);
}

TEST_F(CatalogDBTest, CatalogRowsMapWithTheirRules) {
  int64_t id = newCatalog("Photos");
  Catalog c = *store.catalog(id);
  EXPECT_EQ(c.name, "Photos");
  EXPECT_EQ(c.rootPath, "/media/drive");
  EXPECT_EQ(c.volumeName, "Vol");
  EXPECT_EQ(c.volumeUUID, "UUID-1");
  EXPECT_EQ(c.capacity, 1000);
  EXPECT_EQ(c.freeSpace, 250);
  EXPECT_TRUE(c.isRemovable);
  EXPECT_FALSE(c.groupID.has_value());
  EXPECT_FALSE(c.scannedAt.has_value());
  EXPECT_NEAR(c.createdAt.seconds, Date::now().seconds, 5);
  EXPECT_EQ(c.symbol(), "externaldrive.fill");
  EXPECT_DOUBLE_EQ(c.usedFraction(), 0.75);
  EXPECT_FALSE(store.catalog(id + 100).has_value());

  // A NULL creation date reads as the time of reading; any non-zero flag is true.
  store.db().run("UPDATE catalogs SET created_at=NULL, is_network=7, volume_name='' WHERE id=?", {id});
  c = *store.catalog(id);
  EXPECT_NEAR(c.createdAt.seconds, Date::now().seconds, 5);
  EXPECT_TRUE(c.isNetwork);
  EXPECT_EQ(c.symbol(), "network");
  EXPECT_EQ(c.displayVolume(), "Photos");

  store.markScanned(id, Date{1234.5});
  store.setNotes(id, "in the blue box");
  store.renameCatalog(id, "Photo Archive");
  c = *store.catalog(id);
  EXPECT_EQ(c.scannedAt, Date{1234.5});
  EXPECT_EQ(c.notes, "in the blue box");
  EXPECT_EQ(c.name, "Photo Archive");

  VolumeInfo moved;
  moved.name = "New";
  moved.format = "Btrfs";
  moved.capacity = 50;
  moved.free = 80;
  moved.isNetwork = false;
  store.updateVolumeInfo(id, moved);
  c = *store.catalog(id);
  EXPECT_EQ(c.volumeName, "New");
  EXPECT_EQ(c.volumeUUID, "");
  EXPECT_FALSE(c.isRemovable);
  EXPECT_EQ(c.usedFraction(), 0);  // More free than capacity.
}

TEST(CatalogRecord, UsedFractionBounds) {
  Catalog c;
  EXPECT_EQ(c.usedFraction(), 0);  // No capacity.
  c.capacity = 100;
  c.freeSpace = -5;
  EXPECT_EQ(c.usedFraction(), 1);
  c.isFolder = true;
  c.isRemovable = true;
  EXPECT_EQ(c.symbol(), "folder.fill");
  c.isFolder = false;
  c.isRemovable = false;
  EXPECT_EQ(c.symbol(), "internaldrive.fill");
}

TEST_F(CatalogDBTest, FileRowsMapWithTheirRules) {
  int64_t id = newCatalog();
  store.db().run(
      "INSERT INTO files(catalog_id, parent_id, path, name, is_dir, size, kind, uti, ext, created, modified, "
      "tags, label, hidden, sha256, thumb, duration, width, height, meta, item_count) "
      "VALUES(?,3,'a/b.mp3','b.mp3',0,4096,'Audio','audio/mpeg','mp3',100.5,NULL,'rock, live',6,1,'ff',1,"
      "61.25,0,0,?,0)",
      {id, R"({"artist":"Ann","bitrate":"320 kbps"})"});
  FileRecord f = store.allFiles(id).at(0);
  EXPECT_EQ(f.catalogID, id);
  EXPECT_EQ(f.parentID, 3);
  EXPECT_EQ(f.path, "a/b.mp3");
  EXPECT_EQ(f.kind, FileKind::audio);
  EXPECT_EQ(f.kindName(), "Audio");
  EXPECT_EQ(f.created, Date{100.5});
  EXPECT_FALSE(f.modified.has_value());
  EXPECT_EQ(f.sortModified(), 0);
  EXPECT_EQ(f.tags, (std::vector<std::string>{"rock", "live"}));
  EXPECT_EQ(f.label, 6);
  EXPECT_TRUE(f.hidden);
  EXPECT_TRUE(f.hasThumb);
  EXPECT_EQ(f.duration, 61.25);
  EXPECT_EQ(f.meta, (std::map<std::string, std::string>{{"artist", "Ann"}, {"bitrate", "320 kbps"}}));
  EXPECT_EQ(store.file(f.id), f);
  EXPECT_EQ(std::hash<FileRecord>{}(*store.file(f.id)), std::hash<FileRecord>{}(f));

  // Unknown kind text reads as Other; tags and meta follow their text rules.
  struct Case {
    std::string kind, tags, meta;
    FileKind wantKind;
    std::vector<std::string> wantTags;
    size_t wantMeta;
  };
  const Case cases[] = {
      {"Nonsense", "rock,live", R"({"bitrate":320})", FileKind::other, {"rock,live"}, 0},
      {"image", "", "[\"a\"]", FileKind::other, {}, 0},  // Kinds are case-sensitive.
      {"Disk Image", "a, , b", "{\"a\":\"x\",\"b\":null}", FileKind::diskImage, {"a", "", "b"}, 0},
      {"Folder", ", ", "not json", FileKind::folder, {"", ""}, 0},
      {"Video", "one", "{}", FileKind::video, {"one"}, 0},
      {"PDF", "x, y, z", "{\"k\":\"v\"}", FileKind::pdf, {"x", "y", "z"}, 1},
  };
  for (const Case& c : cases) {
    store.db().run("UPDATE files SET kind=?, tags=?, meta=? WHERE id=?", {c.kind, c.tags, c.meta, f.id});
    FileRecord r = *store.file(f.id);
    EXPECT_EQ(r.kind, c.wantKind) << c.kind;
    EXPECT_EQ(r.tags, c.wantTags) << c.tags;
    EXPECT_EQ(r.meta.size(), c.wantMeta) << c.meta;
  }
}

TEST(RecordText, TagsAndMetaRoundTrip) {
  EXPECT_EQ(joinTags({"a", "b c"}), "a, b c");
  EXPECT_EQ(parseTags(joinTags({"Red", "Work"})), (std::vector<std::string>{"Red", "Work"}));
  EXPECT_EQ(metaJSON({}), "");
  std::map<std::string, std::string> meta = {{"z", "1"}, {"a", "ü \"q\""}};
  EXPECT_EQ(metaJSON(meta), R"({"a":"ü \"q\"","z":"1"})");  // Sorted keys, compact.
  EXPECT_EQ(parseMeta(metaJSON(meta)), meta);
  EXPECT_EQ(metaJSON({{"bad", "\xff"}}), "");  // Text that is not UTF-8 cannot be encoded.
}

TEST_F(CatalogDBTest, GroupsKeepTheirOrderAndReleaseCatalogs) {
  int64_t g1 = store.createGroup("beta");
  int64_t g2 = store.createGroup("Alpha");
  EXPECT_EQ(store.groups().front().sort, 1);
  store.db().run("UPDATE groups SET sort=1 WHERE id=?", {g2});
  auto groups = store.groups();
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].name, "Alpha");  // Same sort: by name ignoring case.
  EXPECT_EQ(groups[1].name, "beta");

  int64_t c = newCatalog();
  store.setGroup(c, g1);
  EXPECT_EQ(store.catalog(c)->groupID, g1);
  store.deleteGroup(g1);
  EXPECT_FALSE(store.catalog(c)->groupID.has_value());
  EXPECT_EQ(store.groups().size(), 1u);
  store.setGroup(c, g2);
  store.setGroup(c, std::nullopt);
  EXPECT_FALSE(store.catalog(c)->groupID.has_value());

  // The next sort follows the highest one left, not the count.
  store.db().run("UPDATE groups SET sort=2 WHERE id=?", {g2});
  int64_t g3 = store.createGroup("later");
  store.renameGroup(g3, "renamed");
  EXPECT_EQ(store.groups().back().sort, 3);
  EXPECT_EQ(store.groups().back().name, "renamed");
}

TEST_F(CatalogDBTest, CatalogsSortByNameIgnoringCase) {
  newCatalog("beta");
  newCatalog("Alpha");
  newCatalog("gamma");
  std::vector<std::string> names;
  for (const Catalog& c : store.catalogs()) names.push_back(c.name);
  EXPECT_EQ(names, (std::vector<std::string>{"Alpha", "beta", "gamma"}));
}

TEST_F(CatalogDBTest, DeleteCatalogRemovesRowsLogAndThumbnails) {
  int64_t id = newCatalog(), other = newCatalog("Other");
  addFile(store, id, 0, "x", false, 1);
  store.logScan(id, 1, 0, 0, 0.5, "");
  store.logScan(other, 2, 0, 0, 0.5, "note");
  std::filesystem::path thumbs = dir.path() / "Thumbnails";
  testing::writeFile(thumbs / std::to_string(id) / "1.jpg", "jpeg");
  testing::writeFile(thumbs / std::to_string(other) / "9.jpg", "jpeg");

  store.deleteCatalog(id, thumbs);
  EXPECT_FALSE(store.catalog(id).has_value());
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM files WHERE catalog_id=?", {id}), 0);
  EXPECT_EQ(store.db().scalarInt("SELECT count(*) FROM scan_log"), 1);
  EXPECT_FALSE(std::filesystem::exists(thumbs / std::to_string(id)));
  EXPECT_TRUE(std::filesystem::exists(thumbs / std::to_string(other) / "9.jpg"));
  // No thumbnail folder, or an unknown id: no error.
  EXPECT_NO_THROW(store.deleteCatalog(other, std::nullopt));
  EXPECT_NO_THROW(store.deleteCatalog(12345, thumbs));
  EXPECT_TRUE(std::filesystem::exists(thumbs / std::to_string(other) / "9.jpg"));
}

TEST_F(CatalogDBTest, ChildrenListFoldersFirstAndHideHiddenRows) {
  int64_t id = newCatalog();
  addFile(store, id, 0, "b.txt", false, 1);
  int64_t zeta = addFile(store, id, 0, "Zeta", true, 0);
  addFile(store, id, 0, "a.txt", false, 1);
  addFile(store, id, 0, "alpha", true, 0);
  int64_t hidden = addFile(store, id, 0, ".cache", true, 0, /*hidden=*/true);
  addFile(store, id, hidden, ".cache/inside", false, 1);
  addFile(store, id, zeta, "Zeta/deep", false, 1);

  auto names = [](const std::vector<FileRecord>& rows) {
    std::vector<std::string> out;
    for (const auto& r : rows) out.push_back(r.name);
    return out;
  };
  EXPECT_EQ(names(store.children(id, 0, false)),
            (std::vector<std::string>{"alpha", "Zeta", "a.txt", "b.txt"}));
  EXPECT_EQ(names(store.children(id, 0, true)),
            (std::vector<std::string>{".cache", "alpha", "Zeta", "a.txt", "b.txt"}));
  EXPECT_EQ(names(store.children(id, hidden, false)), (std::vector<std::string>{"inside"}));
  EXPECT_TRUE(store.children(id + 1, 0, true).empty());
  // All files in binary path order: upper case before lower case.
  std::vector<std::string> paths;
  for (const auto& f : store.allFiles(id)) paths.push_back(f.path);
  EXPECT_EQ(paths, (std::vector<std::string>{".cache", ".cache/inside", "Zeta", "Zeta/deep", "a.txt", "alpha",
                                             "b.txt"}));
}

TEST_F(CatalogDBTest, TotalsRollUpThroughNestedFolders) {
  int64_t id = newCatalog();
  int64_t top = addFile(store, id, 0, "top", true, 0);
  int64_t mid = addFile(store, id, top, "top/mid", true, 0);
  int64_t leaf = addFile(store, id, mid, "top/mid/leaf", true, 0);
  int64_t empty = addFile(store, id, top, "top/empty", true, 0);
  int64_t emptyInner = addFile(store, id, empty, "top/empty/inner", true, 0);
  addFile(store, id, leaf, "top/mid/leaf/a", false, 100);
  addFile(store, id, mid, "top/mid/b", false, 20);
  addFile(store, id, top, "top/c", false, 3);
  addFile(store, id, 0, "d", false, 4000);  // Top level: counts in the total only.
  // A folder's stale size is replaced, not added to.
  store.db().run("UPDATE files SET size=999999 WHERE id=?", {mid});

  store.recomputeTotals(id);
  auto sizeOf = [&](int64_t f) { return store.file(f)->size; };
  auto itemsOf = [&](int64_t f) { return store.file(f)->itemCount; };
  EXPECT_EQ(sizeOf(top), 123);
  EXPECT_EQ(sizeOf(mid), 120);
  EXPECT_EQ(sizeOf(leaf), 100);
  EXPECT_EQ(sizeOf(empty), 0);
  EXPECT_EQ(sizeOf(emptyInner), 0);
  EXPECT_EQ(itemsOf(top), 3);
  EXPECT_EQ(itemsOf(mid), 2);
  EXPECT_EQ(itemsOf(empty), 1);
  EXPECT_EQ(itemsOf(emptyInner), 0);
  Catalog c = *store.catalog(id);
  EXPECT_EQ(c.fileCount, 4);
  EXPECT_EQ(c.folderCount, 5);
  EXPECT_EQ(c.totalSize, 4123);

  // An empty catalog has all three counters at 0.
  int64_t none = newCatalog("Empty");
  store.recomputeTotals(none);
  EXPECT_EQ(
      store.catalog(none)->fileCount + store.catalog(none)->folderCount + store.catalog(none)->totalSize, 0);
}

TEST_F(CatalogDBTest, DeepAndLoopingParentChainsStopAt512) {
  int64_t id = newCatalog();
  std::vector<int64_t> chain;
  std::string chainPath;
  store.db().transaction([&] {
    for (int depth = 0; depth < 600; ++depth) {
      chainPath += (depth ? "/d" : "d") + std::to_string(depth);
      chain.push_back(addFile(store, id, chain.empty() ? 0 : chain.back(), chainPath, true, 0));
    }
    addFile(store, id, chain.back(), chainPath + "/file", false, 7);
  });
  store.recomputeTotals(id);
  // The 512 nearest folders count the file; the 88 root-most do not.
  EXPECT_EQ(store.file(chain[600 - 512])->size, 7);
  EXPECT_EQ(store.file(chain[600 - 513])->size, 0);
  EXPECT_EQ(store.file(chain[0])->size, 0);

  FileRecord bottom = *store.file(chain.back());
  auto up = store.ancestors(bottom);
  ASSERT_EQ(up.size(), 512u);
  EXPECT_EQ(up.front().id, chain[600 - 1 - 512]);  // Root-most of the 512 nearest, first.
  EXPECT_EQ(up.back().id, chain[600 - 2]);

  // Folders whose parents point at each other: both the roll-up and ancestors end.
  int64_t a = addFile(store, id, 0, "loopA", true, 0);
  int64_t b = addFile(store, id, a, "loopB", true, 0);
  store.db().run("UPDATE files SET parent_id=? WHERE id=?", {b, a});
  addFile(store, id, b, "loopB/f", false, 1);
  store.recomputeTotals(id);
  EXPECT_EQ(store.file(a)->size + store.file(b)->size, 512);  // 512 additions, shared by the two.
  EXPECT_EQ(store.ancestors(*store.file(b)).size(), 512u);
}

TEST_F(CatalogDBTest, AncestorsOfTopLevelAndOrphans) {
  int64_t id = newCatalog();
  int64_t top = addFile(store, id, 0, "top", true, 0);
  int64_t inner = addFile(store, id, top, "top/inner", true, 0);
  int64_t f = addFile(store, id, inner, "top/inner/f", false, 1);
  EXPECT_TRUE(store.ancestors(*store.file(top)).empty());
  auto up = store.ancestors(*store.file(f));
  ASSERT_EQ(up.size(), 2u);
  EXPECT_EQ(up[0].name, "top");
  EXPECT_EQ(up[1].name, "inner");
  // A parent that no longer exists ends the chain.
  FileRecord orphan = *store.file(f);
  orphan.parentID = 99999;
  EXPECT_TRUE(store.ancestors(orphan).empty());
}

}  // namespace
}  // namespace orrelin
