// The watch command of orrelin-cli: keep the watched cartridges up to date from a terminal or a headless
// machine, with the desktop program's own watchers, quiet spell and quiet rescans; and edit the list.
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QSocketNotifier>
#include <QTimer>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <set>

#include <nlohmann/json.hpp>

#include "app/qt/app_model.h"
#include "app/qt/dialogs.h"
#include "app/watched_catalogs.h"
#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/table_text.h"
#include "core/test_timing.h"
#include "core/user_defaults.h"
#include "store/catalog_db.h"

namespace orrelin::cli {

namespace {

namespace fs = std::filesystem;

// How often the running service re-reads the watched list and the catalogs, so that `watch add` and
// scans made by other commands reach it without a restart.
constexpr std::chrono::milliseconds kResyncInterval{5000};

// The write end of the pipe on which the signal handler reports SIGINT and SIGTERM to the event loop.
int g_signalPipe = -1;

void onStopSignal(int) {
  const char byte = 1;
  [[maybe_unused]] ssize_t written = ::write(g_signalPipe, &byte, 1);
  // A second Ctrl-C ends the process at once, as it would without this handler.
  signal(SIGINT, SIG_DFL);
  signal(SIGTERM, SIG_DFL);
}

// Tests shorten every wait of the service (quiet spell, watcher latency) with this variable; it is not
// meant for users and is not documented in the help.
void applyTestTimeScale() {
  if (const char* text = std::getenv("ORRELIN_TEST_TIME_SCALE")) {
    char* end = nullptr;
    const double factor = std::strtod(text, &end);
    if (end != text && factor > 0) TestTiming::setTimeScaleForTesting(factor);
  }
}

void say(const QString& text) {
  const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
  std::printf("[%s] %s\n", stamp.toUtf8().constData(), text.toUtf8().constData());
  std::fflush(stdout);
}

QString nameInQuotes(const std::string& name) {
  return QStringLiteral("\u201C%1\u201D").arg(QString::fromStdString(name));
}

// One line per watched id: where it stands now.
void reportWatched(const AppModel& model) {
  if (model.watchedIDs().empty()) {
    say(QStringLiteral("No cartridge is watched. Add one with 'orrelin-cli watch add CARTRIDGE'."));
    return;
  }
  const std::set<int64_t> live = model.watcherIDs();
  for (int64_t id : model.watchedIDs()) {
    std::optional<Catalog> c = model.catalog(id);
    if (!c) {
      say(QStringLiteral("Cartridge %1 no longer exists; 'orrelin-cli watch remove %1' forgets it.").arg(id));
    } else if (live.count(id)) {
      say(QStringLiteral("Watching %1 (id %2) at %3")
              .arg(nameInQuotes(c->name))
              .arg(id)
              .arg(QString::fromStdString(c->rootPath)));
    } else if (model.isOnline(id)) {
      say(QStringLiteral(
              "%1 (id %2) is connected but cannot be watched now; retrying at the next change of mounts")
              .arg(nameInQuotes(c->name))
              .arg(id));
    } else {
      say(QStringLiteral("%1 (id %2) is offline; it is updated when its drive is connected")
              .arg(nameInQuotes(c->name))
              .arg(id));
    }
  }
}

int runService(const Context& context) {
  applyTestTimeScale();
  static int argc = 1;
  static char name[] = "orrelin-cli";
  static char* argv[] = {name, nullptr};
  QCoreApplication app(argc, argv);
  // Qt adopts the user's locale for everything; numbers written into catalogs and files must keep "."
  // as their decimal sign, whatever the user's language.
  std::setlocale(LC_NUMERIC, "C");
  // Nobody is at a window to answer: every question is cancelled, and alerts and toasts are printed.
  Dialogs::setAnswerer([](const Dialogs::Request&) { return Dialogs::Answer::cancel(); });

  int fds[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds) != 0)
    return failure("could not set up signal handling");
  g_signalPipe = fds[0];
  struct sigaction action {};
  action.sa_handler = onStopSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);

  std::optional<fs::path> database;
  if (!context.databasePath.empty()) database = fs::path(context.databasePath);
  AppModel model(database);
  if (!model.hasStore()) return failure(model.alert() ? model.alert()->message.toStdString() : "no database");

  QObject::connect(&model, &AppModel::alertChanged, &model, [&model] {
    if (model.alert()) say(model.alert()->title + QStringLiteral(": ") + model.alert()->message);
  });
  QObject::connect(&model, &AppModel::toastChanged, &model, [&model] {
    if (model.toast()) say(*model.toast());
  });
  ScanEngine* scanner = model.scanner();
  QObject::connect(scanner, &ScanEngine::isRunningChanged, &model, [scanner, &model] {
    if (!scanner->isRunning()) return;
    // The engine names the scan just after it announces that one runs.
    QTimer::singleShot(0, &model, [scanner] {
      say(QStringLiteral("Updating %1\u2026").arg(nameInQuotes(scanner->catalogName().toStdString())));
    });
  });
  QObject::connect(&model, &AppModel::watchedIDsChanged, &model, [&model] { reportWatched(model); });

  QTimer resync;
  QObject::connect(&resync, &QTimer::timeout, &model, [&model] {
    model.reload();
    model.reloadWatchedIDs();
  });
  resync.start(TestTiming::scaled(kResyncInterval));

  // Stopping: a running update is cancelled (what it wrote stays) and waited for, then the loop ends.
  QSocketNotifier notifier(fds[1], QSocketNotifier::Read);
  bool stopping = false;
  QObject::connect(&notifier, &QSocketNotifier::activated, &model, [&] {
    char byte;
    [[maybe_unused]] ssize_t got = ::read(fds[1], &byte, 1);
    if (stopping) return;
    stopping = true;
    resync.stop();
    // Nothing new starts from here on: the end of the running update would otherwise start the next
    // pending one, which the quitting process would leave half done.
    model.stopAutoUpdates();
    if (!scanner->isRunning()) {
      app.quit();
      return;
    }
    say(QStringLiteral("Stopping after the running update\u2026"));
    QObject::connect(scanner, &ScanEngine::isRunningChanged, &app, [scanner, &app] {
      if (!scanner->isRunning()) app.quit();
    });
    scanner->cancel();
  });

  say(QStringLiteral("Watching for changes; Ctrl-C stops."));
  reportWatched(model);
  app.exec();
  say(QStringLiteral("Stopped."));
  signal(SIGINT, SIG_DFL);
  signal(SIGTERM, SIG_DFL);
  ::close(fds[0]);
  ::close(fds[1]);
  g_signalPipe = -1;
  Dialogs::setAnswerer({});
  return kExitOk;
}

// The catalogs named on the command line, all found before anything is changed.
std::optional<std::vector<Catalog>> findAll(CatalogDB& store, const std::vector<std::string>& names,
                                            std::string& error) {
  std::vector<Catalog> found;
  for (const std::string& name : names) {
    std::optional<Catalog> c = findCatalog(store, name, error);
    if (!c) return std::nullopt;
    found.push_back(*c);
  }
  return found;
}

int save(const std::set<int64_t>& ids) {
  if (!WatchedCatalogs::write(ids))
    return failure("could not write the settings file " + UserDefaults::filePath().string());
  return kExitOk;
}

int add(const Args& args, const Context& context) {
  const auto& names = args.positionals();
  if (names.size() < 2) return usageError("watch", "which cartridge? (give its id or name)");
  CatalogDB store(databasePath(context));
  std::string error;
  auto catalogs = findAll(store, {names.begin() + 1, names.end()}, error);
  if (!catalogs) return failure(error);
  std::set<int64_t> ids = WatchedCatalogs::read();
  for (const Catalog& c : *catalogs) {
    const bool added = ids.insert(c.id).second;
    std::printf("%s “%s” (id %lld)\n", added ? "Watching" : "Already watching", c.name.c_str(),
                static_cast<long long>(c.id));
    if (c.rootPath.empty() || c.isSample)
      std::printf("  note: it has no folder on disk (%s), so there is nothing to follow\n",
                  c.isSample ? "demonstration data" : "imported from a file");
  }
  return save(ids);
}

int remove(const Args& args, const Context& context) {
  const auto& names = args.positionals();
  if (names.size() < 2) return usageError("watch", "which cartridge? (give its id or name)");
  CatalogDB store(databasePath(context));
  std::set<int64_t> ids = WatchedCatalogs::read();
  std::vector<std::pair<int64_t, std::string>> targets;
  for (size_t i = 1; i < names.size(); ++i) {
    std::string error;
    if (std::optional<Catalog> c = findCatalog(store, names[i], error)) {
      targets.emplace_back(c->id, "“" + c->name + "”");
      continue;
    }
    // A deleted catalog's id can still be forgotten.
    const std::string& text = names[i];
    if (!text.empty() && text.size() < 19 && text.find_first_not_of("0123456789") == std::string::npos &&
        ids.count(std::stoll(text))) {
      targets.emplace_back(std::stoll(text), "cartridge " + text);
      continue;
    }
    return failure(error);
  }
  for (const auto& [id, label] : targets)
    std::printf("%s %s (id %lld)\n", ids.erase(id) ? "Stopped watching" : "Was not watching", label.c_str(),
                static_cast<long long>(id));
  return save(ids);
}

int list(const Args& args, const Context& context) {
  if (args.positionals().size() > 1) return usageError("watch", "'list' takes no arguments");
  CatalogDB store(databasePath(context));
  const std::set<int64_t> ids = WatchedCatalogs::read();
  nlohmann::json rows = nlohmann::json::array();
  for (int64_t id : ids) {
    std::optional<Catalog> c = store.catalog(id);
    nlohmann::json row = {{"id", id}, {"name", nullptr}, {"rootPath", nullptr}, {"state", "missing"}};
    if (c) {
      row["name"] = c->name;
      row["rootPath"] = c->rootPath;
      row["state"] = AppModel::isOnlineNow(*c) ? "online" : "offline";
    }
    rows.push_back(row);
  }
  if (args.flag("--json")) {
    std::printf("%s\n", rows.dump(2).c_str());
    return kExitOk;
  }
  if (rows.empty()) {
    std::puts("No cartridge is watched.");
    return kExitOk;
  }
  std::printf("%6s  %-28s %-8s %s\n", "ID", "NAME", "STATE", "FOLDER");
  for (const nlohmann::json& row : rows) {
    std::printf("%6lld  %s %-8s %s\n", static_cast<long long>(row["id"].get<int64_t>()),
                padded(row["name"].is_null() ? "(deleted)" : row["name"].get<std::string>(), 28).c_str(),
                row["state"].get<std::string>().c_str(),
                row["rootPath"].is_null() ? "" : row["rootPath"].get<std::string>().c_str());
  }
  return kExitOk;
}

int watch(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json"}, {});
  if (!args.ok()) return usageError("watch", args.error());
  const auto& positionals = args.positionals();
  if (positionals.empty()) {
    if (args.flag("--json")) return usageError("watch", "--json goes with 'watch list'");
    return runService(context);
  }
  const std::string& action = positionals.front();
  if (action == "list") return list(args, context);
  if (args.flag("--json")) return usageError("watch", "--json goes with 'watch list'");
  if (action == "add") return add(args, context);
  if (action == "remove") return remove(args, context);
  return usageError("watch", "unknown action '" + action + "' (add, remove or list)");
}

}  // namespace

void addWatchCommands(CommandTable& table) {
  table["watch"] = {
      "keep watched cartridges up to date; add, remove or list them",
      "usage: orrelin-cli [--db PATH] watch\n"
      "       orrelin-cli [--db PATH] watch add CARTRIDGE...\n"
      "       orrelin-cli [--db PATH] watch remove CARTRIDGE...\n"
      "       orrelin-cli [--db PATH] watch list [--json]\n"
      "\n"
      "'watch' alone runs until stopped and keeps every watched cartridge up to date, as the desktop\n"
      "program's auto-update does: while a cartridge's drive is connected, changes below its folder are\n"
      "noticed, and once the drive has been quiet for 6 seconds the cartridge is rescanned with the stored\n"
      "scan settings, one cartridge at a time. A watched drive that is plugged in is rescanned once on\n"
      "arrival; drives connected when the command starts are only watched. Each update, and each message\n"
      "the program would show, is printed with the time. Changes to the watched list and new cartridges\n"
      "are picked up within a few seconds. Ctrl-C (or SIGTERM) stops; a running update is cancelled first,\n"
      "keeping what it wrote. Run only one of these, and not beside the desktop program's own auto-update.\n"
      "\n"
      "'watch add' and 'watch remove' switch auto-update on and off for cartridges named by id or name\n"
      "(the setting the desktop program keeps); 'remove' also takes the id of a cartridge that was\n"
      "deleted. 'watch list' shows the watched cartridges and whether each drive is connected now.\n"
      "\n"
      "Exit status: 0 done or stopped, 1 a failure (the message says why), 2 a wrong command line.\n",
      watch};
}

}  // namespace orrelin::cli
