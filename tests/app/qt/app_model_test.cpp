// The application state on a real database and real trees: which catalogs are online, what a reload
// does to the selection, the toast clock, a database that cannot be opened, and the launch arguments.
#include "app/qt/app_model.h"

#include "app/backup_manager.h"
#include "app/qt/launch_arguments.h"
#include "app/watched_catalogs.h"
#include "app_fixture.h"
#include "core/name_mapping.h"

namespace orrelin {
namespace {

using testing::AppModelTest;
using testing::spin;
using testing::waitUntil;
using testing::writeFile;
namespace fs = std::filesystem;

TEST_F(AppModelTest, OnlineNeedsAFolderOnTheRecordedVolumeAndNeverForSamplesOrImports) {
  makeModel();
  const fs::path root = makeTree("Disk", {"a.txt"});
  const std::string here = root.string();
  const std::string realUUID = VolumeInfo::read(here).uuid;
  const int64_t noUUID = insert("No UUID", here);
  const int64_t sameUUID = insert("Same UUID", here, realUUID);
  const int64_t otherUUID = insert("Other UUID", here, "0000-NOT-THIS-DRIVE");
  const int64_t sample = insert("Sample", here, "", /*sample=*/true);
  const int64_t imported = insert("Imported", "");
  const int64_t missing = insert("Missing", (m_temp.path() / "nowhere").string());
  writeFile(m_temp.path() / "plain-file", "x");
  const int64_t notFolder = insert("Not a folder", (m_temp.path() / "plain-file").string());

  EXPECT_EQ(model->onlineIDs(), (std::set<int64_t>{noUUID, sameUUID}));
  for (const Catalog& c : model->catalogs())
    EXPECT_EQ(AppModel::isOnlineNow(c), model->isOnline(c.id)) << c.name;
  (void)otherUUID, (void)sample, (void)imported, (void)missing, (void)notFolder;

  // Unplugging is noticed at the next refresh, and so is the drive's return.
  fs::rename(root, root.string() + " away");
  model->refreshOnline();
  EXPECT_TRUE(model->onlineIDs().empty());
  fs::rename(root.string() + " away", root);
  model->refreshOnline();
  EXPECT_EQ(model->onlineIDs(), (std::set<int64_t>{noUUID, sameUUID}));
}

TEST_F(AppModelTest, StartSelectsTheFirstCatalogAndReloadRepairsOnlyAPresentSelection) {
  makeModel();
  EXPECT_EQ(model->selectedCatalogID(), std::nullopt);
  const int64_t beta = insert("beta", "");
  const int64_t alpha = insert("Alpha", "");
  const int64_t gamma = insert("Gamma", "");

  // A new model selects the first catalog by name, ignoring case.
  makeModel();
  EXPECT_EQ(model->selectedCatalogID(), alpha);
  EXPECT_EQ(model->selectedCatalog()->name, "Alpha");

  // A selection that still exists stays; one that went moves to the first catalog; each reload counts.
  model->setSelectedCatalogID(gamma);
  int version = model->dataVersion();
  model->reload();
  EXPECT_EQ(model->selectedCatalogID(), gamma);
  EXPECT_EQ(model->dataVersion(), version + 1);
  model->store()->deleteCatalog(gamma, std::nullopt);
  model->reload();
  EXPECT_EQ(model->selectedCatalogID(), alpha);

  // No selection is not repaired.
  model->setSelectedCatalogID(std::nullopt);
  model->reload();
  EXPECT_EQ(model->selectedCatalogID(), std::nullopt);

  // Removing every catalog clears a selection.
  model->setSelectedCatalogID(beta);
  model->store()->deleteCatalog(alpha, std::nullopt);
  model->store()->deleteCatalog(beta, std::nullopt);
  model->reload();
  EXPECT_EQ(model->selectedCatalogID(), std::nullopt);
  EXPECT_EQ(model->totalFiles(), 0);
}

TEST_F(AppModelTest, AnUnusableDatabaseLeavesNoStoreAndActionsDoNothing) {
  // A folder where the database file belongs cannot be opened as one.
  fs::create_directories(m_temp.path() / "data/TVRL Orrelin/Catalogs.sqlite");
  makeModel();
  EXPECT_FALSE(model->hasStore());
  EXPECT_EQ(alertTitle(), "Database Problem");
  EXPECT_EQ(alertMessage(), "Could not open the catalog database: unable to open database file");
  EXPECT_TRUE(model->catalogs().empty());
  const int version = model->dataVersion();
  model->dismissAlert();
  model->reload();
  model->createGroup("Studio");
  model->backupNow();
  EXPECT_EQ(model->dataVersion(), version);
  EXPECT_FALSE(model->hasAlert());
  EXPECT_EQ(model->toast(), std::nullopt);
  EXPECT_TRUE(requests.empty());
}

TEST_F(AppModelTest, ASecondToastGetsItsOwnFullTime) {
  makeModel();
  TestTiming::setTimeScaleForTesting(0.2);  // A toast stays 560 ms.
  const int duration = 560;
  model->flash("one");
  EXPECT_EQ(toast(), "one");
  spin(duration * 6 / 10);
  model->flash("two");
  QElapsedTimer sinceSecond;
  sinceSecond.start();
  // Past the first toast's end, the second is still up.
  spin(duration * 7 / 10);
  EXPECT_EQ(toast(), "two");
  ASSERT_TRUE(waitUntil([&] { return !model->toast(); }, 5000));
  EXPECT_GE(sinceSecond.elapsed(), duration * 9 / 10);
}

TEST_F(AppModelTest, URLsMapStoredNamesBackToTheirBytes) {
  makeModel();
  const fs::path root = makeTree("Bytes", {});
  writeFile(root / "caf\xE9 \xFF.txt", "latin-1 name");
  const int64_t id = scan(root, "Bytes");
  auto files = model->store()->allFiles(id);
  ASSERT_EQ(files.size(), 1u);
  const FileRecord file = files.front();
  EXPECT_TRUE(NameMapping::isValidUTF8(file.name));
  auto path = model->url(file);
  ASSERT_TRUE(path.has_value());
  EXPECT_TRUE(fs::exists(*path));
  EXPECT_EQ(testing::readFile(*path), "latin-1 name");

  // No thumbnail without its flag or its image; an imported catalog has no path at all.
  EXPECT_EQ(model->thumbnailURL(file), std::nullopt);
  FileRecord withThumb = file;
  withThumb.hasThumb = true;
  EXPECT_EQ(model->thumbnailURL(withThumb), std::nullopt);
  writeFile(model->thumbnailsPath() / std::to_string(id) / (std::to_string(file.id) + ".jpg"), "jpeg");
  EXPECT_TRUE(model->thumbnailURL(withThumb).has_value());
  FileRecord elsewhere = file;
  elsewhere.catalogID = insert("Imported", "");
  EXPECT_EQ(model->url(elsewhere), std::nullopt);
}

TEST_F(AppModelTest, WatchedCatalogsReadOnlyFromAnArrayOfIntegers) {
  struct Case {
    nlohmann::json stored;
    std::set<int64_t> expected;
  };
  const Case cases[] = {
      {nlohmann::json::array({3, 4, 4}), {3, 4}},
      {nlohmann::json::array({1, "2"}), {}},
      {nlohmann::json::array({1, 2.5}), {}},
      {nlohmann::json::array({1, 2.0}), {}},
      {nlohmann::json::array({1, nullptr}), {}},
      {nlohmann::json::array({uint64_t{1} << 63}), {}},
      {nlohmann::json::object({{"a", 1}}), {}},
      {"7", {}},
      {nlohmann::json::array(), {}},
  };
  for (const Case& c : cases) {
    UserDefaults::set(WatchedCatalogs::kDefaultsKey, c.stored);
    EXPECT_EQ(WatchedCatalogs::read(), c.expected) << c.stored.dump();
  }
  UserDefaults::set(WatchedCatalogs::kDefaultsKey, nlohmann::json::array({-5, 9}));
  EXPECT_EQ(makeModel().watchedIDs(), (std::set<int64_t>{-5, 9}));
}

TEST_F(AppModelTest, LaunchArgumentsMatchPrefixesIgnoringCaseAndRunInOrder) {
  using LaunchArguments::match;
  using LaunchArguments::value;
  const QStringList themes = {"Obsidian Laser", "Aurora Drift", "Solar Flare"};
  EXPECT_EQ(match("", themes), 0);
  EXPECT_EQ(match("solar", themes), 2);
  EXPECT_EQ(match("AURORA D", themes), 1);
  EXPECT_EQ(match("Flare", themes), std::nullopt);
  EXPECT_EQ(match("x", {}), std::nullopt);
  EXPECT_EQ(value({"--theme", "--theme=", "--theme=Solar"}, "theme"), QString(""));
  EXPECT_EQ(value({"--themes=x"}, "theme"), std::nullopt);

  makeModel();
  insert("Studio Archive", "");
  const int64_t photos = insert("Photo Vault", "");
  LaunchRequests launch = model->applyLaunchArguments(
      {"orrelin", "--section=stat", "--theme=", "--select=VAULT", "--qa-new-catalog", "--section=search"});
  EXPECT_EQ(model->section(), AppSection::stats);
  EXPECT_EQ(launch.theme, QString(""));
  EXPECT_FALSE(launch.openAbout);
  EXPECT_EQ(model->selectedCatalogID(), photos);
  EXPECT_TRUE(model->newCatalogSheet());
  EXPECT_FALSE(model->hasAlert());

  // Unknown values change nothing.
  launch = model->applyLaunchArguments({"--section=nothing", "--tool=nothing", "--select=nothing"});
  EXPECT_EQ(model->section(), AppSection::stats);
  EXPECT_EQ(model->toolTab(), ToolTab::claude);
  EXPECT_EQ(model->selectedCatalogID(), photos);
  EXPECT_EQ(launch.theme, std::nullopt);

  // A tool opens the Tools screen at its tab; the QA flags raise the About window and the sample alert.
  launch = model->applyLaunchArguments({"--tool=large", "--qa-about", "--qa-alert"});
  EXPECT_EQ(model->section(), AppSection::tools);
  EXPECT_EQ(model->toolTab(), ToolTab::largeOld);
  EXPECT_TRUE(launch.openAbout);
  EXPECT_EQ(alertTitle(), "Drive Offline");
  EXPECT_EQ(
      alertMessage(),
      "Drive offline \u2014 insert \u201CStudio Archive\u201D to open this item. You can keep browsing the "
      "catalog while the drive is disconnected.");
  EXPECT_EQ(rawText(AppSection::web), "Web & Export");
  EXPECT_EQ(rawText(ToolTab::compare), "Compare Catalogs");
}

TEST_F(AppModelTest, LaunchScanCatalogsTheFolderUnderItsLastComponent) {
  makeModel();
  const fs::path root = makeTree("Field Recorder", {"take1.wav", "notes/day.txt"});
  model->applyLaunchArguments({QString::fromStdString("--scan=" + root.string() + "/")});
  ASSERT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
  ASSERT_EQ(model->catalogs().size(), 1u);
  EXPECT_EQ(model->catalogs().front().name, "Field Recorder");
  EXPECT_EQ(model->catalogs().front().fileCount, 2);
  EXPECT_TRUE(model->scanResult().has_value());
}

}  // namespace
}  // namespace orrelin

namespace orrelin::testing {
namespace {

TEST_F(AppModelTest, TheDailyBackupAtStartCopiesInTheBackgroundThenRecordsItself) {
  makeModel();
  insert("Studio", "/nonexistent/studio");
  ASSERT_FALSE(BackupManager::lastBackup().has_value());

  // A model that opens a library with a catalog and no backup yet makes the day's backup, without
  // holding up its construction; it is recorded once the copy is done.
  makeModel();
  EXPECT_TRUE(waitUntil([&] { return !model->autoBackupRunning(); }));
  const auto backups = BackupManager::list();
  ASSERT_EQ(backups.size(), 1u);
  EXPECT_NE(backups.front().filename().string().find("_auto.sqlite"), std::string::npos);
  EXPECT_NO_THROW(BackupManager::checkBackupFile(backups.front()));
  EXPECT_TRUE(BackupManager::lastBackup().has_value());

  // The next start on the same day makes none; a model destroyed mid-copy waits for its file.
  makeModel();
  EXPECT_FALSE(model->autoBackupRunning());
  fs::remove(backups.front());
  UserDefaults::remove("lastBackup");
  makeModel();
  model.reset();
  const auto after = BackupManager::list();
  ASSERT_EQ(after.size(), 1u);
  EXPECT_NO_THROW(BackupManager::checkBackupFile(after.front()));
}

}  // namespace
}  // namespace orrelin::testing
