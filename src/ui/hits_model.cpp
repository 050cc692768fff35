#include "ui/hits_model.h"

#include <QCollator>

#include <algorithm>

#include "search/qt/compare_pane.h"
#include "search/qt/report_panes.h"
#include "search/qt/search_state.h"
#include "ui/file_maps.h"

namespace orrelin {

namespace {

const QStringList& sortKeys() {
  static const QStringList keys{"name", "catalogName", "size", "kindName", "sortModified", "path"};
  return keys;
}

QString text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

}  // namespace

HitsModel::HitsModel(QObject* parent) : QAbstractListModel(parent) {}

void HitsModel::setSource(QObject* source) {
  if (m_source == source) return;
  for (const auto& c : m_connections) disconnect(c);
  m_connections.clear();
  m_source = source;
  if (auto* s = qobject_cast<SearchState*>(source)) {
    m_connections.push_back(connect(s, &SearchState::hitsChanged, this, &HitsModel::reload));
  } else if (auto* e = qobject_cast<EmptyFoldersPane*>(source)) {
    m_connections.push_back(connect(e, &EmptyFoldersPane::hitsChanged, this, &HitsModel::reload));
  } else if (auto* l = qobject_cast<LargeOldPane*>(source)) {
    m_connections.push_back(connect(l, &LargeOldPane::hitsChanged, this, &HitsModel::reload));
  } else if (auto* m = qobject_cast<MissingPane*>(source)) {
    m_connections.push_back(connect(m, &MissingPane::missingChanged, this, &HitsModel::reload));
  } else if (auto* c = qobject_cast<ComparePane*>(source)) {
    m_connections.push_back(connect(c, &ComparePane::resultChanged, this, &HitsModel::reload));
    m_connections.push_back(connect(c, &ComparePane::tabChanged, this, &HitsModel::reload));
  }
  if (source) m_connections.push_back(connect(source, &QObject::destroyed, this, [this] { setHits({}); }));
  reload();
  emit sourceChanged();
}

void HitsModel::reload() {
  std::vector<SearchHit> hits;
  if (auto* s = qobject_cast<SearchState*>(m_source)) hits = s->hits();
  else if (auto* e = qobject_cast<EmptyFoldersPane*>(m_source)) hits = e->hits();
  else if (auto* l = qobject_cast<LargeOldPane*>(m_source)) hits = l->hits();
  else if (auto* m = qobject_cast<MissingPane*>(m_source)) hits = m->hits();
  else if (auto* c = qobject_cast<ComparePane*>(m_source)) hits = c->rows();
  setHits(std::move(hits));
}

void HitsModel::setHits(std::vector<SearchHit> hits) {
  const int before = count();
  beginResetModel();
  m_hits = std::move(hits);
  m_rows.resize(m_hits.size());
  for (size_t i = 0; i < m_rows.size(); ++i) m_rows[i] = static_cast<int>(i);
  applySort();
  endResetModel();
  if (before != count()) emit countChanged();
}

void HitsModel::sortBy(const QString& key) { sort(key, key == m_sortKey ? !m_ascending : true); }

void HitsModel::sort(const QString& key, bool ascending) {
  if (!sortKeys().contains(key)) return;
  m_sortKey = key;
  m_ascending = ascending;
  beginResetModel();
  applySort();
  endResetModel();
  emit sortChanged();
}

void HitsModel::applySort() {
  QCollator collator;
  collator.setNumericMode(true);
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  const auto textLess = [&](std::string_view a, std::string_view b) {
    return collator.compare(text(a), text(b)) < 0;
  };
  const int key = static_cast<int>(sortKeys().indexOf(m_sortKey));
  const auto less = [&](int x, int y) {
    const SearchHit& a = m_hits[static_cast<size_t>(x)];
    const SearchHit& b = m_hits[static_cast<size_t>(y)];
    switch (key) {
      case 1: return textLess(a.catalogName, b.catalogName);
      case 2: return a.size() < b.size();
      case 3: return textLess(a.kindName(), b.kindName());
      case 4: return a.sortModified() < b.sortModified();
      case 5: return textLess(a.path(), b.path());
      default: return textLess(a.name(), b.name());
    }
  };
  // Stable, so equal keys keep the source's order in both directions.
  if (m_ascending) std::stable_sort(m_rows.begin(), m_rows.end(), less);
  else std::stable_sort(m_rows.begin(), m_rows.end(), [&](int x, int y) { return less(y, x); });
}

QVariantMap HitsModel::hitAt(int row) const {
  if (row < 0 || row >= count()) return {};
  return hitMap(m_hits[static_cast<size_t>(m_rows[static_cast<size_t>(row)])]);
}

qint64 HitsModel::fileID(int row) const {
  if (row < 0 || row >= count()) return 0;
  return m_hits[static_cast<size_t>(m_rows[static_cast<size_t>(row)])].id();
}

int HitsModel::rowOf(qint64 id) const {
  for (int row = 0; row < count(); ++row) {
    if (fileID(row) == id) return row;
  }
  return -1;
}

int HitsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant HitsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= count()) return {};
  const SearchHit& hit = m_hits[static_cast<size_t>(m_rows[static_cast<size_t>(index.row())])];
  switch (role) {
    case HitRole: return hitMap(hit);
    case FileIDRole: return QVariant::fromValue<qint64>(hit.id());
    case Qt::DisplayRole:
    case NameRole: return text(hit.name());
    default: return {};
  }
}

QHash<int, QByteArray> HitsModel::roleNames() const {
  return {{HitRole, "hit"}, {FileIDRole, "fileID"}, {NameRole, "name"}};
}

}  // namespace orrelin
