// What the Settings and About windows show and do: the scan defaults, the backup settings and the list of
// backups, the data folder, the sample data, the thumbnail memory cache, and the program's name and
// version. Every change is written through at once; there is nothing to apply. Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>

#include "scan/scan_records.h"

namespace orrelin {

class SettingsState : public QObject {
  Q_OBJECT
  QML_ELEMENT

  // The five defaults for new scans and updates; each write stores ScanOptions::defaults() at once.
  Q_PROPERTY(bool metadata READ metadata WRITE setMetadata NOTIFY scanChanged)
  Q_PROPERTY(bool thumbnails READ thumbnails WRITE setThumbnails NOTIFY scanChanged)
  Q_PROPERTY(bool hashes READ hashes WRITE setHashes NOTIFY scanChanged)
  Q_PROPERTY(bool includeHidden READ includeHidden WRITE setIncludeHidden NOTIFY scanChanged)
  Q_PROPERTY(bool treatPackagesAsFiles READ treatPackagesAsFiles WRITE setTreatPackagesAsFiles NOTIFY scanChanged)

  // The daily backup at start, and how many backups are kept (held within 1 and 60).
  Q_PROPERTY(bool autoBackup READ autoBackup WRITE setAutoBackup NOTIFY autoBackupChanged)
  Q_PROPERTY(int keepCount READ keepCount WRITE setKeepCount NOTIFY keepCountChanged)
  Q_PROPERTY(int minKeep READ minKeep CONSTANT)
  Q_PROPERTY(int maxKeep READ maxKeep CONSTANT)
  // The date of the last backup, or an em dash when there was none.
  Q_PROPERTY(QString lastBackupText READ lastBackupText NOTIFY backupsChanged)
  // One map per backup, newest first: name (the file name), path.
  Q_PROPERTY(QVariantList backups READ backups NOTIFY backupsChanged)

  // The catalog database's path.
  Q_PROPERTY(QString databasePath READ databasePath CONSTANT)

  // The program's name, maker, version, build and web site, for About.
  Q_PROPERTY(QString appName READ appName CONSTANT)
  Q_PROPERTY(QString company READ company CONSTANT)
  Q_PROPERTY(QString version READ version CONSTANT)
  Q_PROPERTY(QString build READ build CONSTANT)
  Q_PROPERTY(QString website READ website CONSTANT)

 public:
  static constexpr int kMinKeep = 1;
  static constexpr int kMaxKeep = 60;

  // Reads the working copies from the settings and the backups folder.
  explicit SettingsState(QObject* parent = nullptr);

  // Reads everything again, as when the window opens (another window or the command-line tool may have
  // changed the settings or made backups meanwhile).
  Q_INVOKABLE void refresh();

  bool metadata() const { return m_scan.metadata; }
  bool thumbnails() const { return m_scan.thumbnails; }
  bool hashes() const { return m_scan.hashes; }
  bool includeHidden() const { return m_scan.includeHidden; }
  bool treatPackagesAsFiles() const { return m_scan.treatPackagesAsFiles; }
  void setMetadata(bool on);
  void setThumbnails(bool on);
  void setHashes(bool on);
  void setIncludeHidden(bool on);
  void setTreatPackagesAsFiles(bool on);

  bool autoBackup() const { return m_autoBackup; }
  void setAutoBackup(bool on);
  int keepCount() const { return m_keep; }
  // Stores `count` held within 1 and 60. Lowering it deletes nothing until the next backup.
  void setKeepCount(int count);
  int minKeep() const { return kMinKeep; }
  int maxKeep() const { return kMaxKeep; }
  QString lastBackupText() const { return m_lastBackupText; }
  QVariantList backups() const { return m_backups; }

  // "Back Up Now": a manual backup through the application (its toast or alert), then the list again.
  Q_INVOKABLE void backUpNow();
  // Opens the backups folder in the file manager.
  Q_INVOKABLE void showBackupsFolder();
  // Restores the backup at `path` (a path of `backups`) through the application, which asks first; then
  // reads the list again.
  Q_INVOKABLE void restore(const QString& path);

  QString databasePath() const;
  // Shows the database file in the file manager.
  Q_INVOKABLE void showDataFolder();

  Q_INVOKABLE void loadSample();
  Q_INVOKABLE void removeSample();
  // Empties the thumbnail memory cache and says so; the thumbnail files stay.
  Q_INVOKABLE void clearThumbnailCache();

  QString appName() const;
  QString company() const;
  QString version() const;
  QString build() const;
  QString website() const;
  // Opens the maker's web site in the browser.
  Q_INVOKABLE void openWebsite();

 signals:
  void scanChanged();
  void autoBackupChanged();
  void keepCountChanged();
  void backupsChanged();

 private:
  // Sets one of the scan defaults and stores all five.
  void setScanOption(bool ScanOptions::*field, bool on);
  void readBackups();

  ScanOptions m_scan;
  bool m_autoBackup = true;
  int m_keep = 10;
  QString m_lastBackupText;
  QVariantList m_backups;
};

}  // namespace orrelin
