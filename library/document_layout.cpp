#include "library/document_layout.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "files/crc32.h"
#include "track/track_xml.h"

namespace vgps {
namespace {

using Kind = TagMark::Kind;

constexpr const char* kTracksEnd = "\r\n\t</tracks>";

// The open elements around the current position, from the root inward.
class OpenElements {
 public:
  void push(std::string_view name) {
    names_.emplace_back(name);
    ++counts_[names_.back()];
  }
  void cutTo(size_t depth) {
    for (; names_.size() > depth; names_.pop_back()) --counts_[names_.back()];
  }
  // How many elements are open outside the innermost one of that name; the whole depth if there is
  // none. Searches only as far as `cutTo` has to go anyway, because damaged data may leave any
  // number of elements open.
  size_t find(std::string_view name) const {
    const auto counted = counts_.find(name);
    if (counted == counts_.end() || counted->second == 0) return depth();
    size_t at = depth() - 1;
    while (names_[at] != name) --at;
    return at;
  }
  size_t depth() const { return names_.size(); }
  bool empty() const { return names_.empty(); }
  const std::string& operator[](size_t depth) const { return names_[depth]; }
  const std::string& innermost() const { return names_.back(); }

 private:
  std::vector<std::string> names_;
  std::map<std::string, size_t, std::less<>> counts_;
};

class LayoutReader {
 public:
  explicit LayoutReader(TagReader::Source source) : tags_(std::move(source)) {}

  DocumentLayout read() {
    TagMark tag;
    while (tags_.next(tag)) take(tag);
    if (track_) endTrack(tags_.place(), true);
    if (!open_.empty() || tags_.isBroken()) damaged_ = true;
    layout_.state = state();
    if (layout_.state == LibraryState::notALibrary) {
      layout_.tracks.clear();
      layout_.places.clear();
    }
    return std::move(layout_);
  }

 private:
  struct OpenTrack {
    TrackRange place;
    size_t depth = 0;  // number of open elements around it
    bool damaged = false;
    std::string tag{};
    TrackSums points{};     // the plain points after its tag
    uint64_t plainEnd = 0;  // end of those points
  };

  void take(const TagMark& tag) {
    if (tag.textBefore) noteText();
    if (tag.kind == Kind::close) return close(tag);
    if (tag.name == "t" && (track_ || mayHoldTracks())) return beginTrack(tag, false);
    if (!track_ && tag.name == "p" && mayHoldTracks()) beginTrack(tag, true);
    if (!track_) noteOuter(tag);
    if (tag.kind != Kind::open) return;
    const bool own = tag.name == "p" || tag.name == "ass" || tag.name == "n";
    if (track_ && !own && foreign_ == kNone) foreign_ = open_.depth();
    open_.push(tag.name);
  }

  // Also true if a damaged tag takes the place of the list's or track's own tag.
  bool mayHoldTracks() const { return open_.depth() <= 2 || open_[1] == "tracks"; }

  // There should be no text in, between, or around tracks; foreign elements may contain text.
  void noteText() {
    if (track_) {
      if (foreign_ == kNone) track_->damaged = true;
    } else if (open_.depth() < 2 || open_.innermost() == "tracks") {
      damaged_ = true;
    }
  }

  void beginTrack(const TagMark& tag, bool missingStartTag) {
    if (track_) endTrack(tag.blanksBegin, true);
    if (root_.empty()) root_ = tag.name;
    track_ = OpenTrack{.place = {.blanksBegin = tag.blanksBegin,
                                 .begin = tag.begin,
                                 .missingStartTag = missingStartTag},
                       .depth = open_.depth(),
                       .damaged = missingStartTag};
    tags_.keepFrom(tag.begin);
    if (missingStartTag) return;
    const std::string_view text = tags_.kept(tag.begin, tag.end);
    if (std::count(text.begin(), text.end(), '"') % 2 != 0) track_->damaged = true;
    open_.push("t");
    if (tag.kind == Kind::empty) return endTrack(tag.end, false);
    track_->tag = text;
    tags_.pass([this](std::string_view bytes) { return readPlainPoints(bytes, track_->points); });
    track_->plainEnd = tags_.place();
  }

  // If there are only plain points between a track's tags, their sums are already known.
  TrackSummary summaryOfTrack(std::string_view text, bool plain) const {
    const size_t number = layout_.tracks.size() + 1;
    if (!plain) return summaryOfText(text, number);
    const TrackSummary head = summaryOfText(track_->tag + "</t>", number);
    if (head.damaged) return summaryOfText(text, number);
    TrackSummary summary = summaryOf(track_->points);
    summary.name = head.name;
    summary.startUtc = head.startUtc;
    summary.recording = head.recording;
    return summary;
  }

  // `blanksBegin` is the start of the blanks before its end tag, if it has one.
  void endTrack(uint64_t end, bool damaged, uint64_t blanksBegin = kNoPlace) {
    open_.cutTo(track_->depth);
    foreign_ = kNone;
    track_->place.end = end;
    const std::string_view text = tags_.kept(track_->place.begin, end);
    track_->place.checksum = crc32Of(text);
    const bool plain = !damaged && !track_->damaged && track_->plainEnd == blanksBegin;
    TrackSummary summary = summaryOfTrack(text, plain);
    summary.damaged = summary.damaged || damaged || track_->damaged;
    if (summary.damaged) damaged_ = true;
    layout_.tracks.push_back(std::move(summary));
    layout_.places.push_back(track_->place);
    track_.reset();
    tags_.release();
  }

  void noteOuter(const TagMark& tag) {
    if (open_.empty()) {
      if (!root_.empty()) damaged_ = true;  // a second root
      if (root_.empty()) root_ = tag.name;
      if (tag.kind == Kind::empty) {
        setEnd({tag.end - 2, tag.end, ">\r\n\t<tracks>",
                std::string(kTracksEnd) + "\r\n</" + root_ + ">"});
      }
    } else if (open_.depth() == 1 && tag.name == "tracks") {
      if (tag.kind == Kind::empty) setEnd({tag.end - 2, tag.end, ">", kTracksEnd});
      hasTracks_ = true;
    } else if (open_.depth() == 1 && (tag.name == "cfg" || tag.name == "Cfg")) {
      holdsSettings_ = true;
    }
  }

  void close(const TagMark& tag) {
    if (track_ && !closesTrack(tag)) return;
    const size_t found = open_.find(tag.name);
    if (found + 1 != open_.depth()) damaged_ = true;
    if (found == open_.depth()) return;
    open_.cutTo(found);
    if (open_.depth() == 1 && tag.name == "tracks") {
      setEnd({tag.blanksBegin, tag.blanksBegin, "", ""});
    } else if (open_.empty()) {
      // Without a list, or with a track after it, a new list is created at the root's end.
      const bool behind = !layout_.places.empty() && layout_.places.back().end > layout_.end.begin;
      if (!hasTracks_ || behind)
        setEnd({tag.blanksBegin, tag.blanksBegin, "\r\n\t<tracks>", kTracksEnd});
    }
  }

  // Handles an end tag while a track is open. Returns true if the tag belongs to something around
  // it.
  bool closesTrack(const TagMark& tag) {
    if (tag.name == "t") {
      const bool clean = open_.depth() == track_->depth + 1 && !track_->place.missingStartTag;
      endTrack(tag.end, !clean, tag.blanksBegin);
      return false;
    }
    if (tag.name == "tracks" || (tag.name == "root" && root_ == "root")) {
      endTrack(tag.blanksBegin, true);
      return true;
    }
    if (open_.depth() > track_->depth && open_.innermost() == tag.name) {
      open_.cutTo(open_.depth() - 1);
      if (open_.depth() <= foreign_) foreign_ = kNone;
    } else {
      track_->damaged = true;
    }
    return false;
  }

  void setEnd(InsertionPoint end) { layout_.end = std::move(end); }

  LibraryState state() const {
    if (tags_.place() == 0 || (root_.empty() && !tags_.isBroken())) return LibraryState::missing;
    const bool oneTrack = root_ == "t" && layout_.tracks.size() == 1 && !layout_.tracks[0].damaged;
    const bool another = !root_.empty() && root_ != "root" && !hasTracks_ && layout_.tracks.empty();
    if (oneTrack || another || holdsSettings_) return LibraryState::notALibrary;
    return damaged_ ? LibraryState::damaged : LibraryState::whole;
  }

  TagReader tags_;
  DocumentLayout layout_;
  OpenElements open_;  // around the current tag
  std::optional<OpenTrack> track_;
  static constexpr size_t kNone = SIZE_MAX;
  static constexpr uint64_t kNoPlace = UINT64_MAX;
  size_t foreign_ = kNone;  // index of the outermost foreign element among those open in a track
  std::string root_;        // name of the root element
  bool hasTracks_ = false;
  bool holdsSettings_ = false;  // this is the program's settings document, not a library
  bool damaged_ = false;
};

// Requires a blank of any kind before the name, since editors put attributes on separate lines.
bool hasAttribute(std::string_view text, std::string_view begin) {
  for (size_t at = text.find(begin); at != std::string_view::npos; at = text.find(begin, at + 1)) {
    if (at > 0 && kXmlBlanks.find(text[at - 1]) != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace

DocumentLayout readLayout(TagReader::Source source) {
  return LayoutReader(std::move(source)).read();
}

bool parseTrack(std::string_view text, int32_t speedUnit, Track& track, bool* foreign) {
  bool found = false;
  XmlDocument document;
  bool whole = static_cast<bool>(document.Load(text, XmlLoadMode::text));
  XmlElement element = document.GetRootElement();
  if (element.storedName() != "t") {
    whole = false;
    const auto inner = element.Query("? == \"t\"");
    if (!inner.empty()) {
      element = inner.front();
    } else {
      document.Load("<t>" + std::string(text), XmlLoadMode::text);
      element = document.GetRootElement();
    }
  }
  return readTrack(element, speedUnit, track, foreign == nullptr ? &found : foreign) && whole;
}

RecordingOptions optionsUsedIn(std::string_view text) {
  RecordingOptions options;
  options.recordCell = hasAttribute(text, "c=\"");
  options.recordSpeed = hasAttribute(text, "spd=\"");
  options.recordTime = hasAttribute(text, "time=\"") || hasAttribute(text, "utc=\"");
  options.recordCourse = hasAttribute(text, "br=\"");
  return options;
}

TrackSummary summaryOfText(std::string_view text, size_t number) {
  Track track;
  const bool whole = parseTrack(text, 0, track);
  TrackSummary summary = summaryOf(track);
  summary.name = libraryName(track, static_cast<uint32_t>(number));
  summary.damaged = !whole;
  return summary;
}

}  // namespace vgps
