#include "track/track_file.h"

#include <algorithm>

#include "files/input_file.h"
#include "files/whole_file.h"
#include "platform/files.h"
#include "track/file_names.h"
#include "track/track_xml.h"

namespace vgps {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kLibraryRoot = "root";

// `freePath()` returns an unused path each time, because another program may have taken the
// previous one.
template <class FreePath>
TrackSaving save(FreePath freePath, std::string_view text, const ExclusiveOpener& open) {
  for (;;) {
    const std::string path = freePath();
    if (path.empty()) return TrackSaving::noFreeName;
    switch (writeFreeFile(path, text, open)) {
      case RenameResult::renamed: return TrackSaving::saved;
      case RenameResult::refused: return TrackSaving::notWritten;
      case RenameResult::taken: break;
    }
  }
}

std::string fileStem(const std::string& path) {
  const std::string stem = withoutExtension(path);
  return stem.substr(stem.find_last_of("/\\") + 1);
}

// The end of a file, without trailing blanks.
std::string tailOf(const std::string& path) {
  constexpr uint64_t kTail = 256;
  std::string tail;
  FileStamp stamp;
  InputFile file(path);
  if (!file || !fileStamp(path, stamp)) return tail;
  const uint64_t size = std::min(stamp.size, kTail);
  file.readAt(stamp.size - size, size, tail);
  tail.erase(tail.find_last_not_of(kBlanks) + 1);
  return tail;
}

// A truncated file ends in the middle of a tag, or after a tag that is not the root's.
bool isComplete(const std::string& path, XmlElement root) {
  const std::string tail = tailOf(path);
  const bool wide = tail.find('\0') != std::string::npos;  // UTF-16, which is never a track file
  if (wide || tail.ends_with("-->")) return true;
  const bool empty = root.GetChildren().begin() == root.GetChildren().end();
  if (empty) return tail.ends_with("/>") || tail.ends_with("</t>");
  return tail.ends_with("</t>");
}

// Finds the track element. In a damaged file its tag may be missing or be inside another one.
XmlElement findTrack(XmlElement root) {
  if (root.storedName() == "t") return root;
  for (const char* name : {"? == \"t\"", "? == \"p\""}) {
    const auto found = root.Query(name);
    if (!found.empty()) return name[6] == 't' ? found.front() : root;
  }
  return {};
}

// If the track's own tag is missing, the first point is the root, and the others are outside of it.
bool putTagBack(const std::string& path, XmlDocument& document) {
  std::string text;
  if (!readWholeFile(path, text)) return false;
  text.insert(0, "<t>");
  return static_cast<bool>(document.Load(text, XmlLoadMode::text));
}

}  // namespace

std::string trackFileText(const Track& track, const RecordingOptions& options) {
  std::string text(kXmlDeclaration);
  text += "\r\n";
  text += trackText(track, options, {}, 0);
  return text;
}

TrackSaving saveTrackFile(Track& track, const std::string& folder, const RecordingOptions& options,
                          const DateTime& local, const ExclusiveOpener& open) {
  if (track.name.empty()) track.name = trackNameFromTime(local);
  const auto freePath = [&] { return freeTrackPath(folder, track.name); };
  const TrackSaving result = save(freePath, trackFileText(track, options), open);
  if (result == TrackSaving::saved) dropWrittenAttachments(track);
  return result;
}

bool writeTrackFile(const Track& track, const std::string& path, const RecordingOptions& options,
                    const ExclusiveOpener& open) {
  return writeWholeFile(path, trackFileText(track, options), open);
}

TrackSaving importTrackFile(XmlElement element, const std::string& folder,
                            const ExclusiveOpener& open) {
  const XmlAttribute name = element.FindAttribute("n");
  XmlDocument document;
  document.SetRootElement(element);
  const XmlBuffer text = document.saveToMemory();
  if (!text) return TrackSaving::notWritten;
  const std::string wanted = name ? name.GetValue() : "Import";
  return save([&] { return freeImportPath(folder, wanted); }, text.view(), open);
}

TrackLoading loadTrackFile(const std::string& path, int32_t speedUnit, Track& track,
                           bool* foreign) {
  XmlDocument document;
  switch (document.Load(path).status) {
    case XmlLoadStatus::loaded: break;
    case XmlLoadStatus::noFile: return TrackLoading::noFile;
    case XmlLoadStatus::unreadable:
    case XmlLoadStatus::tooLarge: return TrackLoading::unreadable;
    default: return TrackLoading::notATrack;
  }
  bool whole = document.GetRootElement().storedName() == "t";
  // A library contains many tracks; do not load just its first one.
  if (document.GetRootElement().storedName() == kLibraryRoot) return TrackLoading::notATrack;
  if (document.GetRootElement().storedName() == "p" && !putTagBack(path, document)) {
    return TrackLoading::notATrack;
  }
  const XmlElement element = findTrack(document.GetRootElement());
  if (!element) return TrackLoading::notATrack;
  Track read;
  whole = readTrack(element, speedUnit, read, foreign) && whole;
  // Any document may contain such elements; it is a track if it has a point or the right root.
  const bool named = document.GetRootElement().storedName() == "t";
  if (!named && read.points.empty()) return TrackLoading::notATrack;
  track.name = std::move(read.name);
  track.startUtc = read.startUtc;
  track.recording = read.recording;
  track.points = std::move(read.points);
  track.attachments = std::move(read.attachments);
  track.pointNames = std::move(read.pointNames);
  if (track.name.empty()) track.name = fileStem(path);
  whole = whole && isComplete(path, element);
  return whole ? TrackLoading::whole : TrackLoading::damaged;
}

}  // namespace vgps
