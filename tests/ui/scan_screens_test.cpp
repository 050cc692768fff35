// The New Catalog sheet, the scan panel and the result sheet, driven as a user drives them, over real
// folders scanned into the real database.
#include <QQmlComponent>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QSignalSpy>

#include <string>

#include "app/qt/dialogs.h"
#include "scan/volume_info.h"
#include "store/fmt.h"
#include "store/sqlite_db.h"
#include "support/temp_dir.h"
#include "ui/new_catalog_state.h"
#include "ui_fixture.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

// `folders` folders of `files` small files each, straight in `root` when `folders` is 0.
void makeTree(const fs::path& root, int folders, int files) {
  for (int f = 0; f < std::max(folders, 1); ++f) {
    const fs::path dir = folders == 0 ? root : root / ("folder " + std::to_string(f));
    for (int i = 0; i < files; ++i) writeFile(dir / ("file " + std::to_string(i) + ".txt"), "x");
  }
}

class ScanScreensTest : public MainWindowTest {
 protected:
  void SetUp() override {
    // Small, fast scans: no media work.
    ScanOptions quick;
    quick.metadata = false;
    quick.thumbnails = false;
    ScanOptions::setDefaults(quick);
    MainWindowTest::SetUp();
  }
  void TearDown() override {
    Dialogs::setAnswerer({});
    if (model().scanner()->isRunning()) {
      model().scanner()->cancel();
      waitUntil([&] { return !model().scanner()->isRunning(); });
    }
    model().dismissScanResult();
    model().setNewCatalogSheet(false);
    ui().setZoom(1.0);
    MainWindowTest::TearDown();
  }

  QString text(const QString& name) const {
    QObject* found = find(name);
    return found ? found->property("text").toString() : QStringLiteral("<no %1>").arg(name);
  }
  bool enabled(const QString& name) const { return shown(name)->isEnabled(); }

  // Whether `inner` lies wholly inside `outer`, as drawn in the window.
  static bool inside(QQuickItem* inner, QQuickItem* outer) {
    const QRectF a = inner->mapRectToScene(QRectF(0, 0, inner->width(), inner->height()));
    const QRectF b = outer->mapRectToScene(QRectF(0, 0, outer->width(), outer->height()));
    return b.adjusted(-0.5, -0.5, 0.5, 0.5).contains(a);
  }
  static bool holds(QQuickItem* ancestor, QQuickItem* item) {
    for (; item; item = item->parentItem()) {
      if (item == ancestor) return true;
    }
    return false;
  }
  // Presses Tab `count` times, then Shift+Tab as often; returns the names of the controls that took the
  // focus, failing when one of them lies outside `sheet`.
  QStringList tabAround(const QString& sheet, int count) {
    QQuickItem* panel = shown(sheet);
    QStringList seen;
    for (int i = 0; i < 2 * count; ++i) {
      key(Qt::Key_Tab, i < count ? Qt::NoModifier : Qt::ShiftModifier);
      QQuickItem* focused = window()->activeFocusItem();
      EXPECT_TRUE(holds(panel, focused)) << "Tab " << i << " left " << sheet.toStdString() << " for "
                                         << (focused ? focused->objectName().toStdString() : "nothing");
      if (focused && !seen.contains(focused->objectName())) seen << focused->objectName();
    }
    return seen;
  }

  // Clicks `name` once it has come to rest: a panel that has just appeared is laid out, and may grow,
  // at its first frames.
  void click(const QString& name) const {
    QQuickItem* target = shown(name);
    if (!target) return;
    QPointF last(-1, -1);
    for (int frame = 0; frame < 60; ++frame) {
      QSignalSpy swapped(window(), &QQuickWindow::frameSwapped);
      window()->update();
      swapped.wait(200);
      const QPointF now = target->mapToScene(QPointF(0, 0));
      if (now == last) break;
      last = now;
    }
    MainWindowTest::click(target);
  }

  // Waits until the sheet or panel `name` has gone. A closed sheet is deleted later, by the event loop;
  // that is done here, so a sheet opened next is the only one the lookups find.
  bool gone(const QString& name) const {
    return waitUntil([&] {
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      return !item(name);
    });
  }

  // Opens the sheet and chooses `folder` through the folder chooser; returns what the chooser was asked.
  Dialogs::Request openSheetAndChoose(const fs::path& folder) {
    EXPECT_TRUE(gone(QStringLiteral("newCatalogSheet")));
    Dialogs::Request asked;
    Dialogs::setAnswerer([&](const Dialogs::Request& request) {
      asked = request;
      return Dialogs::Answer::withPath(folder);
    });
    model().startNewCatalog();
    shown(QStringLiteral("newCatalogSheet"));
    click(QStringLiteral("chooseFolderButton"));
    Dialogs::setAnswerer({});
    return asked;
  }

  // Waits for the scan to end and its result sheet to come up.
  void waitForResult() {
    ASSERT_TRUE(waitUntil([&] { return model().scanResult().has_value(); }, 30000))
        << "the scan never ended; running " << model().scanner()->isRunning() << ", phase "
        << model().scanner()->phase().toStdString() << ", alert "
        << (model().hasAlert() ? model().alert()->message.toStdString() : "none");
    shown(QStringLiteral("scanResultSheet"));
  }
};

TEST_F(ScanScreensTest, SheetStartsOnlyWithAChoiceAndWritesItsChoicesThrough) {
  // A selected catalog in a group: the new catalog goes into the same group unless the user picks another.
  model().loadSampleData();
  const auto selected = model().selectedCatalog();
  ASSERT_TRUE(selected && selected->groupID);
  TempDir drive;
  const fs::path folder = drive.path() / "Holiday Photos";
  makeTree(folder, 0, 3);

  model().startNewCatalog();
  shown(QStringLiteral("newCatalogSheet"));
  EXPECT_FALSE(enabled(QStringLiteral("startScanButton")));
  key(Qt::Key_Return);  // The default key does nothing without a choice.
  EXPECT_TRUE(model().newCatalogSheet());
  EXPECT_FALSE(model().scanner()->isRunning());

  // One card per mounted volume; picking one names the catalog after it.
  const auto volumes = VolumeInfo::mounted();
  for (size_t i = 0; i < volumes.size(); ++i) {
    EXPECT_NE(item(QStringLiteral("volumeCard%1").arg(i)), nullptr) << i;
  }
  if (!volumes.empty()) {
    click(QStringLiteral("volumeCard0"));
    EXPECT_TRUE(item(QStringLiteral("volumeCard0"))->property("selected").toBool());
    EXPECT_TRUE(enabled(QStringLiteral("startScanButton")));
  }
  const QString groupName = shown(QStringLiteral("groupPicker"))->property("displayText").toString();
  for (const CatalogGroup& group : model().groups()) {
    if (group.id == *selected->groupID) {
      EXPECT_EQ(groupName.toStdString(), group.name);
    }
  }
  model().setNewCatalogSheet(false);
  ASSERT_TRUE(gone(QStringLiteral("newCatalogSheet")));

  // The folder chooser: folders only, with its message and prompt; the choice names the catalog.
  const Dialogs::Request asked = openSheetAndChoose(folder);
  EXPECT_EQ(asked.kind, Dialogs::Request::Kind::openPanel);
  EXPECT_TRUE(asked.folders);
  EXPECT_EQ(asked.title, QStringLiteral("Choose a folder, drive or network share to catalog."));
  EXPECT_EQ(asked.buttons, QStringList{QStringLiteral("Choose")});
  EXPECT_EQ(text(QStringLiteral("catalogNameField")), QStringLiteral("Holiday Photos"));
  EXPECT_TRUE(enabled(QStringLiteral("startScanButton")));
  if (item(QStringLiteral("volumeCard0"))) {
    EXPECT_FALSE(item(QStringLiteral("volumeCard0"))->property("selected").toBool());
  }

  // A name of blanks falls back to the folder's name.
  click(QStringLiteral("catalogNameField"));
  key(Qt::Key_A, Qt::ControlModifier);
  type(QStringLiteral("   "));
  EXPECT_EQ(text(QStringLiteral("catalogNameField")), QStringLiteral("   "));
  // Switch metadata back on and checksums on; the next sheet starts with these.
  click(QStringLiteral("optionMetadata"));
  click(QStringLiteral("optionHashes"));
  EXPECT_TRUE(find(QStringLiteral("optionHashes"))->property("checked").toBool());

  key(Qt::Key_Return);
  ASSERT_TRUE(waitUntil([&] { return !model().newCatalogSheet(); }));
  const ScanOptions stored = ScanOptions::defaults();
  EXPECT_TRUE(stored.metadata);
  EXPECT_FALSE(stored.thumbnails);
  EXPECT_TRUE(stored.hashes);
  EXPECT_FALSE(stored.includeHidden);
  EXPECT_TRUE(stored.treatPackagesAsFiles);

  ASSERT_NO_FATAL_FAILURE(waitForResult());
  EXPECT_FALSE(model().hasAlert()) << model().alert()->message.toStdString();
  EXPECT_EQ(text(QStringLiteral("resultTitle")), QStringLiteral("Catalog Created"));
  const auto made = model().catalog(model().scanResult()->catalogID);
  ASSERT_TRUE(made);
  EXPECT_EQ(made->name, "Holiday Photos");
  EXPECT_EQ(made->groupID, selected->groupID);

  // A new sheet starts fresh, with the options carried over.
  model().dismissScanResult();
  ASSERT_TRUE(gone(QStringLiteral("scanResultSheet")));
  model().startNewCatalog();
  shown(QStringLiteral("newCatalogSheet"));
  EXPECT_FALSE(enabled(QStringLiteral("startScanButton")));
  EXPECT_EQ(text(QStringLiteral("catalogNameField")), QString());
  EXPECT_TRUE(find(QStringLiteral("optionHashes"))->property("checked").toBool());
  EXPECT_FALSE(find(QStringLiteral("optionThumbnails"))->property("checked").toBool());
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().newCatalogSheet());
}

TEST_F(ScanScreensTest, PanelPausesResumesFoldsAndCancels) {
  TempDir drive;
  const fs::path folder = drive.path() / "Archive";
  makeTree(folder, 5, 20);
  openSheetAndChoose(folder);
  // The scan's first write waits while another connection holds the database's write lock, so
  // everything below happens before the scan reaches its first entry, however fast the machine.
  SQLiteDB blocker(model().databasePath().string());
  blocker.exec("BEGIN IMMEDIATE");
  click(QStringLiteral("startScanButton"));
  QQuickItem* hud = shown(QStringLiteral("scanHUD"));
  EXPECT_TRUE(QRegularExpression(QStringLiteral("^Preparing · 0:0\\d elapsed$"))
                  .match(text(QStringLiteral("hudPhase")))
                  .hasMatch())
      << text(QStringLiteral("hudPhase")).toStdString();
  click(QStringLiteral("hudPauseButton"));
  EXPECT_TRUE(model().scanner()->isPaused());
  EXPECT_EQ(text(QStringLiteral("hudStatus")), QStringLiteral("SCAN PAUSED"));
  EXPECT_EQ(text(QStringLiteral("hudPauseButton")), QStringLiteral("Resume"));
  EXPECT_EQ(find(QStringLiteral("hudPauseButton"))->property("symbol").toString(),
            QStringLiteral("play.fill"));
  EXPECT_FALSE(find(QStringLiteral("hudRadar"))->property("active").toBool());

  // Expanded, as a scan the user started opens.
  EXPECT_TRUE(model().scanner()->expanded());
  EXPECT_EQ(text(QStringLiteral("hudName")), QStringLiteral("Archive"));
  EXPECT_TRUE(text(QStringLiteral("hudCount")).contains(QStringLiteral(" items · ")));
  EXPECT_TRUE(text(QStringLiteral("hudPhase")).startsWith(QStringLiteral("Paused · 0:0")));
  EXPECT_TRUE(text(QStringLiteral("hudPhase")).endsWith(QStringLiteral(" elapsed")));
  EXPECT_FALSE(text(QStringLiteral("hudPath")).isEmpty());
  EXPECT_TRUE(shown(QStringLiteral("hudAdded"))->isVisible());
  EXPECT_EQ(text(QStringLiteral("hudNote")), QStringLiteral("Scanning runs in the background"));
  EXPECT_EQ(find(QStringLiteral("hudToggle"))->property("tip").toString(), QStringLiteral("Minimize"));

  // The panel stays clear of the status bar.
  QQuickItem* statusBar = item(QStringLiteral("statusBar"));
  ASSERT_TRUE(waitUntil([&] { return hud->height() > 200; }));
  const qreal hudBottom = hud->mapToScene(QPointF(0, hud->height())).y();
  EXPECT_LE(hudBottom, statusBar->mapToScene(QPointF(0, 0)).y());

  // Folded: the phase, path and counters go, the rest stays; expanded again they come back.
  click(QStringLiteral("hudToggle"));
  EXPECT_FALSE(model().scanner()->expanded());
  EXPECT_FALSE(item(QStringLiteral("hudPhase"))->isVisible());
  EXPECT_FALSE(item(QStringLiteral("hudPath"))->isVisible());
  EXPECT_FALSE(item(QStringLiteral("hudAdded"))->isVisible());
  EXPECT_TRUE(item(QStringLiteral("hudCount"))->isVisible());
  EXPECT_EQ(find(QStringLiteral("hudToggle"))->property("tip").toString(), QStringLiteral("Expand"));
  EXPECT_EQ(find(QStringLiteral("hudRadar"))->property("blips").toInt(), 4);
  ASSERT_TRUE(waitUntil([&] { return hud->height() < 160; }))
      << "the folded panel is " << hud->height() << " high";
  click(QStringLiteral("hudToggle"));
  EXPECT_TRUE(model().scanner()->expanded());
  EXPECT_TRUE(item(QStringLiteral("hudPhase"))->isVisible());
  EXPECT_EQ(find(QStringLiteral("hudRadar"))->property("blips").toInt(), 9);

  // Resume and pause again: the status and button follow.
  click(QStringLiteral("hudPauseButton"));
  EXPECT_EQ(text(QStringLiteral("hudStatus")), QStringLiteral("SCANNING"));
  EXPECT_EQ(text(QStringLiteral("hudPauseButton")), QStringLiteral("Pause"));
  EXPECT_TRUE(find(QStringLiteral("hudRadar"))->property("active").toBool());
  click(QStringLiteral("hudPauseButton"));
  EXPECT_EQ(text(QStringLiteral("hudStatus")), QStringLiteral("SCAN PAUSED"));

  // Cancel, while paused: the phase says so at once; the scan ends as soon as it may go on.
  click(QStringLiteral("hudCancelButton"));
  EXPECT_TRUE(text(QStringLiteral("hudPhase")).startsWith(QStringLiteral("Cancelling · ")));
  blocker.exec("ROLLBACK");
  ASSERT_NO_FATAL_FAILURE(waitForResult());
  EXPECT_FALSE(item(QStringLiteral("scanHUD"))->isVisible());
  EXPECT_EQ(text(QStringLiteral("resultTitle")), QStringLiteral("Scan Cancelled"));
  EXPECT_EQ(find(QStringLiteral("resultIcon"))->property("symbol").toString(),
            QStringLiteral("exclamationmark.triangle.fill"));
  EXPECT_TRUE(text(QStringLiteral("resultLine")).startsWith(QStringLiteral("“Archive” · finished in ")));
  EXPECT_TRUE(text(QStringLiteral("resultLine"))
                  .endsWith(QStringLiteral(" · the catalog holds what was scanned so far")));
  EXPECT_EQ(model().scanResult()->addedCount, 0);
}

TEST_F(ScanScreensTest, ResultSheetListsWhatChangedAndBrowses) {
  TempDir drive;
  const fs::path folder = drive.path() / "Projects";
  makeTree(folder, 0, 600);
  model().setSection(AppSection::search);
  openSheetAndChoose(folder);
  click(QStringLiteral("startScanButton"));
  ASSERT_NO_FATAL_FAILURE(waitForResult());

  ASSERT_TRUE(model().scanResult());
  const ScanResult result = *model().scanResult();
  ASSERT_EQ(result.addedCount, 600);
  ASSERT_EQ(result.added.size(), 500u);
  EXPECT_EQ(text(QStringLiteral("resultTitle")), QStringLiteral("Catalog Created"));
  EXPECT_EQ(find(QStringLiteral("resultIcon"))->property("symbol").toString(),
            QStringLiteral("checkmark.seal.fill"));
  EXPECT_TRUE(QRegularExpression(QStringLiteral("^“Projects” · finished in \\d+\\.\\d seconds$"))
                  .match(text(QStringLiteral("resultLine")))
                  .hasMatch())
      << text(QStringLiteral("resultLine")).toStdString();

  // The added tab: 600 on the tile, the 500 paths the scan kept, and a last row for the rest.
  EXPECT_EQ(text(QStringLiteral("resultTileAddedCount")), QStringLiteral("600"));
  EXPECT_TRUE(find(QStringLiteral("resultTileAdded"))->property("selected").toBool());
  QQuickItem* list = shown(QStringLiteral("resultList"));
  EXPECT_EQ(list->property("count").toInt(), 500);
  EXPECT_TRUE(shown(QStringLiteral("resultMore"))->isVisible());
  EXPECT_EQ(text(QStringLiteral("resultMore")), QStringLiteral("…and 100 more"));
  EXPECT_FALSE(item(QStringLiteral("resultEmpty"))->isVisible());

  // The changed tab is empty and says so.
  click(QStringLiteral("resultTileChanged"));
  EXPECT_TRUE(find(QStringLiteral("resultTileChanged"))->property("selected").toBool());
  EXPECT_EQ(list->property("count").toInt(), 0);
  EXPECT_EQ(text(QStringLiteral("resultEmpty")), QStringLiteral("No items in this list."));
  EXPECT_TRUE(item(QStringLiteral("resultEmpty"))->isVisible());
  EXPECT_EQ(item(QStringLiteral("resultMore")), nullptr);

  click(QStringLiteral("browseCatalogButton"));
  EXPECT_FALSE(model().scanResult().has_value());
  EXPECT_EQ(model().selectedCatalogID(), result.catalogID);
  EXPECT_EQ(model().section(), AppSection::browse);
  ASSERT_TRUE(gone(QStringLiteral("scanResultSheet")));

  // A rescan that found one new file and lost one: "Catalog Updated", and Return is "Done".
  fs::remove(folder / "file 7.txt");
  writeFile(folder / "late arrival.txt", "y");
  model().rescan(result.catalogID);
  ASSERT_NO_FATAL_FAILURE(waitForResult());
  EXPECT_EQ(text(QStringLiteral("resultTitle")), QStringLiteral("Catalog Updated"));
  EXPECT_EQ(text(QStringLiteral("resultTileAddedCount")), QStringLiteral("1"));
  list = shown(QStringLiteral("resultList"));
  EXPECT_EQ(list->property("count").toInt(), 1);
  click(QStringLiteral("resultTileRemoved"));
  EXPECT_EQ(list->property("count").toInt(), 1);
  key(Qt::Key_Return);
  EXPECT_FALSE(model().scanResult().has_value());
}

TEST_F(ScanScreensTest, TabGoesRoundTheSheetAndNeverBehindIt) {
  // Controls behind the sheet (the sidebar, the header, the empty screen's buttons) must stay out of reach.
  TempDir drive;
  const fs::path folder = drive.path() / "Keys";
  makeTree(folder, 0, 2);
  model().startNewCatalog();
  QStringList seen = tabAround(QStringLiteral("newCatalogSheet"), 14);
  for (const char* name : {"chooseFolderButton", "catalogNameField", "groupPicker", "optionMetadata",
                           "optionPackages", "newCatalogCancel"}) {
    EXPECT_TRUE(seen.contains(QLatin1String(name))) << name << " never took the focus";
  }
  EXPECT_FALSE(seen.contains(QStringLiteral("startScanButton")));  // Disabled without a choice.
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().newCatalogSheet());
  ASSERT_TRUE(gone(QStringLiteral("newCatalogSheet")));

  openSheetAndChoose(folder);
  key(Qt::Key_Return);
  ASSERT_NO_FATAL_FAILURE(waitForResult());
  seen = tabAround(QStringLiteral("scanResultSheet"), 6);
  for (const char* name :
       {"resultTileAdded", "resultTileRemoved", "browseCatalogButton", "resultDoneButton"}) {
    EXPECT_TRUE(seen.contains(QLatin1String(name))) << name << " never took the focus";
  }
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().scanResult().has_value());
}

TEST_F(ScanScreensTest, SheetsAndPanelFitTheWindowFromHalfToTwoAndAHalfTimesTheSize) {
  // A name of 60 characters without a space, with an emoji and right-to-left text, and a file whose name
  // holds a line break.
  const std::string longName =
      std::string(40, 'N') + "\xF0\x9F\x93\x80" + "\xD9\x86\xD8\xA7\xD9\x85" + std::string(15, 'x');
  TempDir drive;
  const fs::path folder = drive.path() / longName;
  makeTree(folder, 0, 3);
  writeFile(folder / "two\nlines.txt", "z");
  QQuickItem* content = window()->contentItem();

  for (double zoom : {0.5, 2.5}) {
    SCOPED_TRACE(zoom);
    ui().setZoom(zoom);
    model().startNewCatalog();
    QQuickItem* sheet = shown(QStringLiteral("newCatalogSheet"));
    waitUntil(
        [&] { return inside(sheet, content) && inside(item(QStringLiteral("startScanButton")), sheet); },
        2000);
    EXPECT_TRUE(inside(sheet, content)) << sheet->width() << "x" << sheet->height();
    EXPECT_TRUE(inside(shown(QStringLiteral("startScanButton")), sheet));
    EXPECT_TRUE(inside(shown(QStringLiteral("newCatalogCancel")), sheet));
    model().setNewCatalogSheet(false);
    ASSERT_TRUE(gone(QStringLiteral("newCatalogSheet")));
  }

  // The panel, held before the scan's first write: its note is whole in both forms, and it stays in
  // the window.
  openSheetAndChoose(folder);
  EXPECT_EQ(text(QStringLiteral("catalogNameField")).toStdString(), longName);
  SQLiteDB blocker(model().databasePath().string());
  blocker.exec("BEGIN IMMEDIATE");
  click(QStringLiteral("startScanButton"));
  QQuickItem* hud = shown(QStringLiteral("scanHUD"));
  for (double zoom : {0.5, 1.0, 2.5}) {
    ui().setZoom(zoom);
    for (bool expanded : {true, false}) {
      SCOPED_TRACE(
          QStringLiteral("zoom %1, %2").arg(zoom).arg(expanded ? "expanded" : "folded").toStdString());
      model().scanner()->setExpanded(expanded);
      // Once the fold's animation and the layout have settled.
      waitUntil(
          [&] {
            return !find(QStringLiteral("hudNote"))->property("truncated").toBool() && inside(hud, content) &&
                   inside(item(QStringLiteral("hudName")), hud);
          },
          2000);
      EXPECT_FALSE(find(QStringLiteral("hudNote"))->property("truncated").toBool());
      EXPECT_TRUE(inside(hud, content));
      EXPECT_TRUE(inside(item(QStringLiteral("hudName")), hud));
    }
  }
  ui().setZoom(1.0);
  blocker.exec("ROLLBACK");
  ASSERT_NO_FATAL_FAILURE(waitForResult());
  EXPECT_EQ(model().scanResult()->catalogName, longName);

  // The result line wraps the long name inside the sheet; the path with a line break keeps to one row.
  QQuickItem* line = shown(QStringLiteral("resultLine"));
  EXPECT_GE(line->property("lineCount").toInt(), 2);
  EXPECT_LE(line->property("contentWidth").toReal(), line->width() + 1);
  QQuickItem* list = shown(QStringLiteral("resultList"));
  QStringList rows;
  for (QQuickItem* row : qvariant_cast<QQuickItem*>(list->property("contentItem"))->childItems()) {
    rows << row->property("text").toString();
  }
  EXPECT_TRUE(rows.contains(QStringLiteral("two lines.txt"))) << rows.join(QLatin1Char('|')).toStdString();
  for (double zoom : {0.5, 2.5}) {
    ui().setZoom(zoom);
    QQuickItem* sheet = shown(QStringLiteral("scanResultSheet"));
    QQuickItem* done = shown(QStringLiteral("resultDoneButton"));
    waitUntil([&] { return inside(sheet, content) && inside(done, sheet); }, 2000);
    EXPECT_TRUE(inside(sheet, content)) << zoom;
    EXPECT_TRUE(inside(done, sheet)) << zoom << ": the sheet is " << sheet->height() << " high";
  }
}

TEST_F(ScanScreensTest, VolumeCardsShowTheirKindNameAndSpace) {
  VolumeInfo network, removable, internal;
  network.isNetwork = removable.isRemovable = true;
  network.isRemovable = true;  // A network share wins over a removable one.
  EXPECT_EQ(NewCatalogState::volumeSymbol(network), QStringLiteral("network"));
  EXPECT_EQ(NewCatalogState::volumeSymbol(removable), QStringLiteral("externaldrive.fill"));
  EXPECT_EQ(NewCatalogState::volumeSymbol(internal), QStringLiteral("internaldrive.fill"));

  QQmlComponent cardType(qmlEngine(window()), QUrl(QStringLiteral("qrc:/Orrelin/VolumeCard.qml")));
  ASSERT_TRUE(cardType.isReady()) << cardType.errorString().toStdString();
  struct Case {
    QVariantMap volume;
    QString title, detail;
  };
  const QString sized =
      QString::fromStdString(Fmt::size(500'000'000'000) + " free of " + Fmt::size(2'000'000'000'000));
  const std::vector<Case> cases{
      {{{"url", "/media/x"}, {"name", ""}, {"symbol", "externaldrive.fill"}, {"capacity", 0}, {"free", 0}},
       QStringLiteral("Volume"),
       QString()},
      {{{"url", "/mnt/nas"},
        {"name", "NAS"},
        {"symbol", "network"},
        {"capacity", 2'000'000'000'000LL},
        {"free", 500'000'000'000LL}},
       QStringLiteral("NAS"),
       sized},
  };
  for (const Case& c : cases) {
    std::unique_ptr<QObject> card(cardType.createWithInitialProperties({{"volume", c.volume}}));
    ASSERT_TRUE(card) << cardType.errorString().toStdString();
    EXPECT_EQ(card->property("title").toString(), c.title);
    EXPECT_EQ(card->property("detail").toString(), c.detail);
  }
}

}  // namespace
}  // namespace orrelin::testing
