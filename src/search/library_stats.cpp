// The library statistics: six read-only statements over the catalogs, the files and the scan log.
#include "search/library_stats.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>

#include "store/catalog_db.h"

namespace orrelin {

namespace {

// Extensions are mostly ASCII, but a stored "ß" or "é" must come out as the user expects, so ICU maps it.
std::string upperCased(const std::string& text) {
  icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
  unicode.toUpper(icu::Locale::getRoot());
  std::string out;
  unicode.toUTF8String(out);
  return out;
}

}  // namespace

LibraryStats CatalogDB::stats() {
  LibraryStats s;

  m_db.forEachRow(
      "SELECT COUNT(*), COALESCE(SUM(file_count),0), COALESCE(SUM(folder_count),0), "
      "COALESCE(SUM(total_size),0) FROM catalogs",
      {}, [&](const Statement& r) {
        s.catalogs = r.int64(0);
        s.files = r.int64(1);
        s.folders = r.int64(2);
        s.bytes = r.int64(3);
      });

  s.byKind = m_db.query(
      "SELECT kind, COUNT(*), COALESCE(SUM(size),0) FROM files WHERE is_dir=0 GROUP BY kind "
      "ORDER BY SUM(size) DESC",
      {}, [](const Statement& r) {
        return KindStat{r.text(0), r.int64(1), r.int64(2)};
      });

  s.byYear = m_db.query(
      "SELECT strftime('%Y', modified, 'unixepoch') y, COUNT(*), COALESCE(SUM(size),0) FROM files "
      "WHERE is_dir=0 AND modified IS NOT NULL GROUP BY y ORDER BY y DESC LIMIT 14",
      {}, [](const Statement& r) {
        return YearStat{r.text(0), r.int64(1), r.int64(2)};
      });
  std::reverse(s.byYear.begin(), s.byYear.end());

  s.topExtensions = m_db.query(
      "SELECT ext, COUNT(*), COALESCE(SUM(size),0) FROM files WHERE is_dir=0 AND ext != '' GROUP BY ext "
      "ORDER BY COUNT(*) DESC LIMIT 12",
      {}, [](const Statement& r) {
        return ExtStat{upperCased(r.text(0)), r.int64(1), r.int64(2)};
      });

  s.largest = m_db.query(std::string("SELECT ") + fileColumns +
                             ", c.name FROM files f JOIN catalogs c ON c.id=f.catalog_id WHERE f.is_dir=0 "
                             "ORDER BY f.size DESC LIMIT 25",
                         {}, [](const Statement& r) {
                           return SearchHit{mapFile(r), r.text(kFileColumnCount)};
                         });

  s.log = m_db.query(
      "SELECT l.id, l.catalog_id, COALESCE(c.name,'(deleted)'), l.at, l.added, l.removed, l.changed, "
      "l.seconds, l.note FROM scan_log l LEFT JOIN catalogs c ON c.id=l.catalog_id ORDER BY l.at DESC LIMIT "
      "20",
      {}, [](const Statement& r) {
        return ScanLogEntry{r.int64(0), r.int64(1), r.text(2),  r.date(3).value_or(Date::now()),
                            r.int64(4), r.int64(5), r.int64(6), r.real(7),
                            r.text(8)};
      });
  return s;
}

}  // namespace orrelin
