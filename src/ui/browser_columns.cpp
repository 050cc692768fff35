#include "ui/browser_columns.h"

namespace orrelin {

BrowserColumns::BrowserColumns(QObject* parent) : QAbstractListModel(parent) {}

void BrowserColumns::resize(int n) {
  const int before = count();
  if (n > before) {
    beginInsertRows({}, before, n - 1);
    while (count() < n) m_columns.push_back(new FolderModel(this));
    endInsertRows();
  } else if (n < before) {
    beginRemoveRows({}, n, before - 1);
    for (int i = n; i < before; ++i) m_columns[static_cast<size_t>(i)]->deleteLater();
    m_columns.resize(static_cast<size_t>(n));
    endRemoveRows();
  } else {
    return;
  }
  emit countChanged();
}

FolderModel* BrowserColumns::column(int depth) const {
  if (depth < 0 || depth >= count()) return nullptr;
  return m_columns[static_cast<size_t>(depth)];
}

int BrowserColumns::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant BrowserColumns::data(const QModelIndex& index, int role) const {
  FolderModel* folder = index.isValid() ? column(index.row()) : nullptr;
  if (!folder) return {};
  switch (role) {
    case FolderRole:
      return QVariant::fromValue(folder);
    case DepthRole:
      return index.row();
    default:
      return {};
  }
}

QHash<int, QByteArray> BrowserColumns::roleNames() const {
  return {{FolderRole, "folder"}, {DepthRole, "depth"}};
}

}  // namespace orrelin
