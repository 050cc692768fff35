// Exchange files back into the database: the CSV and JSON readers, and the one routine that inserts an
// imported catalog with the folders above its items rebuilt.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <deque>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>

#include "core/name_mapping.h"
#include "exchange/exporter.h"
#include "exchange/import_json.h"
#include "exchange/import_source.h"
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

// Removes the catalogs an import made before it found that it cannot go on.
void removeCatalogs(CatalogDB& store, const std::vector<int64_t>& ids) {
  for (int64_t id : ids) {
    try {
      store.deleteCatalog(id, std::nullopt);
    } catch (...) {
      // The failure that stopped the import is the one to report.
    }
  }
}

// Where the columns that are read stand in a CSV header, each found by its exact name.
struct CSVColumns {
  explicit CSVColumns(std::span<const std::string> header) {
    auto column = [&](std::string_view name) -> std::optional<size_t> {
      auto it = std::find(header.begin(), header.end(), name);
      return it == header.end() ? std::nullopt : std::optional<size_t>(it - header.begin());
    };
    catalog = column("Catalog"), path = column("Path"), folder = column("Folder"), kind = column("Kind"),
    size = column("Size"), modified = column("Modified"), created = column("Created"), tags = column("Tags"),
    hidden = column("Hidden"), uti = column("UTI"), duration = column("Duration"), width = column("Width"),
    height = column("Height"), sha = column("SHA256"), label = column("Label");
  }
  std::optional<size_t> catalog, path, folder, kind, size, modified, created, tags, hidden, uti, duration,
      width, height, sha, label;
};

// The field of `row` in `column`; empty when the header has no such column or the row is shorter.
std::string_view fieldOf(std::span<const std::string> row, const std::optional<size_t>& column) {
  return column && *column < row.size() ? std::string_view(row[*column]) : std::string_view();
}

std::string catalogOf(std::span<const std::string> row, const CSVColumns& columns) {
  std::string_view name = fieldOf(row, columns.catalog);
  return name.empty() ? std::string(kDefaultCatalogName) : std::string(name);
}

ImportedFile importedFromCSV(std::span<const std::string> row, const CSVColumns& c) {
  ImportedFile f;
  f.path = fieldOf(row, c.path);
  f.isDir = fieldOf(row, c.folder) == "Yes";
  f.hidden = fieldOf(row, c.hidden) == "Yes";
  if (!fieldOf(row, c.kind).empty()) f.kind = fieldOf(row, c.kind);
  f.size = parseInteger(fieldOf(row, c.size)).value_or(0);
  f.width = parseInteger(fieldOf(row, c.width)).value_or(0);
  f.height = parseInteger(fieldOf(row, c.height)).value_or(0);
  f.duration = parseNumber(fieldOf(row, c.duration)).value_or(0);
  f.modified = Fmt::parseIso(fieldOf(row, c.modified));
  f.created = Fmt::parseIso(fieldOf(row, c.created));
  f.tags = replaceAll(std::string(fieldOf(row, c.tags)), "; ", ", ");
  f.label = labelIndex(fieldOf(row, c.label));
  f.uti = fieldOf(row, c.uti);
  f.sha = fieldOf(row, c.sha);
  return f;
}

// One catalog of a CSV: its rows, counted in the first reading and made into items in the second.
struct CSVGroup {
  std::string name;
  size_t rows = 0;
  std::vector<ImportedFile> items;
};

constexpr const char* kChangedText = "The file changed while it was being imported.";

}  // namespace

int64_t insertImported(CatalogDB& store, const std::string& name, const std::string& rootPath,
                       const VolumeInfo& volume, bool isFolder, const std::vector<ImportedFile>& items,
                       const std::string& notes) {
  const int64_t id = store.insertCatalog(name, rootPath, volume, isFolder, std::nullopt, false);
  try {
    store.setNotes(id, notes);

    // Each item's path as stored: most are already clean and are used where they stand.
    std::deque<std::string> cleaned;  // The paths that were not.
    std::vector<std::string_view> paths;
    paths.reserve(items.size());
    for (const ImportedFile& item : items) {
      const std::string& path = item.path;
      bool clean = path.empty() || (path.front() != '/' && path.back() != '/' &&
                                    path.find("//") == std::string::npos && path.find('\0') == std::string::npos);
      paths.push_back(clean ? std::string_view(path) : std::string_view(cleaned.emplace_back(cleanPath(path))));
    }

    // By path, the item to insert and then its new row id; a later item replaces an earlier one of the
    // same path. Keys point into `items`, `cleaned` and `synthetic`, which outlive the map.
    struct Entry {
      const ImportedFile* item;
      int64_t rowID = 0;
    };
    std::unordered_map<std::string_view, Entry> byPath;
    byPath.reserve(items.size());
    for (size_t i = 0; i < items.size(); ++i)
      if (!paths[i].empty()) byPath.insert_or_assign(paths[i], Entry{&items[i]});
    // Folders that the file does not list, so that every item has its parents. A listed file with items
    // below it (only a damaged file has one) becomes a folder, or its items could never be browsed to.
    std::deque<ImportedFile> synthetic;
    for (std::string_view path : paths) {
      for (std::string_view parent = parentPath(path); !parent.empty(); parent = parentPath(parent)) {
        auto listed = byPath.find(parent);
        if (listed != byPath.end()) {
          if (!listed->second.item->isDir) {
            ImportedFile folder = *listed->second.item;
            folder.isDir = true;
            folder.kind = rawValue(FileKind::folder);
            synthetic.push_back(std::move(folder));
            listed->second.item = &synthetic.back();
          }
          break;
        }
        synthetic.push_back(syntheticFolder(std::string(parent)));
        byPath.emplace(synthetic.back().path, Entry{&synthetic.back()});
      }
    }
    paths = {};

    // Parents before children: by depth, then by path.
    using Slot = std::unordered_map<std::string_view, Entry>::value_type;
    std::vector<std::pair<size_t, Slot*>> order;
    order.reserve(byPath.size());
    for (Slot& slot : byPath) order.emplace_back(componentCount(slot.first), &slot);
    std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
      return a.first != b.first ? a.first < b.first : a.second->first < b.second->first;
    });

    SQLiteDB& db = store.db();
    db.transaction([&] {
      Statement insert = db.prepare(scan_sql::kInsertFile);
      for (const auto& [depth, slot] : order) {
        const std::string_view path = slot->first;
        const ImportedFile& item = *slot->second.item;
        auto parent = byPath.find(parentPath(path));
        const std::string_view leaf = lastComponent(path);
        const std::string_view kind = fileKindFromRaw(item.kind) ? std::string_view(item.kind)
                                      : item.isDir               ? rawValue(FileKind::folder)
                                                                 : rawValue(FileKind::other);
        db.step(insert, {id,
                         parent == byPath.end() ? 0 : parent->second.rowID,
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
        slot->second.rowID = db.lastInsertID();
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
  auto take = [&](std::span<std::string> fields) {
    rows.emplace_back(std::make_move_iterator(fields.begin()), std::make_move_iterator(fields.end()));
  };
  CSVReader reader;
  reader.feed(text, take);
  reader.finish(take);
  return rows;
}

int64_t importCSV(CatalogDB& store, const fs::path& from) {
  ImportSource source(from);

  // First reading: the whole text must be UTF-8 and have the layout; each catalog's rows are counted, so
  // that the second reading can insert a catalog as soon as its last row has been read.
  std::vector<std::string> header;
  bool headerRead = false;
  std::optional<CSVColumns> columns;
  std::vector<CSVGroup> groups;  // In order of first appearance.
  std::unordered_map<std::string, size_t> groupOf;
  {
    UTF8Check utf8;
    CSVReader reader;
    auto count = [&](std::span<std::string> row) {
      if (!headerRead) {
        header.assign(row.begin(), row.end());
        headerRead = true;
        columns.emplace(header);
        return;
      }
      if (row.size() + 1 < header.size()) return;  // Cut short; one trailing empty field may be missing.
      auto [it, isNew] = groupOf.emplace(catalogOf(row, *columns), groups.size());
      if (isNew) groups.push_back({it->first, 0, {}});
      ++groups[it->second].rows;
    };
    for (std::string_view piece = source.read(); !piece.empty(); piece = source.read()) {
      utf8.feed(piece);
      if (!utf8.failed()) reader.feed(piece, count);
    }
    reader.finish(count);
    if (!utf8.valid())
      throw ExportError("Could not read \u201C" + NameMapping::storedPath(from) + "\u201D: it is not UTF-8 text.");
  }
  if (!headerRead || header.size() < 6 || !columns->path) throw ExportError(std::string(kNotCSVExport));

  // Second reading: rows become items of their catalog; a catalog is inserted once all its rows are in
  // and every catalog before it is, so that the catalogs keep their order.
  // The name as the catalogs store names: one that is not UTF-8 keeps its stray bytes reversibly.
  const std::string notes = "Imported from " + NameMapping::storedPath(from.filename());
  std::vector<int64_t> made;
  size_t next = 0;  // The first catalog not inserted yet.
  bool changed = false;
  bool headerSkipped = false;
  auto take = [&](std::span<std::string> row) {
    if (changed) return;
    if (!headerSkipped) {
      headerSkipped = true;
      changed = !std::equal(row.begin(), row.end(), header.begin(), header.end());
      return;
    }
    if (row.size() + 1 < header.size()) return;
    auto found = groupOf.find(catalogOf(row, *columns));
    if (found == groupOf.end() || groups[found->second].items.size() == groups[found->second].rows) {
      changed = true;
      return;
    }
    CSVGroup& group = groups[found->second];
    if (group.items.empty()) group.items.reserve(group.rows);
    group.items.push_back(importedFromCSV(row, *columns));
    for (; next < groups.size() && groups[next].items.size() == groups[next].rows; ++next) {
      VolumeInfo volume;
      volume.name = groups[next].name;
      made.push_back(
          insertImported(store, groups[next].name + " (Imported)", "", volume, false, groups[next].items, notes));
      groups[next].items = {};
    }
  };
  try {
    source.rewind();
    CSVReader reader;
    for (std::string_view piece = source.read(); !piece.empty() && !changed; piece = source.read())
      reader.feed(piece, take);
    reader.finish(take);
    if (changed || next != groups.size()) throw ExportError(kChangedText);
  } catch (const ExportError&) {
    removeCatalogs(store, made);  // What came of a file that changed meanwhile is not what it holds.
    throw;
  }
  return static_cast<int64_t>(groups.size());
}

int64_t importJSON(CatalogDB& store, const fs::path& from) {
  ImportSource source(from);
  const JSONOutline outline = outlineJSONExport(source);
  if (!outline.isExport) throw ExportError(std::string(kNotJSONExport));
  std::vector<int64_t> made;
  try {
    readJSONExport(source, outline, [&](JSONCatalog& c) {
      made.push_back(insertImported(store, c.name, c.rootPath, c.volume, c.isFolder, c.items, c.notes));
    });
  } catch (const ExportError&) {
    removeCatalogs(store, made);  // What came of a file that changed meanwhile is not what it holds.
    throw;
  }
  return static_cast<int64_t>(outline.itemCounts.size());
}

}  // namespace orrelin::Exporter
