// The browser's state on real cataloged folders: walking the columns and the breadcrumbs, the filter of
// the current folder, the cache and hidden records, the list's sort and primary action, the stored mode,
// what a rescan leaves of the path, and reveals from elsewhere in the program.
#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <filesystem>
#include <string>
#include <vector>

#include "browse_support.h"
#include "core/user_defaults.h"
#include "ui/catalog_browser.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

// Takes the desktop's "file" addresses while it lives, so a test opens nothing for real.
class OpenedFiles : public QObject {
  Q_OBJECT

 public:
  OpenedFiles() { QDesktopServices::setUrlHandler("file", this, "open"); }
  ~OpenedFiles() override { QDesktopServices::unsetUrlHandler("file"); }
  std::vector<QUrl> urls;

 public slots:
  void open(const QUrl& url) { urls.push_back(url); }
};

Names names(const std::vector<FileRecord>& records) {
  Names list;
  for (const FileRecord& f : records) list.push_back(f.name);
  return list;
}

Names rows(const FolderModel* folder) {
  Names list;
  if (!folder) return {"<no column>"};
  for (int row = 0; row < folder->count(); ++row) list.push_back(folder->record(row)->name);
  return list;
}

class CatalogBrowserTest : public ::testing::Test {
 protected:
  void SetUp() override {
    UserDefaults::remove("browseMode");
    emptyLibrary(model());
    makeBrowseTree(tree.path());
    catalog = scanFolder(model(), tree.path(), "Tree");
  }
  void TearDown() override { emptyLibrary(model()); }

  AppModel& model() { return AppModel::shared(); }
  FileRecord at(const std::string& path) { return recordAt(model(), catalog, path); }
  Names column(const CatalogBrowser& b, int depth) { return rows(b.columns()->column(depth)); }

  TempDir tree;
  Catalog catalog;
};

const Names kRoot{".secret", "Docs", "Empty", "Photos", "archive.zip", "notes.txt"};

TEST_F(CatalogBrowserTest, ClicksOpenColumnsAndCrumbsLeadBack) {
  CatalogBrowser b;
  b.setCatalogID(catalog.id);
  EXPECT_EQ(column(b, 0), kRoot);
  const FileRecord docs = at("Docs"), reports = at("Docs/Reports"), q1 = at("Docs/Reports/q1.txt");

  b.select(docs.id, 0);
  b.select(reports.id, 1);
  EXPECT_EQ(names(b.path()), (Names{"Docs", "Reports"}));
  EXPECT_EQ(b.columns()->count(), 3);
  EXPECT_EQ(column(b, 1), (Names{"Reports", "letter.txt"}));
  EXPECT_EQ(column(b, 2), (Names{"q1.txt", "Q2 summary.txt"}));
  // A file is selected without opening a column.
  b.select(q1.id, 2);
  EXPECT_EQ(b.selectedID(), q1.id);
  EXPECT_EQ(b.columns()->count(), 3);
  // An id the column does not hold changes nothing.
  b.select(q1.id, 0);
  EXPECT_EQ(b.selectedID(), q1.id);

  b.goTo(1);
  EXPECT_EQ(names(b.path()), Names{"Docs"});
  EXPECT_EQ(b.selectedID(), docs.id);
  EXPECT_EQ(b.columns()->count(), 2);
  b.goTo(7);  // No such crumb.
  EXPECT_EQ(names(b.path()), Names{"Docs"});
  b.goTo(0);
  EXPECT_TRUE(b.path().empty());
  EXPECT_FALSE(b.selected().has_value());

  // Selecting in an earlier column drops the deeper ones.
  b.select(docs.id, 0);
  b.select(reports.id, 1);
  b.select(at("notes.txt").id, 0);
  EXPECT_TRUE(b.path().empty());
  EXPECT_EQ(b.selected()->name, "notes.txt");
  EXPECT_EQ(b.columns()->count(), 1);
  b.select(at("Empty").id, 0);
  EXPECT_TRUE(column(b, 1).empty());
}

TEST_F(CatalogBrowserTest, TheFilterNarrowsTheCurrentFolderOnly) {
  CatalogBrowser b;
  b.setCatalogID(catalog.id);
  const FileRecord photos = at("Photos");
  b.select(photos.id, 0);

  // Trimmed, and blind to case beyond ASCII.
  b.setFilter("  éTÉ ");
  EXPECT_EQ(column(b, 1), Names{"Été à Nice.jpg"});
  EXPECT_EQ(column(b, 0), kRoot);
  EXPECT_EQ(names(b.children(photos.id)), Names{"Été à Nice.jpg"});
  EXPECT_EQ(names(b.children(0)), kRoot);
  waitUntil([&] { return b.cache().count(photos.id) != 0; }, 2000);
  ASSERT_TRUE(b.cache().count(photos.id));
  EXPECT_EQ(b.cache().at(photos.id)->size(), 2u) << "the cache keeps the whole folder";

  // Nothing matches: the current column empties, the one to its left keeps its rows.
  b.setFilter("zzz");
  EXPECT_EQ(b.columns()->column(1)->count(), 0);
  EXPECT_EQ(b.columns()->column(1)->total(), 2);
  EXPECT_EQ(column(b, 0), kRoot);

  // Another folder opens whole.
  b.select(at("Docs").id, 0);
  EXPECT_TRUE(b.filter().isEmpty());
  EXPECT_EQ(column(b, 1), (Names{"Reports", "letter.txt"}));

  // The list filters the same way.
  b.setMode(BrowseMode::list);
  b.setFilter("LET");
  EXPECT_EQ(rows(b.list()), Names{"letter.txt"});
}

TEST_F(CatalogBrowserTest, TheCacheHoldsFoldersUntilAReloadAndHiddenRecordsFollowTheSwitch) {
  CatalogBrowser b;
  b.setCatalogID(catalog.id);
  const FileRecord secret = at(".secret");
  b.select(secret.id, 0);
  EXPECT_EQ(column(b, 1), Names{"key.txt"});
  ASSERT_TRUE(waitUntil([&] { return b.cache().count(0) && b.cache().count(secret.id); }, 2000));

  // A folder is read once: a row removed behind the browser's back stays until the data is reloaded.
  const int64_t notes = at("notes.txt").id;
  model().store()->db().exec("DELETE FROM files WHERE id = " + std::to_string(notes));
  EXPECT_EQ(names(b.children(0)), kRoot);
  model().reload();
  EXPECT_EQ(names(b.children(0)), (Names{".secret", "Docs", "Empty", "Photos", "archive.zip"}));

  // Hidden records go from every folder, but the open path through the hidden folder stays. The switch
  // comes while the reload's reads are still on their way into the cache: they must not land there.
  b.setShowHidden(false);
  EXPECT_TRUE(b.cache().empty());
  EXPECT_EQ(column(b, 0), (Names{"Docs", "Empty", "Photos", "archive.zip"}));
  EXPECT_EQ(names(b.path()), Names{".secret"});
  EXPECT_EQ(column(b, 1), Names{"key.txt"});
  spin(50);
  ASSERT_TRUE(b.cache().count(0));
  EXPECT_EQ(names(*b.cache().at(0)), (Names{"Docs", "Empty", "Photos", "archive.zip"}));

  b.setShowHidden(true);
  EXPECT_EQ(column(b, 0).front(), ".secret");
}

TEST_F(CatalogBrowserTest, TheListSortsByItsColumnsAndItsPrimaryActionOpens) {
  CatalogBrowser b;
  b.setCatalogID(catalog.id);
  b.setMode(BrowseMode::list);
  EXPECT_EQ(rows(b.list()), kRoot) << "folders first until the user sorts";
  EXPECT_FALSE(b.sorted());

  // Folder sizes are rolled up: Empty 0, .secret 1, Docs 3035, Photos 5100.
  b.sortBy("size");
  EXPECT_EQ(rows(b.list()), (Names{"Empty", ".secret", "notes.txt", "Docs", "Photos", "archive.zip"}));
  b.sortBy("size");
  EXPECT_FALSE(b.ascending());
  EXPECT_EQ(rows(b.list()), (Names{"archive.zip", "Photos", "Docs", "notes.txt", ".secret", "Empty"}));
  b.sortBy("name");
  EXPECT_TRUE(b.ascending());
  EXPECT_EQ(rows(b.list()), (Names{".secret", "archive.zip", "Docs", "Empty", "notes.txt", "Photos"}));
  // Equal kinds keep the database's order, in both directions.
  for (bool second : {false, true}) {
    b.sortBy("kindName");
    ASSERT_EQ(b.ascending(), !second);
    Names folders;
    for (int row = 0; row < b.list()->count(); ++row) {
      if (b.list()->record(row)->isDir) folders.push_back(b.list()->record(row)->name);
    }
    EXPECT_EQ(folders, (Names{".secret", "Docs", "Empty", "Photos"}));
  }
  b.sortBy("tags");  // Not a sort key.
  EXPECT_EQ(b.sortKey(), "kindName");

  // A folder's row opens the folder.
  const FileRecord docs = at("Docs");
  b.sortBy("name");
  b.setTableSelection(docs.id);
  EXPECT_EQ(b.selectedID(), docs.id);
  b.primaryAction();
  EXPECT_EQ(names(b.path()), Names{"Docs"});
  EXPECT_FALSE(b.tableSelection().has_value());
  EXPECT_EQ(rows(b.list()), (Names{"letter.txt", "Reports"})) << "still sorted by name";
  b.primaryAction();  // Nothing selected: nothing happens.
  EXPECT_EQ(names(b.path()), Names{"Docs"});

  // A file's row opens the file in its application.
  OpenedFiles opened;
  b.setTableSelection(at("Docs/letter.txt").id);
  b.primaryAction();
  ASSERT_EQ(opened.urls.size(), 1u);
  EXPECT_EQ(fs::path(opened.urls[0].toLocalFile().toStdString()), tree.path() / "Docs" / "letter.txt");
  EXPECT_EQ(names(b.path()), Names{"Docs"});
}

TEST_F(CatalogBrowserTest, TheModeIsTheUsersPreference) {
  UserDefaults::set("browseMode", "List");
  EXPECT_EQ(CatalogBrowser().mode(), BrowseMode::list);
  {
    CatalogBrowser b;
    b.setMode(BrowseMode::columns);
  }
  EXPECT_EQ(UserDefaults::string("browseMode"), std::optional<std::string>("Columns"));
  for (const char* stored : {"list", "Columns", "", "Gallery"}) {
    UserDefaults::set("browseMode", stored);
    EXPECT_EQ(CatalogBrowser().mode(), BrowseMode::columns) << stored;
  }
  UserDefaults::remove("browseMode");
  EXPECT_EQ(CatalogBrowser().mode(), BrowseMode::columns);
}

TEST_F(CatalogBrowserTest, ARescanThatRemovesTheOpenFolderShortensThePath) {
  CatalogBrowser b;
  b.setCatalogID(catalog.id);
  const FileRecord docs = at("Docs");
  b.select(docs.id, 0);
  b.select(at("Docs/Reports").id, 1);
  b.select(at("Docs/Reports/q1.txt").id, 2);

  fs::remove_all(tree.path() / "Docs" / "Reports");
  rescanAndWait(model(), catalog);
  EXPECT_EQ(names(b.path()), Names{"Docs"});
  EXPECT_FALSE(b.selected().has_value());
  EXPECT_EQ(b.columns()->count(), 2);
  EXPECT_EQ(column(b, 1), Names{"letter.txt"});

  // A selection that is still there becomes the fresh record; the open folders stay as they were read.
  b.select(at("Docs/letter.txt").id, 1);
  writeFile(tree.path() / "Docs" / "letter.txt", std::string(7000, 'L'));
  rescanAndWait(model(), catalog);
  ASSERT_TRUE(b.selected().has_value());
  EXPECT_EQ(b.selected()->size, 7000);
  EXPECT_EQ(b.path().front(), docs);
}

TEST_F(CatalogBrowserTest, ARevealOpensTheFileAtItsPlaceOnceItsCatalogIsShown) {
  TempDir otherTree;
  writeFile(otherTree.path() / "Music" / "Live" / "set.flac", "f");
  const Catalog other = scanFolder(model(), otherTree.path(), "Other");
  model().setSelectedCatalogID(catalog.id);
  CatalogBrowser b;
  b.setCatalogID(catalog.id);
  std::vector<qint64> revealed;
  QObject::connect(&b, &CatalogBrowser::revealed, [&](qint64 id) { revealed.push_back(id); });
  b.setMode(BrowseMode::list);
  b.setFilter("zzz");

  const FileRecord q1 = at("Docs/Reports/q1.txt");
  model().browseTo(q1);
  EXPECT_EQ(names(b.path()), (Names{"Docs", "Reports"}));
  EXPECT_EQ(b.selectedID(), q1.id);
  EXPECT_EQ(b.tableSelection(), std::optional<int64_t>(q1.id)) << "its row is selected in the list";
  EXPECT_TRUE(b.filter().isEmpty());
  EXPECT_FALSE(model().pendingRevealFile().has_value());
  EXPECT_EQ(revealed, std::vector<qint64>{q1.id});

  // A folder opens itself.
  model().browseTo(at("Photos"));
  EXPECT_EQ(names(b.path()), Names{"Photos"});
  EXPECT_EQ(rows(b.list()), (Names{"beach.jpg", "Été à Nice.jpg"}));

  // Another catalog's file waits for that catalog's browser.
  const FileRecord set = recordAt(model(), other, "Music/Live/set.flac");
  model().browseTo(set);
  EXPECT_EQ(model().selectedCatalogID(), std::optional(other.id));
  EXPECT_EQ(names(b.path()), Names{"Photos"});
  ASSERT_TRUE(model().pendingRevealFile().has_value());
  b.setCatalogID(other.id);
  EXPECT_EQ(names(b.path()), (Names{"Music", "Live"}));
  EXPECT_EQ(b.selectedID(), set.id);
  EXPECT_FALSE(model().pendingRevealFile().has_value());
}

}  // namespace
}  // namespace orrelin::testing

#include "catalog_browser_test.moc"
