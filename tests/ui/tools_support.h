// What the Tools screen's tests share: real folders scanned into cartridges, the screen opened at a tab,
// reading what its controls show, and every toast the program raised.
#pragma once

#include <QQmlProperty>
#include <QQuickItem>

#include <filesystem>
#include <string>
#include <vector>

#include "app/qt/dialogs.h"
#include "organize/undo_log.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"
#include "ui_fixture.h"

namespace orrelin::testing {

class ToolsTest : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    removeAllCatalogs();
    // Earlier tests of this process may have left undo logs; each test reads only its own.
    std::error_code ignored;
    std::filesystem::remove_all(UndoLogStore::folder(), ignored);
    QObject::connect(&model(), &AppModel::toastChanged, window(), [this] {
      if (model().toast()) toasts.push_back(*model().toast());
    });
  }
  void TearDown() override {
    Dialogs::setAnswerer({});
    // Applies and undos start quiet rescans; none may outlive the test's folders.
    waitUntil([&] { return !model().scanner()->isRunning(); });
    model().dismissAlert();
    // The next tests of this process find the library as a fresh start leaves it.
    removeAllCatalogs();
    std::error_code ignored;
    std::filesystem::remove_all(UndoLogStore::folder(), ignored);
    model().setSection(AppSection::browse);
    model().setToolTab(ToolTab::claude);
    MainWindowTest::TearDown();
  }

  // Starts from an empty library, whatever an earlier test in this process left.
  void removeAllCatalogs() {
    for (const Catalog& c : model().catalogs())
      model().store()->deleteCatalog(c.id, model().thumbnailsPath());
    model().reload();
  }

  // Catalogs `root` as a new cartridge named `name` and waits for the scan to end; the result sheet it
  // brings up is closed again. Returns the catalog's id.
  int64_t scanFolder(const std::filesystem::path& root, const QString& name) {
    ScanOptions options;
    options.metadata = false;
    options.thumbnails = false;
    model().beginScan(root, name, std::nullopt, options);
    EXPECT_TRUE(
        waitUntil([&] { return !model().scanner()->isRunning() && model().scanResult().has_value(); }));
    model().dismissScanResult();
    for (const Catalog& c : model().catalogs())
      if (c.name == name.toStdString()) return c.id;
    ADD_FAILURE() << "no catalog named " << name.toStdString();
    return 0;
  }

  // Shows the Tools screen at `tab` and waits for its pane.
  void openTab(ToolTab tab, const QString& pane) {
    model().setSection(AppSection::tools);
    model().setToolTab(tab);
    shown(pane);
  }

  // Chooses the catalog `id` in the picker named `picker`, as its menu would.
  void choose(const QString& picker, int64_t id) {
    ASSERT_TRUE(QQmlProperty::write(find(picker), "selection", static_cast<double>(id)));
    QCoreApplication::processEvents();
  }

  QString text(const QString& name) const {
    QObject* found = find(name);
    return found ? found->property("text").toString() : QStringLiteral("<no %1>").arg(name);
  }
  bool enabled(const QString& name) const { return shown(name)->isEnabled(); }
  // The number of rows of a StepsTable.
  int rowCount(const QString& table) const {
    QObject* list = find(table + "List");
    return list ? list->property("count").toInt() : -1;
  }
  // A property of row `row` of a StepsTable's steps.
  QString stepField(const QString& table, int row, const char* field) const {
    const QVariantList steps = find(table)->property("steps").toList();
    return row < steps.size() ? steps[row].toMap().value(field).toString() : QString();
  }

  // Answers open panels with `file` and questions with `button` (0 accepts, -1 cancels), recording what
  // was asked.
  void answer(const std::filesystem::path& file, int button = 0) {
    Dialogs::setAnswerer([this, file, button](const Dialogs::Request& request) {
      asked.push_back(request);
      if (request.kind == Dialogs::Request::Kind::openPanel) return Dialogs::Answer::withPath(file);
      return Dialogs::Answer{button, {}, {}};
    });
  }

  std::vector<QString> toasts;
  std::vector<Dialogs::Request> asked;
};

}  // namespace orrelin::testing
