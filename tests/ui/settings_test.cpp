// The Settings and About windows, driven through their controls as a user would: the scan defaults, the
// stepper's bounds, a backup landing at the top of the list, a restore from that list, the thumbnail cache,
// the theme tiles and the zoom slider, and About's texts and size.
#include <QBuffer>
#include <QImage>
#include <QQmlEngine>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>

#include "app/backup_manager.h"
#include "app/qt/dialogs.h"
#include "core/app_info.h"
#include "core/app_paths.h"
#include "core/user_defaults.h"
#include "scan/scan_records.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"
#include "ui/thumb_cache.h"
#include "ui_fixture.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class SettingsTest : public MainWindowTest {
 protected:
  // Every test of this process shares the settings file, the data folder and AppModel: each starts here
  // as on a first run, whatever the tests before it (here or in other suites) chose, backed up or loaded.
  void SetUp() override {
    for (const char* key : {"scanDefaults", "autoBackup", "backupKeep", "lastBackup"})
      UserDefaults::remove(key);
    std::error_code ignored;
    fs::remove_all(AppPaths::backups(), ignored);
    AppModel& app = AppModel::shared();
    if (app.store()) {
      for (const Catalog& c : app.catalogs()) app.store()->deleteCatalog(c.id, app.thumbnailsPath());
      for (const CatalogGroup& g : app.groups()) app.store()->deleteGroup(g.id);
      app.reload();
    }
    UIState::shared().setTheme(ThemeID::obsidian);
    UIState::shared().resetZoom();
    MainWindowTest::SetUp();
  }

  void TearDown() override {
    Dialogs::setAnswerer({});
    MainWindowTest::TearDown();
  }

  // Opens Settings on tab `index`.
  QQuickWindow* openSettings(int index) {
    auto* settings = qobject_cast<QQuickWindow*>(find("settingsWindow"));
    EXPECT_NE(settings, nullptr);
    if (!settings) return nullptr;
    QMetaObject::invokeMethod(settings, "open");
    EXPECT_TRUE(QTest::qWaitForWindowExposed(settings));
    click("settingsTab" + QString::number(index));
    EXPECT_TRUE(waitUntil([&] { return settings->property("currentTab").toInt() == index; }));
    makeRoom(settings);
    return settings;
  }

  // Makes the window tall enough that every row of its tab can be clicked without scrolling.
  void makeRoom(QQuickWindow* settings) {
    settings->setHeight(3000);
    EXPECT_TRUE(waitUntil([&] { return item("settingsScroller")->height() > 2000; }));
  }

  // The theme and zoom the screens follow: the QML engine's UIState singleton.
  UIState& qmlUI() const {
    QQmlEngine* engine = qmlEngine(window());
    return *engine->singletonInstance<UIState*>(qmlTypeId("Orrelin", 1, 0, "UIState"));
  }

  QString text(const QString& name) const {
    QObject* found = find(name);
    return found ? found->property("text").toString() : QString();
  }
  bool enabled(const QString& name) const { return item(name) && item(name)->isEnabled(); }
  QString toast() const { return AppModel::shared().property("toast").toString(); }
  int backupRows() const {
    int rows = 0;
    while (find("backupRow" + QString::number(rows))) ++rows;
    return rows;
  }
  static int64_t catalogCount() { return static_cast<int64_t>(AppModel::shared().catalogs().size()); }
};

TEST_F(SettingsTest, ScanningTogglesWriteTheDefaultsAtOnce) {
  openSettings(1);
  const struct {
    const char* toggle;
    bool ScanOptions::*field;
  } toggles[] = {{"metadataToggle", &ScanOptions::metadata},
                 {"thumbnailsToggle", &ScanOptions::thumbnails},
                 {"hashesToggle", &ScanOptions::hashes},
                 {"hiddenToggle", &ScanOptions::includeHidden},
                 {"packagesToggle", &ScanOptions::treatPackagesAsFiles}};
  for (const auto& t : toggles) {
    const ScanOptions before = ScanOptions::defaults();
    click(t.toggle);
    ScanOptions expected = before;
    expected.*t.field = !(before.*t.field);
    EXPECT_EQ(ScanOptions::defaults(), expected) << t.toggle;
    EXPECT_EQ(item(t.toggle)->property("checked").toBool(), expected.*t.field) << t.toggle;
  }
  // Everything is now the opposite of the start; one more round brings the start back.
  EXPECT_EQ(ScanOptions::defaults(), (ScanOptions{true, false, false, true, false}));
  for (const auto& t : toggles) click(t.toggle);
  EXPECT_EQ(ScanOptions::defaults(), ScanOptions{});
}

TEST_F(SettingsTest, TheKeptCountStepsWithinOneAndSixty) {
  openSettings(2);
  EXPECT_EQ(text("keepLabel"), "Keep the newest 10 backups");
  EXPECT_EQ(text("lastBackupLabel"), "\u2014") << "no backup so far";

  for (int i = 0; i < 9; ++i) click("keepMinus");
  EXPECT_EQ(BackupManager::keepCount(), 1);
  EXPECT_EQ(text("keepLabel"), "Keep the newest 1 backups");
  EXPECT_FALSE(enabled("keepMinus"));
  click("keepMinus");
  EXPECT_EQ(BackupManager::keepCount(), 1);

  auto* prefs = find("settingsState");
  ASSERT_NE(prefs, nullptr);
  prefs->setProperty("keepCount", 59);
  click("keepPlus");
  EXPECT_EQ(BackupManager::keepCount(), 60);
  EXPECT_EQ(text("keepLabel"), "Keep the newest 60 backups");
  EXPECT_FALSE(enabled("keepPlus"));
  prefs->setProperty("keepCount", 100);
  EXPECT_EQ(BackupManager::keepCount(), 60);
  EXPECT_EQ(prefs->property("keepCount").toInt(), 60);

  // The toggle of the daily backup writes through too.
  ASSERT_TRUE(BackupManager::autoBackupEnabled());
  click("autoBackupToggle");
  EXPECT_FALSE(BackupManager::autoBackupEnabled());
}

TEST_F(SettingsTest, BackUpNowPutsTheNewFileAtTheTopOfTheList) {
  // An older backup is there already.
  const fs::path old = AppPaths::backups() / "Catalogs_2024-01-02_030405_auto.sqlite";
  writeFile(old, "");
  fs::last_write_time(old, fs::file_time_type::clock::now() - std::chrono::hours(24 * 30));
  openSettings(2);
  ASSERT_EQ(backupRows(), 1);
  EXPECT_EQ(text("backupName0"), "Catalogs_2024-01-02_030405_auto.sqlite");

  click("backUpNowButton");
  ASSERT_TRUE(waitUntil([&] { return backupRows() == 2; }));
  const QString name = text("backupName0");
  EXPECT_TRUE(name.startsWith("Catalogs_") && name.endsWith("_manual.sqlite")) << name.toStdString();
  EXPECT_EQ(text("backupName1"), "Catalogs_2024-01-02_030405_auto.sqlite");
  EXPECT_EQ(toast(), "Backup saved: " + name);
  EXPECT_NE(text("lastBackupLabel"), "\u2014");
  EXPECT_TRUE(fs::exists(AppPaths::backups() / name.toStdString()));
}

TEST_F(SettingsTest, RestoringFromTheListAsksThenBringsTheBackupBack) {
  model().loadSampleData();
  ASSERT_EQ(catalogCount(), 4);
  openSettings(2);
  click("backUpNowButton");
  ASSERT_TRUE(waitUntil([&] { return backupRows() == 1; }));
  model().removeSampleData();
  ASSERT_EQ(catalogCount(), 0);

  std::vector<QString> asked;
  int answer = 1;  // "Cancel" first.
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    asked.push_back(request.title);
    return Dialogs::Answer{answer, {}, {}};
  });
  click("restoreButton0");
  EXPECT_EQ(asked, std::vector<QString>{"Restore catalogs from this backup?"});
  EXPECT_EQ(catalogCount(), 0) << "cancelled";
  EXPECT_EQ(backupRows(), 1);

  answer = 0;  // "Restore".
  click("restoreButton0");
  EXPECT_EQ(asked.size(), 2u);
  EXPECT_EQ(catalogCount(), 4);
  EXPECT_EQ(toast(), "Catalogs restored from backup");
  // The safety copy of the state before the restore is now listed too, on top.
  ASSERT_TRUE(waitUntil([&] { return backupRows() == 2; }));
  EXPECT_TRUE(text("backupName0").endsWith("_before-restore.sqlite")) << text("backupName0").toStdString();
}

TEST_F(SettingsTest, ClearingTheThumbnailCacheEmptiesItAndSaysSo) {
  TempDir dir;
  QImage image(20, 20, QImage::Format_RGB32);
  image.fill(Qt::magenta);
  const fs::path file = dir.path() / "1.jpg";
  ASSERT_TRUE(image.save(QString::fromStdString(file.string()), "JPG"));
  ASSERT_FALSE(ThumbCache::shared().image(file).isNull());
  ASSERT_GT(ThumbCache::shared().count(), 0u);

  openSettings(3);
  EXPECT_EQ(text("databasePathText").toStdString(), model().databasePath().string());
  click("clearThumbCacheButton");
  EXPECT_EQ(ThumbCache::shared().count(), 0u);
  EXPECT_EQ(toast(), "Thumbnail cache cleared");
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(SettingsTest, ThemeTilesAndTheZoomSliderChangeTheLook) {
  QQuickWindow* settings = openSettings(0);
  click("themeTile4");
  EXPECT_EQ(qmlUI().theme(), ThemeID::steel);
  EXPECT_TRUE(item("themeTile4")->property("current").toBool());
  EXPECT_FALSE(item("themeTile0")->property("current").toBool());

  // Dragging the slider's handle to its right end and letting go zooms to the maximum.
  QQuickItem* slider = shown("zoomSlider");
  QQuickWindow* host = slider->window();
  const auto at = [&](double fraction) {
    return slider->mapToScene(QPointF(slider->width() * fraction, slider->height() / 2)).toPoint();
  };
  const double start = (1.0 - 0.5) / 2.0;  // Where 100% lies between 50% and 250%.
  QTest::mousePress(host, Qt::LeftButton, Qt::NoModifier, at(start));
  for (double f = start; f <= 1.0; f += 0.1) QTest::mouseMove(host, at(f));
  QTest::mouseMove(host, at(1.0));
  QTest::mouseRelease(host, Qt::LeftButton, Qt::NoModifier, at(1.0));
  ASSERT_TRUE(waitUntil([&] { return qmlUI().zoom() == 2.5; }));
  EXPECT_EQ(text("zoomPercentLabel"), "250%");

  // At 250% the tab is taller than the screen.
  makeRoom(settings);
  click("actualSizeButton");
  EXPECT_DOUBLE_EQ(qmlUI().zoom(), 1.0);
  EXPECT_EQ(text("zoomPercentLabel"), "100%");
  EXPECT_FALSE(enabled("actualSizeButton"));
}

TEST_F(SettingsTest, AboutShowsTheProgramAndFitsItsContentAtEveryZoom) {
  auto* about = qobject_cast<QQuickWindow*>(find("aboutWindow"));
  ASSERT_NE(about, nullptr);
  QMetaObject::invokeMethod(about, "open");
  ASSERT_TRUE(QTest::qWaitForWindowExposed(about));
  EXPECT_EQ(about->title(), "About TVRL Orrelin");
  EXPECT_EQ(text("aboutName"), "TVRL Orrelin");
  EXPECT_EQ(text("aboutVersion").toStdString(),
            "Version " + AppInfo::version() + " (build " + AppInfo::build() + ")");
  EXPECT_EQ(text("aboutTagline"), "Catalog every drive. Find anything \u2014 even when it\u2019s unplugged.");
  EXPECT_EQ(text("websiteLink"), "Tavrel Works");
  EXPECT_TRUE(waitUntil([&] { return item("aboutRadar")->property("active").toBool(); }, 3000));

  QQuickItem* content = item("aboutContent");
  const int width = about->width();
  EXPECT_GT(width, content->width());
  EXPECT_LT(width, content->width() + 200);
  qmlUI().setZoom(2.0);
  ASSERT_TRUE(waitUntil([&] { return about->width() > width * 1.8; }));
  EXPECT_LT(about->width(), width * 2.2);
  EXPECT_EQ(about->minimumWidth(), about->maximumWidth()) << "sized by its content, not by the user";
}

TEST_F(SettingsTest, TheWindowFitsTheScreenAtTheLargestZoom) {
  qmlUI().setZoom(2.5);
  auto* settings = qobject_cast<QQuickWindow*>(find("settingsWindow"));
  ASSERT_NE(settings, nullptr);
  QMetaObject::invokeMethod(settings, "open");
  ASSERT_TRUE(QTest::qWaitForWindowExposed(settings));
  const QRect screen = settings->screen()->availableGeometry();
  EXPECT_LE(settings->width(), screen.width());
  EXPECT_LE(settings->height(), screen.height());
  EXPECT_LE(settings->minimumWidth(), screen.width());
  // The tiles reflow to the width there is: the third of a row still ends inside the window.
  QQuickItem* tile = shown("themeTile2");
  EXPECT_LE(tile->mapToScene(QPointF(tile->width(), 0)).x(), settings->width());
  qmlUI().resetZoom();
}

TEST_F(SettingsTest, TheKeyboardReachesTabsTilesButtonsAndToggles) {
  QQuickWindow* settings = openSettings(0);
  ASSERT_NE(settings, nullptr);
  settings->requestActivate();
  ASSERT_TRUE(waitUntil([&] { return QGuiApplication::focusWindow() == settings; }));
  const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(settings, key, modifiers);
    QCoreApplication::processEvents();
  };

  // Tab walks from one theme tile to the next; Return and Space choose the one with the focus.
  item("themeTile2")->forceActiveFocus();
  press(Qt::Key_Return);
  EXPECT_EQ(qmlUI().theme(), ThemeID::solar);
  press(Qt::Key_Tab);
  EXPECT_TRUE(item("themeTile3")->hasActiveFocus());
  press(Qt::Key_Space);
  EXPECT_EQ(qmlUI().theme(), ThemeID::ocean);

  // Return presses a focused button.
  qmlUI().setZoom(1.5);
  item("actualSizeButton")->forceActiveFocus();
  press(Qt::Key_Return);
  EXPECT_DOUBLE_EQ(qmlUI().zoom(), 1.0);

  // Ctrl+Tab and Ctrl+Shift+Tab go round the tabs.
  press(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(settings->property("currentTab").toInt(), 1);
  press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(settings->property("currentTab").toInt(), 3);
  press(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(settings->property("currentTab").toInt(), 0);

  // A toggle takes Return as well as Space.
  press(Qt::Key_Tab, Qt::ControlModifier);
  ASSERT_TRUE(waitUntil([&] { return item("hiddenToggle")->isVisible(); }));
  item("hiddenToggle")->forceActiveFocus();
  const bool before = ScanOptions::defaults().includeHidden;
  press(Qt::Key_Return);
  EXPECT_EQ(ScanOptions::defaults().includeHidden, !before);
  press(Qt::Key_Space);
  EXPECT_EQ(ScanOptions::defaults().includeHidden, before);
}

}  // namespace
}  // namespace orrelin::testing
