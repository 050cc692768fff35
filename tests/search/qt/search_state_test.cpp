// The search state on a real database: results handed back on the main thread in the order the screen
// relies on, failures kept in the state, and the fields as the screen sets them.
#include "search/qt/search_state.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include "search/search_fixture.h"

namespace orrelin {
namespace {

using testing::addCatalog;
using testing::addRow;
using testing::Row;
using testing::TempDir;

// Records which change signals arrive, in order, and whether each arrived on the main thread.
class SignalLog {
 public:
  explicit SignalLog(SearchState& state) {
    watch(state, &SearchState::hitsChanged, "hits");
    watch(state, &SearchState::elapsedChanged, "elapsed");
    watch(state, &SearchState::busyChanged, "busy");
    watch(state, &SearchState::searchedChanged, "searched");
    watch(state, &SearchState::errorChanged, "error");
  }
  std::vector<std::string> names;
  bool allOnMainThread = true;

 private:
  void watch(SearchState& state, void (SearchState::*signal)(), const char* name) {
    QObject::connect(&state, signal, [this, name] {
      names.push_back(name);
      allOnMainThread = allOnMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
    });
  }
};

// Spins the main event loop until the state is no longer busy, for at most ten seconds.
bool waitUntilIdle(SearchState& state) {
  if (!state.busy()) return true;
  QEventLoop loop;
  QObject::connect(&state, &SearchState::busyChanged, &loop, [&] {
    if (!state.busy()) loop.quit();
  });
  QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
  loop.exec();
  return !state.busy();
}

class SearchStateTest : public ::testing::Test {
 protected:
  TempDir dir;
  std::shared_ptr<CatalogDB> store = std::make_shared<CatalogDB>(dir.file("Catalogs.sqlite"));
  void SetUp() override {
    int64_t id = addCatalog(*store, "Drive");
    for (const char* name : {"holiday 1.jpg", "Holiday 2.jpg", "notes.txt"}) addRow(*store, id, Row{name});
  }
};

TEST_F(SearchStateTest, RunDeliversOnTheMainThreadInOrder) {
  SearchState state;
  SignalLog log(state);
  state.setText(" holiday ");
  state.run(store);
  // Still on the main thread and before any event is processed: busy, the old (empty) hits still there.
  EXPECT_TRUE(state.busy());
  EXPECT_FALSE(state.searched());
  ASSERT_TRUE(waitUntilIdle(state));
  EXPECT_TRUE(log.allOnMainThread);
  EXPECT_EQ(log.names, (std::vector<std::string>{"busy", "hits", "elapsed", "busy", "searched"}));
  ASSERT_EQ(state.hitCount(), 2);
  EXPECT_EQ(state.hits()[0].file.name, "holiday 1.jpg");
  EXPECT_EQ(state.hits()[1].catalogName, "Drive");
  EXPECT_GT(state.elapsed(), 0);
  EXPECT_TRUE(state.searched());
  EXPECT_FALSE(state.error().has_value());

  // A failure clears the hits, keeps the elapsed time of the last success and shows the error.
  double elapsed = state.elapsed();
  log.names.clear();
  state.setMode("Regex");
  state.setText("([");
  state.run(store);
  EXPECT_EQ(state.hitCount(), 2);  // The old result stays visible while the search runs.
  ASSERT_TRUE(waitUntilIdle(state));
  EXPECT_EQ(log.names, (std::vector<std::string>{"busy", "hits", "error", "busy"}));
  EXPECT_EQ(state.hitCount(), 0);
  EXPECT_EQ(state.errorText(), "Database query error: That regular expression is not valid.");
  EXPECT_EQ(state.elapsed(), elapsed);
  EXPECT_TRUE(log.allOnMainThread);

  // The next run clears the error as it starts.
  log.names.clear();
  state.setText("^notes");
  state.run(store);
  EXPECT_EQ(log.names, (std::vector<std::string>{"busy", "error"}));
  EXPECT_FALSE(state.error().has_value());
  ASSERT_TRUE(waitUntilIdle(state));
  EXPECT_EQ(state.hitCount(), 1);
}

TEST(SearchStateFieldsTest, FieldsAsTheScreenSetsThem) {
  SearchState state;
  EXPECT_EQ(state.mode(), "Contains");
  EXPECT_EQ(state.sizeUnit(), 1'000'000);
  EXPECT_TRUE(state.includeFolders());
  // The range starts out as the year up to now.
  qint64 days = state.from().daysTo(state.to());
  EXPECT_TRUE(days == 365 || days == 366) << days;
  EXPECT_LE(std::abs(state.to().secsTo(QDateTime::currentDateTime())), 60);

  state.setMode("Exact Name");
  EXPECT_EQ(state.query().mode, SearchQuery::Mode::exact);
  state.setMode("nonsense");
  EXPECT_EQ(state.mode(), "Contains");
  state.setKinds({"Video", "Hologram", "Image"});
  EXPECT_EQ(state.kinds(), (QStringList{"Image", "Video"}));
  state.setCatalogIDs({QVariant(5), QVariant(QString("2")), QVariant(QString("x"))});
  EXPECT_EQ(state.query().catalogIDs, (std::set<int64_t>{2, 5}));
  state.setMinSizeText("1,5");
  state.setSizeUnit(1000);
  EXPECT_EQ(state.query().minSize, 1500);

  // Applying a saved search announces the fields that change, and leaves the result alone.
  SavedSearch saved = state.snapshot("Mine");
  SearchState other;
  int textSignals = 0, kindSignals = 0, searchedSignals = 0;
  QObject::connect(&other, &SearchState::textChanged, [&] { ++textSignals; });
  QObject::connect(&other, &SearchState::kindsChanged, [&] { ++kindSignals; });
  QObject::connect(&other, &SearchState::searchedChanged, [&] { ++searchedSignals; });
  other.apply(saved);
  EXPECT_EQ(other.form(), state.form());
  EXPECT_EQ(textSignals, 0);  // Both texts are empty.
  EXPECT_EQ(kindSignals, 1);
  EXPECT_EQ(searchedSignals, 0);

  other.setText("keep");
  other.resetFilters();
  EXPECT_EQ(other.text(), "keep");
  EXPECT_TRUE(other.kinds().isEmpty());
  EXPECT_EQ(other.sizeUnit(), 1000);
  EXPECT_EQ(other.minSizeText(), "");

  EXPECT_EQ(&SearchState::shared(), &SearchState::shared());
}

}  // namespace
}  // namespace orrelin
