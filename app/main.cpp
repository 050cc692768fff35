// orrelin: the desktop program. "--selftest" runs the built-in checks without any window; otherwise the
// main window opens, always dark.
#include <QApplication>
#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QString>
#include <QStyleFactory>
#include <QtQml/qqmlextensionplugin.h>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

#include "app/self_test.h"
#include "core/app_info.h"
#include "ui/qml_setup.h"

// The screens are compiled into the program as the static QML module "Orrelin".
Q_IMPORT_QML_PLUGIN(OrrelinPlugin)

namespace {

std::string versionText() {
  return std::string(orrelin::AppInfo::name) + " " + orrelin::AppInfo::version() + " (build " +
         orrelin::AppInfo::build() + ")";
}

QString qstring(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The program has no light look, whatever the desktop's setting: Fusion with a dark palette.
void makeDark(QApplication& app) {
  app.setStyle(QStyleFactory::create("Fusion"));
  QPalette dark;
  const QColor window(0x1c, 0x1d, 0x21), base(0x14, 0x15, 0x18), text(0xe8, 0xe8, 0xea);
  const QColor accent(0x4f, 0x9d, 0xff), muted(0x7a, 0x7c, 0x84);
  dark.setColor(QPalette::Window, window);
  dark.setColor(QPalette::WindowText, text);
  dark.setColor(QPalette::Base, base);
  dark.setColor(QPalette::AlternateBase, window);
  dark.setColor(QPalette::ToolTipBase, base);
  dark.setColor(QPalette::ToolTipText, text);
  dark.setColor(QPalette::PlaceholderText, muted);
  dark.setColor(QPalette::Text, text);
  dark.setColor(QPalette::Button, QColor(0x2a, 0x2c, 0x31));
  dark.setColor(QPalette::ButtonText, text);
  dark.setColor(QPalette::BrightText, Qt::white);
  dark.setColor(QPalette::Link, accent);
  dark.setColor(QPalette::Highlight, accent);
  dark.setColor(QPalette::HighlightedText, Qt::black);
  for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    dark.setColor(QPalette::Disabled, role, muted);
  app.setPalette(dark);
}

const char* const kUsage =
    "usage: orrelin [--selftest | --version | --help] [OPTION...]\n"
    "\n"
    "  --selftest         run the built-in checks in a temporary folder, without a window; exit status\n"
    "                     0 when all passed, 1 otherwise. The user's catalogs and settings are not touched.\n"
    "  --version          the program's version and build\n"
    "\n"
    "Options applied when the main window first shows:\n"
    "  --sample           load the sample cartridges, unless they are loaded already\n"
    "  --theme=NAME       the colour theme whose name begins with NAME (obsidian, aurora, solar, deep,\n"
    "                     mono, synth)\n"
    "  --section=NAME     open a screen: browse, search, duplicates, statistics, web, tools\n"
    "  --tool=NAME        open a pane of the Tools screen (export, organization, rename, empty, large,\n"
    "                     missing, compare)\n"
    "  --select=TEXT      select the first catalog whose name contains TEXT\n"
    "  --scan=PATH        catalog PATH with the default options\n"
    "  --qa-new-catalog   open the New Catalog sheet\n"
    "  --qa-about         open the About window\n"
    "  --qa-alert         show a sample alert\n"
    "\n"
    "For terminals and scripts there is orrelin-cli.\n";

}  // namespace

int main(int argc, char** argv) {
  // Exact equality, anywhere on the command line, and before anything that needs a display.
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--selftest") == 0) return orrelin::runSelfTest(std::cout);
  }
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--version") == 0) {
      std::printf("%s\n", versionText().c_str());
      return 0;
    }
    if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
      std::fputs(kUsage, stdout);
      return 0;
    }
  }

  QApplication app(argc, argv);
  // Qt adopts the user's locale for everything; numbers written into catalogs and files must keep "."
  // as their decimal sign, whatever the user's language.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(qstring(orrelin::AppInfo::name));
  // No display name: the window manager would append it to every window title ("Orrelin · TVRL — …").
  QApplication::setOrganizationName(qstring(orrelin::AppInfo::company));
  QApplication::setApplicationVersion(QString::fromStdString(orrelin::AppInfo::version()));
  QApplication::setQuitOnLastWindowClosed(true);
  QApplication::setDesktopFileName(QStringLiteral("tvrl-orrelin"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/Orrelin/icons/app.orrelin.svg")));
  makeDark(app);
  // Basic draws every control from the program's own look, with nothing of the desktop's style.
  QQuickStyle::setStyle(QStringLiteral("Basic"));

  QQmlApplicationEngine engine;
  orrelin::setUpQmlEngine(engine);
  QObject::connect(
      &engine, &QQmlApplicationEngine::objectCreationFailed, &app, [] { QCoreApplication::exit(1); },
      Qt::QueuedConnection);
  engine.load(orrelin::mainWindowUrl());
  if (engine.rootObjects().isEmpty()) return 1;
  return QApplication::exec();
}
