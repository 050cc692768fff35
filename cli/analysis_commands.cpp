// The analysis commands of orrelin-cli: duplicates, statistics, the drive reports and catalog comparison.
#include <sys/stat.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <set>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/table_text.h"
#include "scan/volume_info.h"
#include "search/catalog_compare.h"
#include "search/drive_reports.h"
#include "search/duplicates.h"
#include "search/library_stats.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

using nlohmann::json;

// ---- Reading the command line ----------------------------------------------------------------------------

// A size as the screens take it (a comma is a decimal sign), in megabytes unless a unit follows:
// "1,5", "500", "700KB", "2 GB", "10b". Nothing when the text is no size or beyond 64 bits.
std::optional<int64_t> parseSize(const std::string& text) {
  static const std::pair<const char*, double> kUnits[] = {{"TB", 1e12}, {"GB", 1e9}, {"MB", 1e6},
                                                          {"KB", 1e3},  {"K", 1e3},  {"M", 1e6},
                                                          {"G", 1e9},   {"T", 1e12}, {"B", 1}};
  std::string number = text;
  double scale = 1e6;
  for (const auto& [unit, factor] : kUnits) {
    size_t n = std::strlen(unit);
    if (number.size() > n) {
      std::string tail = number.substr(number.size() - n);
      for (char& c : tail) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
      if (tail == unit) {
        number.resize(number.size() - n);
        while (!number.empty() && number.back() == ' ') number.pop_back();
        scale = factor;
        break;
      }
    }
  }
  std::optional<double> value = parseTypedNumber(number);
  if (!value) return std::nullopt;
  double bytes = *value * scale;
  if (!(bytes >= -9.2e18 && bytes <= 9.2e18)) return std::nullopt;
  return static_cast<int64_t>(bytes);
}

// The catalogs named by --catalog (ids or names); false with a usage error printed when one is unknown.
bool catalogIDs(CatalogDB& store, const Args& args, const char* command, std::set<int64_t>& ids,
                int& status) {
  for (const std::string& text : args.values("--catalog")) {
    std::string error;
    std::optional<Catalog> catalog = findCatalog(store, text, error);
    if (!catalog) {
      status = usageError(command, error);
      return false;
    }
    ids.insert(catalog->id);
  }
  return true;
}

// ---- Writing results --------------------------------------------------------------------------------------

json dateJSON(const OptionalDate& date) { return date ? json(Fmt::iso(*date)) : json(nullptr); }

json recordJSON(const FileRecord& f) {
  return {{"id", f.id},           {"catalogID", f.catalogID},
          {"path", f.path},       {"name", f.name},
          {"isDir", f.isDir},     {"size", f.size},
          {"kind", f.kindName()}, {"modified", dateJSON(f.modified)},
          {"sha256", f.sha256}};
}

json hitJSON(const SearchHit& h) {
  json j = recordJSON(h.file);
  j["catalog"] = h.catalogName;
  return j;
}

void printJSON(const json& j) { std::printf("%s\n", j.dump(2).c_str()); }

// One line per hit: size, modification date, catalog, path.
void printHits(const std::vector<SearchHit>& hits) {
  for (const SearchHit& h : hits)
    std::printf("%12s  %s  %s  %s%s\n", Fmt::size(h.file.size).c_str(),
                padded(Fmt::date(h.file.modified), 22).c_str(), padded(h.catalogName, 20).c_str(),
                h.file.path.c_str(),
                h.file.isDir ? "/" : "");
}

std::vector<SearchHit> wrap(const std::vector<FileRecord>& records, const std::string& catalogName) {
  std::vector<SearchHit> hits;
  hits.reserve(records.size());
  for (const FileRecord& f : records) hits.push_back({f, catalogName});
  return hits;
}

// ---- dupes ------------------------------------------------------------------------------------------------

int dupes(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--cross", "--json"}, {"--by", "--min-size", "--catalog", "--limit"});
  if (!args.ok()) return usageError("dupes", args.error());
  if (!args.positionals().empty())
    return usageError("dupes", "takes no arguments (got '" + args.positionals()[0] + "')");
  std::string by = args.value("--by").value_or("name-size");
  DuplicateMode mode;
  if (by == "name-size") {
    mode = DuplicateMode::nameSize;
  } else if (by == "hash") {
    mode = DuplicateMode::hash;
  } else if (by == "size") {
    mode = DuplicateMode::sizeOnly;
  } else {
    return usageError("dupes", "--by takes name-size, hash or size (got '" + by + "')");
  }
  std::optional<int64_t> minSize = parseSize(args.value("--min-size").value_or("1"));
  if (!minSize) return usageError("dupes", "--min-size takes a size such as 1,5 (MB), 700KB or 2GB");
  int limit = kDefaultDuplicateLimit;
  if (auto text = args.value("--limit")) {
    if (text->empty() || text->size() > 9 || text->find_first_not_of("0123456789") != std::string::npos ||
        std::stoi(*text) == 0)
      return usageError("dupes", "--limit takes a whole number from 1 (got '" + *text + "')");
    limit = std::stoi(*text);
  }

  CatalogDB store(databasePath(context));
  std::set<int64_t> ids;
  int status = 0;
  if (!catalogIDs(store, args, "dupes", ids, status)) return status;
  std::vector<DuplicateGroup> groups = store.duplicates(mode, *minSize, ids, args.flag("--cross"), limit);
  int64_t wasted = totalWasted(groups);

  if (args.flag("--json")) {
    json sets = json::array();
    for (const DuplicateGroup& g : groups) {
      json members = json::array();
      for (const DuplicateMember& m : g.members) {
        json j = recordJSON(m.file);
        j["catalog"] = m.catalogName;
        members.push_back(std::move(j));
      }
      sets.push_back({{"key", g.key},
                      {"name", g.name},
                      {"size", g.size},
                      {"wasted", g.wasted()},
                      {"members", std::move(members)}});
    }
    printJSON(
        {{"mode", rawValue(mode)}, {"minSize", *minSize}, {"wasted", wasted}, {"sets", std::move(sets)}});
    return kExitOk;
  }
  if (groups.empty()) {
    std::puts("No duplicates found.");
    return kExitOk;
  }
  for (const DuplicateGroup& g : groups) {
    std::printf("%s  (%zu copies of %s, %s wasted)\n", g.name.c_str(), g.members.size(),
                Fmt::size(g.size).c_str(), Fmt::size(g.wasted()).c_str());
    for (const DuplicateMember& m : g.members)
      std::printf("    %s  %s\n", padded(m.catalogName, 20).c_str(), m.file.path.c_str());
  }
  std::printf("\n%s sets, %s wasted\n", Fmt::count(static_cast<int64_t>(groups.size())).c_str(),
              Fmt::size(wasted).c_str());
  return kExitOk;
}

// ---- stats ------------------------------------------------------------------------------------------------

void printStats(const LibraryStats& s) {
  std::printf("Cartridges:  %s\nFiles:       %s\nFolders:     %s\nCataloged:   %s\n",
              Fmt::count(s.catalogs).c_str(), Fmt::count(s.files).c_str(), Fmt::count(s.folders).c_str(),
              Fmt::size(s.bytes).c_str());
  if (!s.byKind.empty()) std::puts("\nFiles by kind:");
  for (const KindStat& k : s.byKind)
    std::printf("  %-12s %12s %12s\n", k.kind.c_str(), Fmt::count(k.count).c_str(),
                Fmt::size(k.bytes).c_str());
  if (!s.byYear.empty()) std::puts("\nFiles by year modified:");
  for (const YearStat& y : s.byYear)
    std::printf("  %-12s %12s %12s\n", y.year.c_str(), Fmt::count(y.count).c_str(),
                Fmt::size(y.bytes).c_str());
  if (!s.topExtensions.empty()) std::puts("\nTop extensions:");
  for (const ExtStat& e : s.topExtensions)
    std::printf("  %-12s %12s %12s\n", e.ext.c_str(), Fmt::count(e.count).c_str(),
                Fmt::size(e.bytes).c_str());
  if (!s.largest.empty()) std::puts("\nLargest files:");
  for (size_t i = 0; i < s.largest.size(); ++i) {
    const SearchHit& h = s.largest[i];
    std::printf("  %2zu. %12s  %s  %s\n", i + 1, Fmt::size(h.file.size).c_str(), padded(h.catalogName, 20).c_str(),
                h.file.path.c_str());
  }
  std::puts("\nRecent scans:");
  if (s.log.empty()) std::puts("  No scans recorded yet.");
  for (const ScanLogEntry& l : s.log)
    std::printf("  %s  %s \u00b7 %s  +%lld ~%lld \u2212%lld\n", padded(l.catalogName, 20).c_str(),
                Fmt::date(l.at).c_str(), l.note.c_str(), static_cast<long long>(l.added),
                static_cast<long long>(l.changed), static_cast<long long>(l.removed));
}

json statsJSON(const LibraryStats& s) {
  auto triples = [](const auto& rows, const char* key, auto field) {
    json out = json::array();
    for (const auto& r : rows) out.push_back({{key, field(r)}, {"count", r.count}, {"bytes", r.bytes}});
    return out;
  };
  json largest = json::array();
  for (const SearchHit& h : s.largest) largest.push_back(hitJSON(h));
  json log = json::array();
  for (const ScanLogEntry& l : s.log)
    log.push_back({{"id", l.id},
                   {"catalogID", l.catalogID},
                   {"catalog", l.catalogName},
                   {"at", Fmt::iso(l.at)},
                   {"added", l.added},
                   {"removed", l.removed},
                   {"changed", l.changed},
                   {"seconds", l.seconds},
                   {"note", l.note}});
  return {{"catalogs", s.catalogs},
          {"files", s.files},
          {"folders", s.folders},
          {"bytes", s.bytes},
          {"byKind", triples(s.byKind, "kind", [](const KindStat& k) { return k.kind; })},
          {"byYear", triples(s.byYear, "year", [](const YearStat& y) { return y.year; })},
          {"topExtensions", triples(s.topExtensions, "ext", [](const ExtStat& e) { return e.ext; })},
          {"largest", std::move(largest)},
          {"log", std::move(log)}};
}

int stats(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json"}, {});
  if (!args.ok()) return usageError("stats", args.error());
  if (!args.positionals().empty())
    return usageError("stats", "takes no arguments (got '" + args.positionals()[0] + "')");
  CatalogDB store(databasePath(context));
  LibraryStats s = store.stats();
  if (args.flag("--json")) {
    printJSON(statsJSON(s));
  } else {
    printStats(s);
  }
  return kExitOk;
}

// ---- report -----------------------------------------------------------------------------------------------

// Why the drive of `catalog` cannot be checked now, or nothing when it is connected.
std::optional<std::string> offlineReason(const Catalog& catalog) {
  if (catalog.isSample)
    return "\u201c" + catalog.name + "\u201d is demonstration data, so there is no real drive to check.";
  if (catalog.rootPath.empty())
    return "\u201c" + catalog.name + "\u201d was imported from a file, so its original location is unknown.";
  struct stat info;
  bool isFolder = ::stat(recordDiskPath(catalog.rootPath, "").c_str(), &info) == 0 && S_ISDIR(info.st_mode);
  if (!isFolder ||
      (!catalog.volumeUUID.empty() && VolumeInfo::read(catalog.rootPath).uuid != catalog.volumeUUID))
    return "Drive offline \u2014 insert \u201c" + catalog.displayVolume() +
           "\u201d to check this catalog. You can keep browsing the catalog while the drive is disconnected.";
  return std::nullopt;
}

int reportOutput(const Args& args, const std::vector<SearchHit>& hits, const std::string& header) {
  if (args.flag("--json")) {
    json rows = json::array();
    for (const SearchHit& h : hits) rows.push_back(hitJSON(h));
    printJSON(rows);
    return kExitOk;
  }
  printHits(hits);
  std::printf("%s%s\n", hits.empty() ? "" : "\n", header.c_str());
  return kExitOk;
}

int report(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json"}, {"--catalog", "--min-size", "--years"});
  if (!args.ok()) return usageError("report", args.error());
  if (args.positionals().empty()) return usageError("report", "which report? empty, large-old or missing");
  const std::string which = args.positionals()[0];
  bool takesCatalogArgument = which == "missing";
  if (args.positionals().size() > (takesCatalogArgument ? 2u : 1u))
    return usageError("report", "too many arguments (got '" + args.positionals().back() + "')");

  if (which == "empty") {
    if (args.value("--min-size") || args.value("--years"))
      return usageError("report", "the empty-folder report takes only --catalog and --json");
    CatalogDB store(databasePath(context));
    std::set<int64_t> ids;
    int status = 0;
    if (!catalogIDs(store, args, "report", ids, status)) return status;
    auto hits = store.emptyFolders(ids);
    return reportOutput(args, hits, emptyFoldersHeader(static_cast<int64_t>(hits.size())));
  }
  if (which == "large-old") {
    std::optional<int64_t> minSize = parseSize(args.value("--min-size").value_or("500"));
    if (!minSize) return usageError("report", "--min-size takes a size such as 500 (MB), 700KB or 2GB");
    std::string yearsText = args.value("--years").value_or("2");
    if (yearsText.empty() || yearsText.size() > 2 ||
        yearsText.find_first_not_of("0123456789") != std::string::npos || std::stoi(yearsText) > kMaxYears)
      return usageError("report",
                        "--years takes a whole number from 0 (any time) to 30 (got '" + yearsText + "')");
    CatalogDB store(databasePath(context));
    std::set<int64_t> ids;
    int status = 0;
    if (!catalogIDs(store, args, "report", ids, status)) return status;
    auto hits = store.largeOldFiles(*minSize, largeOldCutoff(std::stoi(yearsText), Date::now()), ids);
    return reportOutput(args, hits, largeOldHeader(hits));
  }
  if (which == "missing") {
    if (args.positionals().size() < 2) return usageError("report", "missing needs a catalog (id or name)");
    if (!args.values("--catalog").empty() || args.value("--min-size") || args.value("--years"))
      return usageError("report", "the missing-file check takes one catalog and --json");
    CatalogDB store(databasePath(context));
    std::string error;
    std::optional<Catalog> catalog = findCatalog(store, args.positionals()[1], error);
    if (!catalog) return usageError("report", error);
    if (auto reason = offlineReason(*catalog)) return failure(*reason);
    auto missing = wrap(store.missingFiles(*catalog), catalog->name);
    return reportOutput(args, missing, missingHeader(static_cast<int64_t>(missing.size())));
  }
  return usageError("report", "unknown report '" + which + "'; the reports are empty, large-old and missing");
}

// ---- compare ----------------------------------------------------------------------------------------------

int compare(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json", "--summary"}, {});
  if (!args.ok()) return usageError("compare", args.error());
  if (args.positionals().size() != 2)
    return usageError("compare", "needs two catalogs, A and B (ids or names)");
  CatalogDB store(databasePath(context));
  std::optional<Catalog> a, b;
  for (int i = 0; i < 2; ++i) {
    std::string error;
    (i == 0 ? a : b) = findCatalog(store, args.positionals()[static_cast<size_t>(i)], error);
    if (!(i == 0 ? a : b)) return usageError("compare", error);
  }
  CompareResult r = store.compare(a->id, b->id);

  if (args.flag("--json")) {
    auto records = [](const std::vector<FileRecord>& list) {
      json out = json::array();
      for (const FileRecord& f : list) out.push_back(recordJSON(f));
      return out;
    };
    json changed = json::array();
    for (const auto& [fa, fb] : r.changed) changed.push_back({{"a", recordJSON(fa)}, {"b", recordJSON(fb)}});
    printJSON({{"a", {{"id", a->id}, {"name", a->name}}},
               {"b", {{"id", b->id}, {"name", b->name}}},
               {"identical", r.same},
               {"onlyA", records(r.onlyA)},
               {"onlyB", records(r.onlyB)},
               {"changed", std::move(changed)}});
    return kExitOk;
  }
  std::printf("A: %s\nB: %s\n\n", a->name.c_str(), b->name.c_str());
  for (const CompareChip& chip : compareChips(r))
    std::printf("%-10s %12s\n", chip.label, Fmt::count(chip.count).c_str());
  if (args.flag("--summary")) return kExitOk;
  const char* titles[] = {"Only in A", "Only in B", "Different"};
  for (int tab = 0; tab < 3; ++tab) {
    auto hits = compareTabHits(r, tab, a, b);
    if (hits.empty()) continue;
    std::printf("\n%s:\n", titles[tab]);
    for (const SearchHit& h : hits)
      std::printf("  %12s  %s%s%s\n", Fmt::size(h.file.size).c_str(), h.file.path.c_str(),
                  tab == 2 ? "  " : "", tab == 2 ? h.catalogName.c_str() : "");
  }
  return kExitOk;
}

}  // namespace

void addAnalysisCommands(CommandTable& table) {
  table["dupes"] = {
      "sets of duplicate files, ranked by the space they waste",
      "usage: orrelin-cli [--db PATH] dupes [--by name-size|hash|size] [--min-size S] [--cross]\n"
      "                   [--catalog C]... [--limit N] [--json]\n\n"
      "Finds files that are copies of one another and ranks the sets by the space that deleting all copies\n"
      "but one would free (one copy's size times the surplus copies). Folders never count.\n\n"
      "  --by name-size  equal name (case included) and size (the default)\n"
      "  --by hash       the same SHA-256 checksum (only files scanned with checksums)\n"
      "  --by size       equal size only\n"
      "  --min-size S    smallest file considered; megabytes unless a unit follows (1,5 = 1.5 MB; 700KB;\n"
      "                  2GB; 0 includes empty files); default 1 MB\n"
      "  --cross         only sets that span two cartridges or more (each set keeps all its copies)\n"
      "  --catalog C     only these cartridges, by id or name; repeat for several (default: all)\n"
      "  --limit N       at most N sets (default 800)\n"
      "  --json          the sets as JSON, with every member's record\n",
      dupes};
  table["stats"] = {"statistics of the whole library",
                    "usage: orrelin-cli [--db PATH] stats [--json]\n\n"
                    "Prints the totals of all cartridges (as of their last scans), the files by kind, by "
                    "year modified (the\n"
                    "newest 14 years, in UTC), the 12 commonest extensions, the 25 largest files and the 20 "
                    "latest scans.\n",
                    stats};
  table["report"] = {
      "clean-up reports: empty folders, large old files, missing files",
      "usage: orrelin-cli [--db PATH] report empty [--catalog C]... [--json]\n"
      "       orrelin-cli [--db PATH] report large-old [--min-size S] [--years N] [--catalog C]... [--json]\n"
      "       orrelin-cli [--db PATH] report missing CATALOG [--json]\n\n"
      "empty      folders that held nothing when they were cataloged (hidden system files are ignored),\n"
      "           by cartridge name and path; at most 5000\n"
      "large-old  files of at least --min-size (megabytes unless a unit follows; default 500) not modified\n"
      "           in the last --years years (0 to 30; 0 = any time; default 2), largest first; at most 5000\n"
      "missing    compares a cartridge with its connected drive and lists everything that was cataloged but\n"
      "           is no longer there (moved, renamed or deleted since the last scan); the drive must be\n"
      "           connected\n\n"
      "  --catalog C  only these cartridges, by id or name; repeat for several (default: all)\n"
      "  --json       the rows as JSON\n",
      report};
  table["compare"] = {
      "compare two catalogs file by file",
      "usage: orrelin-cli [--db PATH] compare A B [--summary] [--json]\n\n"
      "Matches the files of two cartridges (ids or names) by their path inside each drive, as when checking "
      "a\n"
      "backup against its original. A file is different when its size differs, or when both sides have a\n"
      "checksum and they differ; dates do not count. Folders are not compared. Prints the four counts and\n"
      "the files only in A, only in B and different.\n\n"
      "  --summary  the counts only\n"
      "  --json     everything as JSON\n",
      compare};
}

}  // namespace orrelin::cli
