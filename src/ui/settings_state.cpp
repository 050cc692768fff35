// The Settings and About windows' state and actions.
#include "ui/settings_state.h"

#include <QVariantMap>

#include "app/backup_manager.h"
#include "app/qt/app_model.h"
#include "app/qt/desktop_services.h"
#include "app/qt/help_links.h"
#include "core/app_info.h"
#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "store/fmt.h"
#include "ui/thumb_cache.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

QString qs(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// The path as the screens spell it: names that are not UTF-8 in their reversible stored form.
QString storedText(const fs::path& path) { return qs(NameMapping::storedPath(path)); }

}  // namespace

SettingsState::SettingsState(QObject* parent) : QObject(parent) { refresh(); }

void SettingsState::refresh() {
  const ScanOptions scan = ScanOptions::defaults();
  if (!(scan == m_scan)) {
    m_scan = scan;
    emit scanChanged();
  }
  const bool autoBackup = BackupManager::autoBackupEnabled();
  if (autoBackup != m_autoBackup) {
    m_autoBackup = autoBackup;
    emit autoBackupChanged();
  }
  const int keep = BackupManager::keepCount();
  if (keep != m_keep) {
    m_keep = keep;
    emit keepCountChanged();
  }
  readBackups();
}

void SettingsState::setScanOption(bool ScanOptions::*field, bool on) {
  if (m_scan.*field == on) return;
  m_scan.*field = on;
  // Only the next scan reads the defaults; one that runs keeps the options it started with.
  ScanOptions::setDefaults(m_scan);
  emit scanChanged();
}

void SettingsState::setMetadata(bool on) { setScanOption(&ScanOptions::metadata, on); }
void SettingsState::setThumbnails(bool on) { setScanOption(&ScanOptions::thumbnails, on); }
void SettingsState::setHashes(bool on) { setScanOption(&ScanOptions::hashes, on); }
void SettingsState::setIncludeHidden(bool on) { setScanOption(&ScanOptions::includeHidden, on); }
void SettingsState::setTreatPackagesAsFiles(bool on) { setScanOption(&ScanOptions::treatPackagesAsFiles, on); }

void SettingsState::setAutoBackup(bool on) {
  if (on == m_autoBackup) return;
  BackupManager::setAutoBackupEnabled(on);
  m_autoBackup = on;
  emit autoBackupChanged();
}

void SettingsState::setKeepCount(int count) {
  BackupManager::setKeepCount(count);
  // Read back, so the control shows what was stored: the bounds are BackupManager's.
  const int stored = BackupManager::keepCount();
  if (stored == m_keep) {
    // A value past a bound still needs the control put back on the bound.
    if (stored != count) emit keepCountChanged();
    return;
  }
  m_keep = stored;
  emit keepCountChanged();
}

void SettingsState::readBackups() {
  m_lastBackupText = qs(Fmt::date(BackupManager::lastBackup()));
  m_backups.clear();
  for (const fs::path& file : BackupManager::list()) {
    QVariantMap row;
    row.insert(QStringLiteral("name"), storedText(file.filename()));
    row.insert(QStringLiteral("path"), storedText(file));
    m_backups.append(row);
  }
  emit backupsChanged();
}

void SettingsState::backUpNow() {
  AppModel::shared().backupNow();
  readBackups();
}

void SettingsState::showBackupsFolder() { DesktopServices::open(AppPaths::backups()); }

void SettingsState::restore(const QString& path) {
  if (path.isEmpty()) return;
  AppModel::shared().restore(NameMapping::diskPath(path.toStdString()));
  // The safety backup made before the swap is a new row, and the newest.
  readBackups();
}

QString SettingsState::databasePath() const { return storedText(AppModel::shared().databasePath()); }

void SettingsState::showDataFolder() { DesktopServices::reveal(AppModel::shared().databasePath()); }

void SettingsState::loadSample() { AppModel::shared().loadSampleData(); }

void SettingsState::removeSample() { AppModel::shared().removeSampleData(); }

void SettingsState::clearThumbnailCache() {
  ThumbCache::shared().clear();
  AppModel::shared().flash(QStringLiteral("Thumbnail cache cleared"));
}

QString SettingsState::appName() const { return qs(AppInfo::name); }
QString SettingsState::company() const { return qs(AppInfo::company); }
QString SettingsState::version() const { return qs(AppInfo::version()); }
QString SettingsState::build() const { return qs(AppInfo::build()); }
QString SettingsState::website() const { return qs(AppInfo::website); }

void SettingsState::openWebsite() { HelpLinks::openWebsite(); }

}  // namespace orrelin
