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

DuplicateState* DuplicateStateSingleton::create(QQmlEngine*, QJSEngine*) {
  DuplicateState* state = &DuplicateState::shared();
  QQmlEngine::setObjectOwnership(state, QQmlEngine::CppOwnership);
  // Every engine asks once; the store is hooked only the first time.
  static const bool hooked = [state] {
    AppModel& app = AppModel::shared();
    state->setStore(app.store());
    QObject::connect(&app, &AppModel::storeChanged, state, [state, &app] { state->setStore(app.store()); });
    return true;
  }();
  (void)hooked;
  return state;
}

}  // namespace orrelin
