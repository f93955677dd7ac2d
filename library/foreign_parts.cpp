#include "library/foreign_parts.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "base/number.h"

namespace vgps {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::array<std::string_view, 10> kOfPoint = {"x",  "y",    "z", "s", "c",
                                                       "br", "time", "n", "m", "spd"};
constexpr std::array<std::string_view, 1> kOfTrack = {"n"};

bool isBlank(std::string_view text) { return text.find_first_not_of(kBlanks) == std::string::npos; }

// One tag, comment or the like, from "<" to behind its end.
struct Piece {
  enum class Kind { open, close, empty, other };
  Kind kind = Kind::other;
  std::string_view name{};
  size_t begin = 0;
  size_t end = 0;
};

// The next piece at or behind `from`; empty at the end of the text.
Piece nextPiece(std::string_view text, size_t from) {
  const size_t begin = text.find('<', from);
  if (begin == std::string_view::npos) return {};
  const std::string_view rest = text.substr(begin);
  std::string_view mark = ">";
  if (rest.starts_with("<!--")) mark = "-->";
  if (rest.starts_with("<![CDATA[")) mark = "]]>";
  const size_t found = text.find(mark, begin);
  if (found == std::string_view::npos) return {};
  Piece piece{.begin = begin, .end = found + mark.size()};
  if (rest.starts_with("<!") || rest.starts_with("<?")) return piece;
  const bool closing = rest.starts_with("</");
  const bool empty = text[found - 1] == '/';
  piece.kind = closing ? Piece::Kind::close : empty ? Piece::Kind::empty : Piece::Kind::open;
  const size_t nameAt = begin + (closing ? 2 : 1);
  piece.name = text.substr(nameAt, text.find_first_of(" \t\r\n/>", nameAt) - nameAt);
  return piece;
}

// `take(name, value, bytes)` for each attribute; the bytes begin with the blanks in front of it.
template <class Take>
void forAttributes(std::string_view tag, Take take) {
  size_t at = tag.find_first_of(kBlanks);
  while (at < tag.size()) {
    const size_t name = tag.find_first_not_of(kBlanks, at);
    const size_t equals = tag.find('=', at);
    if (equals == std::string_view::npos) return;
    const size_t quote = tag.find_first_of("\"'", equals);
    if (quote == std::string_view::npos) return;
    const size_t value = quote + 1;
    const size_t end = tag.find(tag[quote], value);
    if (end == std::string_view::npos) return;
    const size_t nameEnd = std::min(equals, tag.find_first_of(kBlanks, name));
    take(tag.substr(name, nameEnd - name), tag.substr(value, end - value),
         tag.substr(at, end + 1 - at));
    at = end + 1;
  }
}

template <size_t count>
std::string foreignAttributes(std::string_view tag,
                              const std::array<std::string_view, count>& known) {
  std::string foreign;
  forAttributes(tag, [&](std::string_view name, std::string_view, std::string_view bytes) {
    if (std::find(known.begin(), known.end(), name) == known.end()) foreign += bytes;
  });
  return foreign;
}

bool isPoint(std::string_view tag) {
  double x = 0, y = 0;
  forAttributes(tag, [&](std::string_view name, std::string_view value, std::string_view) {
    if (name == "x") x = leadingDouble(value);
    if (name == "y") y = leadingDouble(value);
  });
  return isPosition(x, y);
}

// Goes once over the element. What a track or point holds of its own is passed over, everything
// else is copied.
class PartsReader {
 public:
  explicit PartsReader(std::string_view text) : text_(text) {}

  ForeignParts read() {
    size_t at = text_.find("<t");
    Piece tag = nextPiece(text_, at);
    parts_.track.attributes = foreignAttributes(bytesOf(tag), kOfTrack);
    if (tag.kind != Piece::Kind::open) return std::move(parts_);
    for (at = tag.end; (tag = nextPiece(text_, at)).end != 0 && depth_ != SIZE_MAX; at = tag.end) {
      const std::string_view between = text_.substr(at, tag.begin - at);
      if (!isBlank(between) && !skips()) into().inside += between;
      take(tag);
    }
    return std::move(parts_);
  }

 private:
  std::string_view bytesOf(const Piece& tag) const {
    return text_.substr(tag.begin, tag.end - tag.begin);
  }
  ForeignPart& into() { return inPoint_ ? point_ : parts_.track; }
  bool skips() const { return own_ != 0; }

  // `depth_` counts the open elements in the track.
  void take(const Piece& tag) {
    const bool opens = tag.kind == Piece::Kind::open;
    if (tag.kind == Piece::Kind::close) return close(tag);
    if (depth_ == 0 && tag.name == "p") return beginPoint(tag);
    const bool own = depth_ == 1 && inPoint_ && (tag.name == "ass" || tag.name == "n");
    if (!own && !skips()) into().inside += bytesOf(tag);
    if (opens) ++depth_;
    if (opens && own) own_ = depth_;
  }

  void close(const Piece& tag) {
    if (depth_-- == 0) {  // the track's own: behind it there is nothing
      depth_ = SIZE_MAX;
    } else if (depth_ == 0 && inPoint_) {
      endPoint();
    } else if (skips()) {
      if (depth_ < own_) own_ = 0;
    } else {
      into().inside += bytesOf(tag);
    }
  }

  void beginPoint(const Piece& tag) {
    point_ = {.attributes = foreignAttributes(bytesOf(tag), kOfPoint), .inside = {}};
    keep_ = isPoint(bytesOf(tag));
    inPoint_ = true;
    if (tag.kind == Piece::Kind::empty) return endPoint();
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
  size_t own_ = 0;  // depth in an element of the point's own; 0 outside
  bool inPoint_ = false;
  bool keep_ = false;
};

// The tag with the part in it; `closing` is what ends its element, empty when that still comes.
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
  for (Piece tag = nextPiece(text, 0); tag.end != 0; tag = nextPiece(text, at)) {
    const std::string_view bytes = text.substr(tag.begin, tag.end - tag.begin);
    out += text.substr(at, tag.begin - at);
    at = tag.end;
    const bool opens = tag.kind == Piece::Kind::open || tag.kind == Piece::Kind::empty;
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
