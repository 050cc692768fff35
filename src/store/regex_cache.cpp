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
  // compiled form with the statement, which spares the cache's lock and lookup on each row.
  using Pinned = std::shared_ptr<const icu::RegexPattern>;
  std::shared_ptr<const icu::RegexPattern> expression;
  if (auto* kept = static_cast<Pinned*>(sqlite3_get_auxdata(context, 0)); kept != nullptr) {
    expression = *kept;
  } else {
    expression = cachedRegex(pattern);
    if (expression != nullptr) {
      sqlite3_set_auxdata(context, 0, new Pinned(expression),
                          [](void* p) { delete static_cast<Pinned*>(p); });
    }
  }
  if (expression == nullptr) {
    sqlite3_result_int(context, 0);
    return;
  }
  bool found = regexFindsMatch(expression, std::string_view(text, sqlite3_value_bytes(argv[1])));
  sqlite3_result_int(context, found ? 1 : 0);
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
  icu::RegexMatcher* matcher = matcherFor(expression);
  if (matcher == nullptr) return false;
  UErrorCode status = U_ZERO_ERROR;
  matcher->reset(icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), text.size())));
  bool found = matcher->find(status);
  // U_REGEX_TIME_OUT and every other failure count as no match.
  return U_SUCCESS(status) && found;
}

void registerRegexpFunction(sqlite3* db) {
  sqlite3_create_function(db, "regexp", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, regexpFunction,
                          nullptr, nullptr);
}

}  // namespace orrelin
