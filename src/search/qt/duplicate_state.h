// The duplicates screen's settings and last result, kept across screen changes in one shared instance.
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "search/duplicates.h"

namespace orrelin {

class CatalogDB;

class DuplicateState : public QObject {
  Q_OBJECT
  Q_PROPERTY(int mode READ modeIndex WRITE setModeIndex NOTIFY modeChanged)
  Q_PROPERTY(QString modeName READ modeName NOTIFY modeChanged)
  // The modes' raw values, in the order of `mode`'s indexes.
  Q_PROPERTY(QStringList modeNames READ modeNames CONSTANT)
  Q_PROPERTY(double minSizeMB READ minSizeMB WRITE setMinSizeMB NOTIFY minSizeMBChanged)
  Q_PROPERTY(bool crossOnly READ crossOnly WRITE setCrossOnly NOTIFY crossOnlyChanged)
  Q_PROPERTY(QList<qint64> catalogIDs READ catalogIDList WRITE setCatalogIDList NOTIFY catalogIDsChanged)
  Q_PROPERTY(int groupCount READ groupCount NOTIFY groupsChanged)
  Q_PROPERTY(qint64 wastedBytes READ wastedBytes NOTIFY groupsChanged)
  Q_PROPERTY(QStringList expanded READ expandedList NOTIFY expandedChanged)
  // Whether there are sets and every one of them is open.
  Q_PROPERTY(bool allExpanded READ allExpanded NOTIFY expandedChanged)
  Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
  Q_PROPERTY(bool ran READ ran NOTIFY ranChanged)

 public:
  explicit DuplicateState(QObject* parent = nullptr);
  // Waits for a run in progress; its result is then dropped.
  ~DuplicateState() override;

  // The one instance the screen uses, so that settings and results outlive the screen.
  static DuplicateState& shared();

  // The database that run() reads; null: none is open. This one must outlive every run.
  void setStore(CatalogDB* store);
  // The same, sharing ownership, so that a run still under way keeps its connection alive after the
  // owner has let go of it (a restore replaces the database). Another database than before drops the
  // result, and the result of a run on the old one that is still under way.
  void setStore(std::shared_ptr<CatalogDB> store);

  DuplicateMode mode() const { return m_mode; }
  void setMode(DuplicateMode mode);
  int modeIndex() const { return static_cast<int>(m_mode); }
  void setModeIndex(int index);
  QString modeName() const;
  static QStringList modeNames();
  double minSizeMB() const { return m_minSizeMB; }
  void setMinSizeMB(double megabytes);
  bool crossOnly() const { return m_crossOnly; }
  void setCrossOnly(bool crossOnly);
  // Empty: every catalog.
  const std::set<int64_t>& catalogIDs() const { return m_catalogIDs; }
  void setCatalogIDs(std::set<int64_t> ids);
  QList<qint64> catalogIDList() const;
  void setCatalogIDList(const QList<qint64>& ids);

  // The last result, in rank order.
  const std::vector<DuplicateGroup>& groups() const { return m_groups; }
  int groupCount() const { return static_cast<int>(m_groups.size()); }
  // The space all sets of the last result waste together.
  qint64 wastedBytes() const { return m_wasted; }
  // Keys of the sets shown open.
  const std::set<std::string>& expanded() const { return m_expanded; }
  QStringList expandedList() const;
  Q_INVOKABLE bool isExpanded(const QString& key) const;
  Q_INVOKABLE void toggleExpanded(const QString& key);
  bool allExpanded() const;
  // Opens every set of the last result.
  Q_INVOKABLE void expandAll();
  // Closes every set.
  Q_INVOKABLE void collapseAll();
  bool busy() const { return m_busy; }
  bool ran() const { return m_ran; }

  // Looks for duplicates with the current settings on a background thread and delivers the result here,
  // on this object's thread: the sets (an error gives none), the first three opened, then busy off and ran
  // on. Does nothing without a database. The minimum size is minSizeMB × 1e6 bytes, truncated; a value
  // beyond the 64-bit range is a fatal error.
  Q_INVOKABLE void run();

 signals:
  void modeChanged();
  void minSizeMBChanged();
  void crossOnlyChanged();
  void catalogIDsChanged();
  void groupsChanged();
  void expandedChanged();
  void busyChanged();
  void ranChanged();

 private:
  void deliver(std::vector<DuplicateGroup> groups);
  void setBusy(bool busy);
  // Back to the state before the first run, for a database that replaced the one the result came from.
  void forgetResult();

  CatalogDB* m_store = nullptr;
  std::shared_ptr<CatalogDB> m_keep;  // Owns m_store when it was given shared.
  // Counts the databases set; a run delivers only while the one it read is still the current one.
  int m_generation = 0;
  DuplicateMode m_mode = DuplicateMode::nameSize;
  double m_minSizeMB = 1.0;
  bool m_crossOnly = false;
  std::set<int64_t> m_catalogIDs;
  std::vector<DuplicateGroup> m_groups;
  int64_t m_wasted = 0;
  std::set<std::string> m_expanded;
  bool m_busy = false;
  bool m_ran = false;
  // One worker, so that runs finish in the order they were started and the last one's result stands.
  // Destroyed before the QObject base, so a finishing run still finds this object to post to.
  QThreadPool m_pool;
};

}  // namespace orrelin
