// The three drive reports and the plain logic of their panes.
#include "search/drive_reports.h"

#include <sys/stat.h>
#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <charconv>
#include <memory>

#include "core/name_mapping.h"
#include "search/catalog_filter.h"
#include "store/catalog_db.h"
#include "store/fmt.h"
#include "store/safe_int.h"

namespace orrelin {

namespace {

const std::string kHitSelect = std::string("SELECT ") + CatalogDB::fileColumns +
                               ", c.name FROM files f JOIN catalogs c ON c.id=f.catalog_id WHERE ";

SearchHit mapHit(const Statement& r) { return {CatalogDB::mapFile(r), r.text(CatalogDB::kFileColumnCount)}; }

}  // namespace

std::vector<SearchHit> CatalogDB::emptyFolders(const std::set<int64_t>& catalogIDs) {
  SQLArgs args;
  std::string sql = kHitSelect + "f.is_dir=1 AND f.item_count=0" +
                    catalogInClause("f.catalog_id", catalogIDs, args) + " ORDER BY c.name, f.path LIMIT " +
                    std::to_string(kReportLimit);
  return m_db.query(sql, args, mapHit);
}

std::vector<SearchHit> CatalogDB::largeOldFiles(int64_t minSize, OptionalDate olderThan,
                                                const std::set<int64_t>& catalogIDs) {
  SQLArgs args{minSize};
  std::string sql = kHitSelect + "f.is_dir=0 AND f.size >= ?";
  if (olderThan) {
    sql += " AND f.modified < ?";
    args.emplace_back(*olderThan);
  }
  sql += catalogInClause("f.catalog_id", catalogIDs, args) + " ORDER BY f.size DESC LIMIT " +
         std::to_string(kReportLimit);
  return m_db.query(sql, args, mapHit);
}

std::vector<FileRecord> CatalogDB::missingFiles(const Catalog& catalog) {
  std::vector<FileRecord> missing;
  for (FileRecord& record : allFiles(catalog.id)) {
    // stat follows symbolic links, so a link whose target is gone counts as missing.
    struct stat info;
    if (::stat(recordDiskPath(catalog.rootPath, record.path).c_str(), &info) != 0)
      missing.push_back(std::move(record));
  }
  return missing;
}

std::string recordDiskPath(const std::string& rootPath, const std::string& relativePath) {
  std::string joined = rootPath;
  if (joined.empty() || joined.back() != '/') joined += '/';
  joined += relativePath;
  return NameMapping::toDisk(joined);
}

std::optional<double> parseTypedNumber(std::string_view text) {
  std::string s(text);
  for (char& c : s)
    if (c == ',') c = '.';
  const char* begin = s.data();
  const char* end = s.data() + s.size();
  // from_chars takes no plus sign, but a typed "+5" is a number all the same; "+-5" is not.
  if (begin != end && *begin == '+') {
    ++begin;
    if (begin != end && *begin == '-') return std::nullopt;
  }
  if (begin == end) return std::nullopt;
  double value = 0;
  auto [stop, error] = std::from_chars(begin, end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

int64_t largeOldMinimumBytes(std::string_view minMB) {
  std::optional<double> megabytes = parseTypedNumber(minMB);
  if (!megabytes) return 0;
  return SafeInt::truncated(*megabytes * 1e6, "the minimum size of the large-file report");
}

OptionalDate largeOldCutoff(int years, Date now) {
  if (years == 0) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  // The default time zone, so that "two years ago" is two years on the user's own calendar.
  std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(status));
  if (U_SUCCESS(status)) {
    calendar->setTime(now.seconds * 1000.0, status);
    calendar->add(UCAL_YEAR, -years, status);
    UDate shifted = calendar->getTime(status);
    if (U_SUCCESS(status)) return Date{shifted / 1000.0};
  }
  // Without ICU's calendar, a year of 365.2425 days is within a day of the answer.
  return Date{now.seconds - years * 365.2425 * 86400.0};
}

std::string yearsLabel(int years) {
  if (years == 0) return "any time";
  return std::to_string(years) + (years == 1 ? " year" : " years");
}

std::string emptyFoldersHeader(int64_t count) { return Fmt::count(count) + " found"; }

std::string largeOldHeader(const std::vector<SearchHit>& hits) {
  int64_t bytes = 0;
  for (const SearchHit& hit : hits) bytes = SafeInt::added(bytes, hit.file.size, "the size of a report");
  return Fmt::count(static_cast<int64_t>(hits.size())) + " files \u00b7 " + Fmt::size(bytes);
}

std::string missingHeader(int64_t count) {
  return count == 0 ? "Everything is present" : Fmt::count(count) + " missing";
}

}  // namespace orrelin
