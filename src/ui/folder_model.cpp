#include "ui/folder_model.h"

#include <QStringList>

#include "app/qt/app_model.h"
#include "store/fmt.h"
#include "ui/file_maps.h"
#include "ui/thumb_cache.h"

namespace orrelin {

FolderModel::FolderModel(QObject* parent) : QAbstractListModel(parent) {}

void FolderModel::setRows(int64_t parentID, Records records, std::optional<std::vector<int>> order) {
  if (parentID == m_parentID && records == m_records && order == m_order) return;
  beginResetModel();
  m_parentID = parentID;
  m_records = std::move(records);
  m_order = std::move(order);
  endResetModel();
  emit rowsChanged();
}

int FolderModel::count() const {
  if (m_order) return static_cast<int>(m_order->size());
  return total();
}

const FileRecord* FolderModel::record(int row) const {
  if (row < 0 || row >= count()) return nullptr;
  const size_t index =
      m_order ? static_cast<size_t>((*m_order)[static_cast<size_t>(row)]) : static_cast<size_t>(row);
  return &(*m_records)[index];
}

QVariantMap FolderModel::fileAt(int row) const {
  const FileRecord* file = record(row);
  return file ? fileMap(*file) : QVariantMap();
}

qint64 FolderModel::fileID(int row) const {
  const FileRecord* file = record(row);
  return file ? file->id : 0;
}

int FolderModel::rowOf(qint64 id) const {
  for (int row = 0, n = count(); row < n; ++row) {
    if (record(row)->id == id) return row;
  }
  return -1;
}

int FolderModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant FolderModel::data(const QModelIndex& index, int role) const {
  const FileRecord* file = index.isValid() ? record(index.row()) : nullptr;
  if (!file) return {};
  switch (role) {
    case FileRole:
      return fileMap(*file);
    case FileIDRole:
      return QVariant::fromValue<qint64>(file->id);
    case Qt::DisplayRole:
    case NameRole:
      return QString::fromStdString(file->name);
    case IsDirRole:
      return file->isDir;
    case KindRole:
      return QString::fromUtf8(file->kindName().data(), static_cast<qsizetype>(file->kindName().size()));
    case HiddenRole:
      return file->hidden;
    case LabelRole:
      return file->label;
    case TagsRole: {
      QStringList tags;
      for (const std::string& tag : file->tags) tags << QString::fromStdString(tag);
      return tags;
    }
    case ThumbRole: {
      const auto path = AppModel::shared().thumbnailURL(*file);
      return path ? ThumbCache::imageUrl(*path) : QString();
    }
    case SizeTextRole: {
      std::string text = Fmt::size(file->size);
      if (file->isDir) text += " \u00B7 " + std::to_string(file->itemCount) + " items";
      return QString::fromStdString(text);
    }
    case ModifiedTextRole:
      return QString::fromStdString(Fmt::date(file->modified));
    default:
      return {};
  }
}

QHash<int, QByteArray> FolderModel::roleNames() const {
  return {{FileRole, "file"},         {FileIDRole, "fileID"},         {NameRole, "name"},
          {IsDirRole, "isDir"},       {KindRole, "kind"},             {HiddenRole, "hidden"},
          {LabelRole, "label"},       {TagsRole, "tags"},             {ThumbRole, "thumb"},
          {SizeTextRole, "sizeText"}, {ModifiedTextRole, "modifiedText"}};
}

}  // namespace orrelin
