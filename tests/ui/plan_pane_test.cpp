// The Organization Plan tab over real folders scanned into cartridges: a plan file chosen in the open
// panel, its dry run, apply after the confirmation (and not after Cancel), the recent list and its Undo,
// failures on the way, and the chosen drive: offline, changed, or changed on disk since the dry run.
#include <algorithm>

#include "tools_support.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

class PlanPaneTest : public ToolsTest {
 protected:
  TempDir drive, plans;

  fs::path writePlan(const std::string& json, const std::string& name = "plan.json") {
    writeFile(plans.path() / name, json);
    return plans.path() / name;
  }
  // Chooses `file` in the pane's open panel.
  void loadPlan(const fs::path& file) {
    answer(file);
    click("planChooseButton");
  }
  bool recorded(int64_t catalogID, const std::string& path) {
    const std::vector<FileRecord> files = model().store()->allFiles(catalogID);
    return std::any_of(files.begin(), files.end(), [&](const FileRecord& f) { return f.path == path; });
  }
};

TEST_F(PlanPaneTest, APlanIsPreviewedAppliedAfterConfirmationAndUndoneFromTheRecentList) {
  for (const char* name : {"a.txt", "b.txt", "keep.txt"}) writeFile(drive.path() / name, name);
  const int64_t id = scanFolder(drive.path(), "Plan Drive");
  openTab(ToolTab::plan, "planPane");
  choose("planDrivePicker", id);
  shown("recentPlansNone");
  EXPECT_FALSE(item("planDryRunLine")->isVisible());

  const fs::path file = writePlan(R"({"format": "someone-else", "version": 99,
      "description": "Tidy the drive", "newFolders": ["Sorted"],
      "moves": [{"from": "a.txt", "to": "Sorted/a.txt"}, {"from": "b.txt", "to": "Sorted/Deep/b.txt"},
                {"from": "gone.txt", "to": "x.txt"}, {"from": "keep.txt", "to": "../escape.txt"}]})");
  loadPlan(file);
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0].kind, Dialogs::Request::Kind::openPanel);
  EXPECT_EQ(asked[0].title, QStringLiteral("Choose an organization plan (JSON)."));
  EXPECT_EQ(asked[0].extensions, QStringList{"json"});

  EXPECT_EQ(text("planFileLine"), QStringLiteral("Plan: plan.json"));
  EXPECT_EQ(text("planDescription"), QStringLiteral("Tidy the drive"));
  shown("planDryRunLine");
  EXPECT_EQ(text("planDryRunLine"), QStringLiteral("Dry run: 5 steps ready, 2 blocked"));
  EXPECT_EQ(rowCount("planStepsTable"), 5);
  const char* const statuses[] = {"Will be created", "Ready", "Ready — parent folder will be created",
                                  "Source not found", "Path outside the drive — blocked"};
  for (int row = 0; row < 5; ++row)
    EXPECT_EQ(stepField("planStepsTable", row, "status"), QString::fromUtf8(statuses[row])) << row;
  EXPECT_EQ(stepField("planStepsTable", 0, "kind"), QStringLiteral("New Folder"));
  EXPECT_EQ(stepField("planStepsTable", 1, "kind"), QStringLiteral("Move"));
  EXPECT_EQ(stepField("planStepsTable", 4, "to"), QStringLiteral("../escape.txt"));
  EXPECT_EQ(text("planApplyButton"), QStringLiteral("Apply 3 Steps"));

  // Cancel leaves the drive and the dry run as they were.
  asked.clear();
  answer(file, -1);
  click("planApplyButton");
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0].title, QStringLiteral("Apply 3 steps to the drive?"));
  EXPECT_TRUE(asked[0].text.startsWith("Files and folders will be moved and created exactly as previewed."));
  EXPECT_EQ(asked[0].buttons, (QStringList{"Apply Plan", "Cancel"}));
  EXPECT_TRUE(fs::exists(drive.path() / "a.txt"));
  EXPECT_FALSE(fs::exists(drive.path() / "Sorted"));
  EXPECT_EQ(rowCount("planStepsTable"), 5);

  // Apply moves the ready steps, empties the dry run and lists the plan.
  answer(file, 0);
  click("planApplyButton");
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "Sorted" / "a.txt"));
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "Sorted" / "Deep" / "b.txt"));
  EXPECT_FALSE(fs::exists(drive.path() / "a.txt"));
  EXPECT_TRUE(fs::exists(drive.path() / "keep.txt"));
  EXPECT_FALSE(fs::exists(drive.path().parent_path() / "escape.txt"));
  ASSERT_FALSE(toasts.empty());
  EXPECT_EQ(toasts.front(), QStringLiteral("Plan applied: 2 moved, 2 folders created"));
  EXPECT_TRUE(waitUntil([&] { return !item("planDryRunLine")->isVisible(); }));
  EXPECT_EQ(findNamed(item("planLog_0"), "logSymbol")->property("symbol").toString(),
            QStringLiteral("checkmark.circle"));
  const QString detail = text("planLog_0_detail");
  EXPECT_TRUE(detail.endsWith(" · 2 moved · 2 folders created")) << detail.toStdString();
  EXPECT_TRUE(enabled("planLog_0_undo"));
  EXPECT_FALSE(item("recentPlansNone")->isVisible());
  // The catalog follows the drive by a quiet rescan.
  EXPECT_TRUE(waitUntil([&] { return !model().scanner()->isRunning() && recorded(id, "Sorted/a.txt"); }));

  // Undo puts everything back and removes the folders the plan made.
  toasts.clear();
  click("planLog_0_undo");
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "a.txt"));
  EXPECT_TRUE(fs::is_regular_file(drive.path() / "b.txt"));
  EXPECT_FALSE(fs::exists(drive.path() / "Sorted"));
  ASSERT_FALSE(toasts.empty());
  EXPECT_EQ(toasts.front(), QStringLiteral("Undone: 2 items restored"));
  EXPECT_TRUE(text("planLog_0_detail").endsWith(" · 2 moved · 2 folders created · undone"));
  EXPECT_FALSE(item("planLog_0_undo")->isEnabled());
  EXPECT_EQ(findNamed(item("planLog_0"), "logSymbol")->property("symbol").toString(),
            QStringLiteral("arrow.uturn.backward.circle"));
  EXPECT_TRUE(waitUntil([&] { return !model().scanner()->isRunning() && recorded(id, "a.txt"); }));

  // A plan without a description is titled by its file.
  writeFile(drive.path() / "c.txt", "c");
  loadPlan(writePlan(R"({"moves": [{"from": "c.txt", "to": "d.txt"}]})", "rename c.json"));
  EXPECT_EQ(text("planDryRunLine"), QStringLiteral("Dry run: 1 step ready, 0 blocked"));
  EXPECT_EQ(text("planApplyButton"), QStringLiteral("Apply 1 Step"));
  click("planApplyButton");
  EXPECT_TRUE(fs::exists(drive.path() / "d.txt"));
  EXPECT_TRUE(waitUntil([&] { return find("planLog_1") != nullptr; }));
}

TEST_F(PlanPaneTest, TheRecentListIsNewestFirstAndKeepsItsOrderWithinOneSecond) {
  // Logs keep whole seconds, so two plans applied in one second carry the same time; they stand by id.
  const auto save = [](const char* id, double created, const char* title) {
    UndoLog log;
    log.id = id;
    log.created = Date::fromSeconds(created);
    log.title = title;
    log.root = "/nowhere";
    UndoLogStore::save(log);
  };
  save("8D3C2A9E-0000-4000-8000-000000000003", 1'700'000'000, "Older");
  save("F1000000-0000-4000-8000-000000000002", 1'800'000'000, "Same second, second id");
  save("0A000000-0000-4000-8000-000000000001", 1'800'000'000, "Same second, first id");
  save("50000000-0000-4000-8000-000000000004", 1'900'000'000, "Newest");
  writeFile(UndoLogStore::folder() / "notes.txt", "not a log");
  writeFile(drive.path() / "a.txt", "a");
  scanFolder(drive.path(), "Any Drive");  // The Tools screen wants a catalog.

  openTab(ToolTab::plan, "planPane");
  const auto titles = [&] {
    std::vector<QString> out;
    for (int row = 0; QObject* found = find(QStringLiteral("planLog_%1").arg(row)); ++row)
      out.push_back(found->property("log").toMap().value("title").toString());
    return out;
  };
  const std::vector<QString> expected{"Newest", "Same second, first id", "Same second, second id", "Older"};
  EXPECT_EQ(titles(), expected);
  // Read again (a log rewritten by its undo, say), the order holds.
  QMetaObject::invokeMethod(find("planPaneState"), "reloadLogs");
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(titles(), expected);
}

TEST_F(PlanPaneTest, TheChosenDriveDecidesTheDryRun) {
  TempDir other;
  writeFile(drive.path() / "a.txt", "a");
  writeFile(other.path() / "a.txt", "a");
  writeFile(other.path() / "moved.txt", "taken");
  const int64_t first = scanFolder(drive.path(), "First Drive");
  const int64_t second = scanFolder(other.path(), "Second Drive");
  openTab(ToolTab::plan, "planPane");
  choose("planDrivePicker", first);

  // A file that is no plan is refused and loads nothing.
  loadPlan(writePlan(R"({"moves": [{"from": "a.txt"}]})", "broken.json"));
  ASSERT_TRUE(model().alert());
  EXPECT_EQ(model().alert()->title, QStringLiteral("Plan Not Loaded"));
  EXPECT_TRUE(model().alert()->message.startsWith("This is not a valid organization plan."));
  EXPECT_FALSE(item("planFileLine")->isVisible());
  model().dismissAlert();

  loadPlan(writePlan(R"({"moves": [{"from": "a.txt", "to": "moved.txt"}]})"));
  EXPECT_EQ(stepField("planStepsTable", 0, "status"), QStringLiteral("Ready"));

  // Another drive: the same plan judged against its files.
  choose("planDrivePicker", second);
  EXPECT_EQ(stepField("planStepsTable", 0, "status"),
            QStringLiteral("Destination already exists — nothing is overwritten"));
  EXPECT_EQ(text("planApplyButton"), QStringLiteral("Apply 0 Steps"));
  EXPECT_FALSE(enabled("planApplyButton"));

  // An unplugged drive leaves the picker and gives no dry run.
  const fs::path away = drive.path().string() + "-unplugged";
  fs::rename(drive.path(), away);
  model().refreshOnline();
  const QVariantList choices = find("planDrivePicker")->property("choices").toList();
  ASSERT_EQ(choices.size(), 1);
  EXPECT_EQ(choices[0].toMap().value("id").toLongLong(), second);
  choose("planDrivePicker", first);
  ASSERT_TRUE(model().alert());
  EXPECT_EQ(model().alert()->title, QStringLiteral("Drive Offline"));
  EXPECT_EQ(model().alert()->message, QStringLiteral("Choose a drive that is connected. Plans are validated "
                                                     "and applied against the real files."));
  EXPECT_EQ(rowCount("planStepsTable"), 0);
  EXPECT_FALSE(item("planDryRunLine")->isVisible());
  model().dismissAlert();

  // Plugged in again, Validate Again finds it.
  fs::rename(away, drive.path());
  click("planRevalidateButton");
  EXPECT_FALSE(model().alert());
  EXPECT_EQ(stepField("planStepsTable", 0, "status"), QStringLiteral("Ready"));
}

TEST_F(PlanPaneTest, ChangesOnDiskAfterTheDryRunAreReportedNotOverwritten) {
  writeFile(drive.path() / "a.txt", "a");
  writeFile(drive.path() / "b.txt", "b");
  const int64_t id = scanFolder(drive.path(), "Busy Drive");
  openTab(ToolTab::plan, "planPane");
  choose("planDrivePicker", id);
  const fs::path file = writePlan(R"({"moves": [{"from": "a.txt", "to": "new-a.txt"},
                                                {"from": "b.txt", "to": "new-b.txt"}]})");
  loadPlan(file);
  EXPECT_EQ(text("planApplyButton"), QStringLiteral("Apply 2 Steps"));

  // Someone puts a file where the second move goes.
  writeFile(drive.path() / "new-b.txt", "someone else's");
  answer(file, 0);
  click("planApplyButton");
  ASSERT_TRUE(model().alert());
  EXPECT_EQ(model().alert()->title, QStringLiteral("Plan Partly Applied"));
  EXPECT_EQ(model().alert()->message,
            QStringLiteral("1 items moved. Problems:\nb.txt: \u201Cnew-b.txt\u201D already exists"));
  EXPECT_EQ(readFile(drive.path() / "new-b.txt"), "someone else's");
  EXPECT_TRUE(fs::exists(drive.path() / "b.txt"));
  model().dismissAlert();

  // The moved file is taken away before the undo: it cannot come back, and the log is spent all the same.
  fs::remove(drive.path() / "new-a.txt");
  shown("planLog_0_undo");
  click("planLog_0_undo");
  ASSERT_TRUE(model().alert());
  EXPECT_EQ(model().alert()->title, QStringLiteral("Undo Partly Completed"));
  EXPECT_EQ(model().alert()->message, QStringLiteral("0 restored. Problems:\nnew-a.txt: no longer at ") +
                                          QString::fromStdString((drive.path() / "new-a.txt").string()));
  EXPECT_FALSE(item("planLog_0_undo")->isEnabled());
}

}  // namespace
}  // namespace orrelin::testing
