// The Duplicates screen driven as a user drives it, over a real folder of copies scanned into the test's
// database: the sweep, the result line, opening and closing sets one by one and all at once, the
// checksum tip, and the buttons of each copy.
#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "analysis_screens_support.h"
#include "search/qt/duplicate_state.h"
#include "store/catalog_db.h"
#include "ui/catalog_browser.h"
#include "ui/duplicate_groups_model.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class DuplicatesScreenTest : public MainWindowTest {
 protected:
  static void SetUpTestSuite() {
    s_tree = new TempDir();
    const fs::path root = s_tree->path();
    // Two sets: a 1.5 MB file on three paths, a 2 MB file on two. Same size under another name, and a
    // copy below the minimum size, make no set of their own by name and size.
    const std::string clip(1'500'000, 'c'), movie(2'000'000, 'm');
    writeFile(root / "a/zqx clip.mov", clip);
    writeFile(root / "b/zqx clip.mov", clip);
    writeFile(root / "c/d/zqx clip.mov", clip);
    writeFile(root / "a/zqx movie.mp4", movie);
    writeFile(root / "b/zqx movie.mp4", movie);
    writeFile(root / "b/zqx other name.mp4", movie);
    writeFile(root / "a/small.txt", "s");
    writeFile(root / "b/small.txt", "s");
  }
  static void TearDownTestSuite() {
    delete s_tree;
    s_tree = nullptr;
  }

  void SetUp() override {
    // Scanned before the window opens, so that no result sheet is on its way out over the screen.
    if (s_catalogID == 0 || !model().catalog(s_catalogID)) s_catalogID = scanCatalog(s_tree->path(), "Zqx Copies");
    MainWindowTest::SetUp();
    ASSERT_GT(s_catalogID, 0);
    DuplicateState& state = DuplicateState::shared();
    state.setMode(DuplicateMode::nameSize);
    state.setMinSizeMB(1.0);
    state.setCrossOnly(false);
    state.setCatalogIDs({s_catalogID});
    model().setSection(AppSection::duplicates);
    shown("duplicatesView");
  }
  void TearDown() override {
    model().dismissAlert();
    DuplicateState::shared().setCatalogIDs({});
    MainWindowTest::TearDown();
  }

  QString text(const QString& name) const {
    QObject* found = find(name);
    return found ? found->property("text").toString() : QStringLiteral("<no %1>").arg(name);
  }
  void sweep() {
    click("duplicatesFind");
    ASSERT_TRUE(waitUntil([] { return DuplicateState::shared().ran() && !DuplicateState::shared().busy(); }));
    spin(30);
  }
  QQuickItem* card(int row) { return listRow(item("duplicatesList"), row); }

  static inline TempDir* s_tree = nullptr;
  static inline int64_t s_catalogID = 0;
};

TEST_F(DuplicatesScreenTest, ASweepListsTheSetsByWastedSpaceAndOpensAndClosesThem) {
  EXPECT_EQ(text("duplicatesScope"), "1 selected");
  EXPECT_EQ(text("duplicatesMinSizeText"), "1 MB");
  sweep();
  EXPECT_TRUE(item("duplicatesFind")->isVisible()) << "the button is back after the sweep";
  EXPECT_FALSE(item("duplicatesSpinner")->isVisible());
  // 1.5 MB × 2 surplus copies = 3 MB, then 2 MB × 1; the third 2 MB file has another name.
  EXPECT_EQ(text("duplicatesHeader"), "2 duplicate sets · 5 MB could be reclaimed");
  ASSERT_EQ(DuplicateState::shared().groupCount(), 2);
  EXPECT_EQ(card(0)->property("name").toString(), "zqx clip.mov");
  EXPECT_EQ(card(0)->property("copies").toInt(), 3);
  EXPECT_EQ(card(1)->property("name").toString(), "zqx movie.mp4");

  // Both sets start open, so the header offers to close them all.
  EXPECT_EQ(text("duplicatesExpandAll"), "Collapse All");
  EXPECT_TRUE(shown("duplicateReveal_0_2")->isVisible());
  click("duplicatesExpandAll");
  EXPECT_TRUE(DuplicateState::shared().expanded().empty());
  EXPECT_EQ(text("duplicatesExpandAll"), "Expand All");
  EXPECT_EQ(item("duplicateReveal_0_0"), nullptr) << "a closed set shows no copies";

  // One header opens its set; the chevron turns.
  click("duplicateGroup_1");
  EXPECT_TRUE(card(1)->property("expanded").toBool());
  EXPECT_FALSE(card(0)->property("expanded").toBool());
  EXPECT_TRUE(shown("duplicateShow_1_1")->isVisible());
  EXPECT_EQ(text("duplicatesExpandAll"), "Expand All") << "one set is still closed";
  click("duplicatesExpandAll");
  EXPECT_EQ(DuplicateState::shared().expanded().size(), 2u);
  EXPECT_EQ(text("duplicatesExpandAll"), "Collapse All");
  click("duplicateGroup_1");
  EXPECT_FALSE(card(1)->property("expanded").toBool());

  // The settings narrow the sweep: at 2 MB only the movie is left; across drives, nothing.
  DuplicateState::shared().setMinSizeMB(2.0);
  EXPECT_EQ(text("duplicatesMinSizeText"), "2 MB");
  sweep();
  EXPECT_EQ(text("duplicatesHeader"), "1 duplicate set · 2 MB could be reclaimed");
  click("duplicatesCrossOnly");
  EXPECT_TRUE(DuplicateState::shared().crossOnly());
  sweep();
  EXPECT_EQ(text("duplicatesNoneTitle"), "No duplicates found with these settings");
  EXPECT_FALSE(item("duplicatesNoneMessage")->isVisible()) << "the checksum tip is for checksum matching only";
}

TEST_F(DuplicatesScreenTest, ChecksumMatchingWithoutChecksumsGivesTheTip) {
  DuplicateState::shared().setModeIndex(1);
  EXPECT_EQ(DuplicateState::shared().modeName(), "SHA-256 Checksum");
  EXPECT_EQ(item("duplicatesMode")->property("displayText").toString(), "SHA-256 Checksum");
  sweep();
  EXPECT_EQ(text("duplicatesNoneTitle"), "No duplicates found with these settings");
  EXPECT_EQ(text("duplicatesNoneMessage"),
            "Tip: checksum matching needs SHA-256 checksums. Turn on \u201CCompute SHA-256 checksums\u201D when "
            "you catalog or update a drive.");

  // Scanned with checksums, the same folder gives sets, whatever the names.
  const int64_t hashed = scanCatalog(s_tree->path(), "Zqx Hashed", /*hashes=*/true);
  ASSERT_GT(hashed, 0);
  DuplicateState::shared().setCatalogIDs({hashed});
  sweep();
  EXPECT_EQ(text("duplicatesHeader"), "2 duplicate sets · 7 MB could be reclaimed");
  model().store()->deleteCatalog(hashed, model().thumbnailsPath());
  model().reload();
}

TEST_F(DuplicatesScreenTest, EachCopysButtonsRevealItOrShowItInTheBrowser) {
  sweep();
  ASSERT_EQ(DuplicateState::shared().groupCount(), 2);
  if (!DuplicateState::shared().isExpanded("Name + Size|zqx clip.mov|1500000")) click("duplicateGroup_0");

  // The copy on disk is gone since the scan: reveal says so instead of opening a file manager.
  const QVariantList members = card(0)->property("members").toList();
  ASSERT_EQ(members.size(), 3);
  EXPECT_EQ(members[2].toMap().value("path").toString(), "c/d/zqx clip.mov");
  EXPECT_TRUE(members[2].toMap().value("online").toBool());
  fs::rename(s_tree->path() / "c/d/zqx clip.mov", s_tree->path() / "c/d/moved.mov");
  click("duplicateReveal_0_2");
  fs::rename(s_tree->path() / "c/d/moved.mov", s_tree->path() / "c/d/zqx clip.mov");
  ASSERT_TRUE(model().hasAlert());
  EXPECT_EQ(model().alert()->title, "Item Not Found");
  EXPECT_TRUE(model().alert()->message.startsWith("\u201Czqx clip.mov\u201D is no longer at its cataloged location"));
  model().dismissAlert();

  click("duplicateShow_0_1");
  EXPECT_EQ(model().section(), AppSection::browse);
  EXPECT_TRUE(waitUntil([&] {
    auto* browser = qobject_cast<CatalogBrowser*>(find("catalogBrowser"));
    return browser && browser->selected() && browser->selected()->path == "b/zqx clip.mov";
  }));
}

TEST_F(DuplicatesScreenTest, TheScopeMenuFollowsTheStateAfterTheUserChoseFromIt) {
  click("duplicatesScope");
  click("duplicatesScopeAll");
  EXPECT_TRUE(DuplicateState::shared().catalogIDs().empty());
  EXPECT_EQ(text("duplicatesScope"), "All catalogs");
  click("duplicatesScope");
  click(QStringLiteral("duplicatesScope_%1").arg(s_catalogID));
  EXPECT_EQ(DuplicateState::shared().catalogIDs(), std::set<int64_t>{s_catalogID});
  EXPECT_EQ(text("duplicatesScope"), "1 selected");
  // Set from elsewhere (a restore, the next test's set-up), the label still reads the state.
  DuplicateState::shared().setCatalogIDs({});
  EXPECT_EQ(text("duplicatesScope"), "All catalogs");
}

TEST_F(DuplicatesScreenTest, TheControlsKeepTheirOrderInsideTheirPanelAtEveryZoom) {
  const auto middle = [&](const char* name) {
    QQuickItem* it = item(name);
    return it->mapToScene(QPointF(0, it->height() / 2)).y();
  };
  // Where the control ends, counted from the right edge of the screen's content.
  const auto fromRight = [&](const char* name) {
    QQuickItem* it = item(name);
    QQuickItem* view = item("duplicatesView");
    return view->width() - it->mapToItem(view, QPointF(it->width(), 0)).x();
  };
  for (double zoom : {1.0, 1.75}) {
    ui().setZoom(zoom);
    spin(50);
    SCOPED_TRACE(zoom);
    // Lines may break at a large zoom, but the reading order stays, nothing leaves the panel, and the
    // sweep stands at its right edge.
    EXPECT_LE(middle("duplicatesMode"), middle("duplicatesMinSize"));
    EXPECT_LT(middle("duplicatesMinSize"), middle("duplicatesCrossOnly"));
    EXPECT_NEAR(middle("duplicatesCrossOnly"), middle("duplicatesScope"), 2.0);
    EXPECT_GE(middle("duplicatesFind"), middle("duplicatesScope") - 2.0);
    for (const char* name : {"duplicatesMode", "duplicatesMinSizeText", "duplicatesScope"})
      EXPECT_GE(fromRight(name), 32 * zoom - 1) << name;
    EXPECT_NEAR(fromRight("duplicatesFind"), 32 * zoom, 4.0);
  }
  ui().setZoom(1.0);
  spin(50);
  // In the window's first size, two lines: how copies match, then where to look and the sweep.
  EXPECT_NEAR(middle("duplicatesMode"), middle("duplicatesMinSize"), 2.0);
  EXPECT_NEAR(middle("duplicatesFind"), middle("duplicatesScope"), 2.0);
}

TEST(DuplicateGroupsModelTest, RowsFollowTheStateAndMakeMembersOnDemand) {
  TempDir tree;
  writeFile(tree.path() / "x/zqx pair.bin", std::string(1'200'000, 'p'));
  writeFile(tree.path() / "y/zqx pair.bin", std::string(1'200'000, 'p'));
  const int64_t id = scanCatalog(tree.path(), "Zqx Pair");
  ASSERT_GT(id, 0);
  DuplicateState state;
  state.setStore(AppModel::shared().store().get());
  state.setCatalogIDs({id});
  DuplicateGroupsModel rows(state, nullptr);
  QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Warning);
  EXPECT_EQ(rows.count(), 0);
  state.run();
  ASSERT_TRUE(waitUntil([&] { return state.ran(); }));
  ASSERT_EQ(rows.count(), 1);
  const QModelIndex first = rows.index(0);
  EXPECT_EQ(rows.data(first, DuplicateGroupsModel::WastedRole).toDouble(), 1'200'000.0);
  EXPECT_TRUE(rows.data(first, DuplicateGroupsModel::ExpandedRole).toBool());
  const QVariantList members = rows.data(first, DuplicateGroupsModel::MembersRole).toList();
  ASSERT_EQ(members.size(), 2);
  EXPECT_EQ(members[0].toMap().value("catalogName").toString(), "Zqx Pair");
  EXPECT_EQ(members[1].toMap().value("path").toString(), "y/zqx pair.bin");

  QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
  state.collapseAll();
  ASSERT_EQ(changed.size(), 1);
  EXPECT_FALSE(rows.data(first, DuplicateGroupsModel::ExpandedRole).toBool());
  EXPECT_FALSE(state.allExpanded());
  state.expandAll();
  EXPECT_TRUE(state.allExpanded());
  EXPECT_EQ(rows.rowOf(rows.data(first, DuplicateGroupsModel::KeyRole).toString()), 0);
  EXPECT_EQ(rows.rowOf("nothing"), -1);
}

}  // namespace
}  // namespace orrelin::testing
