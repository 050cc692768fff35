// The export for Claude: one catalog written as a folder of five files that an AI assistant can read while
// the drive is unplugged (a Markdown digest, JSON Lines, XML, a README and an organization plan template).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "core/date.h"
#include "store/records.h"

namespace orrelin {

class CatalogDB;

namespace ClaudeExporter {

// "Exported by TVRL Orrelin, a Tavrel Works (TVRL) product — " and the maker's web site.
std::string credit();

// One naming problem: the rule it breaks, the record's path, and what to show beside it (may be empty).
struct Problem {
  std::string category;
  std::string path;
  std::string detail;

  bool operator==(const Problem&) const = default;
};

// The names of the five files, in the order they are written.
inline constexpr const char* kFileNames[] = {"files.jsonl", "catalog.xml", "SUMMARY.md", "README.md",
                                             "organization-plan.template.json"};

// The bundle folder's name: the catalog's name, " — Claude Export " and `at` in local time as
// "yyyy-MM-dd HHmm". A "/" in the catalog's name becomes "-" (the name is one folder, never a path), and
// a very long name is shortened so that the folder's name stays within the file system's 255 bytes.
std::string bundleName(const std::string& catalogName, Date at);

// `parent` / bundleName(catalogName, at), or, when that already exists, the first of "… 2", "… 3", … that
// does not: an earlier export made in the same minute is never written over.
std::filesystem::path bundleFolder(const std::filesystem::path& parent, const std::string& catalogName,
                                   Date at);

// Creates the folder `to` with its parents, reads the catalog's records once, and writes the five files
// into it, each atomically, in the order of kFileNames. Returns their paths in that order. Throws
// ExportError for a file or folder that cannot be written and DBError for a store failure; the first
// failure ends the export, and the files already written stay. (`export` itself is a C++ keyword.)
std::vector<std::filesystem::path> exportTo(CatalogDB& store, const Catalog& catalog,
                                            const std::filesystem::path& to);

// The Markdown digest of the catalog: drive facts, kinds, extensions, the folder tree to depth 3, the
// largest folders and files, duplicates on the drive (read from `store`; a failure there shows as none)
// and naming problems. `now` is the time it says it was generated.
std::string summary(const Catalog& catalog, const std::vector<FileRecord>& files, CatalogDB& store,
                    Date now = Date::now());

// README.md: what the files are, the record schema and the plan schema with an example that names the
// catalog (a valid JSON document whatever the name holds).
std::string readme(const Catalog& catalog);

// The organization plan template: pretty printed JSON with sorted keys, or "{}" when the catalog's name
// cannot be written as JSON.
std::string planTemplate(const Catalog& catalog);

// One line of files.jsonl as a JSON object (its keys sort alphabetically when dumped).
nlohmann::json record(const FileRecord& file, const Catalog& catalog);

// `text` made safe for XML attribute values and text: & < > " ' become entities; characters XML does not
// allow (controls other than tab, line feed and carriage return, U+FFFE, U+FFFF) are dropped, and bytes
// that are not UTF-8 become U+FFFD.
std::string xmlEscape(std::string_view text);

// The whole of catalog.xml; `now` is the export time it records.
std::string xml(const Catalog& catalog, const std::vector<FileRecord>& files, Date now = Date::now());

// The naming problems of `files`, rule by rule for each record in order; one record may break several
// rules. Problems of names that differ only by case come last, one per set, in order of first appearance.
std::vector<Problem> namingProblems(const std::vector<FileRecord>& files);

// The number of user-perceived characters (extended grapheme clusters) in UTF-8 `text`.
size_t characterCount(std::string_view text);

}  // namespace ClaudeExporter
}  // namespace orrelin
