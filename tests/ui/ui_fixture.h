// The real main window, loaded from the program's QML module, and the means to drive it as a user
// would: find a control by its object name, click it, type, and wait for the interface to follow.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "app/qt/app_model.h"
#include "support/qt_wait.h"
#include "ui/qml_setup.h"
#include "ui/ui_state.h"

namespace orrelin::testing {

// The first object named `name` below `root`, searching both the object tree and the visual item tree
// (items shown by a Loader or a popup are not always object children of what shows them).
inline QObject* findNamed(QObject* root, const QString& name) {
  if (!root) return nullptr;
  if (root->objectName() == name) return root;
  for (QObject* child : root->children()) {
    if (QObject* found = findNamed(child, name)) return found;
  }
  if (auto* item = qobject_cast<QQuickItem*>(root)) {
    for (QQuickItem* child : item->childItems()) {
      if (child->parent() == root) continue;  // Already searched as an object child.
      if (QObject* found = findNamed(child, name)) return found;
    }
  }
  if (auto* window = qobject_cast<QQuickWindow*>(root)) {
    if (QObject* found = findNamed(window->contentItem(), name)) return found;
  }
  return nullptr;
}

class MainWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_engine = std::make_unique<QQmlApplicationEngine>();
    setUpQmlEngine(*m_engine);
    m_engine->load(mainWindowUrl());
    ASSERT_FALSE(m_engine->rootObjects().isEmpty()) << "the main window did not load";
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().first());
    ASSERT_NE(m_window, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window));
  }

  void TearDown() override {
    m_engine.reset();
    QCoreApplication::processEvents();
  }

  AppModel& model() { return AppModel::shared(); }
  UIState& ui() { return UIState::shared(); }
  QQuickWindow* window() const { return m_window; }

  // The object named `name` anywhere in the main window (or the windows it owns); null when none.
  QObject* find(const QString& name) const { return findNamed(m_window, name); }
  QQuickItem* item(const QString& name) const { return qobject_cast<QQuickItem*>(find(name)); }

  // Waits until `name` exists and is visible, then returns it; fails the test otherwise.
  QQuickItem* shown(const QString& name, int timeoutMs = 5000) const {
    QQuickItem* found = nullptr;
    waitUntil(
        [&] {
          found = item(name);
          return found && found->isVisible() && found->width() > 0;
        },
        timeoutMs);
    EXPECT_TRUE(found && found->isVisible()) << name.toStdString() << " is not shown";
    return found;
  }

  // Clicks the middle of `target` with the left button, as the mouse would.
  void click(QQuickItem* target, Qt::MouseButton button = Qt::LeftButton) const {
    ASSERT_NE(target, nullptr);
    QQuickWindow* host = target->window();
    const QPointF middle = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(host, button, Qt::NoModifier, middle.toPoint());
    QCoreApplication::processEvents();
  }
  void click(const QString& name, Qt::MouseButton button = Qt::LeftButton) const {
    click(shown(name), button);
  }

  // Types `text` into the window that has the focus.
  void type(const QString& text) const {
    for (QChar c : text) {
      const Qt::Key k = c.isLetterOrNumber() && c.unicode() < 128 ? Qt::Key(c.toUpper().unicode()) : Qt::Key_unknown;
      QTest::sendKeyEvent(QTest::Press, m_window, k, QString(c), Qt::NoModifier);
      QTest::sendKeyEvent(QTest::Release, m_window, k, QString(c), Qt::NoModifier);
    }
    QCoreApplication::processEvents();
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(m_window, key, modifiers);
    QCoreApplication::processEvents();
  }

 private:
  std::unique_ptr<QQmlApplicationEngine> m_engine;
  QQuickWindow* m_window = nullptr;
};

}  // namespace orrelin::testing
