#include "library/journal.h"

#include <span>
#include <string_view>
#include <utility>

#include "files/bad_copies.h"
#include "files/whole_file.h"
#include "library/journal_format.h"
#include "platform/files.h"

namespace vgps {
namespace {

constexpr int kMostJournals = 9;

using SteadyClock = std::chrono::steady_clock;

JournalResult resultOf(FileOpening opening) {
  switch (opening) {
    case FileOpening::opened: return JournalResult::open;
    case FileOpening::missing: return JournalResult::missing;
    case FileOpening::inUse: return JournalResult::inUse;
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
  if (file_->size() > kJournalHeader) {  // a shorter file cannot contain a point
    file_.reset();
    return JournalResult::left;
  }
  path_ = path;
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
  std::vector<uint8_t> bytes(file_->size());
  if (file_->readAt(0, bytes) < bytes.size()) {  // a disk error, not the end of the journal
    file_.reset();
    return JournalResult::refused;
  }
  JournalContents contents = readJournal(bytes);
  if (contents.damaged && contents.points.empty()) {
    file_.reset();
    out = {.points = {}, .damaged = true, .backupPath = renameToBad(path)};
    return JournalResult::notAJournal;
  }
  path_ = path;
  end_ = contents.goodEnd;
  truncateBeforeWrite_ = true;
  out.points = std::move(contents.points);
  out.damaged = contents.damaged;
  out.backupPath =
      contents.damaged ? saveBadCopy(path, textOf(bytes), settings_.open) : std::string();
  return JournalResult::open;
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
  if (end_ == 0) writeJournalHeader(pending_);
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
  if (written) return;
  // The batch is written again from its start, with everything that was added since.
  batch.insert(batch.end(), pending_.begin(), pending_.end());
  pending_ = std::move(batch);
  due_ = SteadyClock::now() + settings_.retryAfter;
  if (wasFailing || !settings_.failed) return;
  lock.unlock();
  settings_.failed();
  lock.lock();
}

JournalResult createFreeJournal(Journal& journal, const std::string& path) {
  JournalResult result = JournalResult::left;
  for (int number = 1; number <= kMostJournals && result == JournalResult::left; ++number) {
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
