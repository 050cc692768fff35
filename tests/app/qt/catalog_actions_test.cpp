// The catalog actions through the application state, on real trees and a real database: what each one
// asks, what it says afterwards in the program's words, and what it leaves in the database.
#include "app/qt/app_model.h"

#include "app/backup_manager.h"
#include "app/watched_catalogs.h"
#include "app_fixture.h"
#include "organize/qt/rename_pane_state.h"

namespace orrelin {
namespace {

using testing::AppModelTest;
using testing::waitUntil;
using testing::writeFile;
using Answer = Dialogs::Answer;
namespace fs = std::filesystem;

TEST_F(AppModelTest, RenameTrimsAndIgnoresBlanksAndPromptsAskFirst) {
  makeModel();
  const int64_t id = insert("Old", "");
  const int version = model->dataVersion();
  model->rename(get(id), "  \n\t ");
  EXPECT_EQ(get(id).name, "Old");
  EXPECT_EQ(model->dataVersion(), version);
  EXPECT_FALSE(model->hasAlert());

  model->rename(get(id), "  New Name \n");
  EXPECT_EQ(get(id).name, "New Name");

  // The prompt starts with the current name; Cancel changes nothing.
  model->promptRename(get(id));
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].kind, Dialogs::Request::Kind::prompt);
  EXPECT_EQ(requests[0].title, "Rename Catalog");
  EXPECT_EQ(requests[0].text, "Enter a new name for this cartridge.");
  EXPECT_EQ(requests[0].initial, "New Name");
  EXPECT_EQ(requests[0].buttons, (QStringList{"Rename", "Cancel"}));
  EXPECT_EQ(get(id).name, "New Name");
  answer(Answer::withText("Prompted"));
  model->promptRename(get(id));
  EXPECT_EQ(get(id).name, "Prompted");

  // Groups: created from the prompt, renamed, removed after the question; their catalogs stay.
  answer(Answer::withText(" Studio "));
  model->promptNewGroup();
  EXPECT_EQ(
      requests.back().text,
      "Groups keep related drives together \u2014 for example \u201CStudio\u201D, \u201CPhoto Archive\u201D "
      "or \u201CClients\u201D.");
  ASSERT_EQ(model->groups().size(), 1u);
  const CatalogGroup group = model->groups().front();
  EXPECT_EQ(group.name, "Studio");
  model->moveCatalog(get(id), group.id);
  EXPECT_EQ(get(id).groupID, group.id);
  model->deleteGroup(group);  // Cancelled.
  EXPECT_EQ(requests.back().title, "Remove the group \u201CStudio\u201D?");
  EXPECT_EQ(requests.back().text, "The catalogs inside it are kept and moved to Ungrouped.");
  EXPECT_EQ(model->groups().size(), 1u);
  answer(Answer::accept());
  model->deleteGroup(group);
  EXPECT_TRUE(model->groups().empty());
  EXPECT_EQ(get(id).groupID, std::nullopt);
}

TEST_F(AppModelTest, ADatabaseFailureIsShownUnderTheActionsTitleWithoutAReload) {
  makeModel();
  const int64_t id = insert("Kept", "");
  model->store()->db().exec(
      "CREATE TRIGGER no_renames BEFORE UPDATE OF name ON catalogs "
      "BEGIN SELECT RAISE(ABORT, 'renames are locked'); END;");
  const int version = model->dataVersion();
  model->rename(get(id), "Changed");
  EXPECT_EQ(alertTitle(), "Rename Failed");
  EXPECT_EQ(alertMessage(), "Database error: renames are locked");
  EXPECT_EQ(model->dataVersion(), version);
  EXPECT_EQ(get(id).name, "Kept");
}

TEST_F(AppModelTest, OfflineMessagesNameTheDriveAndRescanSaysUpdate) {
  makeModel();
  const int64_t unplugged = insert("Archive", (m_temp.path() / "unplugged").string());
  const int64_t sample = insert("DJ Crates", "/Volumes/DJ Crates", "", /*sample=*/true);
  const int64_t imported = insert("From CSV", "");

  model->rescan(get(unplugged));
  EXPECT_EQ(alertTitle(), "Drive Offline");
  EXPECT_EQ(
      alertMessage(),
      "Drive offline \u2014 insert \u201CArchive Volume\u201D to update this catalog. You can keep browsing "
      "the catalog while the drive is disconnected.");
  const QString firstID = model->alert()->id;

  // No phrase to replace in the other two reasons: their texts stand as they are.
  model->rescan(get(sample));
  EXPECT_NE(model->alert()->id, firstID);
  EXPECT_EQ(
      alertMessage(),
      "\u201CDJ Crates\u201D is demonstration data, so there is no real drive to open. Catalog one of your "
      "own drives to use Reveal in Finder.");
  model->rescan(get(imported));
  EXPECT_EQ(alertMessage(),
            "\u201CFrom CSV\u201D was imported from a file, so its original location is unknown.");
  EXPECT_FALSE(model->scanner()->isRunning());

  // Reveal and open on the unplugged drive say it is offline, with the open wording.
  FileRecord file;
  file.catalogID = unplugged;
  file.path = file.name = "song.wav";
  model->dismissAlert();
  model->reveal(file);
  EXPECT_EQ(alertTitle(), "Drive Offline");
  EXPECT_TRUE(alertMessage().contains("to open this item."));
}

TEST_F(AppModelTest, RevealAndOpenOfAVanishedFileSayItIsNotFound) {
  makeModel();
  const fs::path root = makeTree("Field", {"keep.txt", "gone.txt"});
  const int64_t id = scan(root, "Field");
  FileRecord gone;
  for (const FileRecord& f : model->store()->allFiles(id))
    if (f.name == "gone.txt") gone = f;
  ASSERT_EQ(gone.catalogID, id);
  fs::remove(root / "gone.txt");
  const std::string volume = get(id).displayVolume();

  model->reveal(gone);
  EXPECT_EQ(alertTitle(), "Item Not Found");
  EXPECT_EQ(alertMessage().toStdString(),
            "\u201Cgone.txt\u201D is no longer at its cataloged location on \u201C" + volume +
                "\u201D. Rescan the catalog to bring it up to date.");
  model->open(gone);
  EXPECT_EQ(
      alertMessage(),
      "\u201Cgone.txt\u201D is no longer at its cataloged location. Rescan the catalog to bring it up to "
      "date.");
}

TEST_F(AppModelTest, LoudScansShowTheirSheetAndQuietOnesOnlyAToastWhenSomethingChanged) {
  makeModel();
  const fs::path root = makeTree("Music", {"a.mp3", "b.mp3"});
  const int64_t other = insert("Other", "");
  const int64_t id = scan(root, "Music");
  ASSERT_TRUE(model->scanResult().has_value());
  EXPECT_EQ(model->scanResult()->addedCount, 2);
  EXPECT_EQ(model->selectedCatalogID(), id);
  EXPECT_EQ(model->toast(), std::nullopt);

  // A quiet rescan with changes: a toast with the counts, and the selection and sheet left alone.
  model->dismissScanResult();
  model->setSelectedCatalogID(other);
  writeFile(root / "c.mp3", "new");
  fs::remove(root / "a.mp3");
  model->quietRescan(id);
  EXPECT_EQ(model->scanner()->phase(), "Auto-updating");
  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  EXPECT_EQ(toast(), "Auto-updated \u201CMusic\u201D: +1 ~0 \u22121");
  EXPECT_EQ(model->selectedCatalogID(), other);
  EXPECT_FALSE(model->scanResult().has_value());

  // A quiet rescan without changes says nothing at all.
  model->flash("earlier");
  model->quietRescan(id);
  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  EXPECT_EQ(toast(), "earlier");
  EXPECT_FALSE(model->hasAlert());

  // A manual rescan without changes still shows its sheet.
  model->rescan(get(id));
  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  ASSERT_TRUE(model->scanResult().has_value());
  EXPECT_TRUE(model->scanResult()->isRescan);
  EXPECT_EQ(model->scanResult()->addedCount + model->scanResult()->removedCount, 0);
  EXPECT_EQ(model->selectedCatalogID(), id);

  // A failed loud scan is an alert.
  model->beginScan(m_temp.path() / "absent", "absent", std::nullopt, ScanOptions::defaults());
  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  EXPECT_EQ(alertTitle(), "Scan Problem");
  EXPECT_EQ(alertMessage(),
            "The folder or drive \u201Cabsent\u201D is not available. Connect it and try again.");
}

TEST_F(AppModelTest, DeleteIsRefusedOnlyForTheCatalogBeingScanned) {
  makeModel();
  std::vector<std::string> many;
  for (int i = 0; i < 300; ++i) many.push_back("f" + std::to_string(i));
  const fs::path root = makeTree("Busy", many);
  const int64_t busy = scan(root, "Busy");
  const int64_t idle = insert("Idle", "");
  UserDefaults::set(WatchedCatalogs::kDefaultsKey, nlohmann::json::array({idle, busy}));
  model->reloadWatchedIDs();
  model->setSelectedCatalogID(idle);

  model->rescan(get(busy));
  ASSERT_TRUE(model->scanner()->isRunning());
  ASSERT_EQ(model->scanner()->catalogID(), busy);
  model->confirmDelete(get(busy));
  EXPECT_EQ(alertTitle(), "Scan in Progress");
  EXPECT_EQ(alertMessage(), "This catalog is being scanned right now. Cancel the scan before deleting it.");
  EXPECT_TRUE(requests.empty());
  // A second scan is refused with its own words.
  model->beginScan(root, "Again", std::nullopt, ScanOptions::defaults());
  EXPECT_EQ(alertMessage(), "Please wait for the current scan to finish, or cancel it first.");

  // The other catalog goes, after the question, with a backup first and its watch removed.
  answer(Answer::accept());
  model->confirmDelete(get(idle));
  ASSERT_FALSE(requests.empty());
  EXPECT_TRUE(requests.back().warning);
  EXPECT_EQ(requests.back().title, "Delete \u201CIdle\u201D?");
  EXPECT_EQ(
      requests.back().text,
      "This removes the catalog and its 0 file records from TVRL Orrelin. Nothing on the drive itself is "
      "touched. A backup of your catalogs is made first.");
  EXPECT_EQ(requests.back().buttons, (QStringList{"Delete Catalog", "Cancel"}));
  EXPECT_FALSE(model->catalog(idle).has_value());
  EXPECT_EQ(toast(), "Deleted \u201CIdle\u201D");
  EXPECT_EQ(WatchedCatalogs::read(), std::set<int64_t>{busy});
  EXPECT_EQ(model->selectedCatalogID(), busy);
  const auto backups = BackupManager::list();
  ASSERT_EQ(backups.size(), 1u);
  EXPECT_NE(backups.front().filename().string().find("_before-delete.sqlite"), std::string::npos);

  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  // Cancelled, the question leaves everything as it was.
  model->confirmDelete(get(busy));
  EXPECT_TRUE(model->catalog(busy).has_value());
  EXPECT_EQ(get(busy).fileCount, 300);
}

TEST_F(AppModelTest, RestoreRefusesAFileThatIsNotADatabaseAndSwapsInARealBackup) {
  makeModel();
  insert("First", "");
  model->backupNow();
  ASSERT_TRUE(model->toast().has_value());
  EXPECT_TRUE(toast().startsWith("Backup saved: Catalogs_")) << toast().toStdString();
  EXPECT_TRUE(toast().endsWith("_manual.sqlite"));
  const fs::path manual = BackupManager::list().front();
  insert("Second", "");

  const fs::path text = m_temp.path() / "notes.txt";
  writeFile(text, "These are my notes, not a database. They are long enough to be read as a header.\n");
  std::string expected;
  try {
    BackupManager::checkBackupFile(text);
  } catch (const std::exception& error) {
    expected = error.what();
  }
  ASSERT_FALSE(expected.empty());
  answer(Answer::accept());
  model->restore(text);
  EXPECT_EQ(requests.back().title, "Restore catalogs from this backup?");
  EXPECT_EQ(
      requests.back().text,
      "Your current catalogs will be replaced with the contents of \u201Cnotes.txt\u201D. A safety backup "
      "of the current state is made first.");
  EXPECT_EQ(alertTitle(), "Restore Failed");
  EXPECT_EQ(alertMessage().toStdString(), "That file could not be used as a backup. " + expected);
  EXPECT_TRUE(model->hasStore());
  EXPECT_EQ(model->catalogs().size(), 2u);
  EXPECT_EQ(BackupManager::list().size(), 2u);  // The safety copy was made all the same.

  // Cancel does nothing; accepting a real backup brings its catalogs back.
  model->restore(manual);
  EXPECT_EQ(model->catalogs().size(), 2u);
  // A search in flight holds the old connection: it is closed all the same, so the search cannot answer
  // from the replaced database.
  std::shared_ptr<CatalogDB> held = model->store();
  answer(Answer::accept());
  model->restore(manual);
  ASSERT_EQ(model->catalogs().size(), 1u);
  EXPECT_EQ(model->catalogs().front().name, "First");
  EXPECT_EQ(toast(), "Catalogs restored from backup");
  EXPECT_THROW(held->catalogs(), DBError);
  held.reset();
  model->rename(model->catalogs().front(), "First Renamed");
  CatalogDB reader(model->databasePath().string());
  ASSERT_EQ(reader.catalogs().size(), 1u);
  EXPECT_EQ(reader.catalogs().front().name, "First Renamed");
}

// A scan's work would go to the file that a restore replaces, and its result would describe catalogs that
// are not there: a restore waits for the scan.
TEST_F(AppModelTest, BrowseToSelectsTheFileAndTheRenamePaneReachesTheModel) {
  makeModel();
  const fs::path root = makeTree("Docs", {"a.txt"});
  const int64_t id = scan(root, "Docs");
  const FileRecord file = model->store()->allFiles(id).front();
  model->setSection(AppSection::stats);
  model->setSelectedCatalogID(std::nullopt);
  model->browseTo(file);
  EXPECT_EQ(model->section(), AppSection::browse);
  EXPECT_EQ(model->selectedCatalogID(), id);
  EXPECT_EQ(model->takePendingRevealFile(), file);
  EXPECT_EQ(model->pendingRevealFile(), std::nullopt);

  RenamePaneState pane;
  model->connectRenamePane(pane);
  writeFile(root / "b.txt", "b");
  emit pane.rescanRequested(id);
  EXPECT_TRUE(model->scanner()->isRunning());
  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  EXPECT_EQ(toast(), "Auto-updated \u201CDocs\u201D: +1 ~0 \u22120");
  emit pane.alertRaised("Title", "Text");
  EXPECT_EQ(alertTitle(), "Title");
}

}  // namespace
}  // namespace orrelin
