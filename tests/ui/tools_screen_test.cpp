// The Tools screen: its empty state, the seven tabs reached from the tab row, the keyboard and the
// application state, panes that keep their inputs across tabs, and the Export for Claude tab writing its
// bundle for a scanned folder.
#include <QQmlProperty>

#include "tools_support.h"

namespace orrelin::testing {
namespace {

namespace fs = std::filesystem;

const char* const kPanes[] = {"toolPaneLoader_0", "toolPaneLoader_1", "toolPaneLoader_2", "toolPaneLoader_3",
                              "toolPaneLoader_4", "toolPaneLoader_5", "toolPaneLoader_6"};

class ToolsScreenTest : public ToolsTest {
 protected:
  // The index of the pane shown now, failing when not exactly one is.
  int shownPane() const {
    int found = -1;
    for (int i = 0; i < 7; ++i) {
      QQuickItem* loader = item(kPanes[i]);
      if (!loader || !loader->isVisible()) continue;
      EXPECT_EQ(found, -1) << "two panes shown: " << found << " and " << i;
      found = i;
    }
    return found;
  }
  bool tabChecked(int i) const {
    return find(QStringLiteral("toolTab_%1").arg(i))->property("checked").toBool();
  }
};

TEST_F(ToolsScreenTest, WithoutCatalogsTheScreenSaysWhatToolsNeed) {
  model().setSection(AppSection::tools);
  QQuickItem* empty = shown("toolsEmptyState");
  EXPECT_EQ(findNamed(empty, "emptyStateTitle")->property("text").toString(),
            QStringLiteral("Tools work on your catalogs"));
  EXPECT_TRUE(
      findNamed(empty, "emptyStateMessage")->property("text").toString().startsWith("Catalog a drive"));
  EXPECT_FALSE(item("toolTabRow")->isVisible());

  // The first cartridge brings the tabs.
  TempDir drive;
  writeFile(drive.path() / "a.txt", "a");
  scanFolder(drive.path(), "First");
  model().setSection(AppSection::tools);
  shown("toolTabRow");
  EXPECT_FALSE(item("toolsEmptyState")->isVisible());
}

TEST_F(ToolsScreenTest, TabsFollowTheRowTheKeyboardAndTheApplicationState) {
  TempDir drive;
  writeFile(drive.path() / "a.txt", "a");
  scanFolder(drive.path(), "Tab Drive");
  model().setSection(AppSection::tools);
  shown("toolTabRow");

  // Each tab of the row, clicked, shows its pane alone and becomes the application's tool tab.
  const QVariantList tabs = ui().property("toolTabs").toList();
  ASSERT_EQ(tabs.size(), 7);
  for (int i = 6; i >= 0; --i) {
    click(QStringLiteral("toolTab_%1").arg(i));
    EXPECT_EQ(static_cast<int>(model().toolTab()), i);
    EXPECT_TRUE(waitUntil([&] { return shownPane() == i; })) << "tab " << i;
    EXPECT_TRUE(tabChecked(i));
    EXPECT_EQ(text(QStringLiteral("toolTab_%1").arg(i)), tabs[i].toMap().value("title").toString());
    QObject* pane = QQmlProperty::read(find(kPanes[i]), "item").value<QObject*>();
    EXPECT_NE(pane, nullptr) << "tab " << i << " shows no pane";
  }

  // The menus set the application state; the row and the pane follow.
  for (ToolTab tab : {ToolTab::compare, ToolTab::plan, ToolTab::missing, ToolTab::rename}) {
    model().setToolTab(tab);
    const int i = static_cast<int>(tab);
    EXPECT_TRUE(waitUntil([&] { return shownPane() == i; })) << "tab " << i;
    for (int j = 0; j < 7; ++j)
      EXPECT_EQ(tabChecked(j), j == i) << "tab " << j << " with " << i << " current";
  }

  // Left and right walk along the row, round the ends.
  model().setToolTab(ToolTab::claude);
  item("toolTab_0")->forceActiveFocus();
  key(Qt::Key_Left);
  EXPECT_EQ(model().toolTab(), ToolTab::compare);
  EXPECT_TRUE(item("toolTab_6")->hasActiveFocus());
  key(Qt::Key_Right);
  key(Qt::Key_Right);
  EXPECT_EQ(model().toolTab(), ToolTab::plan);
  EXPECT_TRUE(waitUntil([&] { return shownPane() == 1; }));
}

TEST_F(ToolsScreenTest, EveryPaneStartsAtTheTopOfATallScreen) {
  TempDir drive;
  writeFile(drive.path() / "a.txt", "a");
  scanFolder(drive.path(), "Tall Drive");
  window()->resize(1500, 1600);
  const struct {
    ToolTab tab;
    const char* card;
  } panes[] = {{ToolTab::claude, "claudeExportPane"}, {ToolTab::plan, "planPane"},
               {ToolTab::rename, "renamePane"},       {ToolTab::empty, "emptyFoldersCard"},
               {ToolTab::largeOld, "largeOldCard"},   {ToolTab::missing, "missingCard"},
               {ToolTab::compare, "compareCard"}};
  for (const auto& pane : panes) {
    openTab(pane.tab, pane.card);
    spin(50);
    QQuickItem* loader = item(kPanes[static_cast<int>(pane.tab)]);
    EXPECT_LT(item(pane.card)->mapToItem(loader, QPointF(0, 0)).y(), 1.0) << pane.card << " floats down";
  }
}

TEST_F(ToolsScreenTest, APaneKeepsWhatWasTypedWhileAnotherTabIsShown) {
  TempDir drive;
  writeFile(drive.path() / "a.txt", "a");
  scanFolder(drive.path(), "Kept Drive");
  openTab(ToolTab::rename, "renamePane");
  click("renameFindInput");
  type("holiday");
  EXPECT_EQ(QQmlProperty::read(find("renamePaneState"), "find").toString(), QStringLiteral("holiday"));

  model().setToolTab(ToolTab::largeOld);
  EXPECT_TRUE(waitUntil([&] { return !item("renamePane")->isVisible(); }));
  model().setToolTab(ToolTab::rename);
  shown("renamePane");
  EXPECT_EQ(text("renameFindInput"), QStringLiteral("holiday"));
  EXPECT_EQ(QQmlProperty::read(find("renamePaneState"), "find").toString(), QStringLiteral("holiday"));
}

TEST_F(ToolsScreenTest, ExportForClaudeWritesTheBundleOfTheChosenCatalog) {
  TempDir drive, out;
  writeFile(drive.path() / "Docs" / "notes.md", "# notes");
  writeFile(drive.path() / "photo.jpg", "jpeg");
  const int64_t id = scanFolder(drive.path(), "Claude Drive");
  openTab(ToolTab::claude, "claudeExportPane");

  // Nothing chosen: nothing to export.
  choose("claudeCatalogPicker", 0);
  EXPECT_FALSE(enabled("claudeExportButton"));
  EXPECT_EQ(text("claudeExportButton"), QStringLiteral("Export for Claude…"));

  choose("claudeCatalogPicker", id);
  ASSERT_TRUE(enabled("claudeExportButton"));
  answer(out.path());
  click("claudeExportButton");
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(asked[0].kind, Dialogs::Request::Kind::openPanel);
  EXPECT_TRUE(asked[0].folders);

  // One new folder in the chosen one, holding the five files.
  std::vector<fs::path> made;
  for (const fs::directory_entry& e : fs::directory_iterator(out.path())) made.push_back(e.path());
  ASSERT_EQ(made.size(), 1u);
  EXPECT_EQ(made[0].filename().string().rfind("Claude Drive — Claude Export ", 0), 0u) << made[0];
  for (const char* name :
       {"SUMMARY.md", "files.jsonl", "catalog.xml", "README.md", "organization-plan.template.json"})
    EXPECT_TRUE(fs::is_regular_file(made[0] / name)) << name;
  EXPECT_NE(readFile(made[0] / "files.jsonl").find("notes.md"), std::string::npos);
  ASSERT_FALSE(toasts.empty());
  EXPECT_TRUE(toasts.back().startsWith("Claude export ready")) << toasts.back().toStdString();
}

}  // namespace
}  // namespace orrelin::testing
