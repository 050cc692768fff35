// How long the desktop program takes from process start to the main window's first frame, with an empty
// catalog database and with one of 1,000,000 records, side by side.
//
//   nice xvfb-run -a -s "-screen 0 1600x1200x24" build/bench/startup_bench     under a real X server
//   QT_QPA_PLATFORM=offscreen nice build/bench/startup_bench                     without a display
//   build/bench/startup_bench --runs 9 --records 200000 --backup-due
//
// Each run is a fresh process of this program (`--child`), started as the desktop program starts: the same
// application set-up, the same QML module and Main.qml, the real AppModel on the database of its data
// folder. The child reports when its QApplication exists, when Main.qml is loaded (AppModel built, catalogs
// read) and when the window's first frame is swapped, then exits. The parent times every run from just
// before it starts the process to that last report, so loading the executable and its libraries counts.
// One warm-up run per database is not counted; the figure is the median of the runs that follow.
//
// The million-record library is built once and reused (see synthetic_library.h); each case has its own
// data and settings folders under the benchmark folder. Normally the day's automatic backup is marked as
// done, as it is on every start but the first of a day; `--backup-due` leaves it due, to show that start.
#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "app/backup_manager.h"
#include "core/date.h"
#include "synthetic_library.h"
#include "ui/qml_setup.h"

// The QML module's types are registered by this function of the Qt layer; calling it also keeps the
// registration linked into this program, which does not link the module's plugin.
extern void qml_register_types_Orrelin();

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// ---- the child: the desktop program's start, timed --------------------------------------------------

void report(const char* what, const QElapsedTimer& clock) {
  std::printf("%s %.3f\n", what, static_cast<double>(clock.nsecsElapsed()) / 1e6);
  std::fflush(stdout);
}

int runChild(int argc, char** argv) {
  QElapsedTimer clock;
  clock.start();
  qml_register_types_Orrelin();
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(QStringLiteral("TVRL Orrelin"));
  QApplication::setOrganizationName(QStringLiteral("Tavrel Works"));
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  report("app", clock);

  QQmlApplicationEngine engine;
  engine.addImportPath(QStringLiteral("qrc:/"));
  orrelin::setUpQmlEngine(engine);
  engine.load(orrelin::mainWindowUrl());
  if (engine.rootObjects().isEmpty()) {
    std::fprintf(stderr, "startup_bench: the main window did not load\n");
    return 1;
  }
  report("loaded", clock);
  auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
  if (!window) {
    std::fprintf(stderr, "startup_bench: the main window is not a window\n");
    return 1;
  }
  QObject::connect(
      window, &QQuickWindow::frameSwapped, &app,
      [&clock] {
        report("frame", clock);
        // Nothing after the first frame is measured; leave without tearing the program down.
        std::_Exit(0);
      },
      Qt::DirectConnection);
  return QApplication::exec();
}

// ---- the parent: the cases, the runs and the table ---------------------------------------------------

struct Run {
  double total = 0;  // From before the process started to its first frame, in milliseconds.
  std::map<std::string, double> marks;  // The child's own clock.
};

bool runOnce(const fs::path& self, const fs::path& home, Run& run) {
  int out[2];
  if (::pipe(out) != 0) return false;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, out[0]);

  std::vector<std::string> env;
  for (char** e = environ; *e; ++e) {
    if (std::strncmp(*e, "XDG_DATA_HOME=", 14) != 0 && std::strncmp(*e, "XDG_CONFIG_HOME=", 16) != 0)
      env.emplace_back(*e);
  }
  env.push_back("XDG_DATA_HOME=" + (home / "data").string());
  env.push_back("XDG_CONFIG_HOME=" + (home / "config").string());
  if (!std::getenv("XDG_RUNTIME_DIR")) env.push_back("XDG_RUNTIME_DIR=" + home.string());
  std::vector<char*> envp;
  for (std::string& e : env) envp.push_back(e.data());
  envp.push_back(nullptr);
  std::string selfText = self.string(), childFlag = "--child";
  char* args[] = {selfText.data(), childFlag.data(), nullptr};

  const Clock::time_point started = Clock::now();
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, selfText.c_str(), &actions, nullptr, args, envp.data());
  posix_spawn_file_actions_destroy(&actions);
  ::close(out[1]);
  if (spawned != 0) {
    ::close(out[0]);
    return false;
  }
  FILE* in = ::fdopen(out[0], "r");
  char line[256];
  bool framed = false;
  while (std::fgets(line, sizeof line, in)) {
    char what[32];
    double ms = 0;
    if (std::sscanf(line, "%31s %lf", what, &ms) != 2) continue;
    run.marks[what] = ms;
    if (std::strcmp(what, "frame") == 0) {
      run.total = std::chrono::duration<double, std::milli>(Clock::now() - started).count();
      framed = true;
    }
  }
  std::fclose(in);
  int status = 0;
  ::waitpid(pid, &status, 0);
  return framed && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t n = values.size();
  return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

struct Case {
  std::string name;
  fs::path home;
  std::vector<Run> runs;
};

// Prepares a case's folders: its settings (the day's backup done unless `backupDue`) and, when `library`
// is given, a copy of that database as the program's own.
void prepareCase(const fs::path& home, const fs::path* library, bool backupDue) {
  fs::create_directories(home / "data" / "TVRL Orrelin");
  fs::create_directories(home / "config");
  // The home of a case doubles as the runtime folder, which Qt wants private.
  fs::permissions(home, fs::perms::owner_all, fs::perm_options::replace);
  const fs::path database = home / "data" / "TVRL Orrelin" / "Catalogs.sqlite";
  if (library) {
    std::error_code ec;
    // Copied, not linked: the program may write to its database, and the library is shared with the other
    // benchmarks. A copy as large and as new as the library is kept.
    const bool current = fs::exists(database, ec) && fs::file_size(database, ec) == fs::file_size(*library) &&
                         fs::last_write_time(database, ec) >= fs::last_write_time(*library);
    if (!current) {
      for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(database.string() + suffix, ec);
      fs::copy_file(*library, database, fs::copy_options::overwrite_existing);
    }
  }
  // Settings are written through the program's own code, pointed at this case's folder.
  ::setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
  if (backupDue) {
    orrelin::BackupManager::setLastBackup(orrelin::Date::fromSeconds(0));
  } else {
    orrelin::BackupManager::setLastBackup(orrelin::Date::now());
  }
  // Backups a due run made would otherwise pile up across runs.
  std::error_code ec;
  fs::remove_all(home / "data" / "TVRL Orrelin" / "Backups", ec);
}

int runParent(int runs, int64_t records, bool backupDue) {
  const fs::path self = fs::read_symlink("/proc/self/exe");
  const fs::path folder = orrelin::bench::benchDirectory() / "startup";

  orrelin::bench::LibraryShape shape;
  shape.records = records;
  const fs::path libraryPath = orrelin::bench::syntheticLibraryPath(shape);
  {
    orrelin::bench::LibraryInfo info;
    std::printf("Library of %lld records: %s\n", static_cast<long long>(records), libraryPath.c_str());
    std::fflush(stdout);
    auto store = orrelin::bench::openSyntheticLibrary(libraryPath, shape, &info);
    std::printf("  %s\n", info.reused ? "reused" : ("built in " + std::to_string(info.buildSeconds) + " s").c_str());
  }

  std::vector<Case> cases;
  cases.push_back({"empty", folder / "empty", {}});
  cases.push_back({std::to_string(records) + " records", folder / ("library-" + std::to_string(records)), {}});
  // An empty case starts from no database at all, as a first start does; its warm-up run creates it.
  std::error_code ec;
  fs::remove_all(cases[0].home, ec);
  prepareCase(cases[0].home, nullptr, backupDue);
  prepareCase(cases[1].home, &libraryPath, backupDue);

  // Warm-up and runs alternate between the cases, so a slow moment of the machine hits both alike.
  for (int i = 0; i <= runs; ++i) {
    for (Case& c : cases) {
      if (backupDue) prepareCase(c.home, c.name == "empty" ? nullptr : &libraryPath, true);
      Run run;
      if (!runOnce(self, c.home, run)) {
        std::fprintf(stderr, "startup_bench: run %d of %s failed\n", i, c.name.c_str());
        return 1;
      }
      if (i > 0) c.runs.push_back(run);
    }
  }

  const char* platform = std::getenv("QT_QPA_PLATFORM");
  std::printf("\nStart to first frame, median of %d runs (platform %s%s):\n\n", runs,
              platform && *platform ? platform : "default",
              backupDue ? ", the day's backup due" : ", the day's backup done");
  std::printf("%-18s %10s %10s %10s %10s %10s %10s\n", "database", "total ms", "min ms", "max ms", "app ms",
              "load ms", "frame ms");
  for (const Case& c : cases) {
    std::vector<double> totals, apps, loads, frames;
    for (const Run& r : c.runs) {
      totals.push_back(r.total);
      apps.push_back(r.total - r.marks.at("frame") + r.marks.at("app"));
      loads.push_back(r.marks.at("loaded") - r.marks.at("app"));
      frames.push_back(r.marks.at("frame") - r.marks.at("loaded"));
    }
    std::printf("%-18s %10.1f %10.1f %10.1f %10.1f %10.1f %10.1f\n", c.name.c_str(), median(totals),
                *std::min_element(totals.begin(), totals.end()), *std::max_element(totals.begin(), totals.end()),
                median(apps), median(loads), median(frames));
  }
  std::printf("\ntotal: process start to first frame, as the parent saw it; app: process start to the "
              "QApplication (executable, libraries, platform); load: Main.qml with AppModel (database opened, "
              "catalogs read); frame: the first frame after the load.\n");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  int runs = 5;
  int64_t records = 1'000'000;
  bool backupDue = false;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--child") return runChild(argc, argv);
    if (arg == "--runs" && i + 1 < argc) {
      runs = std::max(1, std::atoi(argv[++i]));
    } else if (arg == "--records" && i + 1 < argc) {
      records = std::max<int64_t>(1000, std::atoll(argv[++i]));
    } else if (arg == "--backup-due") {
      backupDue = true;
    } else {
      std::fprintf(stderr, "usage: startup_bench [--runs N] [--records N] [--backup-due]\n");
      return 2;
    }
  }
  return runParent(runs, records, backupDue);
}
