#include "files/whole_file.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>

#include "files/retry.h"
#include "files/unique_number.h"

namespace vgps {
namespace {

constexpr size_t kBufferBytes = size_t{1} << 20;

// With the separator behind it.
std::string folderOf(const std::string& path) {
  return path.substr(0, path.find_last_of("/\\") + 1);
}

constexpr std::string_view kBesideBegin = "vgps-";
constexpr std::string_view kBesideEnd = ".new";
constexpr size_t kBesideDigits = 16;

// "vgps-0123456789abcdef.new", beside the file: short, so that it fits wherever a name does.
// Should a name be taken, the next one is another.
std::string temporaryName(const std::string& path) {
  const uint64_t number = uniqueNumber();
  char digits[kBesideDigits + 1];
  std::snprintf(digits, sizeof digits, "%08x%08x", static_cast<unsigned>(number >> 32),
                static_cast<unsigned>(number & 0xFFFFFFFF));
  return folderOf(path) + std::string(kBesideBegin) + digits + std::string(kBesideEnd);
}

bool isNameBeside(std::string_view name) {
  if (!name.starts_with(kBesideBegin) || !name.ends_with(kBesideEnd)) return false;
  name.remove_prefix(kBesideBegin.size());
  name.remove_suffix(kBesideEnd.size());
  return name.size() == kBesideDigits &&
         name.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// What is being written is locked, or a few seconds old.
void removeLeftOvers(const std::string& path) {
  constexpr double kDay = 24 * 60 * 60;
  const std::string folder = folderOf(path);
  for (const std::string& name : filesIn(folder.empty() ? "." : folder)) {
    const std::string left = folder + name;
    if (!isNameBeside(name) || fileAge(left) < kDay) continue;
    FileOpening opening = FileOpening::refused;
    if (fileKind(left) != FileKind::regular) continue;
    if (const auto file = openExclusive(left, OpenMode::existing, opening)) file->remove();
  }
}

// A virus scanner or indexer may have the new file open for a moment, so renaming is retried.
template <class Place>
RenameResult renameWithRetry(const std::string& from, Place place) {
  constexpr int kAttempts = 20;
  RenameResult result = RenameResult::refused;
  retry(kAttempts, std::chrono::milliseconds(25), [&] {
    result = place();
    return result != RenameResult::refused || !fileExists(from);
  });
  return result;
}

}  // namespace

OutputFile::OutputFile(const std::string& path, const ExclusiveOpener& open)
    : path_(resolveLinks(path)) {
  if (path_.empty()) return;
  if (fileKind(path_) == FileKind::other) {
    fault_ = isFolder(path_) ? FileFault::isFolder : lastFileFault();
    return;
  }
  removeLeftOvers(path_);
  constexpr int kAttempts = 10;
  FileOpening opening = FileOpening::inUse;
  for (int i = 0; i < kAttempts && opening == FileOpening::inUse; ++i) {
    temporaryPath_ = temporaryName(path_);
    file_ = open(temporaryPath_, OpenMode::createNew, opening);
  }
  good_ = file_ != nullptr;
  if (!good_) fault_ = lastFileFault();
  if (good_ && fileKind(path_) == FileKind::regular) copyPermissions(path_, temporaryPath_);
}

OutputFile::~OutputFile() {
  if (file_ != nullptr) {
    file_->remove();
  } else if (good_) {
    removeFile(temporaryPath_);
  }
}

bool OutputFile::send(std::string_view bytes) {
  const std::span data(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  if (good_ && !file_->writeAt(sent_, data)) {
    fault_ = lastFileFault();
    good_ = false;
  }
  sent_ += bytes.size();
  return good_;
}

bool OutputFile::write(std::string_view bytes) {
  written_ += bytes.size();
  if (buffer_.size() + bytes.size() < kBufferBytes) {
    buffer_ += bytes;
    return good_;
  }
  send(buffer_);
  buffer_.clear();
  return send(bytes);
}

bool OutputFile::writeOver(uint64_t offset, std::string_view bytes) {
  if (file_ == nullptr || offset > written_ || bytes.size() > written_ - offset) return false;
  if (offset < sent_) {
    const std::string_view front = bytes.substr(0, sent_ - offset);
    const std::span data(reinterpret_cast<const uint8_t*>(front.data()), front.size());
    good_ = good_ && file_->writeAt(offset, data);
    bytes.remove_prefix(front.size());
    offset += front.size();
  }
  std::copy(bytes.begin(), bytes.end(), buffer_.begin() + static_cast<ptrdiff_t>(offset - sent_));
  return good_;
}

bool OutputFile::flush() {
  if (!good_ || file_ == nullptr) return good_;
  send(buffer_);
  buffer_.clear();
  if (good_ && !file_->flush()) {
    fault_ = lastFileFault();
    good_ = false;
  }
  if (good_) file_.reset();  // some systems do not rename what is open
  return good_;
}

bool OutputFile::finish() {
  if (!flush() || fileKind(path_) == FileKind::other) return false;
  const auto place = [this] {
    if (replaceFile(temporaryPath_, path_)) return RenameResult::renamed;
    fault_ = lastFileFault();
    return RenameResult::refused;
  };
  if (renameWithRetry(temporaryPath_, place) != RenameResult::renamed) return false;
  good_ = false;  // the temporary file is gone
  return true;
}

std::string OutputFile::reason() const {
  switch (fault_) {
    case FileFault::noFolder: return ": the folder does not exist";
    case FileFault::notAFolder: return ": the path leads through a file";
    case FileFault::isFolder: return ": it is a folder";
    case FileFault::noPermission: return ": permission denied";
    case FileFault::noSpace: return ": no space left";
    case FileFault::inUse: return ": another program is using it";
    case FileFault::badName: return ": the name is not allowed here";
    case FileFault::unknown: break;
  }
  return {};
}

RenameResult OutputFile::finishAs(const std::string& freePath) {
  if (!flush()) return RenameResult::refused;
  const RenameResult result =
      renameWithRetry(temporaryPath_, [&] { return renameUnlessTaken(temporaryPath_, freePath); });
  if (result == RenameResult::renamed) good_ = false;
  return result;
}

bool writeWholeFile(const std::string& path, std::string_view text, const ExclusiveOpener& open) {
  OutputFile file(path, open);
  return file.write(text) && file.finish();
}

RenameResult writeFreeFile(const std::string& path, std::string_view text,
                           const ExclusiveOpener& open) {
  if (fileExists(path)) return RenameResult::taken;
  OutputFile file(path, open);
  return file.write(text) ? file.finishAs(path) : RenameResult::refused;
}

std::string withoutExtension(const std::string& path) {
  const size_t point = path.find_last_of("./\\");
  return point == std::string::npos || path[point] != '.' ? path : path.substr(0, point);
}

}  // namespace vgps
