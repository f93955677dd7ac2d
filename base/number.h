#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Reads and writes numbers independently of the locale: a region with a decimal comma must not
// change the values from a receiver or a file.
namespace vgps {

constexpr bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// The general case of `leadingInt` and `leadingDouble`. Those two are short enough to inline into a
// parser, and call these for any text that does not start with plain digits.
int32_t anyLeadingInt(std::string_view text);
double anyLeadingDouble(std::string_view text);

// The whole number at the start of `text`: blanks, a sign, digits. Returns 0 without digits, and
// the nearest 32-bit value if the number is out of range.
inline int32_t leadingInt(std::string_view text) {
  constexpr size_t kAlwaysInRange = 9;  // digits that always fit 32 bits
  uint32_t value = 0;
  size_t digits = 0;
  for (; digits < text.size() && isDigit(text[digits]); ++digits) {
    value = value * 10 + static_cast<uint32_t>(text[digits] - '0');
  }
  if (digits == 0 || digits > kAlwaysInRange) return anyLeadingInt(text);
  return static_cast<int32_t>(value);
}

// The same in 64 bits. The unsigned version wraps a negative number, like "%llu".
int64_t leadingInt64(std::string_view text);
uint64_t leadingUint64(std::string_view text);

// Powers of ten that a double holds exactly.
inline constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
// A whole number of up to this many digits fits a double exactly, so that dividing it once by an
// exact power of ten rounds correctly (Clinger, "How to read floating point numbers accurately").
inline constexpr size_t kExactDigits = 15;

// The decimal number at the start of `text`: blanks, a sign, digits with an optional point, an
// optional exponent. Returns 0 without a number. Correctly rounded. Words ("nan", "inf") and
// hexadecimal digits do not count as numbers: a receiver that sends them has no value to report.
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

// Reads a whole number of at most `width` characters (including the sign, not the leading blanks)
// from the start of `rest` and advances `rest` past it. Returns false if there is no digit; then
// only the blanks are skipped. A negative or large number wraps to 16 bits, like "%hu" of the C
// library.
bool scanUint16(std::string_view& rest, int width, uint16_t& out);

std::string decimalText(int64_t value);
std::string decimalText(uint64_t value);

// `value` with exactly `decimals` digits after the point (0 to 30), the same digits as printf's
// "%.Nf".
std::string fixedText(double value, int decimals);

// Writes the same text to `out`, which has room for kLongestFixedText bytes. Returns its end.
constexpr size_t kLongestFixedText = 360;
char* writeFixed(char* out, double value, int decimals);

// The shortest text that reads back as the same double.
std::string shortestText(double value);

}  // namespace vgps
