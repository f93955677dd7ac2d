#pragma once

#include <string>
#include <string_view>

// Text inside the program is UTF-8. It is converted to UTF-16 only to call Windows.
namespace vgps {

// Each byte that is not valid UTF-8 (noise from a receiver) becomes U+FFFD.
std::u16string utf16FromUtf8(std::string_view text);

// A lone surrogate becomes U+FFFD.
std::string utf8FromUtf16(std::u16string_view text);

// Appends one code point. An invalid one (a surrogate, or beyond 0x10FFFF) becomes U+FFFD.
void appendUtf8(std::string& out, char32_t codePoint);

// `text` with each invalid UTF-8 byte replaced by U+FFFD: safe to print or to put into JSON.
std::string validUtf8(std::string_view text);

// The first `count` UTF-16 units of `text`, without cutting a character in two.
std::string_view firstUtf16Units(std::string_view text, size_t count);

}  // namespace vgps
