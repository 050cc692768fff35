// The Organization Plan pane's state over PlanEngine and the undo log store.
#include "organize/qt/plan_pane_state.h"

#include <QVariantMap>

#include <algorithm>
#include <exception>

#include "app/qt/app_model.h"
#include "app/qt/dialogs.h"
#include "organize/plan_engine.h"
#include "store/catalog_db.h"
#include "store/db_error.h"

namespace orrelin {

namespace {

constexpr size_t kErrorsShown = 10;

QString text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

// "1 step", "3 steps".
QString counted(qint64 count, const QString& noun) {
  return QString::number(count) + ' ' + noun + (count == 1 ? "" : "s");
}

// The first lines of `errors`, joined by line feeds.
QString firstErrors(const std::vector<std::string>& errors) {
  QStringList lines;
  for (size_t i = 0; i < errors.size() && i < kErrorsShown; ++i) lines << text(errors[i]);
  return lines.join('\n');
}

}  // namespace

PlanPaneState::PlanPaneState(QObject* parent) : QObject(parent) {}

void PlanPaneState::classBegin() {
  AppModel& app = AppModel::shared();
  setStore(app.store().get());
  connect(&app, &AppModel::storeChanged, this, [this, &app] { setStore(app.store().get()); });
  connect(this, &PlanPaneState::alertRaised, &app, &AppModel::show);
  connect(this, &PlanPaneState::toastRaised, &app, &AppModel::flash);
  connect(this, &PlanPaneState::rescanRequested, &app, &AppModel::quietRescan);
}

void PlanPaneState::setCatalogID(qint64 id) {
  std::optional<int64_t> chosen = id <= 0 ? std::nullopt : std::optional<int64_t>(id);
  if (chosen == m_catalogID) return;
  m_catalogID = chosen;
  emit catalogIDChanged();
  // The same plan means other files on another drive.
  revalidate();
}

QUrl PlanPaneState::planURL() const {
  return m_plan ? QUrl::fromLocalFile(text(m_planFile.string())) : QUrl();
}

QString PlanPaneState::planName() const { return m_plan ? text(m_planFile.filename().string()) : QString(); }

QString PlanPaneState::planDescription() const {
  return m_plan && m_plan->description ? text(*m_plan->description) : QString();
}

QVariantList PlanPaneState::stepList() const {
  QVariantList rows;
  for (const PlanStep& s : m_steps) {
    rows << QVariantMap{{"id", text(s.id)},     {"kind", text(rawValue(s.kind))},
                        {"from", text(s.from)}, {"to", text(s.to)},
                        {"ok", s.ok},           {"status", text(s.status)}};
  }
  return rows;
}

int PlanPaneState::readyCount() const {
  return static_cast<int>(
      std::count_if(m_steps.begin(), m_steps.end(), [](const PlanStep& s) { return s.ok; }));
}

QVariantList PlanPaneState::logList() const {
  QVariantList rows;
  for (const UndoLog& log : m_logs) {
    rows << QVariantMap{{"id", text(log.id)},
                        {"title", text(log.title)},
                        {"created", log.created.seconds},
                        {"moved", static_cast<qint64>(log.moves.size())},
                        {"foldersCreated", static_cast<qint64>(log.createdFolders.size())},
                        {"undone", log.undone},
                        {"root", text(log.root)}};
  }
  return rows;
}

void PlanPaneState::choosePlan() {
  std::optional<std::filesystem::path> file =
      Dialogs::chooseOpen(QStringLiteral("Choose an organization plan (JSON)."), QStringLiteral("Open"), {},
                          {QStringLiteral("json")});
  if (file) loadPlan(*file);
}

void PlanPaneState::loadPlan(const std::filesystem::path& file) {
  try {
    m_plan = PlanEngine::load(file);
  } catch (const std::exception& error) {
    emit alertRaised(QStringLiteral("Plan Not Loaded"), text(error.what()));
    return;
  }
  m_planFile = file;
  emit planChanged();
  revalidate();
}

std::optional<Catalog> PlanPaneState::connectedDrive() const {
  if (!m_store || !m_catalogID) return std::nullopt;
  std::optional<Catalog> catalog;
  try {
    catalog = m_store->catalog(*m_catalogID);
  } catch (const DBError&) {
    return std::nullopt;  // A database that cannot answer leaves no drive to work on.
  }
  if (!catalog || !AppModel::isOnlineNow(*catalog)) return std::nullopt;
  return catalog;
}

void PlanPaneState::revalidate() {
  if (!m_plan) return;
  std::optional<Catalog> drive = connectedDrive();
  if (!drive) {
    setSteps({});
    m_stepsCatalogID.reset();
    emit alertRaised(QStringLiteral("Drive Offline"),
                     QStringLiteral("Choose a drive that is connected. Plans are validated and applied "
                                    "against the real files."));
    return;
  }
  m_stepsCatalogID = drive->id;
  setSteps(PlanEngine::validate(*m_plan, drive->rootPath, PlanStep::Kind::move));
}

std::string PlanPaneState::logTitle() const {
  if (m_plan && m_plan->description && !m_plan->description->empty()) return *m_plan->description;
  if (!m_planFile.filename().empty()) return m_planFile.filename().string();
  return "Organization plan";
}

void PlanPaneState::apply() {
  const int ready = readyCount();
  if (ready == 0) return;
  std::optional<Catalog> drive = connectedDrive();
  if (!drive || drive->id != m_stepsCatalogID) {
    // The drive went away (or another was chosen) since the dry run: its verdicts no longer hold.
    revalidate();
    return;
  }
  const int answer = Dialogs::ask(
      "Apply " + counted(ready, "step") + " to the drive?",
      QStringLiteral(
          "Files and folders will be moved and created exactly as previewed. Nothing is deleted or "
          "overwritten, and you can undo the whole plan from Recent Plans."),
      {QStringLiteral("Apply Plan"), QStringLiteral("Cancel")});
  if (answer != 0) return;

  PlanEngine::ExecuteResult result =
      PlanEngine::execute(m_steps, drive->rootPath, logTitle(), /*saveLog=*/true);
  reloadLogs();
  // Emptied so that the same plan cannot be applied twice by accident; a new dry run shows what moved.
  setSteps({});
  const qint64 moved = static_cast<qint64>(result.log.moves.size());
  if (!result.errors.empty()) {
    emit alertRaised(QStringLiteral("Plan Partly Applied"),
                     QString::number(moved) + " items moved. Problems:\n" + firstErrors(result.errors));
  } else {
    emit toastRaised("Plan applied: " + QString::number(moved) + " moved, " +
                     QString::number(result.log.createdFolders.size()) + " folders created");
  }
  emit rescanRequested(drive->id);
}

void PlanPaneState::undo(const QString& logID) {
  auto found =
      std::find_if(m_logs.begin(), m_logs.end(), [&](const UndoLog& log) { return text(log.id) == logID; });
  if (found == m_logs.end() || found->undone) return;
  const UndoLog log = *found;
  PlanEngine::UndoResult result = PlanEngine::undo(log, /*saveLog=*/true);
  reloadLogs();
  if (!result.errors.empty()) {
    emit alertRaised(
        QStringLiteral("Undo Partly Completed"),
        QString::number(result.restored) + " restored. Problems:\n" + firstErrors(result.errors));
  } else {
    emit toastRaised("Undone: " + counted(result.restored, "item") + " restored");
  }
  if (!m_store) return;
  try {
    for (const Catalog& catalog : m_store->catalogs()) {
      if (catalog.rootPath == log.root) {
        emit rescanRequested(catalog.id);
        break;
      }
    }
  } catch (const DBError&) {
    // Without the catalog list there is nothing to bring up to date.
  }
}

void PlanPaneState::reloadLogs() {
  m_logs = UndoLogStore::list();
  emit logsChanged();
}

void PlanPaneState::setSteps(std::vector<PlanStep> steps) {
  if (steps.empty() && m_steps.empty()) return;
  m_steps = std::move(steps);
  emit stepsChanged();
}

}  // namespace orrelin
