// Tests of the display formats, the ISO 8601 dates, SafeInt and the Finder labels.
#include <unicode/locid.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "store/finder_label.h"
#include "store/fmt.h"
#include "store/safe_int.h"

namespace orrelin {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Sets ICU's default locale for one scope. The texts depend on the locale, and the tests run under
// LC_ALL=C.UTF-8, which ICU reads as en_US_POSIX (no digit grouping).
class ScopedIcuLocale {
 public:
  explicit ScopedIcuLocale(const char* name) : m_saved(icu::Locale::getDefault()) {
    apply(icu::Locale(name));
  }
  ~ScopedIcuLocale() { apply(m_saved); }
  ScopedIcuLocale(const ScopedIcuLocale&) = delete;
  ScopedIcuLocale& operator=(const ScopedIcuLocale&) = delete;

 private:
  static void apply(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale, status);
    ASSERT_TRUE(U_SUCCESS(status));
  }
  icu::Locale m_saved;
};

class FmtTest : public ::testing::Test {
 protected:
  ScopedIcuLocale m_locale{"en_US"};
};

TEST_F(FmtTest, SizeChoosesDecimalUnitsAfterRounding) {
  struct Case {
    int64_t bytes;
    const char* expected;
  };
  const Case cases[] = {
      {0, "0 bytes"},
      {1, "1 byte"},
      {999, "999 bytes"},
      {1000, "1 KB"},
      {1499, "1 KB"},
      {1500, "2 KB"},  // Halves away from zero, not to even.
      {999'499, "999 KB"},
      {999'500, "1 MB"},  // Would be "1000 KB" without moving up a unit.
      {1'000'000, "1 MB"},
      {1'250'000, "1.3 MB"},
      {1'500'000, "1.5 MB"},
      {999'950'000, "1 GB"},
      {1'234'567'890, "1.23 GB"},
      {1'200'000'000'000, "1.2 TB"},
      {5'000'000'000'000'000, "5 PB"},
      {std::numeric_limits<int64_t>::max(), "9.22 EB"},
      {-1500, "-2 KB"},
      {std::numeric_limits<int64_t>::min(), "-9.22 EB"},
  };
  for (const Case& c : cases) EXPECT_EQ(Fmt::size(c.bytes), c.expected) << c.bytes;
}

TEST_F(FmtTest, NumbersFollowTheDefaultLocale) {
  EXPECT_EQ(Fmt::count(0), "0");
  EXPECT_EQ(Fmt::count(1'234'567), "1,234,567");
  EXPECT_EQ(Fmt::count(-1234), "-1,234");
  EXPECT_EQ(Fmt::count(std::numeric_limits<int64_t>::max()), "9,223,372,036,854,775,807");
  {
    // The shared formatters must follow a change of locale rather than keep the first one.
    ScopedIcuLocale german("de_DE");
    EXPECT_EQ(Fmt::count(1'234'567), "1.234.567");
    EXPECT_EQ(Fmt::size(1'500'000), "1,5 MB");
  }
  EXPECT_EQ(Fmt::size(1'500'000), "1.5 MB");
}

// The expected text of Fmt::date in American English, from the C library's view of the local zone.
std::string americanDateTime(time_t when) {
  static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  tm local{};
  localtime_r(&when, &local);
  int hour12 = local.tm_hour % 12 == 0 ? 12 : local.tm_hour % 12;
  char text[64];
  std::snprintf(text, sizeof text, "%s %d, %d, %d:%02d %s", kMonths[local.tm_mon], local.tm_mday,
                local.tm_year + 1900, hour12, local.tm_min, local.tm_hour < 12 ? "AM" : "PM");
  return text;
}

// Newer locale data puts a narrow no-break space before AM/PM; the tests do not care which blank it is.
std::string plainBlanks(std::string text) {
  const std::string narrow = "\u202F";
  for (auto at = text.find(narrow); at != std::string::npos; at = text.find(narrow, at))
    text.replace(at, narrow.size(), " ");
  return text;
}

TEST_F(FmtTest, DateIsMediumDateAndShortTimeInTheLocalZone) {
  EXPECT_EQ(Fmt::date(std::nullopt), "\u2014");
  EXPECT_EQ(Fmt::date(Date{kNaN}), "\u2014");
  for (time_t when : {time_t{1710504000}, time_t{0}, time_t{951782400 + 23 * 3600 + 59 * 60}})
    EXPECT_EQ(plainBlanks(Fmt::date(Date{static_cast<double>(when) + 0.9})), americanDateTime(when)) << when;
}

TEST(FmtDuration, RoundsHalvesUpAndSwitchesToHoursAtOneHour) {
  struct Case {
    double seconds;
    const char* expected;
  };
  const Case cases[] = {
      {kNaN, "\u2014"},
      {kInf, "\u2014"},
      {-kInf, "\u2014"},
      {0, "\u2014"},
      {-1, "\u2014"},
      {0.4, "0:00"},
      {0.5, "0:01"},
      {59.5, "1:00"},
      {3599.4, "59:59"},
      {3599.6, "1:00:00"},
      {86399, "23:59:59"},
      {360'000, "100:00:00"},
      {std::nextafter(9e18, 0.0), "2499999999999999:42:56"},  // The largest value still shown.
      {9e18, "0:00"},
      {1e300, "0:00"},
  };
  for (const Case& c : cases) EXPECT_EQ(Fmt::duration(c.seconds), c.expected) << c.seconds;
}

TEST(FmtIso, WritesUtcWholeSecondsFlooringFractions) {
  struct Case {
    double seconds;
    const char* expected;
  };
  const Case cases[] = {
      {0, "1970-01-01T00:00:00Z"},
      {1709647629, "2024-03-05T14:07:09Z"},
      {1709647629.999, "2024-03-05T14:07:09Z"},
      {-0.5, "1969-12-31T23:59:59Z"},
      {951782400, "2000-02-29T00:00:00Z"},
      {-62167219200, "0000-01-01T00:00:00Z"},
      {253402300799.9, "9999-12-31T23:59:59Z"},
      {253402300800, ""},
      {-62167219200.5, ""},
      {kNaN, ""},
      {kInf, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(Fmt::iso(Date{c.seconds}), c.expected) << c.seconds;
}

TEST(FmtIso, ParsesZonesAndFractions) {
  struct Case {
    const char* text;
    double seconds;
  };
  const Case cases[] = {
      {"1970-01-01T00:00:00Z", 0},
      {"2024-03-05T14:07:09Z", 1709647629},
      {"2024-03-05T14:07:09.25Z", 1709647629.25},
      {"2024-03-05T14:07:09,5Z", 1709647629.5},
      {"2024-03-05T14:07:09.1234567891234Z", 1709647629.123456789},
      {"2024-03-05T16:07:09+02:00", 1709647629},
      {"2024-03-05T16:07:09.250+02:00", 1709647629.25},
      {"2024-03-05T09:37:09-0430", 1709647629},
      {"2024-03-05T15:07:09+01", 1709647629},
      {"2024-03-05T00:30:00+01:00", 1709595000},  // The offset reaches back into the day before.
      {"2000-02-29T00:00:00Z", 951782400},
      {"1969-12-31T23:59:59Z", -1},
  };
  for (const Case& c : cases) {
    OptionalDate parsed = Fmt::parseIso(c.text);
    ASSERT_TRUE(parsed.has_value()) << c.text;
    EXPECT_NEAR(parsed->seconds, c.seconds, 1e-6) << c.text;
  }
}

TEST(FmtIso, RejectsAnythingElse) {
  for (const char* text : {
           "",
           "2024-03-05",
           "2024-03-05T14:07:09",  // No zone: the instant would be a guess.
           "2024-03-05 14:07:09Z",
           "2024-3-5T14:07:09Z",
           "2024-02-30T00:00:00Z",
           "2023-02-29T00:00:00Z",
           "2024-03-05T24:00:00Z",
           "2024-03-05T14:07:60Z",
           "2024-03-05T14:07:09.Z",
           "2024-03-05T14:07:09+24:00",
           "2024-03-05T14:07:09+2",
           "2024-03-05T14:07:09Zjunk",
           "2024-03-05T14:07:09Z ",
       }) {
    EXPECT_FALSE(Fmt::parseIso(text).has_value()) << '"' << text << '"';
  }
}

TEST(FmtIso, WriterAndReaderAgree) {
  for (double seconds : {0.0, 1709647629.75, -1.25, 951782400.0, -62167219200.0, 253402300799.0, 4e9}) {
    std::string text = Fmt::iso(Date{seconds});
    OptionalDate back = Fmt::parseIso(text);
    ASSERT_TRUE(back.has_value()) << text;
    EXPECT_EQ(back->seconds, std::floor(seconds)) << text;
    EXPECT_EQ(Fmt::iso(*back), text);
  }
}

TEST(SafeInt, RejectsWhatHasNoIntegerAndTruncatesTheRest) {
  const float floatNaN = std::numeric_limits<float>::quiet_NaN();
  struct Case {
    const char* label;
    int64_t actual;
    int64_t expected;
  };
  const Case cases[] = {
      {"NaN", SafeInt::from(kNaN), 0},
      {"float NaN / 1000", SafeInt::from(floatNaN / 1000), 0},
      {"+inf", SafeInt::from(kInf), 0},
      {"-inf", SafeInt::from(-kInf), 0},
      {"1e300", SafeInt::from(1e300), 0},
      {"9e18", SafeInt::from(9e18), 0},
      {"-9e18", SafeInt::from(-9e18), 0},
      {"below 9e18", SafeInt::from(std::nextafter(9e18, 0.0)), 8'999'999'999'999'998'976},
      {"above -9e18", SafeInt::from(std::nextafter(-9e18, 0.0)), -8'999'999'999'999'998'976},
      {"1234.9", SafeInt::from(1234.9), 1234},
      {"-0.5", SafeInt::from(-0.5), 0},
      {"float 320000 / 1000", SafeInt::from(320000.0f / 1000), 320},
      {"float 3e9", SafeInt::from(3e9f), 3'000'000'000},  // Widened, not squeezed through 32 bits.
      {"float 1e19", SafeInt::from(1e19f), 0},
      {"NaN, fallback -1", SafeInt::from(kNaN, -1), -1},
      {"float inf, fallback 7", SafeInt::from(std::numeric_limits<float>::infinity(), 7), 7},
      {"2.5, fallback 7", SafeInt::from(2.5, 7), 2},
  };
  for (const Case& c : cases) EXPECT_EQ(c.actual, c.expected) << c.label;
}

TEST(FinderLabel, OutOfRangeIndexesAreNone) {
  ASSERT_EQ(FinderLabel::names().size(), 8u);
  EXPECT_EQ(FinderLabel::names().front(), "None");
  EXPECT_EQ(FinderLabel::names().back(), "Orange");
  for (int index : {-1, 8, 1000, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(FinderLabel::name(index), "None") << index;
    EXPECT_EQ(FinderLabel::rgb(index), (LabelColor{0.5, 0.5, 0.5})) << index;
  }
  EXPECT_EQ(FinderLabel::rgb(4), (LabelColor{0.2, 0.55, 1.0}));
  EXPECT_EQ(FinderLabel::rgb(7), (LabelColor{1.0, 0.6, 0.2}));
}

TEST(FinderLabel, ColorIndexNeedsTheWholeNameInAnyCase) {
  struct Case {
    const char* tag;
    int expected;
  };
  const Case cases[] = {
      {"RED", 6},  {"red", 6},      {"Red", 6},    {"gray", 1}, {"GREEN", 2}, {"purple", 3},
      {"Blue", 4}, {"yelLow", 5},   {"orange", 7}, {"grey", 0}, {"none", 0},  {"None", 0},
      {"", 0},     {"Dark Red", 0}, {"red ", 0},   {" red", 0}, {"reds", 0},  {"re", 0},
  };
  for (const Case& c : cases) EXPECT_EQ(FinderLabel::colorIndex(c.tag), c.expected) << '"' << c.tag << '"';
  // Every colour's own name finds it again, as imports look labels up by name.
  for (int index = 1; index < FinderLabel::kCount; ++index)
    EXPECT_EQ(FinderLabel::colorIndex(FinderLabel::name(index)), index);
}

}  // namespace
}  // namespace orrelin
