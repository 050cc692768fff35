// The main of the interface tests: a widget application (the dialogs are widgets) on the offscreen
// platform, with a data and settings folder of this process's own, so each test starts as a first run.
#include <QtQml/qqmlextensionplugin.h>
#include <QApplication>
#include <QQuickStyle>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

Q_IMPORT_QML_PLUGIN(OrrelinPlugin)

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  // CTest runs every test in a process of its own; the folder is removed by the system's temp cleaner
  // rather than here, so a failing test leaves its database behind to look at.
  const fs::path home = fs::temp_directory_path() / ("orrelin-ui-" + std::to_string(::getpid()));
  fs::remove_all(home);
  fs::create_directories(home);
  setenv("HOME", (home / "home").c_str(), 1);
  setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
  setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
  // Qt wants the runtime folder private to the user, as the session's own is.
  fs::permissions(home, fs::perms::owner_all);
  setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
  if (!getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);

  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  ::testing::InitGoogleTest(&argc, argv);
  const int status = RUN_ALL_TESTS();
  if (status == 0) fs::remove_all(home);
  return status;
}
