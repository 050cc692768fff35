// Derived values, text forms and hashes of the catalog records.
#include "store/records.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace orrelin {

std::string Catalog::symbol() const {
  if (isNetwork) return "network";
  if (isFolder) return "folder.fill";
  if (isRemovable) return "externaldrive.fill";
  return "internaldrive.fill";
}

double Catalog::usedFraction() const {
  if (capacity < 1) return 0;
  double used = static_cast<double>(capacity - freeSpace) / static_cast<double>(capacity);
  return std::clamp(used, 0.0, 1.0);
}

std::vector<std::string> parseTags(const std::string& text) {
  std::vector<std::string> tags;
  if (text.empty()) return tags;
  size_t start = 0;
  while (true) {
    size_t at = text.find(", ", start);
    if (at == std::string::npos) {
      tags.push_back(text.substr(start));
      return tags;
    }
    tags.push_back(text.substr(start, at - start));
    start = at + 2;
  }
}

std::string joinTags(const std::vector<std::string>& tags) {
  std::string out;
  for (size_t i = 0; i < tags.size(); ++i) {
    if (i > 0) out += ", ";
    out += tags[i];
  }
  return out;
}

std::map<std::string, std::string> parseMeta(const std::string& text) {
  std::map<std::string, std::string> meta;
  if (text.empty()) return meta;
  nlohmann::json doc = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (!doc.is_object()) return {};
  for (const auto& [key, value] : doc.items()) {
    if (!value.is_string()) return {};
    meta.emplace(key, value.get<std::string>());
  }
  return meta;
}

std::string metaJSON(const std::map<std::string, std::string>& meta) {
  if (meta.empty()) return {};
  try {
    return nlohmann::json(meta).dump(-1, ' ', /*ensure_ascii=*/false,
                                     nlohmann::json::error_handler_t::strict);
  } catch (const nlohmann::json::exception&) {
    return {};  // Text that is not UTF-8 cannot be encoded.
  }
}

}  // namespace orrelin

namespace {

// Mixes one more value into a running hash (the boost recipe, widened to 64 bits).
template <class T>
void mix(size_t& seed, const T& value) {
  seed ^= std::hash<T>{}(value) + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}
void mixDate(size_t& seed, const orrelin::OptionalDate& d) {
  mix(seed, d.has_value());
  if (d) mix(seed, d->seconds);
}

}  // namespace

size_t std::hash<orrelin::Catalog>::operator()(const orrelin::Catalog& c) const noexcept {
  size_t h = 0;
  mix(h, c.id), mix(h, c.name), mix(h, c.groupID.value_or(-1)), mix(h, c.groupID.has_value());
  mix(h, c.rootPath), mix(h, c.volumeName), mix(h, c.volumeUUID), mix(h, c.volumeFormat);
  mix(h, c.capacity), mix(h, c.freeSpace), mix(h, c.isNetwork), mix(h, c.isRemovable), mix(h, c.isFolder);
  mix(h, c.fileCount), mix(h, c.folderCount), mix(h, c.totalSize), mix(h, c.createdAt.seconds);
  mixDate(h, c.scannedAt), mix(h, c.notes), mix(h, c.isSample);
  return h;
}

size_t std::hash<orrelin::CatalogGroup>::operator()(const orrelin::CatalogGroup& g) const noexcept {
  size_t h = 0;
  mix(h, g.id), mix(h, g.name), mix(h, g.sort);
  return h;
}

size_t std::hash<orrelin::FileRecord>::operator()(const orrelin::FileRecord& f) const noexcept {
  size_t h = 0;
  mix(h, f.id), mix(h, f.catalogID), mix(h, f.parentID), mix(h, f.path), mix(h, f.name), mix(h, f.isDir);
  mix(h, f.size), mix(h, static_cast<int>(f.kind)), mix(h, f.uti), mix(h, f.ext);
  mixDate(h, f.created), mixDate(h, f.modified);
  for (const auto& tag : f.tags) mix(h, tag);
  mix(h, f.label), mix(h, f.hidden), mix(h, f.sha256), mix(h, f.hasThumb), mix(h, f.duration);
  mix(h, f.width), mix(h, f.height);
  for (const auto& [key, value] : f.meta) mix(h, key), mix(h, value);
  mix(h, f.itemCount);
  return h;
}
