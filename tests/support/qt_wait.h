// Waiting for a Qt signal in tests that run under the QCoreApplication of qt_test_main.cpp.
#pragma once

#include <QEventLoop>
#include <QObject>
#include <QTimer>

namespace orrelin::testing {

// Spins the event loop until `signal` of `object` fires; false after 10 s without it.
template <class Object, class Signal>
bool waitFor(Object* object, Signal signal) {
  QEventLoop loop;
  bool fired = false;
  QObject::connect(object, signal, &loop, [&] {
    fired = true;
    loop.quit();
  });
  QTimer::singleShot(10000, &loop, &QEventLoop::quit);
  loop.exec();
  return fired;
}

}  // namespace orrelin::testing
