#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Reading and writing numbers without the locale: a comma as decimal sign in the user's
// region must never change what a receiver or a file said.
namespace vgps {

constexpr bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// What `leadingInt` and `leadingDouble` say, for any text. They themselves are short enough to
// stand in the middle of a parser, and ask these for whatever does not begin with plain digits.
int32_t anyLeadingInt(std::string_view text);
double anyLeadingDouble(std::string_view text);

// The whole number at the start of `text`: blanks, a sign, digits; 0 when there is none.
// Out of range gives the nearest 32-bit value.
inline int32_t leadingInt(std::string_view text) {
  constexpr size_t kSurelyInRange = 9;  // digits
  uint32_t value = 0;
  size_t digits = 0;
  for (; digits < text.size() && isDigit(text[digits]); ++digits) {
    value = value * 10 + static_cast<uint32_t>(text[digits] - '0');
  }
  if (digits == 0 || digits > kSurelyInRange) return anyLeadingInt(text);
  return static_cast<int32_t>(value);
}

// The same in 64 bits. A negative text wraps in the unsigned one, as "%llu" reads it.
int64_t leadingInt64(std::string_view text);
uint64_t leadingUint64(std::string_view text);

// Powers of ten that a double holds exactly.
inline constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
// Up to this many digits a whole number fits a double exactly, and so one division by an exact
// power of ten is correctly rounded (Clinger, "How to read floating point numbers accurately").
inline constexpr size_t kExactDigits = 15;

// The decimal number at the start of `text`: blanks, a sign, digits with an optional point, an
// optional exponent; 0 when there is none. Correctly rounded. Words ("nan", "inf") and
// hexadecimal digits are not numbers here: a receiver that sends them has no value to report.
inline double leadingDouble(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  uint64_t mantissa = 0;
  for (; p != end && isDigit(*p); ++p) mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
  size_t digits = static_cast<size_t>(p - text.data());
  size_t decimals = 0;
  if (p != end && *p == '.') {
    const char* const point = ++p;
    for (; p != end && isDigit(*p); ++p) mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
    decimals = static_cast<size_t>(p - point);
    digits += decimals;
  }
  const bool exponent = p != end && (*p == 'e' || *p == 'E');
  if (digits == 0 || digits > kExactDigits || exponent) return anyLeadingDouble(text);
  const auto value = static_cast<double>(mantissa);
  return decimals == 0 ? value : value / kPowersOfTen[decimals];
}

// Reads at most `width` characters (a sign counts, leading blanks do not) as a whole number from
// the start of `rest` and moves `rest` behind it. False, `rest` past the blanks, when there is no
// digit. A negative or large number wraps into 16 bits, like "%hu" of the C library does.
bool scanUint16(std::string_view& rest, int width, uint16_t& out);

std::string decimalText(int64_t value);
std::string decimalText(uint64_t value);

// `value` with exactly `decimals` digits after the point (0 to 30): the digits of printf's "%.Nf".
std::string fixedText(double value, int decimals);

// The same into `out`, which has room for kLongestFixedText bytes; the end of what was written.
constexpr size_t kLongestFixedText = 360;
char* writeFixed(char* out, double value, int decimals);

// The shortest text that reads back as the same double.
std::string shortestText(double value);

}  // namespace vgps
