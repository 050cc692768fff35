#include "cli/table_text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace orrelin::cli {

size_t displayWidth(std::string_view text) {
  size_t width = 0;
  const auto* s = reinterpret_cast<const uint8_t*>(text.data());
  int32_t i = 0, length = static_cast<int32_t>(text.size());
  while (i < length) {
    UChar32 c;
    U8_NEXT(s, i, length, c);
    if (c < 0) {
      ++width;
      continue;
    }
    int category = u_charType(c);
    if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR) continue;
    int eastAsian = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    width += eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
  }
  return width;
}

std::string cell(std::string_view text, size_t columns) {
  std::string clean;
  for (char c : text) clean += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
  if (displayWidth(clean) <= columns) return clean + std::string(columns - displayWidth(clean), ' ');
  std::string out;
  size_t width = 0;
  const auto* s = reinterpret_cast<const uint8_t*>(clean.data());
  int32_t i = 0, length = static_cast<int32_t>(clean.size());
  while (i < length) {
    int32_t start = i;
    UChar32 c;
    U8_NEXT(s, i, length, c);
    std::string_view piece(clean.data() + start, static_cast<size_t>(i - start));
    size_t w = displayWidth(piece);
    if (width + w > columns - 1) break;
    out += piece;
    width += w;
  }
  return out + "\u2026" + std::string(columns - 1 - width, ' ');
}

std::string padded(std::string_view text, size_t columns) {
  std::string out(text);
  size_t width = displayWidth(text);
  if (width < columns) out.append(columns - width, ' ');
  return out;
}

}  // namespace orrelin::cli
