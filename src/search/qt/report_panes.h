// The states of the three drive report panes of the Tools screen: inputs, results, and the actions of
// their buttons. They live as long as the pane is on screen; nothing persists.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "search/search_query.h"

namespace orrelin {

class CatalogDB;

// "Empty folders": folders that held nothing when cataloged.
class EmptyFoldersPane : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QList<qint64> ids READ idList WRITE setIdList NOTIFY idsChanged)
  Q_PROPERTY(int count READ count NOTIFY hitsChanged)
  Q_PROPERTY(QString header READ header NOTIFY hitsChanged)
  Q_PROPERTY(bool ran READ ran NOTIFY ranChanged)

 public:
  explicit EmptyFoldersPane(QObject* parent = nullptr) : QObject(parent) {}

  // The database the button reads; null: none is open.
  void setStore(CatalogDB* store) { m_store = store; }

  const std::set<int64_t>& ids() const { return m_ids; }  // Empty: every catalog.
  void setIds(std::set<int64_t> ids);
  QList<qint64> idList() const { return {m_ids.begin(), m_ids.end()}; }
  void setIdList(const QList<qint64>& ids) { setIds({ids.begin(), ids.end()}); }
  const std::vector<SearchHit>& hits() const { return m_hits; }
  int count() const { return static_cast<int>(m_hits.size()); }
  QString header() const;
  bool ran() const { return m_ran; }

  // "Find Empty Folders": reads the report now; no database or an error gives an empty list.
  Q_INVOKABLE void find();
  // Back to the state before the first run (the database was replaced); the inputs stay.
  Q_INVOKABLE void clearResult();

 signals:
  void idsChanged();
  void hitsChanged();
  void ranChanged();

 private:
  CatalogDB* m_store = nullptr;
  std::set<int64_t> m_ids;
  std::vector<SearchHit> m_hits;
  bool m_ran = false;
};

// "Large & old files": files of at least minMB megabytes not modified for `years` years.
class LargeOldPane : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QList<qint64> ids READ idList WRITE setIdList NOTIFY idsChanged)
  Q_PROPERTY(QString minMB READ minMB WRITE setMinMB NOTIFY minMBChanged)
  Q_PROPERTY(int years READ years WRITE setYears NOTIFY yearsChanged)
  Q_PROPERTY(QString yearsLabel READ yearsLabel NOTIFY yearsChanged)
  Q_PROPERTY(int count READ count NOTIFY hitsChanged)
  Q_PROPERTY(QString header READ header NOTIFY hitsChanged)
  Q_PROPERTY(bool ran READ ran NOTIFY ranChanged)

 public:
  explicit LargeOldPane(QObject* parent = nullptr) : QObject(parent) {}

  void setStore(CatalogDB* store) { m_store = store; }

  const std::set<int64_t>& ids() const { return m_ids; }
  void setIds(std::set<int64_t> ids);
  QList<qint64> idList() const { return {m_ids.begin(), m_ids.end()}; }
  void setIdList(const QList<qint64>& ids) { setIds({ids.begin(), ids.end()}); }
  QString minMB() const { return m_minMB; }
  void setMinMB(const QString& text);
  int years() const { return m_years; }
  // Held within the stepper's range, 0 to 30.
  void setYears(int years);
  QString yearsLabel() const;
  const std::vector<SearchHit>& hits() const { return m_hits; }
  int count() const { return static_cast<int>(m_hits.size()); }
  QString header() const;
  bool ran() const { return m_ran; }

  // "Build Report": the minimum from minMB (0 when it is no number), the cutoff `years` before now, then
  // the report; no database or an error gives an empty list.
  Q_INVOKABLE void buildReport();
  // Back to the state before the first run (the database was replaced); the inputs stay.
  Q_INVOKABLE void clearResult();

 signals:
  void idsChanged();
  void minMBChanged();
  void yearsChanged();
  void hitsChanged();
  void ranChanged();

 private:
  CatalogDB* m_store = nullptr;
  std::set<int64_t> m_ids;
  QString m_minMB = QStringLiteral("500");
  int m_years = 2;
  std::vector<SearchHit> m_hits;
  bool m_ran = false;
};

// "Missing-file check": the records of one catalog that are gone from its connected drive.
class MissingPane : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(qint64 catalogID READ catalogIDOrZero WRITE setCatalogIDOrZero NOTIFY catalogIDChanged)
  Q_PROPERTY(int count READ count NOTIFY missingChanged)
  Q_PROPERTY(QString header READ header NOTIFY missingChanged)
  Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
  Q_PROPERTY(bool ran READ ran NOTIFY ranChanged)
  // The catalog the shown list belongs to (0: none yet), and whether "Update Catalog" is offered.
  Q_PROPERTY(qint64 checkedCatalogID READ checkedCatalogIDOrZero NOTIFY missingChanged)
  Q_PROPERTY(bool canUpdate READ canUpdate NOTIFY missingChanged)

 public:
  explicit MissingPane(QObject* parent = nullptr);
  // Waits for a check in progress; its result is then dropped.
  ~MissingPane() override;

  // The database the check reads, and the catalogs whose drive is connected now.
  void setStore(CatalogDB* store) {
    m_store = store;
    m_keep.reset();
  }
  // The same, sharing ownership, so that a check still running keeps the connection alive after the
  // owner has let go of it (a restore replaces the database).
  void setStore(std::shared_ptr<CatalogDB> store) {
    m_store = store.get();
    m_keep = std::move(store);
  }
  void setOnlineIDs(std::set<int64_t> ids) { m_onlineIDs = std::move(ids); }

  std::optional<int64_t> catalogID() const { return m_catalogID; }
  void setCatalogID(std::optional<int64_t> id);
  // For the interface, 0 stands for no choice (catalog ids start at 1).
  qint64 catalogIDOrZero() const { return m_catalogID.value_or(0); }
  void setCatalogIDOrZero(qint64 id) { setCatalogID(id > 0 ? std::optional<int64_t>(id) : std::nullopt); }
  const std::vector<FileRecord>& missing() const { return m_missing; }
  int count() const { return static_cast<int>(m_missing.size()); }
  QString header() const;
  bool busy() const { return m_busy; }
  bool ran() const { return m_ran; }
  qint64 checkedCatalogIDOrZero() const { return m_checkedID.value_or(0); }
  // The records as rows of the results table, with the name of the catalog that was checked (empty if it
  // is gone), whatever is chosen now.
  std::vector<SearchHit> hits() const;
  // "Update Catalog" is offered when something is missing and the checked catalog still exists.
  bool canUpdate() const;

  // "Check Drive": nothing without a choice, a catalog or a database; driveOffline() and no change when
  // the drive is not connected; else the check on a background thread, delivered here.
  Q_INVOKABLE void checkDrive();
  // Back to the state before the first run (the database was replaced): the list empties, and a check
  // still running is not shown when it ends.
  Q_INVOKABLE void clearResult();

 signals:
  void catalogIDChanged();
  void missingChanged();
  void busyChanged();
  void ranChanged();
  // The chosen catalog's drive is not connected: the owner puts up the "Drive Offline" alert.
  void driveOffline(qint64 catalogID);

 private:
  void deliver(std::vector<FileRecord> missing, int64_t catalogID);
  void setBusy(bool busy);

  CatalogDB* m_store = nullptr;
  std::shared_ptr<CatalogDB> m_keep;  // Set when the owner shares the connection.
  std::set<int64_t> m_onlineIDs;
  std::optional<int64_t> m_catalogID;
  std::optional<int64_t> m_checkedID;  // The catalog of m_missing.
  int m_generation = 0;                // Raised by clearResult(); a check of an older one is dropped.
  int m_pending = 0;                   // Checks started and not yet delivered.
  std::vector<FileRecord> m_missing;
  bool m_busy = false;
  bool m_ran = false;
  QThreadPool m_pool;  // One worker; destroyed before the QObject base (see DuplicateState).
};

}  // namespace orrelin
