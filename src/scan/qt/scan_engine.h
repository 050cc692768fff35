// The observable driver of scanning: runs one ScanWorker at a time on a background thread and publishes
// its progress on the main thread, where the screens read it.
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "scan/scan_records.h"

namespace orrelin {

class ScanEngine : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
  Q_PROPERTY(bool isPaused READ isPaused NOTIFY isPausedChanged)
  Q_PROPERTY(QString phase READ phase NOTIFY phaseChanged)
  Q_PROPERTY(qint64 items READ items NOTIFY itemsChanged)
  Q_PROPERTY(qint64 bytes READ bytes NOTIFY bytesChanged)
  Q_PROPERTY(QString currentPath READ currentPath NOTIFY currentPathChanged)
  Q_PROPERTY(qint64 added READ added NOTIFY addedChanged)
  Q_PROPERTY(qint64 changed READ changed NOTIFY changedChanged)
  Q_PROPERTY(qint64 removed READ removed NOTIFY removedChanged)
  Q_PROPERTY(QString catalogName READ catalogName NOTIFY catalogNameChanged)
  Q_PROPERTY(QDateTime startedAt READ startedAt NOTIFY startedAtChanged)
  Q_PROPERTY(bool expanded READ expanded WRITE setExpanded NOTIFY expandedChanged)

 public:
  // The two calls the engine makes on the application state: `reload` when a new catalog gets its id
  // during its first scan (so it shows while it is scanned), `scanFinished` with the outcome. Both run
  // on the main thread; either may be empty.
  struct ModelHooks {
    std::function<void()> reload;
    std::function<void(const ScanResult& result, bool quiet)> scanFinished;
  };

  explicit ScanEngine(QObject* parent = nullptr);
  // A scan still running is cancelled and left to finish on its own; nothing more reaches this object.
  ~ScanEngine() override;

  // Starts scanning `root` (a real path) into catalog `catalogID`, or into a new catalog named `name` in
  // group `groupID` when `catalogID` is absent. Does nothing while a scan runs: callers that must tell the
  // user check isRunning() first. `quiet` marks an automatic rescan (phase "Auto-updating", panel
  // folded). Main thread only.
  void start(const std::filesystem::path& root, std::optional<int64_t> catalogID, const QString& name,
             std::optional<int64_t> groupID, const ScanOptions& options, ModelHooks model, bool quiet);
  // Pauses a running scan, or resumes a paused one. Main thread only.
  Q_INVOKABLE void togglePause();
  // Asks the running scan to stop; what it wrote stays. Main thread only.
  Q_INVOKABLE void cancel();
  // Seconds from startedAt to now.
  Q_INVOKABLE double elapsed() const;
  // Where scans write: the data folder's database and thumbnails unless set here (for a database given
  // on the command line). Takes effect at the next start.
  void setPaths(const std::filesystem::path& database, const std::filesystem::path& thumbnails);

  bool isRunning() const { return m_isRunning; }
  bool isPaused() const { return m_isPaused; }
  QString phase() const { return m_phase; }
  qint64 items() const { return m_items; }
  qint64 bytes() const { return m_bytes; }
  QString currentPath() const { return m_currentPath; }
  qint64 added() const { return m_added; }
  qint64 changed() const { return m_changed; }
  qint64 removed() const { return m_removed; }
  QString catalogName() const { return m_catalogName; }
  QDateTime startedAt() const { return m_startedAt; }
  bool expanded() const { return m_expanded; }
  void setExpanded(bool expanded);

  // The catalog being scanned: absent between scans, and during a first scan until the catalog exists.
  std::optional<int64_t> catalogID() const { return m_catalogID; }

 signals:
  void isRunningChanged();
  void isPausedChanged();
  void phaseChanged();
  void itemsChanged();
  void bytesChanged();
  void currentPathChanged();
  void addedChanged();
  void changedChanged();
  void removedChanged();
  void catalogNameChanged();
  void startedAtChanged();
  void expandedChanged();

 private:
  struct Mailbox;

  void receiveProgress(const ScanProgress& progress);
  void receiveResult(const ScanResult& result, bool quiet);

  void setIsRunning(bool value);
  void setIsPaused(bool value);
  void setPhase(const QString& value);
  void setItems(qint64 value);
  void setBytes(qint64 value);
  void setCurrentPath(const QString& value);
  void setAdded(qint64 value);
  void setChanged(qint64 value);
  void setRemoved(qint64 value);
  void setCatalogName(const QString& value);
  void setStartedAt(const QDateTime& value);

  bool m_isRunning = false;
  bool m_isPaused = false;
  QString m_phase;
  qint64 m_items = 0;
  qint64 m_bytes = 0;
  QString m_currentPath;
  qint64 m_added = 0;
  qint64 m_changed = 0;
  qint64 m_removed = 0;
  QString m_catalogName;
  QDateTime m_startedAt = QDateTime::currentDateTime();
  bool m_expanded = true;
  std::optional<int64_t> m_catalogID;
  std::shared_ptr<ScanControl> m_control = std::make_shared<ScanControl>();
  ModelHooks m_model;
  std::filesystem::path m_databasePath;    // Empty: AppPaths::database().
  std::filesystem::path m_thumbnailsPath;  // Empty: AppPaths::thumbnails().
  // Where the background thread posts its reports; shared with it, cut off when the engine goes.
  std::shared_ptr<Mailbox> m_mailbox;
};

}  // namespace orrelin
