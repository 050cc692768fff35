// The results tables' rows: a search's hits on the sample library, sorted both ways by each column
// without touching the order the search keeps, and the record maps the screens draw from.
#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>

#include "app/qt/app_model.h"
#include "search/qt/search_state.h"
#include "store/catalog_db.h"
#include "store/finder_label.h"
#include "support/qt_wait.h"
#include "ui/file_maps.h"
#include "ui/hits_model.h"

namespace orrelin::testing {
namespace {

class HitsModelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    AppModel& app = AppModel::shared();
    // Earlier tests in the same process may leave catalogs of their own; the sample ones are what counts.
    if (std::none_of(app.catalogs().begin(), app.catalogs().end(), [](const Catalog& c) { return c.isSample; }))
      app.loadSampleData();
    ASSERT_FALSE(app.catalogs().empty());
    SearchState& search = SearchState::shared();
    search.resetFilters();
    search.setText("a");
    search.run(app.store());
    ASSERT_TRUE(waitUntil([&] { return search.searched() && !search.busy(); }));
    ASSERT_GT(search.hitCount(), 20);
  }
};

std::vector<double> column(const HitsModel& model, const QString& key) {
  std::vector<double> values;
  for (int row = 0; row < model.count(); ++row) values.push_back(model.hitAt(row).value(key).toDouble());
  return values;
}

TEST_F(HitsModelTest, SortsTheViewBothWaysAndKeepsTheSearchOrder) {
  SearchState& search = SearchState::shared();
  const std::vector<SearchHit> stored = search.hits();
  HitsModel model;
  model.setSource(&search);
  ASSERT_EQ(model.count(), search.hitCount());
  EXPECT_EQ(model.sortKey(), "name");

  model.sortBy("size");
  std::vector<double> sizes = column(model, "size");
  EXPECT_TRUE(std::is_sorted(sizes.begin(), sizes.end()));
  model.sortBy("size");  // Again: descending.
  EXPECT_FALSE(model.ascending());
  sizes = column(model, "size");
  EXPECT_TRUE(std::is_sorted(sizes.rbegin(), sizes.rend()));
  EXPECT_GT(sizes.front(), sizes.back());

  model.sort("sortModified", true);
  const std::vector<double> dates = column(model, "sortModified");
  EXPECT_TRUE(std::is_sorted(dates.begin(), dates.end()));

  model.sortBy("nonsense");  // Ignored.
  EXPECT_EQ(model.sortKey(), "sortModified");

  // Names sort without regard to case, and numbers within them by value.
  model.sort("name", true);
  for (int row = 1; row < model.count(); ++row) {
    const QString a = model.hitAt(row - 1).value("name").toString();
    const QString b = model.hitAt(row).value("name").toString();
    EXPECT_LE(QString::compare(a.left(1), b.left(1), Qt::CaseInsensitive), 0) << a.toStdString() << " / "
                                                                              << b.toStdString();
  }

  // The search's own order, which exports use, is untouched; every hit is shown exactly once.
  EXPECT_EQ(search.hits(), stored);
  std::set<qint64> ids;
  for (int row = 0; row < model.count(); ++row) ids.insert(model.fileID(row));
  EXPECT_EQ(ids.size(), stored.size());
  EXPECT_EQ(model.rowOf(stored.front().id()) >= 0, true);
  EXPECT_EQ(model.rowOf(-5), -1);
  EXPECT_TRUE(model.hitAt(model.count()).isEmpty());
}

TEST_F(HitsModelTest, TheSelectionStaysOnItsFileThroughSortsAndNewResults) {
  SearchState& search = SearchState::shared();
  HitsModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
  model.setSource(&search);
  QSignalSpy selection(&model, &HitsModel::selectionChanged);
  model.setSelectedRow(5);
  const qint64 id = model.fileID(5);
  EXPECT_EQ(model.selectedID(), id);
  EXPECT_EQ(selection.size(), 1);

  for (const char* key : {"size", "size", "path", "catalogName", "kindName", "sortModified"}) {
    model.sortBy(key);
    EXPECT_EQ(model.selectedID(), id) << key;
    ASSERT_GE(model.selectedRow(), 0) << key;
    EXPECT_EQ(model.fileID(model.selectedRow()), id) << key;
    EXPECT_EQ(model.rowOf(id), model.selectedRow()) << key;
  }

  // The same search again keeps the choice; one that no longer finds the file drops it.
  search.run(AppModel::shared().store());
  ASSERT_TRUE(waitUntil([&] { return !search.busy(); }));
  EXPECT_EQ(model.selectedID(), id);
  search.setText("zzzz-no-such-name");
  search.run(AppModel::shared().store());
  ASSERT_TRUE(waitUntil([&] { return !search.busy(); }));
  EXPECT_EQ(model.selectedID(), 0);
  EXPECT_EQ(model.selectedRow(), -1);
  search.setText("a");
  search.run(AppModel::shared().store());
  ASSERT_TRUE(waitUntil([&] { return !search.busy(); }));

  // A row outside the table, or an id no row shows, is no selection.
  model.setSelectedRow(0);
  model.setSelectedRow(model.count());
  EXPECT_EQ(model.selectedID(), 0);
  model.setSelectedID(-3);
  EXPECT_EQ(model.selectedRow(), -1);
}

TEST_F(HitsModelTest, FollowsANewResultAndForgetsAGoneSource) {
  SearchState& search = SearchState::shared();
  HitsModel model;
  {
    SearchState other;
    model.setSource(&other);
    EXPECT_EQ(model.count(), 0);
  }
  EXPECT_EQ(model.source(), nullptr);
  model.setSource(&search);
  const int before = model.count();
  search.setText("zzzz-no-such-name");
  search.run(AppModel::shared().store());
  ASSERT_TRUE(waitUntil([&] { return !search.busy(); }));
  EXPECT_EQ(model.count(), 0);
  EXPECT_GT(before, 0);
}

TEST_F(HitsModelTest, RecordMapsCarryWhatTheScreensShow) {
  const SearchHit& hit = SearchState::shared().hits().front();
  const QVariantMap map = hitMap(hit);
  EXPECT_EQ(map.value("id").toLongLong(), hit.id());
  EXPECT_EQ(map.value("catalogName").toString().toStdString(), hit.catalogName);
  EXPECT_EQ(map.value("path").toString().toStdString(), hit.path());
  EXPECT_EQ(map.value("kind").toString().toStdString(), std::string(hit.kindName()));

  FileLookup files;
  const QVariantMap looked = files.file(hit.id());
  EXPECT_EQ(looked.value("name").toString().toStdString(), hit.name());
  EXPECT_TRUE(files.file(987654321).isEmpty());

  // Metadata comes in key order; GPS is picked out for the map button.
  FileRecord record = hit.file;
  record.meta = {{"Zoom", "1"}, {"GPS", "48.85, 2.35"}, {"Artist", "X"}};
  record.modified.reset();
  const QVariantMap withMeta = fileMap(record);
  const QVariantList meta = withMeta.value("meta").toList();
  ASSERT_EQ(meta.size(), 3);
  EXPECT_EQ(meta[0].toMap().value("key"), "Artist");
  EXPECT_EQ(meta[2].toMap().value("key"), "Zoom");
  EXPECT_EQ(withMeta.value("gps"), "48.85, 2.35");
  EXPECT_EQ(withMeta.value("modified").toDouble(), -1.0);

  // A tag naming a label takes its colour; any other tag takes label 4's.
  EXPECT_EQ(files.tagColor("red"), files.labelColor(FinderLabel::colorIndex("Red")));
  EXPECT_EQ(files.tagColor("Client Work"), files.labelColor(4));
  EXPECT_NE(files.tagColor("red"), files.tagColor("Client Work"));
}

}  // namespace
}  // namespace orrelin::testing
