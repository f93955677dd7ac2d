#include "library/folder_store.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "files/bad_copies.h"
#include "files/file_lock.h"
#include "files/input_file.h"
#include "files/whole_file.h"
#include "platform/files.h"
#include "track/file_names.h"
#include "track/track_file.h"
#include "xml/document.h"
#include "xml/tags.h"

namespace vgps {
namespace {

constexpr const char* kIndexName = "tracks.index";
constexpr const char* kLockName = "tracks.lock";

bool isXmlName(std::string_view name) {
  constexpr std::string_view kEnd = ".xml";
  if (name.size() <= kEnd.size()) return false;
  const std::string_view end = name.substr(name.size() - kEnd.size());
  return std::equal(end.begin(), end.end(), kEnd.begin(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

// A large file of another kind is not read for its name alone.
bool mayBeTrack(const std::string& path, const FileStamp& stamp) {
  constexpr uint64_t kReadAnyway = uint64_t{16} << 20;
  constexpr uint64_t kLargest = uint64_t{1} << 30;
  constexpr uint64_t kFirstBytes = 4096;
  if (stamp.size <= kReadAnyway) return true;
  std::string head;
  InputFile file(path);
  if (stamp.size > kLargest || !file || !file.readAt(0, kFirstBytes, head)) return false;
  TagReader tags(head);
  TagMark tag;
  return tags.next(tag) && (tag.name == "t" || tag.name == "p");
}

// The list entry of a file; `other` if it is not a track. A file that is in use is listed without a
// stamp, so that it is read again next time.
IndexEntry entryOf(const std::string& path, const std::string& name, const FileStamp& stamp) {
  IndexEntry entry{.file = name, .stamp = stamp};
  entry.other = !mayBeTrack(path, stamp);
  if (entry.other) return entry;
  Track track;
  bool foreign = false;
  const TrackLoading loading = loadTrackFile(path, 0, track, &foreign);
  const bool held = loading == TrackLoading::unreadable || loading == TrackLoading::noFile;
  if (held) entry.stamp = {};
  entry.other = loading != TrackLoading::whole && loading != TrackLoading::damaged;
  if (entry.other) return entry;
  entry.summary = summaryOf(track);
  entry.summary.name = withoutExtension(name);
  entry.summary.damaged = loading == TrackLoading::damaged;
  return entry;
}

}  // namespace

FolderStore::FolderStore(std::string folder, LibraryDisk disk)
    : folder_(std::move(folder)), indexPath_(pathIn(folder_, kIndexName)), disk_(std::move(disk)) {}

std::string FolderStore::pathOf(const IndexEntry& entry) const {
  return pathIn(folder_, entry.file);
}

// Reads the files that are new or changed. Returns true if the list has changed.
bool FolderStore::look() {
  std::vector<IndexEntry> known = std::move(files_);
  files_.clear();
  std::vector<std::string> names = filesIn(folder_);
  std::sort(names.begin(), names.end());
  bool changed = false;
  for (const std::string& name : names) {
    const std::string path = pathIn(folder_, name);
    FileStamp stamp;
    if (!isXmlName(name) || !fileStamp(path, stamp)) continue;
    const auto old = std::lower_bound(known.begin(), known.end(), name,
                                      [](const auto& e, const auto& n) { return e.file < n; });
    const bool listed = old != known.end() && old->file == name;
    if (listed && old->stamp == stamp) {
      files_.push_back(std::move(*old));
      old->file = name;  // keeps the entries sorted for the search
    } else {
      files_.push_back(entryOf(path, name, stamp));
      changed = changed || !listed || !(old->stamp == files_.back().stamp);
    }
  }
  return changed || files_.size() != known.size();
}

LibraryState FolderStore::refresh() {
  std::string bytes;
  LibraryIndex index;
  if (!looked_ && readWholeFile(indexPath_, bytes, kLargestIndex) && readIndex(bytes, index)) {
    files_ = std::move(index.entries);
    std::sort(files_.begin(), files_.end(),
              [](const IndexEntry& a, const IndexEntry& b) { return a.file < b.file; });
  }
  const bool changed = look();
  if (changed) {
    index.entries = files_;
    writeIndex(indexPath_, index, disk_);
  }
  if (changed || !looked_) ++revision_;
  looked_ = true;
  trackFiles_.clear();
  tracks_.clear();
  damagedPath_.clear();
  for (size_t i = 0; i < files_.size(); ++i) {
    if (files_[i].other) continue;
    trackFiles_.push_back(i);
    tracks_.push_back(files_[i].summary);
    if (tracks_.back().damaged && damagedPath_.empty()) damagedPath_ = pathOf(files_[i]);
  }
  state_ = damagedPath_.empty() ? LibraryState::whole : LibraryState::damaged;
  if (!vgps::isFolder(folder_)) state_ = LibraryState::unreadable;
  return state_;
}

LibraryResult FolderStore::read(size_t index, TrackText& out) {
  if (index >= trackFiles_.size()) return LibraryResult::notFound;
  const IndexEntry& entry = files_[trackFiles_[index]];
  FileStamp now;
  if (!fileStamp(pathOf(entry), now) || !(now == entry.stamp)) {
    refresh();
    return LibraryResult::changed;
  }
  if (!readWholeFile(pathOf(entry), out.text)) return LibraryResult::unreadable;
  out.name = entry.summary.name;
  out.file = pathOf(entry);
  out.isFile = true;
  return LibraryResult::done;
}

// The first text of a track keeps the file as long as it keeps the name. A text that came from a
// file returns to it. All others get an unused name.
LibraryResult FolderStore::collectEdit(const TrackEdit& edit, std::vector<FileChange>& files) {
  FileChange old;
  if (edit.removes) {
    const LibraryResult result = read(edit.index, old.old);
    if (result != LibraryResult::done) return result;
    old.path = old.old.file;
    old.wasThere = true;
  }
  for (const TrackText& text : edit.texts) {
    std::string bytes = text.text;
    if (!text.isFile) bytes.insert(0, std::string(kXmlDeclaration) + "\r\n");
    if (old.wasThere && !old.stays && (text.file == old.path || text.name == old.old.name)) {
      old.bytes = std::move(bytes);
      old.stays = true;
      continue;
    }
    const bool back = !text.file.empty() && !fileExists(text.file);
    FileChange added{.path = back ? text.file : freeTrackPath(folder_, text.name),
                     .bytes = std::move(bytes),
                     .stays = true};
    if (added.path.empty()) added.path = laterTrackPath(folder_, text.name);
    const auto same = [&](const FileChange& file) { return file.path == added.path; };
    if (added.path.empty() || std::any_of(files.begin(), files.end(), same)) {
      return LibraryResult::noFreeName;
    }
    files.push_back(std::move(added));
  }
  if (old.wasThere) files.push_back(std::move(old));
  return LibraryResult::done;
}

// Writes new files first and deletes old ones last, so that no point is lost if the program ends in
// between.
LibraryResult FolderStore::collect(const LibraryChange& change, std::vector<FileChange>& files) {
  for (const TrackEdit& edit : change) {
    const LibraryResult result = collectEdit(edit, files);
    if (result != LibraryResult::done) return result;
  }
  std::stable_sort(files.begin(), files.end(), [](const FileChange& a, const FileChange& b) {
    const auto rank = [](const FileChange& f) { return !f.wasThere ? 0 : f.stays ? 1 : 2; };
    return rank(a) < rank(b);
  });
  return LibraryResult::done;
}

LibraryResult FolderStore::keepDamaged(const LibraryChange& change) {
  for (const TrackEdit& edit : change) {
    if (!edit.removes || !tracks_[edit.index].damaged) continue;
    backupPath_ = copyToBad(pathOf(files_[trackFiles_[edit.index]]), disk_.open);
    if (backupPath_.empty()) return LibraryResult::backupFailed;
  }
  return LibraryResult::done;
}

bool FolderStore::write(const FileChange& file) {
  if (!file.stays) return removeFile(file.path);
  if (file.wasThere) return writeWholeFile(file.path, file.bytes, disk_.open);
  return writeFreeFile(file.path, file.bytes, disk_.open) == RenameResult::renamed;
}

// After a disk error: undoes the files changed so far, as far as the disk permits.
void FolderStore::takeBack(const std::vector<FileChange>& files, size_t count) {
  for (size_t i = count; i-- > 0;) {
    FileChange back = files[i];
    back.stays = back.wasThere;
    back.bytes = back.old.text;
    write(back);
  }
}

LibraryChange FolderStore::inverseOf(std::vector<FileChange> files) const {
  LibraryChange inverse;
  LibraryChange restored;
  for (FileChange& file : files) {
    TrackEdit edit{.index = tracks_.size(), .removes = false};
    for (size_t i = 0; i < trackFiles_.size() && file.stays; ++i) {
      if (pathOf(files_[trackFiles_[i]]) != file.path) continue;
      edit.index = i;
      edit.removes = true;
    }
    if (file.wasThere) edit.texts.push_back(std::move(file.old));
    (edit.removes ? inverse : restored).push_back(std::move(edit));
  }
  std::sort(inverse.begin(), inverse.end(),
            [](const TrackEdit& a, const TrackEdit& b) { return a.index < b.index; });
  std::move(restored.begin(), restored.end(), std::back_inserter(inverse));
  return inverse;
}

LibraryResult FolderStore::apply(const LibraryChange& change, LibraryChange& inverse) {
  const FileLock lock(pathIn(folder_, kLockName), disk_.open, disk_.waitForOthersMs);
  LibraryResult result = lockResult(lock.state());
  if (result != LibraryResult::done) return result;
  const uint64_t before = revision_;
  if (refresh() == LibraryState::unreadable) return LibraryResult::unreadable;
  if (revision_ != before) return LibraryResult::changed;
  std::vector<FileChange> files;
  result = collect(change, files);
  if (result == LibraryResult::done) result = keepDamaged(change);
  if (result != LibraryResult::done) return result;
  for (size_t i = 0; i < files.size(); ++i) {
    if (write(files[i])) continue;
    takeBack(files, i);
    refresh();
    return LibraryResult::notWritten;
  }
  refresh();
  inverse = inverseOf(std::move(files));
  return LibraryResult::done;
}

}  // namespace vgps
