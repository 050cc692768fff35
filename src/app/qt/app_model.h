// The application state: the one object that holds what every screen shares (the database connection,
// the catalogs and groups, the selection, which drives are connected, the pending alert and toast, the
// scan engine, the auto-update watchers) and through which the screens act on catalogs. Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUuid>
#include <QVariantList>
#include <QVariantMap>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "app/qt/navigation.h"
#include "exchange/web_exporter.h"
#include "scan/qt/scan_engine.h"
#include "scan/scan_records.h"
#include "search/saved_search.h"
#include "search/search_query.h"
#include "store/records.h"

class QJSEngine;
class QQmlEngine;

namespace orrelin {

class CatalogDB;
class FolderWatcher;
class MountMonitor;
class RenamePaneState;

// One alert waiting for the user: a title and a message. A new one replaces the old.
struct AppAlert {
  Q_GADGET
  QML_ANONYMOUS
  Q_PROPERTY(QString id MEMBER id)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString message MEMBER message)

 public:
  QString id;  // A fresh UUID for every alert.
  QString title;
  QString message;

  bool operator==(const AppAlert&) const = default;
};

// What the launch arguments ask of the interface rather than of the application state: the window code
// applies these.
struct LaunchRequests {
  std::optional<QString> theme;  // The "--theme=" value, to match against the themes' raw texts.
  bool openAbout = false;        // "--qa-about": open the About window.
};

class AppModel : public QObject {
  Q_OBJECT
  // QML's singleton `AppModel`: see ui/qml_singletons.h.

  // False while the database could not be opened.
  Q_PROPERTY(bool hasStore READ hasStore NOTIFY storeChanged)
  // One map per catalog, in the order of catalogs(): id, name, groupID (-1: none), rootPath, volumeName,
  // volumeUUID, volumeFormat, capacity, freeSpace, isNetwork, isRemovable, isFolder, fileCount,
  // folderCount, totalSize, createdAt, scannedAt (seconds since 1970; -1: never), notes, isSample, symbol.
  Q_PROPERTY(QVariantList catalogs READ catalogList NOTIFY catalogsChanged)
  // One map per group: id, name, sort.
  Q_PROPERTY(QVariantList groups READ groupList NOTIFY groupsChanged)
  Q_PROPERTY(orrelin::Nav::AppSection section READ section WRITE setSection NOTIFY sectionChanged)
  // The selected catalog's id, or -1 for none.
  Q_PROPERTY(qint64 selectedCatalogID READ selectedCatalogIDValue WRITE setSelectedCatalogIDValue NOTIFY
                 selectedCatalogIDChanged)
  Q_PROPERTY(QVariantList onlineIDs READ onlineIDList NOTIFY onlineIDsChanged)
  Q_PROPERTY(bool hasAlert READ hasAlert NOTIFY alertChanged)
  Q_PROPERTY(orrelin::AppAlert alert READ alertValue NOTIFY alertChanged)
  // The visible toast; empty when none.
  Q_PROPERTY(QString toast READ toastText NOTIFY toastChanged)
  Q_PROPERTY(bool newCatalogSheet READ newCatalogSheet WRITE setNewCatalogSheet NOTIFY newCatalogSheetChanged)
  // The finished scan whose result sheet is up, as a map (id, catalogID, catalogName, added, changed,
  // removed, addedCount, changedCount, removedCount, seconds, cancelled, isRescan, error); empty when none.
  Q_PROPERTY(QVariantMap scanResult READ scanResultMap NOTIFY scanResultChanged)
  Q_PROPERTY(QVariantList collapsedGroups READ collapsedGroupList NOTIFY collapsedGroupsChanged)
  Q_PROPERTY(int dataVersion READ dataVersion NOTIFY dataVersionChanged)
  // The file the browser shall open at its place (id, catalogID, parentID, path, name, isDir); empty when
  // none.
  Q_PROPERTY(QVariantMap pendingRevealFile READ pendingRevealFileMap NOTIFY pendingRevealFileChanged)
  Q_PROPERTY(
      QString quickSearchText READ quickSearchText WRITE setQuickSearchText NOTIFY quickSearchTextChanged)
  Q_PROPERTY(int searchTrigger READ searchTrigger WRITE setSearchTrigger NOTIFY searchTriggerChanged)
  // One map per saved search: id, name.
  Q_PROPERTY(QVariantList savedSearches READ savedSearchList NOTIFY savedSearchesChanged)
  Q_PROPERTY(QVariantList watchedIDs READ watchedIDList NOTIFY watchedIDsChanged)
  Q_PROPERTY(orrelin::Nav::ToolTab toolTab READ toolTab WRITE setToolTab NOTIFY toolTabChanged)
  Q_PROPERTY(orrelin::ScanEngine* scanner READ scanner CONSTANT)
  Q_PROPERTY(qint64 totalFiles READ totalFiles NOTIFY catalogsChanged)
  Q_PROPERTY(qint64 totalBytes READ totalBytes NOTIFY catalogsChanged)

 public:
  // How long a toast stays, and the quiet spell auto-update waits for (both scaled by TestTiming).
  static constexpr std::chrono::milliseconds kToastDuration{2800};
  static constexpr std::chrono::milliseconds kAutoUpdateDelay{6000};

  // Opens the database at `database` (default: the data folder's), reloads, selects the first catalog,
  // follows mounts and makes the daily backup when one is due. A database that cannot be opened leaves
  // the model without a store and with the alert "Database Problem". Thumbnails are kept in the data
  // folder, or beside a database given here. There is no default constructor: QML would prefer it to
  // create() and make a second model instead of taking the shared one.
  explicit AppModel(std::optional<std::filesystem::path> database, QObject* parent = nullptr);
  ~AppModel() override;

  // The program's one instance, made on first use with the data folder's database.
  static AppModel& shared();
  // The shared instance for QML's singleton registration; it stays owned by C++.
  static AppModel* create(QQmlEngine*, QJSEngine*);

  // --- State ---
  // The main connection; null while the database could not be opened.
  const std::shared_ptr<CatalogDB>& store() const { return m_store; }
  bool hasStore() const { return m_store != nullptr; }
  const std::filesystem::path& databasePath() const { return m_databasePath; }
  const std::filesystem::path& thumbnailsPath() const { return m_thumbnailsPath; }
  const std::vector<Catalog>& catalogs() const { return m_catalogs; }
  const std::vector<CatalogGroup>& groups() const { return m_groups; }
  AppSection section() const { return m_section; }
  void setSection(AppSection section);
  std::optional<int64_t> selectedCatalogID() const { return m_selectedCatalogID; }
  void setSelectedCatalogID(std::optional<int64_t> id);
  const std::set<int64_t>& onlineIDs() const { return m_onlineIDs; }
  const std::optional<AppAlert>& alert() const { return m_alert; }
  bool hasAlert() const { return m_alert.has_value(); }
  Q_INVOKABLE void dismissAlert();
  const std::optional<QString>& toast() const { return m_toast; }
  bool newCatalogSheet() const { return m_newCatalogSheet; }
  void setNewCatalogSheet(bool up);
  const std::optional<ScanResult>& scanResult() const { return m_scanResult; }
  Q_INVOKABLE void dismissScanResult();
  const std::set<int64_t>& collapsedGroups() const { return m_collapsedGroups; }
  Q_INVOKABLE void toggleGroupCollapsed(qint64 groupID);
  int dataVersion() const { return m_dataVersion; }
  const std::optional<FileRecord>& pendingRevealFile() const { return m_pendingRevealFile; }
  // Hands the pending file to the browser and clears it.
  std::optional<FileRecord> takePendingRevealFile();
  QString quickSearchText() const { return m_quickSearchText; }
  void setQuickSearchText(const QString& text);
  int searchTrigger() const { return m_searchTrigger; }
  void setSearchTrigger(int value);
  const std::vector<SavedSearch>& savedSearches() const { return m_savedSearches; }
  // Replaces the list shown in the sidebar; storing it is the caller's business.
  void setSavedSearches(std::vector<SavedSearch> list);
  const std::set<int64_t>& watchedIDs() const { return m_watchedIDs; }
  ToolTab toolTab() const { return m_toolTab; }
  void setToolTab(ToolTab tab);
  ScanEngine* scanner() const { return m_scanner; }

  // --- Queries ---
  // Re-reads catalogs and groups, repairs a selection that points at nothing, refreshes the online set
  // and raises dataVersion. Does nothing without a store.
  Q_INVOKABLE void reload();
  // Recomputes which catalogs are online; drives that came online while watched are queued for a quiet
  // rescan (not during the first reload after start).
  Q_INVOKABLE void refreshOnline();
  // The cached answer, for display.
  Q_INVOKABLE bool isOnline(qint64 catalogID) const { return m_onlineIDs.count(catalogID) != 0; }
  // The actual test against the disk: not a sample, a root folder that exists, and the volume that holds
  // it has the recorded UUID (when one was recorded).
  static bool isOnlineNow(const Catalog& catalog);
  Q_INVOKABLE bool isWatched(qint64 catalogID) const { return m_watchedIDs.count(catalogID) != 0; }
  std::optional<Catalog> catalog(int64_t id) const;
  std::optional<Catalog> selectedCatalog() const;
  qint64 totalFiles() const;
  qint64 totalBytes() const;
  // The file's real path on disk; absent when its catalog is unknown or was imported (no root).
  std::optional<std::filesystem::path> url(const FileRecord& file) const;
  // The file's thumbnail, when it has one and the image exists now.
  std::optional<std::filesystem::path> thumbnailURL(const FileRecord& file) const;
  // Why a catalog cannot be reached: demonstration data, imported, or its drive is not connected.
  static QString offlineMessage(const Catalog& catalog);
  Q_INVOKABLE QString offlineMessage(qint64 catalogID) const;

  // --- Messages ---
  // Puts up an alert, replacing one that is still up.
  Q_INVOKABLE void show(const QString& title, const QString& message);
  // Shows a toast for 2.8 seconds; a later toast restarts the clock.
  Q_INVOKABLE void flash(const QString& text);

  // --- Catalog actions ---
  Q_INVOKABLE void startNewCatalog() { setNewCatalogSheet(true); }
  // Catalogs `root` as a new catalog in the background, unless a scan runs.
  void beginScan(const std::filesystem::path& root, const QString& name, std::optional<int64_t> groupID,
                 const ScanOptions& options);
  // Brings a catalog up to date with its drive, if it is connected and no scan runs.
  void rescan(const Catalog& catalog);
  // The end of every scan, on the main thread: reload, then the result sheet, the alert or the toast,
  // then any auto-updates that waited.
  void scanFinished(const ScanResult& result, bool quiet);
  void rename(const Catalog& catalog, const QString& name);
  void setNotes(const Catalog& catalog, const QString& notes);
  // Asks, backs up, deletes the catalog with its thumbnails, and stops watching it.
  void confirmDelete(const Catalog& catalog);
  void moveCatalog(const Catalog& catalog, std::optional<int64_t> groupID);
  void createGroup(const QString& name);
  void renameGroup(const CatalogGroup& group, const QString& name);
  void deleteGroup(const CatalogGroup& group);
  void promptRename(const Catalog& catalog);
  Q_INVOKABLE void promptNewGroup();
  void promptRenameGroup(const CatalogGroup& group);
  // Asks for the catalog's notes in a field that starts with the ones it has; the answer goes to setNotes.
  void promptNotes(const Catalog& catalog);
  // A question with a text field for any caller: the text when `button` was used, else nothing.
  static std::optional<QString> prompt(const QString& title, const QString& message, const QString& initial,
                                       const QString& button);
  void reveal(const FileRecord& file);
  void open(const FileRecord& file);
  void revealRoot(const Catalog& catalog);
  void copyPath(const FileRecord& file);
  // Shows `file` in the browser: selects its catalog and asks the browser to open it at its place.
  void browseTo(const FileRecord& file);

  // The same actions by id, for the screens. Unknown ids do nothing.
  Q_INVOKABLE void rescan(qint64 catalogID);
  Q_INVOKABLE void rename(qint64 catalogID, const QString& name);
  Q_INVOKABLE void setNotes(qint64 catalogID, const QString& notes);
  Q_INVOKABLE void confirmDelete(qint64 catalogID);
  Q_INVOKABLE void moveCatalog(qint64 catalogID, qint64 groupID);  // groupID -1: ungrouped.
  Q_INVOKABLE void renameGroup(qint64 groupID, const QString& name);
  Q_INVOKABLE void deleteGroup(qint64 groupID);
  Q_INVOKABLE void promptRename(qint64 catalogID);
  Q_INVOKABLE void promptRenameGroup(qint64 groupID);
  Q_INVOKABLE void promptNotes(qint64 catalogID);
  Q_INVOKABLE void revealRoot(qint64 catalogID);
  Q_INVOKABLE void revealFile(qint64 fileID);
  Q_INVOKABLE void openFile(qint64 fileID);
  Q_INVOKABLE void copyFilePath(qint64 fileID);
  Q_INVOKABLE void browseToFile(qint64 fileID);
  Q_INVOKABLE void toggleWatch(qint64 catalogID);

  // --- Backups ---
  // Copies the database into the backups folder; a toast or an alert unless `silent`.
  Q_INVOKABLE void backupNow(const QString& reason = QStringLiteral("manual"), bool silent = false);
  // Whether the daily backup made at start is still copying.
  bool autoBackupRunning() const { return m_autoBackupRunning; }
  // The same, sparing `spare` (the file chosen for a restore) from the prune and from being overwritten.
  void backupNow(const QString& reason, bool silent, const std::filesystem::path& spare);
  // Asks, makes a safety backup, checks the file and swaps it in for the current database.
  void restore(const std::filesystem::path& backup);
  Q_INVOKABLE void restore(const QString& backupPath);
  // "Restore from Backup…": a file panel in the backups folder for a ".sqlite" file, whose choice goes to
  // restore().
  Q_INVOKABLE void chooseBackup();

  // --- Auto-update ---
  void toggleWatch(const Catalog& catalog);
  // Re-reads the watched set from the settings (another process may have changed it) and brings the
  // watchers into line, without a toast.
  void reloadWatchedIDs();
  // Keeps one watcher per catalog that is both watched and online.
  void updateWatchers();
  // Starts a quiet rescan of one pending catalog, unless a scan runs; the end of that scan serves the next.
  void runPendingAutoUpdates();
  // Starts a quiet rescan of a catalog at once, if it is online and no scan runs.
  Q_INVOKABLE void quietRescan(qint64 catalogID);
  // Ends auto-update for the rest of this model's life: the watchers stop, the pending ids are dropped,
  // and neither the end of a running scan nor a drive that arrives starts a quiet rescan any more. For a
  // process that is about to quit (the command-line service on Ctrl-C).
  void stopAutoUpdates();
  const std::set<int64_t>& pendingAuto() const { return m_pendingAuto; }
  // The catalogs being watched now.
  std::set<int64_t> watcherIDs() const;
  // Lets the rename pane's messages and rescan requests reach this model, and gives it the store.
  void connectRenamePane(RenamePaneState& pane);

  // --- Exchange: exports, import, sample data ---
  // Each export asks with a panel where its file or folder goes (starting in the folder chosen last, else
  // the documents folder), then says how it went with a toast or the alert "Export Failed". A cancelled
  // panel does nothing. Without a store the catalog exports and the import do nothing.

  // Writes `catalogs`, in the given order, as CSV or as a JSON archive that can be imported back; with no
  // catalog, the alert "Nothing to Export".
  void exportCSV(const std::vector<Catalog>& catalogs);
  void exportJSON(const std::vector<Catalog>& catalogs);
  // Writes the hits of a search as CSV or JSON, in their order (the search screen's export).
  void exportSearchHits(const std::vector<SearchHit>& hits, bool csv);
  // Writes the rows of a report as CSV (the report panes' export).
  void exportReportHits(const std::vector<SearchHit>& hits);
  // Asks for a CSV or JSON export, adds its catalogs as new ones and selects the one made last; a file
  // that cannot be read gives the alert "Import Failed".
  Q_INVOKABLE void importCatalogs();
  // Writes the catalog's folder for Claude into a new folder inside a chosen one, and shows its
  // SUMMARY.md in the file manager.
  void exportForClaude(const Catalog& catalog);
  // Writes the inventory web site of `catalogs` into a new folder inside a chosen one, named by the
  // options' title and the time. Returns the path of its index.html; nothing when there was no store, no
  // catalog, the panel was cancelled or the export failed.
  std::optional<std::filesystem::path> exportWeb(const std::vector<Catalog>& catalogs,
                                                 const WebExporter::Options& options);
  // Adds the four demonstration cartridges, selects the first and shows the browser.
  Q_INVOKABLE void loadSampleData();
  // Deletes every sample catalog (with its thumbnails) and the sample groups left empty.
  Q_INVOKABLE void removeSampleData();

  // The same for the screens. Catalogs chosen by id go in the order of the sidebar's listing; unknown ids
  // are left out.
  Q_INVOKABLE void exportCSV(const QVariantList& catalogIDs);
  Q_INVOKABLE void exportJSON(const QVariantList& catalogIDs);
  // The shared search state's current hits.
  Q_INVOKABLE void exportSearchResults(bool csv);
  // The rows of a report pane: an EmptyFoldersPane, LargeOldPane or MissingPane; anything else does
  // nothing.
  Q_INVOKABLE void exportReport(QObject* pane);
  Q_INVOKABLE void exportForClaude(qint64 catalogID);
  // The path of index.html, or an empty text.
  Q_INVOKABLE QString exportWeb(const QVariantList& catalogIDs, const QString& title, bool includeThumbnails,
                                bool includeHidden);
  // "Open in Browser" and "Show in Finder" for a generated site's index.html.
  Q_INVOKABLE void openExportedFile(const QString& path);
  Q_INVOKABLE void revealExportedFile(const QString& path);

  // --- Launch ---
  // Applies the launch arguments that concern the application state, in their order ("--sample" first:
  // the sample data, unless a sample catalog is there already), and returns those that concern the
  // interface.
  LaunchRequests applyLaunchArguments(const QStringList& arguments);

 signals:
  void storeChanged();
  void catalogsChanged();
  void groupsChanged();
  void sectionChanged();
  void selectedCatalogIDChanged();
  void onlineIDsChanged();
  void alertChanged();
  void toastChanged();
  void newCatalogSheetChanged();
  void scanResultChanged();
  void collapsedGroupsChanged();
  void dataVersionChanged();
  void pendingRevealFileChanged();
  void quickSearchTextChanged();
  void searchTriggerChanged();
  void savedSearchesChanged();
  void watchedIDsChanged();
  void toolTabChanged();

 private:
  QVariantList catalogList() const;
  QVariantList groupList() const;
  qint64 selectedCatalogIDValue() const { return m_selectedCatalogID.value_or(-1); }
  void setSelectedCatalogIDValue(qint64 id) {
    setSelectedCatalogID(id < 0 ? std::nullopt : std::optional(id));
  }
  QVariantList onlineIDList() const;
  AppAlert alertValue() const { return m_alert.value_or(AppAlert{}); }
  QString toastText() const { return m_toast.value_or(QString()); }
  QVariantMap scanResultMap() const;
  QVariantList collapsedGroupList() const;
  QVariantMap pendingRevealFileMap() const;
  QVariantList savedSearchList() const;
  QVariantList watchedIDList() const;

  void openStore();
  void setStore(std::shared_ptr<CatalogDB> store);
  void setOnlineIDs(std::set<int64_t> ids);
  void setScanResult(std::optional<ScanResult> result);
  void setToast(std::optional<QString> text);
  void setPendingRevealFile(std::optional<FileRecord> file);
  // Stores the watched set, announces it and brings the watchers into line.
  void setWatchedIDs(std::set<int64_t> ids, bool persist);
  void scheduleAutoUpdate(int64_t id);
  // Copies the database in the background for the daily backup, then records it and prunes on the main
  // thread. A library of a million records is a copy of several seconds, which must not hold back the
  // first window.
  void startAutoBackup();
  // Starts a scan whose end comes back to this model.
  void startScan(const std::filesystem::path& root, std::optional<int64_t> catalogID, const QString& name,
                 std::optional<int64_t> groupID, const ScanOptions& options, bool quiet);
  std::optional<FileRecord> fileByID(int64_t id) const;
  std::optional<CatalogGroup> group(int64_t id) const;
  // Whether a scan runs; if so, says so with the "Scan in Progress" alert.
  bool refuseWhileScanning();
  void revealOrOpen(const FileRecord& file, bool reveal);
  void exportCatalogs(const std::vector<Catalog>& catalogs, bool csv);
  void exportHits(const std::vector<SearchHit>& hits, bool csv, const QString& fileName, const QString& noun);
  // The catalogs with these ids, in the order of catalogs().
  std::vector<Catalog> catalogsByID(const QVariantList& ids) const;
  // Where the exchange panels start: the folder chosen last, while it exists, else the documents folder.
  std::filesystem::path exchangeFolder() const;

  std::filesystem::path m_databasePath;
  std::filesystem::path m_thumbnailsPath;
  std::shared_ptr<CatalogDB> m_store;
  std::vector<Catalog> m_catalogs;
  std::vector<CatalogGroup> m_groups;
  AppSection m_section = AppSection::browse;
  std::optional<int64_t> m_selectedCatalogID;
  std::set<int64_t> m_onlineIDs;
  std::optional<AppAlert> m_alert;
  std::optional<QString> m_toast;
  bool m_newCatalogSheet = false;
  std::optional<ScanResult> m_scanResult;
  std::set<int64_t> m_collapsedGroups;
  int m_dataVersion = 0;
  std::optional<FileRecord> m_pendingRevealFile;
  QString m_quickSearchText;
  int m_searchTrigger = 0;
  std::vector<SavedSearch> m_savedSearches;
  std::set<int64_t> m_watchedIDs;
  ToolTab m_toolTab = ToolTab::claude;
  ScanEngine* m_scanner;  // Child of this object.
  QTimer m_toastTimer;
  std::map<int64_t, std::unique_ptr<FolderWatcher>> m_watchers;
  std::set<int64_t> m_pendingAuto;
  QTimer m_autoTimer;
  bool m_autoStopped = false;              // stopAutoUpdates() was called.
  MountMonitor* m_mountMonitor = nullptr;  // Child of this object.
  std::filesystem::path m_exchangeFolder;  // The folder the last exchange panel chose; not kept across runs.
  bool m_autoBackupRunning = false;
  std::thread m_autoBackup;  // The daily backup made at start, on a connection of its own; joined on exit.
};

}  // namespace orrelin

Q_DECLARE_METATYPE(orrelin::AppAlert)
