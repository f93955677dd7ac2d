#pragma once

#include <string>
#include <string_view>

// Text inside the program is UTF-8; Windows takes UTF-16 at the border.
namespace vgps {

// Bytes that are no UTF-8 (a receiver's noise) become U+FFFD, one for each byte.
std::u16string utf16FromUtf8(std::string_view text);

// A lone surrogate becomes U+FFFD.
std::string utf8FromUtf16(std::u16string_view text);

// Appends one code point; anything that is none (surrogates, beyond 0x10FFFF) becomes U+FFFD.
void appendUtf8(std::string& out, char32_t codePoint);

// `text` with every byte that is no UTF-8 replaced by U+FFFD: safe to print or to put into JSON.
std::string validUtf8(std::string_view text);

// The first `count` UTF-16 units of `text`, never cutting a character in two.
std::string_view firstUtf16Units(std::string_view text, size_t count);

}  // namespace vgps
