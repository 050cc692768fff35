// What the sidebar's tests share: reading what a cartridge shows, opening context menus, and catalogs to
// show (the sample data, or a real folder scanned by the program).
#pragma once

#include <QQmlProperty>
#include <QQuickItem>

#include <filesystem>
#include <string>

#include "app/qt/dialogs.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "support/temp_dir.h"
#include "ui_fixture.h"

namespace orrelin::testing {

class SidebarTest : public MainWindowTest {
 protected:
  void TearDown() override {
    Dialogs::setAnswerer({});
    MainWindowTest::TearDown();
  }

  // The catalog named `name`; fails the test when there is none.
  Catalog catalogNamed(const std::string& name) {
    for (const Catalog& c : model().catalogs())
      if (c.name == name) return c;
    ADD_FAILURE() << "no catalog named " << name;
    return {};
  }

  // Starts from an empty library, whatever an earlier test in this process left.
  void removeAllCatalogs() {
    for (const Catalog& c : model().catalogs())
      model().store()->deleteCatalog(c.id, model().thumbnailsPath());
    for (const CatalogGroup& g : model().groups()) model().store()->deleteGroup(g.id);
    model().reload();
  }

  // Loads the demonstration cartridges through the sidebar's plus menu.
  void loadSampleThroughMenu() {
    click(QStringLiteral("addCartridgeButton"));
    click(QStringLiteral("addMenu.sample"));
    ASSERT_TRUE(waitUntil([&] { return model().catalogs().size() >= 4; }));
  }

  // Catalogs `root` as a new cartridge named `name` and waits for the scan to end; the result sheet it
  // brings up is closed again.
  Catalog scanFolder(const std::filesystem::path& root, const QString& name) {
    ScanOptions options;
    options.metadata = false;
    options.thumbnails = false;
    model().beginScan(root, name, std::nullopt, options);
    EXPECT_TRUE(
        waitUntil([&] { return !model().scanner()->isRunning() && model().scanResult().has_value(); }));
    model().dismissScanResult();
    return catalogNamed(name.toStdString());
  }

  // The text of the child `name` of the item `owner`.
  QString textOf(const QString& owner, const QString& name) {
    QObject* found = findNamed(shown(owner), name);
    return found ? found->property("text").toString() : QString("<no " + name + ">");
  }

  // Waits for the window to draw a frame, by which time the columns have placed what changed; a click
  // before that could land where an item is about to move from.
  void settle() {
    bool drawn = false;
    auto connection = QObject::connect(window(), &QQuickWindow::frameSwapped, [&] { drawn = true; });
    window()->update();
    waitUntil([&] { return drawn; }, 2000);
    QObject::disconnect(connection);
  }

  // Clicks as MainWindowTest does, once the window has settled.
  void click(QQuickItem* target, Qt::MouseButton button = Qt::LeftButton) {
    settle();
    MainWindowTest::click(target, button);
  }
  void click(const QString& name, Qt::MouseButton button = Qt::LeftButton) { click(shown(name), button); }

  // Opens the context menu of the item `owner` with the right button.
  void rightClick(const QString& owner) { click(shown(owner), Qt::RightButton); }
};

// A small tree of real files to catalog.
inline void makeTree(const std::filesystem::path& root) {
  writeFile(root / "notes.txt", "remember the milk\n");
  writeFile(root / "Photos" / "a.jpg", std::string(2048, 'x'));
  writeFile(root / "Music" / "b.mp3", std::string(4096, 'y'));
}

}  // namespace orrelin::testing
