// How the Browse screen copes with one folder of 100,000 entries, in the real main window: the time from
// the click that opens the folder to the first frame that shows its rows, and then, scrolling the folder
// to its end a step at a time, how many frames took longer than 16.7 ms (one frame at 60 Hz) and 33 ms.
// Both the column view and the list, each several times; the medians of the runs are printed, with the
// processor time per frame, which a busy machine disturbs less than the clock.
//
//   xvfb-run -a -s '-screen 0 1600x1200x24' build/bench/browse_bench [--entries=N] [--runs=N]
//       [--steps=N | --step=PAGES]
//
// The scroll goes from the top to the end in N equal jumps (100 by default: dragging the scroll bar, each
// frame a page never made before), or in steps of a given share of a page (0.1: a wheel's notches).
// Without a display it runs on the offscreen platform (QT_QPA_PLATFORM=offscreen), whose frames are
// drawn by software as well. The catalog is a real scan of N empty files in one folder under a temporary
// directory, into a database and settings folder of the run's own, all removed at the end. Each open
// starts from a cold cache (a reload of the data first), so the figure includes the database read.
#include <fcntl.h>
#include <unistd.h>

#include <QtQml/qqmlextensionplugin.h>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QThread>
#include <QTimer>

#include <ctime>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "app/qt/app_model.h"
#include "store/catalog_db.h"
#include "ui/catalog_browser.h"
#include "ui/qml_setup.h"
#include "ui/ui_state.h"

void qml_register_types_Orrelin();  // Made by the QML module's build; the program's plugin calls it.

namespace orrelin::bench {
namespace {

namespace fs = std::filesystem;

struct Options {
  int entries = 100000;
  int runs = 5;
  double step = 0;  // Pages per scroll step; 0: `steps` equal steps from the top to the end.
  int steps = 100;
};

Options parse(int argc, char** argv) {
  Options o;
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (a.rfind("--entries=", 0) == 0)
      o.entries = std::max(1, std::stoi(a.substr(10)));
    else if (a.rfind("--runs=", 0) == 0)
      o.runs = std::max(1, std::stoi(a.substr(7)));
    else if (a.rfind("--step=", 0) == 0)
      o.step = std::max(0.05, std::stod(a.substr(7)));
    else if (a.rfind("--steps=", 0) == 0)
      o.steps = std::max(1, std::stoi(a.substr(8)));
  }
  return o;
}

void spinUntil(const std::function<bool()>& done, int timeoutMs = 60000) {
  QElapsedTimer clock;
  clock.start();
  while (!done() && clock.elapsed() < timeoutMs) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  }
}

QObject* findNamed(QObject* root, const QString& name) {
  if (!root) return nullptr;
  if (root->objectName() == name) return root;
  for (QObject* child : root->children())
    if (QObject* found = findNamed(child, name)) return found;
  if (auto* item = qobject_cast<QQuickItem*>(root)) {
    for (QQuickItem* child : item->childItems())
      if (child->parent() != root)
        if (QObject* found = findNamed(child, name)) return found;
  }
  return nullptr;
}

// The processor time the whole process has used, in milliseconds: unlike the clock, it does not count
// the time other programs on a busy machine take.
double cpuMs() {
  timespec t{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

// Waits, in an event loop that sleeps rather than spins, for the next frame the window puts on screen;
// returns the milliseconds from `since`.
double nextFrame(QQuickWindow* window, const QElapsedTimer& since) {
  QEventLoop loop;
  bool swapped = false;
  double at = 0;
  auto c = QObject::connect(window, &QQuickWindow::frameSwapped, &loop, [&] {
    if (!swapped) at = static_cast<double>(since.nsecsElapsed()) / 1e6;
    swapped = true;
    loop.quit();
  });
  QTimer::singleShot(10000, &loop, &QEventLoop::quit);
  window->update();
  if (!swapped) loop.exec();
  QObject::disconnect(c);
  return at;
}

double median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  return v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

struct Run {
  double openMs = 0;
  int frames = 0;
  int over16 = 0;
  int over33 = 0;
  double medianFrameMs = 0;
  double worstFrameMs = 0;
  double scrollSeconds = 0;
  double cpuPerFrameMs = 0;  // Processor time per frame, all threads.
};

Run measure(QQuickWindow* window, CatalogBrowser* browser, const FileRecord& folder, BrowseMode mode,
            const Options& options) {
  Run run;
  browser->setMode(mode);
  browser->goTo(0);
  AppModel::shared().reload();  // A cold cache: the open reads the folder from the database.
  nextFrame(window, QElapsedTimer());

  QElapsedTimer clock;
  clock.start();
  browser->select(folder.id, 0);
  run.openMs = nextFrame(window, clock);

  const QString listName =
      mode == BrowseMode::list ? QStringLiteral("folderList") : QStringLiteral("columnList1");
  auto* list = qobject_cast<QQuickItem*>(findNamed(window, listName));
  if (!list) {
    std::fprintf(stderr, "no %s in the window\n", qPrintable(listName));
    return run;
  }
  std::vector<double> frameTimes;
  QElapsedTimer whole;
  whole.start();
  const double cpuStart = cpuMs();
  const double page =
      options.step > 0
          ? list->height() * options.step
          : std::max(1.0, (list->property("contentHeight").toDouble() - list->height()) / options.steps);
  for (;;) {
    const double contentHeight = list->property("contentHeight").toDouble();
    const double end = std::max(0.0, contentHeight - list->height());
    const double y = list->property("contentY").toDouble();
    if (y >= end - 0.5) break;
    QElapsedTimer frame;
    frame.start();
    list->setProperty("contentY", std::min(end, y + page));
    frameTimes.push_back(nextFrame(window, frame));
  }
  run.scrollSeconds = static_cast<double>(whole.elapsed()) / 1000;
  run.frames = static_cast<int>(frameTimes.size());
  if (run.frames > 0) run.cpuPerFrameMs = (cpuMs() - cpuStart) / run.frames;
  for (double t : frameTimes) {
    run.over16 += t > 16.7;
    run.over33 += t > 33.3;
    run.worstFrameMs = std::max(run.worstFrameMs, t);
  }
  run.medianFrameMs = median(frameTimes);
  return run;
}

int benchMain(int argc, char** argv) {
  const Options options = parse(argc, argv);
  // A data and settings folder of the run's own.
  const fs::path home = fs::temp_directory_path() / ("orrelin-browse-bench-" + std::to_string(::getpid()));
  fs::remove_all(home);
  fs::create_directories(home / "tree" / "Big");
  setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
  setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);

  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  qml_register_types_Orrelin();

  std::printf("Making %d empty files and scanning them...\n", options.entries);
  std::fflush(stdout);
  for (int i = 0; i < options.entries; ++i) {
    const fs::path file = home / "tree" / "Big" / ("entry " + std::to_string(i) + ".dat");
    const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd >= 0) ::close(fd);
  }
  AppModel& model = AppModel::shared();
  QElapsedTimer scanClock;
  scanClock.start();
  ScanOptions scan;
  scan.metadata = false;
  scan.thumbnails = false;
  model.beginScan(home / "tree", QStringLiteral("Bench"), std::nullopt, scan);
  spinUntil([&] { return !model.scanner()->isRunning() && model.scanResult().has_value(); }, 600000);
  model.dismissScanResult();
  std::printf("Scanned in %.1f s\n", static_cast<double>(scanClock.elapsed()) / 1000);
  if (model.catalogs().empty()) return 1;
  const Catalog catalog = model.catalogs().front();
  std::optional<FileRecord> folder;
  for (const FileRecord& f : model.store()->children(catalog.id, 0, true))
    if (f.name == "Big") folder = f;
  if (!folder) return 1;
  model.setSelectedCatalogID(catalog.id);
  model.setSection(AppSection::browse);

  QQmlApplicationEngine engine;
  setUpQmlEngine(engine);
  engine.load(mainWindowUrl());
  if (engine.rootObjects().isEmpty()) return 1;
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
  spinUntil([&] { return window->isExposed(); }, 10000);
  CatalogBrowser* browser = nullptr;
  spinUntil([&] { return (browser = qobject_cast<CatalogBrowser*>(findNamed(window, "catalogBrowser"))); });
  if (!browser) return 1;
  nextFrame(window, QElapsedTimer());

  std::printf("Platform %s, window %dx%d, %d runs, scrolling in %s\n",
              qPrintable(QGuiApplication::platformName()), window->width(), window->height(), options.runs,
              options.step > 0 ? qPrintable(QString("steps of %1 page").arg(options.step))
                               : qPrintable(QString("%1 equal jumps").arg(options.steps)));
  std::printf("%-8s %10s %8s %8s %8s %10s %10s %10s %10s\n", "mode", "open ms", "frames", ">16.7ms", ">33ms",
              "median ms", "worst ms", "scroll s", "cpu ms/f");
  for (BrowseMode mode : {BrowseMode::columns, BrowseMode::list}) {
    std::vector<double> open, frames, over16, over33, med, worst, seconds, cpu;
    for (int r = 0; r < options.runs; ++r) {
      const Run run = measure(window, browser, *folder, mode, options);
      open.push_back(run.openMs);
      frames.push_back(run.frames);
      over16.push_back(run.over16);
      over33.push_back(run.over33);
      med.push_back(run.medianFrameMs);
      worst.push_back(run.worstFrameMs);
      seconds.push_back(run.scrollSeconds);
      cpu.push_back(run.cpuPerFrameMs);
    }
    std::printf("%-8s %10.1f %8.0f %8.0f %8.0f %10.2f %10.1f %10.1f %10.2f\n", qPrintable(rawText(mode)),
                median(open), median(frames), median(over16), median(over33), median(med), median(worst),
                median(seconds), median(cpu));
    std::fflush(stdout);
  }
  fs::remove_all(home);
  return 0;
}

}  // namespace
}  // namespace orrelin::bench

int main(int argc, char** argv) { return orrelin::bench::benchMain(argc, argv); }
