// The drive report panes: the empty-folder and large-file reports run on the main thread, the missing-file
// check on a worker.
#include "search/qt/report_panes.h"

#include <QMetaObject>

#include <algorithm>

#include "search/drive_reports.h"
#include "store/catalog_db.h"
#include "store/db_error.h"

namespace orrelin {

namespace {

QString qt(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

void EmptyFoldersPane::setIds(std::set<int64_t> ids) {
  if (ids == m_ids) return;
  m_ids = std::move(ids);
  emit idsChanged();
}

QString EmptyFoldersPane::header() const { return qt(emptyFoldersHeader(count())); }

void EmptyFoldersPane::find() {
  std::vector<SearchHit> hits;
  if (m_store) {
    try {
      hits = m_store->emptyFolders(m_ids);
    } catch (const DBError&) {
      hits.clear();  // Analysis panes show an empty result, not an error.
    }
  }
  m_hits = std::move(hits);
  emit hitsChanged();
  if (!m_ran) {
    m_ran = true;
    emit ranChanged();
  }
}

void LargeOldPane::setIds(std::set<int64_t> ids) {
  if (ids == m_ids) return;
  m_ids = std::move(ids);
  emit idsChanged();
}

void LargeOldPane::setMinMB(const QString& text) {
  if (text == m_minMB) return;
  m_minMB = text;
  emit minMBChanged();
}

void LargeOldPane::setYears(int years) {
  years = std::clamp(years, 0, kMaxYears);
  if (years == m_years) return;
  m_years = years;
  emit yearsChanged();
}

QString LargeOldPane::yearsLabel() const { return qt(orrelin::yearsLabel(m_years)); }

void EmptyFoldersPane::clearResult() {
  if (!m_hits.empty()) {
    m_hits.clear();
    emit hitsChanged();
  }
  if (m_ran) {
    m_ran = false;
    emit ranChanged();
  }
}

QString LargeOldPane::header() const { return qt(largeOldHeader(m_hits)); }

void LargeOldPane::buildReport() {
  int64_t minSize = largeOldMinimumBytes(m_minMB.toStdString());
  OptionalDate cutoff = largeOldCutoff(m_years, Date::now());
  std::vector<SearchHit> hits;
  if (m_store) {
    try {
      hits = m_store->largeOldFiles(minSize, cutoff, m_ids);
    } catch (const DBError&) {
      hits.clear();
    }
  }
  m_hits = std::move(hits);
  emit hitsChanged();
  if (!m_ran) {
    m_ran = true;
    emit ranChanged();
  }
}

void LargeOldPane::clearResult() {
  if (!m_hits.empty()) {
    m_hits.clear();
    emit hitsChanged();
  }
  if (m_ran) {
    m_ran = false;
    emit ranChanged();
  }
}

MissingPane::MissingPane(QObject* parent) : QObject(parent) {
  m_pool.setMaxThreadCount(1);
  m_pool.setThreadPriority(QThread::HighPriority);
}

MissingPane::~MissingPane() { m_pool.waitForDone(); }

void MissingPane::setCatalogID(std::optional<int64_t> id) {
  if (id == m_catalogID) return;
  m_catalogID = id;
  emit catalogIDChanged();
}

QString MissingPane::header() const { return qt(missingHeader(count())); }

std::vector<SearchHit> MissingPane::hits() const {
  std::string name;
  if (m_store && m_checkedID) {
    try {
      if (auto catalog = m_store->catalog(*m_checkedID)) name = catalog->name;
    } catch (const DBError&) {
      name.clear();
    }
  }
  std::vector<SearchHit> out;
  out.reserve(m_missing.size());
  for (const FileRecord& f : m_missing) out.push_back({f, name});
  return out;
}

bool MissingPane::canUpdate() const {
  if (m_missing.empty() || !m_store || !m_checkedID) return false;
  try {
    return m_store->catalog(*m_checkedID).has_value();
  } catch (const DBError&) {
    return false;
  }
}

void MissingPane::checkDrive() {
  if (!m_catalogID || !m_store) return;
  std::optional<Catalog> catalog;
  try {
    catalog = m_store->catalog(*m_catalogID);
  } catch (const DBError&) {
    return;
  }
  if (!catalog) return;
  if (!m_onlineIDs.count(catalog->id)) {
    emit driveOffline(catalog->id);  // The earlier result stays on screen.
    return;
  }
  ++m_pending;
  setBusy(true);
  CatalogDB* store = m_store;
  std::shared_ptr<CatalogDB> keep = m_keep;
  const int generation = m_generation;
  m_pool.start([this, store, keep, generation, catalog = std::move(*catalog)] {
    std::vector<FileRecord> missing;
    try {
      missing = store->missingFiles(catalog);
    } catch (const DBError&) {
      missing.clear();
    }
    QMetaObject::invokeMethod(
        this,
        [this, generation, id = catalog.id, missing = std::move(missing)]() mutable {
          --m_pending;
          // A check of a database that was replaced since only takes its part of the indicator along.
          if (generation == m_generation) deliver(std::move(missing), id);
          else setBusy(m_pending > 0);
        },
        Qt::QueuedConnection);
  });
}

void MissingPane::setBusy(bool busy) {
  if (busy == m_busy) return;
  m_busy = busy;
  emit busyChanged();
}

void MissingPane::clearResult() {
  ++m_generation;
  m_checkedID.reset();
  m_missing.clear();
  emit missingChanged();
  if (m_ran) {
    m_ran = false;
    emit ranChanged();
  }
}

void MissingPane::deliver(std::vector<FileRecord> missing, int64_t catalogID) {
  m_missing = std::move(missing);
  m_checkedID = catalogID;
  emit missingChanged();
  setBusy(m_pending > 0);
  if (!m_ran) {
    m_ran = true;
    emit ranChanged();
  }
}

}  // namespace orrelin
