#include "base/number.h"
#include "formats/writers.h"
#include "track/track.h"

namespace vgps {
namespace {

// A line for each point and waypoint; an empty one between two tracks, and behind waypoints.
class CsvWriter : public ExchangeWriter {
 public:
  explicit CsvWriter(TextSink sink) : sink_(std::move(sink)) {
    text_ = "lat,lon,ele,time,speed,course,name\r\n";
  }

  bool waypoint(const ExchangePoint& point) override {
    if (points_ && !afterWaypoint_) text_ += "\r\n";
    afterWaypoint_ = true;
    return row(point);
  }

  bool beginPath(PathKind kind, std::string_view name) override {
    if (kind == PathKind::route) ++losses_.routes;
    if (!name.empty()) ++losses_.pathNames;
    if (points_) text_ += "\r\n";
    points_ = afterWaypoint_ = false;
    segments_ = 0;
    return true;
  }

  bool beginSegment(bool) override {
    if (++segments_ > 1) ++losses_.segments;
    return true;
  }

  bool point(const ExchangePoint& point) override {
    if (isPosition(point.longitude, point.latitude)) return row(point);
    ++losses_.noPosition;
    return true;
  }

  bool finish() override { return good_ = good_ && sink_(text_); }

 private:
  bool row(const ExchangePoint& point) {
    constexpr size_t kBuffer = size_t{1} << 18;
    points_ = true;
    number(point.latitude, 7), text_ += ',';
    number(point.longitude, 7), text_ += ',';
    if (point.hasAltitude) number(point.altitude, 3);
    text_ += ',';
    if (point.utc.year != 0) {
      char time[32];
      text_.append(time, static_cast<size_t>(writeIsoTime(time, point.utc) - time));
    }
    text_ += ',';
    if (point.speed) number(*point.speed, 3);
    text_ += ',';
    if (point.course) number(*point.course, 2);
    text_ += ',';
    quoted(point.name);
    text_ += "\r\n";
    if (text_.size() < kBuffer) return good_;
    good_ = good_ && sink_(text_);
    text_.clear();
    return good_;
  }

  void number(double value, int decimals) {
    char digits[kLongestFixedText];
    text_.append(digits, static_cast<size_t>(writeFixed(digits, value, decimals) - digits));
  }

  void quoted(std::string_view name) {
    if (name.find_first_of(",;\"\r\n") == std::string_view::npos) {
      text_ += name;
      return;
    }
    text_ += '"';
    for (const char c : name) text_.append(c == '"' ? 2 : 1, c);
    text_ += '"';
  }

  TextSink sink_;
  std::string text_;
  bool good_ = true;
  bool points_ = false;  // since the last empty line
  bool afterWaypoint_ = false;
  uint64_t segments_ = 0;
};

}  // namespace

std::unique_ptr<ExchangeWriter> makeCsvWriter(TextSink sink) {
  return std::make_unique<CsvWriter>(std::move(sink));
}

}  // namespace vgps
