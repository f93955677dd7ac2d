#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>
#include <vector>

#include "formats/readers.h"

// { "type": "FeatureCollection", "features": [
//     { "type": "Feature",
//       "geometry": { "type": "LineString", "coordinates": [ [11.5, 48.1, 545], ... ] },
//       "properties": { "name": "Ride", "coordTimes": [ "2010-07-15T10:00:00Z", ... ] } } ] }
namespace vgps {
namespace {

constexpr size_t kDeepestJson = 1000;

// The bytes of a source for the parser, one at a time.
class SourceBytes {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  SourceBytes() = default;
  explicit SourceBytes(ByteSource source)
      : state_(std::make_shared<State>(State{std::move(source), std::vector<char>(1 << 16)})) {
    fill();
  }
  reference operator*() const { return state_->block[state_->at]; }
  SourceBytes& operator++() {
    if (++state_->at == state_->filled) fill();
    return *this;
  }
  bool operator==(const SourceBytes&) const { return state_ == nullptr || state_->filled == 0; }
  bool operator!=(const SourceBytes& other) const { return !(*this == other); }

 private:
  struct State {
    ByteSource source;
    std::vector<char> block;
    size_t at = 0;
    size_t filled = 0;
  };
  void fill() {
    state_->at = 0;
    state_->filled = state_->source(state_->block.data(), state_->block.size());
  }
  std::shared_ptr<State> state_;
};

struct JsonPosition {
  double values[3] = {};
  size_t count = 0;
};

struct Geometry {
  std::string type;
  std::vector<std::vector<JsonPosition>> lists;
  bool listOpen = false;
};

// The parser's events. Only what is between one Feature's braces is held.
class GeoJsonReader {
 public:
  GeoJsonReader(ExchangeSink& sink, ReadingNotes& notes) : sink_(sink), notes_(notes) {}

  bool null() { return scalar(); }
  bool boolean(bool) { return scalar(); }
  bool number_integer(int64_t value) { return number(static_cast<double>(value)); }
  bool number_unsigned(uint64_t value) { return number(static_cast<double>(value)); }
  bool number_float(double value, const std::string&) { return number(value); }
  bool binary(std::vector<uint8_t>&) { return scalar(); }

  bool string(std::string& value) {
    if (levels_.empty()) return true;
    const std::string& name = levels_.back().key;
    if (coordinateDepth_ == 0 && name == "type" && !inProperties()) {
      const Level& level = levels_.back();
      if (level.isGeometry && level.geometry < geometries_.size()) {
        geometries_[level.geometry].type = value;
      }
    } else if (inProperties()) {
      property(value);
    }
    return scalar();
  }

  bool start_object(size_t) {
    const std::string key = keyHere();
    if (!push(true)) return false;
    Level& level = levels_.back();
    // A feature, or a geometry without one, begins a new item.
    const bool top = levels_.size() == 1 || key == "features";
    level.isItem = top;
    level.isProperties = key == "properties" || (levels_.size() > 1 && inPropertiesBelow());
    level.isGeometry = !level.isProperties && (key == "geometry" || key == "geometries" || top);
    if (level.isItem) clearItem();
    level.geometry = geometries_.size();
    if (level.isGeometry) geometries_.emplace_back();
    return true;
  }

  bool key(std::string& value) {
    levels_.back().key = value;
    return true;
  }

  bool end_object() {
    const bool item = levels_.back().isItem;
    levels_.pop_back();
    if (item && !hand()) return stopped_ = true, false;
    return true;
  }

  bool start_array(size_t) {
    const std::string& name = keyHere();
    const bool coordinates = name == "coordinates" && !inProperties() && !levels_.empty() &&
                             !geometries_.empty() && nearestObjectIsGeometry();
    if (!push(false)) return false;
    levels_.back().key = name;
    if (coordinates || coordinateDepth_ > 0) {
      ++coordinateDepth_;
      position_ = {};
    }
    return true;
  }

  bool end_array() {
    levels_.pop_back();
    if (coordinateDepth_ == 0) return true;
    --coordinateDepth_;
    Geometry& geometry = geometries_.back();
    if (position_.count > 0) {
      if (!geometry.listOpen) geometry.lists.emplace_back();
      geometry.listOpen = true;
      geometry.lists.back().push_back(position_);
      position_ = {};
    } else {
      geometry.listOpen = false;
    }
    return true;
  }

  bool parse_error(size_t place, const std::string&, const nlohmann::detail::exception&) {
    notes_.damage = XmlDamage::cutOff;
    notes_.damageOffset = place;
    return false;
  }

  bool stopped() const { return stopped_; }
  bool anyItem() const { return anyItem_; }

 private:
  struct Level {
    bool isObject = false;
    bool isItem = false;
    bool isGeometry = false;
    bool isProperties = false;
    size_t geometry = 0;  // place among those of the item
    std::string key{};    // that comes next, or under which an array stands
  };

  bool push(bool isObject) {
    if (levels_.size() >= kDeepestJson) return false;
    levels_.push_back({.isObject = isObject});
    return true;
  }
  std::string keyHere() const { return levels_.empty() ? std::string() : levels_.back().key; }
  bool scalar() { return levels_.size() < kDeepestJson; }

  bool inProperties() const {
    return std::any_of(levels_.begin(), levels_.end(),
                       [](const Level& level) { return level.isProperties; });
  }
  bool inPropertiesBelow() const {
    return std::any_of(levels_.begin(), levels_.end() - 1,
                       [](const Level& level) { return level.isProperties; });
  }
  bool nearestObjectIsGeometry() const {
    for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) {
      if (level->isObject) return level->isGeometry;
    }
    return false;
  }

  bool number(double value) {
    if (coordinateDepth_ > 0) {
      if (position_.count < std::size(position_.values)) position_.values[position_.count] = value;
      ++position_.count;
    } else if (inProperties()) {
      const std::string& name = levels_.back().key;
      if (name == "speed") speed_ = value;
      if (name == "course") course_ = value;
    }
    return true;
  }

  void property(const std::string& value) {
    const std::string& name = levels_.back().key;
    if (name == "name" && levels_.back().isObject) name_ = value;
    if (name == "time") time_ = isoTime(value);
    if (name == "coordTimes" || name == "times") times_.push_back(isoTime(value));
  }

  void clearItem() {
    geometries_.clear();
    times_.clear();
    name_.clear();
    time_ = {};
    speed_.reset(), course_.reset();
  }

  bool place(const JsonPosition& from, ExchangePoint& point) {
    point = {};
    point.longitude = from.values[0];
    point.latitude = from.values[1];
    point.hasAltitude = from.count > 2;
    point.altitude = from.values[2];
    if (from.count < 2) {
      ++notes_.odd;
      return false;
    }
    if (!isOnEarth(point.longitude, point.latitude)) {
      ++notes_.badPositions;
      return false;
    }
    return true;
  }

  bool hand() {
    size_t time = 0;
    for (const Geometry& geometry : geometries_) {
      const bool points = geometry.type == "Point" || geometry.type == "MultiPoint";
      if (!geometry.lists.empty()) anyItem_ = true;
      if (points ? !handPoints(geometry) : !handLines(geometry, time)) return false;
    }
    clearItem();
    return true;
  }

  bool handPoints(const Geometry& geometry) {
    for (const auto& list : geometry.lists) {
      for (const JsonPosition& position : list) {
        ExchangePoint point;
        if (!place(position, point)) continue;
        point.name = name_;
        point.hasName = !name_.empty();
        point.utc = time_;
        point.speed = speed_;
        point.course = course_;
        if (!sink_.waypoint(point)) return false;
      }
    }
    return true;
  }

  bool handLines(const Geometry& geometry, size_t& time) {
    if (geometry.lists.empty()) return true;
    if (!sink_.beginPath(PathKind::track, name_)) return false;
    for (const auto& list : geometry.lists) {
      if (!sink_.beginSegment(true)) return false;
      for (const JsonPosition& position : list) {
        ExchangePoint point;
        const size_t at = time++;
        if (!place(position, point)) continue;
        if (at < times_.size()) point.utc = times_[at];
        if (!sink_.point(point)) return false;
      }
    }
    return sink_.endPath(name_);
  }

  ExchangeSink& sink_;
  ReadingNotes& notes_;
  std::vector<Level> levels_;
  std::vector<Geometry> geometries_;
  size_t coordinateDepth_ = 0;
  JsonPosition position_;
  std::vector<DateTime> times_;
  std::string name_;
  DateTime time_;
  std::optional<double> speed_, course_;
  bool stopped_ = false;
  bool anyItem_ = false;
};

}  // namespace

void readGeoJson(ByteSource source, ExchangeSink& sink, ReadingNotes& notes) {
  notes.format = ExchangeFormat::geojson;
  notes.root = "GeoJSON";
  GeoJsonReader reader(sink, notes);
  SourceBytes begin(std::move(source));
  const bool whole = nlohmann::json::sax_parse(begin, SourceBytes(), &reader);
  if (reader.stopped()) {
    notes.end = ReadingEnd::stopped;
  } else if (!whole) {
    notes.end = ReadingEnd::damaged;
  }
}

}  // namespace vgps
