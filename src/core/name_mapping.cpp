#include "core/name_mapping.h"

#include <cstdint>

namespace orrelin::NameMapping {

namespace {

constexpr char32_t kEscapeBase = 0xEF80;  // U+EF80 + (byte − 0x80) stands for one raw byte.

// Length of the valid UTF-8 sequence at `i`, and its code point; 0 when the bytes there are not one.
size_t decodeOne(std::string_view s, size_t i, char32_t& cp) {
  auto b = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  unsigned char c = b(i);
  if (c < 0x80) {
    cp = c;
    return 1;
  }
  size_t len;
  char32_t min;
  if (c >= 0xC2 && c <= 0xDF) len = 2, cp = c & 0x1F, min = 0x80;
  else if (c >= 0xE0 && c <= 0xEF) len = 3, cp = c & 0x0F, min = 0x800;
  else if (c >= 0xF0 && c <= 0xF4) len = 4, cp = c & 0x07, min = 0x10000;
  else return 0;
  if (i + len > s.size()) return 0;
  for (size_t k = 1; k < len; ++k) {
    if ((b(i + k) & 0xC0) != 0x80) return 0;
    cp = (cp << 6) | (b(i + k) & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return len;
}

void appendUTF8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

bool isEscape(char32_t cp) { return cp >= kEscapeBase && cp <= kEscapeBase + 0x7F; }

}  // namespace

std::string fromDisk(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  size_t i = 0;
  while (i < bytes.size()) {
    char32_t cp = 0;
    size_t len = decodeOne(bytes, i, cp);
    if (len > 0 && !isEscape(cp)) {
      out.append(bytes.substr(i, len));
      i += len;
      continue;
    }
    // A stray byte, or a real escape character whose bytes must be escaped one by one to stay reversible.
    size_t n = len > 0 ? len : 1;
    for (size_t k = 0; k < n; ++k)
      appendUTF8(out, kEscapeBase + (static_cast<unsigned char>(bytes[i + k]) - 0x80));
    i += n;
  }
  return out;
}

std::string toDisk(std::string_view stored) {
  std::string out;
  out.reserve(stored.size());
  size_t i = 0;
  while (i < stored.size()) {
    char32_t cp = 0;
    size_t len = decodeOne(stored, i, cp);
    if (len == 0) {  // Not produced by fromDisk; pass the byte through unchanged.
      out += stored[i++];
    } else if (isEscape(cp)) {
      out += static_cast<char>(0x80 + (cp - kEscapeBase));
      i += len;
    } else {
      out.append(stored.substr(i, len));
      i += len;
    }
  }
  return out;
}

bool isValidUTF8(std::string_view text) {
  for (size_t i = 0; i < text.size();) {
    char32_t cp;
    size_t len = decodeOne(text, i, cp);
    if (len == 0) return false;
    i += len;
  }
  return true;
}

}  // namespace orrelin::NameMapping
