#include "ui/catalog_browser.h"

#include <QMetaObject>

#include <algorithm>
#include <functional>

#include "app/qt/app_model.h"
#include "organize/standard_order.h"
#include "store/catalog_db.h"
#include "ui/file_maps.h"

namespace orrelin {

namespace {

QString text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

const QStringList& sortKeys() {
  static const QStringList keys{"name", "kindName", "size", "sortModified"};
  return keys;
}

}  // namespace

CatalogBrowser::CatalogBrowser(QObject* parent)
    : QObject(parent),
      m_mode(storedBrowseMode()),
      m_columns(new BrowserColumns(this)),
      m_list(new FolderModel(this)) {
  AppModel& app = AppModel::shared();
  connect(&app, &AppModel::dataVersionChanged, this, &CatalogBrowser::revalidate);
  connect(&app, &AppModel::pendingRevealFileChanged, this, &CatalogBrowser::handlePendingReveal);
  // A restore swaps the database; the reload that follows revalidates the path against the new one.
  connect(&app, &AppModel::storeChanged, this, [this] {
    clearCache();
    refresh();
  });
  refresh();
}

void CatalogBrowser::setCatalogID(qint64 id) {
  if (id == m_catalogID) return;
  m_catalogID = id;
  clearCache();
  m_path.clear();
  m_selected.reset();
  m_tableSelection.reset();
  const bool hadFilter = !m_filter.isEmpty();
  m_filter.clear();
  refresh();
  emit catalogIDChanged();
  emit pathChanged();
  emit selectedChanged();
  emit tableSelectionChanged();
  if (hadFilter) emit filterChanged();
  handlePendingReveal();
}

void CatalogBrowser::setMode(BrowseMode mode) {
  storeBrowseMode(mode);
  if (mode == m_mode) return;
  m_mode = mode;
  refresh();
  emit modeChanged();
}

void CatalogBrowser::setFilter(const QString& text) {
  if (text == m_filter) return;
  m_filter = text;
  refresh();
  emit filterChanged();
}

void CatalogBrowser::setShowHidden(bool show) {
  if (show == m_showHidden) return;
  m_showHidden = show;
  clearCache();
  refresh();
  emit showHiddenChanged();
}

void CatalogBrowser::setTableSelection(qint64 id) {
  const std::optional<int64_t> value = id == 0 ? std::nullopt : std::optional<int64_t>(id);
  if (value == m_tableSelection) return;
  m_tableSelection = value;
  if (value) {
    const int row = m_list->rowOf(*value);
    if (row >= 0) setSelected(*m_list->record(row));
  }
  emit tableSelectionChanged();
}

// --- Reading folders ---

CatalogBrowser::Records CatalogBrowser::records(int64_t parentID) {
  if (auto hit = m_cache.find(parentID); hit != m_cache.end()) return hit->second;
  auto list = std::make_shared<std::vector<FileRecord>>();
  const auto& store = AppModel::shared().store();
  if (store && m_catalogID >= 0) {
    try {
      *list = store->children(m_catalogID, parentID, m_showHidden);
    } catch (const std::exception&) {
      list->clear();  // A folder that cannot be read shows empty; the browser never shows an error.
    }
  }
  // A reload usually leaves most folders as they were: keep the list a view already shows, so the view
  // is not reset and keeps its place.
  Records records = list;
  for (int depth = 0; depth <= m_columns->count(); ++depth) {
    const FolderModel* shown = depth < m_columns->count() ? m_columns->column(depth) : m_list;
    if (shown->parentID() == parentID && shown->records() && *shown->records() == *list) {
      records = shown->records();
      break;
    }
  }
  // The cache is written later, from the event loop, and only if nothing emptied it in between.
  QMetaObject::invokeMethod(
      this,
      [this, parentID, records, generation = m_cacheGeneration] {
        if (generation == m_cacheGeneration) m_cache.emplace(parentID, records);
      },
      Qt::QueuedConnection);
  return records;
}

std::vector<FileRecord> CatalogBrowser::children(int64_t parentID) {
  Records all = records(parentID);
  if (parentID != currentFolderID()) return *all;
  const std::optional<std::vector<int>> rows = filtered(*all);
  if (!rows) return *all;
  std::vector<FileRecord> kept;
  kept.reserve(rows->size());
  for (int i : *rows) kept.push_back((*all)[static_cast<size_t>(i)]);
  return kept;
}

std::optional<std::vector<int>> CatalogBrowser::filtered(const std::vector<FileRecord>& records) const {
  const QString needle = m_filter.trimmed();
  if (needle.isEmpty()) return std::nullopt;
  std::vector<int> rows;
  for (size_t i = 0; i < records.size(); ++i) {
    // Full Unicode case folding: "É" finds "é", "STRASSE" finds "straße"'s neighbours by their letters.
    if (text(records[i].name).contains(needle, Qt::CaseInsensitive)) rows.push_back(static_cast<int>(i));
  }
  return rows;
}

std::optional<std::vector<int>> CatalogBrowser::sortedOrder(const std::vector<FileRecord>& records,
                                                            std::optional<std::vector<int>> rows) const {
  if (!m_sorted) return rows;  // The database's order: folders first, then by name.
  std::vector<int> order;
  if (rows) {
    order = std::move(*rows);
  } else {
    order.resize(records.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
  }
  const auto at = [&](int i) -> const FileRecord& { return records[static_cast<size_t>(i)]; };
  std::function<bool(int, int)> less;
  std::vector<std::string> nameKeys;
  if (m_sortKey == "name") {
    // The file manager's order (case-blind, by the user's language, numbers by value), with one
    // collation key per row made once: comparing keys is a byte compare, where comparing the names
    // themselves would run the collator some two million times for a large folder.
    const StandardOrder standard;
    nameKeys.reserve(records.size());
    for (const FileRecord& f : records) nameKeys.push_back(standard.sortKey(f.name));
    less = [&](int a, int b) { return nameKeys[static_cast<size_t>(a)] < nameKeys[static_cast<size_t>(b)]; };
  } else if (m_sortKey == "kindName") {
    less = [&](int a, int b) { return at(a).kindName() < at(b).kindName(); };
  } else if (m_sortKey == "size") {
    less = [&](int a, int b) { return at(a).size < at(b).size; };
  } else {
    less = [&](int a, int b) { return at(a).sortModified() < at(b).sortModified(); };
  }
  // Stable, so rows with equal keys keep the database's order in both directions.
  if (m_ascending)
    std::stable_sort(order.begin(), order.end(), less);
  else
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return less(b, a); });
  return order;
}

void CatalogBrowser::clearCache() {
  m_cache.clear();
  ++m_cacheGeneration;
}

void CatalogBrowser::refresh() {
  if (m_mode == BrowseMode::columns) {
    m_columns->resize(pathLength() + 1);
    for (int depth = 0; depth <= pathLength(); ++depth) {
      const int64_t parentID = depth == 0 ? 0 : m_path[static_cast<size_t>(depth - 1)].id;
      Records rows = records(parentID);
      std::optional<std::vector<int>> order = depth == pathLength() ? filtered(*rows) : std::nullopt;
      m_columns->column(depth)->setRows(parentID, std::move(rows), std::move(order));
    }
  } else {
    const int64_t parentID = currentFolderID();
    Records rows = records(parentID);
    std::optional<std::vector<int>> order = sortedOrder(*rows, filtered(*rows));
    m_list->setRows(parentID, std::move(rows), std::move(order));
  }
}

// --- Navigation ---

void CatalogBrowser::setPath(std::vector<FileRecord> path) {
  const bool changed = path != m_path;
  const bool newFolder = (path.empty() ? 0 : path.back().id) != currentFolderID();
  m_path = std::move(path);
  // The filter belongs to the folder it was typed in; the next folder opens whole.
  const bool filterCleared = newFolder && !m_filter.isEmpty();
  if (filterCleared) m_filter.clear();
  const bool selectionCleared = newFolder && m_tableSelection;
  if (selectionCleared) m_tableSelection.reset();
  refresh();
  if (changed) emit pathChanged();
  if (filterCleared) emit filterChanged();
  if (selectionCleared) emit tableSelectionChanged();
}

void CatalogBrowser::setSelected(std::optional<FileRecord> file) {
  if (file == m_selected) return;
  m_selected = std::move(file);
  emit selectedChanged();
}

void CatalogBrowser::select(qint64 id, int column) {
  if (column < 0 || column > pathLength()) return;
  const int64_t parentID = column == 0 ? 0 : m_path[static_cast<size_t>(column - 1)].id;
  const Records rows = records(parentID);
  const auto file = std::find_if(rows->begin(), rows->end(), [&](const FileRecord& f) { return f.id == id; });
  if (file == rows->end()) return;
  std::vector<FileRecord> path(m_path.begin(), m_path.begin() + column);
  if (file->isDir) path.push_back(*file);
  setSelected(*file);
  setPath(std::move(path));
}

void CatalogBrowser::goTo(int depth) {
  if (depth < 0 || depth > pathLength()) return;
  std::vector<FileRecord> path(m_path.begin(), m_path.begin() + depth);
  setSelected(path.empty() ? std::nullopt : std::optional(path.back()));
  setPath(std::move(path));
}

void CatalogBrowser::primaryAction() {
  if (!m_tableSelection) return;
  const int row = m_list->rowOf(*m_tableSelection);
  if (row < 0) return;
  const FileRecord file = *m_list->record(row);
  if (!file.isDir) {
    AppModel::shared().open(file);
    return;
  }
  std::vector<FileRecord> path = m_path;
  path.push_back(file);
  setSelected(file);
  setPath(std::move(path));
  if (m_tableSelection) {
    m_tableSelection.reset();
    emit tableSelectionChanged();
  }
}

void CatalogBrowser::sortBy(const QString& key) {
  if (!sortKeys().contains(key)) return;
  m_ascending = m_sorted && key == m_sortKey ? !m_ascending : true;
  // The first click on "Name" reverses what the list already shows (by name, ascending).
  if (!m_sorted && key == m_sortKey) m_ascending = false;
  m_sortKey = key;
  m_sorted = true;
  refresh();
  emit sortChanged();
}

void CatalogBrowser::open(qint64 id) {
  AppModel& app = AppModel::shared();
  if (!app.store()) return;
  try {
    if (auto file = app.store()->file(id)) app.open(*file);
  } catch (const std::exception&) {
    // A record that cannot be read is one the next reload drops.
  }
}

void CatalogBrowser::handlePendingReveal() {
  AppModel& app = AppModel::shared();
  const std::optional<FileRecord>& pending = app.pendingRevealFile();
  if (!pending || pending->catalogID != m_catalogID || !app.store()) return;
  const FileRecord file = *app.takePendingRevealFile();
  std::vector<FileRecord> path;
  try {
    path = app.store()->ancestors(file);
  } catch (const std::exception&) {
    path.clear();
  }
  if (file.isDir) path.push_back(file);
  setSelected(file);
  setPath(std::move(path));
  // A filter typed in this very folder could hide the file.
  if (!m_filter.isEmpty()) setFilter(QString());
  if (m_mode == BrowseMode::list && !file.isDir) setTableSelection(file.id);
  emit revealed(file.id);
}

void CatalogBrowser::revalidate() {
  clearCache();
  const auto& store = AppModel::shared().store();
  if (!store) return;
  const auto exists = [&](int64_t id) -> std::optional<FileRecord> {
    try {
      return store->file(id);
    } catch (const std::exception&) {
      return std::nullopt;
    }
  };
  // The folders that are still there stay as they were read; the inspector gets the fresh record.
  std::vector<FileRecord> path;
  for (const FileRecord& folder : m_path) {
    if (exists(folder.id)) path.push_back(folder);
  }
  if (m_selected) setSelected(exists(m_selected->id));
  setPath(std::move(path));
}

// --- For QML ---

QVariantList CatalogBrowser::pathList() const {
  QVariantList list;
  for (const FileRecord& folder : m_path) list << fileMap(folder);
  return list;
}

QVariantList CatalogBrowser::pathIDList() const {
  QVariantList list;
  for (const FileRecord& folder : m_path) list << QVariant::fromValue<qint64>(folder.id);
  return list;
}

QVariantMap CatalogBrowser::selectedMap() const { return m_selected ? fileMap(*m_selected) : QVariantMap(); }

QVariantList CatalogBrowser::modeList() const {
  QVariantList list;
  for (BrowseMode mode : {BrowseMode::columns, BrowseMode::list}) {
    list << QVariantMap{{"mode", static_cast<int>(mode)}, {"label", rawText(mode)}, {"symbol", symbol(mode)}};
  }
  return list;
}

}  // namespace orrelin
