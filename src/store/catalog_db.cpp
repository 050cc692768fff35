// Schema upkeep and the plain catalog operations, each one statement or one transaction.
#include "store/catalog_db.h"

#include <system_error>
#include <unordered_map>

#include "scan/volume_info.h"
#include "store/catalog_schema.h"

namespace orrelin {

namespace {

const std::string kSelectCatalogs = std::string("SELECT ") + CatalogDB::catalogColumns + " FROM catalogs";
const std::string kSelectFiles = std::string("SELECT ") + CatalogDB::fileColumns + " FROM files f";

}  // namespace

CatalogDB::CatalogDB(const std::string& path) : m_db(path) { migrate(); }

void CatalogDB::migrate() {
  m_db.exec(schema::kTables);

  int64_t ftsCount = 0;
  try {
    ftsCount = m_db.scalarInt(schema::kFtsExists);
  } catch (const DBError&) {
    ftsCount = 0;
  }
  if (ftsCount == 0) {
    // Whether this SQLite has the trigram tokenizer is learned by trying it.
    bool trigram = false;
    try {
      m_db.exec(schema::kFtsTrigram);
      m_db.exec(schema::kFtsMarkTrigram);
      trigram = true;
    } catch (const DBError&) {
      trigram = false;
    }
    if (!trigram) {
      m_db.exec(schema::kFtsUnicode61);
      m_db.exec(schema::kFtsMarkUnicode61);
    }
    m_db.exec(schema::kFtsRebuild);
  }

  std::string kind = "trigram";
  try {
    kind = m_db.scalarText(schema::kFtsKind).value_or("trigram");
  } catch (const DBError&) {
    kind = "trigram";
  }
  m_ftsTrigram = kind == "trigram";

  m_db.exec(schema::kTriggers);
  m_db.run(schema::kSchemaVersion);
}

Catalog CatalogDB::mapCatalog(const Statement& r) {
  Catalog c;
  c.id = r.int64(0);
  c.name = r.text(1);
  if (!r.isNull(2)) c.groupID = r.int64(2);
  c.rootPath = r.text(3);
  c.volumeName = r.text(4);
  c.volumeUUID = r.text(5);
  c.volumeFormat = r.text(6);
  c.capacity = r.int64(7);
  c.freeSpace = r.int64(8);
  c.isNetwork = r.boolean(9);
  c.isRemovable = r.boolean(10);
  c.isFolder = r.boolean(11);
  c.fileCount = r.int64(12);
  c.folderCount = r.int64(13);
  c.totalSize = r.int64(14);
  c.createdAt = r.date(15).value_or(Date::now());
  c.scannedAt = r.date(16);
  c.notes = r.text(17);
  c.isSample = r.boolean(18);
  return c;
}

FileRecord CatalogDB::mapFile(const Statement& r, int o) {
  FileRecord f;
  f.id = r.int64(o + 0);
  f.catalogID = r.int64(o + 1);
  f.parentID = r.int64(o + 2);
  f.path = r.text(o + 3);
  f.name = r.text(o + 4);
  f.isDir = r.boolean(o + 5);
  f.size = r.int64(o + 6);
  f.kind = fileKindFromRaw(r.text(o + 7)).value_or(FileKind::other);
  f.uti = r.text(o + 8);
  f.ext = r.text(o + 9);
  f.created = r.date(o + 10);
  f.modified = r.date(o + 11);
  f.tags = parseTags(r.text(o + 12));
  f.label = r.integer(o + 13);
  f.hidden = r.boolean(o + 14);
  f.sha256 = r.text(o + 15);
  f.hasThumb = r.boolean(o + 16);
  f.duration = r.real(o + 17);
  f.width = r.int64(o + 18);
  f.height = r.int64(o + 19);
  f.meta = parseMeta(r.text(o + 20));
  f.itemCount = r.int64(o + 21);
  return f;
}

std::vector<Catalog> CatalogDB::catalogs() {
  return m_db.query(kSelectCatalogs + " ORDER BY name COLLATE NOCASE", {}, mapCatalog);
}

std::optional<Catalog> CatalogDB::catalog(int64_t id) {
  auto rows = m_db.query(kSelectCatalogs + " WHERE id=?", {id}, mapCatalog);
  if (rows.empty()) return std::nullopt;
  return rows.front();
}

std::vector<CatalogGroup> CatalogDB::groups() {
  return m_db.query("SELECT id, name, sort FROM groups ORDER BY sort, name COLLATE NOCASE", {},
                    [](const Statement& r) {
                      return CatalogGroup{r.int64(0), r.text(1), r.int64(2)};
                    });
}

int64_t CatalogDB::createGroup(const std::string& name) {
  std::lock_guard guard(m_db.mutex());
  int64_t sort = m_db.scalarInt("SELECT COALESCE(MAX(sort),0)+1 FROM groups");
  m_db.run("INSERT INTO groups(name, sort) VALUES(?,?)", {name, sort});
  return m_db.lastInsertID();
}

void CatalogDB::renameGroup(int64_t id, const std::string& name) {
  m_db.run("UPDATE groups SET name=? WHERE id=?", {name, id});
}

void CatalogDB::deleteGroup(int64_t id) {
  m_db.transaction([&] {
    m_db.run("UPDATE catalogs SET group_id=NULL WHERE group_id=?", {id});
    m_db.run("DELETE FROM groups WHERE id=?", {id});
  });
}

void CatalogDB::setGroup(int64_t catalogID, std::optional<int64_t> groupID) {
  m_db.run("UPDATE catalogs SET group_id=? WHERE id=?", {groupID, catalogID});
}

void CatalogDB::renameCatalog(int64_t id, const std::string& name) {
  m_db.run("UPDATE catalogs SET name=? WHERE id=?", {name, id});
}

void CatalogDB::setNotes(int64_t id, const std::string& notes) {
  m_db.run("UPDATE catalogs SET notes=? WHERE id=?", {notes, id});
}

int64_t CatalogDB::insertCatalog(const std::string& name, const std::string& rootPath,
                                 const VolumeInfo& volume, bool isFolder, std::optional<int64_t> groupID,
                                 bool isSample) {
  std::lock_guard guard(m_db.mutex());
  m_db.run(
      "INSERT INTO catalogs(name, group_id, root_path, volume_name, volume_uuid, volume_format, capacity, "
      "free_space, is_network, is_removable, is_folder, created_at, is_sample) "
      "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?)",
      {name, groupID, rootPath, volume.name, volume.uuid, volume.format, volume.capacity, volume.free,
       volume.isNetwork, volume.isRemovable, isFolder, Date::now(), isSample});
  return m_db.lastInsertID();
}

void CatalogDB::updateVolumeInfo(int64_t id, const VolumeInfo& volume) {
  m_db.run(
      "UPDATE catalogs SET volume_name=?, volume_uuid=?, volume_format=?, capacity=?, free_space=?, "
      "is_network=?, is_removable=? WHERE id=?",
      {volume.name, volume.uuid, volume.format, volume.capacity, volume.free, volume.isNetwork,
       volume.isRemovable, id});
}

void CatalogDB::deleteCatalog(int64_t id, const std::optional<std::filesystem::path>& thumbsRoot) {
  m_db.transaction([&] {
    m_db.run("DELETE FROM files WHERE catalog_id=?", {id});
    m_db.run("DELETE FROM scan_log WHERE catalog_id=?", {id});
    m_db.run("DELETE FROM catalogs WHERE id=?", {id});
  });
  if (thumbsRoot) {
    std::error_code ignored;  // The folder may well not exist.
    std::filesystem::remove_all(*thumbsRoot / std::to_string(id), ignored);
  }
}

void CatalogDB::recomputeTotals(int64_t catalogID) {
  struct Row {
    int64_t id, parentID, size;
    bool isDir;
  };
  std::vector<Row> rows;
  m_db.forEachRow("SELECT id, parent_id, size, is_dir FROM files WHERE catalog_id=?", {catalogID},
                  [&](const Statement& r) {
                    rows.push_back({r.int64(0), r.int64(1), r.int64(2), r.boolean(3)});
                  });

  std::unordered_map<int64_t, int64_t> parentOf, folderSize, childCount;
  parentOf.reserve(rows.size());
  for (const Row& row : rows) {
    parentOf[row.id] = row.parentID;
    if (row.isDir) folderSize[row.id] = 0;
    ++childCount[row.parentID];
  }

  int64_t files = 0, folders = 0, bytes = 0;
  for (const Row& row : rows) {
    if (row.isDir) {
      ++folders;
      continue;
    }
    ++files;
    bytes += row.size;
    if (row.parentID == 0) continue;
    folderSize[row.parentID] += row.size;
    // Up through the grandparents; the step cap also ends a parent chain that loops.
    auto up = parentOf.find(row.parentID);
    for (int steps = 0; steps < kMaxDepth - 1 && up != parentOf.end() && up->second != 0; ++steps) {
      folderSize[up->second] += row.size;
      up = parentOf.find(up->second);
    }
  }

  m_db.transaction([&] {
    Statement update = m_db.prepare("UPDATE files SET size=?, item_count=? WHERE id=?");
    for (const auto& [id, size] : folderSize) {
      auto count = childCount.find(id);
      m_db.step(update, {size, count == childCount.end() ? 0 : count->second, id});
    }
    m_db.run("UPDATE catalogs SET file_count=?, folder_count=?, total_size=? WHERE id=?",
             {files, folders, bytes, catalogID});
  });
}

void CatalogDB::markScanned(int64_t id, Date at) {
  m_db.run("UPDATE catalogs SET scanned_at=? WHERE id=?", {at, id});
}

void CatalogDB::logScan(int64_t catalogID, int64_t added, int64_t removed, int64_t changed, double seconds,
                        const std::string& note) {
  m_db.run(
      "INSERT INTO scan_log(catalog_id, at, added, removed, changed, seconds, note) VALUES(?,?,?,?,?,?,?)",
      {catalogID, Date::now(), added, removed, changed, seconds, note});
}

std::vector<FileRecord> CatalogDB::children(int64_t catalogID, int64_t parentID, bool includeHidden) {
  std::string sql = kSelectFiles + " WHERE f.catalog_id=? AND f.parent_id=? ";
  if (!includeHidden) sql += "AND f.hidden=0";
  sql += " ORDER BY f.is_dir DESC, f.name COLLATE NOCASE";
  return m_db.query(sql, {catalogID, parentID}, [](const Statement& r) { return mapFile(r); });
}

std::optional<FileRecord> CatalogDB::file(int64_t id) {
  auto rows = m_db.query(kSelectFiles + " WHERE f.id=?", {id}, [](const Statement& r) { return mapFile(r); });
  if (rows.empty()) return std::nullopt;
  return rows.front();
}

std::vector<FileRecord> CatalogDB::allFiles(int64_t catalogID) {
  return m_db.query(kSelectFiles + " WHERE f.catalog_id=? ORDER BY f.path", {catalogID},
                    [](const Statement& r) { return mapFile(r); });
}

std::vector<FileRecord> CatalogDB::ancestors(const FileRecord& file) {
  std::vector<FileRecord> chain;
  int64_t next = file.parentID;
  while (next != 0 && chain.size() < static_cast<size_t>(kMaxDepth)) {
    std::optional<FileRecord> folder = this->file(next);
    if (!folder) break;
    next = folder->parentID;
    chain.push_back(std::move(*folder));
  }
  return {chain.rbegin(), chain.rend()};
}

}  // namespace orrelin
