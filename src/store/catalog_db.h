// The catalog database: schema upkeep and the plain operations on catalogs, groups, files and the scan log.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "search/search_query.h"
#include "store/records.h"
#include "store/sqlite_db.h"

namespace orrelin {

struct VolumeInfo;
struct DuplicateGroup;
enum class DuplicateMode;
struct LibraryStats;
struct CompareResult;

class CatalogDB {
 public:
  // Column orders that mapCatalog and mapFile read.
  static constexpr const char* catalogColumns =
      "id, name, group_id, root_path, volume_name, volume_uuid, volume_format, capacity, free_space, "
      "is_network, is_removable, is_folder, file_count, folder_count, total_size, created_at, scanned_at, "
      "notes, is_sample";
  static constexpr const char* fileColumns =
      "f.id, f.catalog_id, f.parent_id, f.path, f.name, f.is_dir, f.size, f.kind, f.uti, f.ext, f.created, "
      "f.modified, f.tags, f.label, f.hidden, f.sha256, f.thumb, f.duration, f.width, f.height, f.meta, "
      "f.item_count";
  static constexpr int kFileColumnCount = 22;

  // Opens the database at `path` and brings it to the current schema. Throws DBError.
  explicit CatalogDB(const std::string& path);

  SQLiteDB& db() { return m_db; }
  // True when the full-text index uses the trigram tokenizer.
  bool ftsTrigram() const { return m_ftsTrigram; }

  // Builds a Catalog from the current row, read in catalogColumns order.
  static Catalog mapCatalog(const Statement& row);
  // Builds a FileRecord from the 22 columns of fileColumns that begin at `offset`.
  static FileRecord mapFile(const Statement& row, int offset = 0);

  // All catalogs by name, ignoring case.
  std::vector<Catalog> catalogs();
  std::optional<Catalog> catalog(int64_t id);
  // All groups by sort position, ties by name ignoring case.
  std::vector<CatalogGroup> groups();
  // Adds a group after the last one; returns its id.
  int64_t createGroup(const std::string& name);
  void renameGroup(int64_t id, const std::string& name);
  // Removes the group in one transaction; its catalogs become ungrouped.
  void deleteGroup(int64_t id);
  void setGroup(int64_t catalogID, std::optional<int64_t> groupID);
  void renameCatalog(int64_t id, const std::string& name);
  void setNotes(int64_t id, const std::string& notes);
  // Adds a catalog created now with the volume's facts; returns its id.
  int64_t insertCatalog(const std::string& name, const std::string& rootPath, const VolumeInfo& volume,
                        bool isFolder, std::optional<int64_t> groupID, bool isSample);
  void updateVolumeInfo(int64_t id, const VolumeInfo& volume);
  // Removes the catalog, its files and its scan log in one transaction; then, when `thumbsRoot` is given,
  // its thumbnail folder (a failure of that removal is ignored).
  void deleteCatalog(int64_t id, const std::optional<std::filesystem::path>& thumbsRoot);
  // Rolls file sizes up into their folders (at most 512 levels) and sets the catalog's counters.
  void recomputeTotals(int64_t catalogID);
  void markScanned(int64_t id, Date at);
  void logScan(int64_t catalogID, int64_t added, int64_t removed, int64_t changed, double seconds,
               const std::string& note);
  // The children of a folder (0: the top level), folders first, then by name ignoring case.
  std::vector<FileRecord> children(int64_t catalogID, int64_t parentID, bool includeHidden);
  std::optional<FileRecord> file(int64_t id);
  // All rows of a catalog by path, binary order.
  std::vector<FileRecord> allFiles(int64_t catalogID);
  // The folders above `file`, root-most first, at most 512.
  std::vector<FileRecord> ancestors(const FileRecord& file);
  // The records that match `query` with their catalogs' names, by name ignoring ASCII case, at most
  // query.limit. Throws DBError: of the query case, before any SQL runs, for a regular expression that
  // does not compile; unchanged from SQLite otherwise.
  std::vector<SearchHit> search(const SearchQuery& query);
  // `text` for a LIKE pattern with ESCAPE '\': backslash, % and _ each get a backslash before them.
  static std::string likeEscape(const std::string& text);

  // Most levels a size rolls up through, and most folders ancestors() returns.
  static constexpr int kMaxDepth = 512;

  // Duplicate sets, ranked by the space they waste (one copy's size × surplus copies), at most `limit`
  // of them. Only files of at least `minSize` bytes in `catalogIDs` (empty: every catalog) count; with
  // `crossCatalogOnly`, only sets that span two catalogs or more. Throws DBError.
  std::vector<DuplicateGroup> duplicates(DuplicateMode mode, int64_t minSize,
                                         const std::set<int64_t>& catalogIDs, bool crossCatalogOnly,
                                         int limit = 800);
  // A snapshot of the whole library: totals, kinds, years, extensions, largest files, recent scans.
  // Throws DBError and returns no partial result.
  LibraryStats stats();
  // Folders stored with no entries, by catalog name and path, at most 5000. Throws DBError.
  std::vector<SearchHit> emptyFolders(const std::set<int64_t>& catalogIDs);
  // Files of at least `minSize` bytes modified strictly before `olderThan` (when given; a file without a
  // date then fails), largest first, at most 5000. Throws DBError.
  std::vector<SearchHit> largeOldFiles(int64_t minSize, OptionalDate olderThan,
                                       const std::set<int64_t>& catalogIDs);
  // The records of `catalog`, folders included and in path order, that no longer exist under its root on
  // disk. The caller makes sure the drive is connected. Throws DBError.
  std::vector<FileRecord> missingFiles(const Catalog& catalog);
  // Catalog `a` against catalog `b`, file by file by path. Throws DBError.
  CompareResult compare(int64_t a, int64_t b);

 private:
  void migrate();

  SQLiteDB m_db;
  bool m_ftsTrigram = true;
};

}  // namespace orrelin
