// The actions on catalogs and groups: scans, edits, delete, reveal and open, and backups. Each one tells
// the user what happened with an alert or a toast, in the program's fixed words.
#include <QFile>

#include <exception>
#include <system_error>

#include "app/backup_manager.h"
#include "app/qt/app_model.h"
#include "app/qt/desktop_services.h"
#include "app/qt/dialogs.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

QString qs(const std::string& text) { return QString::fromStdString(text); }
QString errorText(const std::exception& error) { return QString::fromUtf8(error.what()); }

// The stored (always UTF-8) form of a path's last component, for messages.
QString fileNameText(const fs::path& path) { return qs(NameMapping::storedPath(path.filename())); }

}  // namespace

// --- Scans ---

bool AppModel::refuseWhileScanning() {
  if (!m_scanner->isRunning()) return false;
  show(QStringLiteral("Scan in Progress"),
       QStringLiteral("Please wait for the current scan to finish, or cancel it first."));
  return true;
}

void AppModel::startScan(const fs::path& root, std::optional<int64_t> catalogID, const QString& name,
                         std::optional<int64_t> groupID, const ScanOptions& options, bool quiet) {
  QPointer<AppModel> self(this);
  ScanEngine::ModelHooks hooks{[self] {
                                 if (self) self->reload();
                               },
                               [self](const ScanResult& result, bool isQuiet) {
                                 if (self) self->scanFinished(result, isQuiet);
                               }};
  m_scanner->start(root, catalogID, name, groupID, options, std::move(hooks), quiet);
}

void AppModel::beginScan(const fs::path& root, const QString& name, std::optional<int64_t> groupID,
                         const ScanOptions& options) {
  if (refuseWhileScanning()) return;
  startScan(root, std::nullopt, name, groupID, options, /*quiet=*/false);
}

void AppModel::rescan(const Catalog& catalog) {
  if (refuseWhileScanning()) return;
  refreshOnline();
  if (!m_onlineIDs.count(catalog.id)) {
    show(QStringLiteral("Drive Offline"),
         offlineMessage(catalog).replace(QStringLiteral("to open this item"),
                                         QStringLiteral("to update this catalog")));
    return;
  }
  startScan(NameMapping::diskPath(catalog.rootPath), catalog.id, qs(catalog.name), catalog.groupID,
            ScanOptions::defaults(), /*quiet=*/false);
}

void AppModel::scanFinished(const ScanResult& result, bool quiet) {
  reload();
  if (!quiet) {
    if (result.error) {
      show(QStringLiteral("Scan Problem"), qs(*result.error));
    } else {
      setSelectedCatalogID(result.catalogID);
      setScanResult(result);
    }
  } else if (!result.error && result.addedCount + result.changedCount + result.removedCount >= 1) {
    flash(QStringLiteral("Auto-updated \u201C%1\u201D: +%2 ~%3 \u2212%4")
              .arg(qs(result.catalogName))
              .arg(result.addedCount)
              .arg(result.changedCount)
              .arg(result.removedCount));
  }
  // Updates that waited for this scan go now, one after the other.
  runPendingAutoUpdates();
}

// --- Edits ---

void AppModel::rename(const Catalog& catalog, const QString& name) {
  const QString trimmed = name.trimmed();
  if (trimmed.isEmpty()) return;
  if (m_store) {
    try {
      m_store->renameCatalog(catalog.id, trimmed.toStdString());
    } catch (const std::exception& error) {
      show(QStringLiteral("Rename Failed"), errorText(error));
      return;
    }
  }
  reload();
}

void AppModel::setNotes(const Catalog& catalog, const QString& notes) {
  if (m_store) {
    try {
      m_store->setNotes(catalog.id, notes.toStdString());
    } catch (const std::exception& error) {
      show(QStringLiteral("Could Not Save Notes"), errorText(error));
      return;
    }
  }
  reload();
}

void AppModel::moveCatalog(const Catalog& catalog, std::optional<int64_t> groupID) {
  if (m_store) {
    try {
      m_store->setGroup(catalog.id, groupID);
    } catch (const std::exception& error) {
      show(QStringLiteral("Move Failed"), errorText(error));
      return;
    }
  }
  reload();
}

void AppModel::createGroup(const QString& name) {
  const QString trimmed = name.trimmed();
  if (trimmed.isEmpty()) return;
  if (m_store) {
    try {
      m_store->createGroup(trimmed.toStdString());
    } catch (const std::exception& error) {
      show(QStringLiteral("Could Not Create Group"), errorText(error));
      return;
    }
  }
  reload();
}

void AppModel::renameGroup(const CatalogGroup& group, const QString& name) {
  const QString trimmed = name.trimmed();
  if (trimmed.isEmpty()) return;
  if (m_store) {
    try {
      m_store->renameGroup(group.id, trimmed.toStdString());
    } catch (const std::exception& error) {
      show(QStringLiteral("Rename Failed"), errorText(error));
      return;
    }
  }
  reload();
}

void AppModel::deleteGroup(const CatalogGroup& group) {
  if (!m_store) return;
  const int button = Dialogs::ask(QStringLiteral("Remove the group \u201C%1\u201D?").arg(qs(group.name)),
                                  QStringLiteral("The catalogs inside it are kept and moved to Ungrouped."),
                                  {QStringLiteral("Remove Group"), QStringLiteral("Cancel")});
  if (button != 0) return;
  try {
    m_store->deleteGroup(group.id);
  } catch (const std::exception& error) {
    show(QStringLiteral("Could Not Remove Group"), errorText(error));
    return;
  }
  reload();
}

void AppModel::confirmDelete(const Catalog& catalog) {
  if (m_scanner->isRunning() && m_scanner->catalogID() == catalog.id) {
    show(QStringLiteral("Scan in Progress"),
         QStringLiteral("This catalog is being scanned right now. Cancel the scan before deleting it."));
    return;
  }
  if (!m_store) return;
  const QString name = qs(catalog.name);
  const int button = Dialogs::ask(
      QStringLiteral("Delete \u201C%1\u201D?").arg(name),
      QStringLiteral(
          "This removes the catalog and its %1 file records from TVRL Orrelin. Nothing on the drive "
          "itself is touched. A backup of your catalogs is made first.")
          .arg(qs(Fmt::count(catalog.fileCount))),
      {QStringLiteral("Delete Catalog"), QStringLiteral("Cancel")}, /*warning=*/true);
  if (button != 0) return;
  // The backup goes first so the deleted catalog can be restored; a failed backup does not stop the delete.
  backupNow(QStringLiteral("before-delete"), /*silent=*/true);
  try {
    m_store->deleteCatalog(catalog.id, m_thumbnailsPath);
  } catch (const std::exception& error) {
    show(QStringLiteral("Delete Failed"), errorText(error));
    return;
  }
  std::set<int64_t> watched = m_watchedIDs;
  if (watched.erase(catalog.id)) setWatchedIDs(std::move(watched), /*persist=*/true);
  reload();
  flash(QStringLiteral("Deleted \u201C%1\u201D").arg(name));
}

// --- Prompts ---

std::optional<QString> AppModel::prompt(const QString& title, const QString& message, const QString& initial,
                                        const QString& button) {
  return Dialogs::prompt(title, message, initial, button);
}

void AppModel::promptRename(const Catalog& catalog) {
  if (auto name =
          prompt(QStringLiteral("Rename Catalog"), QStringLiteral("Enter a new name for this cartridge."),
                 qs(catalog.name), QStringLiteral("Rename")))
    rename(catalog, *name);
}

void AppModel::promptNewGroup() {
  if (auto name =
          prompt(QStringLiteral("New Catalog Group"),
                 QStringLiteral("Groups keep related drives together \u2014 for example \u201CStudio\u201D, "
                                "\u201CPhoto Archive\u201D or \u201CClients\u201D."),
                 QString(), QStringLiteral("Create Group")))
    createGroup(*name);
}

void AppModel::promptRenameGroup(const CatalogGroup& group) {
  if (auto name = prompt(QStringLiteral("Rename Group"), QStringLiteral("Enter a new name for this group."),
                         qs(group.name), QStringLiteral("Rename")))
    renameGroup(group, *name);
}

// --- Reveal, open, copy ---

void AppModel::revealOrOpen(const FileRecord& file, bool reveal) {
  std::optional<Catalog> c = catalog(file.catalogID);
  if (!c) return;
  refreshOnline();
  if (!m_onlineIDs.count(c->id)) {
    show(QStringLiteral("Drive Offline"), offlineMessage(*c));
    return;
  }
  std::optional<fs::path> path = url(file);
  std::error_code ec;
  if (path && fs::symlink_status(*path, ec).type() != fs::file_type::not_found) {
    if (reveal)
      DesktopServices::reveal(*path);
    else
      DesktopServices::open(*path);
    return;
  }
  const QString name = qs(file.name);
  if (reveal) {
    show(QStringLiteral("Item Not Found"),
         QStringLiteral("\u201C%1\u201D is no longer at its cataloged location on \u201C%2\u201D. Rescan the "
                        "catalog to bring it up to date.")
             .arg(name, qs(c->displayVolume())));
  } else {
    show(QStringLiteral("Item Not Found"),
         QStringLiteral(
             "\u201C%1\u201D is no longer at its cataloged location. Rescan the catalog to bring it "
             "up to date.")
             .arg(name));
  }
}

void AppModel::reveal(const FileRecord& file) { revealOrOpen(file, /*reveal=*/true); }
void AppModel::open(const FileRecord& file) { revealOrOpen(file, /*reveal=*/false); }

void AppModel::revealRoot(const Catalog& catalog) {
  refreshOnline();
  if (!m_onlineIDs.count(catalog.id)) {
    show(QStringLiteral("Drive Offline"), offlineMessage(catalog));
    return;
  }
  DesktopServices::reveal(NameMapping::diskPath(catalog.rootPath));
}

void AppModel::copyPath(const FileRecord& file) {
  std::optional<fs::path> path = url(file);
  DesktopServices::copyText(path ? qs(NameMapping::storedPath(*path)) : qs(file.path));
  flash(QStringLiteral("Path copied to the clipboard"));
}

void AppModel::browseTo(const FileRecord& file) {
  setSelectedCatalogID(file.catalogID);
  setSection(AppSection::browse);
  setPendingRevealFile(file);
}

// --- By id, for the screens ---

std::optional<FileRecord> AppModel::fileByID(int64_t id) const {
  if (!m_store) return std::nullopt;
  try {
    return m_store->file(id);
  } catch (const std::exception&) {
    return std::nullopt;  // A file that cannot be read is a file the screen no longer shows.
  }
}

void AppModel::rescan(qint64 catalogID) {
  if (auto c = catalog(catalogID)) rescan(*c);
}
void AppModel::rename(qint64 catalogID, const QString& name) {
  if (auto c = catalog(catalogID)) rename(*c, name);
}
void AppModel::setNotes(qint64 catalogID, const QString& notes) {
  if (auto c = catalog(catalogID)) setNotes(*c, notes);
}
void AppModel::confirmDelete(qint64 catalogID) {
  if (auto c = catalog(catalogID)) confirmDelete(*c);
}
void AppModel::moveCatalog(qint64 catalogID, qint64 groupID) {
  if (auto c = catalog(catalogID))
    moveCatalog(*c, groupID < 0 ? std::nullopt : std::optional<int64_t>(groupID));
}
void AppModel::renameGroup(qint64 groupID, const QString& name) {
  if (auto g = group(groupID)) renameGroup(*g, name);
}
void AppModel::deleteGroup(qint64 groupID) {
  if (auto g = group(groupID)) deleteGroup(*g);
}
void AppModel::promptRename(qint64 catalogID) {
  if (auto c = catalog(catalogID)) promptRename(*c);
}
void AppModel::promptRenameGroup(qint64 groupID) {
  if (auto g = group(groupID)) promptRenameGroup(*g);
}
void AppModel::revealRoot(qint64 catalogID) {
  if (auto c = catalog(catalogID)) revealRoot(*c);
}
void AppModel::revealFile(qint64 fileID) {
  if (auto f = fileByID(fileID)) reveal(*f);
}
void AppModel::openFile(qint64 fileID) {
  if (auto f = fileByID(fileID)) open(*f);
}
void AppModel::copyFilePath(qint64 fileID) {
  if (auto f = fileByID(fileID)) copyPath(*f);
}
void AppModel::browseToFile(qint64 fileID) {
  if (auto f = fileByID(fileID)) browseTo(*f);
}
void AppModel::toggleWatch(qint64 catalogID) {
  if (auto c = catalog(catalogID)) toggleWatch(*c);
}

// --- Backups ---

void AppModel::backupNow(const QString& reason, bool silent) { backupNow(reason, silent, fs::path()); }

void AppModel::backupNow(const QString& reason, bool silent, const fs::path& spare) {
  if (!m_store) return;
  try {
    const fs::path file = BackupManager::backupNow(*m_store, reason.toStdString(), spare);
    if (!silent) flash(QStringLiteral("Backup saved: %1").arg(fileNameText(file)));
  } catch (const std::exception& error) {
    // A silent backup guards another operation, which goes on whether or not its safety copy worked.
    if (!silent) show(QStringLiteral("Backup Failed"), errorText(error));
  }
}

void AppModel::restore(const QString& backupPath) { restore(fs::path(backupPath.toStdString())); }

void AppModel::chooseBackup() {
  const auto chosen = Dialogs::chooseOpen(QStringLiteral("Choose a catalog backup to restore."),
                                          QStringLiteral("Restore"), AppPaths::backups(), {QStringLiteral("sqlite")});
  if (chosen) restore(*chosen);
}

void AppModel::restore(const fs::path& backup) {
  // A running scan is not asked about: it writes through its own connection to the file being replaced,
  // and what it wrote goes with that file; the restored catalogs are what the user chose.
  const int button = Dialogs::ask(
      QStringLiteral("Restore catalogs from this backup?"),
      QStringLiteral(
          "Your current catalogs will be replaced with the contents of \u201C%1\u201D. A safety backup "
          "of the current state is made first.")
          .arg(fileNameText(backup)),
      {QStringLiteral("Restore"), QStringLiteral("Cancel")});
  if (button != 0) return;
  backupNow(QStringLiteral("before-restore"), /*silent=*/true, backup);
  try {
    // Only a file that opens as a catalog database gets as far as replacing the current one.
    BackupManager::checkBackupFile(backup);
    // Closed here, not when the last holder lets go: a search still running on it then fails, rather than
    // answer from the replaced database with ids that mean other files in the restored one.
    if (m_store) m_store->db().close();
    setStore(nullptr);
    BackupManager::replaceDatabase(backup, m_databasePath);
    setStore(std::make_shared<CatalogDB>(m_databasePath.string()));
    reload();
    flash(QStringLiteral("Catalogs restored from backup"));
  } catch (const std::exception& error) {
    if (!m_store) {
      try {
        setStore(std::make_shared<CatalogDB>(m_databasePath.string()));
      } catch (const std::exception&) {
        // The alert below is all the user gets; the safety backup is the way back.
      }
    }
    reload();
    show(QStringLiteral("Restore Failed"),
         QStringLiteral("That file could not be used as a backup. ") + errorText(error));
  }
}

}  // namespace orrelin
