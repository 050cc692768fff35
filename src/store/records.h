// The value records of catalog data: a catalog, a group of catalogs, and one cataloged file or folder.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/date.h"
#include "scan/file_kind.h"

namespace orrelin {

// One cataloged drive or folder.
struct Catalog {
  int64_t id = 0;
  std::string name;
  std::optional<int64_t> groupID;  // Absent: ungrouped.
  std::string rootPath;            // Empty for an imported catalog.
  std::string volumeName;
  std::string volumeUUID;
  std::string volumeFormat;
  int64_t capacity = 0;
  int64_t freeSpace = 0;
  bool isNetwork = false;
  bool isRemovable = false;
  bool isFolder = false;
  int64_t fileCount = 0;
  int64_t folderCount = 0;
  int64_t totalSize = 0;
  Date createdAt;
  OptionalDate scannedAt;  // Absent: never scanned.
  std::string notes;
  bool isSample = false;

  bool operator==(const Catalog&) const = default;

  // The symbol name of its icon: network share, folder, removable drive, else internal drive.
  std::string symbol() const;
  // The used share of the capacity, within 0 and 1; 0 when the capacity is unknown.
  double usedFraction() const;
  // The volume's name, or the catalog's name when the volume has none.
  const std::string& displayVolume() const { return volumeName.empty() ? name : volumeName; }
};

// A named group of catalogs in the sidebar.
struct CatalogGroup {
  int64_t id = 0;
  std::string name;
  int64_t sort = 0;

  bool operator==(const CatalogGroup&) const = default;
};

// One cataloged file or folder.
struct FileRecord {
  int64_t id = 0;
  int64_t catalogID = 0;
  int64_t parentID = 0;  // 0: directly under the catalog's root.
  std::string path;      // Relative to the root, "/" between parts, no leading slash.
  std::string name;
  bool isDir = false;
  int64_t size = 0;  // For a folder, the rolled-up size of the files below it.
  FileKind kind = FileKind::other;
  std::string uti;
  std::string ext;
  OptionalDate created;
  OptionalDate modified;
  std::vector<std::string> tags;
  int label = 0;
  bool hidden = false;
  std::string sha256;
  bool hasThumb = false;
  double duration = 0;
  int64_t width = 0;
  int64_t height = 0;
  std::map<std::string, std::string> meta;
  int64_t itemCount = 0;

  bool operator==(const FileRecord&) const = default;

  std::string_view kindName() const { return rawValue(kind); }
  // Modification time in seconds since 1970, or 0 when absent.
  double sortModified() const { return modified ? modified->seconds : 0; }
};

// Splits stored tag text at every ", "; empty text gives no tags.
std::vector<std::string> parseTags(const std::string& text);
// Joins tags with ", " as they are stored.
std::string joinTags(const std::vector<std::string>& tags);
// Reads stored metadata: a JSON object of texts, else (malformed, not an object, a non-text value) empty.
std::map<std::string, std::string> parseMeta(const std::string& text);
// Writes metadata as compact JSON with sorted keys; empty for an empty map.
std::string metaJSON(const std::map<std::string, std::string>& meta);

}  // namespace orrelin

template <>
struct std::hash<orrelin::Catalog> {
  size_t operator()(const orrelin::Catalog& c) const noexcept;
};
template <>
struct std::hash<orrelin::CatalogGroup> {
  size_t operator()(const orrelin::CatalogGroup& g) const noexcept;
};
template <>
struct std::hash<orrelin::FileRecord> {
  size_t operator()(const orrelin::FileRecord& f) const noexcept;
};
