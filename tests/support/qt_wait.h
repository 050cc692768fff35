// Waiting in tests of the Qt layer: for a signal, for a condition, or for a while, spinning the event loop.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <functional>

namespace orrelin::testing {

// Spins the event loop until `done` holds; false after `timeoutMs` without it.
inline bool waitUntil(const std::function<bool()>& done, int timeoutMs = 15000) {
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QThread::msleep(2);
  }
  return true;
}

// Spins the event loop for `ms` milliseconds.
inline void spin(int ms) {
  QElapsedTimer clock;
  clock.start();
  while (clock.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QThread::msleep(2);
  }
}

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
