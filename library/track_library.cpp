#include "library/track_library.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "base/text.h"
#include "files/input_file.h"
#include "library/document_layout.h"
#include "library/document_store.h"
#include "library/folder_store.h"
#include "library/foreign_parts.h"
#include "platform/files.h"
#include "track/editing.h"
#include "track/file_names.h"
#include "track/thinning.h"
#include "track/track_xml.h"
#include "xml/escape.h"
#include "xml/tags.h"

namespace vgps {

// A track of the library with everything needed to rewrite it without losing attributes.
struct Editable {
  Track track;
  RecordingOptions writing;
  ForeignParts foreign{};
};

namespace {

constexpr size_t kDocumentDepth = 2;  // root, tracks

// A valid name: one line of UTF-8 text.
std::string cleanName(std::string_view name) {
  std::string clean = validUtf8(name);
  for (char& c : clean) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  const size_t first = clean.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return clean.substr(first, clean.find_last_not_of(' ') + 1 - first);
}

// The name attribute of a tag. One in single quotes does not count, because the reader does not
// accept those.
std::optional<std::string_view> nameIn(std::string_view tag) {
  std::optional<std::string_view> found;
  forTagAttributes(tag, [&](std::string_view name, std::string_view value, std::string_view bytes) {
    if (name == "n" && bytes.ends_with('"') && !found) found = value;
  });
  return found;
}

// The element with its name replaced; everything else stays unchanged.
std::string renamed(std::string text, const std::string& name) {
  const std::string stored = escapeXml(name);
  const std::optional<std::string_view> old =
      nameIn(std::string_view(text).substr(0, text.find('>')));
  if (old) return text.replace(static_cast<size_t>(old->data() - text.data()), old->size(), stored);
  constexpr size_t kBehindT = 2;  // "<t"
  return text.insert(kBehindT, " n=\"" + stored + "\"");
}

// A file of its own contains a name only if another program added it; that must match the file
// name.
std::string renamedInside(std::string text, const std::string& name) {
  TagReader tags(text);
  for (TagMark tag; tags.next(tag);) {
    if (tag.name != "t" || tag.kind == TagMark::Kind::close) continue;
    const std::string element = text.substr(tag.begin);
    if (!nameIn(std::string_view(element).substr(0, tag.end - tag.begin))) break;
    return text.substr(0, tag.begin) + renamed(element, name);
  }
  return text;
}

void addAttributes(RecordingOptions& writing, const RecordingOptions& other) {
  writing.recordCell = writing.recordCell || other.recordCell;
  writing.recordSpeed = writing.recordSpeed || other.recordSpeed;
  writing.recordTime = writing.recordTime || other.recordTime;
  writing.recordCourse = writing.recordCourse || other.recordCourse;
}

// The first number that no split part has yet.
uint32_t freeSplitNumber(std::span<const TrackSummary> tracks) {
  for (uint32_t number = 1;; ++number) {
    const std::string name = "Split " + std::to_string(number);
    const auto has = [&](const TrackSummary& track) { return track.name == name; };
    if (std::none_of(tracks.begin(), tracks.end(), has)) return number;
  }
}

std::string savedText(XmlElement element) {
  XmlDocument document;
  document.SetRootElement(element);
  const XmlBuffer text = document.saveToMemory();
  return text ? std::string(text.view()) : std::string();
}

// Another program may change the library between reading and writing it.
template <class Change>
LibraryResult whileOthersChange(Change change) {
  constexpr int kAttempts = 10;
  LibraryResult result = LibraryResult::changed;
  for (int i = 0; i < kAttempts && result == LibraryResult::changed; ++i) result = change();
  return result;
}

}  // namespace

RecordingOptions attributesIn(const Track& track) {
  RecordingOptions writing;
  for (const TrackPoint& point : track.points) {
    writing.recordCell = writing.recordCell || point.c != 0;
    writing.recordSpeed = writing.recordSpeed || point.speedKmh != 0;
    writing.recordTime = writing.recordTime || point.localTime.year != 0;
    writing.recordCourse = writing.recordCourse || point.course != 0;
  }
  return writing;
}

std::string trackLibraryPath(std::string_view setting, const std::string& settingsFolder) {
  if (setting.empty()) return pathIn(settingsFolder, kTrackLibraryName);
  const bool drive = setting.size() >= 2 && setting[1] == ':';
  const bool whole = setting[0] == '/' || setting[0] == '\\' || drive;
  return whole ? std::string(setting) : pathIn(settingsFolder, setting);
}

std::string trackFolder(std::string_view setting, const std::string& settingsFolder) {
  const std::string path = trackLibraryPath(setting, settingsFolder);
  if (isFolder(path)) return path;
  const size_t separator = path.find_last_of("/\\");
  return separator == std::string::npos ? "." : path.substr(0, separator);
}

bool isLibraryFile(const std::string& path) {
  constexpr size_t kHead = 4096;  // a declaration and a comment fit
  InputFile file(path);
  FileStamp stamp;
  std::string head;
  if (!file || !fileStamp(path, stamp)) return false;
  file.readAt(0, static_cast<size_t>(std::min<uint64_t>(stamp.size, kHead)), head);
  TagReader tags(head);
  TagMark tag;
  return tags.next(tag) && tag.name == "root" && tag.kind != TagMark::Kind::close;
}

TrackLibrary::TrackLibrary(LibraryDisk disk) : disk_(std::move(disk)) {}
TrackLibrary::~TrackLibrary() = default;
TrackLibrary::TrackLibrary(TrackLibrary&&) noexcept = default;
TrackLibrary& TrackLibrary::operator=(TrackLibrary&&) noexcept = default;

LibraryState TrackLibrary::open(const std::string& path) {
  undo_.clear();
  if (vgps::isFolder(path)) {
    store_ = std::make_unique<FolderStore>(path, disk_);
  } else {
    store_ = std::make_unique<DocumentStore>(path, disk_);
  }
  return store_->refresh();
}

LibraryState TrackLibrary::refresh() {
  return store_ == nullptr ? LibraryState::missing : store_->refresh();
}

bool TrackLibrary::isFolder() const { return store_ != nullptr && store_->isFolder(); }

const std::string& TrackLibrary::path() const {
  static const std::string none;
  return store_ == nullptr ? none : store_->path();
}

LibraryState TrackLibrary::state() const {
  return store_ == nullptr ? LibraryState::missing : store_->state();
}

std::span<const TrackSummary> TrackLibrary::tracks() const {
  if (store_ == nullptr) return {};
  return store_->tracks();
}

const std::string& TrackLibrary::backupPath() const {
  static const std::string none;
  return store_ == nullptr ? none : store_->backupPath();
}

std::string TrackLibrary::message() const {
  return store_ == nullptr ? std::string() : libraryMessage(state(), store_->damagedPath());
}

LibraryResult TrackLibrary::load(size_t index, int32_t speedUnit, Track& track) {
  if (store_ == nullptr) return LibraryResult::notFound;
  TrackText text;
  const LibraryResult result = store_->read(index, text);
  if (result != LibraryResult::done) return result;
  track = {};
  parseTrack(text.text, speedUnit, track);
  track.name = text.name;
  return LibraryResult::done;
}

LibraryResult TrackLibrary::change(const LibraryChange& change) {
  LibraryChange inverse;
  const LibraryResult result = store_->apply(change, inverse);
  if (result == LibraryResult::done) {
    undo_ = std::move(inverse);
    undoRevision_ = store_->revision();
  }
  return result;
}

bool TrackLibrary::canUndo() const {
  return store_ != nullptr && !undo_.empty() && undoRevision_ == store_->revision();
}

LibraryResult TrackLibrary::undo() {
  if (!canUndo()) return LibraryResult::notFound;
  LibraryChange inverse;
  const LibraryResult result = store_->apply(undo_, inverse);
  // After a disk error, the undo can be tried again.
  if (result == LibraryResult::done || result == LibraryResult::changed) undo_.clear();
  return result;
}

TrackText TrackLibrary::rendered(const Track& track, const RecordingOptions& writing,
                                 std::string name) const {
  TrackText text;
  text.text = isFolder() ? trackText(track, writing, {}, 0)
                         : trackText(track, writing, name, kDocumentDepth);
  text.name = std::move(name);
  return text;
}

TrackText TrackLibrary::edited(const Editable& old) const {
  TrackText text = rendered(old.track, old.writing, old.track.name);
  text.text = withForeignParts(text.text, old.track, old.foreign);
  return text;
}

// The last track of a recording; the number of tracks if there is none.
size_t TrackLibrary::indexOf(uint64_t recording) const {
  size_t index = tracks().size();
  if (recording == 0) return index;
  while (index > 0 && tracks()[index - 1].recording != recording) --index;
  return index > 0 ? index - 1 : tracks().size();
}

// Whether the points of a stored track are the first ones of `track`. One that was thinned or split
// meanwhile is not.
bool TrackLibrary::isBeginning(size_t index, const Track& track) {
  constexpr double kWritten = 1e-6;  // degrees
  Track stored;
  if (load(index, 0, stored) != LibraryResult::done) return false;
  if (stored.points.size() > track.points.size()) return false;
  const auto isSame = [](const TrackPoint& a, const TrackPoint& b) {
    return std::fabs(a.longitude - b.longitude) < kWritten &&
           std::fabs(a.latitude - b.latitude) < kWritten;
  };
  return std::equal(stored.points.begin(), stored.points.end(), track.points.begin(), isSame);
}

LibraryResult TrackLibrary::add(Track& track, const RecordingOptions& options,
                                const DateTime& local) {
  if (store_ == nullptr) return LibraryResult::notFound;
  return whileOthersChange([&] { return addOnce(track, options, local); });
}

LibraryResult TrackLibrary::addOnce(Track& track, const RecordingOptions& options,
                                    const DateTime& local) {
  refresh();
  const size_t count = tracks().size();
  const size_t before = indexOf(track.recording);
  if (before < count && tracks()[before].points >= track.points.size()) {
    addedName_ = tracks()[before].name;
    dropWrittenAttachments(track);
    return LibraryResult::done;
  }
  const bool replaces = before < count && isBeginning(before, track);
  std::string name = replaces ? tracks()[before].name : cleanName(track.name);
  if (name.empty()) {
    name =
        isFolder() ? trackNameFromTime(local) : libraryName({}, static_cast<uint32_t>(count + 1));
  }
  const LibraryResult result = change({{.index = replaces ? before : count,
                                        .removes = replaces,
                                        .texts = {rendered(track, options, name)}}});
  if (result != LibraryResult::done) return result;
  dropWrittenAttachments(track);
  const size_t added = indexOf(track.recording);
  addedName_ = tracks()[std::min(added, tracks().size() - 1)].name;
  return result;
}

LibraryResult TrackLibrary::import(XmlElement element) { return import({&element, 1}); }

LibraryResult TrackLibrary::import(std::span<const XmlElement> elements) {
  if (store_ == nullptr) return LibraryResult::notFound;
  if (!isFolder()) return whileOthersChange([&] { return importOnce(elements); });
  LibraryResult result = LibraryResult::done;
  // The next free name is known when this file is there.
  for (; !elements.empty() && result == LibraryResult::done; elements = elements.subspan(1)) {
    result = whileOthersChange([&] { return importOnce(elements.first(1)); });
  }
  return result;
}

LibraryResult TrackLibrary::importOnce(std::span<const XmlElement> elements) {
  refresh();
  const size_t count = tracks().size();
  TrackEdit all{.index = count, .removes = false};
  for (const XmlElement& element : elements) {
    TrackText text;
    const size_t number = count + all.texts.size() + 1;
    const LibraryResult result = imported(element, static_cast<uint32_t>(number), text);
    if (result != LibraryResult::done) return result;
    all.texts.push_back(std::move(text));
  }
  return all.texts.empty() ? LibraryResult::done : change({std::move(all)});
}

LibraryResult TrackLibrary::imported(XmlElement element, uint32_t number, TrackText& text) const {
  const std::string saved = savedText(element);
  if (saved.empty()) return LibraryResult::notWritten;
  Editable imported;
  Track& track = imported.track;
  readTrack(element, 0, track);
  track.name = cleanName(track.name);
  if (isFolder()) {
    text.name = track.name.empty() ? "Import" : track.name;
    text.text = saved;
    text.isFile = true;
    text.file = freeImportPath(path(), text.name);
    if (text.file.empty()) return LibraryResult::noFreeName;
  } else {
    track.name = libraryName(track, number);
    imported.writing = optionsUsedIn(saved);
    takeForeignParts(saved, track, imported.foreign);
    text = edited(imported);
  }
  return LibraryResult::done;
}

LibraryResult TrackLibrary::rename(size_t index, std::string_view name) {
  TrackText text;
  const std::string clean = cleanName(name);
  if (clean.empty()) return LibraryResult::noName;
  if (store_ == nullptr) return LibraryResult::notFound;
  if (index < tracks().size() && tracks()[index].name == clean) return LibraryResult::done;
  const LibraryResult result = store_->read(index, text);
  if (result != LibraryResult::done) return result;
  if (tracks()[index].damaged) {
    return rewrite(index, {}, [&](Track& track) { track.name = clean; });
  }
  if (text.isFile) {
    text.file.clear();
    text.text = renamedInside(std::move(text.text), clean);
  } else {
    text.text = renamed(std::move(text.text), clean);
  }
  text.name = clean;
  return change({{.index = index, .texts = {std::move(text)}}});
}

LibraryResult TrackLibrary::remove(size_t index) {
  if (index >= tracks().size()) return LibraryResult::notFound;
  return change({{.index = index}});
}

LibraryResult TrackLibrary::readForEditing(size_t index, Editable& out) {
  if (store_ == nullptr) return LibraryResult::notFound;
  TrackText text;
  const LibraryResult result = store_->read(index, text);
  if (result != LibraryResult::done) return result;
  const bool whole = parseTrack(text.text, out.writing.speedUnit, out.track);
  if (whole) takeForeignParts(text.text, out.track, out.foreign);
  out.track.name = text.name;
  const int32_t unit = out.writing.speedUnit;
  out.writing = optionsUsedIn(text.text);
  out.writing.speedUnit = unit;
  return LibraryResult::done;
}

LibraryResult TrackLibrary::rewrite(size_t index, const RecordingOptions& options,
                                    const Edit& edit) {
  Editable old{.track = {}, .writing = options};
  const LibraryResult result = readForEditing(index, old);
  if (result != LibraryResult::done) return result;
  edit(old.track);
  return change({{.index = index, .texts = {edited(old)}}});
}

LibraryResult TrackLibrary::join(size_t index, size_t other, const RecordingOptions& options) {
  if (index == other) return LibraryResult::notFound;
  Editable first{.track = {}, .writing = options};
  Editable second{.track = {}, .writing = options};
  LibraryResult result = readForEditing(index, first);
  if (result != LibraryResult::done) return result;
  second.foreign = std::move(first.foreign);
  result = readForEditing(other, second);
  if (result != LibraryResult::done) return result;
  first.foreign = std::move(second.foreign);
  vgps::join(first.track, second.track);
  addAttributes(first.writing, second.writing);
  TrackEdit joined{.index = index, .texts = {edited(first)}};
  TrackEdit gone{.index = other};
  if (index < other) return change({std::move(joined), std::move(gone)});
  return change({std::move(gone), std::move(joined)});
}

LibraryResult TrackLibrary::split(size_t index, size_t point, const RecordingOptions& options) {
  Editable old{.track = {}, .writing = options};
  const LibraryResult result = readForEditing(index, old);
  if (result != LibraryResult::done) return result;
  const std::optional<Track> second = vgps::split(old.track, point, freeSplitNumber(tracks()));
  if (!second) return LibraryResult::notFound;
  TrackText behind = rendered(*second, old.writing, second->name);
  behind.text = withForeignParts(behind.text, *second, old.foreign, false);
  return change({{.index = index, .texts = {edited(old), std::move(behind)}}});
}

LibraryResult TrackLibrary::reverse(size_t index, const RecordingOptions& options) {
  return rewrite(index, options, [](Track& track) {
    if (!track.points.empty()) vgps::reverse(track);
  });
}

LibraryResult TrackLibrary::thin(size_t index, const RecordingOptions& options) {
  return rewrite(index, options, [&](Track& track) { normalize(track, options); });
}

LibraryResult TrackLibrary::replace(size_t index, const Track& track,
                                    const RecordingOptions& options) {
  Editable old{.track = {}, .writing = options};
  const LibraryResult result = readForEditing(index, old);
  if (result != LibraryResult::done) return result;
  addAttributes(old.writing, attributesIn(track));
  const std::string name = cleanName(track.name);
  TrackText text = rendered(track, old.writing, name.empty() ? old.track.name : name);
  old.foreign.points.clear();  // it is unknown which new points correspond to them
  text.text = withForeignParts(text.text, track, old.foreign);
  return change({{.index = index, .texts = {std::move(text)}}});
}

}  // namespace vgps
