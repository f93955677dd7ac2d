#include "formats/exchange.h"

#include <cmath>
#include <limits>

#include "base/number.h"
#include "xml/tags.h"

namespace vgps {
namespace {

// Whether `text` starts with `word`, ignoring case.
bool beginsWith(std::string_view text, std::string_view word) {
  if (text.size() < word.size()) return false;
  for (size_t i = 0; i < word.size(); ++i) {
    if ((text[i] | 0x20) != word[i]) return false;
  }
  return true;
}

bool readDigits(std::string_view& rest, size_t count, uint16_t& value) {
  if (rest.size() < count) return false;
  value = 0;
  for (size_t i = 0; i < count; ++i) {
    if (!isDigit(rest[i])) return false;
    value = static_cast<uint16_t>(value * 10 + (rest[i] - '0'));
  }
  rest.remove_prefix(count);
  return true;
}

bool take(std::string_view& rest, std::string_view anyOf) {
  if (rest.empty() || anyOf.find(rest[0]) == std::string_view::npos) return false;
  rest.remove_prefix(1);
  return true;
}

// "Z", "+02:00", "+0200", or nothing; returns minutes.
bool readOffset(std::string_view rest, int32_t& minutes) {
  minutes = 0;
  if (rest.empty() || take(rest, "Zz")) return true;
  const bool west = rest[0] == '-';
  uint16_t hours = 0;
  uint16_t more = 0;
  if (!take(rest, "+-") || !readDigits(rest, 2, hours)) return false;
  take(rest, ":");
  if (!rest.empty() && !readDigits(rest, 2, more)) return false;
  minutes = (hours * 60 + more) * (west ? -1 : 1);
  return true;
}

char* twoDigits(char* out, unsigned value) {
  *out++ = static_cast<char>('0' + value / 10 % 10);
  *out++ = static_cast<char>('0' + value % 10);
  return out;
}

}  // namespace

double exchangeNumber(std::string_view text, bool& isWord) {
  const double value = leadingDouble(text);
  isWord = false;
  if (value != 0) return value;
  const size_t sign = text.find_first_not_of(kXmlBlanks);
  if (sign == std::string_view::npos) {
    isWord = true;
    return 0;
  }
  text.remove_prefix(sign);
  take(text, "+-");
  if (beginsWith(text, "nan") || beginsWith(text, "inf")) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const bool point = text.size() > 1 && text[0] == '.' && isDigit(text[1]);
  isWord = text.empty() || (!isDigit(text[0]) && !point);
  return value;
}

bool isOnEarth(double longitude, double latitude) {
  return std::fabs(longitude) <= 360 && std::fabs(latitude) <= 90;
}

DateTime isoTime(std::string_view text) {
  DateTime time;
  const bool read =
      readDigits(text, 4, time.year) && take(text, "-") && readDigits(text, 2, time.month) &&
      take(text, "-") && readDigits(text, 2, time.day) && take(text, "Tt ") &&
      readDigits(text, 2, time.hour) && take(text, ":") && readDigits(text, 2, time.minute) &&
      take(text, ":") && readDigits(text, 2, time.second);
  if (!read || !isCalendarTime(time)) return {};
  if (take(text, ".,")) {
    uint16_t scale = 100;
    for (; !text.empty() && isDigit(text[0]); text.remove_prefix(1), scale /= 10) {
      time.millisecond = static_cast<uint16_t>(time.millisecond + scale * (text[0] - '0'));
    }
  }
  int32_t offset = 0;
  if (!readOffset(text, offset)) return {};
  return plusMinutes(time, -offset);
}

char* writeIsoTime(char* out, const DateTime& utc) {
  out = twoDigits(out, utc.year / 100U);
  out = twoDigits(out, utc.year % 100U);
  *out++ = '-';
  out = twoDigits(out, utc.month);
  *out++ = '-';
  out = twoDigits(out, utc.day);
  *out++ = 'T';
  out = twoDigits(out, utc.hour);
  *out++ = ':';
  out = twoDigits(out, utc.minute);
  *out++ = ':';
  out = twoDigits(out, utc.second);
  if (utc.millisecond != 0) {
    *out++ = '.';
    *out++ = static_cast<char>('0' + utc.millisecond / 100 % 10);
    out = twoDigits(out, utc.millisecond % 100U);
  }
  *out++ = 'Z';
  return out;
}

}  // namespace vgps
