// Exchange files back into the database: the CSV and JSON readers, and the one routine that inserts an
// imported catalog with the folders above its items rebuilt.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <deque>
#include <limits>
#include <optional>
#include <unordered_map>

#include "core/name_mapping.h"
#include "exchange/exchange_file.h"
#include "exchange/exporter.h"
#include "organize/export_error.h"
#include "scan/scan_statements.h"
#include "scan/tree_walker.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "store/finder_label.h"
#include "store/fmt.h"
#include "store/safe_int.h"

namespace orrelin::Exporter {

namespace fs = std::filesystem;
using json = nlohmann::json;

namespace {

constexpr const char* kDefaultCatalogName = "Imported Catalog";

// `path` without empty components: "/a//b/" becomes "a/b", the form every stored path has. A NUL, which
// no file name can hold and which would end the text where the database binds it, becomes U+FFFD, so
// that two paths that differ after one stay two paths.
std::string cleanPath(std::string_view path) {
  std::string out;
  out.reserve(path.size());
  size_t start = 0;
  while (start <= path.size()) {
    size_t end = path.find('/', start);
    if (end == std::string_view::npos) end = path.size();
    if (end > start) {
      if (!out.empty()) out += '/';
      for (char c : path.substr(start, end - start)) {
        if (c == '\0') {
          out += "\uFFFD";
        } else {
          out += c;
        }
      }
    }
    start = end + 1;
  }
  return out;
}

std::string_view parentPath(std::string_view path) {
  size_t at = path.rfind('/');
  return at == std::string_view::npos ? std::string_view() : path.substr(0, at);
}

std::string_view lastComponent(std::string_view path) {
  size_t at = path.rfind('/');
  return at == std::string_view::npos ? path : path.substr(at + 1);
}

size_t componentCount(std::string_view path) {
  return path.empty() ? 0 : static_cast<size_t>(std::count(path.begin(), path.end(), '/')) + 1;
}

ImportedFile syntheticFolder(std::string path) {
  ImportedFile folder;
  folder.path = std::move(path);
  folder.isDir = true;
  folder.kind = std::string(rawValue(FileKind::folder));
  folder.uti = "inode/directory";
  return folder;
}

// ---- Values of CSV fields ----

std::optional<int64_t> parseInteger(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  int64_t value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// A finite number in plain or exponent notation, else nothing. Independent of the C locale.
std::optional<double> parseNumber(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
    return std::nullopt;
  return value;
}

std::string replaceAll(std::string text, std::string_view from, std::string_view to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

int labelIndex(std::string_view name) {
  const auto& names = FinderLabel::names();
  auto it = std::find(names.begin(), names.end(), name);
  return it == names.end() ? 0 : static_cast<int>(it - names.begin());
}

// ---- Values of JSON keys: a key that is absent or of another type gives nothing ----

const json* member(const json& object, const char* key) {
  auto it = object.find(key);
  return it == object.end() ? nullptr : &*it;
}

std::string textOr(const json& object, const char* key, std::string fallback) {
  const json* v = member(object, key);
  return v && v->is_string() ? v->get<std::string>() : fallback;
}

bool boolOr(const json& object, const char* key, bool fallback) {
  const json* v = member(object, key);
  return v && v->is_boolean() ? v->get<bool>() : fallback;
}

// Any number, truncated to a 64-bit integer; one out of that range counts as absent.
std::optional<int64_t> anyInteger(const json& object, const char* key) {
  const json* v = member(object, key);
  if (!v) return std::nullopt;
  if (v->is_number_integer() && !v->is_number_unsigned()) return v->get<int64_t>();
  if (v->is_number_unsigned()) {
    uint64_t u = v->get<uint64_t>();
    if (u <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) return static_cast<int64_t>(u);
    return std::nullopt;
  }
  if (v->is_number_float()) {
    constexpr int64_t kOutOfRange = std::numeric_limits<int64_t>::min();
    int64_t n = SafeInt::from(v->get<double>(), kOutOfRange);
    return n == kOutOfRange ? std::nullopt : std::optional<int64_t>(n);
  }
  return std::nullopt;
}

// An integer, or a number with no fraction; anything else counts as absent.
std::optional<int64_t> wholeInteger(const json& object, const char* key) {
  const json* v = member(object, key);
  if (!v || !v->is_number()) return std::nullopt;
  if (v->is_number_float() && std::trunc(v->get<double>()) != v->get<double>()) return std::nullopt;
  return anyInteger(object, key);
}

double numberOr(const json& object, const char* key, double fallback) {
  const json* v = member(object, key);
  if (!v || !v->is_number()) return fallback;
  double d = v->get<double>();
  return std::isfinite(d) ? d : fallback;
}

OptionalDate dateOf(const json& object, const char* key) {
  const json* v = member(object, key);
  return v && v->is_string() ? Fmt::parseIso(v->get_ref<const std::string&>()) : std::nullopt;
}

// A list whose elements all have `type`; anything else counts as absent.
const json* listOf(const json& object, const char* key, json::value_t type) {
  const json* v = member(object, key);
  if (!v || !v->is_array()) return nullptr;
  for (const json& element : *v)
    if (element.type() != type) return nullptr;
  return v;
}

ImportedFile importedFromJSON(const json& d) {
  ImportedFile f;
  f.path = textOr(d, "path", textOr(d, "name", ""));
  f.isDir = boolOr(d, "isFolder", false);
  f.size = anyInteger(d, "size").value_or(0);
  f.kind = textOr(d, "kind", "Other");
  f.uti = textOr(d, "uti", "");
  f.modified = dateOf(d, "modified");
  f.created = dateOf(d, "created");
  if (const json* tags = listOf(d, "tags", json::value_t::string)) {
    std::vector<std::string> list;
    for (const json& tag : *tags) list.push_back(tag.get<std::string>());
    f.tags = joinTags(list);
  }
  int64_t label = wholeInteger(d, "label").value_or(0);
  f.label = label >= std::numeric_limits<int>::min() && label <= std::numeric_limits<int>::max()
                ? static_cast<int>(label)
                : 0;
  f.hidden = boolOr(d, "hidden", false);
  f.duration = numberOr(d, "duration", 0);
  f.width = wholeInteger(d, "width").value_or(0);
  f.height = wholeInteger(d, "height").value_or(0);
  f.sha = textOr(d, "sha256", "");
  if (const json* meta = member(d, "metadata"); meta && meta->is_object()) {
    bool allText = std::all_of(meta->begin(), meta->end(), [](const json& v) { return v.is_string(); });
    if (allText)
      for (const auto& [key, value] : meta->items()) f.meta.emplace(key, value.get<std::string>());
  }
  return f;
}

// nlohmann's messages start with "[json.exception.parse_error.101] ", which says nothing to a user.
std::string withoutExceptionTag(const std::string& what) {
  size_t end = what.rfind("] ", 40);
  return what.rfind("[json.exception.", 0) == 0 && end != std::string::npos ? what.substr(end + 2) : what;
}

}  // namespace

int64_t insertImported(CatalogDB& store, const std::string& name, const std::string& rootPath,
                       const VolumeInfo& volume, bool isFolder, const std::vector<ImportedFile>& items,
                       const std::string& notes) {
  const int64_t id = store.insertCatalog(name, rootPath, volume, isFolder, std::nullopt, false);
  try {
    store.setNotes(id, notes);

    // By cleaned path; a later item replaces an earlier one of the same path.
    std::unordered_map<std::string, const ImportedFile*> byPath;
    byPath.reserve(items.size());
    for (const ImportedFile& item : items) {
      std::string path = cleanPath(item.path);
      if (!path.empty()) byPath.insert_or_assign(std::move(path), &item);
    }
    // Folders that the file does not list, so that every item has its parents. A listed file with items
    // below it (only a damaged file has one) becomes a folder, or its items could never be browsed to.
    std::deque<ImportedFile> synthetic;
    for (const ImportedFile& item : items) {
      std::string path = cleanPath(item.path);
      for (std::string_view parent = parentPath(path); !parent.empty(); parent = parentPath(parent)) {
        auto listed = byPath.find(std::string(parent));
        if (listed != byPath.end()) {
          if (!listed->second->isDir) {
            ImportedFile folder = *listed->second;
            folder.isDir = true;
            folder.kind = rawValue(FileKind::folder);
            synthetic.push_back(std::move(folder));
            listed->second = &synthetic.back();
          }
          break;
        }
        synthetic.push_back(syntheticFolder(std::string(parent)));
        byPath.emplace(synthetic.back().path, &synthetic.back());
      }
    }

    // Parents before children: by depth, then by path.
    std::vector<std::pair<size_t, const std::string*>> order;
    order.reserve(byPath.size());
    for (const auto& [path, item] : byPath) order.emplace_back(componentCount(path), &path);
    std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
      return a.first != b.first ? a.first < b.first : *a.second < *b.second;
    });

    SQLiteDB& db = store.db();
    db.transaction([&] {
      Statement insert = db.prepare(scan_sql::kInsertFile);
      std::unordered_map<std::string_view, int64_t> ids;  // Keys point into byPath, which outlives this.
      ids.reserve(order.size());
      for (const auto& [depth, pathPointer] : order) {
        const std::string& path = *pathPointer;
        const ImportedFile& item = *byPath.at(path);
        auto parent = ids.find(parentPath(path));
        const std::string_view leaf = lastComponent(path);
        const std::string_view kind = fileKindFromRaw(item.kind) ? std::string_view(item.kind)
                                      : item.isDir               ? rawValue(FileKind::folder)
                                                                 : rawValue(FileKind::other);
        db.step(insert, {id,
                         parent == ids.end() ? 0 : parent->second,
                         path,
                         leaf,
                         item.isDir,
                         item.size,
                         kind,
                         item.uti,
                         fileExtension(leaf),
                         item.created,
                         item.modified,
                         item.tags,
                         item.label,
                         item.hidden,
                         item.sha,
                         /*thumb=*/0,
                         item.duration,
                         item.width,
                         item.height,
                         metaJSON(item.meta)});
        ids.emplace(path, db.lastInsertID());
      }
    });
    store.recomputeTotals(id);
    store.markScanned(id, Date::now());
  } catch (...) {
    // Leave no half-imported catalog behind; the first failure is the one to report.
    try {
      store.deleteCatalog(id, std::nullopt);
    } catch (...) {
    }
    throw;
  }
  return id;
}

std::vector<std::vector<std::string>> parseCSV(std::string_view text) {
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> row;
  std::string field;
  bool inQuotes = false;
  // Byte by byte: the text is UTF-8, in which the bytes of '"', ',', LF and CR never occur inside another
  // character, so this sees the same scalars a decoder would.
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inQuotes) {
      if (c != '"') {
        field += c;
      } else if (i + 1 < text.size() && text[i + 1] == '"') {
        field += '"';
        ++i;
      } else {
        inQuotes = false;  // What follows is read as outside quotes again.
      }
      continue;
    }
    switch (c) {
      case '"':
        inQuotes = true;
        break;
      case ',':
        row.push_back(std::move(field));
        field.clear();
        break;
      case '\n':
        row.push_back(std::move(field));
        field.clear();
        rows.push_back(std::move(row));
        row.clear();
        break;
      case '\r':
        break;
      default:
        field += c;
    }
  }
  if (!field.empty() || !row.empty()) {
    row.push_back(std::move(field));
    rows.push_back(std::move(row));
  }
  return rows;
}

int64_t importCSV(CatalogDB& store, const fs::path& from) {
  const std::string text = readExchangeFile(from);
  if (!NameMapping::isValidUTF8(text))
    throw ExportError("Could not read \u201C" + from.string() + "\u201D: it is not UTF-8 text.");
  const std::vector<std::vector<std::string>> rows = parseCSV(text);
  if (rows.empty() || rows.front().size() < 6) throw ExportError(std::string(kNotCSVExport));
  const std::vector<std::string>& header = rows.front();
  auto column = [&](std::string_view name) -> std::optional<size_t> {
    auto it = std::find(header.begin(), header.end(), name);
    return it == header.end() ? std::nullopt : std::optional<size_t>(it - header.begin());
  };
  const std::optional<size_t> catalogCol = column("Catalog"), pathCol = column("Path"),
                              folderCol = column("Folder"), kindCol = column("Kind"),
                              sizeCol = column("Size"), modifiedCol = column("Modified"),
                              createdCol = column("Created"), tagsCol = column("Tags"),
                              hiddenCol = column("Hidden"), utiCol = column("UTI"),
                              durationCol = column("Duration"), widthCol = column("Width"),
                              heightCol = column("Height"), shaCol = column("SHA256"),
                              labelCol = column("Label");
  if (!pathCol) throw ExportError(std::string(kNotCSVExport));

  // Catalogs in order of first appearance.
  std::vector<std::pair<std::string, std::vector<ImportedFile>>> groups;
  std::unordered_map<std::string, size_t> groupOf;
  for (size_t r = 1; r < rows.size(); ++r) {
    const std::vector<std::string>& row = rows[r];
    if (row.size() + 1 < header.size()) continue;  // Cut short; one trailing empty field may be missing.
    auto field = [&](const std::optional<size_t>& col) -> std::string_view {
      return col && *col < row.size() ? std::string_view(row[*col]) : std::string_view();
    };
    ImportedFile f;
    f.path = field(pathCol);
    f.isDir = field(folderCol) == "Yes";
    f.hidden = field(hiddenCol) == "Yes";
    if (!field(kindCol).empty()) f.kind = field(kindCol);
    f.size = parseInteger(field(sizeCol)).value_or(0);
    f.width = parseInteger(field(widthCol)).value_or(0);
    f.height = parseInteger(field(heightCol)).value_or(0);
    f.duration = parseNumber(field(durationCol)).value_or(0);
    f.modified = Fmt::parseIso(field(modifiedCol));
    f.created = Fmt::parseIso(field(createdCol));
    f.tags = replaceAll(std::string(field(tagsCol)), "; ", ", ");
    f.label = labelIndex(field(labelCol));
    f.uti = field(utiCol);
    f.sha = field(shaCol);

    std::string catalog(field(catalogCol));
    if (catalog.empty()) catalog = kDefaultCatalogName;
    auto [it, isNew] = groupOf.emplace(catalog, groups.size());
    if (isNew) groups.emplace_back(catalog, std::vector<ImportedFile>());
    groups[it->second].second.push_back(std::move(f));
  }

  const std::string notes = "Imported from " + from.filename().string();
  for (const auto& [name, items] : groups) {
    VolumeInfo volume;
    volume.name = name;
    insertImported(store, name + " (Imported)", "", volume, false, items, notes);
  }
  return static_cast<int64_t>(groups.size());
}

int64_t importJSON(CatalogDB& store, const fs::path& from) {
  const std::string text = readExchangeFile(from);
  json root;
  try {
    root = json::parse(text);
  } catch (const json::exception& e) {
    throw ExportError("The file is not valid JSON: " + withoutExceptionTag(e.what()));
  }
  const json* catalogs = root.is_object() ? listOf(root, "catalogs", json::value_t::object) : nullptr;
  if (!catalogs) throw ExportError(std::string(kNotJSONExport));

  for (const json& c : *catalogs) {
    VolumeInfo volume;
    volume.name = textOr(c, "volumeName", volume.name);
    volume.uuid = textOr(c, "volumeUUID", volume.uuid);
    volume.format = textOr(c, "format", volume.format);
    volume.capacity = anyInteger(c, "capacity").value_or(volume.capacity);
    volume.free = anyInteger(c, "free").value_or(volume.free);
    volume.isNetwork = boolOr(c, "network", volume.isNetwork);
    volume.isRemovable = boolOr(c, "removable", volume.isRemovable);
    std::vector<ImportedFile> items;
    if (const json* list = listOf(c, "items", json::value_t::object)) {
      items.reserve(list->size());
      for (const json& d : *list) items.push_back(importedFromJSON(d));
    }
    insertImported(store, textOr(c, "name", kDefaultCatalogName), textOr(c, "rootPath", ""), volume,
                   boolOr(c, "folderCatalog", false), items, textOr(c, "notes", ""));
  }
  return static_cast<int64_t>(catalogs->size());
}

}  // namespace orrelin::Exporter
