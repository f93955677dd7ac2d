#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "base/number.h"
#include "geo/distance.h"
#include "geo/units.h"
#include "track/track_xml.h"

namespace vgps {
namespace {

constexpr bool isOfNumber(char c) {
  return isDigit(c) || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
}

// Requires the whole text to be a decimal number.
bool readNumber(std::string_view text, double& value) {
  const double number = leadingDouble(text);
  if (text.empty() || !std::all_of(text.begin(), text.end(), isOfNumber)) return false;
  if (std::fabs(number) > kMaxNumber) return false;
  value = number;
  return true;
}

bool readNumber(std::string_view text, uint32_t& value) {
  constexpr size_t kMostDigits = 10;
  uint64_t number = 0;
  for (const char c : text) {
    if (!isDigit(c)) return false;
    number = number * 10 + static_cast<uint64_t>(c - '0');
  }
  if (text.empty() || text.size() > kMostDigits || number > UINT32_MAX) return false;
  value = static_cast<uint32_t>(number);
  return true;
}

constexpr std::string_view kTimeForm = "DD-MM-YYYY hh:mm:ss";

bool readTime(std::string_view text, DateTime& time) {
  DateTime read;
  if (!readDateTime(text, kTimeForm, read)) return false;
  // All zeros mean that the point had no time.
  if (!isCalendarTime(read) && read != DateTime{}) return false;
  time = read;
  return true;
}

// "z", "z spd", ...: the names of values as Unknown bits, each at most once.
bool readUnknown(std::string_view text, uint32_t& unknown) {
  uint32_t bits = 0;
  for (bool more = true; more;) {
    const size_t end = text.find(' ');
    const std::string_view name = text.substr(0, end);
    const uint32_t bit = name == "z"     ? uint32_t{kUnknownAltitude}
                         : name == "spd" ? uint32_t{kUnknownSpeed}
                         : name == "br"  ? uint32_t{kUnknownCourse}
                                         : 0U;
    if (bit == 0 || (bits & bit) != 0) return false;
    bits |= bit;
    more = end != std::string_view::npos;
    if (more) text.remove_prefix(end + 1);
  }
  unknown = bits;
  return true;
}

// One speed in all four units; the one that was read stays to its last digit.
void setSpeeds(TrackPoint& point, double value, int32_t unit) {
  double knots = value;
  if (unit == kKmh) knots = value / kKmhPerKnot;
  if (unit == kMps) knots = value / kMpsPerKnot;
  if (unit == kMph) knots = value * kKmPerMile / kKmhPerKnot;
  const Speeds speeds = speedsFromKnots(knots);
  point.speedKnots = unit == kKnots ? value : speeds.knots;
  point.speedMps = unit == kMps ? value : speeds.mps;
  point.speedKmh = unit == kKmh ? value : speeds.kmh;
  point.speedMph = unit == kMph ? value : speeds.mph;
}

constexpr bool isOfName(char c) {
  return static_cast<unsigned char>(c) > '~' || c == '_' || c == ':' || c == '-' || c == '.' ||
         isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

class TrackReader {
 public:
  TrackReader(int32_t speedUnit, Track& track, bool* foreign)
      : speedUnit_(speedUnit), track_(track), foreign_(foreign) {}

  // Finds points at any depth: after a damaged tag they are nested.
  bool read(XmlElement top) {
    const XmlTree& tree = *top.tree();
    uint32_t depth = 0;
    uint32_t at = tree.nextInSubtree(top.index(), top.index(), depth);
    for (; at != kNoRow; at = tree.nextInSubtree(top.index(), at, depth)) {
      if (depth <= foreignDepth_) foreignDepth_ = UINT32_MAX;
      readElement(XmlElement(top.tree(), at), depth);
    }
    return whole_;
  }

 private:
  void readElement(XmlElement element, uint32_t depth) {
    const std::string_view name = element.storedName();
    const bool inForeign = depth > foreignDepth_;
    const bool hasPosition = element.FindAttribute("x") && element.FindAttribute("y");
    if (name == "p" && (!inForeign || hasPosition)) {
      if (depth != 1) whole_ = false;
      readPoint(element);
    } else if (inForeign) {
      return;
    } else if (name == "n") {
      readAttachment(element);
    } else if (name != "ass") {
      foreignDepth_ = depth;
      if (!noteForeign(name) || hasPosition) whole_ = false;  // a point whose name is damaged
    }
  }

  // Returns false if the name counts as damage: foreign names were not requested, or it is noise.
  bool noteForeign(std::string_view name) {
    const bool good = !name.empty() && std::all_of(name.begin(), name.end(), isOfName);
    if (foreign_ == nullptr || !good) return false;
    return *foreign_ = true;
  }

  void readPoint(XmlElement element) {
    TrackPoint point;
    anyPoint_ = true;
    hasX_ = hasY_ = false;
    name_.clear();
    const size_t count = element.GetVariableNum();
    for (size_t i = 0; i < count; ++i) {
      if (!readAttribute(element.GetVariable(i), point)) whole_ = false;
    }
    const bool read = hasX_ && hasY_;
    lastKept_ = read && isPosition(point.longitude, point.latitude);
    if (!lastKept_) {
      if (!read || !isNoPosition(point.longitude, point.latitude)) whole_ = false;
      return;
    }
    track_.points.push_back(point);
    setPointName(track_, track_.points.back(), name_);
  }

  bool readAttribute(const XmlAttribute& attribute, TrackPoint& point) {
    const std::string_view name = attribute.storedName();
    const std::string_view value = attribute.storedValue();
    if (name == "x") return hasX_ = readNumber(value, point.longitude);
    if (name == "y") return hasY_ = readNumber(value, point.latitude);
    if (name == "z") return readNumber(value, point.altitude);
    if (name == "s") return readNumber(value, point.s);
    if (name == "c") return readNumber(value, point.c);
    if (name == "m") return readNumber(value, point.m);
    if (name == "br") return readNumber(value, point.course);
    if (name == "time") return readTime(value, point.localTime);
    if (name == "n") {
      name_ = attribute.GetValue();
      return true;
    }
    if (name == "utc" && readIsoUtc(value, point.receiverUtc)) return true;
    if (name == "unknown" && readUnknown(value, point.unknown)) return true;
    double speed = 0;
    if (name != "spd") return noteForeign(name);
    if (!readNumber(value, speed)) return false;
    setSpeeds(point, speed, speedUnit_);
    return true;
  }

  void readAttachment(XmlElement element) {
    const XmlAttribute file = element.FindAttribute("f");
    if (!file || !anyPoint_) {
      whole_ = false;
    } else if (lastKept_) {
      const auto point = static_cast<uint32_t>(track_.points.size() - 1);
      track_.attachments.push_back({point, file.GetValue()});
    }
  }

  const int32_t speedUnit_;
  Track& track_;
  bool* const foreign_;
  uint32_t foreignDepth_ = UINT32_MAX;  // depth of an open element of another program
  std::string name_;
  bool whole_ = true;
  bool anyPoint_ = false;
  bool hasX_ = false;
  bool hasY_ = false;
  bool lastKept_ = false;
};

// Reads points exactly as TrackWriter writes them, and stops at anything else: this must never
// accept what TrackReader considers damaged.
class PlainPointReader {
 public:
  explicit PlainPointReader(std::string_view text)
      : begin_(text.data()), at_(begin_), end_(begin_ + text.size()) {}

  size_t read(TrackSums& sums) {
    const char* whole = begin_;
    while (readPoint()) {
      sums.add(point_);
      whole = at_;
    }
    return static_cast<size_t>(whole - begin_);
  }

 private:
  bool take(char c) {
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
    return true;
  }

  bool readPoint() {
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\t' || *at_ == '\r' || *at_ == '\n')) ++at_;
    if (!take('<') || !take('p')) return false;
    point_.localTime = {};
    hasX_ = hasY_ = false;
    while (take(' ')) {
      if (!readAttribute()) return false;
    }
    return take('/') && take('>') && hasX_ && hasY_ &&
           isPosition(point_.longitude, point_.latitude);
  }

  bool readAttribute() {
    const char* const name = at_;
    while (at_ != end_ && isOfName(*at_)) ++at_;
    const std::string_view word(name, static_cast<size_t>(at_ - name));
    if (word.empty() || !take('=') || !take('"')) return false;
    double unused = 0;
    if (word == "x") return hasX_ = readDecimal(point_.longitude);
    if (word == "y") return hasY_ = readDecimal(point_.latitude);
    if (word == "time") return readTimeOfPoint();
    if (word == "z" || word == "spd" || word == "br") return readDecimal(unused);
    if (word == "s" || word == "c" || word == "m") return readWhole();
    while (at_ != end_ && *at_ != '"' && *at_ != '<' && *at_ != '>') ++at_;
    return take('"');
  }

  // An optional minus and digits with at most one point, few enough not to overflow.
  bool readDecimal(double& value) {
    constexpr std::ptrdiff_t kMostWhole = 9;
    const bool negative = take('-');
    const char* const digits = at_;
    uint64_t mantissa = readDigits(0);
    const std::ptrdiff_t whole = at_ - digits;
    std::ptrdiff_t decimals = 0;
    if (take('.')) {
      const char* const point = at_;
      mantissa = readDigits(mantissa);
      decimals = at_ - point;
    }
    if (whole == 0 || whole > kMostWhole) return false;
    if (static_cast<size_t>(whole + decimals) > kExactDigits) return false;
    value = static_cast<double>(mantissa) / kPowersOfTen[decimals];
    if (negative) value = -value;
    return take('"');
  }

  uint64_t readDigits(uint64_t value) {
    for (; at_ != end_ && isDigit(*at_); ++at_) {
      value = value * 10 + static_cast<uint64_t>(*at_ - '0');
    }
    return value;
  }

  bool readWhole() {
    const char* const digits = at_;
    while (at_ != end_ && isDigit(*at_)) ++at_;
    uint32_t unused = 0;
    return readNumber({digits, static_cast<size_t>(at_ - digits)}, unused) && take('"');
  }

  bool readTimeOfPoint() {
    if (static_cast<size_t>(end_ - at_) < kTimeForm.size()) return false;
    const std::string_view text(at_, kTimeForm.size());
    at_ += kTimeForm.size();
    // Most points have the same day, hour, and minute as the previous one.
    const size_t minutes = kTimeForm.size() - 2;
    const bool second = isDigit(text[minutes]) && text[minutes] < '6' && isDigit(text.back());
    if (second && text.substr(0, minutes) == std::string_view(minute_)) {
      point_.localTime = time_;
      point_.localTime.second =
          static_cast<uint16_t>(10 * (text[minutes] - '0') + (text.back() - '0'));
      return take('"');
    }
    if (!readTime(text, point_.localTime)) return false;
    time_ = point_.localTime;
    minute_ = time_.year == 0 ? "" : text.substr(0, minutes);
    return take('"');
  }

  const char* const begin_;
  const char* at_;
  const char* const end_;
  TrackPoint point_;
  DateTime time_;       // the last one read
  std::string minute_;  // its text without the seconds
  bool hasX_ = false;
  bool hasY_ = false;
};

constexpr std::string_view kPointAttributes[] = {"x",  "y",    "z", "s", "c",
                                                 "br", "time", "n", "m", "spd"};

}  // namespace

bool isPointAttribute(std::string_view name, std::string_view value) {
  int64_t utc = 0;
  uint32_t unknown = 0;
  if (name == "utc") return readIsoUtc(value, utc);
  if (name == "unknown") return readUnknown(value, unknown);
  return std::find(std::begin(kPointAttributes), std::end(kPointAttributes), name) !=
         std::end(kPointAttributes);
}

// 16 hexadecimal digits.
bool readRecording(std::string_view text, uint64_t& number) {
  constexpr size_t kDigits = 16;
  const char* const end = text.data() + text.size();
  return text.size() == kDigits && std::from_chars(text.data(), end, number, 16).ptr == end;
}

bool isTrackAttribute(std::string_view name, std::string_view value) {
  int64_t utc = 0;
  uint64_t recording = 0;
  return name == "n" || (name == "start" && readIsoUtc(value, utc)) ||
         (name == "recording" && readRecording(value, recording));
}

bool readTrack(XmlElement element, int32_t speedUnit, Track& track, bool* foreign) {
  track.name = element.FindAttribute("n") ? element.FindAttribute("n").GetValue() : std::string();
  track.startUtc = 0;
  if (const XmlAttribute start = element.FindAttribute("start")) {
    readIsoUtc(start.storedValue(), track.startUtc);
  }
  track.recording = 0;
  if (const XmlAttribute recording = element.FindAttribute("recording")) {
    readRecording(recording.storedValue(), track.recording);
  }
  track.points.clear();
  track.attachments.clear();
  track.pointNames.clear();
  return TrackReader(speedUnit, track, foreign).read(element);
}

size_t readPlainPoints(std::string_view text, TrackSums& sums) {
  return PlainPointReader(text).read(sums);
}

}  // namespace vgps
