#include "base/number.h"

#include <charconv>
#include <limits>

namespace vgps {
namespace {

constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Whether the digits from `begin` to `end`, known to be out of a double's range, are too large
// (rather than too small): by the written exponent, or without one by a digit before the point.
bool isTooLarge(std::string_view digits) {
  const size_t e = digits.find_first_of("eE");
  if (e != std::string_view::npos) return digits[e + 1] != '-';
  return digits.substr(0, digits.find('.')).find_first_not_of('0') != std::string_view::npos;
}

double slowDouble(const char* begin, const char* end) {
  double value = 0;
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc::result_out_of_range) return value;
  const std::string_view digits(begin, static_cast<size_t>(result.ptr - begin));
  return isTooLarge(digits) ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

int32_t anyLeadingInt(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p != end && isBlank(*p)) ++p;
  bool negative = false;
  if (p != end && (*p == '-' || *p == '+')) negative = *p++ == '-';
  int64_t value = 0;
  constexpr int64_t kTooLarge = int64_t{1} << 31;
  for (; p != end && isDigit(*p); ++p) {
    value = value * 10 + (*p - '0');
    if (value > kTooLarge) value = kTooLarge;
  }
  if (negative) return static_cast<int32_t>(-value);
  return static_cast<int32_t>(value < kTooLarge ? value : kTooLarge - 1);
}

double anyLeadingDouble(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p != end && isBlank(*p)) ++p;
  bool negative = false;
  if (p != end && (*p == '-' || *p == '+')) negative = *p++ == '-';
  // The rest is left to the library, but for words: a number begins with a digit here.
  const char* const first = p != end && *p == '.' ? p + 1 : p;
  if (first == end || !isDigit(*first)) return 0;
  const double value = slowDouble(p, end);
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

std::string fixedText(double value, int decimals) {
  char buffer[360];  // 309 whole digits of the largest double, the point, the decimals
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  return {buffer, result.ptr};
}

std::string shortestText(double value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, result.ptr};
}

}  // namespace vgps
