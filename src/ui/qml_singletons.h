// The program's shared state objects as QML singletons. Qt 6.4 makes a singleton with the class's default
// constructor whenever it has one and ignores the class's own static create(), so QML would get a second,
// separate AppModel (and UIState, SearchState). Registered through these wrappers instead, QML asks
// create() and gets the one instance that the C++ side uses too.
#pragma once

#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "app/qt/app_model.h"
#include "search/qt/search_state.h"
#include "ui/ui_state.h"

class QJSEngine;
class QQmlEngine;

namespace orrelin {

struct AppModelSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::AppModel)
  QML_NAMED_ELEMENT(AppModel)
  QML_SINGLETON

 public:
  // The shared instance, kept owned by C++.
  static AppModel* create(QQmlEngine* engine, QJSEngine* js) { return AppModel::create(engine, js); }
};

struct UIStateSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::UIState)
  QML_NAMED_ELEMENT(UIState)
  QML_SINGLETON

 public:
  static UIState* create(QQmlEngine* engine, QJSEngine* js) { return UIState::create(engine, js); }
};

struct SearchStateSingleton {
  Q_GADGET
  QML_FOREIGN(orrelin::SearchState)
  QML_NAMED_ELEMENT(SearchState)
  QML_SINGLETON

 public:
  static SearchState* create(QQmlEngine* engine, QJSEngine* js) { return SearchState::create(engine, js); }
};

}  // namespace orrelin
