// The shared objects' QML registrations hand out the instances C++ holds.
#include "ui/qml_singletons.h"

namespace orrelin {

AppModel* AppModelSingleton::create(QQmlEngine* engine, QJSEngine* js) {
  return AppModel::create(engine, js);
}

UIState* UIStateSingleton::create(QQmlEngine* engine, QJSEngine* js) { return UIState::create(engine, js); }

SearchState* SearchStateSingleton::create(QQmlEngine* engine, QJSEngine* js) {
  return SearchState::create(engine, js);
}

}  // namespace orrelin
