// The process-wide cache of compiled regular expressions, and REGEXP for SQLite.
#include "store/regex_cache.h"

#include <sqlite3.h>

#include <mutex>
#include <unordered_map>

namespace orrelin {

namespace {

constexpr size_t kCacheLimit = 64;

std::mutex gCacheMutex;
// Under gCacheMutex.
std::unordered_map<std::string, std::shared_ptr<const icu::RegexPattern>> gCache;

// A matcher holds per-match state and cannot be shared between threads, while creating one for every row
// costs an allocation or several. Each thread keeps the matcher of the last pattern it used.
struct ThreadMatcher {
  std::shared_ptr<const icu::RegexPattern> pattern;  // Keeps the pattern alive while the matcher uses it.
  std::unique_ptr<icu::RegexMatcher> matcher;
  // The matcher reads its input in place rather than copying it, so the text must outlive the match.
  icu::UnicodeString input;
};
thread_local ThreadMatcher tMatcher;

icu::RegexMatcher* matcherFor(const std::shared_ptr<const icu::RegexPattern>& expression) {
  if (tMatcher.matcher != nullptr && tMatcher.pattern == expression) return tMatcher.matcher.get();
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::RegexMatcher> matcher(expression->matcher(status));
  if (U_FAILURE(status) || matcher == nullptr) return nullptr;
  matcher->setTimeLimit(kRegexMatchTimeLimit, status);
  tMatcher.matcher = std::move(matcher);
  tMatcher.pattern = expression;
  return tMatcher.matcher.get();
}

enum class Outcome { match, noMatch, timedOut };

Outcome matchOutcome(const std::shared_ptr<const icu::RegexPattern>& expression, std::string_view text) {
  icu::RegexMatcher* matcher = matcherFor(expression);
  if (matcher == nullptr) return Outcome::noMatch;
  UErrorCode status = U_ZERO_ERROR;
  tMatcher.input = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), text.size()));
  matcher->reset(tMatcher.input);
  bool found = matcher->find(status);
  if (status == U_REGEX_TIME_OUT) return Outcome::timedOut;
  return U_SUCCESS(status) && found ? Outcome::match : Outcome::noMatch;
}

// What one statement keeps between its rows: the compiled pattern, and how often it ran out of time.
struct StatementRegex {
  std::string pattern;
  std::shared_ptr<const icu::RegexPattern> expression;
  int timeouts = 0;
};

void regexpFunction(sqlite3_context* context, int argc, sqlite3_value** argv) {
  if (argc != 2) {
    sqlite3_result_int(context, 0);
    return;
  }
  const auto* pattern = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
  if (pattern == nullptr || text == nullptr) {
    sqlite3_result_int(context, 0);
    return;
  }
  // The pattern is almost always the same for every row of a statement: SQLite's auxiliary data keeps the
  // compiled form with the statement, which spares the cache's lock and lookup on each row. SQLite does not
  // always drop that data when the pattern comes from a column, so the text is compared before reuse.
  auto* kept = static_cast<StatementRegex*>(sqlite3_get_auxdata(context, 0));
  if (kept == nullptr || kept->pattern != pattern) {
    std::shared_ptr<const icu::RegexPattern> expression = cachedRegex(pattern);
    if (expression == nullptr) {
      sqlite3_result_int(context, 0);
      return;
    }
    sqlite3_set_auxdata(context, 0, new StatementRegex{pattern, expression},
                        [](void* p) { delete static_cast<StatementRegex*>(p); });
    kept = static_cast<StatementRegex*>(sqlite3_get_auxdata(context, 0));
    if (kept == nullptr) {  // SQLite could not keep it: match this row without the budget.
      bool found = matchOutcome(expression, text) == Outcome::match;
      sqlite3_result_int(context, found ? 1 : 0);
      return;
    }
  }
  // Each match has a time limit, but a pattern that runs out of time on name after name would still
  // spend minutes on a million rows. Past a few time-outs in one statement the pattern is taken for
  // pathological, and the rest of its rows count as no match at once.
  if (kept->timeouts >= kTimeoutsPerStatement) {
    sqlite3_result_int(context, 0);
    return;
  }
  Outcome outcome = matchOutcome(kept->expression, std::string_view(text, sqlite3_value_bytes(argv[1])));
  if (outcome == Outcome::timedOut) ++kept->timeouts;
  sqlite3_result_int(context, outcome == Outcome::match ? 1 : 0);
}

}  // namespace

std::shared_ptr<const icu::RegexPattern> cachedRegex(const std::string& pattern) {
  std::lock_guard guard(gCacheMutex);
  if (auto it = gCache.find(pattern); it != gCache.end()) return it->second;
  UErrorCode status = U_ZERO_ERROR;
  UParseError parseError;
  std::shared_ptr<const icu::RegexPattern> compiled(icu::RegexPattern::compile(
      icu::UnicodeString::fromUTF8(pattern), UREGEX_CASE_INSENSITIVE, parseError, status));
  if (U_FAILURE(status) || compiled == nullptr) return nullptr;
  if (gCache.size() > kCacheLimit) gCache.clear();
  gCache.emplace(pattern, compiled);
  return compiled;
}

size_t regexCacheSize() {
  std::lock_guard guard(gCacheMutex);
  return gCache.size();
}

bool regexFindsMatch(const std::shared_ptr<const icu::RegexPattern>& expression, std::string_view text) {
  return expression != nullptr && matchOutcome(expression, text) == Outcome::match;
}

void registerRegexpFunction(sqlite3* db) {
  sqlite3_create_function(db, "regexp", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, regexpFunction,
                          nullptr, nullptr);
}

}  // namespace orrelin
