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

// Saves the points of the current recording to disk as they arrive, so that a crash or power
// failure loses only the last few seconds.
namespace vgps {

// The name beside the settings document.
inline constexpr const char* kJournalName = "vgpstrack.journal";

struct JournalSettings {
  // From a point to the disk having it. Five seconds are what may be lost; a slow disk takes its
  // time too.
  std::chrono::milliseconds flushAfter{2500};
  std::chrono::milliseconds retryAfter{5000};  // after a failure
  ExclusiveOpener open = openExclusive;
  // Called when the points cannot be written; recording continues in memory and the journal keeps
  // trying. Called once until writing works again, on the journal's own thread.
  std::function<void()> failed;
};

enum class JournalResult {
  open,
  missing,
  left,     // `create`: an unfinished recording is there, and the user has not decided about it
  inUse,    // a running program holds it
  refused,  // the system does not let us, or the disk does not give what it holds
  // `recover`: it is damaged and without a readable point. The file itself is named ".bad" now;
  // where that failed it is left alone.
  notAJournal,
};

struct RecoveredTrack {
  PointList points;
  // Part of the journal, or all of it, could not be read. The whole file is saved under this name,
  // which ends in ".bad"; empty if that failed too.
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

  // Creates a journal for a new recording.
  JournalResult create(const std::string& path);

  // Opens and reads a journal that another run of the program did not finish. The file is unchanged
  // until points are appended; then a damaged end is cut off first.
  JournalResult recover(const std::string& path, RecoveredTrack& out);

  bool isOpen() const { return file_ != nullptr; }
  // Its path, also after it was closed.
  const std::string& path() const { return path_; }
  void append(const TrackPoint& point);
  // Writes appended points to disk now.
  void flush();
  // Flushes and closes the file without deleting it. Returns false if some points could not be
  // written.
  bool close();
  // Closes the file and gives it the name `path`, which is free. Returns false if the system
  // refuses; it keeps its name then.
  bool keepAs(const std::string& path);
  // Deletes the file when the points are saved elsewhere or discarded. Returns false if the system
  // refuses.
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

// These names, whether or not the files exist.
std::vector<std::string> journalNames(const std::string& path);

// Those of these files that exist, in this order: the ones to ask about at startup.
std::vector<std::string> existingJournals(const std::string& path);

}  // namespace vgps
