// The scan engine: one background scan at a time, its reports hopping to the main thread.
#include "scan/qt/scan_engine.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QMetaObject>
#include <QThread>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "core/app_paths.h"
#include "core/name_mapping.h"
#include "scan/scan_worker.h"

namespace orrelin {

// The background thread's way back to the engine. The engine may go while a scan runs (at exit, or in
// a test); it then cuts the line, and a report posted later finds nobody and is dropped.
struct ScanEngine::Mailbox {
  std::mutex mutex;
  ScanEngine* engine = nullptr;  // Under mutex.

  // Runs `deliver(engine)` on the engine's thread, if the engine still exists.
  template <class Deliver>
  void post(Deliver deliver) {
    std::lock_guard lock(mutex);
    if (!engine) return;
    ScanEngine* target = engine;
    // Queued: the call runs in the main thread's event loop. Qt drops it if the engine is deleted first.
    QMetaObject::invokeMethod(
        target, [target, deliver = std::move(deliver)] { deliver(target); }, Qt::QueuedConnection);
  }
};

namespace {

// "Utility" priority: the scan yields to the interface and to whatever else the user is doing.
constexpr int kScanNiceness = 10;

}  // namespace

ScanEngine::ScanEngine(QObject* parent) : QObject(parent), m_mailbox(std::make_shared<Mailbox>()) {
  m_mailbox->engine = this;
}

ScanEngine::~ScanEngine() {
  {
    std::lock_guard lock(m_mailbox->mutex);
    m_mailbox->engine = nullptr;
  }
  m_control->setCancelled(true);
}

void ScanEngine::start(const std::filesystem::path& root, std::optional<int64_t> catalogID,
                       const QString& name, std::optional<int64_t> groupID, const ScanOptions& options,
                       ModelHooks model, bool quiet) {
  Q_ASSERT(QThread::currentThread() == thread());
  if (m_isRunning) return;

  m_control = std::make_shared<ScanControl>();
  const std::string rootText = NameMapping::storedPath(root);
  setIsRunning(true);
  setIsPaused(false);
  setPhase(quiet ? QStringLiteral("Auto-updating") : QStringLiteral("Preparing"));
  setItems(0);
  setBytes(0);
  setCurrentPath(QString::fromStdString(rootText));
  setAdded(0);
  setChanged(0);
  setRemoved(0);
  setCatalogName(name);
  setStartedAt(QDateTime::currentDateTime());
  setExpanded(!quiet);
  m_catalogID = catalogID;
  m_model = std::move(model);

  auto mailbox = m_mailbox;
  auto control = m_control;
  auto run = [mailbox, control, rootText, catalogID, newName = name.toStdString(), groupID, options, quiet,
              database = m_databasePath, thumbnails = m_thumbnailsPath] {
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kScanNiceness);
    ScanResult result;
    try {
      ScanWorker worker(
          database.empty() ? AppPaths::database().string() : database.string(), rootText, catalogID, newName,
          groupID, options, thumbnails.empty() ? AppPaths::thumbnails() : thumbnails, control,
          [mailbox](const ScanProgress& progress) {
            mailbox->post([progress](ScanEngine* engine) { engine->receiveProgress(progress); });
          });
      result = worker.run();
    } catch (const std::exception& error) {
      // The worker itself never throws; only finding the data folder can (a user without a home).
      result.id = ScanResult::newID();
      result.catalogID = catalogID.value_or(0);
      result.catalogName = newName;
      result.isRescan = catalogID.has_value();
      result.error = error.what();
    }
    mailbox->post(
        [result = std::move(result), quiet](ScanEngine* engine) { engine->receiveResult(result, quiet); });
  };
  try {
    std::thread(std::move(run)).detach();
  } catch (const std::system_error& error) {
    ScanResult result;
    result.id = ScanResult::newID();
    result.catalogID = catalogID.value_or(0);
    result.catalogName = name.toStdString();
    result.isRescan = catalogID.has_value();
    result.error = std::string("The scan could not be started: ") + error.what();
    m_mailbox->post(
        [result = std::move(result), quiet](ScanEngine* engine) { engine->receiveResult(result, quiet); });
  }
}

void ScanEngine::togglePause() {
  Q_ASSERT(QThread::currentThread() == thread());
  setIsPaused(!m_isPaused);
  m_control->setPaused(m_isPaused);
  setPhase(m_isPaused ? QStringLiteral("Paused") : QStringLiteral("Scanning"));
}

void ScanEngine::cancel() {
  Q_ASSERT(QThread::currentThread() == thread());
  m_control->setCancelled(true);
  m_control->setPaused(false);
  // isPaused stays as it is until the scan ends: the worker still has to wake and wind down.
  setPhase(QStringLiteral("Cancelling"));
}

void ScanEngine::setPaths(const std::filesystem::path& database, const std::filesystem::path& thumbnails) {
  m_databasePath = database;
  m_thumbnailsPath = thumbnails;
}

double ScanEngine::elapsed() const { return m_startedAt.msecsTo(QDateTime::currentDateTime()) / 1000.0; }

void ScanEngine::receiveProgress(const ScanProgress& progress) {
  // A report that was under way when the scan ended belongs to no scan any more.
  if (!m_isRunning) return;
  setPhase(QString::fromStdString(progress.phase));
  setItems(progress.items);
  setBytes(progress.bytes);
  setCurrentPath(QString::fromStdString(progress.currentPath));
  setAdded(progress.added);
  setChanged(progress.changed);
  setRemoved(progress.removed);
  if (!m_catalogID && progress.catalogID != 0) {
    // A new catalog now exists: reloading makes it appear while its first scan goes on.
    m_catalogID = progress.catalogID;
    if (m_model.reload) m_model.reload();
  }
}

void ScanEngine::receiveResult(const ScanResult& result, bool quiet) {
  setIsRunning(false);
  setIsPaused(false);
  m_catalogID.reset();
  // A copy: the hook may well start the next scan, which replaces the hooks.
  ModelHooks model = m_model;
  if (model.scanFinished) model.scanFinished(result, quiet);
}

void ScanEngine::setIsRunning(bool value) {
  if (m_isRunning == value) return;
  m_isRunning = value;
  emit isRunningChanged();
}
void ScanEngine::setIsPaused(bool value) {
  if (m_isPaused == value) return;
  m_isPaused = value;
  emit isPausedChanged();
}
void ScanEngine::setPhase(const QString& value) {
  if (m_phase == value) return;
  m_phase = value;
  emit phaseChanged();
}
void ScanEngine::setItems(qint64 value) {
  if (m_items == value) return;
  m_items = value;
  emit itemsChanged();
}
void ScanEngine::setBytes(qint64 value) {
  if (m_bytes == value) return;
  m_bytes = value;
  emit bytesChanged();
}
void ScanEngine::setCurrentPath(const QString& value) {
  if (m_currentPath == value) return;
  m_currentPath = value;
  emit currentPathChanged();
}
void ScanEngine::setAdded(qint64 value) {
  if (m_added == value) return;
  m_added = value;
  emit addedChanged();
}
void ScanEngine::setChanged(qint64 value) {
  if (m_changed == value) return;
  m_changed = value;
  emit changedChanged();
}
void ScanEngine::setRemoved(qint64 value) {
  if (m_removed == value) return;
  m_removed = value;
  emit removedChanged();
}
void ScanEngine::setCatalogName(const QString& value) {
  if (m_catalogName == value) return;
  m_catalogName = value;
  emit catalogNameChanged();
}
void ScanEngine::setStartedAt(const QDateTime& value) {
  if (m_startedAt == value) return;
  m_startedAt = value;
  emit startedAtChanged();
}
void ScanEngine::setExpanded(bool expanded) {
  if (m_expanded == expanded) return;
  m_expanded = expanded;
  emit expandedChanged();
}

}  // namespace orrelin
