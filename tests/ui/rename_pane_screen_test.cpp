// The Rename Assistant tab over a real folder scanned into a cartridge: the form's controls reach the
// rule, the preview shows ready and blocked renames, the rename happens on disk, and the batch is undone
// from the Organization Plan tab's recent list.
#include "tools_support.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class RenamePaneScreenTest : public ToolsTest {
 protected:
  TempDir drive;

  void typeInto(const QString& field, const QString& value) {
    click(field + "Input");
    type(value);
  }
};

TEST_F(RenamePaneScreenTest, ABatchIsPreviewedRenamedOnDiskAndUndoneFromThePlanTab) {
  for (const char* name : {"IMG_1.jpg", "IMG_2.jpg", "IMG_10.jpg", "notes.txt"})
    writeFile(drive.path() / name, name);
  writeFile(drive.path() / "photo_2.jpg", "already here");
  const int64_t id = scanFolder(drive.path(), "Rename Drive");
  openTab(ToolTab::rename, "renamePane");
  choose("renameDrivePicker", id);
  EXPECT_FALSE(item("renameStepsTable")->isVisible());

  typeInto("renameFilter", "IMG");
  typeInto("renameFind", "img_");
  typeInto("renameReplace", "photo_");
  click("renamePreviewButton");

  // In path order as a file manager sorts (2 before 10); the second would overwrite and is blocked.
  shown("renameStepsTable");
  ASSERT_EQ(rowCount("renameStepsTable"), 3);
  EXPECT_EQ(stepField("renameStepsTable", 0, "to"), QStringLiteral("photo_1.jpg"));
  EXPECT_EQ(stepField("renameStepsTable", 1, "from"), QStringLiteral("IMG_2.jpg"));
  EXPECT_EQ(stepField("renameStepsTable", 1, "status"),
            QStringLiteral("Destination already exists — nothing is overwritten"));
  EXPECT_EQ(stepField("renameStepsTable", 2, "to"), QStringLiteral("photo_10.jpg"));
  EXPECT_EQ(stepField("renameStepsTable", 2, "kind"), QStringLiteral("Rename"));
  EXPECT_EQ(text("renameBlockedLine"), QStringLiteral("1 blocked"));
  EXPECT_EQ(text("renameApplyButton"), QStringLiteral("Rename 2 Items"));
  EXPECT_TRUE(fs::exists(drive.path() / "IMG_1.jpg"));  // A preview touches nothing.

  click("renameApplyButton");
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "photo_1.jpg"));
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "photo_10.jpg"));
  EXPECT_FALSE(fs::exists(drive.path() / "IMG_1.jpg"));
  EXPECT_TRUE(fs::exists(drive.path() / "IMG_2.jpg"));
  EXPECT_EQ(readFile(drive.path() / "photo_2.jpg"), "already here");
  ASSERT_FALSE(toasts.empty());
  EXPECT_EQ(toasts.front(), QStringLiteral("Renamed 2 items — undo any time from Organization Plan"));
  EXPECT_TRUE(waitUntil([&] { return !item("renameStepsTable")->isVisible(); }));
  waitUntil([&] { return !model().scanner()->isRunning(); });

  // The batch is in the plan tab's recent list, and its Undo brings the names back.
  model().setToolTab(ToolTab::plan);
  shown("planLog_0");
  EXPECT_EQ(find("planLog_0")->property("log").toMap().value("title").toString(),
            QStringLiteral("Batch rename in Rename Drive"));
  EXPECT_TRUE(text("planLog_0_detail").endsWith(" · 2 moved · 0 folders created"));
  toasts.clear();
  click("planLog_0_undo");
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "IMG_1.jpg"));
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "IMG_10.jpg"));
  EXPECT_FALSE(fs::exists(drive.path() / "photo_1.jpg"));
  EXPECT_EQ(readFile(drive.path() / "photo_2.jpg"), "already here");
  ASSERT_FALSE(toasts.empty());
  EXPECT_EQ(toasts.front(), QStringLiteral("Undone: 2 items restored"));
  EXPECT_TRUE(text("planLog_0_detail").endsWith(" · undone"));
  EXPECT_FALSE(item("planLog_0_undo")->isEnabled());
}

TEST_F(RenamePaneScreenTest, EveryControlOfTheFormReachesTheRule) {
  writeFile(drive.path() / "IMG_1.jpg", "top level, outside the folder");
  writeFile(drive.path() / "Sub" / "IMG_3.jpg", "3");
  writeFile(drive.path() / "Sub" / "Deeper" / "IMG_4.jpg", "4");
  writeFile(drive.path() / "Sub" / "other.txt", "not matched by the filter");
  const int64_t id = scanFolder(drive.path(), "Form Drive");
  openTab(ToolTab::rename, "renamePane");
  choose("renameDrivePicker", id);

  typeInto("renameFolder", "/Sub/");
  typeInto("renameFilter", "img_");
  click("renameIncludeSub");
  click("renameKeepExtension");
  // A regular expression is case-sensitive and may refer to its groups.
  typeInto("renameFind", "IMG_(\\d)");
  typeInto("renameReplace", "P$1");
  click("renameRegex");
  typeInto("renamePrefix", "x ");
  typeInto("renameSuffix", "!");
  item("renameCaseMode")->forceActiveFocus();
  key(Qt::Key_Down);
  EXPECT_EQ(find("renameCaseMode")->property("displayText").toString(), QStringLiteral("lowercase"));
  // The number's steppers wait for "Add numbers".
  EXPECT_FALSE(enabled("renameStartPlus"));
  click("renameNumbering");
  click("renameStartPlus");
  click("renameStartPlus");
  click("renameDigitsMinus");
  EXPECT_EQ(text("renameStartLabel"), QStringLiteral("from 3"));
  EXPECT_EQ(text("renameDigitsLabel"), QStringLiteral("2 digits"));

  click("renamePreviewButton");
  ASSERT_EQ(rowCount("renameStepsTable"), 2);
  // Numbered in path order (Deeper sorts before IMG_3), renamed deepest first.
  EXPECT_EQ(stepField("renameStepsTable", 0, "from"), QStringLiteral("Sub/Deeper/IMG_4.jpg"));
  EXPECT_EQ(stepField("renameStepsTable", 0, "to"), QStringLiteral("Sub/Deeper/x p4.jpg! 03"));
  EXPECT_EQ(stepField("renameStepsTable", 1, "to"), QStringLiteral("Sub/x p3.jpg! 04"));
  EXPECT_EQ(text("renameApplyButton"), QStringLiteral("Rename 2 Items"));
  EXPECT_EQ(text("renameBlockedLine"), QStringLiteral("0 blocked"));
}

}  // namespace
}  // namespace orrelin::testing
