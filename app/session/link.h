#pragma once

#include <cstdint>
#include <string>

#include "gps/gps_fix.h"

namespace vgps {

// The data source, as chosen in the settings or on the command line.
struct SourceChoice {
  std::string port = {};  // "COM3", "/dev/ttyUSB0"
  uint32_t speed = kDefaultBaudRate;
  bool simulate = false;
  bool walk = false;  // of the two built-in simulations the one to look at the program with
  bool useGpsApi = false;
  bool useSensorApi = false;
};

// In milliseconds. An attempt may be made 10% early, because timers are never exact.
struct LinkTimes {
  uint32_t lostAfterMs = 10000;    // without receiving a byte
  uint32_t retryMs = 5000;         // from a failed attempt to the next one
  uint32_t reopenMs = 5000;        // after opening a port that delivered no data
  bool retryFirstOpening = false;  // otherwise, a source that fails to open is not retried
};

// For a program without a window, which runs until the user stops it. A device that opens and
// immediately hangs up is retried less often than a missing one.
inline constexpr LinkTimes kHeadlessLinkTimes = {.retryMs = 1000, .retryFirstOpening = true};

// The link to the receiver, the same for the window and the command line: opens a source and
// monitors a serial one. When the device is unplugged or goes silent, the reader keeps looking for
// it, even under another port name, until data arrives again. The link reports nothing itself:
// callers query its state and put it into words. All calls come from the user-interface thread.
class Link {
 public:
  enum class State {
    closed,
    failed,    // could not be opened; `error` tells why
    open,      // receiving data, or waiting for the first
    lost,      // was open; reopened again and again until data arrives
    released,  // released for a while so that others can use the port
  };

  Link(GpsFix& fix, const Clock& clock) : fix_(fix), clock_(clock) {}

  // Closes the previous source first. Returns true for a missing location sensor too; the link is
  // closed then.
  bool open(const SourceChoice& source);
  // Returns false if neither a serial port nor a sensor was open.
  bool close(bool silent = false);

  // Releases a serial port so that others can open it, and takes it back.
  void releasePort();
  void reclaimPort();

  // Call this when bytes arrive. Returns true if they end a loss.
  bool noteBytes();

  // Call this every few seconds or more often. With `reconnect` false, losses are not detected, and
  // a lost port that still does not work is closed. Returns true if the device has just been lost:
  // unplugged if `error` is `notFound`, otherwise silent.
  bool check(bool reconnect);

  State state() const { return state_; }
  // Why the last attempt failed. While lost, `none` means that the port is open but silent.
  PortError error() const { return error_; }
  // The last source that was opened, even after closing it. Its port changes if the device comes
  // back under another name.
  const SourceChoice& source() const { return source_; }

  LinkTimes times;

 private:
  bool attemptIsDue() const;
  bool hasGone() const;
  void followName(const PortAttempt& attempt);
  void followAttempt(bool reconnect);

  GpsFix& fix_;
  const Clock& clock_;
  SourceChoice source_;
  State state_ = State::closed;
  PortError error_ = PortError::none;
  bool serial_ = false;         // only a serial port is monitored
  uint32_t lastBytesTick_ = 0;  // or when the source was opened
  uint32_t attemptTick_ = 0;    // end of the last attempt
  bool attemptOpened_ = false;
};

}  // namespace vgps
