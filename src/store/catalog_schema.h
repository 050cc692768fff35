// The statements that make up the catalog database: tables, indexes, the full-text index and its triggers.
#pragma once

namespace orrelin::schema {

// Tables and indexes, run as one batch; every statement is idempotent.
inline constexpr const char* kTables =
    "CREATE TABLE IF NOT EXISTS meta(key TEXT PRIMARY KEY, value TEXT);\n"
    "CREATE TABLE IF NOT EXISTS groups(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, "
    "sort INTEGER DEFAULT 0);\n"
    "CREATE TABLE IF NOT EXISTS catalogs( id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, "
    "group_id INTEGER, root_path TEXT NOT NULL DEFAULT '', volume_name TEXT DEFAULT '', "
    "volume_uuid TEXT DEFAULT '', volume_format TEXT DEFAULT '', capacity INTEGER DEFAULT 0, "
    "free_space INTEGER DEFAULT 0, is_network INTEGER DEFAULT 0, is_removable INTEGER DEFAULT 0, "
    "is_folder INTEGER DEFAULT 0, file_count INTEGER DEFAULT 0, folder_count INTEGER DEFAULT 0, "
    "total_size INTEGER DEFAULT 0, created_at REAL, scanned_at REAL, notes TEXT DEFAULT '', "
    "options TEXT DEFAULT '{}', is_sample INTEGER DEFAULT 0);\n"
    "CREATE TABLE IF NOT EXISTS files( id INTEGER PRIMARY KEY AUTOINCREMENT, catalog_id INTEGER NOT NULL "
    "REFERENCES catalogs(id) ON DELETE CASCADE, parent_id INTEGER NOT NULL DEFAULT 0, path TEXT NOT NULL, "
    "name TEXT NOT NULL, is_dir INTEGER NOT NULL DEFAULT 0, size INTEGER NOT NULL DEFAULT 0, kind TEXT NOT "
    "NULL DEFAULT 'Other', uti TEXT DEFAULT '', ext TEXT DEFAULT '', created REAL, modified REAL, tags TEXT "
    "DEFAULT '', label INTEGER DEFAULT 0, hidden INTEGER DEFAULT 0, sha256 TEXT DEFAULT '', thumb INTEGER "
    "DEFAULT 0, duration REAL DEFAULT 0, width INTEGER DEFAULT 0, height INTEGER DEFAULT 0, meta TEXT "
    "DEFAULT '', item_count INTEGER DEFAULT 0);\n"
    "CREATE UNIQUE INDEX IF NOT EXISTS files_cat_path ON files(catalog_id, path);\n"
    "CREATE INDEX IF NOT EXISTS files_parent ON files(catalog_id, parent_id);\n"
    "CREATE INDEX IF NOT EXISTS files_size ON files(size);\n"
    "CREATE INDEX IF NOT EXISTS files_kind ON files(kind);\n"
    "CREATE INDEX IF NOT EXISTS files_name_size ON files(name, size);\n"
    "CREATE INDEX IF NOT EXISTS files_sha ON files(sha256);\n"
    // Covers the three aggregates of the library statistics (by kind, by year, by extension), so that
    // they read this narrow index instead of every row of files: the statistics run on the main thread.
    "CREATE INDEX IF NOT EXISTS files_stats ON files(kind, is_dir, ext, modified, size);\n"
    "CREATE TABLE IF NOT EXISTS scan_log(id INTEGER PRIMARY KEY AUTOINCREMENT, catalog_id INTEGER, at REAL, "
    "added INTEGER, removed INTEGER, changed INTEGER, seconds REAL, note TEXT DEFAULT '');";

inline constexpr const char* kFtsExists = "SELECT count(*) FROM sqlite_master WHERE name='files_fts'";

// The full-text index in its two forms; trigram depends on the SQLite build, unicode61 is always there.
inline constexpr const char* kFtsTrigram =
    "CREATE VIRTUAL TABLE files_fts USING fts5(name, path, tags, meta, content='files', content_rowid='id', "
    "tokenize='trigram')";
inline constexpr const char* kFtsUnicode61 =
    "CREATE VIRTUAL TABLE files_fts USING fts5(name, path, tags, meta, content='files', content_rowid='id', "
    "tokenize='unicode61 remove_diacritics 2')";
inline constexpr const char* kFtsMarkTrigram =
    "INSERT OR REPLACE INTO meta(key,value) VALUES('fts','trigram')";
inline constexpr const char* kFtsMarkUnicode61 =
    "INSERT OR REPLACE INTO meta(key,value) VALUES('fts','unicode61')";
inline constexpr const char* kFtsRebuild = "INSERT INTO files_fts(files_fts) VALUES('rebuild')";
inline constexpr const char* kFtsKind = "SELECT value FROM meta WHERE key='fts'";

// The external-content index follows files through these; only name, path, tags and meta touch it.
inline constexpr const char* kTriggers =
    "CREATE TRIGGER IF NOT EXISTS files_ai AFTER INSERT ON files BEGIN INSERT INTO "
    "files_fts(rowid,name,path,tags,meta) VALUES (new.id,new.name,new.path,new.tags,new.meta); END;\n"
    "CREATE TRIGGER IF NOT EXISTS files_ad AFTER DELETE ON files BEGIN INSERT INTO "
    "files_fts(files_fts,rowid,name,path,tags,meta) VALUES('delete',old.id,old.name,old.path,old.tags,"
    "old.meta); END;\n"
    "CREATE TRIGGER IF NOT EXISTS files_au AFTER UPDATE OF name,path,tags,meta ON files BEGIN INSERT INTO "
    "files_fts(files_fts,rowid,name,path,tags,meta) VALUES('delete',old.id,old.name,old.path,old.tags,"
    "old.meta); INSERT INTO files_fts(rowid,name,path,tags,meta) VALUES (new.id,new.name,new.path,new.tags,"
    "new.meta); END;";

inline constexpr const char* kSchemaVersion = "INSERT OR REPLACE INTO meta(key,value) VALUES('schema','1')";

}  // namespace orrelin::schema
