// Compiled regular expressions shared by every connection, and the SQL function REGEXP built on them.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <unicode/regex.h>

struct sqlite3;

namespace orrelin {

// The compiled, case-insensitive form of `pattern` (ICU syntax), or null when it does not compile.
// Process-wide and thread-safe; failures are not cached. When more than 64 patterns are held, the next
// new one empties the cache first, so it never holds more than 65.
std::shared_ptr<const icu::RegexPattern> cachedRegex(const std::string& pattern);

// Number of patterns the cache holds now.
size_t regexCacheSize();

// True when `expression` finds a match anywhere in the UTF-8 `text`. A match that runs past the time
// limit counts as no match, so a pathological pattern cannot stall a query over many names.
bool regexFindsMatch(const std::shared_ptr<const icu::RegexPattern>& expression, std::string_view text);

// Registers regexp(pattern, text) on `db`, so that SQL's `text REGEXP pattern` works. A bad pattern or a
// NULL matches nothing. After kTimeoutsPerStatement timed-out matches in one statement, the remaining rows
// of that statement count as no match without being tried.
void registerRegexpFunction(sqlite3* db);

// The match time limit, in ICU's match-engine steps (each roughly a millisecond's worth of work or less).
inline constexpr int32_t kRegexMatchTimeLimit = 20;
// Time-outs after which REGEXP gives up on a pattern for the rest of one statement's rows.
inline constexpr int kTimeoutsPerStatement = 32;

}  // namespace orrelin
