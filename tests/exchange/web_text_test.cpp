// Text in the web site: script-safe JSON strings for any bytes, readable names, HTML escaping, summaries
// and the page shell.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <random>

#include "core/app_info.h"
#include "core/name_mapping.h"
#include "exchange/web_exporter.h"
#include "exchange/web_text.h"

namespace orrelin {
namespace {

std::string jsonString(std::string_view text) {
  std::string out;
  web::appendJSONString(out, text);
  return out;
}

// What a script engine would see: the JSON string parsed back.
std::string parsed(const std::string& json) { return nlohmann::json::parse(json).get<std::string>(); }

TEST(WebText, JSONStringsCannotBreakOutOfAScript) {
  const std::string mappedLatin1 = NameMapping::fromDisk("caf\xE9");
  const std::string genuinePrivate = NameMapping::fromDisk("\xEE\xBE\x85x");  // U+EF85 itself, then "x".
  struct Case {
    std::string input;
    std::string expected;  // The text after a round trip through JSON.
  } cases[] = {
      {"plain name.txt", "plain name.txt"},
      {"</script><script>alert(1)</script>", "</script><script>alert(1)</script>"},
      {"<!-- a --> & \"b\" \\c/", "<!-- a --> & \"b\" \\c/"},
      {"tab\tnew\nline\rbell\x07\x1F", "tab\tnew\nline\rbell\x07\x1F"},
      {"sep\u2028par\u2029end", "sep\u2028par\u2029end"},
      {"caf\xE9", "caf\uFFFD"},     // Raw Latin-1 from elsewhere.
      {mappedLatin1, "caf\uFFFD"},  // The catalog's reversible form of the same bytes.
      {genuinePrivate, "\uEF85x"},  // A real private-use character comes back as itself.
      {"\xED\xA0\x80 surrogate", "\uFFFD\uFFFD\uFFFD surrogate"},
      {"\xC0\xAF overlong", "\uFFFD\uFFFD overlong"},
      {"emoji \U0001F600 ok", "emoji \U0001F600 ok"},
      {std::string("nul\0byte", 8), std::string("nul\0byte", 8)},
  };
  for (const Case& c : cases) {
    std::string json = jsonString(c.input);
    SCOPED_TRACE(json);
    EXPECT_EQ(json.find('<'), std::string::npos);
    EXPECT_EQ(json.find('>'), std::string::npos);
    EXPECT_EQ(json.find("\u2028"), std::string::npos);
    EXPECT_EQ(json.find("\u2029"), std::string::npos);
    EXPECT_TRUE(NameMapping::isValidUTF8(json));
    EXPECT_EQ(parsed(json), c.expected);
    EXPECT_EQ(web::displayText(c.input), c.expected);
  }
}

TEST(WebText, AnyBytesGiveValidJSON) {
  std::mt19937 random(20240601);
  const char alphabet[] = {'a',    '"',    '\\',   '<',    '/',    '>',    '\n',
                           '\0',   '\x80', '\xBF', '\xC3', '\xA9', '\xE2', '\x80',
                           '\xA8', '\xEE', '\xBE', '\xBF', '\xF0', '\x9F', '\xFF'};
  for (int round = 0; round < 20000; ++round) {
    std::string input;
    int length = static_cast<int>(random() % 12);
    for (int i = 0; i < length; ++i) input += alphabet[random() % sizeof alphabet];
    std::string json = jsonString(input);
    ASSERT_TRUE(NameMapping::isValidUTF8(json)) << json;
    ASSERT_EQ(json.find('<'), std::string::npos) << json;
    std::string back;
    ASSERT_NO_THROW(back = parsed(json)) << json;
    // Text that was already valid and held no stand-in characters comes back unchanged.
    bool plain = NameMapping::isValidUTF8(input) && input.find("\xEE\xBE") == std::string::npos &&
                 input.find("\xEE\xBF") == std::string::npos;
    if (plain) {
      ASSERT_EQ(back, input) << json;
    }
  }
}

TEST(WebText, NumbersStayIntegersAndDurationsKeepOneDecimal) {
  struct Case {
    double seconds;
    const char* text;
  } cases[] = {{1.26, "1.3"},       {5, "5"},        {0, "0"},
               {-0.01, "0"},        {0.04, "0"},     {3599.95, "3600"},
               {std::nan(""), "0"}, {HUGE_VAL, "0"}, {86400.55, "86400.6"}};
  for (const Case& c : cases) {
    std::string out;
    web::appendJSONTenths(out, c.seconds);
    EXPECT_EQ(out, c.text) << c.seconds;
  }
  std::string out;
  web::appendJSONInt(out, INT64_MIN);
  out += ',';
  web::appendJSONInt(out, 1'000'000'000'000);
  EXPECT_EQ(out, "-9223372036854775808,1000000000000");
}

TEST(WebText, HtmlEscapeLeavesTheApostrophe) {
  EXPECT_EQ(WebExporter::htmlEscape("a&b<c>d\"e'f &amp;"), "a&amp;b&lt;c&gt;d&quot;e'f &amp;amp;");
  EXPECT_EQ(WebExporter::htmlEscape(""), "");
}

TEST(WebText, SummaryJoinsWhatTheRecordHas) {
  FileRecord r;
  EXPECT_EQ(WebExporter::summary(r), "");
  r.duration = 3725.2;
  r.meta = {{"Dimensions", "10×20"}, {"Bitrate", "320 kbps"}, {"Title", "T"},
            {"Camera", "Canon"},     {"Artist", ""},          {"Pages", "12"}};
  r.tags = {"red", "blue"};
  EXPECT_EQ(WebExporter::summary(r), "1:02:05 · 10×20 · 320 kbps · T · Canon · 12 pages · Tags: red, blue");
  r.meta["Resolution"] = "1920×1080";  // Wins over the dimensions.
  r.meta["Video Codec"] = "HEVC";
  r.duration = 0;
  r.tags.clear();
  EXPECT_EQ(WebExporter::summary(r), "1920×1080 · HEVC · 320 kbps · T · Canon · 12 pages");
}

TEST(WebText, DriveKindPrefersNetworkThenFolderThenRemovable) {
  Catalog c;
  EXPECT_EQ(WebExporter::driveKind(c), "Internal");
  c.isRemovable = true;
  EXPECT_EQ(WebExporter::driveKind(c), "External");
  c.isFolder = true;
  EXPECT_EQ(WebExporter::driveKind(c), "Folder");
  c.isNetwork = true;
  EXPECT_EQ(WebExporter::driveKind(c), "Network");
}

TEST(WebText, PageShellPutsEveryPartInItsPlace) {
  std::string page =
      WebExporter::pageShell("A <b> & \"c\"", "<main id=\"x\"></main>", "<script src=\"s.js\"></script>");
  const std::string parts[] = {
      "<!DOCTYPE html>",
      "<html lang=\"en\">",
      "<meta charset=\"utf-8\">",
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">",
      "<meta name=\"generator\" content=\"TVRL Orrelin " + AppInfo::version() + "\">",
      "<title>A &lt;b&gt; &amp; &quot;c&quot;</title>",
      "<link rel=\"stylesheet\" href=\"assets/style.css\">",
      "</head>",
      "<div class=\"grid-bg\"></div>",
      "<header class=\"brandbar\"><span>TVRL Orrelin</span> · by <a "
      "href=\"https://tavrel.works/orrelin\">Tavrel "
      "Works</a> (TVRL)</header>",
      "<main id=\"x\"></main>",
      "<footer class=\"foot\">Inventory generated ",
      " with TVRL Orrelin by <a href=\"https://tavrel.works/orrelin\">Tavrel Works</a> · <a "
      "href=\"https://tavrel.works/orrelin\">tavrel.works</a></footer>",
      "<script src=\"s.js\"></script>",
      "<script src=\"assets/app.js\"></script>",
      "</body>",
      "</html>",
  };
  size_t at = 0;
  for (const std::string& part : parts) {
    size_t found = page.find(part, at);
    ASSERT_NE(found, std::string::npos) << "missing or out of order: " << part << "\n" << page;
    at = found + part.size();
  }
}

}  // namespace
}  // namespace orrelin
