// The text operations that rename rules are made of: extensions, case mappings, the capitalized word
// rule, case-insensitive search and replace, and regular-expression replacement with "$1" templates.
// All texts are UTF-8; none of these touch the disk.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class RegexPattern;
U_NAMESPACE_END

namespace orrelin::NameText {

// What follows the last dot of `name`; empty when there is no dot, when the dot is the name's first
// character (".profile") or its last ("notes."). "archive.tar.gz" gives "gz".
std::string pathExtension(std::string_view name);

// `name` without its extension and the dot before it; `name` unchanged when pathExtension is empty.
std::string deletingPathExtension(std::string_view name);

// Full Unicode case mappings in the root locale, so no language's special rules apply: "ß" upper-cases
// to "SS" and "I" lower-cases to "i" (never the dotless "ı").
std::string lowercased(std::string_view text);
std::string uppercased(std::string_view text);

// In each word, a run of characters between white space (blanks, tabs, line breaks), the first letter
// becomes its title-case form and every other character lower case: "hello WORLD" gives "Hello World",
// "o'NEIL" gives "O'neil", "3RD" gives "3Rd". The white space itself is kept as it was.
std::string capitalized(std::string_view text);

// Replaces every occurrence of `find` in `text` by `replacement`, ignoring upper and lower case (full case
// folding, so "STRASSE" finds "straße") and treating composed and decomposed accents alike. A match never
// splits a character from the accents that follow it. Returns `text` unchanged for an empty `find`.
std::string replacingIgnoringCase(std::string_view text, std::string_view find, std::string_view replacement);

// True when `needle` occurs in `text` under the comparison of replacingIgnoringCase; an empty needle
// is found in every text.
bool containsIgnoringCase(std::string_view text, std::string_view needle);

// A compiled regular expression (ICU syntax, no options: case-sensitive unless it says otherwise), or null
// when `pattern` does not compile.
std::shared_ptr<const icu::RegexPattern> compileRegex(std::string_view pattern);

// Replaces every match of `pattern` in `text` by `replacementTemplate`, in which "$0" stands for the whole
// match and "$1" and onwards for its groups ("$12" reads as group 12 only when there are that many groups,
// else as group 1 and a "2"), a group that did not take part is empty, "\" takes the next character
// literally, and a "$" without a digit is itself. Returns nullopt when a match runs past the time limit
// (a pathological pattern), rather than stalling the caller.
std::optional<std::string> regexReplace(const icu::RegexPattern& pattern, std::string_view text,
                                        std::string_view replacementTemplate);

// ICU match-engine steps one name may take in regexReplace before it gives up, a second or so.
inline constexpr int kRenameRegexTimeLimit = 1000;

}  // namespace orrelin::NameText
