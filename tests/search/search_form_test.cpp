// The search form: typed sizes, local day bounds across clock changes, saved searches in their JSON form and
// in the settings file.
#include "search/search_form.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cmath>
#include <fstream>

#include "core/user_defaults.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using nlohmann::json;
using testing::ScopedEnv;
using testing::TempDir;

TEST(SizeBoundTest, CommaIsADecimalSignAndTheWholeFieldMustBeANumber) {
  struct Case {
    const char* text;
    int64_t unit;
    std::optional<int64_t> bytes;
  };
  const Case cases[] = {
      {"1,5", SearchForm::kMB, 1'500'000},
      {"1,000", SearchForm::kMB, 1'000'000},  // Never a thousands separator.
      {"1.5", SearchForm::kGB, 1'500'000'000},
      {"2", SearchForm::kKB, 2'000},
      {"0,0015", SearchForm::kKB, 1},   // 1.5 bytes, truncated.
      {"-1,9", 1, -1},                  // Toward zero.
      {"-3", SearchForm::kKB, -3'000},  // Passed on as typed.
      {"+4", 1, 4},
      {"1e3", SearchForm::kKB, 1'000'000},
      {"0x10", 1, 16},
      {"", SearchForm::kMB, std::nullopt},
      {"abc", SearchForm::kMB, std::nullopt},
      {" 5", SearchForm::kMB, std::nullopt},
      {"5 ", SearchForm::kMB, std::nullopt},
      {"5MB", SearchForm::kMB, std::nullopt},
      {"1,5,2", SearchForm::kMB, std::nullopt},
      {",", SearchForm::kMB, std::nullopt},
      {"nan", SearchForm::kMB, std::nullopt},
      {"inf", SearchForm::kMB, std::nullopt},
      {"1e30", SearchForm::kGB, std::nullopt},
      {"9300000000", SearchForm::kGB, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(parseSizeBound(c.text, c.unit), c.bytes);
  }
}

Date utc(int year, int month, int day, int hour, int minute = 0) {
  struct tm parts {};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  return Date{static_cast<double>(timegm(&parts))};
}

class LocalDayTest : public ::testing::Test {
 protected:
  void TearDown() override { tzset(); }
  ScopedEnv env;
  void zone(const char* name) {
    env.set("TZ", std::string(name));
    tzset();
  }
};

TEST_F(LocalDayTest, DayBoundsFollowTheLocalCalendarAcrossClockChanges) {
  zone("Europe/Berlin");
  // 14:07 local on 5 March is 13:07 UTC; the day began at 23:00 UTC the evening before.
  EXPECT_EQ(startOfLocalDay(Date{utc(2024, 3, 5, 13, 7).seconds + 0.25}), utc(2024, 3, 4, 23));
  // 31 March has 23 hours: from 23:00 UTC (winter time) to 22:00 UTC (summer time).
  EXPECT_EQ(startOfNextLocalDay(utc(2024, 3, 31, 10)), utc(2024, 3, 31, 22));
  EXPECT_EQ(startOfNextLocalDay(utc(2024, 12, 31, 20)), utc(2024, 12, 31, 23));  // Into the next year.
  // A year back from the 29th of February lands on the 28th, at the same local time.
  EXPECT_EQ(oneYearBefore(utc(2024, 2, 29, 9)), utc(2023, 2, 28, 9));
  EXPECT_EQ(oneYearBefore(utc(2024, 7, 1, 9)), utc(2023, 7, 1, 9));

  // In São Paulo in 2018 the clocks went from 00:00 straight to 01:00 on 4 November: that day began at
  // 01:00 local time, 03:00 UTC.
  zone("America/Sao_Paulo");
  EXPECT_EQ(startOfLocalDay(utc(2018, 11, 4, 15)), utc(2018, 11, 4, 3));
  EXPECT_EQ(startOfNextLocalDay(utc(2018, 11, 3, 15)), utc(2018, 11, 4, 3));
  EXPECT_EQ(startOfLocalDay(utc(2018, 11, 3, 15)), utc(2018, 11, 3, 3));

  // The query spans whole local days: from the start of `from`'s day to the start of the day after `to`.
  zone("Asia/Tokyo");
  SearchForm form;
  form.useDates = true;
  form.from = utc(2024, 5, 10, 20);  // 11 May, 05:00 in Tokyo.
  form.to = utc(2024, 5, 10, 20);
  SearchQuery query = form.query();
  EXPECT_EQ(query.modifiedFrom, utc(2024, 5, 10, 15));  // 11 May, 00:00 in Tokyo.
  EXPECT_EQ(query.modifiedTo, utc(2024, 5, 11, 15));
  form.useDates = false;
  EXPECT_EQ(form.query().modifiedFrom, std::nullopt);
  EXPECT_EQ(form.query().modifiedTo, std::nullopt);
}

SearchForm filledForm() {
  SearchForm form;
  form.text = "  IMG_ ";
  form.mode = SearchQuery::Mode::startsWith;
  form.searchMetadata = true;
  form.kinds = {FileKind::video, FileKind::image};
  form.minSizeText = "1,5";
  form.maxSizeText = "oops";
  form.sizeUnit = SearchForm::kGB;
  form.useDates = true;
  form.from = Date{1'700'000'000.5};
  form.to = Date{1'710'000'000};
  form.tag = "Work";
  form.catalogIDs = {7, 3};
  form.includeFolders = false;
  return form;
}

TEST(SearchFormTest, QueryTakesEveryFieldAndTheLimit) {
  SearchForm form = filledForm();
  SearchQuery query = form.query();
  EXPECT_EQ(query.text, "  IMG_ ");  // Trimmed by the search, not here.
  EXPECT_EQ(query.mode, SearchQuery::Mode::startsWith);
  EXPECT_TRUE(query.searchMetadata);
  EXPECT_EQ(query.kinds, (std::set<FileKind>{FileKind::image, FileKind::video}));
  EXPECT_EQ(query.minSize, 1'500'000'000);
  EXPECT_EQ(query.maxSize, std::nullopt);
  EXPECT_TRUE(query.modifiedFrom && query.modifiedTo);
  EXPECT_EQ(query.tag, "Work");
  EXPECT_EQ(query.catalogIDs, (std::set<int64_t>{3, 7}));
  EXPECT_FALSE(query.includeFolders);
  EXPECT_EQ(query.limit, 5000);
}

TEST(SearchFormTest, SnapshotApplyAndResetFilters) {
  SearchForm form = filledForm();
  SavedSearch saved = form.snapshot("Camera files");
  EXPECT_EQ(saved.name, "Camera files");
  EXPECT_EQ(saved.mode, "Starts With");
  EXPECT_EQ(saved.kinds, (std::vector<std::string>{"Image", "Video"}));
  EXPECT_EQ(saved.catalogIDs, (std::vector<int64_t>{3, 7}));
  EXPECT_EQ(saved.id.size(), 36u);
  EXPECT_NE(form.snapshot("Camera files").id, saved.id);

  // Through JSON and back into a fresh form: the same fields.
  SearchForm reopened;
  reopened.apply(*SavedSearch::fromJSON(*saved.toJSON()));
  EXPECT_EQ(reopened, form);

  // Names that mean nothing any more: contains, and the unknown kind left out.
  saved.mode = "Fuzzy";
  saved.kinds = {"Image", "Hologram", "folder"};
  reopened.apply(saved);
  EXPECT_EQ(reopened.mode, SearchQuery::Mode::contains);
  EXPECT_EQ(reopened.kinds, (std::set<FileKind>{FileKind::image}));

  SearchForm reset = form;
  reset.resetFilters();
  SearchForm expected;
  expected.text = form.text;
  expected.sizeUnit = form.sizeUnit;
  expected.from = form.from;
  expected.to = form.to;
  EXPECT_EQ(reset, expected);
}

TEST(SavedSearchTest, JsonFormHasEveryKeyAndDatesFrom2001) {
  SavedSearch saved = filledForm().snapshot("Clips");
  saved.from = Date{kSecondsFrom1970To2001 + 10.5};
  saved.to = Date{kSecondsFrom1970To2001 - 86400};
  json object = *saved.toJSON();
  EXPECT_EQ(object["from"], 10.5);
  EXPECT_EQ(object["to"], -86400.0);
  EXPECT_EQ(object["sizeUnit"], 1'000'000'000);
  EXPECT_EQ(object["catalogIDs"], json::array({3, 7}));
  std::vector<std::string> keys;
  for (auto& [key, value] : object.items()) keys.push_back(key);
  EXPECT_EQ(keys, (std::vector<std::string>{"catalogIDs", "from", "id", "includeFolders", "kinds",
                                            "maxSizeText", "minSizeText", "mode", "name", "searchMetadata",
                                            "sizeUnit", "tag", "text", "to", "useDates"}));
  EXPECT_EQ(SavedSearch::fromJSON(object), saved);

  // Every key is required.
  for (const std::string& key : keys) {
    json missing = object;
    missing.erase(key);
    EXPECT_EQ(SavedSearch::fromJSON(missing), std::nullopt) << key;
  }
  // Each value must have its type; a lower-case id is still a UUID; unknown keys are ignored.
  struct Case {
    const char* key;
    json value;
    bool decodes;
  };
  const Case cases[] = {
      {"sizeUnit", "1000", false},
      {"sizeUnit", 1.5, false},
      {"sizeUnit", 1000.0, true},
      {"useDates", 1, false},
      {"kinds", json::array({1}), false},
      {"kinds", "Image", false},
      {"catalogIDs", json::array({1.5}), false},
      {"catalogIDs", json::array({"1"}), false},
      {"from", "2024-01-01", false},
      {"to", nullptr, false},
      {"id", "not-a-uuid", false},
      {"id", "6ba7b810-9dad-11d1-80b4-00c04fd430c8", true},
      {"extra", 1, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.key) + "=" + c.value.dump());
    json changed = object;
    changed[c.key] = c.value;
    EXPECT_EQ(SavedSearch::fromJSON(changed).has_value(), c.decodes);
  }
  json lower = object;
  lower["id"] = "6ba7b810-9dad-11d1-80b4-00c04fd430c8";
  EXPECT_EQ(SavedSearch::fromJSON(lower)->id, "6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
}

class SavedListTest : public ::testing::Test {
 protected:
  TempDir dir;
  ScopedEnv env;
  void SetUp() override { env.set("XDG_CONFIG_HOME", dir.path().string()); }
};

TEST_F(SavedListTest, TheListRoundTripsThroughTheSettingsFile) {
  EXPECT_TRUE(SavedSearch::all().empty());
  SearchForm form = filledForm();
  std::vector<SavedSearch> list = {form.snapshot("One"), form.snapshot("One"), SearchForm().snapshot("Two")};
  ASSERT_TRUE(SavedSearch::setAll(list));
  EXPECT_EQ(SavedSearch::all(), list);

  // Stored as one JSON array beside the other settings, which stay as they were.
  ASSERT_TRUE(UserDefaults::set("theme", "dark"));
  json file = json::parse(std::ifstream(UserDefaults::filePath()));
  EXPECT_EQ(file["savedSearches"].size(), 3u);
  EXPECT_EQ(file["savedSearches"][1]["name"], "One");
  EXPECT_EQ(SavedSearch::all(), list);

  ASSERT_TRUE(SavedSearch::setAll({}));
  EXPECT_TRUE(SavedSearch::all().empty());
  EXPECT_EQ(UserDefaults::get("theme"), json("dark"));
}

TEST_F(SavedListTest, ABrokenStoredValueReadsAsAnEmptyList) {
  std::vector<SavedSearch> list = {SearchForm().snapshot("Good"), SearchForm().snapshot("Also good")};
  ASSERT_TRUE(SavedSearch::setAll(list));
  json stored = *UserDefaults::get(SavedSearch::kDefaultsKey);

  json oneBad = stored;
  oneBad[1].erase("includeFolders");
  const json broken[] = {oneBad, json::object(), json("[]"), json(42), json::array({nullptr})};
  for (const json& value : broken) {
    SCOPED_TRACE(value.dump());
    ASSERT_TRUE(UserDefaults::set(SavedSearch::kDefaultsKey, value));
    EXPECT_TRUE(SavedSearch::all().empty());
  }

  // A list that cannot be written as JSON removes the stored one.
  ASSERT_TRUE(SavedSearch::setAll(list));
  list[1].to = Date{std::nan("")};
  ASSERT_TRUE(SavedSearch::setAll(list));
  EXPECT_EQ(UserDefaults::get(SavedSearch::kDefaultsKey), std::nullopt);
}

}  // namespace
}  // namespace orrelin
