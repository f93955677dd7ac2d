#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/exclusive_file.h"
#include "track/track.h"

// The points of the track that is being recorded, kept on the disk as they come, so that neither a
// crash nor a power cut takes more than the last few seconds.
namespace vgps {

// The name beside the settings document.
inline constexpr const char* kJournalName = "vgpstrack.journal";

struct JournalSettings {
  // From a point to the disk having it. Five seconds are what may be lost; a slow disk takes its
  // time too.
  std::chrono::milliseconds flushAfter{2500};
  std::chrono::milliseconds retryAfter{5000};  // after a failure
  ExclusiveOpener open = openExclusive;
  // The disk does not take the points; recording goes on in memory and the journal keeps trying.
  // Once until it works again. On the journal's own thread.
  std::function<void()> failed;
};

enum class JournalResult {
  open,
  missing,
  left,     // `create`: a recording lies there that nobody has answered for
  inUse,    // a running program holds it
  refused,  // the system does not let us, or the disk does not give what it holds
  // `recover`: it is damaged and without a readable point. The file itself is named ".bad" now;
  // where that failed it is left alone.
  notAJournal,
};

struct RecoveredTrack {
  PointList points;
  // A part of the journal, or all of it, was no longer readable. The whole is kept under this name,
  // which ends in ".bad"; empty when that failed too.
  bool damaged = false;
  std::string backupPath;
};

// One journal file and the thread that writes it. All calls come from one thread; none but
// `close`, `discard` and `recover` waits for the disk.
class Journal {
 public:
  explicit Journal(JournalSettings settings = {});
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  ~Journal() { close(); }

  // A new one for a recording that begins.
  JournalResult create(const std::string& path);

  // Takes hold of one that an ended program left, and reads it. Nothing in it changes until
  // points are appended; then the damaged end is cut off first.
  JournalResult recover(const std::string& path, RecoveredTrack& out);

  bool isOpen() const { return file_ != nullptr; }
  // Where it lies, or lay before it was closed.
  const std::string& path() const { return path_; }
  void append(const TrackPoint& point);
  // What was appended goes to the disk now.
  void flush();
  // Flushes and gives the file free; it stays where it is. False when the disk did not take
  // everything.
  bool close();
  // The points are safe elsewhere, or nobody wants them: deletes the file. False when the system
  // does not let us.
  bool discard();

 private:
  void startWriter();
  void stopWriter();
  void writeUntilStopped();
  void writeOnce(std::unique_lock<std::mutex>& lock);

  const JournalSettings settings_;
  std::string path_;
  std::unique_ptr<ExclusiveFile> file_;  // the writer's while it runs
  uint64_t end_ = 0;                     // of what the disk has for sure; likewise
  bool truncateBeforeWrite_ = false;     // there is more behind the end; likewise
  std::thread writer_;

  std::mutex mutex_;  // of what follows
  std::condition_variable changed_;
  std::vector<uint8_t> pending_;
  std::chrono::steady_clock::time_point due_;
  bool urgent_ = false;
  bool stopping_ = false;
  bool failing_ = false;
};

// Where a recording finds its place: `path`, or where one was left there, "NAME-2", ... "NAME-9".
JournalResult createFreeJournal(Journal& journal, const std::string& path);

// These names, whether something lies there or not.
std::vector<std::string> journalNames(const std::string& path);

// Those of these names that exist, in this order: what a start of the program asks about.
std::vector<std::string> existingJournals(const std::string& path);

}  // namespace vgps
