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
  point = 0,    // the line at `simJumpIndex`, once a second
  tapping = 1,  // one line per step signal
  timer = 2,    // the next line, once a second
};

// Replays stored NMEA lines in place of a receiver. Shared by the user interface, which controls
// it, and one reader thread, which waits here for the next line.
class Simulation {
 public:
  Simulation();

  // Waits a second, or for a step, and returns the next line with CR LF. Returns false if
  // `cancelled` returns true (checked again at each `wake`) or the mode changed meanwhile. Sets
  // `index` and `count` for the window title: which line of how many.
  bool next(std::string& line, uint32_t& index, uint32_t& count,
            const std::function<bool()>& cancelled);

  void setLines(std::vector<std::string> lines);
  void setMode(SimMode mode);
  SimMode mode() const;
  void jumpTo(uint32_t index);
  void step();
  // Makes a waiting `next` check whether it is cancelled.
  void wake();

  // The pause between lines; tests shorten it.
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

// The built-in trip around the globe: satellites and DOP once, followed by 21 positions.
const std::vector<std::string>& builtInSimLines();

}  // namespace vgps
