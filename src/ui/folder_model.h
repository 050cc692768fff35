// The rows of one folder as the browser shows them: a column, or the list. The records stay in the
// browser's cache, shared rather than copied, and a row's map is made only when a view asks for it, so a
// folder of a hundred thousand entries costs one vector of indexes here. The rows' delegates read plain
// roles, with the size and date already as text: a scroll makes a page of rows at a time, and every
// binding a row need not evaluate is a frame kept.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QVariantMap>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "store/records.h"

namespace orrelin {

class FolderModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Folders are made by CatalogBrowser")
  // The folder shown (0: the catalog's root).
  Q_PROPERTY(qint64 parentID READ parentID NOTIFY rowsChanged)
  // Rows shown, and rows the folder holds before the filter.
  Q_PROPERTY(int count READ count NOTIFY rowsChanged)
  Q_PROPERTY(int total READ total NOTIFY rowsChanged)

 public:
  using Records = std::shared_ptr<const std::vector<FileRecord>>;
  enum Role {
    FileRole = Qt::UserRole + 1,  // The whole record map (see fileMap).
    FileIDRole,
    NameRole,
    IsDirRole,
    KindRole,          // The kind's raw value.
    HiddenRole,
    LabelRole,         // The colour label, 0 for none.
    TagsRole,          // List of text.
    ThumbRole,         // The thumbnail's image:// address, or empty.
    SizeTextRole,      // Fmt.size; a folder's with " · N items".
    ModifiedTextRole,  // Fmt.date of the modification date.
  };

  explicit FolderModel(QObject* parent = nullptr);

  // Shows the records of folder `parentID`: those at `order` (indexes into `records`), or all of them in
  // their own order when `order` is absent. Setting what is shown already changes nothing, so a view
  // keeps its place.
  void setRows(int64_t parentID, Records records, std::optional<std::vector<int>> order);

  int64_t parentID() const { return m_parentID; }
  int count() const;
  int total() const { return m_records ? static_cast<int>(m_records->size()) : 0; }
  const Records& records() const { return m_records; }
  // The record of `row`; null outside the rows.
  const FileRecord* record(int row) const;

  // The row's record as a map (see fileMap); empty outside the rows.
  Q_INVOKABLE QVariantMap fileAt(int row) const;
  // The row's file id; 0 outside the rows.
  Q_INVOKABLE qint64 fileID(int row) const;
  // The row that shows file `id`, or -1.
  Q_INVOKABLE int rowOf(qint64 id) const;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void rowsChanged();

 private:
  int64_t m_parentID = -1;  // -1 until the first setRows, so that a first empty root still announces.
  Records m_records;
  std::optional<std::vector<int>> m_order;
};

}  // namespace orrelin
