// The file-manager order of names, on an ICU collator.
#include "organize/standard_order.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <cstring>

namespace orrelin {

namespace {

icu::Locale collationLocale() {
  icu::Locale locale = icu::Locale::getDefault();
  // ICU reads LANG=C and C.UTF-8 as en_US_POSIX, whose collation is the byte order of ASCII.
  if (std::strcmp(locale.getVariant(), "POSIX") == 0 || std::strlen(locale.getLanguage()) == 0)
    return icu::Locale::getRoot();
  return locale;
}

icu::UnicodeString toUnicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

}  // namespace

StandardOrder::StandardOrder() {
  UErrorCode status = U_ZERO_ERROR;
  m_collator.reset(icu::Collator::createInstance(collationLocale(), status));
  if (U_FAILURE(status) || !m_collator) {
    status = U_ZERO_ERROR;
    m_collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
  }
  if (!m_collator) return;  // No collation data at all: compare() falls back to the byte order.
  status = U_ZERO_ERROR;
  m_collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
  m_collator->setAttribute(UCOL_STRENGTH, UCOL_TERTIARY, status);
  m_collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
}

StandardOrder::~StandardOrder() = default;

int StandardOrder::compare(std::string_view a, std::string_view b) const {
  if (m_collator) {
    UErrorCode status = U_ZERO_ERROR;
    UCollationResult result =
        m_collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                                icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status);
    if (U_SUCCESS(status) && result != UCOL_EQUAL) return result == UCOL_LESS ? -1 : 1;
  }
  int bytes = a.compare(b);
  return bytes < 0 ? -1 : bytes > 0 ? 1 : 0;
}

std::string StandardOrder::sortKey(std::string_view text) const {
  if (!m_collator) return std::string(text);
  icu::UnicodeString unicode = toUnicode(text);
  std::string key(64, '\0');
  int32_t needed = m_collator->getSortKey(unicode, reinterpret_cast<uint8_t*>(key.data()),
                                          static_cast<int32_t>(key.size()));
  if (needed > static_cast<int32_t>(key.size())) {
    key.resize(static_cast<size_t>(needed));
    needed = m_collator->getSortKey(unicode, reinterpret_cast<uint8_t*>(key.data()), needed);
  }
  // The key ends in a NUL that getSortKey counts; it adds nothing to the order.
  key.resize(needed > 0 ? static_cast<size_t>(needed - 1) : 0);
  return key;
}

int localizedStandardCompare(std::string_view a, std::string_view b) { return StandardOrder().compare(a, b); }

}  // namespace orrelin
