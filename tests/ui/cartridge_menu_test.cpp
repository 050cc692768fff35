// A cartridge's context menu on a real catalog: the program scans a folder, then the user renames the
// cartridge, switches auto-update on, moves it into a group and deletes it, answering the questions.
#include "sidebar_support.h"

namespace orrelin::testing {
namespace {

TEST_F(SidebarTest, ARealCartridgeIsOnlineAndItsMenuRenamesWatchesMovesAndDeletesIt) {
  removeAllCatalogs();
  TempDir temp;
  makeTree(temp.path() / "Drive");
  const Catalog scanned = scanFolder(temp.path() / "Drive", "Field Drive");
  ASSERT_GT(scanned.id, 0);
  EXPECT_EQ(textOf("cartridge:Field Drive", "status"), QStringLiteral("ONLINE"));
  EXPECT_EQ(textOf("cartridge:Field Drive", "totals"),
            QString::fromStdString("3 files \u00B7 " + Fmt::size(18 + 2048 + 4096)));

  // Rename: the prompt proposes the current name; the answer becomes the cartridge's name.
  QString proposed;
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    proposed = request.initial;
    return Dialogs::Answer::withText("Renamed Drive");
  });
  rightClick("cartridge:Field Drive");
  click("cartridgeMenu.rename");
  EXPECT_EQ(proposed, QStringLiteral("Field Drive"));
  shown("cartridge:Renamed Drive");
  EXPECT_EQ(model().store()->catalog(scanned.id)->name, "Renamed Drive");

  // Auto-update: the item says whether it is on, and the eye shows it.
  rightClick("cartridge:Renamed Drive");
  EXPECT_EQ(shown("cartridgeMenu.watch")->property("text").toString(),
            QStringLiteral("Auto-Update When Files Change"));
  click("cartridgeMenu.watch");
  EXPECT_TRUE(model().isWatched(scanned.id));
  EXPECT_TRUE(waitUntil([&] {
    return findNamed(item("cartridge:Renamed Drive"), "watchedEye")->property("visible").toBool();
  }));
  rightClick("cartridge:Renamed Drive");
  EXPECT_EQ(shown("cartridgeMenu.watch")->property("text").toString(),
            QStringLiteral("\u2713 Auto-Update When Files Change"));
  key(Qt::Key_Escape);

  // Move to a group: the cartridge leaves "UNGROUPED" for the group's block.
  model().loadSampleData();
  shown("ungroupedHeading");
  rightClick("cartridge:Renamed Drive");
  click("cartridgeMenu.moveTo.item");
  click("cartridgeMenu.group:Media (Sample)");
  EXPECT_TRUE(waitUntil([&] { return model().catalog(scanned.id)->groupID.has_value(); }));
  EXPECT_EQ(shown("group:Media (Sample)")->property("count").toInt(), 3);
  EXPECT_TRUE(waitUntil([&] { return !item("ungroupedHeading")->isVisible(); }));

  // Delete: a cancelled question keeps it; the accepted one removes it.
  QString question;
  Dialogs::setAnswerer([&](const Dialogs::Request& request) {
    question = request.title;
    return Dialogs::Answer::cancel();
  });
  rightClick("cartridge:Renamed Drive");
  click("cartridgeMenu.delete");
  EXPECT_EQ(question, QStringLiteral("Delete \u201CRenamed Drive\u201D?"));
  ASSERT_TRUE(model().catalog(scanned.id).has_value());

  Dialogs::setAnswerer([](const Dialogs::Request&) { return Dialogs::Answer::accept(); });
  rightClick("cartridge:Renamed Drive");
  click("cartridgeMenu.delete");
  EXPECT_FALSE(model().catalog(scanned.id).has_value());
  EXPECT_TRUE(waitUntil([&] { return item("cartridge:Renamed Drive") == nullptr; }));
  EXPECT_FALSE(model().isWatched(scanned.id));
  // The drive itself is untouched.
  EXPECT_TRUE(std::filesystem::exists(temp.path() / "Drive" / "notes.txt"));
}

TEST_F(SidebarTest, RescanIsDisabledInTheMenuWhileAScanRuns) {
  removeAllCatalogs();
  model().loadSampleData();
  rightClick("cartridge:Photo Vault");
  EXPECT_TRUE(shown("cartridgeMenu.rescan")->isEnabled());
  key(Qt::Key_Escape);

  // A scan held paused runs until it is cancelled.
  TempDir temp;
  for (int i = 0; i < 2000; ++i)
    writeFile(temp.path() / "Big" / std::to_string(i % 20) / (std::to_string(i) + ".txt"), "x");
  model().beginScan(temp.path() / "Big", "Big", std::nullopt, ScanOptions{});
  model().scanner()->togglePause();
  ASSERT_TRUE(model().scanner()->isRunning());
  rightClick("cartridge:Photo Vault");
  EXPECT_FALSE(shown("cartridgeMenu.rescan")->isEnabled());
  key(Qt::Key_Escape);
  model().scanner()->cancel();
  ASSERT_TRUE(waitUntil([&] { return !model().scanner()->isRunning(); }));
  model().dismissScanResult();
}

TEST_F(SidebarTest, GroupMenuRenamesAndRemovesAGroupKeepingItsCartridges) {
  removeAllCatalogs();
  model().loadSampleData();
  Dialogs::setAnswerer([](const Dialogs::Request& request) {
    return request.kind == Dialogs::Request::Kind::prompt ? Dialogs::Answer::withText("Archive Shelf")
                                                          : Dialogs::Answer::accept();
  });
  rightClick("group:Studio (Sample)");
  click("groupMenu.rename");
  shown("group:Archive Shelf");

  rightClick("group:Archive Shelf");
  click("groupMenu.remove");
  EXPECT_TRUE(waitUntil([&] { return item("group:Archive Shelf") == nullptr; }));
  // Its cartridges are now ungrouped, under their heading.
  shown("ungroupedHeading");
  shown("cartridge:DJ Crates SSD");
  EXPECT_FALSE(catalogNamed("DJ Crates SSD").groupID.has_value());
}

}  // namespace
}  // namespace orrelin::testing
