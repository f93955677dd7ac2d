#include "gps/simulation.h"

#include <chrono>
#include <utility>

#include "gps/gps_fix.h"

namespace vgps {

// A trip around the globe at increasing speed. All positions carry the same checksum, which is
// mostly wrong; the parser does not require it to be right.
const std::vector<std::string>& builtInSimLines() {
  static const std::vector<std::string> kLines = {
      "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75",
      "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39",
      "$GPRMC,120000,A,0000.000,N,00000.000,E,022.4,315.0,010107,003.1,W*6A",
      "$GPRMC,120001,A,2230.000,N,04500.000,W,022.4,315.0,010107,003.1,W*6A",
      "$GPRMC,120002,A,4500.000,N,09000.000,W,023.4,315.0,010107,003.1,W*6A",
      "$GPRMC,120003,A,6730.000,N,13500.000,W,024.4,315.0,010107,003.1,W*6A",
      "$GPRMC,130000,A,9000.000,N,18000.000,W,055.1,090.0,010107,003.1,W*6A",
      "$GPRMC,130001,A,9000.000,N,09000.000,W,055.1,090.0,010107,003.1,W*6A",
      "$GPRMC,130002,A,9000.000,N,00000.000,E,080.4,090.0,010107,003.1,W*6A",
      "$GPRMC,130003,A,9000.000,N,09000.000,E,124.4,090.0,010107,003.1,W*6A",
      "$GPRMC,140000,A,9000.000,N,18000.000,E,155.1,180.0,010107,003.1,W*6A",
      "$GPRMC,140001,A,4500.000,N,18000.000,E,155.1,180.0,010107,003.1,W*6A",
      "$GPRMC,140002,A,0000.000,N,18000.000,E,180.4,180.0,010107,003.1,W*6A",
      "$GPRMC,140003,A,4500.000,S,18000.000,E,224.4,180.0,010107,003.1,W*6A",
      "$GPRMC,150000,A,9000.000,S,18000.000,E,255.1,270.0,010107,003.1,W*6A",
      "$GPRMC,150001,A,9000.000,S,09000.000,E,255.1,270.0,010107,003.1,W*6A",
      "$GPRMC,150002,A,9000.000,S,00000.000,E,280.4,270.0,010107,003.1,W*6A",
      "$GPRMC,150003,A,9000.000,S,09000.000,W,324.4,270.0,010107,003.1,W*6A",
      "$GPRMC,160000,A,9000.000,S,18000.000,W,355.1,000.0,010107,003.1,W*6A",
      "$GPRMC,160001,A,6730.000,S,13500.000,W,255.1,045.0,010107,003.1,W*6A",
      "$GPRMC,160002,A,4500.000,S,09000.000,W,155.4,045.0,010107,003.1,W*6A",
      "$GPRMC,160003,A,2230.000,S,04500.000,W,055.4,045.0,010107,003.1,W*6A",
      "$GPRMC,170000,A,0000.000,N,00000.000,E,001.1,000.0,010107,003.1,W*6A",
  };
  return kLines;
}

Simulation::Simulation() : simLines_(builtInSimLines()) {}

bool Simulation::next(std::string& line, uint32_t& index, uint32_t& count,
                      const std::function<bool()>& cancelled) {
  std::unique_lock lock(mutex_);
  const SimMode mode = simMode_;
  const auto woken = [&] { return simMode_ != mode || cancelled(); };
  if (mode == SimMode::tapping) {
    changed_.wait(lock, [&] { return stepped_ || woken(); });
  } else {
    changed_.wait_for(lock, std::chrono::milliseconds(paceMs), woken);
  }
  if (woken()) return false;  // a step is left for the reader it is meant for
  stepped_ = false;
  if (simLines_.empty()) return false;
  index = simIndex_;
  count = static_cast<uint32_t>(simLines_.size());
  line.assign(simLines_[simIndex_]).append("\r\n");
  simIndex_ = simMode_ == SimMode::timer ? simIndex_ + 1 : simJumpIndex_;
  if (simIndex_ >= simLines_.size()) simIndex_ = simJumpIndex_ = 0;
  return true;
}

void Simulation::setLines(std::vector<std::string> lines) {
  const std::lock_guard lock(mutex_);
  simLines_ = std::move(lines);
  simIndex_ = simJumpIndex_ = 0;
}

void Simulation::setMode(SimMode mode) {
  {
    const std::lock_guard lock(mutex_);
    simMode_ = mode;
  }
  changed_.notify_all();
}

SimMode Simulation::mode() const {
  const std::lock_guard lock(mutex_);
  return simMode_;
}

void Simulation::jumpTo(uint32_t index) {
  const std::lock_guard lock(mutex_);
  simJumpIndex_ = index;
}

void Simulation::step() {
  {
    const std::lock_guard lock(mutex_);
    stepped_ = true;
  }
  changed_.notify_all();
}

void Simulation::wake() {
  // While holding the lock, so that the reader either sees the change that caused this call or is
  // already waiting.
  const std::lock_guard lock(mutex_);
  changed_.notify_all();
}

}  // namespace vgps
