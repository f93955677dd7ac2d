#include "library/foreign_parts.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/number.h"
#include "track/track_xml.h"
#include "xml/tags.h"

namespace vgps {
namespace {

bool isBlank(std::string_view text) {
  return text.find_first_not_of(kXmlBlanks) == std::string::npos;
}

std::string foreignAttributes(std::string_view tag,
                              bool (*isOwn)(std::string_view, std::string_view)) {
  std::string foreign;
  forTagAttributes(tag, [&](std::string_view name, std::string_view value, std::string_view bytes) {
    if (!isOwn(name, value)) foreign += bytes;
  });
  return foreign;
}

bool isPoint(std::string_view tag) {
  double x = 0, y = 0;
  forTagAttributes(tag, [&](std::string_view name, std::string_view value, std::string_view) {
    if (name == "x") x = leadingDouble(value);
    if (name == "y") y = leadingDouble(value);
  });
  return isPosition(x, y);
}

// Scans the element once. Skips the attributes and elements that belong to a track or point and
// copies everything else.
class PartsReader {
 public:
  // Starts at the track's own tag.
  explicit PartsReader(std::string_view text)
      : text_(text.substr(std::min(text.find("<t"), text.size()))) {}

  ForeignParts read() {
    TagReader tags(text_);
    TagMark tag;
    if (!tags.nextPiece(tag)) return {};
    parts_.track.attributes = foreignAttributes(bytesOf(tag), isTrackAttribute);
    if (tag.kind != TagMark::Kind::open) return std::move(parts_);
    for (uint64_t at = tag.end; depth_ != SIZE_MAX && tags.nextPiece(tag); at = tag.end) {
      const std::string_view between = text_.substr(at, tag.begin - at);
      if (!isBlank(between) && !skips()) into().inside += between;
      take(tag);
    }
    return std::move(parts_);
  }

 private:
  std::string_view bytesOf(const TagMark& tag) const {
    return text_.substr(tag.begin, tag.end - tag.begin);
  }
  ForeignPart& into() { return inPoint_ ? point_ : parts_.track; }
  bool skips() const { return own_ != 0; }

  // `depth_` counts the open elements in the track.
  void take(const TagMark& tag) {
    const bool opens = tag.kind == TagMark::Kind::open;
    if (tag.kind == TagMark::Kind::close) return close(tag);
    if (depth_ == 0 && tag.name == "p") return beginPoint(tag);
    const bool own = depth_ == 1 && inPoint_ && (tag.name == "ass" || tag.name == "n");
    if (!own && !skips()) into().inside += bytesOf(tag);
    if (opens) ++depth_;
    if (opens && own) own_ = depth_;
  }

  void close(const TagMark& tag) {
    if (depth_-- == 0) {  // the end of the track itself: nothing follows
      depth_ = SIZE_MAX;
    } else if (depth_ == 0 && inPoint_) {
      endPoint();
    } else if (skips()) {
      if (depth_ < own_) own_ = 0;
    } else {
      into().inside += bytesOf(tag);
    }
  }

  void beginPoint(const TagMark& tag) {
    point_ = {.attributes = foreignAttributes(bytesOf(tag), isPointAttribute), .inside = {}};
    keep_ = isPoint(bytesOf(tag));
    inPoint_ = true;
    if (tag.kind == TagMark::Kind::empty) return endPoint();
    ++depth_;
  }

  void endPoint() {
    if (keep_) parts_.points.push_back(std::move(point_));
    inPoint_ = false;
  }

  const std::string_view text_;
  ForeignParts parts_;
  ForeignPart point_;
  size_t depth_ = 0;
  size_t own_ = 0;  // depth inside one of the point's own elements; 0 outside
  bool inPoint_ = false;
  bool keep_ = false;
};

// Appends the tag with the foreign part added. `closing` ends its element; empty if the end tag is
// written later.
void addWithPart(std::string& out, std::string_view tag, const ForeignPart& part,
                 std::string_view closing) {
  const bool empty = tag.ends_with("/>");
  const std::string_view end = empty ? "/>" : ">";
  out.append(tag.substr(0, tag.size() - end.size())).append(part.attributes);
  if (part.inside.empty()) {
    out += end;
  } else {
    out.append(">").append(part.inside);
    if (empty) out += closing;
  }
}

}  // namespace

void takeForeignParts(std::string_view text, Track& track, ForeignParts& parts) {
  ForeignParts found = PartsReader(text).read();
  found.points.resize(track.points.size());
  const size_t before = parts.points.size();
  for (size_t i = 0; i < track.points.size(); ++i) {
    track.points[i].fixStatus = static_cast<int32_t>(before + i + 1);
  }
  if (parts.track.attributes.empty()) parts.track.attributes = found.track.attributes;
  parts.track.inside += found.track.inside;
  std::move(found.points.begin(), found.points.end(), std::back_inserter(parts.points));
}

std::string withForeignParts(std::string_view text, const Track& track, const ForeignParts& parts,
                             bool ofTrack) {
  std::string out;
  size_t at = 0;
  size_t point = 0;
  TagReader tags(text);
  for (TagMark tag; tags.nextPiece(tag);) {
    const std::string_view bytes = text.substr(tag.begin, tag.end - tag.begin);
    out += text.substr(at, tag.begin - at);
    at = tag.end;
    const bool opens = tag.kind == TagMark::Kind::open || tag.kind == TagMark::Kind::empty;
    if (opens && tag.name == "t" && ofTrack) {
      addWithPart(out, bytes, parts.track, "</t>");
    } else if (opens && tag.name == "p" && point < track.points.size()) {
      const auto number = static_cast<size_t>(track.points[point++].fixStatus);
      static const ForeignPart kNone;
      const bool known = number > 0 && number <= parts.points.size();
      addWithPart(out, bytes, known ? parts.points[number - 1] : kNone, "</p>");
    } else {
      out += bytes;
    }
  }
  return out.append(text.substr(at));
}

}  // namespace vgps
