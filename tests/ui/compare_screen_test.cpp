// The Compare Catalogs pane of the Tools screen, driven through its QML on two folders the program has
// really cataloged.
#include <filesystem>

#include "app/backup_manager.h"
#include "report_screen_support.h"
#include "store/fmt.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class CompareScreenTest : public ReportScreenTest {
 protected:
  // The figure on a chip.
  static QString chipCount(QQuickItem* view, const QString& chip) { return textIn(view, chip + "Count"); }
};

TEST_F(CompareScreenTest, CountsChipsAndTheListThatFollowsThem) {
  TempDir temp;
  const fs::path source = temp.path() / "Source";
  const fs::path copy = temp.path() / "Copy";
  for (const fs::path& root : {source, copy}) {
    writeFile(root / "same.txt", "identical");
    fs::create_directories(root / "EmptyOnBoth");
  }
  writeFile(source / "grew.txt", "ab");
  writeFile(copy / "grew.txt", "abc");
  writeFile(source / "only-here.txt", "s");
  fs::create_directories(source / "FolderOnlyInSource");  // Folders are never compared.
  writeFile(copy / "Moved" / "only-there-1.txt", "c");
  writeFile(copy / "only-there-2.txt", "c");
  const int64_t a = scanFolder(source, "Source");
  const int64_t b = scanFolder(copy, "Copy");
  model().setSelectedCatalogID(a);

  QQuickItem* view = makeView("ComparePaneView");
  ASSERT_NE(view, nullptr);
  QObject* pane = paneOf(view);
  // A takes the sidebar's catalog, B the first other one.
  EXPECT_EQ(pane->property("a").toLongLong(), a);
  EXPECT_EQ(pane->property("b").toLongLong(), b);
  EXPECT_TRUE(visibleIn(view, "compareNote"));
  EXPECT_EQ(findNamed(view, "compareChip0"), nullptr) << "no chips before a comparison";

  press(view, "compareButton");
  ASSERT_TRUE(pane->property("hasResult").toBool());
  EXPECT_EQ(textIn(view, "compareChip0"), "Only in A");
  EXPECT_EQ(chipCount(view, "compareChip0"), "1");
  EXPECT_EQ(chipCount(view, "compareChip1"), "2");
  EXPECT_EQ(chipCount(view, "compareChip2"), "1");
  EXPECT_EQ(textIn(view, "compareChipSame"), "Identical");
  EXPECT_EQ(chipCount(view, "compareChipSame"), "1");

  ASSERT_EQ(rowsIn(view, "compareTable"), 1);
  EXPECT_EQ(rowName(view, "compareTable", 0), "only-here.txt");

  press(view, "compareChip1");
  EXPECT_EQ(pane->property("tab").toInt(), 1);
  ASSERT_EQ(rowsIn(view, "compareTable"), 2);
  EXPECT_EQ(rowName(view, "compareTable", 0), "only-there-1.txt");

  press(view, "compareChip2");
  ASSERT_EQ(rowsIn(view, "compareTable"), 1);
  QObject* hits = in(view, "compareTable")->property("model").value<QObject*>();
  QVariantMap hit;
  QMetaObject::invokeMethod(hits, "hitAt", Q_RETURN_ARG(QVariantMap, hit), Q_ARG(int, 0));
  EXPECT_EQ(hit.value("name").toString(), "grew.txt");
  EXPECT_EQ(hit.value("catalogName").toString().toStdString(),
            "Source: " + Fmt::size(2) + " \u00B7 Copy: " + Fmt::size(3));

  // "Identical" is a figure: the list stays where it was.
  press(view, "compareChipSame");
  EXPECT_EQ(pane->property("tab").toInt(), 2);
  EXPECT_EQ(rowsIn(view, "compareTable"), 1);

  // B set to A: the button is off until they differ again.
  QQmlProperty::write(in(view, "comparePickerB"), "selection", QVariant::fromValue<qint64>(a));
  EXPECT_EQ(pane->property("b").toLongLong(), a);
  EXPECT_FALSE(in(view, "compareButton")->isEnabled());
  QQmlProperty::write(in(view, "comparePickerB"), "selection", QVariant::fromValue<qint64>(b));
  EXPECT_TRUE(in(view, "compareButton")->isEnabled());

  // Backwards, on the same tab: the differing file is listed from B's side now.
  QQmlProperty::write(in(view, "comparePickerA"), "selection", QVariant::fromValue<qint64>(b));
  QQmlProperty::write(in(view, "comparePickerB"), "selection", QVariant::fromValue<qint64>(a));
  press(view, "compareButton");
  EXPECT_EQ(chipCount(view, "compareChip0"), "2");
  QMetaObject::invokeMethod(hits, "hitAt", Q_RETURN_ARG(QVariantMap, hit), Q_ARG(int, 0));
  EXPECT_TRUE(hit.value("catalogName").toString().startsWith("Copy: ")) << hit.value("catalogName").toString().toStdString();
}

// The text item of the results table that shows `text`, or null.
QQuickItem* cellShowing(QQuickItem* root, const QString& text) {
  for (QQuickItem* child : root->childItems()) {
    if (child->isVisible() && child->inherits("QQuickText") && child->property("text").toString() == text)
      return child;
    if (QQuickItem* found = cellShowing(child, text)) return found;
  }
  return nullptr;
}

TEST_F(CompareScreenTest, DifferentSizesStandInFullWhereTheCatalogWouldBe) {
  TempDir temp;
  const fs::path master = temp.path() / "Master";
  const fs::path backup = temp.path() / "Backup";
  writeFile(master / "grew.txt", "ab");
  writeFile(backup / "grew.txt", "abcdef");
  const int64_t a = scanFolder(master, "Holiday Photos Master Drive");
  const int64_t b = scanFolder(backup, "Holiday Photos Backup Drive");

  QQuickItem* view = makeView("ComparePaneView");
  ASSERT_NE(view, nullptr);
  QQmlProperty::write(in(view, "comparePickerA"), "selection", QVariant::fromValue<qint64>(a));
  QQmlProperty::write(in(view, "comparePickerB"), "selection", QVariant::fromValue<qint64>(b));
  press(view, "compareButton");
  QQuickItem* table = in(view, "compareTable");
  const double catalogWidth = table->property("catalogWidth").toDouble();
  EXPECT_EQ(table->property("catalogTitle").toString(), "Catalog");

  press(view, "compareChip2");
  const std::string sizes =
      "Holiday Photos Master Drive: " + Fmt::size(2) + " \u00B7 Holiday Photos Backup Drive: " + Fmt::size(6);
  settle();
  QQuickItem* cell = cellShowing(table, QString::fromStdString(sizes));
  ASSERT_NE(cell, nullptr) << "no cell shows " << sizes;
  EXPECT_FALSE(cell->property("truncated").toBool()) << "the sizes are cut short";
  EXPECT_EQ(table->property("catalogTitle").toString(), "Sizes");

  // Back on a list of one side, the column is the catalog's again.
  press(view, "compareChip0");
  EXPECT_EQ(table->property("catalogTitle").toString(), "Catalog");
  EXPECT_DOUBLE_EQ(table->property("catalogWidth").toDouble(), catalogWidth);
}

TEST_F(CompareScreenTest, ATabWithNothingInItShowsANoteAndARestoreDropsTheResult) {
  TempDir temp;
  writeFile(temp.path() / "One" / "f.txt", "1");
  writeFile(temp.path() / "Two" / "f.txt", "1");
  scanFolder(temp.path() / "One", "One");
  scanFolder(temp.path() / "Two", "Two");
  model().backupNow(QStringLiteral("manual"), /*silent=*/true);

  QQuickItem* view = makeView("ComparePaneView");
  ASSERT_NE(view, nullptr);
  press(view, "compareButton");
  EXPECT_EQ(chipCount(view, "compareChipSame"), "1");
  EXPECT_EQ(rowsIn(view, "compareTable"), 0);
  EXPECT_FALSE(visibleIn(view, "compareTable"));
  EXPECT_TRUE(visibleIn(view, "compareNote"));

  Dialogs::setAnswerer([](const Dialogs::Request&) { return Dialogs::Answer::accept(); });
  model().restore(BackupManager::list().front());
  EXPECT_FALSE(paneOf(view)->property("hasResult").toBool());
  EXPECT_TRUE(waitUntil([&] { return findNamed(view, "compareChipSame") == nullptr; }, 2000));
  press(view, "compareButton");
  EXPECT_EQ(chipCount(view, "compareChipSame"), "1") << "compares in the restored database";
}

}  // namespace
}  // namespace orrelin::testing
