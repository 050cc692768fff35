// The main of the Qt-layer tests: one QCoreApplication for the whole run, so that objects can post to the
// main thread and tests can spin its event loop until a signal arrives.
#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
