// The statistics screen over the sample library and over real folders scanned by the program: its figures
// and cards say what the database says, it reads afresh when shown again, and the chart scales are round.
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <map>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "sidebar_support.h"
#include "ui/stats_state.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

QString qs(const std::string& text) { return QString::fromStdString(text); }

// Sets the modification time of `path` to noon UTC on 15 June of `year`, so the year is the same in
// every time zone.
void setModifiedYear(const fs::path& path, int year) {
  std::tm when{};
  when.tm_year = year - 1900;
  when.tm_mon = 5;
  when.tm_mday = 15;
  when.tm_hour = 12;
  const time_t seconds = timegm(&when);
  const struct timespec times[2] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

class StatsScreenTest : public SidebarTest {
 protected:
  void SetUp() override {
    SidebarTest::SetUp();
    removeAllCatalogs();
  }
  void TearDown() override {
    model().setSection(AppSection::browse);
    SidebarTest::TearDown();
  }

  void showStats() {
    model().setSection(AppSection::stats);
    shown(QStringLiteral("statsView"));
  }

  QString figure(const QString& label) {
    return textOf(QStringLiteral("statsFigures"), "figureValue_" + label);
  }

  // The items named `name` below the item `owner`, top to bottom then left to right.
  std::vector<QQuickItem*> itemsIn(const QString& owner, const QString& name) {
    settle();  // Rows just made are placed at the next frame.
    std::vector<QQuickItem*> found;
    std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
      for (QQuickItem* child : item->childItems()) {
        if (child->objectName() == name && child->isVisible()) found.push_back(child);
        walk(child);
      }
    };
    if (QQuickItem* root = shown(owner)) walk(root);
    std::sort(found.begin(), found.end(), [](QQuickItem* a, QQuickItem* b) {
      const QPointF pa = a->mapToScene({0, 0}), pb = b->mapToScene({0, 0});
      return pa.y() != pb.y() ? pa.y() < pb.y() : pa.x() < pb.x();
    });
    return found;
  }

  // A text of every row of a chart: the row's `key` from the data it draws.
  QStringList chartColumn(const QString& chart, const QString& rowName, const char* key) {
    QStringList values;
    for (QQuickItem* row : itemsIn(chart, rowName))
      values << row->property("modelData").toMap()[key].toString();
    return values;
  }

  // The texts of the items named `name` below `owner`, in reading order.
  QStringList texts(const QString& owner, const QString& name) {
    QStringList values;
    for (QQuickItem* item : itemsIn(owner, name)) values << item->property("text").toString();
    return values;
  }

  QStringList widths(const QString& owner) {
    QStringList values;
    for (QQuickItem* bar : itemsIn(owner, QStringLiteral("chartBar")))
      values << QString::number(bar->width());
    return values;
  }
};

TEST_F(StatsScreenTest, SampleLibraryFiguresAndCardsMatchTheDatabase) {
  showStats();
  EXPECT_EQ(textOf(QStringLiteral("statsEmpty"), QStringLiteral("emptyStateTitle")),
            "Statistics appear after your first scan");

  model().loadSampleData();
  showStats();
  const LibraryStats stats = model().store()->stats();
  ASSERT_EQ(stats.catalogs, 4);
  ASSERT_TRUE(waitUntil([&] { return figure("Files") == qs(Fmt::count(stats.files)); }));
  EXPECT_EQ(figure("Cartridges"), "4");
  EXPECT_EQ(figure("Online now"), "0");  // Sample cartridges have no drive.
  EXPECT_EQ(figure("Folders"), qs(Fmt::count(stats.folders)));
  EXPECT_EQ(figure("Cataloged"), qs(Fmt::size(stats.bytes)));

  // One bar per kind, largest total first, each labelled with its size; the bars shrink down the list.
  QStringList kinds, sizes, counts;
  for (const KindStat& k : stats.byKind) {
    kinds << qs(k.kind);
    sizes << qs(Fmt::size(k.bytes));
    counts << qs(Fmt::count(k.count));
  }
  ASSERT_GE(kinds.size(), 3);
  EXPECT_EQ(chartColumn("kindChart", "chartRow", "label"), kinds);
  EXPECT_EQ(texts("kindChart", "chartValue"), sizes);
  std::vector<double> barWidths;
  for (QQuickItem* bar : itemsIn("kindChart", "chartBar")) barWidths.push_back(bar->width());
  EXPECT_TRUE(std::is_sorted(barWidths.rbegin(), barWidths.rend()))
      << widths("kindChart").join(' ').toStdString();

  // "Count" keeps the order and relabels the bars; the widest bar is then the kind with the most files.
  click(QStringLiteral("kindMeasure_1"));
  ASSERT_TRUE(waitUntil([&] { return texts("kindChart", "chartValue") == counts; }));
  EXPECT_EQ(chartColumn("kindChart", "chartRow", "label"), kinds);
  const auto most = std::max_element(stats.byKind.begin(), stats.byKind.end(),
                                     [](const KindStat& a, const KindStat& b) { return a.count < b.count; });
  const std::vector<QQuickItem*> bars = itemsIn("kindChart", "chartBar");
  const auto widest = std::max_element(bars.begin(), bars.end(),
                                       [](QQuickItem* a, QQuickItem* b) { return a->width() < b->width(); });
  EXPECT_EQ(kinds[static_cast<int>(widest - bars.begin())], qs(most->kind));

  // Space by catalog follows the sidebar's order; capacity has one row per drive with a known size.
  QStringList names, capacities;
  for (const Catalog& c : model().catalogs()) {
    names << qs(c.name);
    capacities << qs(Fmt::size(c.freeSpace) + " free of " + Fmt::size(c.capacity));
  }
  EXPECT_EQ(chartColumn("spaceChart", "chartRow", "label"), names);
  EXPECT_EQ(texts("capacityCard", "capacityText"), capacities);

  // Years run oldest first, as the database lists them.
  QStringList years;
  for (const YearStat& y : stats.byYear) years << qs(y.year);
  EXPECT_EQ(chartColumn("yearChart", "chartColumn", "label"), years);

  // The sample has no scan history.
  EXPECT_TRUE(shown(QStringLiteral("noScans"))->isVisible());
}

TEST_F(StatsScreenTest, FiguresFillTheirRowsAtEveryZoom) {
  model().loadSampleData();
  showStats();
  for (double zoom : {1.0, 1.75, 2.0}) {
    SCOPED_TRACE(zoom);
    ui().setZoom(zoom);
    const std::vector<QQuickItem*> figures =
        itemsIn(QStringLiteral("statsFigures"), QStringLiteral("statsFigure"));
    QQuickItem* row = shown(QStringLiteral("statsFigures"));
    ASSERT_EQ(figures.size(), 5u);
    // Group by top edge; each line runs from the row's left edge to its right edge, with no overlap.
    std::map<int, std::vector<QRectF>> lines;
    for (QQuickItem* f : figures)
      lines[qRound(f->y())].push_back(QRectF(f->x(), f->y(), f->width(), f->height()));
    for (const auto& [top, rects] : lines) {
      EXPECT_NEAR(rects.front().left(), 0, 0.5) << "line at " << top;
      EXPECT_NEAR(rects.back().right(), row->width(), 0.5) << "line at " << top;
      for (size_t i = 1; i < rects.size(); ++i) EXPECT_LE(rects[i - 1].right(), rects[i].left());
    }
    // Lines stack without overlapping, and the row is as tall as they are.
    const QRectF last = lines.rbegin()->second.back();
    EXPECT_NEAR(row->height(), last.bottom(), 0.5);
    if (lines.size() > 1) {
      EXPECT_GE(std::next(lines.begin())->first, lines.begin()->second[0].bottom());
    }
  }
  ui().setZoom(1.0);
}

TEST_F(StatsScreenTest, LargestFileRowOpensTheFileInTheBrowser) {
  model().loadSampleData();
  showStats();
  const LibraryStats stats = model().store()->stats();
  ASSERT_EQ(stats.largest.size(), 25u);
  ASSERT_TRUE(waitUntil([&] { return item(QStringLiteral("largestRow_24")) != nullptr; }));
  EXPECT_TRUE(shown(QStringLiteral("largestRow_0"))
                  ->property("text")
                  .toString()
                  .startsWith("1. " + qs(stats.largest[0].name())));

  // A row further down, so the click is not simply the first catalog's default.
  const SearchHit& pick = stats.largest[3];
  click(QStringLiteral("largestRow_3"));
  EXPECT_EQ(model().section(), AppSection::browse);
  EXPECT_EQ(model().selectedCatalogID(), pick.file.catalogID);
}

TEST_F(StatsScreenTest, ScannedFolderShowsUpWhenTheScreenIsShownAgain) {
  TempDir dir;
  makeTree(dir.path());
  for (const char* name : {"notes.txt", "Photos/a.jpg", "Music/b.mp3"})
    setModifiedYear(dir.path() / name, 2011);
  setModifiedYear(dir.path() / "Music/b.mp3", 2003);
  Catalog catalog = scanFolder(dir.path(), "Bench Drive");

  showStats();
  ASSERT_TRUE(waitUntil([&] { return figure("Files") == "3"; }));
  EXPECT_EQ(figure("Cartridges"), "1");
  EXPECT_EQ(figure("Online now"), "1");
  EXPECT_EQ(chartColumn("yearChart", "chartColumn", "label"), QStringList({"2003", "2011"}));
  EXPECT_EQ(chartColumn("yearChart", "chartColumn", "text"), QStringList({"1 file", "2 files"}));
  ASSERT_EQ(itemsIn("scanCard", "scanRow").size(), 1u);
  const ScanLogEntry first = model().store()->stats().log.at(0);
  EXPECT_EQ(texts("scanCard", "scanLine"), QStringList({qs(Fmt::date(first.at) + " · " + first.note)}));
  // Two folders and three files, all new; the zeros are shown too.
  EXPECT_EQ(texts("scanCard", "scanBadge"), QStringList({"+5", "~0", QStringLiteral("\u22120")}));

  // Changes made while another screen is up are read when this one comes back.
  model().setSection(AppSection::browse);
  writeFile(dir.path() / "Photos" / "c.jpg", "new");
  writeFile(dir.path() / "Photos" / "d.jpg", "new too");
  fs::remove(dir.path() / "notes.txt");
  model().rescan(catalog);
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning() && model().scanResult().has_value(); }));
  model().dismissScanResult();
  showStats();
  ASSERT_TRUE(waitUntil([&] { return figure("Files") == "4"; }));
  const std::vector<QQuickItem*> scans = itemsIn("scanCard", "scanRow");
  ASSERT_EQ(scans.size(), 2u);
  // Newest first: the rescan added two files and removed one (the folder they went into changed).
  const ScanLogEntry newest = model().store()->stats().log.front();
  EXPECT_EQ(newest.added, 2);
  EXPECT_EQ(newest.removed, 1);
  EXPECT_EQ(texts("scanCard", "scanBadge").mid(0, 3),
            QStringList({"+2", "~" + QString::number(newest.changed), QStringLiteral("\u22121")}));

  // A change while the screen is up shows at once: the last cartridge deleted, the empty state returns.
  model().store()->deleteCatalog(catalog.id, model().thumbnailsPath());
  model().reload();
  EXPECT_TRUE(shown(QStringLiteral("statsEmpty"))->isVisible());
  EXPECT_FALSE(item(QStringLiteral("statsScroller"))->isVisible());
}

TEST(ChartScaleTest, AxesAreRoundAndHoldTheLargestValue) {
  EXPECT_EQ(chartScale(0), (ChartScale{1, {0}}));
  EXPECT_EQ(chartScale(-5), (ChartScale{1, {0}}));
  EXPECT_EQ(chartScale(NAN), (ChartScale{1, {0}}));
  EXPECT_EQ(chartScale(22.25e9), (ChartScale{30e9, {0, 10e9, 20e9, 30e9}}));
  EXPECT_EQ(chartScale(4), (ChartScale{4, {0, 1, 2, 3, 4}}));

  for (double largest : {0.3, 1.0, 7.0, 9.99, 10.0, 10.01, 123.0, 999.0, 1001.0, 4.2e6, 7.7e12, 9.2e18}) {
    const ChartScale scale = chartScale(largest);
    SCOPED_TRACE(largest);
    ASSERT_GE(scale.ticks.size(), 2u);
    EXPECT_LE(scale.ticks.size(), 5u);
    EXPECT_EQ(scale.ticks.front(), 0);
    EXPECT_DOUBLE_EQ(scale.ticks.back(), scale.max);
    EXPECT_GE(scale.max, largest);
    // Never more than one step of room above the largest value, so bars use most of the chart.
    const double step = scale.ticks[1];
    EXPECT_LT(scale.max - largest, step * (1 + 1e-9));
    // The step is 1, 2 or 5 times a power of ten.
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    EXPECT_TRUE(std::abs(mantissa - 1) < 1e-6 || std::abs(mantissa - 2) < 1e-6 ||
                std::abs(mantissa - 5) < 1e-6)
        << "step " << step;
  }
}

}  // namespace
}  // namespace orrelin::testing
