// The Rename Assistant's observable state over the plain pane.
#include "organize/qt/rename_pane_state.h"

#include <QVariantMap>

#include <algorithm>

#include "app/qt/app_model.h"

namespace orrelin {

namespace {

constexpr RenameRule::CaseMode kCaseModes[] = {RenameRule::CaseMode::keep, RenameRule::CaseMode::lower,
                                               RenameRule::CaseMode::upper, RenameRule::CaseMode::title};

QString text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

}  // namespace

RenamePaneState::RenamePaneState(QObject* parent) : QObject(parent) {}

void RenamePaneState::classBegin() { AppModel::shared().connectRenamePane(*this); }

void RenamePaneState::setCatalogID(qint64 id) {
  std::optional<int64_t> chosen = id < 0 ? std::nullopt : std::optional<int64_t>(id);
  assign(m_pane.catalogID, chosen);
}

void RenamePaneState::setCaseMode(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kCaseModes))) return;
  assign(m_pane.rule.caseMode, kCaseModes[index]);
}

QStringList RenamePaneState::caseModeLabels() const {
  QStringList labels;
  for (RenameRule::CaseMode mode : kCaseModes) labels << text(rawValue(mode));
  return labels;
}

QVariantList RenamePaneState::steps() const {
  QVariantList rows;
  for (const PlanStep& s : m_pane.steps) {
    rows << QVariantMap{{"id", text(s.id)},     {"kind", text(rawValue(s.kind))},
                        {"from", text(s.from)}, {"to", text(s.to)},
                        {"ok", s.ok},           {"status", text(s.status)}};
  }
  return rows;
}

int RenamePaneState::readyCount() const {
  return static_cast<int>(
      std::count_if(m_pane.steps.begin(), m_pane.steps.end(), [](const PlanStep& s) { return s.ok; }));
}

void RenamePaneState::preview() {
  std::vector<PlanStep> before = m_pane.steps;
  report(m_pane.preview(m_store), before);
}

void RenamePaneState::apply() {
  std::vector<PlanStep> before = m_pane.steps;
  report(m_pane.apply(m_store), before);
}

void RenamePaneState::report(const RenameOutcome& outcome, const std::vector<PlanStep>& stepsBefore) {
  // A preview always makes new row identities, so equal rows here mean nothing was done at all.
  if (m_pane.steps != stepsBefore) emit stepsChanged();
  if (outcome.alert) emit alertRaised(text(outcome.alert->title), text(outcome.alert->message));
  if (outcome.toast) emit toastRaised(text(*outcome.toast));
  if (outcome.rescanCatalogID) emit rescanRequested(*outcome.rescanCatalogID);
}

}  // namespace orrelin
