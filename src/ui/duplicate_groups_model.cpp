// The duplicates screen's list of sets over DuplicateState, with member maps made on demand.
#include "ui/duplicate_groups_model.h"

#include "app/qt/app_model.h"
#include "search/qt/duplicate_state.h"
#include "ui/file_maps.h"

namespace orrelin {

DuplicateGroupsModel::DuplicateGroupsModel(QObject* parent)
    : DuplicateGroupsModel(DuplicateState::shared(), parent) {}

DuplicateGroupsModel::DuplicateGroupsModel(DuplicateState& state, QObject* parent)
    : QAbstractListModel(parent), m_state(state), m_count(state.groupCount()) {
  connect(&m_state, &DuplicateState::groupsChanged, this, &DuplicateGroupsModel::resetGroups);
  connect(&m_state, &DuplicateState::expandedChanged, this, [this] { touchAll(ExpandedRole); });
  connect(&AppModel::shared(), &AppModel::onlineIDsChanged, this, [this] {
    m_members.clear();
    touchAll(MembersRole);
  });
}

int DuplicateGroupsModel::count() const { return m_count; }

void DuplicateGroupsModel::resetGroups() {
  beginResetModel();
  m_members.clear();
  const int before = m_count;
  m_count = m_state.groupCount();
  endResetModel();
  if (before != m_count) emit countChanged();
}

void DuplicateGroupsModel::touchAll(int role) {
  if (m_count > 0) emit dataChanged(index(0), index(m_count - 1), {role});
}

int DuplicateGroupsModel::rowOf(const QString& key) const {
  const std::string wanted = key.toStdString();
  for (int row = 0; row < m_count; ++row) {
    if (m_state.groups()[static_cast<size_t>(row)].key == wanted) return row;
  }
  return -1;
}

int DuplicateGroupsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_count; }

QVariantList DuplicateGroupsModel::members(int row) const {
  auto cached = m_members.constFind(row);
  if (cached != m_members.constEnd()) return *cached;
  const AppModel& app = AppModel::shared();
  QVariantList list;
  for (const DuplicateMember& member : m_state.groups()[static_cast<size_t>(row)].members) {
    QVariantMap map = fileMap(member.file);
    map.insert("catalogName", QString::fromStdString(member.catalogName));
    map.insert("online", app.isOnline(member.file.catalogID));
    list << map;
  }
  m_members.insert(row, list);
  return list;
}

QVariant DuplicateGroupsModel::data(const QModelIndex& index, int role) const {
  // The state's list and this model's count change together, in resetGroups.
  if (!index.isValid() || index.row() >= m_count || index.row() >= m_state.groupCount()) return {};
  const DuplicateGroup& group = m_state.groups()[static_cast<size_t>(index.row())];
  switch (role) {
    case KeyRole: return QString::fromStdString(group.key);
    case Qt::DisplayRole:
    case NameRole: return QString::fromStdString(group.name);
    case SizeRole: return static_cast<double>(group.size);
    case WastedRole: return static_cast<double>(group.wasted());
    case CopiesRole: return static_cast<int>(group.members.size());
    case ExpandedRole: return m_state.expanded().count(group.key) != 0;
    case MembersRole: return members(index.row());
    default: return {};
  }
}

QHash<int, QByteArray> DuplicateGroupsModel::roleNames() const {
  return {{KeyRole, "groupKey"}, {NameRole, "name"},         {SizeRole, "size"},      {WastedRole, "wasted"},
          {CopiesRole, "copies"}, {ExpandedRole, "expanded"}, {MembersRole, "members"}};
}

}  // namespace orrelin
