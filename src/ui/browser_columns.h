// The columns of the browser's column view, one per depth of the open path, each a FolderModel. Columns
// are added and removed at the end rather than rebuilt, so the columns that stay keep their delegates and
// their scroll positions.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>

#include <vector>

#include "ui/folder_model.h"

namespace orrelin {

class BrowserColumns : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Columns are made by CatalogBrowser")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  enum Role { FolderRole = Qt::UserRole + 1, DepthRole };

  explicit BrowserColumns(QObject* parent = nullptr);

  int count() const { return static_cast<int>(m_columns.size()); }
  // Makes the number of columns `n`, adding empty ones or dropping the deepest.
  void resize(int n);
  // The column at `depth`; null outside the columns.
  Q_INVOKABLE orrelin::FolderModel* column(int depth) const;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void countChanged();

 private:
  std::vector<FolderModel*> m_columns;  // Children of this object.
};

}  // namespace orrelin
