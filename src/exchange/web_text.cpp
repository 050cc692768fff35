// Readable names and script-safe JSON values for the inventory web site.
#include "exchange/web_text.h"

#include <charconv>
#include <cmath>

#include "core/name_mapping.h"

namespace orrelin::web {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Length of the valid UTF-8 sequence that starts at `i` (a byte of 0x80 or above), or 0 when none does.
size_t sequenceLength(std::string_view s, size_t i) {
  auto b = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  unsigned char c = b(i);
  size_t len;
  // The bounds of the second byte, which rule out overlong forms, surrogates and code points above U+10FFFF.
  unsigned char low = 0x80, high = 0xBF;
  if (c >= 0xC2 && c <= 0xDF) {
    len = 2;
  } else if (c >= 0xE0 && c <= 0xEF) {
    len = 3;
    if (c == 0xE0) low = 0xA0;
    if (c == 0xED) high = 0x9F;
  } else if (c >= 0xF0 && c <= 0xF4) {
    len = 4;
    if (c == 0xF0) low = 0x90;
    if (c == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (i + len > s.size() || b(i + 1) < low || b(i + 1) > high) return 0;
  for (size_t k = 2; k < len; ++k) {
    if ((b(i + k) & 0xC0) != 0x80) return 0;
  }
  return len;
}

// True for the first two bytes of U+EF80–U+EFFF, the characters that stand for raw bytes of a name.
bool isMappedByte(std::string_view s, size_t i) {
  return static_cast<unsigned char>(s[i]) == 0xEE && i + 1 < s.size() &&
         (static_cast<unsigned char>(s[i + 1]) & 0xFE) == 0xBE;
}

// `bytes` with every byte outside a valid UTF-8 sequence replaced by U+FFFD.
std::string repaired(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + 8);
  for (size_t i = 0; i < bytes.size();) {
    if (static_cast<unsigned char>(bytes[i]) < 0x80) {
      out += bytes[i++];
    } else if (size_t len = sequenceLength(bytes, i)) {
      out.append(bytes.substr(i, len));
      i += len;
    } else {
      out += kReplacement;
      ++i;
    }
  }
  return out;
}

void appendHex4(std::string& out, unsigned value) {
  static constexpr char kDigits[] = "0123456789abcdef";
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) out += kDigits[(value >> shift) & 0xF];
}

// Appends the escaped body of a JSON string. Returns false, having appended part of it, on a byte that
// needs displayText first: invalid UTF-8, or (unless `readable`) a character that stands for a raw byte.
bool appendEscaped(std::string& out, std::string_view s, bool readable) {
  size_t plain = 0;  // Start of the run of bytes not yet copied, which need no escape.
  for (size_t i = 0; i < s.size();) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c >= 0x80) {
      size_t len = sequenceLength(s, i);
      if (len == 0 || (!readable && isMappedByte(s, i))) return false;
      bool lineEnd = c == 0xE2 && static_cast<unsigned char>(s[i + 1]) == 0x80 &&
                     (static_cast<unsigned char>(s[i + 2]) & 0xFE) == 0xA8;
      if (lineEnd) {
        out.append(s.substr(plain, i - plain));
        appendHex4(out, static_cast<unsigned char>(s[i + 2]) == 0xA8 ? 0x2028 : 0x2029);
        plain = i + len;
      }
      i += len;
      continue;
    }
    if (c >= 0x20 && c != '"' && c != '\\' && c != '<' && c != '>' && c != '&') {
      ++i;
      continue;
    }
    out.append(s.substr(plain, i - plain));
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        appendHex4(out, c);
    }
    plain = ++i;
  }
  out.append(s.substr(plain));
  return true;
}

}  // namespace

std::string displayText(std::string_view stored) {
  bool mapped = false, valid = true;
  for (size_t i = 0; i < stored.size();) {
    if (static_cast<unsigned char>(stored[i]) < 0x80) {
      ++i;
    } else if (size_t len = sequenceLength(stored, i)) {
      mapped = mapped || isMappedByte(stored, i);
      i += len;
    } else {
      valid = false;
      ++i;
    }
  }
  if (mapped && valid) return repaired(NameMapping::toDisk(stored));
  if (!valid) return repaired(stored);  // Not the catalog's own form, so nothing to map back.
  return std::string(stored);
}

void appendJSONString(std::string& out, std::string_view text) {
  size_t start = out.size();
  out += '"';
  if (!appendEscaped(out, text, /*readable=*/false)) {
    out.resize(start + 1);
    appendEscaped(out, displayText(text), /*readable=*/true);
  }
  out += '"';
}

void appendJSONInt(std::string& out, int64_t value) {
  char digits[24];
  auto result = std::to_chars(digits, digits + sizeof digits, value);
  out.append(digits, result.ptr);
}

void appendJSONTenths(std::string& out, double seconds) {
  double tenths = std::round(seconds * 10) / 10;
  if (!std::isfinite(tenths)) tenths = std::isfinite(seconds) ? seconds : 0;
  if (tenths == 0) tenths = 0;  // No "-0".
  char digits[32];
  auto result = std::to_chars(digits, digits + sizeof digits, tenths);
  out.append(digits, result.ptr);
}

}  // namespace orrelin::web
