// The window frame as a user meets it: the zoom control and its shortcuts, the theme menu, the quick
// search, the alert, the status line during and after a scan, and the menu items that follow the
// selection and the scan.
#include <QDesktopServices>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>
#include <QUrl>
#include <QVariant>

#include <filesystem>
#include <string>

#include "app/qt/dialogs.h"
#include "core/test_timing.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"
#include "search/qt/search_state.h"
#include "ui_fixture.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class FrameTest : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    // The tests share one AppModel when run in one process: start each from no catalogs, no sheet, no
    // alert, the first screen and actual size.
    for (const Catalog& c : model().catalogs()) model().store()->deleteCatalog(c.id, std::nullopt);
    model().reload();
    model().dismissAlert();
    model().setNewCatalogSheet(false);
    model().dismissScanResult();
    model().setSection(AppSection::browse);
    ui().setZoom(1.0);
    // A toast left by an earlier test (loading the sample data shows one) ends at once.
    if (model().toast()) {
      TestTiming::setTimeScaleForTesting(0.01);
      model().flash(*model().toast());
      waitUntil([&] { return !model().toast(); }, 3000);
      TestTiming::setTimeScaleForTesting(1);
    }
    waitUntil([&] { return !item("toast")->isVisible(); }, 3000);
    QCoreApplication::processEvents();
  }

  // Whether `target` lies wholly inside the window, as drawn (scales included).
  bool insideWindow(QQuickItem* target) const {
    const QRectF drawn = target->mapRectToScene(QRectF(0, 0, target->width(), target->height()));
    return QRectF(0, 0, window()->width(), window()->height()).contains(drawn);
  }

  // With ORRELIN_SHOTS set to a folder, saves what the window shows there as <name>.png, for a look at
  // states that are hard to reach from the command line (an open menu).
  void saveShot(const QString& name) const {
    const QString folder = qEnvironmentVariable("ORRELIN_SHOTS");
    if (folder.isEmpty()) return;
    spin(400);  // Let the opening animations end.
    window()->grabWindow().save(folder + "/" + name + ".png");
  }

  QString text(const QString& name) const { return property(name, "text").toString(); }
  QVariant property(const QString& name, const char* key) const {
    QObject* object = find(name);
    EXPECT_NE(object, nullptr) << name.toStdString() << " not found";
    return object ? object->property(key) : QVariant();
  }
  bool enabled(const QString& name) const { return property(name, "enabled").toBool(); }

  // The entry of a menu (a Menu object) whose text is `label`: an item declared in it, or the one the
  // menu made for an action or a submenu.
  QQuickItem* entry(QObject* menu, const QString& label) const {
    const int count = menu->property("count").toInt();
    for (int i = 0; i < count; ++i) {
      QQuickItem* item = nullptr;
      QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, i));
      if (item && item->property("text").toString() == label) return item;
    }
    ADD_FAILURE() << "no entry " << label.toStdString() << " in " << menu->objectName().toStdString();
    return nullptr;
  }

  // Opens a menu of the menu bar by clicking its title, and returns the menu.
  QObject* openMenu(const QString& menuName, const QString& title) {
    QObject* menu = find(menuName);
    EXPECT_NE(menu, nullptr);
    QObject* bar = find(QStringLiteral("menuBar"));
    EXPECT_NE(bar, nullptr);
    if (!menu || !bar) return nullptr;
    QQuickItem* titleItem = entry(bar, title);
    click(titleItem);
    EXPECT_TRUE(waitUntil([&] { return menu->property("opened").toBool(); }, 3000)) << title.toStdString();
    return menu;
  }

  // Starts a first scan of a small tree: three files of 1, 2 and 3 kB in two folders.
  void startScan(const TempDir& dir, const QString& name) {
    writeFile(dir.path() / "a.txt", std::string(1000, 'a'));
    writeFile(dir.path() / "notes" / "b.txt", std::string(2000, 'b'));
    writeFile(dir.path() / "notes" / "c.txt", std::string(3000, 'c'));
    model().beginScan(dir.path(), name, std::nullopt, ScanOptions::defaults());
  }
};

// The window's AppModel and UIState are the program's shared ones, which the launch arguments and every
// other part of the program act on.
TEST_F(FrameTest, TheWindowShowsTheSharedState) {
  QQuickItem* header = item("headerBar");
  for (const char* name : {"AppModel", "UIState"}) {
    QQmlExpression singleton(qmlContext(header), header, QString::fromLatin1(name));
    QObject* seen = singleton.evaluate().value<QObject*>();
    QObject* shared = std::string(name) == "AppModel" ? static_cast<QObject*>(&model()) : &ui();
    EXPECT_EQ(seen, shared) << name;
  }
}

TEST_F(FrameTest, ZoomControlAndShortcutsStopAtTheBoundsAndTheMenuRoundsToTenths) {
  const double headerAtActualSize = item("headerBar")->height();
  if (!qEnvironmentVariable("ORRELIN_SHOTS").isEmpty()) {
    QQuickItem* control = item("zoomControl");
    QTest::mouseMove(window(), control->mapToScene(QPointF(4, control->height() / 2)).toPoint());
    spin(1200);  // The help text shows after a pause.
    saveShot("tooltip-zoom");
  }
  // At every step the header makes room, so the control stays inside the window.
  for (int i = 0; i < 30 && enabled("zoomInButton"); ++i) {
    QQuickItem* plus = item("zoomInButton");
    QQuickItem* button = item("headerCatalogButton");
    EXPECT_LE(button->mapToScene(QPointF(button->width(), 0)).x(), window()->width()) << ui().zoom();
    click(plus);
  }
  EXPECT_DOUBLE_EQ(ui().zoom(), 2.5);
  EXPECT_FALSE(enabled("zoomInButton"));
  EXPECT_TRUE(enabled("zoomOutButton"));
  EXPECT_FALSE(enabled("zoomInAction"));
  EXPECT_EQ(text("zoomPercentText"), "250%");
  // Everything is laid out again at the new scale.
  EXPECT_NEAR(item("headerBar")->height(), headerAtActualSize * 2.5, 0.01);
  key(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(ui().zoom(), 2.5);

  key(Qt::Key_0, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(ui().zoom(), 1.0);
  EXPECT_EQ(text("zoomPercentText"), "100%");

  for (int i = 0; i < 30 && ui().zoom() > 0.5; ++i) key(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(ui().zoom(), 0.5);
  EXPECT_FALSE(enabled("zoomOutButton"));
  EXPECT_TRUE(enabled("zoomInButton"));
  click("zoomOutButton");
  EXPECT_DOUBLE_EQ(ui().zoom(), 0.5);
  EXPECT_NEAR(item("headerBar")->height(), headerAtActualSize * 0.5, 0.01);

  // Both keys zoom in: Ctrl+= and Ctrl++.
  key(Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(ui().zoom(), 0.6);
  key(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(ui().zoom(), 0.7);

  click("zoomPercentButton");
  QObject* levels = find("zoomMenu");
  ASSERT_TRUE(waitUntil([&] { return levels->property("opened").toBool(); }, 3000));
  saveShot("menu-zoom-levels");
  click("zoomLevel75");
  EXPECT_DOUBLE_EQ(ui().zoom(), 0.8);
  EXPECT_EQ(text("zoomPercentText"), "80%");
  EXPECT_TRUE(waitUntil([&] { return !levels->property("visible").toBool(); }, 3000));
  EXPECT_TRUE(property("zoomLevel100", "marked").toBool() == false);
  click("zoomPercentButton");
  ASSERT_TRUE(waitUntil([&] { return levels->property("opened").toBool(); }, 3000));
  click("zoomLevel250");
  EXPECT_EQ(text("zoomPercentText"), "250%");
  EXPECT_TRUE(property("zoomLevel250", "marked").toBool());
}

TEST_F(FrameTest, ThemeMenuSwitchesTheThemeAndMarksIt) {
  ui().setTheme(ThemeID::obsidian);
  QObject* view = openMenu("viewMenu", "View");
  ASSERT_NE(view, nullptr);
  QObject* themes = find("themeMenu");
  click(entry(view, "Theme"));
  ASSERT_TRUE(waitUntil([&] { return themes->property("opened").toBool(); }, 3000));
  saveShot("menu-view-theme");
  EXPECT_TRUE(property("themeItem0", "marked").toBool());
  EXPECT_EQ(text("themeItem2"), "Solar Flare");
  click("themeItem2");
  EXPECT_EQ(ui().theme(), ThemeID::solar);
  EXPECT_TRUE(property("themeItem2", "marked").toBool());
  EXPECT_FALSE(property("themeItem0", "marked").toBool());
  EXPECT_TRUE(waitUntil([&] { return !view->property("visible").toBool(); }, 3000));
  // The whole window follows: the header's title takes the new theme's text colour.
  EXPECT_EQ(property("headerTitle", "color").value<QColor>(), palette(ThemeID::solar).text);
  ui().setTheme(ThemeID::obsidian);
}

TEST_F(FrameTest, QuickSearchReturnShowsTheSearchScreenAndRunsIt) {
  const int trigger = model().searchTrigger();
  click("quickSearchField");
  type("holiday 2019");
  EXPECT_TRUE(shown("quickSearchClear")->isVisible());
  EXPECT_EQ(model().section(), AppSection::browse);  // Typing alone searches nothing.
  key(Qt::Key_Return);
  EXPECT_EQ(model().section(), AppSection::search);
  // The search screen takes the quick text over into its field.
  EXPECT_TRUE(waitUntil([] { return SearchState::shared().text() == "holiday 2019"; }));
  EXPECT_EQ(model().quickSearchText(), "");
  EXPECT_EQ(model().searchTrigger(), trigger + 1);
  EXPECT_EQ(text("headerTitle"), "Search");
  EXPECT_EQ(text("headerSubtitle"), "Search every cartridge at once");

  click("quickSearchClear");
  EXPECT_EQ(text("quickSearchField"), "");
  EXPECT_FALSE(item("quickSearchClear")->isVisible());
  type("raw");
  key(Qt::Key_Enter);
  EXPECT_TRUE(waitUntil([] { return SearchState::shared().text() == "raw"; }));
  EXPECT_EQ(model().searchTrigger(), trigger + 2);

  // Find Files (Ctrl+F) shows the screen and runs what it holds, from anywhere.
  model().setSection(AppSection::stats);
  key(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(model().section(), AppSection::search);
  EXPECT_EQ(model().searchTrigger(), trigger + 3);
}

TEST_F(FrameTest, AlertIconFollowsTheTitleAndASecondAlertReplacesTheFirst) {
  model().show("Drive Offline", "Insert the drive to open this item.");
  shown("alertPanel");
  EXPECT_EQ(property("alertIcon", "symbol").toString(), "externaldrive.badge.exclamationmark");
  EXPECT_EQ(text("alertTitle"), "Drive Offline");
  EXPECT_EQ(text("alertMessage"), "Insert the drive to open this item.");

  model().show("Export Failed", "The disk is full.");
  EXPECT_EQ(property("alertIcon", "symbol").toString(), "exclamationmark.triangle.fill");
  EXPECT_EQ(text("alertTitle"), "Export Failed");
  EXPECT_EQ(text("alertMessage"), "The disk is full.");
  model().show("Cartridge is OFFLINE now", "");
  EXPECT_EQ(property("alertIcon", "symbol").toString(), "externaldrive.badge.exclamationmark");

  // The layer takes the clicks: the header's button behind it does nothing.
  click(item("headerCatalogButton"));
  EXPECT_FALSE(model().newCatalogSheet());
  EXPECT_TRUE(model().hasAlert());

  click("alertOKButton");
  EXPECT_FALSE(model().hasAlert());
  EXPECT_FALSE(item("alertLayer")->isVisible());

  // Return and Escape acknowledge it as well.
  model().show("Import Failed", "Unreadable.");
  shown("alertPanel");
  key(Qt::Key_Return);
  EXPECT_FALSE(model().hasAlert());
  model().show("Import Failed", "Unreadable.");
  shown("alertPanel");
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().hasAlert());
}

TEST_F(FrameTest, StatusLineCountsCartridgesAndFollowsAScan) {
  EXPECT_EQ(text("statusText"), "0 cartridges · 0 online · 0 files · 0 bytes cataloged");
  EXPECT_FALSE(property("statusLED", "pulsing").toBool());

  TempDir dir;
  startScan(dir, "Field Notes");
  EXPECT_EQ(text("statusText"), "Preparing “Field Notes” — 0 items");
  EXPECT_TRUE(property("statusLED", "pulsing").toBool());
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning(); }));

  EXPECT_EQ(text("statusText"), "1 cartridge · 1 online · 3 files · 6 KB cataloged");
  EXPECT_FALSE(property("statusLED", "pulsing").toBool());
  model().dismissScanResult();

  model().loadSampleData();
  const QString totals = text("statusText");
  EXPECT_TRUE(totals.startsWith("5 cartridges · 1 online · ")) << totals.toStdString();
}

TEST_F(FrameTest, MenuItemsFollowTheSelectionAndTheScan) {
  const QStringList needSelection = {"rescanAction",    "revealAction",     "renameAction",
                                     "watchAction",     "claudeAction",     "deleteAction",
                                     "exportCSVAction", "exportJSONAction", "exportWebAction"};
  ASSERT_FALSE(model().selectedCatalog());
  for (const QString& name : needSelection) EXPECT_FALSE(enabled(name)) << name.toStdString();
  EXPECT_FALSE(enabled("pauseAction"));
  EXPECT_FALSE(enabled("cancelScanAction"));
  EXPECT_TRUE(enabled("newCatalogAction"));
  EXPECT_TRUE(enabled("planAction"));

  // What a user sees in the open menu agrees.
  QObject* catalogMenu = openMenu("catalogMenu", "Catalog");
  ASSERT_NE(catalogMenu, nullptr);
  EXPECT_FALSE(entry(catalogMenu, "Update Catalog (Rescan)")->isEnabled());
  EXPECT_FALSE(entry(catalogMenu, "Delete Catalog…")->isEnabled());
  EXPECT_TRUE(entry(catalogMenu, "Rename Assistant")->isEnabled());
  saveShot("menu-catalog-nothing-selected");
  key(Qt::Key_Escape);

  model().loadSampleData();
  ASSERT_TRUE(model().selectedCatalog());
  for (const QString& name : needSelection) EXPECT_TRUE(enabled(name)) << name.toStdString();
  EXPECT_EQ(text("watchAction"), "Auto-Update When Files Change");
  catalogMenu = openMenu("catalogMenu", "Catalog");
  ASSERT_NE(catalogMenu, nullptr);
  EXPECT_TRUE(entry(catalogMenu, "Update Catalog (Rescan)")->isEnabled());
  EXPECT_TRUE(entry(catalogMenu, "Delete Catalog…")->isEnabled());
  EXPECT_FALSE(entry(catalogMenu, "Cancel Scan")->isEnabled());
  saveShot("menu-catalog-selected");
  key(Qt::Key_Escape);
  EXPECT_TRUE(waitUntil([&] { return !catalogMenu->property("visible").toBool(); }, 3000));
  EXPECT_FALSE(enabled("pauseAction"));

  TempDir dir;
  startScan(dir, "Scratch");
  EXPECT_FALSE(enabled("rescanAction"));
  EXPECT_TRUE(enabled("pauseAction"));
  EXPECT_TRUE(enabled("cancelScanAction"));
  EXPECT_FALSE(enabled("headerCatalogButton"));
  EXPECT_EQ(text("pauseAction"), "Pause Scan");
  model().scanner()->togglePause();
  EXPECT_EQ(text("pauseAction"), "Resume Scan");
  // The status line tells of the pause, too.
  EXPECT_TRUE(text("statusText").startsWith("Paused “Scratch” — ")) << text("statusText").toStdString();
  key(Qt::Key_Period, Qt::ControlModifier);  // Cancel Scan.
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning(); }));
  EXPECT_FALSE(enabled("pauseAction"));
  EXPECT_FALSE(enabled("cancelScanAction"));
  EXPECT_TRUE(enabled("headerCatalogButton"));
}

TEST_F(FrameTest, MenusAndShortcutsOpenTheScreensAndPanes) {
  key(Qt::Key_3, Qt::ControlModifier);
  EXPECT_EQ(model().section(), AppSection::duplicates);
  key(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(model().section(), AppSection::web);
  key(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(model().section(), AppSection::duplicates);

  QObject* catalogMenu = openMenu("catalogMenu", "Catalog");
  ASSERT_NE(catalogMenu, nullptr);
  QObject* reports = find("reportsMenu");
  click(entry(catalogMenu, "Reports"));
  ASSERT_TRUE(waitUntil([&] { return reports->property("opened").toBool(); }, 3000));
  saveShot("menu-catalog-reports");
  click(entry(reports, "Compare Two Catalogs"));
  EXPECT_EQ(model().section(), AppSection::tools);
  EXPECT_EQ(model().toolTab(), ToolTab::compare);

  // Only the current screen shows, whether it is built or still a placeholder.
  for (int i = 0; i < 6; ++i) {
    key(Qt::Key(Qt::Key_1 + i), Qt::ControlModifier);
    EXPECT_EQ(static_cast<int>(model().section()), i);
    static const char* const files[] = {"BrowseView", "SearchView",    "DuplicatesView",
                                        "StatsView",  "WebExportView", "ToolsView"};
    for (int j = 0; j < 6; ++j) {
      EXPECT_EQ(item(QStringLiteral("screen_") + files[j])->isVisible(), i == j) << i << " " << j;
    }
  }
}

TEST_F(FrameTest, SheetsComeWithTheirShortcutAndGoWithEscape) {
  key(Qt::Key_N, Qt::ControlModifier);
  EXPECT_TRUE(model().newCatalogSheet());
  shown("newCatalogLayer");
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().newCatalogSheet());
  EXPECT_FALSE(item("newCatalogLayer")->isVisible());

  // No new sheet while a scan runs; the result sheet that ends it goes with Escape too.
  model().loadSampleData();
  model().setSection(AppSection::stats);
  TempDir dir;
  startScan(dir, "Busy");
  EXPECT_FALSE(enabled("headerCatalogButton"));
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning(); }));
  shown("scanResultLayer");
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().scanResult().has_value());
}

TEST_F(FrameTest, EditMenuCutsCopiesAndPastesInTheFocusedField) {
  click("quickSearchField");
  type("mixtapes");
  QObject* edit = openMenu("editMenu", "Edit");
  ASSERT_NE(edit, nullptr);
  EXPECT_FALSE(entry(edit, "Copy")->isEnabled());  // Nothing selected yet.
  click(entry(edit, "Select All"));
  edit = openMenu("editMenu", "Edit");
  click(entry(edit, "Cut"));
  EXPECT_EQ(text("quickSearchField"), "");
  edit = openMenu("editMenu", "Edit");
  ASSERT_TRUE(entry(edit, "Paste")->isEnabled());
  click(entry(edit, "Paste"));
  EXPECT_EQ(text("quickSearchField"), "mixtapes");

  // Away from a text field the items have nothing to act on.
  item("quickSearchField")->setFocus(false);
  window()->contentItem()->forceActiveFocus();
  edit = openMenu("editMenu", "Edit");
  EXPECT_FALSE(entry(edit, "Paste")->isEnabled());
  EXPECT_FALSE(entry(edit, "Select All")->isEnabled());
  key(Qt::Key_Escape);
}

TEST_F(FrameTest, ToastSlidesInWithTheLatestTextAndLeavesWhenItEnds) {
  TestTiming::setTimeScaleForTesting(0.25);  // A toast of 0.7 seconds.
  EXPECT_FALSE(item("toast")->isVisible());
  model().flash("Backup saved");
  shown("toast");
  EXPECT_EQ(text("toastText"), "Backup saved");
  model().flash("Catalog renamed");
  EXPECT_EQ(text("toastText"), "Catalog renamed");
  // It keeps its text on the way out, then is gone.
  ASSERT_TRUE(waitUntil([&] { return model().toast() == std::nullopt; }, 5000));
  EXPECT_EQ(text("toastText"), "Catalog renamed");
  EXPECT_TRUE(waitUntil([&] { return !item("toast")->isVisible(); }, 3000));
  TestTiming::setTimeScaleForTesting(1);
}

// At the highest zoom the largest sheet, a long alert and a long toast still fit in the window, so
// every button stays in reach.
TEST_F(FrameTest, SheetsAlertsAndToastsFitTheWindowAtAnyZoom) {
  ui().setZoom(2.5);
  model().setNewCatalogSheet(true);
  shown("newCatalogLayer");
  QQuickItem* sheet = qvariant_cast<QQuickItem*>(property("newCatalogLayer", "content"));
  ASSERT_NE(sheet, nullptr);
  ASSERT_TRUE(waitUntil([&] { return sheet->height() > 0; }, 3000));
  spin(300);  // The opening animation.
  EXPECT_TRUE(insideWindow(sheet)) << sheet->width() << "x" << sheet->height();
  saveShot("sheet-new-catalog-zoom-250");
  // At actual size nothing is made smaller.
  ui().setZoom(1.0);
  EXPECT_TRUE(waitUntil([&] { return item("newCatalogLayer")->property("fit").toDouble() == 1.0; }, 3000));
  key(Qt::Key_Escape);
  EXPECT_FALSE(model().newCatalogSheet());

  // A long message scrolls inside the alert; a title of one long word breaks rather than spill out.
  ui().setZoom(2.5);
  QStringList failures;
  for (int i = 1; i <= 120; ++i) failures << QStringLiteral("“Take %1.wav” could not be read.").arg(i);
  const QString longName = QString(60, QChar('W'));
  model().show(longName, failures.join('\n'));
  QQuickItem* panel = shown("alertPanel");
  spin(300);
  EXPECT_TRUE(insideWindow(panel));
  EXPECT_TRUE(insideWindow(item("alertOKButton")));
  EXPECT_TRUE(property("alertMessageScroll", "interactive").toBool());
  QQuickItem* title = item("alertTitle");
  EXPECT_LE(title->property("contentWidth").toDouble(), title->width() + 0.5);
  saveShot("alert-long-zoom-250");
  click("alertOKButton");
  EXPECT_FALSE(model().hasAlert());
  // A short one does not scroll.
  model().show("Export Failed", "The disk is full.");
  shown("alertPanel");
  EXPECT_FALSE(property("alertMessageScroll", "interactive").toBool());
  key(Qt::Key_Return);
  EXPECT_FALSE(model().hasAlert());

  model().flash(QStringLiteral("Renamed to “%1 🎛️ أرشيف الاستوديو”")
                    .arg(QString(60, QChar('M'))));
  QQuickItem* toast = shown("toast");
  spin(400);
  EXPECT_TRUE(insideWindow(toast)) << toast->width();
  saveShot("toast-long-zoom-250");
}

// Records the addresses the program hands to the desktop, instead of opening them.
class UrlRecorder : public QObject {
  Q_OBJECT
 public:
  QList<QUrl> opened;
 public slots:
  void open(const QUrl& url) { opened.append(url); }
};

TEST_F(FrameTest, KeysInAFieldStayThereAndTheHelpKeysOpenTheGuide) {
  model().loadSampleData();
  ASSERT_TRUE(model().selectedCatalog());
  int asked = 0;
  Dialogs::setAnswerer([&](const Dialogs::Request&) {
    ++asked;
    return Dialogs::Answer::cancel();
  });
  click("quickSearchField");
  type("old mixes");
  // Ctrl+Backspace deletes a word in the field; it must not ask to delete the selected catalog.
  key(Qt::Key_Backspace, Qt::ControlModifier);
  EXPECT_EQ(text("quickSearchField"), "old ");
  EXPECT_EQ(asked, 0);
  // The open menu still offers it.
  QObject* catalogMenu = openMenu("catalogMenu", "Catalog");
  ASSERT_NE(catalogMenu, nullptr);
  EXPECT_TRUE(entry(catalogMenu, "Delete Catalog…")->isEnabled());
  key(Qt::Key_Escape);
  ASSERT_TRUE(waitUntil([&] { return !catalogMenu->property("visible").toBool(); }, 3000));
  // Away from the field it is the menu's Delete Catalog.
  item("quickSearchField")->setFocus(false);
  window()->contentItem()->forceActiveFocus();
  ASSERT_FALSE(window()->activeFocusItem() &&
               window()->activeFocusItem()->objectName() == "quickSearchField");
  key(Qt::Key_Backspace, Qt::ControlModifier);
  EXPECT_EQ(asked, 1);
  Dialogs::setAnswerer({});

  UrlRecorder recorder;
  QDesktopServices::setUrlHandler("file", &recorder, "open");
  key(Qt::Key_Question, Qt::ControlModifier);
  EXPECT_EQ(recorder.opened.size(), 1);
  key(Qt::Key_F1);
  EXPECT_EQ(recorder.opened.size(), 2);
  QDesktopServices::unsetUrlHandler("file");
  for (const QUrl& url : recorder.opened)
    EXPECT_TRUE(url.toLocalFile().endsWith("/Help.html")) << url.toString().toStdString();
}

}  // namespace
}  // namespace orrelin::testing

#include "frame_test.moc"
