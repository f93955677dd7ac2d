#include "base/number.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace vgps {
namespace {

constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr uint64_t kWholePowersOfTen[] = {1,
                                          10,
                                          100,
                                          1000,
                                          10000,
                                          100000,
                                          1000000,
                                          10000000,
                                          100000000,
                                          1000000000,
                                          10000000000,
                                          100000000000,
                                          1000000000000,
                                          10000000000000,
                                          100000000000000,
                                          1000000000000000};

// For a number that is out of a double's range: whether it is too large, rather than too small. The
// sign of the exponent tells; without an exponent, a nonzero digit before the point.
bool isTooLarge(std::string_view digits) {
  const size_t e = digits.find_first_of("eE");
  if (e != std::string_view::npos) return digits[e + 1] != '-';
  return digits.substr(0, digits.find('.')).find_first_not_of('0') != std::string_view::npos;
}

__extension__ using Wide = unsigned __int128;

// |value| * 10^decimals as a whole number, ties to even, so that the digits match printf's. Returns
// false if the product does not fit.
bool scaleExactly(double value, int decimals, uint64_t& out) {
  constexpr int kMostDecimals = 15;
  constexpr int kMantissaBits = 52;
  const auto bits = std::bit_cast<uint64_t>(value);
  const int exponent = static_cast<int>(bits >> kMantissaBits & 0x7FF);
  if (decimals < 0 || decimals > kMostDecimals || exponent >= 1023 + kMantissaBits) return false;
  const uint64_t fraction = bits & ((uint64_t{1} << kMantissaBits) - 1);
  const uint64_t mantissa = exponent == 0 ? fraction : fraction | uint64_t{1} << kMantissaBits;
  // value = mantissa / 2^shift; the product has at most 53 + 50 bits.
  const int shift = 1023 + kMantissaBits - (exponent == 0 ? 1 : exponent);
  const Wide product = Wide{mantissa} * kWholePowersOfTen[decimals];
  if (shift > 110) {
    out = 0;
    return true;
  }
  const Wide whole = product >> shift;
  const Wide rest = product - (whole << shift);
  const Wide half = Wide{1} << (shift - 1);
  if (whole >> 63 != 0) return false;
  const bool up = rest > half || (rest == half && (whole & 1) != 0);
  out = static_cast<uint64_t>(whole) + (up ? 1 : 0);
  return true;
}

// Writes "-123.456" from the sign, 123456, and 3.
char* writeScaled(char* out, bool negative, uint64_t scaled, int decimals) {
  if (negative) *out++ = '-';
  const uint64_t power = kWholePowersOfTen[decimals];
  out = std::to_chars(out, out + 24, scaled / power).ptr;
  if (decimals == 0) return out;
  *out = '.';
  uint64_t fraction = scaled % power;
  for (int i = decimals; i > 0; --i, fraction /= 10)
    out[i] = static_cast<char>('0' + fraction % 10);
  return out + decimals + 1;
}

double slowDouble(const char* begin, const char* end) {
  double value = 0;
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc::result_out_of_range) return value;
  const std::string_view digits(begin, static_cast<size_t>(result.ptr - begin));
  return isTooLarge(digits) ? std::numeric_limits<double>::infinity() : 0.0;
}

struct Whole {
  uint64_t magnitude = 0;  // the largest possible if there are too many digits
  bool negative = false;
};

// Blanks, a sign, digits.
Whole leadingWhole(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p != end && isBlank(*p)) ++p;
  Whole whole;
  if (p != end && (*p == '-' || *p == '+')) whole.negative = *p++ == '-';
  constexpr uint64_t kSafe = UINT64_MAX / 10 - 1;
  for (; p != end && isDigit(*p); ++p) {
    const auto digit = static_cast<uint64_t>(*p - '0');
    const bool fits = whole.magnitude <= kSafe || (UINT64_MAX - digit) / 10 >= whole.magnitude;
    whole.magnitude = fits ? whole.magnitude * 10 + digit : UINT64_MAX;
  }
  return whole;
}

}  // namespace

int32_t anyLeadingInt(std::string_view text) {
  const int64_t value = leadingInt64(text);
  return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX));
}

int64_t leadingInt64(std::string_view text) {
  const Whole whole = leadingWhole(text);
  constexpr uint64_t kLargest = INT64_MAX;
  if (whole.negative)
    return whole.magnitude > kLargest ? INT64_MIN : -static_cast<int64_t>(whole.magnitude);
  return static_cast<int64_t>(whole.magnitude > kLargest ? kLargest : whole.magnitude);
}

uint64_t leadingUint64(std::string_view text) {
  const Whole whole = leadingWhole(text);
  return whole.negative ? 0 - whole.magnitude : whole.magnitude;
}

double anyLeadingDouble(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p != end && isBlank(*p)) ++p;
  bool negative = false;
  if (p != end && (*p == '-' || *p == '+')) negative = *p++ == '-';
  // The standard library reads the rest, but it also accepts words: require a digit here.
  const char* const first = p != end && *p == '.' ? p + 1 : p;
  if (first == end || !isDigit(*first)) return 0;
  const bool plain = p == text.data();
  const double value =
      plain ? slowDouble(p, end) : leadingDouble({p, static_cast<size_t>(end - p)});
  return negative ? -value : value;
}

bool scanUint16(std::string_view& rest, int width, uint16_t& out) {
  while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
  size_t at = 0;
  const size_t limit =
      rest.size() < static_cast<size_t>(width) ? rest.size() : static_cast<size_t>(width);
  bool negative = false;
  if (at < limit && (rest[at] == '-' || rest[at] == '+')) negative = rest[at++] == '-';
  const size_t firstDigit = at;
  uint32_t value = 0;
  while (at < limit && isDigit(rest[at]))
    value = value * 10 + static_cast<uint32_t>(rest[at++] - '0');
  if (at == firstDigit) return false;
  out = static_cast<uint16_t>(negative ? 0U - value : value);
  rest.remove_prefix(at);
  return true;
}

std::string decimalText(int64_t value) {
  char buffer[24];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string decimalText(uint64_t value) {
  char buffer[24];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

char* writeFixed(char* out, double value, int decimals) {
  uint64_t scaled = 0;
  if (scaleExactly(value, decimals, scaled))
    return writeScaled(out, std::signbit(value), scaled, decimals);
  return std::to_chars(out, out + kLongestFixedText, value, std::chars_format::fixed, decimals).ptr;
}

std::string fixedText(double value, int decimals) {
  char buffer[kLongestFixedText];
  return {buffer, writeFixed(buffer, value, decimals)};
}

std::string shortestText(double value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, result.ptr};
}

}  // namespace vgps
