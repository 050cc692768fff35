// Auto-update: watched catalogs are rescanned quietly after their drive has been quiet for a while, and
// once when their drive is plugged in. One watcher per catalog that is both watched and online.
#include <QTimer>

#include "app/qt/app_model.h"
#include "app/qt/folder_watcher.h"
#include "app/watched_catalogs.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "core/test_timing.h"
#include "core/user_defaults.h"
#include "organize/qt/rename_pane_state.h"

namespace orrelin {

namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }

// What the program writes to on its own: the database with its journal files, the thumbnails, the data
// folder (backups and undo logs) and the settings. The database's files are named one by one: a database
// kept by path in some folder does not make all of that folder the program's.
std::vector<std::filesystem::path> ownPaths(const std::filesystem::path& database,
                                            const std::filesystem::path& thumbnails) {
  std::vector<std::filesystem::path> paths{thumbnails, database};
  for (const char* suffix : {"-wal", "-shm", "-journal"}) paths.push_back(database.string() + suffix);
  try {
    paths.push_back(AppPaths::dataHome() / "TVRL Orrelin");
    paths.push_back(UserDefaults::filePath().parent_path());
  } catch (const std::exception&) {
    // No home folder: then nothing of the program's can lie in a watched tree beyond the database.
  }
  return paths;
}

}  // namespace

void AppModel::setWatchedIDs(std::set<int64_t> ids, bool persist) {
  const bool changed = ids != m_watchedIDs;
  m_watchedIDs = std::move(ids);
  if (persist) WatchedCatalogs::write(m_watchedIDs);
  updateWatchers();
  // Announced once the watchers are in line, so observers see both agree.
  if (changed) emit watchedIDsChanged();
}

void AppModel::reloadWatchedIDs() { setWatchedIDs(WatchedCatalogs::read(), /*persist=*/false); }

void AppModel::toggleWatch(const Catalog& catalog) {
  std::set<int64_t> ids = m_watchedIDs;
  const QString name = qs(catalog.name);
  if (ids.erase(catalog.id)) {
    setWatchedIDs(std::move(ids), /*persist=*/true);
    flash(QStringLiteral("Auto-update turned off for \u201C%1\u201D").arg(name));
    return;
  }
  ids.insert(catalog.id);
  setWatchedIDs(std::move(ids), /*persist=*/true);
  // Switching on starts the watcher only; changes made before now wait for the next event or arrival.
  if (m_onlineIDs.count(catalog.id))
    flash(
        QStringLiteral("Watching \u201C%1\u201D \u2014 changes update the catalog automatically").arg(name));
  else
    flash(QStringLiteral("\u201C%1\u201D will auto-update whenever its drive is connected").arg(name));
}

void AppModel::updateWatchers() {
  if (m_autoStopped) return;
  for (auto it = m_watchers.begin(); it != m_watchers.end();) {
    if (m_watchedIDs.count(it->first) && m_onlineIDs.count(it->first)) {
      ++it;
    } else {
      it->second->stop();
      it = m_watchers.erase(it);
    }
  }
  std::vector<std::filesystem::path> ignored;
  for (const Catalog& c : m_catalogs) {
    if (!m_watchedIDs.count(c.id) || !m_onlineIDs.count(c.id) || m_watchers.count(c.id)) continue;
    if (ignored.empty()) ignored = ownPaths(m_databasePath, m_thumbnailsPath);
    QPointer<AppModel> self(this);
    const int64_t id = c.id;
    // The watcher may outlive nothing here, but its report is delivered as a task of its own, and the
    // model is held weakly so a late report finds nobody rather than a destroyed model.
    // The program's own data is left out: a drive or home folder that holds it would otherwise see every
    // quiet rescan write the database and thumbnails, and start the next rescan, without end; a backup
    // or a changed setting is no change of the drive either.
    auto watcher = FolderWatcher::create(
        NameMapping::diskPath(c.rootPath),
        [self, id] {
          if (!self) return;
          QTimer::singleShot(0, self.data(), [self, id] {
            if (self) self->scheduleAutoUpdate(id);
          });
        },
        ignored);
    // A watcher that cannot be made is tried again at the next update; the catalog stays watched.
    if (watcher) m_watchers.emplace(id, std::move(watcher));
  }
}

std::set<int64_t> AppModel::watcherIDs() const {
  std::set<int64_t> ids;
  for (const auto& [id, watcher] : m_watchers) ids.insert(id);
  return ids;
}

void AppModel::scheduleAutoUpdate(int64_t id) {
  if (m_autoStopped) return;  // A report that was under way when auto-update stopped.
  m_pendingAuto.insert(id);
  // Every change moves the end of the wait on: a drive written to steadily is rescanned once it is quiet.
  m_autoTimer.start(TestTiming::scaled(kAutoUpdateDelay));
}

void AppModel::runPendingAutoUpdates() {
  if (m_autoStopped) return;
  // The running scan's end calls this again; the pending ids wait for it.
  if (m_scanner->isRunning()) return;
  if (m_pendingAuto.empty()) return;
  const int64_t id = *m_pendingAuto.begin();
  m_pendingAuto.erase(m_pendingAuto.begin());
  // A catalog that went away or was unplugged ends the chain; the ids left wait for the next trigger.
  std::optional<Catalog> c = catalog(id);
  if (!c || !m_onlineIDs.count(id)) return;
  startScan(NameMapping::diskPath(c->rootPath), c->id, qs(c->name), c->groupID, ScanOptions::defaults(),
            /*quiet=*/true);
}

void AppModel::stopAutoUpdates() {
  m_autoStopped = true;
  m_watchers.clear();
  m_pendingAuto.clear();
  m_autoTimer.stop();
}

void AppModel::quietRescan(qint64 catalogID) {
  if (m_scanner->isRunning()) return;
  std::optional<Catalog> c = catalog(catalogID);
  if (!c || !m_onlineIDs.count(c->id)) return;
  startScan(NameMapping::diskPath(c->rootPath), c->id, qs(c->name), c->groupID, ScanOptions::defaults(),
            /*quiet=*/true);
}

void AppModel::connectRenamePane(RenamePaneState& pane) {
  pane.setStore(m_store.get());
  connect(this, &AppModel::storeChanged, &pane, [this, pane = &pane] { pane->setStore(m_store.get()); });
  connect(&pane, &RenamePaneState::rescanRequested, this, &AppModel::quietRescan);
  connect(&pane, &RenamePaneState::alertRaised, this, &AppModel::show);
  connect(&pane, &RenamePaneState::toastRaised, this, &AppModel::flash);
}

}  // namespace orrelin
