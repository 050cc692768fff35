// The Search screen driven as a user drives it, over a real folder scanned into the test's database:
// typing and Return, the result line, sorting, a failing pattern, the busy line over the old rows, the
// header's quick search, the filters, the export and the jump to the browser.
#include <QRegularExpression>

#include <mutex>

#include "app/qt/dialogs.h"
#include "analysis_screens_support.h"
#include "search/qt/search_state.h"
#include "store/catalog_db.h"
#include "store/sqlite_db.h"
#include "ui/catalog_browser.h"
#include "ui/hits_model.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class SearchScreenTest : public MainWindowTest {
 protected:
  static void SetUpTestSuite() {
    s_tree = new TempDir();
    const fs::path root = s_tree->path();
    writeFile(root / "docs/qvw alpha.txt", std::string(10, 'a'));
    writeFile(root / "docs/qvw beta.txt", std::string(3000, 'b'));
    writeFile(root / "media/qvw Gamma.txt", std::string(200, 'c'));
    writeFile(root / "qvw folder/other.txt", "o");
    writeFile(root / "50%_off [sale].txt", "p");
  }
  static void TearDownTestSuite() {
    delete s_tree;
    s_tree = nullptr;
  }

  void SetUp() override {
    // Scanned before the window opens, so that no result sheet is on its way out over the screen.
    if (s_catalogID == 0 || !model().catalog(s_catalogID)) s_catalogID = scanCatalog(s_tree->path(), "Qvw Drive");
    MainWindowTest::SetUp();
    ASSERT_GT(s_catalogID, 0);
    SearchState& state = SearchState::shared();
    state.resetFilters();
    state.setText("");
    model().setSection(AppSection::search);
    shown("searchView");
  }
  void TearDown() override {
    Dialogs::setAnswerer({});
    model().dismissAlert();
    SearchState::shared().resetFilters();
    MainWindowTest::TearDown();
  }

  QString text(const QString& name) const {
    QObject* found = find(name);
    return found ? found->property("text").toString() : QStringLiteral("<no %1>").arg(name);
  }
  HitsModel* rows() const { return qvariant_cast<HitsModel*>(find("searchResults")->property("model")); }
  // The names of the rows as shown, joined by "|".
  std::string names() const {
    QStringList out;
    for (int row = 0; row < rows()->count(); ++row) out << rows()->hitAt(row).value("name").toString();
    return out.join('|').toStdString();
  }
  // Replaces the field's text by typing, then presses Return and waits for the search to end.
  void search(const QString& typed) {
    click("searchField");
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    type(typed);
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([] { return SearchState::shared().searched() && !SearchState::shared().busy(); }));
    spin(30);
  }

  static inline TempDir* s_tree = nullptr;
  static inline int64_t s_catalogID = 0;
};

TEST_F(SearchScreenTest, TypingAndReturnFillTheTableAndTheResultLine) {
  EXPECT_TRUE(waitUntil([&] { return window()->activeFocusItem() == item("searchField"); }, 3000))
      << "the screen opens with the field focused";
  search("qvw");
  // Three files and the folder, by name; the status line counts them and times the query.
  EXPECT_EQ(names(), "qvw alpha.txt|qvw beta.txt|qvw folder|qvw Gamma.txt");
  EXPECT_TRUE(shown("searchResults")->isVisible());
  EXPECT_TRUE(QRegularExpression("^4 results in \\d+ ms$").match(text("searchStatus")).hasMatch())
      << text("searchStatus").toStdString();

  search("qvw alpha");
  EXPECT_TRUE(QRegularExpression("^1 result in \\d+ ms$").match(text("searchStatus")).hasMatch())
      << text("searchStatus").toStdString();

  // Wildcards of SQL are plain letters here.
  search("50%_off");
  EXPECT_EQ(names(), "50%_off [sale].txt");

  // Nothing found: the table gives way to the note, and there is nothing to export.
  search("qvw nothing like it");
  EXPECT_FALSE(item("searchResults")->isVisible());
  EXPECT_TRUE(shown("searchNoMatches")->isVisible());
  EXPECT_FALSE(item("searchExport")->isVisible());
  EXPECT_TRUE(text("searchStatus").startsWith("0 results in "));
}

TEST_F(SearchScreenTest, HeaderSortsBothWaysAndTheSelectionFollowsItsFile) {
  SearchState::shared().setIncludeFolders(false);
  search("qvw");
  ASSERT_EQ(names(), "qvw alpha.txt|qvw beta.txt|qvw Gamma.txt");

  click("hitsHeader_size");
  EXPECT_EQ(names(), "qvw alpha.txt|qvw Gamma.txt|qvw beta.txt");
  // The user picks the largest file, then sorts the other way: the same file stays selected.
  QQuickItem* list = item("searchResultsList");
  click(listRow(list, 2));
  ASSERT_EQ(rows()->selectedRow(), 2);
  const qint64 beta = rows()->selectedID();
  click("hitsHeader_size");
  EXPECT_FALSE(rows()->ascending());
  EXPECT_EQ(names(), "qvw beta.txt|qvw Gamma.txt|qvw alpha.txt");
  EXPECT_EQ(rows()->selectedID(), beta);
  EXPECT_EQ(rows()->selectedRow(), 0);
  EXPECT_EQ(find("searchResults")->property("currentFileID").toLongLong(), beta);

  // The keyboard walks the rows; the search's own order, which exports use, never changed.
  key(Qt::Key_End);
  EXPECT_EQ(rows()->selectedRow(), 2);
  key(Qt::Key_Up);
  EXPECT_EQ(rows()->selectedRow(), 1);
  EXPECT_EQ(SearchState::shared().hits().front().name(), "qvw alpha.txt");

  // Return shows the selected hit in the browser, at its place.
  key(Qt::Key_Return);
  EXPECT_EQ(model().section(), AppSection::browse);
  EXPECT_EQ(model().selectedCatalogID(), s_catalogID);
  // The browser takes the file and opens its folder with the file selected.
  EXPECT_TRUE(waitUntil([&] {
    auto* browser = qobject_cast<CatalogBrowser*>(find("catalogBrowser"));
    return browser && browser->selected() && browser->selected()->name == "qvw Gamma.txt";
  }));
  EXPECT_FALSE(model().pendingRevealFile().has_value());
}

TEST_F(SearchScreenTest, AFailedPatternShowsItsErrorAndClearsTheTable) {
  search("qvw");
  ASSERT_GT(rows()->count(), 0);
  click("searchMode_3");
  EXPECT_EQ(SearchState::shared().mode(), "Regex");
  EXPECT_EQ(item("searchField")->property("placeholderText").toString(),
            "Regular expression, e.g. ^IMG_\\d{4}\\.(jpg|cr3)$");

  search("qvw (");
  EXPECT_EQ(text("searchStatus"), "Database query error: That regular expression is not valid.");
  EXPECT_EQ(rows()->count(), 0);
  EXPECT_FALSE(item("searchResults")->isVisible());
  EXPECT_FALSE(item("searchNoMatches")->isVisible()) << "an error is not an empty result";

  // A good pattern again, case-insensitive as always.
  search("^QVW (alpha|beta)\\.txt$");
  EXPECT_EQ(names(), "qvw alpha.txt|qvw beta.txt");
  click("searchMode_0");
  EXPECT_EQ(item("searchField")->property("placeholderText").toString(), "Search file names across every catalog");
}

TEST_F(SearchScreenTest, WhileASearchRunsTheOldRowsStayUnderSearching) {
  search("qvw");
  const int before = rows()->count();
  ASSERT_GT(before, 0);
  {
    // The search's worker waits for the connection, which this thread holds, so it stays busy.
    std::unique_lock<std::recursive_mutex> hold(model().store()->db().mutex());
    click("searchField");
    key(Qt::Key_End);
    type(" beta");
    key(Qt::Key_Return);
    spin(50);
    EXPECT_TRUE(SearchState::shared().busy());
    EXPECT_EQ(text("searchStatus"), "Searching…");
    EXPECT_TRUE(shown("searchSpinner")->isVisible());
    EXPECT_TRUE(item("searchResults")->isVisible());
    EXPECT_EQ(rows()->count(), before);
  }
  ASSERT_TRUE(waitUntil([] { return !SearchState::shared().busy(); }));
  EXPECT_EQ(names(), "qvw beta.txt");
  EXPECT_FALSE(item("searchSpinner")->isVisible());
}

TEST_F(SearchScreenTest, TheHeadersQuickSearchLandsInTheFieldAndRuns) {
  model().setSection(AppSection::browse);
  click("quickSearchField");
  type("qvw gamma");
  key(Qt::Key_Return);
  EXPECT_EQ(model().section(), AppSection::search);
  ASSERT_TRUE(waitUntil([] { return !SearchState::shared().busy(); }));
  spin(30);
  EXPECT_EQ(text("searchField"), "qvw gamma");
  EXPECT_EQ(model().quickSearchText(), "") << "the quick text is taken, once";
  EXPECT_EQ(names(), "qvw Gamma.txt");
  EXPECT_EQ(window()->activeFocusItem(), item("searchField"));

  // "Find Files…" (a trigger with no text) only puts the keyboard back in the field.
  click(listRow(item("searchResultsList"), 0));
  ASSERT_NE(window()->activeFocusItem(), item("searchField"));
  model().setSearchTrigger(model().searchTrigger() + 1);
  spin(30);
  EXPECT_EQ(window()->activeFocusItem(), item("searchField"));
  EXPECT_EQ(text("searchField"), "qvw gamma");
}

TEST_F(SearchScreenTest, FilterControlsShapeTheSearchAndResetClearsThem) {
  // Kinds: the label names the choice; "Any Kind" clears it.
  EXPECT_EQ(text("searchKinds"), "Any Kind");
  click("searchKinds");
  click("searchKind_Folder");
  EXPECT_EQ(text("searchKinds"), "Folder");
  search("qvw");
  EXPECT_EQ(names(), "qvw folder");
  click("searchKinds");
  click("searchKind_Other");
  EXPECT_EQ(text("searchKinds"), "Folder, Other");
  click("searchKinds");
  click("searchKindAny");
  EXPECT_EQ(text("searchKinds"), "Any Kind");

  // Sizes: typed in the unit chosen, a comma being a decimal sign.
  click("searchMinSize");
  type("0,1");
  SearchState::shared().setSizeUnit(1000);
  search("qvw");
  EXPECT_EQ(names(), "qvw beta.txt|qvw Gamma.txt") << "the folder holds one byte";

  // Catalogs: the label counts them.
  SearchState::shared().setCatalogIDs({QVariant::fromValue<qint64>(s_catalogID)});
  EXPECT_EQ(text("searchCatalogs"), "1 catalog");

  // Dates: the pickers follow the switch; a typed day reaches the state only while it names a day.
  EXPECT_FALSE(item("searchFrom")->isEnabled());
  click("searchUseDates");
  EXPECT_TRUE(SearchState::shared().useDates());
  EXPECT_TRUE(item("searchFrom")->isEnabled());
  click("searchFromText");
  key(Qt::Key_A, Qt::ControlModifier);
  type("2021-02-30");
  key(Qt::Key_Tab);
  EXPECT_EQ(text("searchFromText"), SearchState::shared().from().toString("yyyy-MM-dd")) << "no such day";
  click("searchFromText");
  key(Qt::Key_A, Qt::ControlModifier);
  type("2021-02-28");
  key(Qt::Key_Return);
  EXPECT_EQ(SearchState::shared().from().date(), QDate(2021, 2, 28));
  key(Qt::Key_Up);
  EXPECT_EQ(SearchState::shared().from().date(), QDate(2021, 3, 1));

  // The files were written today, so a range that ends in 2021 finds none of them.
  SearchState::shared().setTo(QDateTime(QDate(2021, 12, 31), QTime(12, 0)));
  search("qvw");
  EXPECT_EQ(rows()->count(), 0);

  click("searchReset");
  const SearchState& state = SearchState::shared();
  EXPECT_FALSE(state.useDates());
  EXPECT_TRUE(state.catalogIDs().isEmpty());
  EXPECT_EQ(state.minSizeText(), "");
  EXPECT_EQ(text("searchMinSize"), "");
  EXPECT_EQ(text("searchCatalogs"), "All catalogs");
  EXPECT_FALSE(item("searchFrom")->isEnabled());
  EXPECT_EQ(state.text(), "qvw") << "the text stays";
}

TEST_F(SearchScreenTest, ANarrowWindowScrollsTheTableSidewaysHeaderAndRowsTogether) {
  search("qvw");
  QQuickItem* list = item("searchResultsList");
  QQuickItem* header = item("searchResultsHeader");
  ASSERT_TRUE(list && header);
  EXPECT_LE(list->property("contentWidth").toDouble(), list->width() + 0.5) << "wide enough: no sideways scroll";

  ui().setZoom(2.5);
  window()->resize(900, 1120);
  spin(100);
  const double rowWidth = list->property("contentWidth").toDouble();
  EXPECT_GT(rowWidth, list->width() + 1) << "the columns keep their room and the table scrolls instead";
  QQuickItem* row = listRow(list, 0);
  ASSERT_NE(row, nullptr);
  EXPECT_DOUBLE_EQ(row->width(), rowWidth) << "a row runs as far as the header";
  // The fixed columns measure their texts in the zoomed font: "Modified" fits its longest date.
  EXPECT_GE(find("searchResults")->property("dateWidth").toDouble(), 2.5 * 120);
  EXPECT_GE(find("searchResults")->property("nameWidth").toDouble(), 2.5 * 150);

  // Right moves the rows and the header by the same distance.
  QTest::mouseClick(window(), Qt::LeftButton, Qt::NoModifier,
                    row->mapToScene(QPointF(40, row->height() / 2)).toPoint());
  key(Qt::Key_Right);
  key(Qt::Key_Right);
  const double moved = list->property("contentX").toDouble();
  EXPECT_GT(moved, 0);
  EXPECT_DOUBLE_EQ(header->property("contentX").toDouble(), moved);
  for (int i = 0; i < 40; ++i) key(Qt::Key_Right);
  EXPECT_NEAR(list->property("contentX").toDouble() + list->width(), rowWidth, 1.0) << "the path's end is reachable";
  key(Qt::Key_Left);
  EXPECT_LT(list->property("contentX").toDouble() + list->width(), rowWidth);
  EXPECT_EQ(rows()->selectedRow(), 0) << "sideways keys leave the selection alone";

  ui().setZoom(1.0);
  window()->resize(1500, 1120);
  spin(100);
  EXPECT_LE(list->property("contentWidth").toDouble(), list->width() + 0.5);
}

TEST_F(SearchScreenTest, ExportMenuWritesTheResultsInTheirStoredOrder) {
  search("qvw");
  const TempDir out;
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    EXPECT_EQ(request.initial, "Search Results.csv");
    return Dialogs::Answer::withPath(out.path() / "hits.csv");
  });
  click("hitsHeader_size");  // Only the view's order.
  click("searchExport");
  click("searchExportCSV");
  const std::string csv = readFile(out.path() / "hits.csv");
  ASSERT_FALSE(csv.empty());
  EXPECT_LT(csv.find("qvw alpha.txt"), csv.find("qvw beta.txt"));
  EXPECT_LT(csv.find("qvw beta.txt"), csv.find("qvw Gamma.txt"));
  EXPECT_EQ(model().toast().value_or(""), "Exported 4 results");
}

}  // namespace
}  // namespace orrelin::testing
