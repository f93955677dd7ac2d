#include "library/document_layout.h"

#include <zlib.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "track/track_xml.h"

namespace vgps {
namespace {

using Kind = TagMark::Kind;

constexpr const char* kTracksEnd = "\r\n\t</tracks>";

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
    TrackPlace place;
    size_t depth = 0;  // of open elements around it
    bool damaged = false;
  };

  void take(const TagMark& tag) {
    if (tag.textBefore) noteText();
    if (tag.kind == Kind::close) return close(tag);
    if (tag.name == "t" && (track_ || mayHoldTracks())) return beginTrack(tag, false);
    if (!track_ && tag.name == "p" && mayHoldTracks()) beginTrack(tag, true);
    if (!track_) noteOuter(tag);
    if (tag.kind == Kind::open) open_.emplace_back(tag.name);
  }

  // Also where a damaged tag stands in the place of the list's or the track's own.
  bool mayHoldTracks() const { return open_.size() <= 2 || open_[1] == "tracks"; }

  // In a track, between tracks or around them there is none; other elements may have theirs.
  void noteText() {
    if (track_) {
      track_->damaged = true;
    } else if (open_.size() < 2 || open_.back() == "tracks") {
      damaged_ = true;
    }
  }

  void beginTrack(const TagMark& tag, bool headless) {
    if (track_) endTrack(tag.lead, true);
    if (root_.empty()) root_ = tag.name;
    track_ = OpenTrack{.place = {.lead = tag.lead, .begin = tag.begin, .headless = headless},
                       .depth = open_.size(),
                       .damaged = headless};
    if (open_.size() != 2 || open_.back() != "tracks") damaged_ = true;
    tags_.keepFrom(tag.begin);
    if (headless) return;
    const std::string_view text = tags_.kept(tag.begin, tag.end);
    if (std::count(text.begin(), text.end(), '"') % 2 != 0) track_->damaged = true;
    open_.emplace_back("t");
    if (tag.kind == Kind::empty) endTrack(tag.end, false);
  }

  void endTrack(uint64_t end, bool damaged) {
    open_.resize(track_->depth);
    track_->place.end = end;
    const std::string_view text = tags_.kept(track_->place.begin, end);
    track_->place.checksum = checksumOf(text);
    TrackSummary summary = summaryOfText(text, layout_.tracks.size() + 1);
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
    } else if (open_.size() == 1 && tag.name == "tracks") {
      if (tag.kind == Kind::empty) setEnd({tag.end - 2, tag.end, ">", kTracksEnd});
      hasTracks_ = true;
    }
  }

  void close(const TagMark& tag) {
    if (track_ && !closesTrack(tag)) return;
    const auto found = std::find(open_.rbegin(), open_.rend(), tag.name);
    if (found != open_.rbegin()) damaged_ = true;
    if (found == open_.rend()) return;
    open_.erase(found.base() - 1, open_.end());
    if (open_.size() == 1 && tag.name == "tracks") {
      setEnd({tag.lead, tag.lead, "", ""});
    } else if (open_.empty() && !hasTracks_) {
      setEnd({tag.lead, tag.lead, "\r\n\t<tracks>", kTracksEnd});
    }
  }

  // An end tag while a track is open. True when the tag stands for something around it.
  bool closesTrack(const TagMark& tag) {
    if (tag.name == "t") {
      const bool clean = open_.size() == track_->depth + 1 && !track_->place.headless;
      endTrack(tag.end, !clean);
      return false;
    }
    if (tag.name == "tracks" || (tag.name == "root" && root_ == "root")) {
      endTrack(tag.lead, true);
      return true;
    }
    if (open_.size() > track_->depth && open_.back() == tag.name) {
      open_.pop_back();
    } else {
      track_->damaged = true;
    }
    return false;
  }

  void setEnd(EndPlace end) { layout_.end = std::move(end); }

  LibraryState state() const {
    if (tags_.place() == 0 || (root_.empty() && !tags_.isBroken())) return LibraryState::missing;
    const bool oneTrack = root_ == "t" && layout_.tracks.size() == 1 && !layout_.tracks[0].damaged;
    const bool another = !root_.empty() && root_ != "root" && !hasTracks_ && layout_.tracks.empty();
    if (oneTrack || another) return LibraryState::notALibrary;
    return damaged_ ? LibraryState::damaged : LibraryState::whole;
  }

  TagReader tags_;
  DocumentLayout layout_;
  std::vector<std::string> open_;  // the elements around the last tag
  std::optional<OpenTrack> track_;
  std::string root_;  // name of the first element
  bool hasTracks_ = false;
  bool damaged_ = false;
};

}  // namespace

DocumentLayout readLayout(TagReader::Source source) {
  return LayoutReader(std::move(source)).read();
}

uint32_t checksumOf(std::string_view bytes) {
  return static_cast<uint32_t>(
      ::crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

bool parseTrack(std::string_view text, int32_t speedUnit, Track& track) {
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
  return readTrack(element, speedUnit, track) && whole;
}

RecordingOptions writtenAs(std::string_view text) {
  RecordingOptions options;
  options.recordCell = text.find(" c=\"") != std::string_view::npos;
  options.recordSpeed = text.find(" spd=\"") != std::string_view::npos;
  options.recordTime = text.find(" time=\"") != std::string_view::npos;
  options.recordCourse = text.find(" br=\"") != std::string_view::npos;
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
