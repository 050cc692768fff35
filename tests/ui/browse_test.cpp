// The Browse screen as a user meets it in the real window: its three states, clicking through columns and
// back by the breadcrumbs, the filter field, the list with its sortable header and keyboard, the hidden
// files switch, the keys that move between columns, a hit of another cartridge shown at its place, and a
// large folder that makes only the rows on screen.
#include <QDesktopServices>
#include <QQuickItem>
#include <QUrl>

#include <filesystem>
#include <string>
#include <vector>

#include "browse_support.h"
#include "core/user_defaults.h"
#include "store/fmt.h"
#include "ui/catalog_browser.h"
#include "ui_fixture.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class OpenedUrls : public QObject {
  Q_OBJECT

 public:
  OpenedUrls() { QDesktopServices::setUrlHandler("file", this, "open"); }
  ~OpenedUrls() override { QDesktopServices::unsetUrlHandler("file"); }
  std::vector<QUrl> urls;

 public slots:
  void open(const QUrl& url) { urls.push_back(url); }
};

class BrowseTest : public MainWindowTest {
 protected:
  void SetUp() override {
    UserDefaults::remove("browseMode");
    MainWindowTest::SetUp();
    emptyLibrary(model());
    model().setSection(AppSection::browse);
    ui().setZoom(1.0);
  }
  void TearDown() override {
    emptyLibrary(model());
    MainWindowTest::TearDown();
  }

  // The browser of the screen; null while none is shown. One let go (by leaving the screen) is deleted
  // first, so it is not found in place of the new one.
  CatalogBrowser* browser() {
    flushDeletes();
    return qobject_cast<CatalogBrowser*>(find("catalogBrowser"));
  }
  std::vector<std::string> pathNames() {
    std::vector<std::string> list;
    for (const FileRecord& f : browser()->path()) list.push_back(f.name);
    return list;
  }
  // Deletes what the screens let go of. The tests spin the event loop without running it, so objects
  // left for deletion (a sheet put away, with its Return shortcut) would otherwise live on.
  static void flushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
  // Waits for a frame, so that what changed has been laid out before the next click.
  void settle() {
    flushDeletes();
    bool drawn = false;
    auto connection = QObject::connect(window(), &QQuickWindow::frameSwapped, [&] { drawn = true; });
    window()->update();
    waitUntil([&] { return drawn; }, 2000);
    QObject::disconnect(connection);
  }
  void clickRow(const QString& name, Qt::MouseButton button = Qt::LeftButton) {
    settle();
    click(shown(name), button);
  }
  void doubleClick(const QString& name) {
    settle();
    QQuickItem* target = shown(name);
    ASSERT_NE(target, nullptr);
    const QPoint middle = target->mapToScene({target->width() / 2, target->height() / 2}).toPoint();
    QTest::mouseDClick(window(), Qt::LeftButton, Qt::NoModifier, middle);
    QCoreApplication::processEvents();
  }
  // Scans a new browse tree and shows it.
  Catalog browseTree(TempDir& dir, const QString& name = "Tree") {
    makeBrowseTree(dir.path());
    const Catalog c = scanFolder(model(), dir.path(), name);
    flushDeletes();
    model().setSelectedCatalogID(c.id);
    EXPECT_TRUE(waitUntil([&] { return browser() && browser()->catalogID() == c.id; }));
    return c;
  }
};

TEST_F(BrowseTest, TheScreenShowsTheStartTheChoiceOrTheBrowser) {
  QQuickItem* start = shown("browseEmptyLibrary");
  ASSERT_NE(start, nullptr);
  EXPECT_EQ(findNamed(start, "emptyStateTitle")->property("text").toString(),
            "Your drive library starts here");
  EXPECT_TRUE(
      findNamed(start, "emptyStateMessage")->property("text").toString().startsWith("Catalog an external"));
  click(qobject_cast<QQuickItem*>(findNamed(start, "emptyStateCatalogButton")));
  EXPECT_TRUE(model().newCatalogSheet());
  model().setNewCatalogSheet(false);

  TempDir dir;
  browseTree(dir);
  EXPECT_FALSE(start->isVisible());
  shown("fileView");
  model().setSelectedCatalogID(std::nullopt);
  QQuickItem* choose = shown("browseChooseCartridge");
  ASSERT_NE(choose, nullptr);
  EXPECT_EQ(findNamed(choose, "emptyStateTitle")->property("text").toString(), "Choose a cartridge");
  EXPECT_FALSE(findNamed(choose, "emptyStateCatalogButton")->property("visible").toBool());
  flushDeletes();
  EXPECT_EQ(browser(), nullptr);
}

TEST_F(BrowseTest, ClicksWalkTheColumnsAndTheCrumbsLeadBack) {
  TempDir dir;
  browseTree(dir);
  clickRow("row:0:Docs");
  clickRow("row:1:Reports");
  clickRow("row:2:q1.txt");
  EXPECT_EQ(pathNames(), (std::vector<std::string>{"Docs", "Reports"}));
  EXPECT_EQ(item("fileInspector")->property("file").toMap().value("name").toString(), "q1.txt");
  EXPECT_EQ(shown("crumb2")->property("text").toString(), "Reports");
  EXPECT_EQ(shown("crumb0")->property("text").toString(), "Tree");

  clickRow("crumb1");
  EXPECT_EQ(pathNames(), std::vector<std::string>{"Docs"});
  EXPECT_TRUE(waitUntil([&] { return item("crumb2") == nullptr; }, 2000));
  clickRow("crumb0");
  EXPECT_TRUE(pathNames().empty());
  EXPECT_TRUE(item("fileInspector")->property("file").toMap().isEmpty());

  // The filter field narrows the open folder.
  clickRow("row:0:Photos");
  click("browseFilter");
  type("nice");
  EXPECT_EQ(browser()->filter(), "nice");
  EXPECT_EQ(browser()->columns()->column(1)->count(), 1);
  type("zzz");  // Nothing matches: the column says so as an empty one does.
  EXPECT_EQ(shown("emptyColumn1")->property("text").toString(), "Empty folder");
  click("browseFilterClear");
  EXPECT_TRUE(browser()->filter().isEmpty());
  clickRow("row:0:Empty");
  EXPECT_TRUE(shown("emptyColumn1")->isVisible());
  EXPECT_EQ(item("emptyColumn1")->property("text").toString(), "Empty folder");

  // A double click opens a file; the right button gives the file's menu.
  OpenedUrls opened;
  doubleClick("row:0:notes.txt");
  ASSERT_EQ(opened.urls.size(), 1u);
  EXPECT_EQ(fs::path(opened.urls[0].toLocalFile().toStdString()), dir.path() / "notes.txt");
  clickRow("row:0:archive.zip", Qt::RightButton);
  QObject* menu = find("browserFileMenu");
  ASSERT_NE(menu, nullptr);
  EXPECT_TRUE(waitUntil([&] { return menu->property("visible").toBool(); }, 2000));
  EXPECT_EQ(menu->property("fileID").toLongLong(),
            recordAt(model(), model().catalogs()[0], "archive.zip").id);
  key(Qt::Key_Escape);
}

TEST_F(BrowseTest, TheListSortsByItsHeaderAndOpensByKeyboard) {
  TempDir dir;
  browseTree(dir);
  click("browseMode_List");
  EXPECT_EQ(browser()->mode(), BrowseMode::list);
  EXPECT_EQ(UserDefaults::string("browseMode"), std::optional<std::string>("List"));
  shown("folderTable");

  clickRow("folderHeader_Size");
  EXPECT_EQ(browser()->sortKey(), "size");
  EXPECT_EQ(browser()->list()->record(0)->name, "Empty");
  // A folder's size carries its item count, even when there are none; a file's stands alone.
  const auto sizeCell = [&](const QString& row) {
    QObject* cell = findNamed(shown(row), "cell_size");
    return cell ? cell->property("text").toString() : QString("<none>");
  };
  EXPECT_EQ(sizeCell("tableRow:Empty"), QString::fromStdString(Fmt::size(0)) + " · 0 items");
  EXPECT_EQ(sizeCell("tableRow:Docs"), QString::fromStdString(Fmt::size(3035)) + " · 2 items");
  EXPECT_EQ(sizeCell("tableRow:notes.txt"), QString::fromStdString(Fmt::size(40)));

  clickRow("tableRow:Docs");
  EXPECT_EQ(browser()->selectedID(), recordAt(model(), model().catalogs()[0], "Docs").id);
  key(Qt::Key_Return);
  EXPECT_EQ(pathNames(), std::vector<std::string>{"Docs"});
  EXPECT_EQ(browser()->tableSelection(), std::nullopt);
  // Down selects the first row (the smallest: Reports, 35 bytes); Down again the letter, Return opens it.
  key(Qt::Key_Down);
  EXPECT_EQ(browser()->selected()->name, "Reports");
  key(Qt::Key_Down);
  EXPECT_EQ(browser()->selected()->name, "letter.txt");
  OpenedUrls opened;
  key(Qt::Key_Return);
  ASSERT_EQ(opened.urls.size(), 1u);
  EXPECT_EQ(fs::path(opened.urls[0].toLocalFile().toStdString()), dir.path() / "Docs" / "letter.txt");

  // Back to columns, remembered too.
  click("browseMode_Columns");
  EXPECT_EQ(UserDefaults::string("browseMode"), std::optional<std::string>("Columns"));
  shown("row:1:letter.txt");
}

TEST_F(BrowseTest, TheHiddenSwitchAndTheArrowKeys) {
  TempDir dir;
  browseTree(dir);
  shown("row:0:.secret");
  click("hiddenFilesSwitch");
  EXPECT_FALSE(browser()->showHidden());
  EXPECT_TRUE(waitUntil([&] { return item("row:0:.secret") == nullptr; }, 2000));

  clickRow("row:0:Docs");
  key(Qt::Key_Right);  // Into the next column, on its first row.
  EXPECT_EQ(pathNames(), (std::vector<std::string>{"Docs", "Reports"}));
  key(Qt::Key_Down);
  EXPECT_EQ(browser()->selected()->name, "letter.txt");
  EXPECT_EQ(pathNames(), std::vector<std::string>{"Docs"});
  key(Qt::Key_Up);
  key(Qt::Key_Right);
  key(Qt::Key_Down);
  EXPECT_EQ(browser()->selected()->name, "Q2 summary.txt");
  key(Qt::Key_Left);
  EXPECT_EQ(browser()->selected()->name, "Reports");
  key(Qt::Key_Left);
  EXPECT_EQ(browser()->selected()->name, "Docs");
  key(Qt::Key_Down);
  EXPECT_EQ(browser()->selected()->name, "Empty");
  EXPECT_EQ(pathNames(), std::vector<std::string>{"Empty"});
}

TEST_F(BrowseTest, LeavingTheScreenForgetsThePathButNotTheMode) {
  TempDir dir;
  browseTree(dir);
  clickRow("row:0:Docs");
  clickRow("row:1:Reports");
  click("browseMode_List");
  model().setSection(AppSection::search);
  settle();
  model().setSection(AppSection::browse);
  ASSERT_TRUE(waitUntil([&] { return browser() != nullptr; }));
  EXPECT_TRUE(pathNames().empty());
  EXPECT_FALSE(browser()->selected().has_value());
  EXPECT_EQ(browser()->mode(), BrowseMode::list);
}

// At a large zoom the file view keeps most of the window: the bar takes two rows, the list drops columns
// rather than scrolling sideways, the drive's facts fold into a line, a long trail gives way at its start.
TEST_F(BrowseTest, ALargeZoomKeepsTheFileViewRoomy) {
  TempDir dir;
  const fs::path deep = dir.path() / "A rather long folder name" / "Another long folder name" / "Third level" /
                        "Fourth level of folders" / "Fifth";
  writeFile(deep / "song.mp3", "m");
  // The zoom is set before the screen is built: Qt 6.4's layouts can crash while a live zoom change
  // re-arranges the browser, a fault still open, which is not what this test is about.
  ui().setZoom(1.75);
  settle();
  const Catalog c = browseTree(dir, "A cartridge with a long name for its drive");
  settle();

  // The facts, folded: the summary line and, opened, every fact beside its label.
  QQuickItem* panel = shown("driveInfoPanel");
  EXPECT_FALSE(item("driveFact:Volume")->isVisible());
  EXPECT_FALSE(item("driveFactInline:Volume")->isVisible());
  EXPECT_EQ(shown("driveFactsSummary")->property("text").toString(),
            QString::fromStdString(Fmt::count(c.fileCount) + " files, " + Fmt::count(c.folderCount) +
                                   " folders \u00B7 " + Fmt::size(c.totalSize)));
  // The buttons stay inside the panel whatever the name's length.
  for (const char* name : {"driveUpdateButton", "driveMoreButton"}) {
    QQuickItem* button = shown(name);
    EXPECT_LE(button->mapToItem(panel, {button->width(), 0}).x(), panel->width()) << name;
  }
  QQuickItem* fileView = shown("fileView");
  EXPECT_GT(fileView->height(), 0.55 * window()->height());
  click("driveFactsToggle");
  EXPECT_EQ(findNamed(shown("driveFactInline:Type"), "value")->property("text").toString(), "Folder");
  click("driveFactsToggle");
  EXPECT_FALSE(item("driveFactInline:Type")->isVisible());

  // Two rows in the bar; the list fits its width by leaving out the tags, the kind and the date.
  QQuickItem* crumbs = shown("breadcrumbs");
  QQuickItem* filter = shown("browseFilter");
  EXPECT_GE(filter->mapToItem(crumbs, {0, 0}).y(), crumbs->height());
  EXPECT_LT(filter->mapToItem(crumbs, {0, 0}).y(), 2.5 * crumbs->height());
  click("browseMode_List");
  settle();
  QQuickItem* list = shown("folderList");
  EXPECT_LE(list->property("contentWidth").toDouble(), list->width() + 0.5);
  EXPECT_TRUE(shown("folderHeader_Size")->isVisible());
  EXPECT_FALSE(item("folderHeader_Tags")->isVisible());

  // A long trail shows its end; the ellipsis offers the crumbs cut off.
  model().browseTo(recordAt(model(), c, "A rather long folder name/Another long folder name/Third level/"
                                        "Fourth level of folders/Fifth/song.mp3"));
  settle();
  QQuickItem* last = shown("crumb5");
  EXPECT_LE(last->mapToItem(crumbs, {last->width(), 0}).x(), crumbs->width() + 0.5);
  click("crumbsMore");
  ASSERT_TRUE(waitUntil([&] { return find("crumbsMoreMenu")->property("opened").toBool(); }, 2000));
  settle();
  click(shown("crumbsMore1"));
  EXPECT_EQ(pathNames(), std::vector<std::string>{"A rather long folder name"});
  ui().setZoom(1.0);
}

TEST_F(BrowseTest, AHitOfAnotherCartridgeSwitchesTheCartridgeAndOpensAtItsPlace) {
  TempDir dir, other;
  const Catalog tree = browseTree(dir);
  writeFile(other.path() / "Music" / "Live" / "set.flac", "f");
  const Catalog music = scanFolder(model(), other.path(), "Music Drive");
  flushDeletes();
  model().setSelectedCatalogID(tree.id);
  model().setSection(AppSection::search);

  model().browseToFile(recordAt(model(), music, "Music/Live/set.flac").id);
  EXPECT_EQ(model().section(), AppSection::browse);
  ASSERT_TRUE(waitUntil([&] { return browser() && browser()->catalogID() == music.id; }));
  EXPECT_EQ(pathNames(), (std::vector<std::string>{"Music", "Live"}));
  EXPECT_FALSE(model().pendingRevealFile().has_value());
  EXPECT_TRUE(shown("row:2:set.flac")->property("selected").toBool());
  EXPECT_EQ(shown("crumb0")->property("text").toString(), "Music Drive");
}

TEST_F(BrowseTest, ALargeFolderMakesOnlyTheRowsOnScreen) {
  TempDir dir;
  for (int i = 0; i < 3000; ++i) writeFile(dir.path() / "Many" / ("file " + std::to_string(i) + ".txt"), "");
  const Catalog c = scanFolder(model(), dir.path(), "Many");
  flushDeletes();
  model().setSelectedCatalogID(c.id);
  ASSERT_TRUE(waitUntil([&] { return browser() != nullptr; }));
  model().browseTo(recordAt(model(), c, "Many/file 2999.txt"));
  EXPECT_TRUE(shown("row:1:file 2999.txt")->property("selected").toBool()) << "scrolled to the revealed row";

  const auto madeRows = [&] {
    int n = 0;
    const std::function<void(QQuickItem*)> walk = [&](QQuickItem* i) {
      if (i->objectName().startsWith("row:1:") || i->objectName().startsWith("tableRow:")) ++n;
      for (QQuickItem* child : i->childItems()) walk(child);
    };
    walk(window()->contentItem());
    return n;
  };
  EXPECT_GT(madeRows(), 10);
  EXPECT_LT(madeRows(), 200);
  click("browseMode_List");
  settle();
  EXPECT_EQ(browser()->list()->count(), 3000);
  EXPECT_LT(madeRows(), 200);
}

}  // namespace
}  // namespace orrelin::testing

#include "browse_test.moc"
