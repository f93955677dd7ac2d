#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace vgps {

enum class SimMode : int32_t {
  point = 0,    // once a second the line at `simJumpIndex`
  tapping = 1,  // one line for each step signal
  timer = 2,    // once a second the next line
};

// Replays stored NMEA lines instead of a receiver. Shared by the user interface, which chooses,
// and one reader thread, which waits here for the next line.
class Simulation {
 public:
  Simulation();

  // The next line with CR LF, after a second or a step; false when `cancelled` says so (asked again
  // at each `wake`), or the mode changed during the wait. `index` and `count` are for the title:
  // which line of how many.
  bool next(std::string& line, uint32_t& index, uint32_t& count,
            const std::function<bool()>& cancelled);

  void setLines(std::vector<std::string> lines);
  void setMode(SimMode mode);
  SimMode mode() const;
  void jumpTo(uint32_t index);
  void step();
  // Makes a waiting `next` ask whether it is cancelled.
  void wake();

  // The pause between lines; a test makes it short.
  std::atomic<uint32_t> paceMs{1000};

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> simLines_;
  uint32_t simIndex_ = 0;
  uint32_t simJumpIndex_ = 0;
  SimMode simMode_ = SimMode::timer;
  bool stepped_ = false;
};

// The built-in trip around the globe: satellites and DOP once, then 21 positions.
const std::vector<std::string>& builtInSimLines();

}  // namespace vgps
