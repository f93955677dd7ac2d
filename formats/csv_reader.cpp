#include <array>
#include <cmath>
#include <vector>

#include "base/number.h"
#include "formats/readers.h"
#include "formats/xml_pull.h"

namespace vgps {
namespace {

constexpr size_t kLongestLine = size_t{1} << 20;

enum Column : size_t { kLat, kLon, kEle, kTime, kSpeed, kCourse, kName, kColumns };
constexpr std::string_view kColumnNames[] = {"lat",   "lon",    "ele", "time",
                                             "speed", "course", "name"};
constexpr size_t kNoColumn = SIZE_MAX;

// One line after the other; CR LF, LF and CR end one. A longer one than any table has is cut.
class Lines {
 public:
  explicit Lines(ByteSource source) : source_(std::move(source)), block_(size_t{1} << 16) {}

  // A line break inside of quotes belongs to the value.
  bool next(std::string& line) {
    line.clear();
    bool quoted = false;
    bool any = false;
    for (char c = 0; get(c); any = true) {
      if (c == '"') quoted = !quoted;
      if (c == '\r' && !quoted) {
        if (peek() == '\n') get(c);
        return true;
      }
      if (c == '\n' && !quoted) return true;
      if (line.size() < kLongestLine) line += c;
    }
    return any;
  }

 private:
  bool get(char& c) {
    if (!fill()) return false;
    c = block_[at_++];
    return true;
  }
  int peek() { return fill() ? block_[at_] : -1; }
  bool fill() {
    if (at_ < filled_) return true;
    at_ = 0;
    filled_ = source_(block_.data(), block_.size());
    return filled_ > 0;
  }

  ByteSource source_;
  std::vector<char> block_;
  size_t at_ = 0;
  size_t filled_ = 0;
};

// The values of a line; quotes around one are taken off, a doubled one inside is one.
void splitLine(std::string_view line, char separator, std::vector<std::string>& values) {
  size_t count = 0;
  bool quoted = false;
  const auto value = [&]() -> std::string& {
    if (values.size() <= count) values.emplace_back();
    return values[count];
  };
  value().clear();
  for (size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
      value() += '"';
      ++i;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (c == separator && !quoted) {
      ++count;
      value().clear();
    } else {
      value() += c;
    }
  }
  values.resize(count + 1);
}

class CsvReader {
 public:
  CsvReader(ByteSource source, ExchangeSink& sink, ReadingNotes& notes)
      : lines_(std::move(source)), sink_(sink), notes_(notes) {}

  void read() {
    if (!readHeader()) {
      notes_.end = ReadingEnd::foreign;
      return;
    }
    if (!readRows() || (open_ && !sink_.endPath({}))) notes_.end = ReadingEnd::stopped;
  }

 private:
  bool readHeader() {
    std::string line;
    if (!lines_.next(line)) return false;
    if (line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
    separator_ = line.find(';') != std::string::npos ? ';' : ',';
    splitLine(line, separator_, values_);
    columns_.fill(kNoColumn);
    for (size_t i = 0; i < values_.size(); ++i) {
      std::string& name = values_[i];
      std::erase(name, ' ');
      for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      for (size_t column = 0; column < kColumns; ++column) {
        const bool longer = column <= kLon && name.starts_with(kColumnNames[column]);
        if ((name == kColumnNames[column] || longer) && columns_[column] == kNoColumn) {
          columns_[column] = i;
        }
      }
    }
    notes_.format = ExchangeFormat::csv;
    notes_.root = line.substr(0, 40);
    return columns_[kLat] != kNoColumn && columns_[kLon] != kNoColumn;
  }

  bool readRows() {
    std::string line;
    while (lines_.next(line)) {
      if (line.empty()) {
        if (open_ && !sink_.endPath({})) return false;
        open_ = false;
        continue;
      }
      splitLine(line, separator_, values_);
      if (!readRow()) return false;
    }
    return true;
  }

  std::string_view value(Column column) const {
    const size_t at = columns_[column];
    return at < values_.size() ? std::string_view(values_[at]) : std::string_view();
  }

  void readNumber(Column column, std::optional<double>& into) const {
    bool isWord = false;
    const double number = exchangeNumber(value(column), isWord);
    if (!isWord && std::isfinite(number)) into = number;
  }

  bool readRow() {
    bool latWord = false;
    bool lonWord = false;
    ExchangePoint point;
    point.latitude = exchangeNumber(value(kLat), latWord);
    point.longitude = exchangeNumber(value(kLon), lonWord);
    if (latWord || lonWord) {
      ++notes_.odd;
      return true;
    }
    if (!isOnEarth(point.longitude, point.latitude)) {
      ++notes_.badPositions;
      return true;
    }
    std::optional<double> altitude;
    readNumber(kEle, altitude);
    point.hasAltitude = altitude.has_value();
    point.altitude = altitude.value_or(0);
    point.utc = isoTime(value(kTime));
    readNumber(kSpeed, point.speed);
    readNumber(kCourse, point.course);
    point.name = value(kName);
    point.hasName = !point.name.empty();
    if (!open_ && (!sink_.beginPath(PathKind::track, {}) || !sink_.beginSegment(true))) {
      return false;
    }
    open_ = true;
    return sink_.point(point);
  }

  Lines lines_;
  ExchangeSink& sink_;
  ReadingNotes& notes_;
  char separator_ = ',';
  std::array<size_t, kColumns> columns_{};
  std::vector<std::string> values_;
  bool open_ = false;
};

}  // namespace

void readCsv(ByteSource source, ExchangeSink& sink, ReadingNotes& notes) {
  CsvReader(std::move(source), sink, notes).read();
}

}  // namespace vgps
