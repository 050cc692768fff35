// The Empty Folders, Large & Old Files and Missing Files panes of the Tools screen, driven through their
// QML on folders the program has really cataloged.

#include <chrono>
#include <filesystem>
#include <fstream>

#include "app/backup_manager.h"
#include "report_screen_support.h"
#include "store/fmt.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

using ReportPanesTest = ReportScreenTest;

// Sets the modification time of `path` to `years` years ago.
void ageBy(const fs::path& path, int years) {
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(24 * 366 * years));
}

TEST_F(ReportPanesTest, EmptyFoldersFoundInTheChosenCatalogsAndExported) {
  TempDir temp;
  fs::create_directories(temp.path() / "Alpha" / "Vacant");
  fs::create_directories(temp.path() / "Alpha" / "Nested" / "Hollow");
  writeFile(temp.path() / "Alpha" / "Full" / "a.txt", "a");
  fs::create_directories(temp.path() / "Beta" / "Lonely");
  writeFile(temp.path() / "Beta" / "b.txt", "b");
  scanFolder(temp.path() / "Alpha", "Alpha");
  const int64_t beta = scanFolder(temp.path() / "Beta", "Beta");

  QQuickItem* view = makeView("EmptyFoldersPaneView");
  ASSERT_NE(view, nullptr);
  EXPECT_TRUE(visibleIn(view, "emptyFoldersNote")) << "before a run, a note stands in for the table";
  EXPECT_FALSE(visibleIn(view, "emptyFoldersTable"));
  EXPECT_EQ(textIn(view, "emptyFoldersScope"), "All catalogs");

  press(view, "findEmptyFoldersButton");
  EXPECT_EQ(textIn(view, "emptyFoldersHeader"), "3 found");  // "Nested" holds a folder, so it is not empty.
  ASSERT_TRUE(visibleIn(view, "emptyFoldersTable"));
  ASSERT_EQ(rowsIn(view, "emptyFoldersTable"), 3);
  EXPECT_EQ(rowName(view, "emptyFoldersTable", 0), "Hollow");  // Sorted by name.
  EXPECT_EQ(rowName(view, "emptyFoldersTable", 2), "Vacant");

  // Only Beta, through the scope menu's own toggle.
  QMetaObject::invokeMethod(in(view, "emptyFoldersScope"), "toggle", Q_ARG(QVariant, QVariant::fromValue(beta)));
  EXPECT_EQ(textIn(view, "emptyFoldersScope"), "1 selected");
  press(view, "findEmptyFoldersButton");
  EXPECT_EQ(textIn(view, "emptyFoldersHeader"), "1 found");
  ASSERT_EQ(rowsIn(view, "emptyFoldersTable"), 1);
  EXPECT_EQ(rowName(view, "emptyFoldersTable", 0), "Lonely");

  const fs::path csv = temp.path() / "out" / "empty.csv";
  fs::create_directories(csv.parent_path());
  answerSaveWith(csv);
  press(view, "emptyFoldersExportButton");
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0].kind, Dialogs::Request::Kind::savePanel);
  const std::string written = readFile(csv);
  EXPECT_NE(written.find("Lonely"), std::string::npos) << written;
  EXPECT_EQ(written.find("Vacant"), std::string::npos) << "only the rows shown are exported";

  // A scope with nothing empty: a run with no rows, a note, and nothing to export.
  fs::remove(temp.path() / "Beta" / "Lonely");
  model().rescan(beta);
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning() && model().scanResult().has_value(); }));
  dismissScanResult();
  press(view, "findEmptyFoldersButton");
  EXPECT_EQ(textIn(view, "emptyFoldersHeader"), "0 found");
  EXPECT_FALSE(visibleIn(view, "emptyFoldersTable"));
  EXPECT_TRUE(visibleIn(view, "emptyFoldersNote"));
  EXPECT_FALSE(visibleIn(view, "emptyFoldersExportButton"));
}

TEST_F(ReportPanesTest, LargeAndOldFilesFollowTheSizeFieldAndTheYearsStepper) {
  TempDir temp;
  const fs::path root = temp.path() / "Drive";
  writeFile(root / "old-big.bin", std::string(3000, 'x'));
  writeFile(root / "new-big.bin", std::string(5000, 'y'));
  writeFile(root / "old-small.txt", "tiny");
  ageBy(root / "old-big.bin", 5);
  ageBy(root / "old-small.txt", 5);
  scanFolder(root, "Drive");

  QQuickItem* view = makeView("LargeOldPaneView");
  ASSERT_NE(view, nullptr);
  QObject* pane = paneOf(view);
  EXPECT_EQ(textIn(view, "largeOldMinField"), "500");
  EXPECT_EQ(textIn(view, "largeOldYearsLabel"), "2 years");

  // The defaults (500 MB, two years) find nothing here.
  press(view, "buildReportButton");
  EXPECT_TRUE(pane->property("ran").toBool());
  EXPECT_EQ(rowsIn(view, "largeOldTable"), 0);
  EXPECT_FALSE(visibleIn(view, "largeOldExportButton"));

  // Typed with a decimal comma, and Return builds the report: 2 KB and up, two years and older.
  QQuickItem* field = in(view, "largeOldMinField");
  settle();
  click(field);
  key(Qt::Key_A, Qt::ControlModifier);
  type("0,002");
  EXPECT_EQ(pane->property("minMB").toString(), "0,002");
  key(Qt::Key_Return);
  ASSERT_EQ(rowsIn(view, "largeOldTable"), 1);
  EXPECT_EQ(rowName(view, "largeOldTable", 0), "old-big.bin");
  EXPECT_EQ(textIn(view, "largeOldHeader").toStdString(), "1 files \u00B7 " + Fmt::size(3000));

  // Down to "any time": the new file comes too, and the stepper stops at 0.
  press(view, "largeOldYearsMinus");
  EXPECT_EQ(textIn(view, "largeOldYearsLabel"), "1 year");
  press(view, "largeOldYearsMinus");
  EXPECT_EQ(textIn(view, "largeOldYearsLabel"), "any time");
  EXPECT_FALSE(in(view, "largeOldYearsMinus")->isEnabled());
  press(view, "buildReportButton");
  ASSERT_EQ(rowsIn(view, "largeOldTable"), 2);
  EXPECT_EQ(textIn(view, "largeOldHeader").toStdString(), "2 files \u00B7 " + Fmt::size(8000));

  // No number at all means no minimum: the small file as well.
  pane->setProperty("minMB", "lots");
  press(view, "buildReportButton");
  EXPECT_EQ(rowsIn(view, "largeOldTable"), 3);
  EXPECT_TRUE(visibleIn(view, "largeOldExportButton"));
}

TEST_F(ReportPanesTest, MissingFilesCheckedUpdatedAndRefusedOffline) {
  TempDir temp;
  const fs::path root = temp.path() / "Drive";
  writeFile(root / "keep.txt", "k");
  writeFile(root / "gone.txt", "g");
  writeFile(root / "sub" / "also-gone.txt", "a");
  const int64_t id = scanFolder(root, "Drive");
  fs::remove(root / "gone.txt");
  fs::remove(root / "sub" / "also-gone.txt");

  QQuickItem* view = makeView("MissingPaneView");
  ASSERT_NE(view, nullptr);
  QObject* pane = paneOf(view);
  // The only connected drive is chosen by itself.
  EXPECT_EQ(pane->property("catalogID").toLongLong(), id);
  EXPECT_FALSE(visibleIn(view, "missingNoDrive"));

  press(view, "checkDriveButton");
  ASSERT_TRUE(waitUntil([&] { return pane->property("ran").toBool() && !pane->property("busy").toBool(); }));
  EXPECT_EQ(textIn(view, "missingHeader"), "2 missing");
  ASSERT_EQ(rowsIn(view, "missingTable"), 2);
  EXPECT_EQ(rowName(view, "missingTable", 0), "also-gone.txt");
  EXPECT_TRUE(visibleIn(view, "missingExportButton"));

  // "Update Catalog" rescans; when the scan is done the check runs again and finds everything.
  press(view, "updateCatalogButton");
  ASSERT_TRUE(model().scanner()->isRunning() || model().scanResult().has_value());
  ASSERT_TRUE(waitUntil([&] { return textIn(view, "missingHeader") == "Everything is present"; }));
  ASSERT_TRUE(model().scanResult().has_value());
  EXPECT_EQ(model().scanResult()->removedCount, 2);
  dismissScanResult();
  EXPECT_FALSE(visibleIn(view, "updateCatalogButton"));
  EXPECT_FALSE(visibleIn(view, "missingTable"));
  EXPECT_EQ(model().catalog(id)->fileCount, 1);

  // The drive goes away: the alert, and the last result stays on screen.
  writeFile(root / "new.txt", "n");
  fs::rename(root, temp.path() / "Elsewhere");
  press(view, "checkDriveButton");
  ASSERT_TRUE(model().hasAlert());
  EXPECT_EQ(model().alert()->title, "Drive Offline");
  EXPECT_EQ(model().alert()->message, model().offlineMessage(*model().catalog(id)));
  EXPECT_FALSE(pane->property("busy").toBool());
  EXPECT_EQ(textIn(view, "missingHeader"), "Everything is present");
  EXPECT_TRUE(visibleIn(view, "missingNoDrive")) << "no connected drive is left to choose";
}

TEST_F(ReportPanesTest, AfterARestoreThePanesWorkOnTheRestoredDatabase) {
  TempDir temp;
  fs::create_directories(temp.path() / "Old" / "OldEmpty");
  writeFile(temp.path() / "Old" / "x.txt", "x");
  const int64_t old = scanFolder(temp.path() / "Old", "Old");
  model().backupNow(QStringLiteral("manual"), /*silent=*/true);
  const std::vector<fs::path> backups = BackupManager::list();
  ASSERT_FALSE(backups.empty());
  const fs::path backup = backups.front();

  model().store()->deleteCatalog(old, model().thumbnailsPath());
  model().reload();
  fs::create_directories(temp.path() / "New" / "NewEmpty");
  scanFolder(temp.path() / "New", "New");

  QQuickItem* empty = makeView("EmptyFoldersPaneView");
  QQuickItem* missing = makeView("MissingPaneView");
  ASSERT_TRUE(empty && missing);
  press(empty, "findEmptyFoldersButton");
  ASSERT_EQ(rowsIn(empty, "emptyFoldersTable"), 1);
  EXPECT_EQ(rowName(empty, "emptyFoldersTable", 0), "NewEmpty");

  Dialogs::setAnswerer([](const Dialogs::Request&) { return Dialogs::Answer::accept(); });
  model().restore(backup);
  ASSERT_EQ(model().catalogs().size(), 1u);
  ASSERT_EQ(model().catalogs()[0].name, "Old");
  // The rows of the replaced database are gone rather than pointing at other files.
  EXPECT_FALSE(paneOf(empty)->property("ran").toBool());
  EXPECT_FALSE(visibleIn(empty, "emptyFoldersTable"));

  press(empty, "findEmptyFoldersButton");
  ASSERT_EQ(rowsIn(empty, "emptyFoldersTable"), 1);
  EXPECT_EQ(rowName(empty, "emptyFoldersTable", 0), "OldEmpty");

  fs::remove(temp.path() / "Old" / "x.txt");
  paneOf(missing)->setProperty("catalogID", QVariant::fromValue<qint64>(old));
  press(missing, "checkDriveButton");
  ASSERT_TRUE(waitUntil([&] { return paneOf(missing)->property("ran").toBool(); }));
  EXPECT_EQ(textIn(missing, "missingHeader"), "1 missing");
  EXPECT_EQ(rowName(missing, "missingTable", 0), "x.txt");
}

}  // namespace
}  // namespace orrelin::testing
