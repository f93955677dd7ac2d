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

// Its file name, in the folder of the settings document.
inline constexpr const char* kJournalName = "vgpstrack.journal";

struct JournalSettings {
  // The time from receiving a point to flushing it to disk. At most five seconds may be lost,
  // including the time that a slow disk needs.
  std::chrono::milliseconds flushAfter{2500};
  std::chrono::milliseconds retryAfter{5000};  // after a failure
  ExclusiveOpener open = openExclusive;
  // Called when the points cannot be written; recording continues in memory and the journal keeps
  // trying. Called once until writing works again, on the journal's own thread.
  std::function<void()> failed = {};
  // Called when it works again, likewise.
  std::function<void()> works = {};
};

enum class JournalResult {
  open,
  missing,
  left,     // `create`: there is an unfinished recording, and the user has not decided about it yet
  inUse,    // open in another running program
  refused,  // no permission, or a disk error
  notAFile,  // a folder, pipe, or device of that name, which is left alone
  // `recover`: the file is damaged and contains no readable point. It has been renamed to ".bad";
  // if that failed, it is unchanged.
  notAJournal,
};

struct RecoveredTrack {
  PointList points;
  uint64_t recording = 0;  // Track::recording
  // Whether the journal could only be read partially or not at all. Then the whole file is also
  // saved as `backupPath`, which ends in ".bad"; empty if that failed too.
  bool damaged = false;
  std::string backupPath;
};

// One journal file and the thread that writes it. Make all calls from one thread; only `close`,
// `discard`, and `recover` wait for the disk.
class Journal {
 public:
  explicit Journal(JournalSettings settings = {});
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  ~Journal() { close(); }

  // Creates a journal for a new recording.
  JournalResult create(const std::string& path);

  // Opens and reads a journal that an earlier run of the program did not finish. Does not change
  // the file until points are appended; a damaged end is then truncated first.
  JournalResult recover(const std::string& path, RecoveredTrack& out);

  bool isOpen() const { return file_ != nullptr; }
  // Track::recording of its points, while it is open.
  uint64_t recording() const { return recording_; }
  // Also valid after closing.
  const std::string& path() const { return path_; }
  void append(const TrackPoint& point);
  // Writes appended points to disk now.
  void flush();
  // Flushes and closes the file without deleting it. Returns false if some points could not be
  // written.
  bool close();
  // Closes the file and renames it to `path`, which must be unused. Returns false, with the name
  // unchanged, if the system refuses.
  bool keepAs(const std::string& path);
  // Deletes the file when the points are saved elsewhere or discarded. Returns false if the system
  // refuses.
  bool discard();

 private:
  void startWriter();
  void stopWriter();
  void writeUntilStopped();
  void writeOnce(std::unique_lock<std::mutex>& lock);
  static void tell(const std::function<void()>& news, std::unique_lock<std::mutex>& lock);
  std::string backUp();

  const JournalSettings settings_;
  std::string path_;
  uint64_t recording_ = 0;
  std::unique_ptr<ExclusiveFile> file_;  // used by the writer thread while it runs
  uint64_t end_ = 0;                     // of the data that is surely on disk; used like file_
  bool truncateBeforeWrite_ = false;     // there is damaged data after end_; used like file_
  std::thread writer_;

  std::mutex mutex_;  // protects the members below
  std::condition_variable changed_;
  std::vector<uint8_t> pending_;
  std::chrono::steady_clock::time_point due_;
  bool urgent_ = false;
  bool stopping_ = false;
  bool failing_ = false;
};

// Creates a journal at `path` or, if that has an unfinished recording, at "NAME-2" to "NAME-9".
JournalResult createFreeJournal(Journal& journal, const std::string& path);

// The names that createFreeJournal tries, whether or not the files exist.
std::vector<std::string> journalNames(const std::string& path);

// Those of these files that exist, in order: the ones to ask the user about at startup.
std::vector<std::string> existingJournals(const std::string& path);

}  // namespace vgps
