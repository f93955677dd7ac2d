#include <algorithm>
#include <cstring>

#include "gps/gps_fix.h"

// Splits received bytes into complete lines or complete binary messages.
//
//   text    $GPGGA,...*47 CR LF $GPRMC,...           up to the last LF; the rest is carried
//   binary  A0 A2 ... B0 B3                          gps/sirf.h
namespace vgps {

// If too much is carried, only its end is kept; the start, and with it the line, is lost.
void GpsFix::carryOver(std::string_view rest) {
  if (rest.size() > carry.size()) rest.remove_prefix(rest.size() - carry.size());
  std::memmove(carry.data(), rest.data(), rest.size());
  carryLength = static_cast<int32_t>(rest.size());
}

// In step mode, holding Shift steps on through the positions at which the simulation stands still.
void GpsFix::stepWhileShiftHeld() {
  if (!simulate || state.simulation.mode() != SimMode::tapping) return;
  if (speedKmh == 0 && state.hooks.shiftHeld()) state.hooks.pressSpace();
}

void GpsFix::onReceive(std::string_view bytes) {
  std::string_view work = bytes;
  if (carryLength > 0) {
    joined_.assign(carry.data(), static_cast<size_t>(carryLength));
    joined_.append(bytes);
    work = joined_;
    carryLength = 0;
  }
  while (!work.empty()) {
    if (work[0] == '$') {
      state.inputProtocol = kNmeaText;
      const size_t lineFeed = work.rfind('\n');
      const size_t whole = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
      if (whole > 0) processLines(work.substr(0, whole));
      carryOver(work.substr(whole));
      stepWhileShiftHeld();
      return;
    }
    if (work.starts_with(kSirfStart)) {
      state.inputProtocol = kSirfBinary;
      const size_t length = sirfFrameLength(work);
      if (length == 0 || work.size() < length) {
        carryOver(work);
        return;
      }
      processLines(work.substr(0, length));
      work.remove_prefix(length);
      continue;
    }
    // Not a supported protocol, or the middle of something: shown and dropped as a whole.
    state.stats.rejected += static_cast<uint64_t>(std::count(work.begin(), work.end(), '\n'));
    state.hooks.unknownBytes(work);
    return;
  }
}

}  // namespace vgps
