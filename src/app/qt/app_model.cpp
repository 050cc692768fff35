// The application state: construction, reload, the online test, alerts and toasts, and the observable
// fields. The catalog actions and auto-update live in files of their own.
#include "app/qt/app_model.h"

#include <QCoreApplication>
#include <QFile>
#include <QJSEngine>

#include <algorithm>
#include <exception>
#include <system_error>

#include "app/backup_manager.h"
#include "app/qt/folder_watcher.h"
#include "app/qt/launch_arguments.h"
#include "app/qt/mount_monitor.h"
#include "app/watched_catalogs.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "core/test_timing.h"
#include "core/uuid_string.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/sqlite_db.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }

QVariantList idList(const std::set<int64_t>& ids) {
  QVariantList list;
  for (int64_t id : ids) list << QVariant::fromValue<qint64>(id);
  return list;
}

}  // namespace

AppModel::AppModel(std::optional<fs::path> database, QObject* parent)
    : QObject(parent), m_scanner(new ScanEngine(this)) {
  // Thumbnails go beside a database given by path, as the command-line tool keeps them.
  m_databasePath = database ? fs::absolute(*database) : AppPaths::database();
  m_thumbnailsPath = database ? m_databasePath.parent_path() / "Thumbnails" : AppPaths::thumbnails();
  if (database) m_scanner->setPaths(m_databasePath, m_thumbnailsPath);

  m_savedSearches = SavedSearch::all();
  m_watchedIDs = WatchedCatalogs::read();
  m_toastTimer.setSingleShot(true);
  connect(&m_toastTimer, &QTimer::timeout, this, [this] { setToast(std::nullopt); });
  m_autoTimer.setSingleShot(true);
  connect(&m_autoTimer, &QTimer::timeout, this, [this] { runPendingAutoUpdates(); });

  openStore();
  reload();
  if (!m_catalogs.empty()) setSelectedCatalogID(m_catalogs.front().id);

  // Mounts, unmounts and renamed volumes: each runs refreshOnline as a task of its own.
  m_mountMonitor = new MountMonitor(this);
  connect(m_mountMonitor, &MountMonitor::mountsChanged, this, &AppModel::refreshOnline, Qt::QueuedConnection);

  if (m_store && BackupManager::isAutoBackupDue(m_store.get(), Date::now())) startAutoBackup();
}

// Watchers and the monitor go before the rest, so no callback of theirs finds a half-destroyed model. A
// daily backup still copying is waited for: its file would otherwise be left half written.
AppModel::~AppModel() {
  m_watchers.clear();
  if (m_autoBackup.joinable()) m_autoBackup.join();
}

void AppModel::startAutoBackup() {
  m_autoBackupRunning = true;
  const fs::path database = m_databasePath;
  m_autoBackup = std::thread([this, database] {
    // The copy reads through its own connection: WAL lets the interface and scans go on meanwhile, and
    // a restore that swaps the file leaves this reader on the old one. Only the file is made here; the
    // settings and the prune are the main thread's, which also writes them.
    const Date now = Date::now();
    bool copied = false;
    try {
      SQLiteDB source(database.string());
      source.backup((AppPaths::backups() / BackupManager::fileName(now, "auto")).string());
      copied = true;
    } catch (const std::exception&) {
      // Silent, as the daily backup always was: the next start tries again.
    }
    QMetaObject::invokeMethod(
        this,
        [this, now, copied] {
          if (m_autoBackup.joinable()) m_autoBackup.join();
          m_autoBackupRunning = false;
          if (!copied) return;
          BackupManager::setLastBackup(now);
          BackupManager::prune();
        },
        Qt::QueuedConnection);
  });
}

AppModel& AppModel::shared() {
  // Lives until the process ends, like the program's state.
  static AppModel* instance = new AppModel(std::nullopt);
  return *instance;
}

AppModel* AppModel::create(QQmlEngine*, QJSEngine*) {
  AppModel* model = &shared();
  QJSEngine::setObjectOwnership(model, QJSEngine::CppOwnership);
  return model;
}

void AppModel::openStore() {
  try {
    setStore(std::make_shared<CatalogDB>(m_databasePath.string()));
  } catch (const std::exception& error) {
    show(QStringLiteral("Database Problem"), QString::fromUtf8(error.what()));
  }
}

void AppModel::setStore(std::shared_ptr<CatalogDB> store) {
  if (store == m_store) return;
  m_store = std::move(store);
  emit storeChanged();
}

void AppModel::reload() {
  if (!m_store) return;
  try {
    std::vector<Catalog> catalogs = m_store->catalogs();
    if (catalogs != m_catalogs) {
      m_catalogs = std::move(catalogs);
      emit catalogsChanged();
    }
    std::vector<CatalogGroup> groups = m_store->groups();
    if (groups != m_groups) {
      m_groups = std::move(groups);
      emit groupsChanged();
    }
  } catch (const std::exception& error) {
    show(QStringLiteral("Could Not Load Catalogs"), QString::fromUtf8(error.what()));
  }
  if (m_selectedCatalogID && !catalog(*m_selectedCatalogID)) {
    setSelectedCatalogID(m_catalogs.empty() ? std::nullopt : std::optional(m_catalogs.front().id));
  }
  refreshOnline();
  ++m_dataVersion;
  emit dataVersionChanged();
}

bool AppModel::isOnlineNow(const Catalog& catalog) {
  if (catalog.isSample || catalog.rootPath.empty()) return false;
  const fs::path root = NameMapping::diskPath(catalog.rootPath);
  std::error_code ec;
  if (!fs::is_directory(root, ec)) return false;
  // Another drive mounted at the same place is not this drive.
  return catalog.volumeUUID.empty() || VolumeInfo::read(root.native()).uuid == catalog.volumeUUID;
}

void AppModel::refreshOnline() {
  std::set<int64_t> online;
  for (const Catalog& c : m_catalogs)
    if (isOnlineNow(c)) online.insert(c.id);
  std::set<int64_t> arrived;
  for (int64_t id : online)
    if (!m_onlineIDs.count(id)) arrived.insert(id);
  setOnlineIDs(std::move(online));
  updateWatchers();
  // Drives already connected when the program starts (the first reload, dataVersion 0) are not
  // rescanned; a watched drive that arrives later is, after the usual quiet spell.
  if (m_dataVersion < 1 || m_autoStopped) return;
  for (int64_t id : arrived) {
    if (!m_watchedIDs.count(id)) continue;
    m_pendingAuto.insert(id);
    m_autoTimer.start(TestTiming::scaled(kAutoUpdateDelay));
  }
}

std::optional<Catalog> AppModel::catalog(int64_t id) const {
  for (const Catalog& c : m_catalogs)
    if (c.id == id) return c;
  return std::nullopt;
}

std::optional<CatalogGroup> AppModel::group(int64_t id) const {
  for (const CatalogGroup& g : m_groups)
    if (g.id == id) return g;
  return std::nullopt;
}

std::optional<Catalog> AppModel::selectedCatalog() const {
  if (!m_selectedCatalogID) return std::nullopt;
  return catalog(*m_selectedCatalogID);
}

qint64 AppModel::totalFiles() const {
  int64_t sum = 0;
  for (const Catalog& c : m_catalogs)
    if (__builtin_add_overflow(sum, c.fileCount, &sum)) qFatal("The file count of all catalogs overflows");
  return sum;
}

qint64 AppModel::totalBytes() const {
  int64_t sum = 0;
  for (const Catalog& c : m_catalogs)
    if (__builtin_add_overflow(sum, c.totalSize, &sum)) qFatal("The size of all catalogs overflows");
  return sum;
}

std::optional<fs::path> AppModel::url(const FileRecord& file) const {
  std::optional<Catalog> c = catalog(file.catalogID);
  if (!c || c->rootPath.empty()) return std::nullopt;
  // Stored names may hold mapped bytes; the disk wants the real ones.
  fs::path path = NameMapping::diskPath(c->rootPath);
  for (const auto& part : NameMapping::diskPath(file.path))
    if (!part.empty() && part != "/") path /= part;
  return path;
}

std::optional<fs::path> AppModel::thumbnailURL(const FileRecord& file) const {
  if (!file.hasThumb) return std::nullopt;
  fs::path path = m_thumbnailsPath / std::to_string(file.catalogID) / (std::to_string(file.id) + ".jpg");
  std::error_code ec;
  if (!fs::exists(path, ec)) return std::nullopt;
  return path;
}

QString AppModel::offlineMessage(const Catalog& catalog) {
  const QString name = qs(catalog.name);
  if (catalog.isSample) {
    return QStringLiteral(
               "\u201C%1\u201D is demonstration data, so there is no real drive to open. Catalog one "
               "of your own drives to use Reveal in Finder.")
        .arg(name);
  }
  if (catalog.rootPath.empty())
    return QStringLiteral("\u201C%1\u201D was imported from a file, so its original location is unknown.")
        .arg(name);
  return QStringLiteral(
             "Drive offline \u2014 insert \u201C%1\u201D to open this item. You can keep browsing the "
             "catalog while the drive is disconnected.")
      .arg(qs(catalog.displayVolume()));
}

QString AppModel::offlineMessage(qint64 catalogID) const {
  std::optional<Catalog> c = catalog(catalogID);
  return c ? offlineMessage(*c) : QString();
}

void AppModel::show(const QString& title, const QString& message) {
  m_alert = AppAlert{QString::fromStdString(newUUIDString()), title, message};
  emit alertChanged();
}

void AppModel::dismissAlert() {
  if (!m_alert) return;
  m_alert.reset();
  emit alertChanged();
}

void AppModel::flash(const QString& text) {
  // Announced even when the text is the same: it is a new toast, shown afresh.
  m_toast = text;
  emit toastChanged();
  // Restarting the timer is the cancel of the old clock: the new toast gets its full time.
  m_toastTimer.start(TestTiming::scaled(kToastDuration));
}

void AppModel::setToast(std::optional<QString> text) {
  if (text == m_toast) return;
  m_toast = std::move(text);
  emit toastChanged();
}

LaunchRequests AppModel::applyLaunchArguments(const QStringList& arguments) {
  LaunchRequests requests;
  // "--sample" comes first, so the other arguments can select and show the cartridges it loads. A second
  // launch with it finds them there and loads nothing.
  if (LaunchArguments::has(arguments, QStringLiteral("--sample")) &&
      std::none_of(m_catalogs.begin(), m_catalogs.end(), [](const Catalog& c) { return c.isSample; })) {
    loadSampleData();
  }
  requests.theme = LaunchArguments::value(arguments, QStringLiteral("theme"));
  if (auto value = LaunchArguments::value(arguments, QStringLiteral("section"))) {
    if (auto index = LaunchArguments::match(*value, sectionRawTexts())) setSection(allSections()[*index]);
  }
  if (LaunchArguments::has(arguments, QStringLiteral("--qa-new-catalog"))) setNewCatalogSheet(true);
  requests.openAbout = LaunchArguments::has(arguments, QStringLiteral("--qa-about"));
  if (LaunchArguments::has(arguments, QStringLiteral("--qa-alert"))) {
    show(QStringLiteral("Drive Offline"),
         QStringLiteral(
             "Drive offline \u2014 insert \u201CStudio Archive\u201D to open this item. You can keep "
             "browsing the catalog while the drive is disconnected."));
  }
  if (auto value = LaunchArguments::value(arguments, QStringLiteral("tool"))) {
    if (auto index = LaunchArguments::match(*value, toolTabRawTexts())) {
      setSection(AppSection::tools);
      setToolTab(allToolTabs()[*index]);
    }
  }
  if (auto value = LaunchArguments::value(arguments, QStringLiteral("select"))) {
    for (const Catalog& c : m_catalogs) {
      if (qs(c.name).contains(*value, Qt::CaseInsensitive)) {
        setSelectedCatalogID(c.id);
        break;
      }
    }
  }
  if (auto value = LaunchArguments::value(arguments, QStringLiteral("scan"))) {
    const fs::path root = fs::path(QFile::encodeName(*value).toStdString()).lexically_normal();
    fs::path leaf = root.filename();
    if (leaf.empty()) leaf = root.parent_path().filename();  // A trailing slash.
    beginScan(root, QString::fromStdString(NameMapping::storedPath(leaf)), std::nullopt,
              ScanOptions::defaults());
  }
  return requests;
}

// --- Observable fields ---

void AppModel::setSection(AppSection section) {
  if (section == m_section) return;
  m_section = section;
  emit sectionChanged();
}

void AppModel::setSelectedCatalogID(std::optional<int64_t> id) {
  if (id == m_selectedCatalogID) return;
  m_selectedCatalogID = id;
  emit selectedCatalogIDChanged();
}

void AppModel::setOnlineIDs(std::set<int64_t> ids) {
  if (ids == m_onlineIDs) return;
  m_onlineIDs = std::move(ids);
  emit onlineIDsChanged();
}

void AppModel::setNewCatalogSheet(bool up) {
  if (up == m_newCatalogSheet) return;
  m_newCatalogSheet = up;
  emit newCatalogSheetChanged();
}

void AppModel::setScanResult(std::optional<ScanResult> result) {
  if (result == m_scanResult) return;
  m_scanResult = std::move(result);
  emit scanResultChanged();
}

void AppModel::dismissScanResult() { setScanResult(std::nullopt); }

void AppModel::toggleGroupCollapsed(qint64 groupID) {
  if (!m_collapsedGroups.erase(groupID)) m_collapsedGroups.insert(groupID);
  emit collapsedGroupsChanged();
}

void AppModel::setPendingRevealFile(std::optional<FileRecord> file) {
  if (file == m_pendingRevealFile) return;
  m_pendingRevealFile = std::move(file);
  emit pendingRevealFileChanged();
}

std::optional<FileRecord> AppModel::takePendingRevealFile() {
  std::optional<FileRecord> file = m_pendingRevealFile;
  setPendingRevealFile(std::nullopt);
  return file;
}

void AppModel::setQuickSearchText(const QString& text) {
  if (text == m_quickSearchText) return;
  m_quickSearchText = text;
  emit quickSearchTextChanged();
}

void AppModel::setSearchTrigger(int value) {
  if (value == m_searchTrigger) return;
  m_searchTrigger = value;
  emit searchTriggerChanged();
}

void AppModel::setSavedSearches(std::vector<SavedSearch> list) {
  if (list == m_savedSearches) return;
  m_savedSearches = std::move(list);
  emit savedSearchesChanged();
}

void AppModel::setToolTab(ToolTab tab) {
  if (tab == m_toolTab) return;
  m_toolTab = tab;
  emit toolTabChanged();
}

// --- What QML reads ---

QVariantList AppModel::catalogList() const {
  QVariantList list;
  for (const Catalog& c : m_catalogs) {
    list << QVariantMap{
        {"id", QVariant::fromValue<qint64>(c.id)},
        {"name", qs(c.name)},
        {"groupID", QVariant::fromValue<qint64>(c.groupID.value_or(-1))},
        {"rootPath", qs(c.rootPath)},
        {"volumeName", qs(c.volumeName)},
        {"displayVolume", qs(c.displayVolume())},
        {"volumeUUID", qs(c.volumeUUID)},
        {"volumeFormat", qs(c.volumeFormat)},
        {"capacity", QVariant::fromValue<qint64>(c.capacity)},
        {"freeSpace", QVariant::fromValue<qint64>(c.freeSpace)},
        {"isNetwork", c.isNetwork},
        {"isRemovable", c.isRemovable},
        {"isFolder", c.isFolder},
        {"fileCount", QVariant::fromValue<qint64>(c.fileCount)},
        {"folderCount", QVariant::fromValue<qint64>(c.folderCount)},
        {"totalSize", QVariant::fromValue<qint64>(c.totalSize)},
        {"createdAt", c.createdAt.seconds},
        {"scannedAt", c.scannedAt ? c.scannedAt->seconds : -1.0},
        {"notes", qs(c.notes)},
        {"isSample", c.isSample},
        {"symbol", qs(c.symbol())},
        {"usedFraction", c.usedFraction()},
    };
  }
  return list;
}

QVariantList AppModel::groupList() const {
  QVariantList list;
  for (const CatalogGroup& g : m_groups) {
    list << QVariantMap{{"id", QVariant::fromValue<qint64>(g.id)},
                        {"name", qs(g.name)},
                        {"sort", QVariant::fromValue<qint64>(g.sort)}};
  }
  return list;
}

QVariantList AppModel::onlineIDList() const { return idList(m_onlineIDs); }
QVariantList AppModel::collapsedGroupList() const { return idList(m_collapsedGroups); }
QVariantList AppModel::watchedIDList() const { return idList(m_watchedIDs); }

QVariantMap AppModel::scanResultMap() const {
  if (!m_scanResult) return {};
  const ScanResult& r = *m_scanResult;
  auto paths = [](const std::vector<std::string>& list) {
    QStringList out;
    for (const std::string& p : list) out << qs(p);
    return out;
  };
  return QVariantMap{
      {"id", qs(r.id)},
      {"catalogID", QVariant::fromValue<qint64>(r.catalogID)},
      {"catalogName", qs(r.catalogName)},
      {"added", paths(r.added)},
      {"changed", paths(r.changed)},
      {"removed", paths(r.removed)},
      {"addedCount", QVariant::fromValue<qint64>(r.addedCount)},
      {"changedCount", QVariant::fromValue<qint64>(r.changedCount)},
      {"removedCount", QVariant::fromValue<qint64>(r.removedCount)},
      {"seconds", r.seconds},
      {"cancelled", r.cancelled},
      {"isRescan", r.isRescan},
      {"error", r.error ? qs(*r.error) : QString()},
  };
}

QVariantMap AppModel::pendingRevealFileMap() const {
  if (!m_pendingRevealFile) return {};
  const FileRecord& f = *m_pendingRevealFile;
  return QVariantMap{{"id", QVariant::fromValue<qint64>(f.id)},
                     {"catalogID", QVariant::fromValue<qint64>(f.catalogID)},
                     {"parentID", QVariant::fromValue<qint64>(f.parentID)},
                     {"path", qs(f.path)},
                     {"name", qs(f.name)},
                     {"isDir", f.isDir}};
}

QVariantList AppModel::savedSearchList() const {
  QVariantList list;
  for (const SavedSearch& s : m_savedSearches) list << QVariantMap{{"id", qs(s.id)}, {"name", qs(s.name)}};
  return list;
}

}  // namespace orrelin
