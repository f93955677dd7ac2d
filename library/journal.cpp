#include "library/journal.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

#include "files/bad_copies.h"
#include "files/unique_number.h"
#include "files/whole_file.h"
#include "library/journal_format.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr int kMostJournals = 9;
// Ten million points. What lies behind is not read, and a damaged journal larger than the second
// is not copied: whoever saves its points renames it.
constexpr uint64_t kLargestJournal = uint64_t{2} << 30;
constexpr uint64_t kLargestCopy = uint64_t{256} << 20;

using SteadyClock = std::chrono::steady_clock;

JournalResult resultOf(FileOpening opening) {
  switch (opening) {
    case FileOpening::opened: return JournalResult::open;
    case FileOpening::missing: return JournalResult::missing;
    case FileOpening::inUse: return JournalResult::inUse;
    case FileOpening::notAFile: return JournalResult::notAFile;
    case FileOpening::refused: break;
  }
  return JournalResult::refused;
}

// "DIR/vgpstrack.journal" for 1, "DIR/vgpstrack-2.journal" for 2.
std::string numberedPath(const std::string& path, int number) {
  if (number == 1) return path;
  const std::string stem = withoutExtension(path);
  return stem + "-" + std::to_string(number) + path.substr(stem.size());
}

std::string_view textOf(std::span<const uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

Journal::Journal(JournalSettings settings) : settings_(std::move(settings)) {}

JournalResult Journal::create(const std::string& path) {
  close();
  FileOpening opening{};
  file_ = settings_.open(path, OpenMode::orCreate, opening);
  if (file_ == nullptr) return resultOf(opening);
  if (file_->size() > kJournalStart) {
    file_.reset();
    return JournalResult::left;
  }
  path_ = path;
  recording_ = uniqueNumber();
  end_ = 0;
  truncateBeforeWrite_ = true;
  startWriter();
  return JournalResult::open;
}

JournalResult Journal::recover(const std::string& path, RecoveredTrack& out) {
  close();
  FileOpening opening{};
  file_ = settings_.open(path, OpenMode::existing, opening);
  if (file_ == nullptr) return resultOf(opening);
  const uint64_t size = file_->size();
  uint64_t at = 0;
  bool failed = false;  // by a disk error, not at the end of the journal
  JournalContents contents = readJournal([&](char* to, size_t room) {
    const auto wanted =
        static_cast<size_t>(std::min<uint64_t>(room, std::min(size, kLargestJournal) - at));
    const size_t got = file_->readAt(at, {reinterpret_cast<uint8_t*>(to), wanted});
    failed = failed || got < wanted;
    at += got;
    return got;
  });
  if (failed) {
    file_.reset();
    return JournalResult::refused;
  }
  if (size > kLargestJournal) contents.damaged = true;
  if (contents.damaged && contents.points.empty()) {
    file_.reset();
    out = {.points = {}, .damaged = true, .backupPath = renameToBad(path)};
    return JournalResult::notAJournal;
  }
  path_ = path;
  recording_ = contents.id;
  end_ = contents.goodEnd;
  truncateBeforeWrite_ = true;
  out.points = std::move(contents.points);
  out.recording = contents.id;
  out.damaged = contents.damaged;
  out.backupPath = contents.damaged ? backUp() : std::string();
  return JournalResult::open;
}

std::string Journal::backUp() {
  if (file_->size() > kLargestCopy) return {};
  std::vector<uint8_t> bytes(file_->size());
  bytes.resize(file_->readAt(0, bytes));
  return saveBadCopy(path_, textOf(bytes), settings_.open);
}

void Journal::append(const TrackPoint& point) {
  if (!isOpen()) return;
  if (!writer_.joinable()) startWriter();
  const std::lock_guard lock(mutex_);
  const bool first = pending_.empty();
  writeJournalPoint(point, pending_);
  if (!first) return;
  due_ = SteadyClock::now() + settings_.flushAfter;
  changed_.notify_one();
}

void Journal::flush() {
  const std::lock_guard lock(mutex_);
  urgent_ = !pending_.empty();
  changed_.notify_one();
}

bool Journal::close() {
  if (!isOpen()) return true;
  stopWriter();
  const bool everything = pending_.empty();
  pending_.clear();
  file_.reset();
  return everything;
}

bool Journal::keepAs(const std::string& path) {
  close();
  return renameUnlessTaken(path_, path) == RenameResult::renamed;
}

bool Journal::discard() {
  if (!isOpen()) return true;
  {
    const std::lock_guard lock(mutex_);
    pending_.clear();
  }
  stopWriter();
  const bool removed = file_->remove();
  file_.reset();
  return removed;
}

void Journal::startWriter() {
  if (end_ == 0) {
    writeJournalHeader(pending_);
    writeJournalId(recording_, pending_);
  }
  due_ = SteadyClock::now() + settings_.flushAfter;
  stopping_ = false;
  urgent_ = false;
  failing_ = false;
  writer_ = std::thread([this] { writeUntilStopped(); });
}

void Journal::stopWriter() {
  if (!writer_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    changed_.notify_one();
  }
  writer_.join();
  writer_ = {};
}

void Journal::writeUntilStopped() {
  std::unique_lock lock(mutex_);
  for (bool last = false; !last;) {
    changed_.wait(lock, [this] { return stopping_ || !pending_.empty(); });
    changed_.wait_until(lock, due_, [this] { return stopping_ || urgent_; });
    last = stopping_;
    urgent_ = false;
    if (!pending_.empty()) writeOnce(lock);
  }
}

void Journal::writeOnce(std::unique_lock<std::mutex>& lock) {
  std::vector<uint8_t> batch = std::exchange(pending_, {});
  lock.unlock();
  const bool written = (!truncateBeforeWrite_ || file_->cutAt(end_)) &&
                       file_->writeAt(end_, batch) && file_->flush();
  if (written) {
    end_ += batch.size();
    truncateBeforeWrite_ = false;
  }
  lock.lock();
  const bool wasFailing = std::exchange(failing_, !written);
  if (written) return wasFailing ? tell(settings_.works, lock) : void();
  // The batch is written again from its start, with everything that was added since.
  batch.insert(batch.end(), pending_.begin(), pending_.end());
  pending_ = std::move(batch);
  due_ = SteadyClock::now() + settings_.retryAfter;
  if (!wasFailing) tell(settings_.failed, lock);
}

void Journal::tell(const std::function<void()>& news, std::unique_lock<std::mutex>& lock) {
  if (!news) return;
  lock.unlock();
  news();
  lock.lock();
}

JournalResult createFreeJournal(Journal& journal, const std::string& path) {
  JournalResult result = JournalResult::left;
  const auto isTaken = [&] {
    return result == JournalResult::left || result == JournalResult::notAFile;
  };
  for (int number = 1; number <= kMostJournals && isTaken(); ++number) {
    result = journal.create(numberedPath(path, number));
  }
  return result;
}

std::vector<std::string> journalNames(const std::string& path) {
  std::vector<std::string> names;
  if (path.empty()) return names;
  for (int number = 1; number <= kMostJournals; ++number) {
    names.push_back(numberedPath(path, number));
  }
  return names;
}

std::vector<std::string> existingJournals(const std::string& path) {
  std::vector<std::string> names = journalNames(path);
  std::erase_if(names, [](const std::string& name) { return !fileExists(name); });
  return names;
}

}  // namespace vgps
