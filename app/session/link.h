#pragma once

#include <cstdint>
#include <string>

#include "gps/gps_fix.h"

namespace vgps {

// Where the data come from, as the settings and the command line choose it.
struct SourceChoice {
  std::string port = {};  // "COM3", "/dev/ttyUSB0"
  uint32_t speed = kDefaultBaudRate;
  bool simulate = false;
  bool walk = false;  // of the two built-in simulations the one to look at the program with
  bool useGpsApi = false;
  bool useSensorApi = false;
};

// In milliseconds. Attempts are made a tenth early because timers are never exact.
struct LinkTimes {
  uint32_t lostAfterMs = 10000;    // without a byte
  uint32_t retryMs = 5000;         // from a failed attempt to the next one
  uint32_t reopenMs = 5000;        // from an opening that brought no data
  bool retryFirstOpening = false;  // or a source that does not open is left alone
};

// Of a program without a window, which runs until its user stops it. A device that opens and hangs
// up at once is left alone for longer than one that is not there.
inline constexpr LinkTimes kUnattendedTimes = {.retryMs = 1000, .retryFirstOpening = true};

// The link to the receiver, the same for the window and the command line: opens a source and
// monitors a serial one. When the device is unplugged or goes silent, the reader keeps looking for
// it, even under another port name, until data arrives again. The link reports nothing itself:
// callers query its state and put it into words. All calls come from the user-interface thread.
class Link {
 public:
  enum class State {
    closed,
    failed,  // did not open; `error` says why
    open,    // data come, or the first are waited for
    lost,    // was open, and is opened again and again until data come
    held,    // the port is left to others for a while
  };

  Link(GpsFix& fix, const Clock& clock) : fix_(fix), clock_(clock) {}

  // Closes the previous source first. Returns true for a missing location sensor too; the link is
  // closed then.
  bool open(const SourceChoice& source);
  // Returns false if neither a serial port nor a sensor was open.
  bool close(bool silent = false);

  // Releases a serial port for others to open, and takes it back.
  void hold();
  void resume();

  // Bytes have arrived. Returns true if they end a loss.
  bool noteBytes();

  // Call it every second or every few seconds. With `reconnect` false, losses are not detected and
  // a lost port that still does not work is closed. Returns true if the device has just been lost:
  // unplugged if `error` is `notThere`, otherwise silent.
  bool check(bool reconnect);

  State state() const { return state_; }
  // Why the last attempt failed; while lost, `none` says that the port is open but silent.
  PortError error() const { return error_; }
  // The last one that was opened, also after it was closed. Its port changes when the device comes
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
  bool serial_ = false;         // only a serial line is watched
  uint32_t lastBytesTick_ = 0;  // or when the source was opened
  uint32_t attemptTick_ = 0;    // end of the last attempt
  bool attemptOpened_ = false;
};

}  // namespace vgps
