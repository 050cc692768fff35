// The state of the Browse screen for one catalog: the open path from the root down, the selected item,
// how the folder is shown (columns or a sortable list), the filter of the current folder, whether hidden
// records show, and a cache of the folders read so far. It reads the database one folder at a time, on
// the main thread, and reads again after every reload of the application's data. Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "store/records.h"
#include "ui/browse_mode.h"
#include "ui/browser_columns.h"
#include "ui/folder_model.h"

namespace orrelin {

class CatalogBrowser : public QObject {
  Q_OBJECT
  QML_ELEMENT
  // The catalog shown; -1 for none. Another catalog starts afresh: root, no selection, no filter.
  Q_PROPERTY(qint64 catalogID READ catalogID WRITE setCatalogID NOTIFY catalogIDChanged)
  // The open folders from the root down, as record maps (see fileMap); the root is not among them.
  Q_PROPERTY(QVariantList path READ pathList NOTIFY pathChanged)
  Q_PROPERTY(QVariantList pathIDs READ pathIDList NOTIFY pathChanged)
  Q_PROPERTY(int pathLength READ pathLength NOTIFY pathChanged)
  // The id of the last folder of the path, 0 at the root.
  Q_PROPERTY(qint64 currentFolderID READ currentFolderID NOTIFY pathChanged)
  // The item shown in the inspector as a record map; empty for none.
  Q_PROPERTY(QVariantMap selected READ selectedMap NOTIFY selectedChanged)
  Q_PROPERTY(qint64 selectedID READ selectedID NOTIFY selectedChanged)
  Q_PROPERTY(orrelin::Browse::BrowseMode mode READ mode WRITE setMode NOTIFY modeChanged)
  // One map per mode, in order: mode, label, symbol.
  Q_PROPERTY(QVariantList modes READ modeList CONSTANT)
  Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
  Q_PROPERTY(bool showHidden READ showHidden WRITE setShowHidden NOTIFY showHiddenChanged)
  // The list's sort: name, kindName, size or sortModified; `sorted` turns true once the user sorts (until
  // then folders come first, as the database gives them).
  Q_PROPERTY(QString sortKey READ sortKey NOTIFY sortChanged)
  Q_PROPERTY(bool ascending READ ascending NOTIFY sortChanged)
  Q_PROPERTY(bool sorted READ sorted NOTIFY sortChanged)
  // The selected row of the list, by file id; 0 for none.
  Q_PROPERTY(
      qint64 tableSelection READ tableSelectionValue WRITE setTableSelection NOTIFY tableSelectionChanged)
  Q_PROPERTY(orrelin::BrowserColumns* columns READ columns CONSTANT)
  Q_PROPERTY(orrelin::FolderModel* list READ list CONSTANT)

 public:
  using Records = FolderModel::Records;

  // Starts with no catalog, the stored mode, hidden records shown and the list sorted by name. Follows the
  // application's reloads, its pending reveal and its database.
  explicit CatalogBrowser(QObject* parent = nullptr);

  qint64 catalogID() const { return m_catalogID; }
  void setCatalogID(qint64 id);
  const std::vector<FileRecord>& path() const { return m_path; }
  int pathLength() const { return static_cast<int>(m_path.size()); }
  qint64 currentFolderID() const { return m_path.empty() ? 0 : m_path.back().id; }
  const std::optional<FileRecord>& selected() const { return m_selected; }
  qint64 selectedID() const { return m_selected ? m_selected->id : 0; }
  BrowseMode mode() const { return m_mode; }
  // Shows the folder the other way, and keeps the choice as the user's preference.
  void setMode(BrowseMode mode);
  QString filter() const { return m_filter; }
  void setFilter(const QString& text);
  bool showHidden() const { return m_showHidden; }
  // Flipping it empties the cache, so every folder is read again.
  void setShowHidden(bool show);
  QString sortKey() const { return m_sortKey; }
  bool ascending() const { return m_ascending; }
  bool sorted() const { return m_sorted; }
  std::optional<int64_t> tableSelection() const { return m_tableSelection; }
  // Selects the list's row of file `id` (0: none) and shows that record in the inspector.
  void setTableSelection(qint64 id);
  BrowserColumns* columns() const { return m_columns; }
  FolderModel* list() const { return m_list; }
  // The folders read so far and not yet invalidated, by parent id; unfiltered.
  const std::unordered_map<int64_t, Records>& cache() const { return m_cache; }

  // The children of folder `parentID`: from the cache, else read now (and put in the cache once control
  // is back in the event loop). Filtered when it is the current folder. An error reads as no children.
  std::vector<FileRecord> children(int64_t parentID);

  // A click on the row of file `id` in column `column`: the path keeps its first `column` folders, then
  // the file when it is a folder; the file becomes the selection. An id the column does not show does
  // nothing.
  Q_INVOKABLE void select(qint64 id, int column);
  // A click on the crumb at `depth` (0: the catalog): the path keeps its first `depth` folders, and the
  // last of them is selected (nothing at the root).
  Q_INVOKABLE void goTo(int depth);
  // The list's primary action (double click, Return) on the selected row: a folder opens, a file opens
  // in its application.
  Q_INVOKABLE void primaryAction();
  // Sorts the list by `key`; the key in use flips its direction. An unknown key is ignored.
  Q_INVOKABLE void sortBy(const QString& key);
  // Opens file `id` in its application (a double click in the columns).
  Q_INVOKABLE void open(qint64 id);
  // Takes the application's pending reveal when it belongs to this catalog: its folders become the path
  // (the folder itself too, when it is one), and it becomes the selection. Another catalog's stays
  // pending.
  Q_INVOKABLE void handlePendingReveal();

 signals:
  void catalogIDChanged();
  void pathChanged();
  void selectedChanged();
  void modeChanged();
  void filterChanged();
  void showHiddenChanged();
  void sortChanged();
  void tableSelectionChanged();
  // A reveal put `id` at its place: the views bring its row into sight.
  void revealed(qint64 id);

 private:
  QVariantList pathList() const;
  QVariantList pathIDList() const;
  QVariantMap selectedMap() const;
  QVariantList modeList() const;
  qint64 tableSelectionValue() const { return m_tableSelection.value_or(0); }

  // The unfiltered children of `parentID`, shared with the cache.
  Records records(int64_t parentID);
  // Indexes of the records that pass the filter; absent when there is no filter.
  std::optional<std::vector<int>> filtered(const std::vector<FileRecord>& records) const;
  // Indexes in the list's order.
  std::optional<std::vector<int>> sortedOrder(const std::vector<FileRecord>& records,
                                              std::optional<std::vector<int>> rows) const;
  // Drops every cached folder; writes already queued are dropped too.
  void clearCache();
  // Brings the models of the mode shown in line with the path, the filter and the sort.
  void refresh();
  void setPath(std::vector<FileRecord> path);
  void setSelected(std::optional<FileRecord> file);
  // After a reload: re-reads the path and the selection by id, dropping what is gone.
  void revalidate();

  qint64 m_catalogID = -1;
  std::vector<FileRecord> m_path;
  std::optional<FileRecord> m_selected;
  BrowseMode m_mode;
  QString m_filter;
  bool m_showHidden = true;
  QString m_sortKey = QStringLiteral("name");
  bool m_ascending = true;
  bool m_sorted = false;
  std::optional<int64_t> m_tableSelection;
  std::unordered_map<int64_t, Records> m_cache;
  // Raised by clearCache, so a write queued before it does not bring back a folder read before it.
  uint64_t m_cacheGeneration = 0;
  BrowserColumns* m_columns;  // Children of this object.
  FolderModel* m_list;
};

}  // namespace orrelin
