// What the tests of the Tools screen's report panes share: real folders cataloged by the program, and a
// pane made from its QML file in the main window's engine, laid over the window so it can be clicked.
#pragma once

#include <QQmlComponent>
#include <QQmlProperty>
#include <QQuickItem>

#include <filesystem>
#include <memory>
#include <string>

#include "app/qt/dialogs.h"
#include "store/catalog_db.h"
#include "support/temp_dir.h"
#include "ui_fixture.h"

namespace orrelin::testing {

class ReportScreenTest : public MainWindowTest {
 protected:
  void SetUp() override {
    MainWindowTest::SetUp();
    // Start from an empty library, whatever an earlier test of this process left.
    for (const Catalog& c : model().catalogs()) model().store()->deleteCatalog(c.id, model().thumbnailsPath());
    model().reload();
    model().dismissAlert();
  }
  void TearDown() override {
    m_views.clear();
    Dialogs::setAnswerer({});
    model().dismissAlert();
    MainWindowTest::TearDown();
  }

  // Catalogs `root` as `name` (no metadata, no thumbnails) and waits for the scan to end; the result sheet
  // it brings up is closed again. Returns the catalog's id.
  int64_t scanFolder(const std::filesystem::path& root, const QString& name) {
    ScanOptions options;
    options.metadata = false;
    options.thumbnails = false;
    model().beginScan(root, name, std::nullopt, options);
    EXPECT_TRUE(waitUntil([&] { return !model().scanner()->isRunning() && model().scanResult().has_value(); }));
    const int64_t id = model().scanResult() ? model().scanResult()->catalogID : 0;
    dismissScanResult();
    return id;
  }

  // Closes the result sheet, and deletes it now rather than at the next turn of a main loop the tests do
  // not run: until then its Return shortcut would take the key from the panes' fields.
  void dismissScanResult() {
    model().dismissScanResult();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  // The pane of qrc:/Orrelin/<file>.qml, 1200 wide, over the window's content.
  QQuickItem* makeView(const QString& file) {
    QQmlComponent type(qmlEngine(window()), QUrl(QStringLiteral("qrc:/Orrelin/%1.qml").arg(file)));
    EXPECT_TRUE(type.isReady()) << type.errorString().toStdString();
    auto* view = qobject_cast<QQuickItem*>(type.create());
    EXPECT_NE(view, nullptr) << type.errorString().toStdString();
    if (!view) return nullptr;
    view->setParentItem(window()->contentItem());
    view->setZ(++m_top);
    view->setWidth(1200);
    view->setHeight(view->implicitHeight());
    QObject::connect(view, &QQuickItem::implicitHeightChanged, view,
                     [view] { view->setHeight(view->implicitHeight()); });
    m_views.emplace_back(view);
    return view;
  }

  // The pane's state object (its `pane` property).
  static QObject* paneOf(QQuickItem* view) { return view->property("pane").value<QObject*>(); }

  // The item named `name` inside `view`; fails the test when there is none.
  static QQuickItem* in(QQuickItem* view, const QString& name) {
    auto* found = qobject_cast<QQuickItem*>(findNamed(view, name));
    EXPECT_NE(found, nullptr) << "no " << name.toStdString();
    return found;
  }
  static bool visibleIn(QQuickItem* view, const QString& name) {
    QQuickItem* found = in(view, name);
    return found && found->isVisible();
  }
  static QString textIn(QQuickItem* view, const QString& name) {
    QQuickItem* found = in(view, name);
    return found ? found->property("text").toString() : QString();
  }
  // The rows of the pane's results table, in the order shown.
  static int rowsIn(QQuickItem* view, const QString& table) {
    QQuickItem* found = in(view, table);
    return found ? found->property("model").value<QObject*>()->property("count").toInt() : -1;
  }
  static QString rowName(QQuickItem* view, const QString& table, int row) {
    QObject* hits = in(view, table)->property("model").value<QObject*>();
    QVariantMap hit;
    QMetaObject::invokeMethod(hits, "hitAt", Q_RETURN_ARG(QVariantMap, hit), Q_ARG(int, row));
    return hit.value("name").toString();
  }

  // Clicks `name` inside `view` once the window has drawn what changed.
  void press(QQuickItem* view, const QString& name) {
    QQuickItem* target = in(view, name);
    ASSERT_NE(target, nullptr);
    view->setZ(++m_top);  // Over the other panes of the test.
    ASSERT_TRUE(target->isVisible() && target->isEnabled()) << name.toStdString() << " cannot be pressed";
    settle();
    click(target);
  }

  void settle() {
    bool drawn = false;
    auto connection = QObject::connect(window(), &QQuickWindow::frameSwapped, [&] { drawn = true; });
    window()->update();
    waitUntil([&] { return drawn; }, 2000);
    QObject::disconnect(connection);
  }

  // A save panel that answers with `path` and remembers what it was asked.
  void answerSaveWith(const std::filesystem::path& path) {
    Dialogs::setAnswerer([this, path](const Dialogs::Request& request) {
      asked.push_back(request);
      return request.kind == Dialogs::Request::Kind::savePanel ? Dialogs::Answer::withPath(path)
                                                               : Dialogs::Answer::cancel();
    });
  }

  std::vector<Dialogs::Request> asked;

 private:
  std::vector<std::unique_ptr<QQuickItem>> m_views;
  double m_top = 1000;
};

}  // namespace orrelin::testing
