// Text operations of rename rules, on ICU.
#include "organize/name_text.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <vector>

namespace orrelin::NameText {

namespace {

icu::UnicodeString toUnicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string toUTF8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

bool isMark(UChar32 c) {
  int8_t type = u_charType(c);
  return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_COMBINING_SPACING_MARK;
}

// A text in its comparison form (case-folded, then canonically decomposed), one code point at a time so
// that every position of the folded text is known to begin a code point of the original, or not.
struct FoldedText {
  icu::UnicodeString folded;
  // For each position of `folded`, and one past its end: the index in the original text of the code point
  // whose form begins there, or -1 inside a form that one code point expanded to ("ß" to "ss").
  std::vector<int32_t> origin;
};

FoldedText fold(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
  FoldedText out;
  out.origin.reserve(static_cast<size_t>(text.length()) + 1);
  for (int32_t i = 0; i < text.length();) {
    UChar32 c = text.char32At(i);
    if (c < 0x80) {
      // Most names are ASCII, whose folded form is its lower case: no per-character ICU calls.
      out.origin.push_back(i);
      out.folded.append(static_cast<char16_t>(c >= u'A' && c <= u'Z' ? c + 32 : c));
      ++i;
      continue;
    }
    icu::UnicodeString form(c);
    form.foldCase(U_FOLD_CASE_DEFAULT);
    if (U_SUCCESS(status)) {
      // Folding never yields text that needs the original neighbours, so one code point is a unit here.
      icu::UnicodeString decomposed = nfd->normalize(form, status);
      if (U_SUCCESS(status)) form = decomposed;
    }
    out.origin.push_back(i);
    out.origin.insert(out.origin.end(), static_cast<size_t>(form.length() - 1), -1);
    out.folded.append(form);
    i += U16_LENGTH(c);
  }
  out.origin.push_back(text.length());
  return out;
}

// The [start, end) ranges of `text` whose folded forms equal that of `find`, from left to right and
// without overlap.
std::vector<std::pair<int32_t, int32_t>> foldedMatches(const icu::UnicodeString& text,
                                                       const icu::UnicodeString& find) {
  std::vector<std::pair<int32_t, int32_t>> matches;
  icu::UnicodeString needle = fold(find).folded;
  if (needle.isEmpty()) return matches;
  FoldedText hay = fold(text);
  int32_t from = 0;
  while (true) {
    int32_t at = hay.folded.indexOf(needle, from);
    if (at < 0) break;
    int32_t end = at + needle.length();
    int32_t start = hay.origin[static_cast<size_t>(at)];
    int32_t stop = hay.origin[static_cast<size_t>(end)];
    // Both ends must fall between whole characters: not inside an expanded form, and not just before an
    // accent that belongs to the last matched letter.
    bool whole = start >= 0 && stop >= 0 && (stop == text.length() || !isMark(text.char32At(stop)));
    if (whole) {
      matches.emplace_back(start, stop);
      from = end;
    } else {
      from = at + 1;
    }
  }
  return matches;
}

// Appends the expansion of `tmpl` for the current match of `matcher` to `out`.
void expandTemplate(const icu::RegexMatcher& matcher, const icu::UnicodeString& tmpl,
                    icu::UnicodeString& out) {
  const int32_t groups = matcher.groupCount();
  for (int32_t i = 0; i < tmpl.length(); ++i) {
    char16_t c = tmpl.charAt(i);
    if (c == u'\\' && i + 1 < tmpl.length()) {
      out.append(tmpl.charAt(++i));
      continue;
    }
    if (c != u'$' || i + 1 >= tmpl.length() || tmpl.charAt(i + 1) < u'0' || tmpl.charAt(i + 1) > u'9') {
      out.append(c);
      continue;
    }
    // The first digit always counts; each further one only while the number still names a group.
    int32_t group = tmpl.charAt(++i) - u'0';
    while (i + 1 < tmpl.length() && tmpl.charAt(i + 1) >= u'0' && tmpl.charAt(i + 1) <= u'9') {
      int32_t longer = group * 10 + (tmpl.charAt(i + 1) - u'0');
      if (longer > groups) break;
      group = longer;
      ++i;
    }
    if (group > groups) continue;
    UErrorCode status = U_ZERO_ERROR;
    int32_t start = matcher.start(group, status);
    if (U_SUCCESS(status) && start >= 0) out.append(matcher.group(group, status));
  }
}

}  // namespace

std::string pathExtension(std::string_view name) {
  size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return std::string(name.substr(dot + 1));
}

std::string deletingPathExtension(std::string_view name) {
  std::string ext = pathExtension(name);
  if (ext.empty()) return std::string(name);
  return std::string(name.substr(0, name.size() - ext.size() - 1));
}

std::string lowercased(std::string_view text) {
  return toUTF8(toUnicode(text).toLower(icu::Locale::getRoot()));
}

std::string uppercased(std::string_view text) {
  return toUTF8(toUnicode(text).toUpper(icu::Locale::getRoot()));
}

std::string capitalized(std::string_view text) {
  const icu::Locale& root = icu::Locale::getRoot();
  icu::UnicodeString in = toUnicode(text), out;
  int32_t i = 0;
  while (i < in.length()) {
    UChar32 c = in.char32At(i);
    if (u_isUWhiteSpace(c)) {
      out.append(c);
      i += U16_LENGTH(c);
      continue;
    }
    int32_t end = i;
    int32_t firstLetter = -1;
    while (end < in.length() && !u_isUWhiteSpace(in.char32At(end))) {
      if (firstLetter < 0 && u_isalpha(in.char32At(end))) firstLetter = end;
      end += U16_LENGTH(in.char32At(end));
    }
    if (firstLetter < 0) {
      out.append(icu::UnicodeString(in, i, end - i).toLower(root));
    } else {
      UChar32 letter = in.char32At(firstLetter);
      int32_t after = firstLetter + U16_LENGTH(letter);
      out.append(icu::UnicodeString(in, i, firstLetter - i).toLower(root));
      // The title-case form of one letter alone: no word breaking is needed for a single character.
      icu::UnicodeString head(letter);
      head.toTitle(nullptr, root, U_TITLECASE_NO_BREAK_ADJUSTMENT);
      out.append(head);
      out.append(icu::UnicodeString(in, after, end - after).toLower(root));
    }
    i = end;
  }
  return toUTF8(out);
}

std::string replacingIgnoringCase(std::string_view text, std::string_view find,
                                  std::string_view replacement) {
  if (find.empty()) return std::string(text);
  icu::UnicodeString source = toUnicode(text);
  auto matches = foldedMatches(source, toUnicode(find));
  if (matches.empty()) return std::string(text);
  icu::UnicodeString with = toUnicode(replacement), out;
  int32_t last = 0;
  for (auto [start, stop] : matches) {
    out.append(source, last, start - last);
    out.append(with);
    last = stop;
  }
  out.append(source, last, source.length() - last);
  return toUTF8(out);
}

bool containsIgnoringCase(std::string_view text, std::string_view needle) {
  if (needle.empty()) return true;
  return !foldedMatches(toUnicode(text), toUnicode(needle)).empty();
}

std::shared_ptr<const icu::RegexPattern> compileRegex(std::string_view pattern) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError where;
  std::shared_ptr<const icu::RegexPattern> compiled(
      icu::RegexPattern::compile(toUnicode(pattern), /*flags=*/0, where, status));
  if (U_FAILURE(status)) return nullptr;
  return compiled;
}

std::optional<std::string> regexReplace(const icu::RegexPattern& pattern, std::string_view text,
                                        std::string_view replacementTemplate) {
  icu::UnicodeString source = toUnicode(text);
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(source, status));
  if (U_FAILURE(status)) return std::string(text);
  matcher->setTimeLimit(kRenameRegexTimeLimit, status);
  icu::UnicodeString tmpl = toUnicode(replacementTemplate), out;
  int32_t last = 0;
  bool any = false;
  while (matcher->find(status)) {
    int32_t start = matcher->start(status), end = matcher->end(status);
    out.append(source, last, start - last);
    expandTemplate(*matcher, tmpl, out);
    last = end;
    any = true;
  }
  // A time-out (or any other failure of the engine) ends find() with an error.
  if (U_FAILURE(status)) return std::nullopt;
  if (!any) return std::string(text);
  out.append(source, last, source.length() - last);
  return toUTF8(out);
}

}  // namespace orrelin::NameText
