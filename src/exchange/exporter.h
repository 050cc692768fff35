// Catalogs and search hits out to CSV and JSON exchange files, and those files back in as new catalogs.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/date.h"
#include "search/search_query.h"
#include "store/records.h"

namespace orrelin {

class CatalogDB;
struct VolumeInfo;

namespace Exporter {

// ---- Writing ----

// The value of "format" in a JSON catalog export.
inline constexpr std::string_view kJSONFormat = "tavrel-orrelin-catalog";
inline constexpr int kJSONVersion = 1;

// The seventeen CSV columns, in order. The header line is these names joined with commas, unquoted.
const std::array<std::string_view, 17>& csvHeader();

// Returns `text` wrapped in double quotes, with each quote doubled, when it holds a comma, a double
// quote, a line feed or a carriage return; otherwise `text` as it is (also when empty).
std::string csvField(std::string_view text);

// Returns `value` with `decimals` digits after a "." (as printf's "%.*f" in the C locale), whatever locale
// the process runs in: a Qt program takes the user's, whose decimal sign may be a comma, and exchange
// files must read the same everywhere.
std::string decimal(double value, int decimals);

// Returns the seventeen quoted fields of `record` joined with commas, without a line end.
std::string csvRow(const FileRecord& record, std::string_view catalogName);

// The JSON object of one record, with the keys that apply to it (dates, duration, size in pixels,
// checksum and metadata only when present).
nlohmann::json fileDict(const FileRecord& record);

// The JSON object of one catalog, without its "items".
nlohmann::json catalogDict(const Catalog& catalog);

// Receives the text of a document in pieces, in order.
using Sink = std::function<void(std::string_view)>;

// Writes the CSV of `catalogs` (header, then every record of each catalog in the given order, by path)
// to `out`; returns the number of records written. Throws DBError and whatever `out` throws.
int64_t writeCSV(CatalogDB& store, const std::vector<Catalog>& catalogs, const Sink& out);
// Writes the JSON archive of `catalogs`, pretty printed with sorted keys, to `out`; returns the number
// of records written. Throws DBError and whatever `out` throws.
int64_t writeJSON(CatalogDB& store, const std::vector<Catalog>& catalogs, const Sink& out);
// Returns the CSV of `hits`: the catalog export's header and rows, the catalog column holding each hit's
// catalog name.
std::string hitsCSV(const std::vector<SearchHit>& hits);
// Returns {"app": ..., "results": [file objects, each with its "catalog"]}, pretty printed with sorted
// keys. It is not an importable archive.
std::string hitsJSON(const std::vector<SearchHit>& hits);

// The same, written atomically to the file `to`: the document goes to a new temporary file in the same
// folder, which then replaces `to`. On any failure `to` is left as it was and the temporary file is
// removed. Throw ExportError for a file that cannot be written, and DBError from the store.
int64_t exportCSV(CatalogDB& store, const std::vector<Catalog>& catalogs, const std::filesystem::path& to);
int64_t exportJSON(CatalogDB& store, const std::vector<Catalog>& catalogs, const std::filesystem::path& to);
void exportHitsCSV(const std::vector<SearchHit>& hits, const std::filesystem::path& to);
void exportHitsJSON(const std::vector<SearchHit>& hits, const std::filesystem::path& to);

// ---- Reading ----

// One entry of an exchange file on its way into the database.
struct ImportedFile {
  std::string path;  // Relative to the catalog's root; "/" between parts.
  bool isDir = false;
  int64_t size = 0;
  std::string kind = "Other";  // A FileKind's raw text; anything else is stored as Folder or Other.
  std::string uti;
  OptionalDate modified;
  OptionalDate created;
  std::string tags;  // Joined with ", ", as the database stores them.
  int label = 0;
  bool hidden = false;
  double duration = 0;
  int64_t width = 0;
  int64_t height = 0;
  std::string sha;
  std::map<std::string, std::string> meta;

  bool operator==(const ImportedFile&) const = default;
};

// The failure texts of the two importers.
inline constexpr std::string_view kNotJSONExport = "This file is not a TVRL Orrelin catalog export.";
inline constexpr std::string_view kNotCSVExport =
    "This CSV file does not have the TVRL Orrelin column layout (Catalog, Path, Name, \u2026).";

// Splits CSV text into rows of fields: comma separated, fields in double quotes may hold commas, quotes
// (doubled) and line breaks; LF and CRLF both end a row, a bare CR outside quotes is dropped. CSVReader
// (exchange/import_source.h) does the same for text that comes in pieces.
std::vector<std::vector<std::string>> parseCSV(std::string_view text);

// Reads a JSON catalog export and adds each of its catalogs as a new catalog, in order; returns how many
// the file holds. Throws ExportError when the file cannot be read, is not JSON, or is not of the export's
// shape (kNotJSONExport); DBError from the store. The file is read twice and never held whole: first it
// is checked to the end, so that a file that fails changes nothing; then each catalog is inserted as soon
// as its object ends, so that memory holds one catalog's items at a time. Catalogs added before a failure
// of the store stay.
int64_t importJSON(CatalogDB& store, const std::filesystem::path& from);

// Reads a CSV export (its columns found by name) and adds one catalog per distinct "Catalog" value, named
// "<value> (Imported)", in order of first appearance; returns how many it made. Throws ExportError when
// the file cannot be read as UTF-8 text or lacks the layout (kNotCSVExport); DBError from the store. Read
// twice like importJSON: checked and its rows counted first, then each catalog inserted once its last row
// has been read (and every catalog before it), so that an export whose catalogs follow one another holds
// one catalog's items at a time.
int64_t importCSV(CatalogDB& store, const std::filesystem::path& from);

// Adds a catalog with `items` and returns its id. Folders missing above an item are made; when a path
// occurs twice the later item wins; items with an empty path are dropped. Records go in with parents
// first in one transaction; then folder sizes are rolled up and the catalog counts as scanned now.
// Throws DBError; after a failure the new catalog is removed again.
int64_t insertImported(CatalogDB& store, const std::string& name, const std::string& rootPath,
                       const VolumeInfo& volume, bool isFolder, const std::vector<ImportedFile>& items,
                       const std::string& notes);

}  // namespace Exporter
}  // namespace orrelin
