#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "base/number.h"
#include "geo/units.h"
#include "track/track_xml.h"
#include "xml/escape.h"

namespace vgps {
namespace {

// A long text that is built line by line. Strings of unlimited length (names, paths) bypass the
// line buffer.
class Text {
 public:
  explicit Text(size_t usualSize) { text_.reserve(usualSize); }

  // For short texts and numbers: the line buffer has room for a dozen.
  void add(std::string_view text) { at_ = std::copy(text.begin(), text.end(), at_); }
  // A value that is far out of range comes from noise and could not be read back.
  void number(double value, int decimals) {
    at_ = writeFixed(at_, std::fabs(value) <= kMaxNumber ? value : 0, decimals);
  }
  void number(uint32_t value) { at_ = std::to_chars(at_, line_.end(), value).ptr; }
  void padded(uint32_t value, size_t width) {
    char digits[16];
    const auto length =
        static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, value).ptr - digits);
    if (length < width) at_ = std::fill_n(at_, width - length, '0');
    at_ = std::copy_n(digits, length, at_);
  }
  void time(const DateTime& t) {
    padded(t.day, 2), add("-"), padded(t.month, 2), add("-"), padded(t.year, 4), add(" ");
    padded(t.hour, 2), add(":"), padded(t.minute, 2), add(":"), padded(t.second, 2);
  }

  void addLong(std::string_view text) { endLine(), text_.append(text); }
  void tabs(size_t count) { endLine(), text_.append(count, '\t'); }
  std::string take() {
    endLine();
    return std::move(text_);
  }

 private:
  static constexpr size_t kLine = 12 * kLongestFixedText;

  void endLine() {
    text_.append(line_.data(), static_cast<size_t>(at_ - line_.data()));
    at_ = line_.data();
  }

  std::string text_;
  std::array<char, kLine> line_;
  char* at_ = line_.data();
};

double speedOf(const TrackPoint& point, int32_t unit) {
  return speedInUnit({point.speedKnots, point.speedMps, point.speedKmh, point.speedMph}, unit);
}

// The attachments of one track while they are removed from its list: each is numbered by its index
// among those that remain.
class AttachmentList {
 public:
  explicit AttachmentList(const Track& track)
      : attachments_(track.attachments), taken_(attachments_.size() + 1) {
    for (uint32_t i = 0; i < attachments_.size(); ++i) {
      byPoint_.push_back({attachments_[i].point, i});
    }
    std::sort(byPoint_.begin(), byPoint_.end(), [](const Entry& a, const Entry& b) {
      return a.point != b.point ? a.point < b.point : a.index > b.index;
    });
  }

  // Ask in the order of the points; attachments of omitted points are skipped.
  bool has(size_t point) {
    while (next_ < byPoint_.size() && byPoint_[next_].point < point) ++next_;
    return next_ < byPoint_.size() && byPoint_[next_].point == point;
  }

  // Calls `write(number, path)` for each attachment of `point`, from the last to the first.
  template <class Write>
  void takeOf(size_t point, Write write) {
    for (; has(point); ++next_) {
      const uint32_t index = byPoint_[next_].index;
      write(index - takenBefore(index) + 1, attachments_[index].path);
      take(index);
    }
  }

 private:
  struct Entry {
    uint32_t point, index;
  };

  // Fenwick, "A new data structure for cumulative frequency tables", 1994: entry i counts the
  // removed attachments in a range that ends before i and is as long as the lowest bit of i.
  uint32_t takenBefore(uint32_t index) const {
    uint32_t count = 0;
    for (uint32_t i = index; i > 0; i &= i - 1) count += taken_[i];
    return count;
  }
  void take(uint32_t index) {
    for (size_t i = index + size_t{1}; i < taken_.size(); i += i & (~i + 1)) ++taken_[i];
  }

  const std::vector<TrackAttachment>& attachments_;
  std::vector<uint32_t> taken_;
  std::vector<Entry> byPoint_;
  size_t next_ = 0;
};

class TrackWriter {
 public:
  TrackWriter(const Track& track, const RecordingOptions& options, size_t depth)
      : track_(track),
        options_(options),
        depth_(depth),
        attachments_(track),
        text_(kUsualHead + track.points.size() * usualPoint(options)) {}

  std::string write(std::string_view name) {
    text_.tabs(depth_);
    text_.add("<t");
    if (!name.empty()) text_.add(" n=\""), text_.addLong(escapeXml(name)), text_.add("\"");
    if (track_.startUtc != 0) {
      text_.add(" start=\""), text_.add(isoUtcText(track_.startUtc)), text_.add("\"");
    }
    if (track_.recording != 0) {
      char number[kRecordingDigits + 1];
      std::snprintf(number, sizeof number, "%016llx",
                    static_cast<unsigned long long>(track_.recording));
      text_.add(" recording=\""), text_.add(number), text_.add("\"");
    }
    const bool empty = std::all_of(track_.points.begin(), track_.points.end(), isNowhere);
    text_.add(empty ? "/>\r\n" : ">\r\n");
    for (size_t i = 0; i < track_.points.size(); ++i) {
      if (!isNowhere(track_.points[i])) writePoint(i);
    }
    if (!empty) text_.tabs(depth_), text_.add("</t>\r\n");
    return text_.take();
  }

 private:
  static constexpr size_t kUsualHead = 1000;
  static constexpr size_t kRecordingDigits = 16;
  static size_t usualPoint(const RecordingOptions& options) {
    return options.recordTime || options.recordSpeed || options.recordCourse ? 112 : 64;
  }

  static bool isNowhere(const TrackPoint& point) {
    return !isPosition(point.longitude, point.latitude);
  }

  void writePoint(size_t index) {
    const TrackPoint& point = track_.points[index];
    text_.tabs(depth_ + 1);
    text_.add("<p x=\""), text_.number(point.longitude, 6);
    text_.add("\" y=\""), text_.number(point.latitude, 6);
    text_.add("\" z=\""), text_.number(point.altitude, 6);
    if (point.s != 0) text_.add("\" s=\""), text_.number(point.s);
    if (options_.recordCell) text_.add("\" c=\""), text_.number(point.c);
    if (options_.recordSpeed) {
      text_.add("\" spd=\""), text_.number(speedOf(point, options_.speedUnit), 2);
    }
    if (options_.recordTime && isCalendarTime(point.localTime))
      text_.add("\" time=\""), text_.time(point.localTime);
    if (options_.recordCourse) text_.add("\" br=\""), text_.number(point.course, 1);
    if (point.m != 0) text_.add("\" m=\""), text_.number(point.m);
    const std::string_view name = pointName(track_, point);
    if (!name.empty()) text_.add("\" n=\""), text_.addLong(escapeXml(name));
    if (options_.recordTime && point.receiverUtc != 0) {
      text_.add("\" utc=\""), text_.add(isoUtcText(point.receiverUtc));
    }
    writeUnknown(point);
    if (attachments_.has(index)) {
      writeAttachments(index);
    } else {
      text_.add("\"/>\r\n");
    }
  }

  void writeUnknown(const TrackPoint& point) {
    std::string_view before = "\" unknown=\"";
    const auto name = [&](bool written, std::string_view attribute) {
      if (written) text_.add(before), text_.add(attribute), before = " ";
    };
    name(!point.altitudeKnown(), "z");
    name(!point.speedKnown() && options_.recordSpeed, "spd");
    name(!point.courseKnown() && options_.recordCourse, "br");
  }

  void writeAttachments(size_t index) {
    text_.add("\">\r\n"), text_.tabs(depth_ + 2), text_.add("<ass>\r\n");
    attachments_.takeOf(index, [this](uint32_t number, const std::string& path) {
      text_.tabs(depth_ + 3);
      text_.add("<n n=\"Item "), text_.number(number);
      text_.add("\" f=\""), text_.addLong(escapeXml(path)), text_.add("\"/>\r\n");
    });
    text_.tabs(depth_ + 2), text_.add("</ass>\r\n");
    text_.tabs(depth_ + 1), text_.add("</p>\r\n");
  }

  const Track& track_;
  const RecordingOptions& options_;
  const size_t depth_;
  AttachmentList attachments_;
  Text text_;
};

}  // namespace

std::string libraryName(const Track& track, uint32_t number) {
  return track.name.empty() ? "Track " + std::to_string(number) : track.name;
}

std::string trackText(const Track& track, const RecordingOptions& options, std::string_view name,
                      size_t depth) {
  return TrackWriter(track, options, depth).write(name);
}

XmlElement trackElement(XmlDocument& document, const Track& track, const RecordingOptions& options,
                        std::string_view name) {
  return document.createElement(trackText(track, options, name, 0));
}

void dropWrittenAttachments(Track& track) {
  std::erase_if(track.attachments, [&](const TrackAttachment& attachment) {
    if (attachment.point >= track.points.size()) return false;
    const TrackPoint& point = track.points[attachment.point];
    return isPosition(point.longitude, point.latitude);
  });
}

}  // namespace vgps
