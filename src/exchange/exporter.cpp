// Catalogs and search hits out to the CSV and JSON exchange formats.
#include "exchange/exporter.h"

#include <algorithm>
#include <charconv>

#include "core/app_info.h"
#include "exchange/exchange_file.h"
#include "organize/export_error.h"
#include "store/catalog_db.h"
#include "store/finder_label.h"
#include "store/fmt.h"

namespace orrelin::Exporter {

namespace fs = std::filesystem;
using json = nlohmann::json;

namespace {

constexpr std::string_view kRowEnd = "\r\n";
constexpr int kIndent = 2;

// Pretty printed like json::dump(kIndent), sorted keys, UTF-8 as it is. A byte that is not UTF-8 (which
// the store never holds) becomes U+FFFD rather than failing a whole export.
std::string dumpPretty(const json& value) {
  return value.dump(kIndent, ' ', /*ensure_ascii=*/false, json::error_handler_t::replace);
}

// `text` with every line after the first indented by `levels` more steps. A JSON text holds line breaks
// only between its tokens (those in strings are escaped), so this re-indents without changing content.
std::string indented(std::string text, int levels) {
  const std::string pad(static_cast<size_t>(levels * kIndent), ' ');
  for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1 + pad.size()))
    text.insert(at + 1, pad);
  return text;
}

// Writes `object`, pretty printed at nesting `level`, with the list under `listKey` produced piece by
// piece by `writeList` instead of taken from the object, so that a document of a million records never
// has to exist as one tree. The result is the same text json::dump gives for the whole tree.
template <class WriteList>
void writeObjectWithList(const json& object, std::string_view listKey, int level, const Sink& out,
                         WriteList&& writeList) {
  const std::string inner(static_cast<size_t>((level + 1) * kIndent), ' ');
  json keys = object;
  keys[std::string(listKey)] = nullptr;  // Takes its sorted place among the others.
  out("{");
  bool first = true;
  for (const auto& [key, value] : keys.items()) {
    out(first ? "\n" : ",\n");
    first = false;
    out(inner);
    out(json(key).dump());
    out(": ");
    if (key == listKey) {
      writeList(level + 1);
    } else {
      out(indented(dumpPretty(value), level + 1));
    }
  }
  out("\n" + std::string(static_cast<size_t>(level * kIndent), ' ') + "}");
}

// Streams a JSON list at nesting `level`: call element() for each element's text, then end().
class ListWriter {
 public:
  ListWriter(const Sink& out, int level) : m_out(out), m_level(level) {}
  void element(const std::string& text) {
    m_out(m_empty ? "[\n" : ",\n");
    m_empty = false;
    m_out(std::string(static_cast<size_t>((m_level + 1) * kIndent), ' '));
    m_out(text);
  }
  void end() {
    m_out(m_empty ? "[]" : "\n" + std::string(static_cast<size_t>(m_level * kIndent), ' ') + "]");
  }
  int elementLevel() const { return m_level + 1; }

 private:
  const Sink& m_out;
  int m_level;
  bool m_empty = true;
};

// Every record of a catalog, by path (the order of CatalogDB::allFiles), one at a time: a catalog of a
// million records is never held in memory.
template <class Fn>
void forEachRecord(CatalogDB& store, int64_t catalogID, Fn&& fn) {
  store.db().forEachRow(
      std::string("SELECT ") + CatalogDB::fileColumns + " FROM files f WHERE f.catalog_id=? ORDER BY f.path",
      {catalogID}, [&](const Statement& row) { fn(CatalogDB::mapFile(row)); });
}

template <class Fn>
int64_t writeFile(const fs::path& to, Fn&& write) {
  AtomicFile file(to);
  Sink sink = [&file](std::string_view text) { file.write(text); };
  int64_t count = write(sink);
  file.commit();
  return count;
}

}  // namespace

const std::array<std::string_view, 17>& csvHeader() {
  static constexpr std::array<std::string_view, 17> kHeader = {
      "Catalog", "Path",   "Name", "Folder",   "Kind",  "Size",   "Modified", "Created", "Tags",
      "Label",   "Hidden", "UTI",  "Duration", "Width", "Height", "SHA256",   "Metadata"};
  return kHeader;
}

std::string csvField(std::string_view text) {
  if (text.find_first_of(",\"\n\r") == std::string_view::npos) return std::string(text);
  std::string out = "\"";
  for (char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
  return out;
}

std::string decimal(double value, int decimals) {
  char buffer[400];  // The largest double has 309 digits before the point.
  auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed,
                                    std::clamp(decimals, 0, 17));
  return error == std::errc() ? std::string(buffer, end) : std::string();
}

std::string csvRow(const FileRecord& r, std::string_view catalogName) {
  std::string tags, meta;
  for (size_t i = 0; i < r.tags.size(); ++i) tags += (i > 0 ? "; " : "") + r.tags[i];
  for (const auto& [key, value] : r.meta) meta += (meta.empty() ? "" : "; ") + key + ": " + value;
  const std::string duration = r.duration > 0 ? decimal(r.duration, 2) : "";
  const std::string fields[] = {
      std::string(catalogName),
      r.path,
      r.name,
      r.isDir ? "Yes" : "No",
      std::string(r.kindName()),
      std::to_string(r.size),
      r.modified ? Fmt::iso(*r.modified) : "",
      r.created ? Fmt::iso(*r.created) : "",
      tags,
      std::string(FinderLabel::name(r.label)),
      r.hidden ? "Yes" : "No",
      r.uti,
      duration,
      r.width >= 1 ? std::to_string(r.width) : "",
      r.height >= 1 ? std::to_string(r.height) : "",
      r.sha256,
      meta,
  };
  std::string row;
  for (size_t i = 0; i < std::size(fields); ++i) {
    if (i > 0) row += ',';
    row += csvField(fields[i]);
  }
  return row;
}

json fileDict(const FileRecord& r) {
  json d = {{"path", r.path}, {"name", r.name},       {"isFolder", r.isDir},
            {"size", r.size}, {"kind", r.kindName()}, {"uti", r.uti},
            {"tags", r.tags}, {"label", r.label},     {"hidden", r.hidden}};
  if (r.modified) d["modified"] = Fmt::iso(*r.modified);
  if (r.created) d["created"] = Fmt::iso(*r.created);
  if (r.duration > 0) d["duration"] = r.duration;
  if (r.width >= 1) {
    d["width"] = r.width;
    d["height"] = r.height;  // With the width, whatever its own value: readers take the pair together.
  }
  if (!r.sha256.empty()) d["sha256"] = r.sha256;
  if (!r.meta.empty()) d["metadata"] = r.meta;
  return d;
}

json catalogDict(const Catalog& c) {
  json d = {{"name", c.name},
            {"rootPath", c.rootPath},
            {"volumeName", c.volumeName},
            {"volumeUUID", c.volumeUUID},
            {"format", c.volumeFormat},
            {"capacity", c.capacity},
            {"free", c.freeSpace},
            {"network", c.isNetwork},
            {"removable", c.isRemovable},
            {"folderCatalog", c.isFolder},
            {"files", c.fileCount},
            {"folders", c.folderCount},
            {"totalSize", c.totalSize},
            {"notes", c.notes},
            {"created", Fmt::iso(c.createdAt)}};
  if (c.scannedAt) d["scanned"] = Fmt::iso(*c.scannedAt);
  return d;
}

int64_t writeCSV(CatalogDB& store, const std::vector<Catalog>& catalogs, const Sink& out) {
  std::string header;
  for (std::string_view name : csvHeader()) header += (header.empty() ? "" : ",") + std::string(name);
  out(header);
  out(kRowEnd);
  int64_t count = 0;
  for (const Catalog& catalog : catalogs) {
    forEachRecord(store, catalog.id, [&](const FileRecord& record) {
      if (count++ > 0) out(kRowEnd);
      out(csvRow(record, catalog.name));
    });
  }
  return count;
}

int64_t writeJSON(CatalogDB& store, const std::vector<Catalog>& catalogs, const Sink& out) {
  const json document = {{"app", AppInfo::name},
                         {"format", kJSONFormat},
                         {"version", kJSONVersion},
                         {"exported", Fmt::iso(Date::now())}};
  int64_t count = 0;
  writeObjectWithList(document, "catalogs", 0, out, [&](int level) {
    ListWriter catalogList(out, level);
    for (const Catalog& catalog : catalogs) {
      catalogList.element("");  // The object follows, written piece by piece.
      writeObjectWithList(catalogDict(catalog), "items", catalogList.elementLevel(), out, [&](int itemLevel) {
        ListWriter items(out, itemLevel);
        forEachRecord(store, catalog.id, [&](const FileRecord& record) {
          items.element(indented(dumpPretty(fileDict(record)), items.elementLevel()));
          ++count;
        });
        items.end();
      });
    }
    catalogList.end();
  });
  out("\n");
  return count;
}

std::string hitsCSV(const std::vector<SearchHit>& hits) {
  std::string text;
  for (std::string_view name : csvHeader()) text += (text.empty() ? "" : ",") + std::string(name);
  text += kRowEnd;
  for (size_t i = 0; i < hits.size(); ++i) {
    if (i > 0) text += kRowEnd;
    text += csvRow(hits[i].file, hits[i].catalogName);
  }
  return text;
}

std::string hitsJSON(const std::vector<SearchHit>& hits) {
  json results = json::array();
  for (const SearchHit& hit : hits) {
    json d = fileDict(hit.file);
    d["catalog"] = hit.catalogName;
    results.push_back(std::move(d));
  }
  return dumpPretty(json{{"app", AppInfo::name}, {"results", std::move(results)}}) + "\n";
}

int64_t exportCSV(CatalogDB& store, const std::vector<Catalog>& catalogs, const fs::path& to) {
  return writeFile(to, [&](const Sink& out) { return writeCSV(store, catalogs, out); });
}

int64_t exportJSON(CatalogDB& store, const std::vector<Catalog>& catalogs, const fs::path& to) {
  return writeFile(to, [&](const Sink& out) { return writeJSON(store, catalogs, out); });
}

void exportHitsCSV(const std::vector<SearchHit>& hits, const fs::path& to) {
  writeFile(to, [&](const Sink& out) {
    out(hitsCSV(hits));
    return int64_t(0);
  });
}

void exportHitsJSON(const std::vector<SearchHit>& hits, const fs::path& to) {
  writeFile(to, [&](const Sink& out) {
    out(hitsJSON(hits));
    return int64_t(0);
  });
}

}  // namespace orrelin::Exporter
