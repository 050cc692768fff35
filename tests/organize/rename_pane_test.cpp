// The Rename Assistant end to end on real folders: a catalog of a temporary tree, preview, apply, the disk
// afterwards, and undo back to the very same tree.
#include "organize/rename_pane.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "core/name_mapping.h"
#include "organize/plan_engine.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;

// Every entry below `root` by relative path: a file's contents, or "<dir>".
std::map<std::string, std::string> snapshot(const fs::path& root) {
  std::map<std::string, std::string> out;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    std::string rel = fs::relative(entry.path(), root).string();
    if (entry.is_directory()) {
      out[rel] = "<dir>";
    } else {
      std::ifstream in(entry.path(), std::ios::binary);
      std::stringstream text;
      text << in.rdbuf();
      out[rel] = text.str();
    }
  }
  return out;
}

class RenamePaneTest : public ::testing::Test {
 protected:
  TempDir data;   // The data folder, where undo logs go.
  TempDir drive;  // The "drive" being renamed.
  testing::ScopedEnv env;
  std::unique_ptr<CatalogDB> store;
  RenamePane pane;

  void SetUp() override {
    env.set("XDG_DATA_HOME", data.path().string());
    store = std::make_unique<CatalogDB>(data.file("Catalogs.sqlite"));
  }

  void write(const std::string& rel, const std::string& contents = "") {
    testing::writeFile(drive.path() / rel, contents.empty() ? rel : contents);
  }

  // Catalogs the drive as it stands, one row per entry with its parent, as a scan records them.
  int64_t catalogDrive(const std::string& name = "Drive", bool sample = false) {
    int64_t id = store->insertCatalog(name, drive.path().string(), VolumeInfo{}, true, std::nullopt, sample);
    std::map<std::string, int64_t> ids;
    std::vector<fs::path> entries;
    for (const auto& e : fs::recursive_directory_iterator(drive.path())) entries.push_back(e.path());
    std::sort(entries.begin(), entries.end());  // Parents before children.
    for (const fs::path& p : entries) {
      // Names that are not UTF-8 are stored in their mapped form, as the scanner stores them.
      std::string rel = NameMapping::storedPath(fs::relative(p, drive.path()));
      std::string parent = parentPath(rel);
      bool dir = fs::is_directory(p);
      store->db().run(
          "INSERT INTO files(catalog_id, parent_id, path, name, is_dir, kind) VALUES(?,?,?,?,?,?)",
          {id, parent.empty() ? int64_t{0} : ids.at(parent), rel, NameMapping::storedPath(p.filename()), dir,
           dir ? "Folder" : "Other"});
      ids[rel] = store->db().lastInsertID();
    }
    pane.catalogID = id;
    return id;
  }

  std::vector<std::string> statuses() const {
    std::vector<std::string> out;
    for (const PlanStep& s : pane.steps) out.push_back(s.from + " -> " + s.to + ": " + s.status);
    return out;
  }
};

TEST_F(RenamePaneTest, PreviewApplyAndUndoRoundTripOnDisk) {
  write("Photos/IMG_0010.JPG");
  write("Photos/IMG_0002.JPG");
  write("Photos/img_0001.jpg");
  write("Photos/notes.txt");
  write("top.JPG");
  catalogDrive();
  const auto before = snapshot(drive.path());

  pane.folder = " /Photos/ ";  // Slashes and blanks around the folder do not matter.
  pane.filter = "IMG";
  pane.rule.find = "img_";
  pane.rule.replace = "trip ";
  pane.rule.numbering = true;
  pane.rule.digits = 2;
  RenameOutcome preview = pane.preview(store.get());
  EXPECT_FALSE(preview.alert);
  EXPECT_FALSE(preview.toast);
  // Numbered in file-manager order: 0001, 0002, 0010.
  EXPECT_EQ(statuses(), (std::vector<std::string>{
                            "Photos/img_0001.jpg -> Photos/trip 0001 01.jpg: Ready",
                            "Photos/IMG_0002.JPG -> Photos/trip 0002 02.JPG: Ready",
                            "Photos/IMG_0010.JPG -> Photos/trip 0010 03.JPG: Ready",
                        }));
  for (const PlanStep& s : pane.steps) EXPECT_EQ(s.kind, PlanStep::Kind::rename);
  EXPECT_EQ(snapshot(drive.path()), before) << "a preview touches nothing";

  RenameOutcome applied = pane.apply(store.get());
  EXPECT_TRUE(pane.steps.empty());
  EXPECT_FALSE(applied.alert);
  EXPECT_EQ(applied.toast, "Renamed 3 items — undo any time from Organization Plan");
  EXPECT_EQ(applied.rescanCatalogID, pane.catalogID);
  ASSERT_TRUE(applied.log);
  EXPECT_EQ(applied.log->title, "Batch rename in Drive");
  EXPECT_EQ(applied.log->moves.size(), 3u);

  auto after = snapshot(drive.path());
  EXPECT_EQ(after.count("Photos/IMG_0010.JPG"), 0u);
  EXPECT_EQ(after["Photos/trip 0010 03.JPG"], "Photos/IMG_0010.JPG") << "contents travel with the name";
  EXPECT_EQ(after["Photos/notes.txt"], "Photos/notes.txt");
  EXPECT_EQ(after.size(), before.size());

  // The log is on disk in the data folder, and undoing it restores the tree exactly.
  auto logs = UndoLogStore::list();
  ASSERT_EQ(logs.size(), 1u);
  EXPECT_EQ(logs.front().id, applied.log->id);
  PlanEngine::UndoResult undone = PlanEngine::undo(logs.front(), /*saveLog=*/true);
  EXPECT_EQ(undone.restored, 3);
  EXPECT_TRUE(undone.errors.empty());
  EXPECT_EQ(snapshot(drive.path()), before);
}

TEST_F(RenamePaneTest, FoldersAndTheirContentsRenameInOneBatch) {
  write("album one/track one.mp3");
  write("album one/disc two/track two.mp3");
  write("loose file.txt");
  catalogDrive();
  const auto before = snapshot(drive.path());

  pane.includeSub = true;
  pane.includeFolders = true;
  pane.rule.caseMode = RenameRule::CaseMode::title;
  pane.preview(store.get());
  EXPECT_EQ(statuses(), (std::vector<std::string>{
                            "album one/disc two/track two.mp3 -> album one/disc two/Track Two.mp3: Ready",
                            "album one/disc two -> album one/Disc Two: Ready",
                            "album one/track one.mp3 -> album one/Track One.mp3: Ready",
                            "album one -> Album One: Ready",
                            "loose file.txt -> Loose File.txt: Ready",
                        }));
  RenameOutcome applied = pane.apply(store.get());
  EXPECT_FALSE(applied.alert) << applied.alert->message;
  std::map<std::string, std::string> expected = {
      {"Album One", "<dir>"},
      {"Album One/Disc Two", "<dir>"},
      {"Album One/Disc Two/Track Two.mp3", "album one/disc two/track two.mp3"},
      {"Album One/Track One.mp3", "album one/track one.mp3"},
      {"Loose File.txt", "loose file.txt"},
  };
  EXPECT_EQ(snapshot(drive.path()), expected);
  EXPECT_EQ(PlanEngine::undo(*applied.log, true).restored, 5);
  EXPECT_EQ(snapshot(drive.path()), before);
}

TEST_F(RenamePaneTest, NamesThatAreNotUTF8KeepTheirBytes) {
  write("Latin-1/caf\xe9 m\xfcsic.txt", "bytes");
  write("Latin-1/plain.txt", "plain");
  catalogDrive();
  const auto before = snapshot(drive.path());
  pane.folder = "Latin-1";
  pane.rule.prefix = "new ";
  pane.rule.caseMode = RenameRule::CaseMode::title;
  pane.preview(store.get());
  ASSERT_EQ(pane.steps.size(), 2u);
  EXPECT_TRUE(pane.steps[0].ok && pane.steps[1].ok) << pane.steps[0].status << " / " << pane.steps[1].status;
  RenameOutcome applied = pane.apply(store.get());
  EXPECT_FALSE(applied.alert);
  // The undecodable bytes pass through every step unchanged; the letters around them are title-cased.
  auto after = snapshot(drive.path());
  EXPECT_EQ(after["Latin-1/new Caf\xe9 M\xfcsic.txt"], "bytes");
  EXPECT_EQ(after["Latin-1/new Plain.txt"], "plain");
  PlanEngine::undo(*applied.log, true);
  EXPECT_EQ(snapshot(drive.path()), before);
}

TEST_F(RenamePaneTest, CollisionsAreBlockedAndNothingIsOverwritten) {
  write("a.txt", "A");
  write("b.txt", "B");
  write("c.txt", "C");
  write("taken.txt", "keep me");
  write("d.TXT", "D");
  catalogDrive();

  // Everything to one name: the first is ready, every later one collides with it.
  pane.filter = ".txt";
  pane.rule.find = "^[abc]$";
  pane.rule.replace = "same";
  pane.rule.useRegex = true;
  pane.preview(store.get());
  EXPECT_EQ(statuses(), (std::vector<std::string>{
                            "a.txt -> same.txt: Ready",
                            "b.txt -> same.txt: Destination already exists — nothing is overwritten",
                            "c.txt -> same.txt: Destination already exists — nothing is overwritten",
                        }));

  // A name that exists on disk already blocks; a change of case alone does not.
  pane.rule = RenameRule{};
  pane.rule.find = "^[ab]$";
  pane.rule.replace = "taken";
  pane.rule.useRegex = true;
  pane.preview(store.get());
  EXPECT_EQ(statuses(), (std::vector<std::string>{
                            "a.txt -> taken.txt: Destination already exists — nothing is overwritten",
                            "b.txt -> taken.txt: Destination already exists — nothing is overwritten",
                        }));
  pane.rule = RenameRule{};
  pane.rule.caseMode = RenameRule::CaseMode::lower;
  pane.rule.keepExtension = false;
  pane.preview(store.get());
  EXPECT_EQ(statuses(), (std::vector<std::string>{"d.TXT -> d.txt: Ready"}));
  RenameOutcome applied = pane.apply(store.get());
  EXPECT_EQ(applied.toast, "Renamed 1 item — undo any time from Organization Plan");
  EXPECT_EQ(snapshot(drive.path())["d.txt"], "D");
  EXPECT_EQ(PlanEngine::undo(*applied.log, true).restored, 1);
  EXPECT_EQ(snapshot(drive.path())["d.TXT"], "D");
}

TEST_F(RenamePaneTest, ChangesOnDiskAfterThePreviewFailAloneAndAreReported) {
  write("one.txt", "1");
  write("two.txt", "2");
  write("three.txt", "3");
  catalogDrive();
  pane.rule.prefix = "new ";
  pane.preview(store.get());
  ASSERT_EQ(pane.steps.size(), 3u);

  // Between preview and apply: one source vanishes, and someone else takes another target name.
  fs::remove(drive.path() / "one.txt");
  testing::writeFile(drive.path() / "new two.txt", "not yours");
  RenameOutcome applied = pane.apply(store.get());
  ASSERT_TRUE(applied.alert);
  EXPECT_EQ(applied.alert->title, "Some Renames Failed");
  EXPECT_EQ(applied.errors.size(), 2u);
  EXPECT_NE(applied.alert->message.find("one.txt"), std::string::npos);
  EXPECT_NE(applied.alert->message.find("“new two.txt” already exists"), std::string::npos);
  EXPECT_FALSE(applied.toast);

  auto disk = snapshot(drive.path());
  EXPECT_EQ(disk["new two.txt"], "not yours");
  EXPECT_EQ(disk["two.txt"], "2");
  EXPECT_EQ(disk["new three.txt"], "3");
  ASSERT_TRUE(applied.log);
  EXPECT_EQ(applied.log->moves.size(), 1u) << "only what happened is logged, and so undone";
}

TEST_F(RenamePaneTest, StepsPreviewedForOneCatalogAreNeverAppliedToAnother) {
  write("a.txt", "first drive");
  int64_t first = catalogDrive("First");
  TempDir other;
  testing::writeFile(other.path() / "a.txt", "second drive");
  int64_t second = store->insertCatalog("Second", other.path().string(), VolumeInfo{}, true, std::nullopt, false);
  store->db().run("INSERT INTO files(catalog_id, path, name) VALUES(?, 'a.txt', 'a.txt')", {second});

  pane.catalogID = first;
  pane.rule.prefix = "renamed ";
  pane.preview(store.get());
  ASSERT_EQ(pane.steps.size(), 1u);
  pane.catalogID = second;
  RenameOutcome outcome = pane.apply(store.get());
  EXPECT_FALSE(outcome.log);
  EXPECT_TRUE(pane.steps.empty());
  EXPECT_TRUE(fs::exists(other.path() / "a.txt"));
  EXPECT_TRUE(fs::exists(drive.path() / "a.txt"));
}

TEST_F(RenamePaneTest, NothingToDoIsToldAndNothingHappensWithoutADrive) {
  write("a.txt");
  write("Sub/b.txt");
  int64_t id = catalogDrive();

  pane.filter = "zzz";
  pane.steps.push_back(PlanStep{});
  RenameOutcome none = pane.preview(store.get());
  EXPECT_EQ(none.toast, "No items match that folder and filter");
  EXPECT_TRUE(pane.steps.empty());

  pane.filter.clear();
  pane.rule.find = "nothing like this";
  RenameOutcome same = pane.preview(store.get());
  EXPECT_EQ(same.toast, "Those rules don’t change any names");
  EXPECT_TRUE(pane.steps.empty());

  // No database, no catalog, a deleted catalog: nothing at all.
  pane.rule.prefix = "x";
  EXPECT_FALSE(pane.preview(nullptr).toast);
  pane.catalogID.reset();
  EXPECT_FALSE(pane.preview(store.get()).toast);
  pane.catalogID = id + 100;
  EXPECT_FALSE(pane.preview(store.get()).toast);
  EXPECT_TRUE(pane.steps.empty());

  // A sample catalog, and a catalog whose root is gone, are offline.
  int64_t sample = store->insertCatalog("Demo", "/nonexistent", VolumeInfo{}, true, std::nullopt, true);
  pane.catalogID = sample;
  RenameOutcome demo = pane.preview(store.get());
  ASSERT_TRUE(demo.alert);
  EXPECT_EQ(demo.alert->title, "Drive Offline");
  EXPECT_EQ(demo.alert->message.rfind("“Demo” is demonstration data", 0), 0u);

  VolumeInfo volume;
  volume.name = "Backup Disk";
  int64_t unplugged =
      store->insertCatalog("Backup", (drive.path() / "gone").string(), volume, false, std::nullopt, false);
  pane.catalogID = unplugged;
  RenameOutcome offline = pane.preview(store.get());
  ASSERT_TRUE(offline.alert);
  EXPECT_EQ(
      offline.alert->message,
      "Drive offline — insert “Backup Disk” to open this item. You can keep browsing the catalog while the "
      "drive is disconnected.");
  EXPECT_FALSE(pane.apply(store.get()).log) << "apply does nothing for an offline drive";
  EXPECT_TRUE(UndoLogStore::list().empty());

  // Another volume mounted where the catalog's drive was is not that drive.
  store->db().run("UPDATE catalogs SET volume_uuid='not-this-volume' WHERE id=?", {id});
  pane.catalogID = id;
  ASSERT_TRUE(pane.preview(store.get()).alert);
}

}  // namespace
}  // namespace orrelin
