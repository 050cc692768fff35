// The New Catalog sheet's state and its four-step start.
#include "ui/new_catalog_state.h"

#include <QVariantMap>

#include "app/qt/app_model.h"
#include "app/qt/dialogs.h"
#include "core/name_mapping.h"

namespace orrelin {

namespace fs = std::filesystem;

namespace {

// Texts from the system (volume labels, paths) are bytes; the screens get their stored, valid form.
QString shown(const std::string& bytes) { return QString::fromStdString(NameMapping::fromDisk(bytes)); }

}  // namespace

NewCatalogState::NewCatalogState(QObject* parent)
    : QObject(parent), m_volumes(VolumeInfo::mounted()), m_options(ScanOptions::defaults()) {
  const AppModel& model = AppModel::shared();
  if (auto selected = model.selectedCatalog()) m_groupID = selected->groupID;
  for (const CatalogGroup& group : model.groups())
    m_groups.emplace_back(group.id, QString::fromStdString(group.name));
}

QVariantList NewCatalogState::volumeList() const {
  QVariantList list;
  for (const MountedVolume& volume : m_volumes) {
    list << QVariantMap{{"url", shown(volume.url)},
                        {"name", shown(volume.info.name)},
                        {"symbol", volumeSymbol(volume.info)},
                        {"capacity", QVariant::fromValue<qint64>(volume.info.capacity)},
                        {"free", QVariant::fromValue<qint64>(volume.info.free)}};
  }
  return list;
}

QString NewCatalogState::chosenText() const { return m_chosen ? shown(m_chosen->native()) : QString(); }

void NewCatalogState::setName(const QString& name) {
  if (name == m_name) return;
  m_name = name;
  emit nameChanged();
}

void NewCatalogState::setGroupIDValue(qint64 id) {
  std::optional<int64_t> group = id < 0 ? std::nullopt : std::optional<int64_t>(id);
  if (group == m_groupID) return;
  m_groupID = group;
  emit groupIDChanged();
}

QVariantList NewCatalogState::groupChoices() const {
  QVariantList list{
      QVariantMap{{"id", QVariant::fromValue<qint64>(-1)}, {"name", QStringLiteral("Ungrouped")}}};
  for (const auto& [id, name] : m_groups) {
    list << QVariantMap{{"id", QVariant::fromValue<qint64>(id)}, {"name", name}};
  }
  return list;
}

int NewCatalogState::groupIndex() const {
  if (!m_groupID) return 0;
  for (size_t i = 0; i < m_groups.size(); ++i) {
    if (m_groups[i].first == *m_groupID) return static_cast<int>(i) + 1;
  }
  // A group that has gone since the selection was read: the picker shows no entry rather than a wrong one.
  return -1;
}

void NewCatalogState::setGroupIndex(int index) {
  if (index == 0) setGroupIDValue(-1);
  if (index >= 1 && index <= static_cast<int>(m_groups.size())) {
    setGroupIDValue(m_groups[static_cast<size_t>(index) - 1].first);
  }
}

void NewCatalogState::setOption(bool ScanOptions::*field, bool on) {
  if (m_options.*field == on) return;
  m_options.*field = on;
  emit optionsChanged();
}

void NewCatalogState::setChosen(const fs::path& path, const QString& name) {
  const bool changed = m_chosen != path;
  m_chosen = path;
  if (changed) emit chosenChanged();
  setName(name);
}

void NewCatalogState::chooseVolume(int index) {
  if (index < 0 || index >= static_cast<int>(m_volumes.size())) return;
  const MountedVolume& volume = m_volumes[static_cast<size_t>(index)];
  const fs::path path(volume.url);
  setChosen(path, volume.info.name.empty() ? lastComponent(path) : shown(volume.info.name));
}

void NewCatalogState::chooseFolder() {
  const auto path =
      Dialogs::chooseOpen(QStringLiteral("Choose a folder, drive or network share to catalog."),
                          QStringLiteral("Choose"), /*directory=*/{}, /*extensions=*/{}, /*folders=*/true);
  if (path) choose(*path);
}

void NewCatalogState::choose(const fs::path& path) { setChosen(path, lastComponent(path)); }

bool NewCatalogState::start() {
  // Return in the name field and the sheet's default key may both arrive: one start only.
  if (!m_chosen || m_started) return false;
  m_started = true;
  ScanOptions::setDefaults(m_options);
  QString name = m_name.trimmed();
  if (name.isEmpty()) name = lastComponent(*m_chosen);
  AppModel& model = AppModel::shared();
  model.beginScan(*m_chosen, name, m_groupID, m_options);
  model.setNewCatalogSheet(false);
  return true;
}

void NewCatalogState::cancel() { AppModel::shared().setNewCatalogSheet(false); }

QString NewCatalogState::volumeSymbol(const VolumeInfo& info) {
  if (info.isNetwork) return QStringLiteral("network");
  if (info.isRemovable) return QStringLiteral("externaldrive.fill");
  return QStringLiteral("internaldrive.fill");
}

QString NewCatalogState::lastComponent(const fs::path& path) {
  fs::path clean = path.lexically_normal();
  if (!clean.has_filename() && clean.has_relative_path()) clean = clean.parent_path();  // A trailing slash.
  const fs::path leaf = clean.filename();
  return shown(leaf.empty() ? clean.native() : leaf.native());
}

}  // namespace orrelin
