// Text for the inventory web site: names made readable and valid UTF-8, and JSON values written so that a
// data script cannot be broken out of, whatever a file is called.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orrelin::web {

// Returns a stored name as a reader should see it: the raw bytes that the catalog keeps in its reversible
// form (U+EF80–U+EFFF) are restored, and every byte that is not part of valid UTF-8 becomes U+FFFD. The
// result is always valid UTF-8; text that needs neither step comes back unchanged.
std::string displayText(std::string_view stored);

// Appends `text` as a JSON string, made readable as displayText does. Besides what JSON requires, "<", ">"
// and "&" are written as \u escapes (no "</script>" or "<!--" can appear in the output) and so are U+2028
// and U+2029 (line ends to older script engines), so the result is safe inside any script.
void appendJSONString(std::string& out, std::string_view text);

// Appends an integer as JSON, without any fraction.
void appendJSONInt(std::string& out, int64_t value);

// Appends `seconds` rounded to one decimal, in the shortest form that reads back the same ("1.3", "5");
// a value that is not finite is written as 0, since JSON has no such number.
void appendJSONTenths(std::string& out, double seconds);

}  // namespace orrelin::web
