#include <algorithm>
#include <cstring>

#include "gps/gps_fix.h"

// Received bytes into whole lines or whole binary messages.
//
//   text    $GPGGA,...*47 CR LF $GPRMC,...           up to the last LF; the rest is carried
//   binary  A0 A2 | length, 16 bits, high byte first | payload | checksum, 16 bits | B0 B3
namespace vgps {
namespace {

constexpr size_t kBinaryOverhead = 8;

constexpr bool startsBinary(std::string_view bytes) {
  return bytes.size() >= 2 && bytes[0] == '\xA0' && bytes[1] == '\xA2';
}

// The length of the binary message at the front; 0 while its header is not whole.
constexpr size_t binaryMessageLength(std::string_view bytes) {
  if (bytes.size() < 4) return 0;
  const auto high = static_cast<uint8_t>(bytes[2]);
  const auto low = static_cast<uint8_t>(bytes[3]);
  return (size_t{high} << 8 | low) + kBinaryOverhead;
}

}  // namespace

// Too much to carry is cut to its end: the start is lost then, and with it the line.
void GpsFix::carryOver(std::string_view rest) {
  if (rest.size() > carry.size()) rest.remove_prefix(rest.size() - carry.size());
  std::memmove(carry.data(), rest.data(), rest.size());
  carryLength = static_cast<int32_t>(rest.size());
}

// In step mode a held Shift key walks on through the places where the simulation stands still.
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
    if (startsBinary(work)) {
      state.inputProtocol = kSirfBinary;
      const size_t length = binaryMessageLength(work);
      if (length == 0 || work.size() < length) {
        carryOver(work);
        return;
      }
      processLines(work.substr(0, length));
      work.remove_prefix(length);
      continue;
    }
    // Neither text nor binary of a receiver, or the middle of something: shown and dropped whole.
    state.stats.rejected += static_cast<uint64_t>(std::count(work.begin(), work.end(), '\n'));
    state.hooks.unknownBytes(work);
    return;
  }
}

}  // namespace vgps
