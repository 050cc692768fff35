// Search modes, hits, and the text rules of a search: trimming and counting user-perceived characters.
#include "search/search_query.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <memory>

namespace orrelin {

namespace {

constexpr std::array<std::string_view, 4> kModeRaw = {"Contains", "Starts With", "Exact Name", "Regex"};

// Trims the code points at both ends of UTF-8 text for which `drop` holds. Bytes that are not valid UTF-8
// are never dropped.
template <class Pred>
std::string trimWhere(std::string_view text, Pred drop) {
  const auto* s = reinterpret_cast<const uint8_t*>(text.data());
  const int32_t length = static_cast<int32_t>(text.size());
  int32_t begin = 0;
  while (begin < length) {
    int32_t next = begin;
    UChar32 c;
    U8_NEXT(s, next, length, c);
    if (c < 0 || !drop(c)) break;
    begin = next;
  }
  int32_t end = length;
  while (end > begin) {
    int32_t previous = end;
    UChar32 c;
    U8_PREV(s, begin, previous, c);
    if (c < 0 || !drop(c)) break;
    end = previous;
  }
  return std::string(text.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin)));
}

}  // namespace

std::string_view rawValue(SearchQuery::Mode mode) { return kModeRaw[static_cast<size_t>(mode)]; }

std::optional<SearchQuery::Mode> searchModeFromRaw(std::string_view text) {
  for (SearchQuery::Mode mode : SearchQuery::allCases) {
    if (rawValue(mode) == text) return mode;
  }
  return std::nullopt;
}

std::string trimWhitespaceAndNewlines(std::string_view text) {
  // Unicode's White_Space: the space separators, line and paragraph separators, tab, the line breaks
  // U+000A to U+000D and NEL.
  return trimWhere(text, [](UChar32 c) { return u_isUWhiteSpace(c) != 0; });
}

std::string trimBlanks(std::string_view text) {
  return trimWhere(text, [](UChar32 c) { return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR; });
}

bool hasAtLeastGraphemes(std::string_view text, int count) {
  if (count <= 0) return true;
  // A grapheme holds at least one byte, so text shorter than `count` bytes cannot reach it, and every
  // cluster of plain ASCII text (except CR LF) is one byte, so the break iterator is only needed otherwise.
  if (static_cast<int>(text.size()) < count) return false;
  bool ascii = true;
  for (char c : text) ascii = ascii && static_cast<unsigned char>(c) < 0x80 && c != '\r';
  if (ascii) return true;

  // A break iterator is costly to make and cannot be shared between threads: one per thread, reused.
  thread_local std::unique_ptr<icu::BreakIterator> iterator;
  UErrorCode status = U_ZERO_ERROR;
  if (iterator == nullptr) {
    iterator.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) {
      iterator.reset();
      return false;
    }
  }
  UText* utext = utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status);
  if (U_FAILURE(status)) {
    utext_close(utext);
    return false;
  }
  iterator->setText(utext, status);
  int seen = 0;
  if (U_SUCCESS(status)) {
    iterator->first();
    while (seen < count && iterator->next() != icu::BreakIterator::DONE) ++seen;
  }
  // The iterator keeps a shallow clone of the UText; point it at nothing before the text goes.
  iterator->setText(icu::UnicodeString());
  utext_close(utext);
  return seen >= count;
}

}  // namespace orrelin

size_t std::hash<orrelin::SearchHit>::operator()(const orrelin::SearchHit& hit) const noexcept {
  size_t h = std::hash<orrelin::FileRecord>()(hit.file);
  return h ^ (std::hash<std::string>()(hit.catalogName) + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2));
}
