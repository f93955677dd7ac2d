#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Reading and writing numbers without the locale: a comma as decimal sign in the user's
// region must never change what a receiver or a file said.
namespace vgps {

// The whole number at the start of `text`: blanks, a sign, digits; 0 when there is none.
// Out of range gives the nearest 32-bit value.
int32_t leadingInt(std::string_view text);

// The decimal number at the start of `text`: blanks, a sign, digits with an optional point, an
// optional exponent; 0 when there is none. Correctly rounded. Words ("nan", "inf") and
// hexadecimal digits are not numbers here: a receiver that sends them has no value to report.
double leadingDouble(std::string_view text);

// Reads at most `width` characters (a sign counts, leading blanks do not) as a whole number from
// the start of `rest` and moves `rest` behind it. False, `rest` past the blanks, when there is no
// digit. A negative or large number wraps into 16 bits, like "%hu" of the C library does.
bool scanUint16(std::string_view& rest, int width, uint16_t& out);

// `value` with exactly `decimals` digits after the point (0 to 30): the digits of printf's "%.Nf".
std::string fixedText(double value, int decimals);

// The shortest text that reads back as the same double.
std::string shortestText(double value);

}  // namespace vgps
