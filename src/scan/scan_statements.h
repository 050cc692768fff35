// The row statements of the scan worker, prepared once per scan and stepped for every entry.
#pragma once

namespace orrelin::scan_sql {

inline constexpr const char* kInsertFile =
    "INSERT INTO files(catalog_id, parent_id, path, name, is_dir, size, kind, uti, ext, created, modified, "
    "tags, label, hidden, sha256, thumb, duration, width, height, meta)\n"
    "VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";

inline constexpr const char* kFullUpdate =
    "UPDATE files SET parent_id=?, name=?, is_dir=?, size=?, kind=?, uti=?, ext=?, created=?, modified=?, "
    "tags=?, label=?, hidden=?, sha256=?, thumb=?, duration=?, width=?, height=?, meta=? WHERE id=?";

inline constexpr const char* kLightUpdate = "UPDATE files SET tags=?, label=?, hidden=? WHERE id=?";

// Entries written between two commits.
inline constexpr int kEntriesPerTransaction = 400;

}  // namespace orrelin::scan_sql
