// The Organization Plan pane's observable state: the chosen drive, the loaded plan, its dry run, the
// undo logs of earlier plans and renames, and the operations choosePlan, revalidate, apply and undo, whose
// messages leave as signals.
#pragma once

#include <QtQml/qqmlparserstatus.h>
#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantList>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "organize/organization_plan.h"
#include "organize/undo_log.h"
#include "store/records.h"

namespace orrelin {

class CatalogDB;

class PlanPaneState : public QObject, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT

  // The chosen drive's catalog id, or -1 for none. Changing it validates a loaded plan again.
  Q_PROPERTY(qint64 catalogID READ catalogID WRITE setCatalogID NOTIFY catalogIDChanged)
  // The loaded plan's file; empty while none is loaded.
  Q_PROPERTY(QUrl planURL READ planURL NOTIFY planChanged)
  Q_PROPERTY(bool hasPlan READ hasPlan NOTIFY planChanged)
  // The file's last path component, and the plan's description (empty when it has none).
  Q_PROPERTY(QString planName READ planName NOTIFY planChanged)
  Q_PROPERTY(QString planDescription READ planDescription NOTIFY planChanged)
  // One map per dry-run row: id, kind (its label), from, to, ok, status.
  Q_PROPERTY(QVariantList steps READ stepList NOTIFY stepsChanged)
  Q_PROPERTY(int readyCount READ readyCount NOTIFY stepsChanged)
  Q_PROPERTY(int blockedCount READ blockedCount NOTIFY stepsChanged)
  // One map per undo log, newest first: id, title, created (seconds since 1970), moved, foldersCreated,
  // undone, root.
  Q_PROPERTY(QVariantList logs READ logList NOTIFY logsChanged)

 public:
  explicit PlanPaneState(QObject* parent = nullptr);

  // The database connection the pane finds catalogs in; null while the database is closed, when
  // validation finds no drive. Not owned.
  void setStore(CatalogDB* store) { m_store = store; }

  // Made by QML: takes the program's store (again after a restore replaces it) and sends its messages
  // and rescans to the application state.
  void classBegin() override;
  void componentComplete() override {}

  // Asks for a plan file with an open panel, then loads it.
  Q_INVOKABLE void choosePlan();
  // Reads the plan at `file`; on failure the alert "Plan Not Loaded" and the plan loaded before stays.
  // On success the plan is validated against the chosen drive.
  void loadPlan(const std::filesystem::path& file);
  // The dry run of the loaded plan against the chosen drive; without one that is connected, the alert
  // "Drive Offline" and no steps. Does nothing while no plan is loaded.
  Q_INVOKABLE void revalidate();
  // Asks, then carries out the ready steps on the drive with an undo log, and asks for a quiet rescan.
  Q_INVOKABLE void apply();
  // Puts back what the log with this id did, and asks for a quiet rescan of the catalog at its root.
  Q_INVOKABLE void undo(const QString& logID);
  // Reads the undo logs again.
  Q_INVOKABLE void reloadLogs();

  qint64 catalogID() const { return m_catalogID.value_or(-1); }
  void setCatalogID(qint64 id);
  QUrl planURL() const;
  bool hasPlan() const { return m_plan.has_value(); }
  QString planName() const;
  QString planDescription() const;
  const std::optional<OrganizationPlan>& plan() const { return m_plan; }
  const std::vector<PlanStep>& steps() const { return m_steps; }
  QVariantList stepList() const;
  int readyCount() const;
  int blockedCount() const { return static_cast<int>(m_steps.size()) - readyCount(); }
  const std::vector<UndoLog>& logs() const { return m_logs; }
  QVariantList logList() const;

 signals:
  void catalogIDChanged();
  void planChanged();
  void stepsChanged();
  void logsChanged();
  void alertRaised(const QString& title, const QString& message);
  void toastRaised(const QString& text);
  // The catalog's records no longer match its drive and want a quiet rescan.
  void rescanRequested(qint64 catalogID);

 private:
  // The chosen catalog when its drive is connected now.
  std::optional<Catalog> connectedDrive() const;
  // The undo log's title: the plan's description, else the file's name, else "Organization plan".
  std::string logTitle() const;
  void setSteps(std::vector<PlanStep> steps);

  CatalogDB* m_store = nullptr;
  std::optional<int64_t> m_catalogID;
  std::optional<OrganizationPlan> m_plan;
  std::filesystem::path m_planFile;
  std::vector<PlanStep> m_steps;
  std::optional<int64_t> m_stepsCatalogID;  // The catalog whose drive `m_steps` were validated against.
  std::vector<UndoLog> m_logs;
};

}  // namespace orrelin
