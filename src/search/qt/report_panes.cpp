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
  if (m_store && m_catalogID) {
    try {
      if (auto catalog = m_store->catalog(*m_catalogID)) name = catalog->name;
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
  if (m_missing.empty() || !m_store || !m_catalogID) return false;
  try {
    return m_store->catalog(*m_catalogID).has_value();
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
  if (!m_busy) {
    m_busy = true;
    emit busyChanged();
  }
  CatalogDB* store = m_store;
  m_pool.start([this, store, catalog = std::move(*catalog)] {
    std::vector<FileRecord> missing;
    try {
      missing = store->missingFiles(catalog);
    } catch (const DBError&) {
      missing.clear();
    }
    QMetaObject::invokeMethod(
        this, [this, missing = std::move(missing)]() mutable { deliver(std::move(missing)); },
        Qt::QueuedConnection);
  });
}

void MissingPane::deliver(std::vector<FileRecord> missing) {
  m_missing = std::move(missing);
  emit missingChanged();
  m_busy = false;
  emit busyChanged();
  if (!m_ran) {
    m_ran = true;
    emit ranChanged();
  }
}

}  // namespace orrelin
