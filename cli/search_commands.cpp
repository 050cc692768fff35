// orrelin-cli search: the search screen's query from the command line, as a table, JSON or CSV.
#include <chrono>
#include <cstdio>

#include "cli/args.h"
#include "cli/command_table.h"
#include "cli/table_text.h"
#include "exchange/exporter.h"
#include "search/search_form.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

constexpr const char* kCommand = "search";

constexpr const char* kHelp =
    "usage: orrelin-cli [--db PATH] search [TEXT] [--mode contains|starts|exact|regex] [--metadata]\n"
    "           [--saved NAME] [--kind KIND]... [--min-size SIZE] [--max-size SIZE] [--from DATE]\n"
    "           [--to DATE] [--tag TAG] [--catalog ID|NAME]... [--files-only] [--limit N]\n"
    "           [--json | --csv] [-o FILE]\n"
    "\n"
    "Searches the names of every cartridge, from the database alone: the drives need not be connected.\n"
    "Results are ordered by name, ignoring case. With no TEXT, every record is listed up to the limit.\n"
    "\n"
    "  --saved NAME      start from the smart search saved under NAME in the program; TEXT and the\n"
    "                    options below replace what it holds (--kind and --catalog replace its lists)\n"
    "  --mode MODE       how TEXT is matched (default: contains):\n"
    "                      contains  TEXT anywhere in the name; from three characters on, the name index\n"
    "                                answers at once\n"
    "                      starts    names that begin with TEXT\n"
    "                      exact     the whole name, ignoring the case of ASCII letters\n"
    "                      regex     an ICU regular expression, ignoring case\n"
    "                    %, _ and \\ in TEXT are plain characters in every mode but regex.\n"
    "  --metadata        contains and regex also look at the media metadata (contains: and the tags)\n"
    "  --kind KIND       only this kind; repeat for several. Kinds: Folder, Image, Video, Audio, PDF,\n"
    "                    Document, Archive, Code, Application, Font, \"Disk Image\", Other (any case)\n"
    "  --min-size SIZE   at least SIZE; --max-size SIZE: at most SIZE. SIZE is a number with an optional\n"
    "                    unit B, KB, MB or GB (decimal: 1 KB = 1000 bytes); without a unit it is MB, as\n"
    "                    on the search screen. A comma is a decimal sign: 1,5GB is 1.5 GB. Folders count\n"
    "                    with the total size of their contents.\n"
    "  --from DATE       modified on or after DATE (YYYY-MM-DD, local time)\n"
    "  --to DATE         modified on or before DATE, the whole day included\n"
    "  --tag TAG         only records whose tags contain TAG\n"
    "  --catalog C       only the cartridge with this id or name; repeat for several\n"
    "  --files-only      leave folders out\n"
    "  --limit N         at most N results (default 5000)\n"
    "  --json            print the results as JSON: {\"app\": ..., \"results\": [file objects with their\n"
    "                    \"catalog\"]}, the form the program exports search results in\n"
    "  --csv             print the results as CSV, with the columns of 'export csv'\n"
    "  -o FILE           with --json or --csv: write the results to FILE instead (replaced whole, once\n"
    "                    complete)\n"
    "\n"
    "Exit status: 0 also when nothing is found; 1 when the search failed (such as a regular expression\n"
    "that is not valid); 2 for a wrong command line.\n"
    "\n"
    "Examples:\n"
    "  orrelin-cli search invoice --kind pdf --from 2023-01-01\n"
    "  orrelin-cli search '^IMG_\\d{4}\\.(jpg|heic)$' --mode regex --min-size 2MB --json\n";

bool equalIgnoringASCIICase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  }
  return true;
}

std::optional<SearchQuery::Mode> parseMode(const std::string& text) {
  using Mode = SearchQuery::Mode;
  const std::pair<const char*, Mode> names[] = {
      {"contains", Mode::contains},      {"starts", Mode::startsWith}, {"startswith", Mode::startsWith},
      {"starts-with", Mode::startsWith}, {"exact", Mode::exact},       {"regex", Mode::regex}};
  for (const auto& [name, mode] : names) {
    if (equalIgnoringASCIICase(text, name)) return mode;
  }
  for (Mode mode : SearchQuery::allCases) {  // The labels of the search screen work too.
    if (equalIgnoringASCIICase(text, rawValue(mode))) return mode;
  }
  return std::nullopt;
}

std::optional<FileKind> parseKind(std::string text) {
  for (char& c : text) {
    if (c == '-' || c == '_') c = ' ';
  }
  for (FileKind kind : kAllFileKinds) {
    if (equalIgnoringASCIICase(text, rawValue(kind))) return kind;
  }
  return std::nullopt;
}

// A size as the search screen reads its field, with the unit written after the number.
std::optional<int64_t> parseSize(const std::string& text) {
  struct Unit {
    const char* name;
    int64_t bytes;
  };
  const Unit units[] = {{"KB", SearchForm::kKB}, {"MB", SearchForm::kMB}, {"GB", SearchForm::kGB}, {"B", 1}};
  std::string number = text;
  int64_t unit = SearchForm::kMB;
  for (const Unit& u : units) {
    size_t n = std::strlen(u.name);
    if (number.size() > n &&
        equalIgnoringASCIICase(std::string_view(number).substr(number.size() - n), u.name)) {
      number.resize(number.size() - n);
      if (!number.empty() && number.back() == ' ') number.pop_back();
      unit = u.bytes;
      break;
    }
  }
  return parseSizeBound(number, unit);
}

// A calendar day "YYYY-MM-DD" as noon of that day in local time, which lies inside the day whatever
// the clocks do.
std::optional<Date> parseDay(const std::string& text) {
  int year = 0, month = 0, day = 0;
  char tail = 0;
  if (text.size() != 10 || std::sscanf(text.c_str(), "%4d-%2d-%2d%c", &year, &month, &day, &tail) != 3)
    return std::nullopt;
  struct tm parts {};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = 12;
  parts.tm_isdst = -1;
  time_t t = mktime(&parts);
  if (parts.tm_year != year - 1900 || parts.tm_mon != month - 1 || parts.tm_mday != day) return std::nullopt;
  return Date{static_cast<double>(t)};
}

// The saved search called `name`: exactly, else the only one equal to it ignoring ASCII case.
std::optional<SavedSearch> findSaved(const std::string& name, std::string& error) {
  std::vector<SavedSearch> all = SavedSearch::all();
  for (const SavedSearch& s : all) {
    if (s.name == name) return s;
  }
  std::vector<const SavedSearch*> loose;
  for (const SavedSearch& s : all) {
    if (equalIgnoringASCIICase(s.name, name)) loose.push_back(&s);
  }
  if (loose.size() == 1) return *loose.front();
  if (!loose.empty()) {
    error = "several saved searches are called '" + name + "'; rename one in the program";
  } else if (all.empty()) {
    error = "there are no saved searches (save one on the program's search screen)";
  } else {
    error = "no saved search is called '" + name + "'; saved searches:";
    for (const SavedSearch& s : all) error += "\n  " + s.name;
  }
  return std::nullopt;
}

void printTable(const std::vector<SearchHit>& hits) {
  size_t nameWidth = 4, catalogWidth = 9;
  for (const SearchHit& hit : hits) {
    nameWidth = std::max(nameWidth, displayWidth(hit.file.name));
    catalogWidth = std::max(catalogWidth, displayWidth(hit.catalogName));
  }
  nameWidth = std::min<size_t>(nameWidth, 48);
  catalogWidth = std::min<size_t>(catalogWidth, 24);
  std::printf("%s  %10s  %-10s  %-22s  %s  %s\n", cell("NAME", nameWidth).c_str(), "SIZE", "KIND", "MODIFIED",
              cell("CARTRIDGE", catalogWidth).c_str(), "PATH");
  for (const SearchHit& hit : hits) {
    const FileRecord& f = hit.file;
    std::string path;
    for (char c : f.path) path += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
    std::printf("%s  %10s  %s  %s  %s  %s\n", cell(f.name, nameWidth).c_str(), Fmt::size(f.size).c_str(),
                cell(f.kindName(), 10).c_str(), cell(Fmt::date(f.modified), 22).c_str(),
                cell(hit.catalogName, catalogWidth).c_str(), path.c_str());
  }
}

int search(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--metadata", "--files-only", "--json", "--csv"},
            {"--saved", "--mode", "--kind", "--min-size", "--max-size", "--from", "--to", "--tag",
             "--catalog", "--limit", "-o", "--output"});
  if (!args.ok()) return usageError(kCommand, args.error());
  if (args.flag("--json") && args.flag("--csv"))
    return usageError(kCommand, "choose --json or --csv, not both");
  std::optional<std::string> output = args.value("--output");
  if (auto o = args.value("-o")) output = o;
  if (output && !args.flag("--json") && !args.flag("--csv"))
    return usageError(kCommand, "-o writes a file with --json or --csv; give one of them");
  if (args.positionals().size() > 1)
    return usageError(kCommand, "give the search text as one argument (put quotes around text with blanks)");

  SearchQuery query;
  if (auto name = args.value("--saved")) {
    std::string error;
    std::optional<SavedSearch> saved = findSaved(*name, error);
    if (!saved) return failure(error);
    SearchForm form;
    form.apply(*saved);
    query = form.query();
  }
  if (!args.positionals().empty()) query.text = args.positionals().front();
  if (auto mode = args.value("--mode")) {
    std::optional<SearchQuery::Mode> parsed = parseMode(*mode);
    if (!parsed)
      return usageError(kCommand, "unknown mode '" + *mode + "' (contains, starts, exact or regex)");
    query.mode = *parsed;
  }
  if (args.flag("--metadata")) query.searchMetadata = true;
  if (!args.values("--kind").empty()) query.kinds.clear();
  for (const std::string& name : args.values("--kind")) {
    std::optional<FileKind> kind = parseKind(name);
    if (!kind) return usageError(kCommand, "unknown kind '" + name + "' (see --help for the kinds)");
    query.kinds.insert(*kind);
  }
  for (const char* option : {"--min-size", "--max-size"}) {
    if (auto text = args.value(option)) {
      std::optional<int64_t> bytes = parseSize(*text);
      if (!bytes)
        return usageError(
            kCommand, std::string(option) + ": '" + *text + "' is not a size (such as 700KB, 1,5GB or 20)");
      (std::string_view(option) == "--min-size" ? query.minSize : query.maxSize) = *bytes;
    }
  }
  if (auto text = args.value("--from")) {
    std::optional<Date> day = parseDay(*text);
    if (!day) return usageError(kCommand, "--from: '" + *text + "' is not a date of the form YYYY-MM-DD");
    query.modifiedFrom = startOfLocalDay(*day);
  }
  if (auto text = args.value("--to")) {
    std::optional<Date> day = parseDay(*text);
    if (!day) return usageError(kCommand, "--to: '" + *text + "' is not a date of the form YYYY-MM-DD");
    query.modifiedTo = startOfNextLocalDay(*day);
  }
  if (auto tag = args.value("--tag")) query.tag = *tag;
  if (args.flag("--files-only")) query.includeFolders = false;
  if (auto text = args.value("--limit")) {
    char* end = nullptr;
    long long limit = std::strtoll(text->c_str(), &end, 10);
    if (text->empty() || *end != '\0' || limit < 1 || limit > INT32_MAX)
      return usageError(kCommand, "--limit: '" + *text + "' is not a whole number from 1 up");
    query.limit = static_cast<int>(limit);
  }

  CatalogDB store(databasePath(context));
  if (!args.values("--catalog").empty()) query.catalogIDs.clear();
  for (const std::string& name : args.values("--catalog")) {
    std::string error;
    std::optional<Catalog> catalog = findCatalog(store, name, error);
    if (!catalog) return failure(error);
    query.catalogIDs.insert(catalog->id);
  }

  auto started = std::chrono::steady_clock::now();
  std::vector<SearchHit> hits;
  try {
    hits = store.search(query);
  } catch (const DBError& error) {
    return failure(error.what());
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();

  if (args.flag("--json") || args.flag("--csv")) {
    const bool json = args.flag("--json");
    if (output && *output != "-") {
      try {
        json ? Exporter::exportHitsJSON(hits, *output) : Exporter::exportHitsCSV(hits, *output);
      } catch (const std::exception& e) {
        return failure(std::string("Export Failed: ") + e.what());
      }
      std::printf("Exported %s results\n", Fmt::count(static_cast<int64_t>(hits.size())).c_str());
      return kExitOk;
    }
    std::string text = json ? Exporter::hitsJSON(hits) : Exporter::hitsCSV(hits);
    // The CSV ends without a line break; a terminal's prompt should not follow on the last row.
    if (!json && stdoutIsTerminal()) text += "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    return kExitOk;
  }
  if (hits.empty()) {
    std::puts("No results.");
    return kExitOk;
  }
  printTable(hits);
  std::string summary =
      Fmt::count(static_cast<int64_t>(hits.size())) + (hits.size() == 1 ? " result" : " results");
  std::printf("\n%s in %.3f s%s\n", summary.c_str(), seconds,
              static_cast<int64_t>(hits.size()) == query.limit
                  ? "; the limit was reached, --limit N shows more"
                  : "");
  return kExitOk;
}

}  // namespace

void addSearchCommands(CommandTable& table) {
  table[kCommand] = {"search the names (and metadata) of every cartridge", kHelp, search};
}

}  // namespace orrelin::cli
