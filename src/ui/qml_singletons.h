// The program's shared objects as QML singletons. QML must be handed the one instance C++ uses, but Qt
// 6.4 builds a singleton with its default constructor whenever the class has one, before it looks for a
// static create(); AppModel, UIState and SearchState all have one (for tests and the command-line
// tool). So they are registered here, through foreign wrappers whose create() QML always calls.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QQmlEngine>

#include "app/qt/app_model.h"
#include "search/qt/duplicate_state.h"
#include "search/qt/search_state.h"
#include "ui/ui_state.h"

namespace orrelin {

struct AppModelSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::AppModel)
  QML_NAMED_ELEMENT(AppModel)
  QML_SINGLETON

 public:
  // AppModel::shared(), owned by C++.
  static AppModel* create(QQmlEngine* engine, QJSEngine* js);
};

struct UIStateSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::UIState)
  QML_NAMED_ELEMENT(UIState)
  QML_SINGLETON

 public:
  // UIState::shared(), owned by C++.
  static UIState* create(QQmlEngine* engine, QJSEngine* js);
};

struct SearchStateSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::SearchState)
  QML_NAMED_ELEMENT(SearchState)
  QML_SINGLETON

 public:
  // SearchState::shared(), owned by C++.
  static SearchState* create(QQmlEngine* engine, QJSEngine* js);
};

struct DuplicateStateSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::DuplicateState)
  QML_NAMED_ELEMENT(DuplicateState)
  QML_SINGLETON

 public:
  // DuplicateState::shared(), owned by C++, reading AppModel's database: the one open now, and each one
  // that replaces it (a restore from a backup).
  static DuplicateState* create(QQmlEngine* engine, QJSEngine* js);
};

}  // namespace orrelin
