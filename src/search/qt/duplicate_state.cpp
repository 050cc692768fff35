// The duplicates screen's state: settings, the background run and its delivery on the main thread.
#include "search/qt/duplicate_state.h"

#include <QMetaObject>

#include "store/catalog_db.h"
#include "store/db_error.h"
#include "store/safe_int.h"

namespace orrelin {

namespace {

// Sets shown open after a run.
constexpr size_t kOpenedAfterRun = 3;

}  // namespace

DuplicateState::DuplicateState(QObject* parent) : QObject(parent) {
  m_pool.setMaxThreadCount(1);
  m_pool.setThreadPriority(QThread::HighPriority);  // The user is waiting for it.
}

DuplicateState::~DuplicateState() { m_pool.waitForDone(); }

DuplicateState& DuplicateState::shared() {
  static DuplicateState* instance = new DuplicateState();  // Lives as long as the process.
  return *instance;
}

void DuplicateState::setStore(CatalogDB* store) {
  m_keep.reset();
  if (store == m_store) return;
  const bool replaced = m_store != nullptr;
  m_store = store;
  ++m_generation;
  if (replaced) forgetResult();
}

void DuplicateState::setStore(std::shared_ptr<CatalogDB> store) {
  CatalogDB* raw = store.get();
  const bool same = raw == m_store;
  m_keep = std::move(store);
  if (same) return;
  const bool replaced = m_store != nullptr;
  m_store = raw;
  ++m_generation;
  if (replaced) forgetResult();
}

void DuplicateState::forgetResult() {
  if (!m_groups.empty()) {
    m_groups.clear();
    m_wasted = 0;
    emit groupsChanged();
  }
  if (!m_expanded.empty()) {
    m_expanded.clear();
    emit expandedChanged();
  }
  setBusy(false);
  if (m_ran) {
    m_ran = false;
    emit ranChanged();
  }
}

void DuplicateState::setMode(DuplicateMode mode) {
  if (mode == m_mode) return;
  m_mode = mode;
  emit modeChanged();
}

void DuplicateState::setModeIndex(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kAllDuplicateModes))) return;
  setMode(kAllDuplicateModes[index]);
}

QString DuplicateState::modeName() const {
  std::string_view raw = rawValue(m_mode);
  return QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
}

QStringList DuplicateState::modeNames() {
  QStringList names;
  for (DuplicateMode mode : kAllDuplicateModes) {
    std::string_view raw = rawValue(mode);
    names << QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
  }
  return names;
}

void DuplicateState::setMinSizeMB(double megabytes) {
  if (megabytes == m_minSizeMB) return;
  m_minSizeMB = megabytes;
  emit minSizeMBChanged();
}

void DuplicateState::setCrossOnly(bool crossOnly) {
  if (crossOnly == m_crossOnly) return;
  m_crossOnly = crossOnly;
  emit crossOnlyChanged();
}

void DuplicateState::setCatalogIDs(std::set<int64_t> ids) {
  if (ids == m_catalogIDs) return;
  m_catalogIDs = std::move(ids);
  emit catalogIDsChanged();
}

QList<qint64> DuplicateState::catalogIDList() const { return {m_catalogIDs.begin(), m_catalogIDs.end()}; }

void DuplicateState::setCatalogIDList(const QList<qint64>& ids) { setCatalogIDs({ids.begin(), ids.end()}); }

QStringList DuplicateState::expandedList() const {
  QStringList keys;
  for (const std::string& key : m_expanded) keys << QString::fromStdString(key);
  return keys;
}

bool DuplicateState::isExpanded(const QString& key) const { return m_expanded.count(key.toStdString()) != 0; }

void DuplicateState::toggleExpanded(const QString& key) {
  std::string k = key.toStdString();
  if (!m_expanded.erase(k)) m_expanded.insert(k);
  emit expandedChanged();
}

bool DuplicateState::allExpanded() const {
  if (m_groups.empty()) return false;
  for (const DuplicateGroup& group : m_groups) {
    if (!m_expanded.count(group.key)) return false;
  }
  return true;
}

void DuplicateState::expandAll() {
  std::set<std::string> keys;
  for (const DuplicateGroup& group : m_groups) keys.insert(group.key);
  if (keys == m_expanded) return;
  m_expanded = std::move(keys);
  emit expandedChanged();
}

void DuplicateState::collapseAll() {
  if (m_expanded.empty()) return;
  m_expanded.clear();
  emit expandedChanged();
}

void DuplicateState::setBusy(bool busy) {
  if (busy == m_busy) return;
  m_busy = busy;
  emit busyChanged();
}

void DuplicateState::run() {
  if (!m_store) return;
  setBusy(true);
  // Everything the run needs is read here, on the main thread; the worker touches no field.
  CatalogDB* store = m_store;
  std::shared_ptr<CatalogDB> keep = m_keep;
  const int generation = m_generation;
  DuplicateMode mode = m_mode;
  std::set<int64_t> ids = m_catalogIDs;
  bool crossOnly = m_crossOnly;
  int64_t minSize = SafeInt::truncated(m_minSizeMB * 1e6, "the minimum size of the duplicate search");
  m_pool.start([this, store, keep, generation, mode, ids = std::move(ids), crossOnly, minSize] {
    std::vector<DuplicateGroup> groups;
    try {
      groups = store->duplicates(mode, minSize, ids, crossOnly, kDefaultDuplicateLimit);
    } catch (const DBError&) {
      // The screen shows the same empty state as for no duplicates.
      groups.clear();
    }
    QMetaObject::invokeMethod(
        this,
        [this, generation, groups = std::move(groups)]() mutable {
          // The sets of a database that was replaced since would point at files that are not there.
          if (generation == m_generation) deliver(std::move(groups));
        },
        Qt::QueuedConnection);
  });
}

void DuplicateState::deliver(std::vector<DuplicateGroup> groups) {
  m_groups = std::move(groups);
  m_wasted = totalWasted(m_groups);
  emit groupsChanged();
  m_expanded.clear();
  for (size_t i = 0; i < m_groups.size() && i < kOpenedAfterRun; ++i) m_expanded.insert(m_groups[i].key);
  emit expandedChanged();
  setBusy(false);
  if (!m_ran) {
    m_ran = true;
    emit ranChanged();
  }
}

}  // namespace orrelin
