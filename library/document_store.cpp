#include "library/document_store.h"

#include <algorithm>
#include <utility>

#include "files/bad_copies.h"
#include "files/crc32.h"
#include "files/file_lock.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "track/track_xml.h"
#include "xml/document.h"

namespace vgps {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kBeforeTrack = "\r\n\t\t";
constexpr const char* kHead = "\r\n<root>\r\n\t<tracks>";
constexpr const char* kTail = "\r\n\t</tracks>\r\n</root>\r\n";

std::string_view withoutBlanksAround(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// Writes a new document around the tracks of an old one.
class DocumentWriter {
 public:
  DocumentWriter(const std::string& path, const ExclusiveOpener& open) : out_(path, open) {}

  bool text(std::string_view bytes) { return good_ = out_.write(bytes) && good_; }
  bool copy(InputFile& from, uint64_t begin, uint64_t end) {
    if (begin == end) return good_;
    return good_ = good_ && begin < end &&
                   from.copy(begin, end, [this](auto bytes) { return text(bytes); });
  }
  // Writes a track and records its position. Call in document order.
  void track(std::string_view element, std::string_view name) {
    element = withoutBlanksAround(element);
    TrackRange place{.blanksBegin = out_.written()};
    text(kBeforeTrack);
    place.begin = out_.written();
    text(element);
    place.end = out_.written();
    place.checksum = crc32Of(element);
    layout.places.push_back(place);
    layout.tracks.push_back(summaryOfText(element, layout.places.size()));
    if (!name.empty()) layout.tracks.back().name = name;
  }
  uint64_t written() const { return out_.written(); }
  bool finish() { return good_ && out_.finish(); }

  DocumentLayout layout;

 private:
  OutputFile out_;
  bool good_ = true;
};

// Checks that the positions are in order and inside the document. Nothing else in an index is
// trusted.
bool isSound(const LibraryIndex& index) {
  uint64_t at = 0;
  for (const IndexEntry& entry : index.entries) {
    if (entry.blanksBegin < at || entry.begin < entry.blanksBegin || entry.end <= entry.begin)
      return false;
    at = entry.end;
  }
  return index.endPlace >= at && index.endPlace <= index.document.size;
}

bool startsWithBlanks(InputFile& file, const TrackRange& place) {
  std::string blanks;
  return file.readAt(place.blanksBegin, place.begin - place.blanksBegin, blanks) &&
         blanks.find_first_not_of(kBlanks) == std::string::npos;
}

// Checks that the edits are sorted by index, none is past the end, and no track is removed twice.
bool fits(const LibraryChange& change, size_t tracks) {
  for (size_t i = 0; i < change.size(); ++i) {
    if (change[i].index + (change[i].removes ? 1 : 0) > tracks) return false;
    if (i == 0) continue;
    const TrackEdit& before = change[i - 1];
    if (change[i].index < before.index + (before.removes ? 1 : 0)) return false;
  }
  return true;
}

}  // namespace

DocumentStore::DocumentStore(std::string path, LibraryDisk disk)
    : path_(std::move(path)), indexPath_(resolveLinks(path_) + ".index"), disk_(std::move(disk)) {}

LibraryState DocumentStore::refresh() {
  constexpr int kAttempts = 3;  // another program may keep replacing the document
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    FileStamp now;
    const bool there = fileStamp(path_, now);
    // A document that was unreadable may have been in use only briefly.
    const bool retry = layout_.state == LibraryState::unreadable;
    if (known_ && there && now == stamp_ && !retry) break;
    if (!there && known_ && layout_.state == LibraryState::missing && stamp_ == FileStamp{}) break;
    ++revision_;
    layout_ = {};
    stamp_ = now;
    known_ = true;
    if (!there) {
      if (fileExists(path_)) layout_.state = LibraryState::unreadable;
      break;
    }
    if (readIndexFile()) break;
    if (!readFile()) {
      layout_ = {};
      layout_.state = LibraryState::unreadable;
    }
    FileStamp after;
    if (!fileStamp(path_, after) || !(after == now)) continue;
    writeIndexFile();
    break;
  }
  return layout_.state;
}

bool DocumentStore::readFile() {
  InputFile file(path_);
  if (!file) return false;
  layout_ = readLayout(file.source());
  return !file.failed();
}

bool DocumentStore::readIndexFile() {
  std::string bytes;
  LibraryIndex index;
  if (!readWholeFile(indexPath_, bytes, kLargestIndex) || !readIndex(bytes, index)) return false;
  if (!(index.document == stamp_) || !isSound(index)) return false;
  for (IndexEntry& entry : index.entries) {
    layout_.places.push_back({.blanksBegin = entry.blanksBegin,
                              .begin = entry.begin,
                              .end = entry.end,
                              .checksum = entry.checksum});
    layout_.tracks.push_back(std::move(entry.summary));
  }
  layout_.end = {index.endPlace, index.endPlace, "", ""};
  layout_.state = LibraryState::whole;
  return true;
}

// Only a complete document of the usual form gets an index; any other is read again next time.
void DocumentStore::writeIndexFile() {
  const InsertionPoint& end = layout_.end;
  if (layout_.state != LibraryState::whole || end.begin != end.end || !end.before.empty()) return;
  LibraryIndex index{.document = stamp_, .endPlace = end.begin};
  for (size_t i = 0; i < layout_.places.size(); ++i) {
    const TrackRange& place = layout_.places[i];
    index.entries.push_back({.blanksBegin = place.blanksBegin,
                             .begin = place.begin,
                             .end = place.end,
                             .checksum = place.checksum,
                             .summary = layout_.tracks[i]});
  }
  writeIndex(indexPath_, index, disk_);
}

// Called when the document does not match the recorded positions although its size and time are
// unchanged.
LibraryResult DocumentStore::reread() {
  dropIndex(indexPath_);
  known_ = false;
  refresh();
  return LibraryResult::changed;
}

LibraryResult DocumentStore::read(size_t index, TrackText& out) {
  if (index >= layout_.places.size()) return LibraryResult::notFound;
  const TrackRange& place = layout_.places[index];
  FileStamp now;
  if (!fileStamp(path_, now) || !(now == stamp_)) {
    refresh();
    return LibraryResult::changed;
  }
  InputFile file(path_);
  if (!file) return LibraryResult::unreadable;
  if (!file.readAt(place.begin, place.end - place.begin, out.text)) {
    return file.failed() ? LibraryResult::unreadable : reread();
  }
  if (crc32Of(out.text) != place.checksum || !startsWithBlanks(file, place)) return reread();
  out.name = layout_.tracks[index].name;
  out.file.clear();
  return LibraryResult::done;
}

// Called before writing: ensures that the document is the known one and undamaged.
LibraryResult DocumentStore::prepare() {
  const uint64_t before = revision_;
  switch (refresh()) {
    case LibraryState::notALibrary: return LibraryResult::notALibrary;
    case LibraryState::unreadable: return LibraryResult::unreadable;
    default: break;
  }
  if (revision_ != before) return LibraryResult::changed;
  return layout_.state == LibraryState::damaged ? repair() : LibraryResult::done;
}

// Backs up the damaged document and writes an undamaged one with its tracks in the same order.
LibraryResult DocumentStore::repair() {
  if (backupPath_.empty() || !(backedUpStamp_ == stamp_))
    backupPath_ = copyToBad(path_, disk_.open);
  if (backupPath_.empty()) return LibraryResult::backupFailed;
  backedUpStamp_ = stamp_;
  DocumentWriter writer(path_, disk_.open);
  writer.text(std::string(kXmlDeclaration) + kHead);
  for (size_t i = 0; i < layout_.places.size(); ++i) {
    TrackText old;
    const LibraryResult result = read(i, old);
    if (result != LibraryResult::done) return result;
    if (layout_.tracks[i].damaged) {
      Track track;
      parseTrack(old.text, 0, track);
      old.text = trackText(track, optionsUsedIn(old.text), old.name, 2);
    }
    writer.track(old.text, old.name);
  }
  const uint64_t end = writer.written();
  writer.text(kTail);
  if (!writer.finish()) return LibraryResult::notWritten;
  layout_ = std::move(writer.layout);
  layout_.state = LibraryState::whole;
  layout_.end = {end, end, "", ""};
  known_ = fileStamp(path_, stamp_);
  return LibraryResult::done;
}

// Sets `inverse` to the edits that restore the old tracks, using the numbers they will have then.
LibraryResult DocumentStore::invert(const LibraryChange& change, LibraryChange& inverse) {
  inverse.clear();
  size_t at = 0;     // old number of the track after the last edit
  size_t place = 0;  // its new number
  for (const TrackEdit& edit : change) {
    place += edit.index - at;
    at = edit.index;
    TrackEdit back{.index = place, .removes = false};
    TrackText old;
    if (edit.index < layout_.places.size()) {
      const LibraryResult result = read(edit.index, old);
      if (result != LibraryResult::done) return result;
    }
    if (edit.removes) {
      back.texts.push_back(std::move(old));
      ++at;
    }
    back.removes = !edit.texts.empty();
    if (back.removes || !back.texts.empty()) inverse.push_back(std::move(back));
    for (size_t i = 1; i < edit.texts.size(); ++i) inverse.push_back({.index = place + i});
    place += edit.texts.size();
  }
  return LibraryResult::done;
}

// A wrong end position in an index would insert a track into the middle of another one.
bool DocumentStore::endIsWhereItWas() {
  constexpr std::string_view kEnd = "</tracks";
  constexpr uint64_t kMostBlanks = 4096;
  const InsertionPoint& end = layout_.end;
  const bool fresh = layout_.state == LibraryState::missing;
  if (fresh || !end.before.empty()) return true;  // just read, not taken from an index
  InputFile file(path_);
  std::string bytes;
  const uint64_t size = std::min(stamp_.size - end.begin, kMostBlanks);
  if (!file || !file.readAt(end.begin, size, bytes)) return false;
  const size_t first = bytes.find_first_not_of(kBlanks);
  return first != std::string::npos && bytes.compare(first, kEnd.size(), kEnd) == 0;
}

LibraryResult DocumentStore::write(const LibraryChange& change) {
  const bool fresh = layout_.state == LibraryState::missing;
  const std::vector<TrackRange>& places = layout_.places;
  InsertionPoint end = layout_.end;
  if (fresh) end = {0, stamp_.size, std::string(kXmlDeclaration) + kHead, kTail};
  InputFile from(path_);
  if (!fresh && !from) return LibraryResult::unreadable;
  DocumentWriter writer(path_, disk_.open);
  uint64_t at = 0;     // position in the old document
  size_t copied = 0;   // old tracks processed so far
  bool added = false;  // at the end
  const auto copyTo = [&](uint64_t place) {
    writer.copy(from, at, place);
    at = place;
  };
  const auto keepUpTo = [&](size_t index) {
    for (; copied < index; ++copied) {
      copyTo(places[copied].blanksBegin);
      TrackRange place = places[copied];
      const uint64_t shift = writer.written() - place.blanksBegin;  // wraps around if negative
      place.blanksBegin += shift, place.begin += shift, place.end += shift;
      copyTo(places[copied].end);
      writer.layout.places.push_back(place);
      writer.layout.tracks.push_back(layout_.tracks[copied]);
    }
  };
  for (const TrackEdit& edit : change) {
    keepUpTo(edit.index);
    if (edit.index < places.size()) {
      copyTo(places[edit.index].blanksBegin);
    } else if (!added) {
      copyTo(end.begin);
      writer.text(end.before);
      added = true;
    }
    for (const TrackText& text : edit.texts) writer.track(text.text, text.name);
    if (!edit.removes) continue;
    at = places[edit.index].end;
    ++copied;
  }
  keepUpTo(places.size());
  if (!added) copyTo(end.begin);
  const uint64_t newEnd = writer.written();
  if (added) {
    writer.text(end.after);
    at = end.end;
  }
  if (!fresh) copyTo(stamp_.size);
  from.close();  // some systems cannot replace an open file
  if (!writer.finish()) return LibraryResult::notWritten;

  const bool usual = end.before.empty() || fresh;
  writer.layout.state = LibraryState::whole;
  writer.layout.end = {newEnd, newEnd, "", ""};
  layout_ = std::move(writer.layout);
  known_ = fileStamp(path_, stamp_) && usual;
  return LibraryResult::done;
}

LibraryResult DocumentStore::apply(const LibraryChange& change, LibraryChange& inverse) {
  const FileLock lock(lockPathOf(path_), disk_.open, disk_.waitForOthersMs);
  LibraryResult result = lockResult(lock.state());
  if (result == LibraryResult::done) result = prepare();
  if (result != LibraryResult::done || change.empty()) return result;
  if (!fits(change, layout_.places.size())) return LibraryResult::notFound;
  result = invert(change, inverse);
  if (result != LibraryResult::done) return result;
  if (!endIsWhereItWas()) return reread();
  result = write(change);
  if (result != LibraryResult::done) return result;
  if (known_) {
    writeIndexFile();
  } else {
    refresh();
  }
  return LibraryResult::done;
}

}  // namespace vgps
