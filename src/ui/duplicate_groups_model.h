// The duplicate sets of the shared DuplicateState as a list for the duplicates screen: one row per set,
// whose members are record maps made only when a row is first shown (a result holds up to 800 sets).
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QHash>
#include <QVariantList>

namespace orrelin {

class DuplicateState;

class DuplicateGroupsModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  // Roles: groupKey, name, size (one copy, bytes), wasted (bytes), copies (member count), expanded, and
  // members (one file map per copy, with catalogName and online).
  enum Role { KeyRole = Qt::UserRole + 1, NameRole, SizeRole, WastedRole, CopiesRole, ExpandedRole, MembersRole };

  // Follows DuplicateState::shared() (or `state`, for tests), and the drives coming and going.
  explicit DuplicateGroupsModel(QObject* parent = nullptr);
  DuplicateGroupsModel(DuplicateState& state, QObject* parent);

  int count() const;
  // The row of the set `key`, or -1.
  Q_INVOKABLE int rowOf(const QString& key) const;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 signals:
  void countChanged();

 private:
  void resetGroups();
  // Announces a change of `role` in every row.
  void touchAll(int role);
  QVariantList members(int row) const;

  DuplicateState& m_state;
  int m_count = 0;
  mutable QHash<int, QVariantList> m_members;  // Made on first use, by row; dropped when the sets change.
};

}  // namespace orrelin
