// Display formats over ICU, and the ISO 8601 writer and reader.
#include "store/fmt.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <mutex>

namespace orrelin::Fmt {

namespace {

namespace number = icu::number;

// The formatters of one locale. Building them loads locale data, which costs far more than a format,
// so one set is shared by every caller.
struct Formatters {
  explicit Formatters(const icu::Locale& locale)
      : localeName(locale.getName()),
        integer(number::NumberFormatter::withLocale(locale)),
        fraction{integer.precision(number::Precision::maxFraction(0)),
                 integer.precision(number::Precision::maxFraction(1)),
                 integer.precision(number::Precision::maxFraction(2))},
        dateTime(icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort,
                                                         locale)) {}

  const std::string localeName;
  // LocalizedNumberFormatter is immutable and documented thread-safe, so these need no lock.
  const number::LocalizedNumberFormatter integer;
  // Index: the most fraction digits shown.
  const std::array<number::LocalizedNumberFormatter, 3> fraction;
  // DateFormat makes no such promise: older ICU releases formatted through the instance's own Calendar,
  // so two threads on one instance could print each other's dates, and nothing in its contract rules
  // that out again. Every use holds dateMutex; one lock is cheaper than a clone per thread, and dates are
  // formatted mostly on the main thread anyway.
  std::mutex dateMutex;
  const std::unique_ptr<icu::DateFormat> dateTime;  // Under dateMutex; null if ICU could not make it.
};

// Returns the formatters of the ICU default locale. That locale comes from the environment (LC_ALL,
// LC_MESSAGES, LANG) unless the program sets another; should it change, the set is rebuilt, so a
// formatter never speaks a locale other than the current one.
std::shared_ptr<Formatters> formatters() {
  static std::mutex mutex;
  static std::shared_ptr<Formatters> current;  // Under mutex.
  const icu::Locale& locale = icu::Locale::getDefault();
  std::lock_guard lock(mutex);
  if (!current || current->localeName != locale.getName()) current = std::make_shared<Formatters>(locale);
  return current;
}

std::string utf8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

// The C library's digits, for when ICU fails: no grouping, "." as the decimal sign (numbers stay in the
// "C" locale: the Qt programs set LC_NUMERIC back to "C" after Qt adopts the user's locale), trailing
// fraction zeros dropped.
std::string plainNumber(double value, int digits) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*f", digits, value);
  std::string text = buffer;
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text;
}

std::string formatNumber(const number::LocalizedNumberFormatter& formatter, double value, int digits) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text = formatter.formatDouble(value, status).toString(status);
  if (U_FAILURE(status) || text.isEmpty()) return plainNumber(value, digits);
  return utf8(text);
}

struct ByteUnit {
  const char* name;
  double scale;
  int digits;  // Fraction digits shown.
};

constexpr std::array<ByteUnit, 6> kByteUnits = {{
    {"KB", 1e3, 0},
    {"MB", 1e6, 1},
    {"GB", 1e9, 2},
    {"TB", 1e12, 2},
    {"PB", 1e15, 2},
    {"EB", 1e18, 2},  // Enough: the largest 64-bit count is 9.22 EB.
}};

double roundTo(double value, int digits) {
  double factor = std::pow(10.0, digits);
  return std::round(value * factor) / factor;  // std::round takes halves away from zero.
}

// Years 0000 and 10000 begin at these instants; the four-digit form holds the years between.
constexpr double kIsoFirst = -62167219200.0;
constexpr double kIsoEnd = 253402300800.0;

}  // namespace

std::string size(int64_t bytes) {
  auto shared = formatters();
  bool negative = bytes < 0;
  // As a double so that the most negative count has a magnitude too.
  double magnitude = std::fabs(static_cast<double>(bytes));
  if (magnitude < 1000) {
    std::string digits = formatNumber(shared->integer, static_cast<double>(bytes), 0);
    return digits + (magnitude == 1 ? " byte" : " bytes");
  }
  std::size_t unit = 0;
  while (unit + 1 < kByteUnits.size() && magnitude >= kByteUnits[unit + 1].scale) ++unit;
  double shown = roundTo(magnitude / kByteUnits[unit].scale, kByteUnits[unit].digits);
  // Rounding decides the unit: 999,999 bytes is "1 MB", never "1000 KB".
  if (shown >= 1000 && unit + 1 < kByteUnits.size()) {
    ++unit;
    shown = roundTo(magnitude / kByteUnits[unit].scale, kByteUnits[unit].digits);
  }
  // The value is rounded already; ICU's own rounding (half-even) then only trims the binary noise.
  const ByteUnit& chosen = kByteUnits[unit];
  std::string digits =
      formatNumber(shared->fraction[chosen.digits], negative ? -shown : shown, chosen.digits);
  return digits + " " + chosen.name;
}

std::string count(int64_t value) {
  auto shared = formatters();
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text = shared->integer.formatInt(value, status).toString(status);
  if (U_FAILURE(status) || text.isEmpty()) return std::to_string(value);
  return utf8(text);
}

std::string date(OptionalDate date) {
  if (!date || !std::isfinite(date->seconds)) return std::string(kNone);
  auto shared = formatters();
  icu::UnicodeString text;
  {
    std::lock_guard lock(shared->dateMutex);
    if (shared->dateTime) shared->dateTime->format(date->seconds * 1000.0, text);  // UDate: milliseconds.
  }
  if (text.isEmpty()) return iso(*date);
  return utf8(text);
}

std::string iso(Date date) {
  using namespace std::chrono;
  if (!(date.seconds >= kIsoFirst && date.seconds < kIsoEnd)) return {};
  // Floor, not truncation toward zero: 0.5 s before 1970 is in 1969's last second.
  sys_seconds instant{seconds{static_cast<int64_t>(std::floor(date.seconds))}};
  sys_days day = floor<days>(instant);
  year_month_day ymd{day};
  hh_mm_ss time{instant - day};
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(ymd.year()),
                static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return buffer;
}

namespace {

// A cursor over the text of parseIso; every read fails rather than running past the end.
class IsoReader {
 public:
  explicit IsoReader(std::string_view text) : m_text(text) {}

  bool done() const { return m_pos == m_text.size(); }
  bool peek(char c) const { return m_pos < m_text.size() && m_text[m_pos] == c; }
  bool isDigit() const { return m_pos < m_text.size() && m_text[m_pos] >= '0' && m_text[m_pos] <= '9'; }

  // Consumes `c` if it comes next.
  bool take(char c) {
    if (!peek(c)) return false;
    ++m_pos;
    return true;
  }

  // Reads exactly `width` digits into `value`.
  bool digits(int width, int& value) {
    value = 0;
    for (int i = 0; i < width; ++i) {
      if (!isDigit()) return false;
      value = value * 10 + (m_text[m_pos++] - '0');
    }
    return true;
  }

  // Reads one or more digits as a fraction of one; digits past the ninth are read and ignored.
  bool fraction(double& value) {
    if (!isDigit()) return false;
    int64_t numerator = 0;
    int64_t denominator = 1;
    for (; isDigit(); ++m_pos) {
      if (denominator == 1'000'000'000) continue;
      numerator = numerator * 10 + (m_text[m_pos] - '0');
      denominator *= 10;
    }
    value = static_cast<double>(numerator) / static_cast<double>(denominator);
    return true;
  }

 private:
  std::string_view m_text;
  std::size_t m_pos = 0;
};

// Reads the zone that ends an ISO text as its offset east of UTC in seconds.
bool readZone(IsoReader& in, int& offset) {
  if (in.take('Z') || in.take('z')) {
    offset = 0;
    return true;
  }
  int sign = in.take('+') ? 1 : in.take('-') ? -1 : 0;
  int hours = 0;
  int minutes = 0;
  if (sign == 0 || !in.digits(2, hours) || hours > 23) return false;
  bool colon = in.take(':');
  if (colon || in.isDigit()) {
    if (!in.digits(2, minutes) || minutes > 59) return false;
  }
  offset = sign * (hours * 3600 + minutes * 60);
  return true;
}

}  // namespace

OptionalDate parseIso(std::string_view text) {
  using namespace std::chrono;
  IsoReader in(text);
  int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
  if (!in.digits(4, y) || !in.take('-') || !in.digits(2, mo) || !in.take('-') || !in.digits(2, d)) return {};
  if (!in.take('T') && !in.take('t')) return {};
  if (!in.digits(2, h) || !in.take(':') || !in.digits(2, mi) || !in.take(':') || !in.digits(2, s)) return {};
  if (h > 23 || mi > 59 || s > 59) return {};
  double fraction = 0;
  if ((in.take('.') || in.take(',')) && !in.fraction(fraction)) return {};
  int offset = 0;
  if (!readZone(in, offset) || !in.done()) return {};

  year_month_day ymd{year{y}, month{static_cast<unsigned>(mo)}, day{static_cast<unsigned>(d)}};
  if (!ymd.ok()) return {};
  int64_t days = sys_days{ymd}.time_since_epoch().count();
  int64_t whole = days * 86400 + h * 3600 + mi * 60 + s - offset;
  return Date{static_cast<double>(whole) + fraction};
}

std::string duration(double seconds) {
  if (!std::isfinite(seconds) || seconds <= 0) return std::string(kNone);
  double rounded = std::round(seconds);  // Halves away from zero.
  // Beyond this the cast below would be undefined; such a value is nonsense from a broken file anyway.
  if (rounded >= 9e18) rounded = 0;
  auto total = static_cast<long long>(rounded);
  long long hours = total / 3600;
  long long minutes = total % 3600 / 60;
  long long secs = total % 60;
  char buffer[48];
  if (hours > 0) {
    std::snprintf(buffer, sizeof buffer, "%lld:%02lld:%02lld", hours, minutes, secs);
  } else {
    std::snprintf(buffer, sizeof buffer, "%lld:%02lld", minutes, secs);
  }
  return buffer;
}

}  // namespace orrelin::Fmt
