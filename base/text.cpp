#include "base/text.h"

#include <cstdint>

namespace vgps {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// Removes the first code point from `rest`. A byte that does not start a valid sequence (truncated,
// overlong, surrogate, beyond the last plane) counts as one U+FFFD.
char32_t takeCodePoint(std::string_view& rest) {
  const auto byteAt = [&](size_t i) { return static_cast<uint8_t>(rest[i]); };
  const uint8_t lead = byteAt(0);
  size_t length = 1;
  char32_t value = lead;
  char32_t least = 0;
  if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, value = lead & 0x07U, least = 0x10000;
  } else if (lead >= 0xE0 && lead < 0xF0) {
    length = 3, value = lead & 0x0FU, least = 0x800;
  } else if (lead >= 0xC2 && lead < 0xE0) {
    length = 2, value = lead & 0x1FU, least = 0x80;
  } else if (lead >= 0x80) {
    value = kReplacement;
  }
  bool good = rest.size() >= length;
  for (size_t i = 1; good && i < length; ++i) {
    good = (byteAt(i) & 0xC0U) == 0x80;
    value = (value << 6) | (byteAt(i) & 0x3FU);
  }
  if (!good || value < least || value > 0x10FFFF || isSurrogate(value)) {
    rest.remove_prefix(1);
    return kReplacement;
  }
  rest.remove_prefix(length);
  return value;
}

}  // namespace

std::u16string utf16FromUtf8(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const char32_t c = takeCodePoint(text);
    if (c < 0x10000) {
      out.push_back(static_cast<char16_t>(c));
    } else {
      out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    }
  }
  return out;
}

std::string utf8FromUtf16(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    const bool pair = c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                      text[i + 1] <= 0xDFFF;
    if (pair) c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
    appendUtf8(out, c);
  }
  return out;
}

void appendUtf8(std::string& out, char32_t codePoint) {
  const char32_t c = codePoint > 0x10FFFF || isSurrogate(codePoint) ? kReplacement : codePoint;
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6)), put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12)), put(0x80 | ((c >> 6) & 0x3F)), put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18)), put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F)), put(0x80 | (c & 0x3F));
  }
}

std::string validUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) appendUtf8(out, takeCodePoint(text));
  return out;
}

std::string_view firstUtf16Units(std::string_view text, size_t count) {
  std::string_view rest = text;
  for (size_t units = 0; !rest.empty();) {
    std::string_view next = rest;
    units += takeCodePoint(next) < 0x10000 ? 1 : 2;
    if (units > count) break;
    rest = next;
  }
  return text.substr(0, text.size() - rest.size());
}

}  // namespace vgps
