#include <nlohmann/json.hpp>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "formats/writers.h"
#include "track/track.h"

namespace vgps {
namespace {

// One Feature a line. Coordinates are written as they come; of a track only the times are held, for
// its property "coordTimes". Whether it has several segments is known at its end: in front of the
// coordinates a blank keeps the place of a second bracket, and the type stands behind them.
class GeoJsonWriter : public ExchangeWriter {
 public:
  GeoJsonWriter(TextSink sink, TextPatch patch) : sink_(std::move(sink)), patch_(std::move(patch)) {
    text_ = "{\"type\":\"FeatureCollection\",\"features\":[";
  }

  bool waypoint(const ExchangePoint& point) override {
    beginFeature();
    text_ += "{\"type\":\"Feature\",\"geometry\":{\"type\":\"Point\",\"coordinates\":";
    position(point);
    text_ += "},\"properties\":{\"name\":" + json(point.name);
    if (point.utc.year != 0)
      text_ += ",\"time\":" + timeText(secondsOf(point.utc) * 1000 + point.utc.millisecond);
    if (point.speed) text_ += ",\"speed\":" + fixedText(*point.speed, 3);
    if (point.course) text_ += ",\"course\":" + fixedText(*point.course, 2);
    text_ += "}}";
    return hand();
  }

  bool beginPath(PathKind kind, std::string_view name) override {
    if (kind == PathKind::route) ++losses_.routes;
    name_ = name;
    beginFeature();
    text_ += "{\"type\":\"Feature\",\"geometry\":{\"coordinates\":";
    bracket_ = handed_ + text_.size();
    text_ += " [";
    segments_ = points_ = 0;
    times_.clear();
    anyTime_ = false;
    segmentEnds_.clear();
    return hand();
  }

  bool beginSegment(bool) override {
    if (segments_ > 0 && points_ == segmentStart_) return true;  // the last one was empty
    if (++segments_ > 1) {
      text_ += "],[";
      segmentEnds_.push_back(points_);
    }
    segmentStart_ = points_;
    return true;
  }

  bool point(const ExchangePoint& point) override {
    if (!isPosition(point.longitude, point.latitude)) {
      ++losses_.noPosition;
      return true;
    }
    if (points_ > segmentStart_) text_ += ',';
    position(point);
    ++points_;
    const bool timed = point.utc.year != 0;
    anyTime_ = anyTime_ || timed;
    times_.push_back(timed ? secondsOf(point.utc) * 1000 + point.utc.millisecond : kNoTime);
    if (point.speed) ++losses_.speeds;
    if (point.course) ++losses_.courses;
    if (!point.name.empty()) ++losses_.pointNames;
    return hand();
  }

  bool endPath(std::string_view name) override {
    if (!name.empty()) name_ = name;
    const bool several = segmentEnds_.size() > 0;
    text_ += several ? "]],\"type\":\"MultiLineString\"}" : "],\"type\":\"LineString\"}";
    text_ += ",\"properties\":{\"name\":" + json(name_);
    if (anyTime_) coordTimes(several);
    text_ += "}}";
    if (several) good_ = flush() && patch_(bracket_, "[");
    return hand();
  }

  bool finish() override {
    text_ += "\n]}\n";
    return flush();
  }

 private:
  static constexpr int64_t kNoTime = INT64_MIN;

  static std::string json(std::string_view text) { return nlohmann::json(validUtf8(text)).dump(); }

  static std::string timeText(int64_t milliseconds) {
    if (milliseconds == kNoTime) return "null";
    DateTime time = dateTimeOf(milliseconds / 1000 - (milliseconds % 1000 < 0 ? 1 : 0));
    time.millisecond = static_cast<uint16_t>((milliseconds % 1000 + 1000) % 1000);
    char text[32];
    return "\"" + std::string(text, writeIsoTime(text, time)) + "\"";
  }

  void beginFeature() {
    text_ += any_ ? ",\n" : "\n";
    any_ = true;
  }

  void position(const ExchangePoint& point) {
    char digits[kLongestFixedText];
    const auto number = [&](double value, int decimals) {
      text_.append(digits, static_cast<size_t>(writeFixed(digits, value, decimals) - digits));
    };
    text_ += '[';
    number(point.longitude, 7), text_ += ',', number(point.latitude, 7);
    if (point.hasAltitude) text_ += ',', number(point.altitude, 3);
    text_ += ']';
  }

  void coordTimes(bool several) {
    text_ += several ? ",\"coordTimes\":[[" : ",\"coordTimes\":[";
    size_t segment = 0;
    for (size_t i = 0; i < times_.size(); ++i) {
      const bool begins = segment < segmentEnds_.size() && segmentEnds_[segment] == i;
      if (begins) ++segment;
      if (i > 0) text_ += begins ? "],[" : ",";
      text_ += timeText(times_[i]);
      hand();
    }
    text_ += several ? "]]" : "]";
  }

  bool hand() {
    constexpr size_t kBuffer = size_t{1} << 18;
    return text_.size() < kBuffer ? good_ : flush();
  }

  bool flush() {
    good_ = good_ && sink_(text_);
    handed_ += text_.size();
    text_.clear();
    return good_;
  }

  TextSink sink_;
  TextPatch patch_;
  std::string text_;
  uint64_t handed_ = 0;
  bool good_ = true;
  bool any_ = false;
  std::string name_;
  uint64_t bracket_ = 0;  // where the blank stands
  uint64_t segments_ = 0;
  uint64_t points_ = 0;
  uint64_t segmentStart_ = 0;
  std::vector<uint64_t> segmentEnds_;
  std::vector<int64_t> times_;  // milliseconds since 1970
  bool anyTime_ = false;
};

}  // namespace

std::unique_ptr<ExchangeWriter> makeGeoJsonWriter(TextSink sink, TextPatch patch) {
  return std::make_unique<GeoJsonWriter>(std::move(sink), std::move(patch));
}

}  // namespace vgps
