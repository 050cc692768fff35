// What the drive panel's and the inspector's tests share: one of the program's QML components made on
// its own in a window of the real engine, catalogs to show (scanned from real folders by the program),
// and reading what the component shows.
#pragma once

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/qt/app_model.h"
#include "app/qt/dialogs.h"
#include "store/catalog_db.h"
#include "support/qt_wait.h"
#include "support/temp_dir.h"
#include "ui/file_maps.h"
#include "ui/qml_setup.h"
#include "ui_fixture.h"

// QStrings in failure messages as text.
inline void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }

namespace orrelin::testing {

class PanelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_engine = std::make_unique<QQmlEngine>();
    setUpQmlEngine(*m_engine);
    m_window = std::make_unique<QQuickWindow>();
    m_window->resize(1100, 800);
    m_window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
  }

  void TearDown() override {
    Dialogs::setAnswerer({});
    delete m_root;
    m_root = nullptr;
    m_window.reset();
    m_engine.reset();
    QCoreApplication::processEvents();
  }

  AppModel& model() { return AppModel::shared(); }

  // Makes qrc:/Orrelin/<component>.qml with `properties` in the window: an item at the top left with the
  // given size, a popup (a menu) over the whole window. Fails the test when it does not load. What was
  // made before goes.
  QObject* makeObject(const QString& component, const QVariantMap& properties, qreal width = 0,
                      qreal height = 0) {
    delete m_root;
    m_root = nullptr;
    QQmlComponent maker(m_engine.get(), QUrl(QStringLiteral("qrc:/Orrelin/") + component + ".qml"));
    QObject* object = maker.beginCreate(m_engine->rootContext());
    EXPECT_NE(object, nullptr) << maker.errorString().toStdString();
    if (!object) return nullptr;
    if (auto* item = qobject_cast<QQuickItem*>(object))
      item->setParentItem(m_window->contentItem());
    else
      object->setProperty("parent", QVariant::fromValue<QQuickItem*>(m_window->contentItem()));
    maker.setInitialProperties(object, properties);
    maker.completeCreate();
    if (auto* item = qobject_cast<QQuickItem*>(object)) item->setSize(QSizeF(width, height));
    m_root = object;
    spin(30);
    return object;
  }
  QQuickItem* make(const QString& component, const QVariantMap& properties, qreal width, qreal height) {
    return qobject_cast<QQuickItem*>(makeObject(component, properties, width, height));
  }

  // The object named `name` in the component; null when there is none.
  QObject* find(const QString& name) const { return findNamed(m_window.get(), name); }
  QQuickItem* item(const QString& name) const { return qobject_cast<QQuickItem*>(find(name)); }
  // Whether `name` is there and visible (its parents included).
  bool visible(const QString& name) const {
    QQuickItem* found = item(name);
    return found && found->isVisible();
  }
  // The "text" of `name`, or of its child `child` when one is named.
  QString text(const QString& name, const QString& child = {}) const {
    QObject* found = find(name);
    if (found && !child.isEmpty()) found = findNamed(found, child);
    return found ? found->property("text").toString() : QStringLiteral("<no %1>").arg(name);
  }

  void click(QQuickItem* target) const {
    ASSERT_NE(target, nullptr);
    const QPointF middle = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(target->window(), Qt::LeftButton, Qt::NoModifier, middle.toPoint());
    QCoreApplication::processEvents();
  }
  void click(const QString& name) {
    ASSERT_TRUE(waitUntil([&] { return visible(name); }, 3000)) << name.toStdString() << " is not shown";
    click(item(name));
  }

  // The map of catalog `id` as AppModel.catalogs gives it to QML.
  QVariantMap catalogMap(int64_t id) {
    for (const QVariant& entry : model().property("catalogs").toList())
      if (entry.toMap().value("id").toLongLong() == id) return entry.toMap();
    ADD_FAILURE() << "no catalog " << id;
    return {};
  }

  // Starts from an empty library, whatever an earlier test in this process left.
  void removeAllCatalogs() {
    for (const Catalog& c : model().catalogs()) model().store()->deleteCatalog(c.id, model().thumbnailsPath());
    for (const CatalogGroup& g : model().groups()) model().store()->deleteGroup(g.id);
    model().reload();
  }

  Catalog catalogNamed(const std::string& name) {
    for (const Catalog& c : model().catalogs())
      if (c.name == name) return c;
    ADD_FAILURE() << "no catalog named " << name;
    return {};
  }

  // Catalogs `root` as the program does and waits for the scan to end; its result sheet is dismissed.
  Catalog scanFolder(const std::filesystem::path& root, const QString& name, ScanOptions options = {}) {
    model().beginScan(root, name, std::nullopt, options);
    EXPECT_TRUE(
        waitUntil([&] { return !model().scanner()->isRunning() && model().scanResult().has_value(); }));
    model().dismissScanResult();
    return catalogNamed(name.toStdString());
  }

  // The record at `path` (relative to the catalog's root) of catalog `catalogID`.
  FileRecord fileAt(int64_t catalogID, const std::string& path) {
    for (const FileRecord& f : model().store()->allFiles(catalogID))
      if (f.path == path) return f;
    ADD_FAILURE() << "no record at " << path;
    return {};
  }

  QQuickWindow* window() const { return m_window.get(); }
  QQmlEngine* engine() const { return m_engine.get(); }

 private:
  std::unique_ptr<QQmlEngine> m_engine;
  std::unique_ptr<QQuickWindow> m_window;
  QObject* m_root = nullptr;
};

}  // namespace orrelin::testing
