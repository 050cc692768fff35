// The search form: typed sizes and local day bounds into a query, and the form to and from a saved search.
#include "search/search_form.h"

#include <locale.h>
#include <stdlib.h>
#include <time.h>

#include <cmath>

namespace orrelin {

namespace {

constexpr double kOneDay = 86'400;

// The C locale, made once: strtod_l reads a point as the decimal sign whatever the user's locale.
locale_t cLocale() {
  static locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  return locale;
}

bool localParts(Date date, struct tm& parts) {
  if (!std::isfinite(date.seconds) || std::fabs(date.seconds) > 1e15) return false;
  time_t t = static_cast<time_t>(std::floor(date.seconds));
  return localtime_r(&t, &parts) != nullptr;
}

// -1, 0 or 1 as the local calendar day of `a` comes before, equals or follows that of `b`.
int compareDays(const struct tm& a, const struct tm& b) {
  if (a.tm_year != b.tm_year) return a.tm_year < b.tm_year ? -1 : 1;
  if (a.tm_mon != b.tm_mon) return a.tm_mon < b.tm_mon ? -1 : 1;
  if (a.tm_mday != b.tm_mday) return a.tm_mday < b.tm_mday ? -1 : 1;
  return 0;
}

// The first moment of the local day `day` (its year, month and day count; the rest is ignored; a day
// past the end of a month means a day of the next). Where a change of clocks skips midnight, the day
// begins at the first moment that exists.
Date firstMomentOf(const struct tm& day) {
  struct tm wanted {};
  wanted.tm_year = day.tm_year;
  wanted.tm_mon = day.tm_mon;
  wanted.tm_mday = day.tm_mday;
  wanted.tm_isdst = -1;
  time_t t = mktime(&wanted);  // Also normalizes `wanted` to the day actually meant.
  struct tm check;
  if (localtime_r(&t, &check) == nullptr) return Date{static_cast<double>(t)};
  if (compareDays(check, wanted) == 0 && check.tm_hour == 0 && check.tm_min == 0 && check.tm_sec == 0) {
    return Date{static_cast<double>(t)};
  }
  // Midnight does not exist that day, and mktime put it somewhere near the jump. The day begins at the
  // first second whose local date is the wanted day: search a window of a few hours around it.
  time_t before = t - 4 * 3600, inside = t + 4 * 3600;
  while (inside - before > 1) {
    time_t middle = before + (inside - before) / 2;
    if (localtime_r(&middle, &check) == nullptr) break;
    (compareDays(check, wanted) < 0 ? before : inside) = middle;
  }
  return Date{static_cast<double>(inside)};
}

}  // namespace

std::optional<int64_t> parseSizeBound(std::string_view text, int64_t unit) {
  if (text.empty()) return std::nullopt;
  std::string number(text);
  for (char& c : number) {
    if (c == ',') c = '.';
  }
  // strtod would skip leading white space; the whole field must be the number.
  if (isspace(static_cast<unsigned char>(number[0])) != 0) return std::nullopt;
  char* end = nullptr;
  double value = strtod_l(number.c_str(), &end, cLocale());
  if (end != number.c_str() + number.size() || end == number.c_str()) return std::nullopt;
  double bytes = value * static_cast<double>(unit);
  // Beyond what a size can be: no bound, as for any other field that does not read as a size.
  if (!(bytes > -9.2233720368547758e18 && bytes < 9.2233720368547758e18)) return std::nullopt;
  return static_cast<int64_t>(bytes);
}

Date startOfLocalDay(Date date) {
  struct tm parts;
  if (!localParts(date, parts)) return date;
  return firstMomentOf(parts);
}

Date startOfNextLocalDay(Date date) {
  struct tm parts;
  if (!localParts(date, parts)) return Date{date.seconds + kOneDay};
  parts.tm_mday += 1;  // firstMomentOf normalizes the day after the last of a month.
  return firstMomentOf(parts);
}

Date oneYearBefore(Date date) {
  struct tm parts;
  if (!localParts(date, parts)) return date;
  struct tm earlier = parts;
  earlier.tm_year -= 1;
  earlier.tm_isdst = -1;
  struct tm wanted = earlier;
  time_t t = mktime(&earlier);
  if (t == static_cast<time_t>(-1) && earlier.tm_year != wanted.tm_year) return date;
  if (earlier.tm_mon != wanted.tm_mon) {  // Feb 29 in a year without one: the last day of February.
    wanted.tm_mday -= earlier.tm_mday;
    wanted.tm_isdst = -1;
    t = mktime(&wanted);
  }
  return Date{static_cast<double>(t) + (date.seconds - std::floor(date.seconds))};
}

std::string_view sizeUnitLabel(int64_t unit) {
  switch (unit) {
    case SearchForm::kKB:
      return "KB";
    case SearchForm::kMB:
      return "MB";
    case SearchForm::kGB:
      return "GB";
    default:
      return "";
  }
}

SearchForm SearchForm::withDefaultDates(Date now) {
  SearchForm form;
  form.from = oneYearBefore(now);
  form.to = now;
  return form;
}

SearchQuery SearchForm::query() const {
  SearchQuery q;
  q.text = text;
  q.mode = mode;
  q.searchMetadata = searchMetadata;
  q.kinds = kinds;
  q.minSize = parseSizeBound(minSizeText, sizeUnit);
  q.maxSize = parseSizeBound(maxSizeText, sizeUnit);
  if (useDates) {
    q.modifiedFrom = startOfLocalDay(from);
    q.modifiedTo = startOfNextLocalDay(to);
  }
  q.tag = tag;
  q.catalogIDs = catalogIDs;
  q.includeFolders = includeFolders;
  return q;
}

SavedSearch SearchForm::snapshot(const std::string& name) const {
  SavedSearch s;
  s.id = SavedSearch::newID();
  s.name = name;
  s.text = text;
  s.mode = std::string(rawValue(mode));
  s.searchMetadata = searchMetadata;
  for (FileKind kind : kinds) s.kinds.emplace_back(rawValue(kind));
  s.minSizeText = minSizeText;
  s.maxSizeText = maxSizeText;
  s.sizeUnit = sizeUnit;
  s.useDates = useDates;
  s.from = from;
  s.to = to;
  s.tag = tag;
  s.catalogIDs.assign(catalogIDs.begin(), catalogIDs.end());
  s.includeFolders = includeFolders;
  return s;
}

void SearchForm::apply(const SavedSearch& saved) {
  text = saved.text;
  mode = searchModeFromRaw(saved.mode).value_or(SearchQuery::Mode::contains);
  searchMetadata = saved.searchMetadata;
  kinds.clear();
  for (const std::string& raw : saved.kinds) {
    if (std::optional<FileKind> kind = fileKindFromRaw(raw)) kinds.insert(*kind);
  }
  minSizeText = saved.minSizeText;
  maxSizeText = saved.maxSizeText;
  sizeUnit = saved.sizeUnit;
  useDates = saved.useDates;
  from = saved.from;
  to = saved.to;
  tag = saved.tag;
  catalogIDs = std::set<int64_t>(saved.catalogIDs.begin(), saved.catalogIDs.end());
  includeFolders = saved.includeFolders;
}

void SearchForm::resetFilters() {
  kinds.clear();
  minSizeText.clear();
  maxSizeText.clear();
  useDates = false;
  tag.clear();
  catalogIDs.clear();
  includeFolders = true;
  searchMetadata = false;
  mode = SearchQuery::Mode::contains;
}

}  // namespace orrelin
