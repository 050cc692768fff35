// The rows of a results table: the hits of a search or of a report, sorted as the user asks without
// changing the order the source keeps (exports use that one), and the one selected row, which is held by
// its file so that it stays on the same hit through a re-sort or a new result that still holds it.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QMetaObject>
#include <QPointer>
#include <QHash>
#include <QString>

#include <vector>

#include "search/search_query.h"

namespace orrelin {

class HitsModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  // Where the hits come from: SearchState, EmptyFoldersPane, LargeOldPane, MissingPane or ComparePane
  // (its current tab). Any other object, or none, gives no rows.
  Q_PROPERTY(QObject* source READ source WRITE setSource NOTIFY sourceChanged)
  // name, catalogName, size, kindName, sortModified or path.
  Q_PROPERTY(QString sortKey READ sortKey NOTIFY sortChanged)
  Q_PROPERTY(bool ascending READ ascending NOTIFY sortChanged)
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  // The selected hit's file id; 0 for none.
  Q_PROPERTY(qint64 selectedID READ selectedID WRITE setSelectedID NOTIFY selectionChanged)
  // The row that shows the selected hit; -1 for none. Setting a row outside the rows clears the selection.
  Q_PROPERTY(int selectedRow READ selectedRow WRITE setSelectedRow NOTIFY selectionChanged)

 public:
  enum Role { HitRole = Qt::UserRole + 1, FileIDRole, NameRole };

  explicit HitsModel(QObject* parent = nullptr);

  QObject* source() const { return m_source; }
  void setSource(QObject* source);
  // Takes these hits directly (a source set later replaces them).
  void setHits(std::vector<SearchHit> hits);

  QString sortKey() const { return m_sortKey; }
  bool ascending() const { return m_ascending; }
  int count() const { return static_cast<int>(m_rows.size()); }
  qint64 selectedID() const { return m_selectedID; }
  // An id that no row shows clears the selection.
  void setSelectedID(qint64 id);
  int selectedRow() const { return m_selectedRow; }
  void setSelectedRow(int row);

  // Sorts by `key`; the key already in use flips between ascending and descending. An unknown key is
  // ignored.
  Q_INVOKABLE void sortBy(const QString& key);
  // Sorts by `key` in the given direction.
  Q_INVOKABLE void sort(const QString& key, bool ascending);
  // The row's hit as a map (see hitMap); empty outside the rows.
  Q_INVOKABLE QVariantMap hitAt(int row) const;
  // The row's file id, 0 outside the rows.
  Q_INVOKABLE qint64 fileID(int row) const;
  // The row that shows file `id`, or -1.
  Q_INVOKABLE int rowOf(qint64 id) const;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void sourceChanged();
  void sortChanged();
  void countChanged();
  void selectionChanged();

 private:
  void reload();
  void applySort();
  // Finds the selected id's row again after the rows moved; clears the selection when it is gone.
  void relocateSelection();

  QPointer<QObject> m_source;
  std::vector<QMetaObject::Connection> m_connections;
  std::vector<SearchHit> m_hits;  // In the source's order.
  std::vector<int> m_rows;        // Indexes into m_hits, in the shown order.
  std::vector<int> m_rowOfHit;    // The inverse of m_rows.
  QHash<qint64, int> m_hitOfID;   // File id to its index in m_hits (the first, should one repeat).
  qint64 m_selectedID = 0;
  int m_selectedRow = -1;
  QString m_sortKey = QStringLiteral("name");
  bool m_ascending = true;
};

}  // namespace orrelin
