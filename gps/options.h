#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

namespace vgps {

// The receiver's options, taken from the settings. Written by the user-interface thread at any time
// and read by the reader thread, hence atomic.
struct GpsOptions {
  std::atomic<int32_t> speedUnit{0};  // 0 km/h, 1 knots, 2 m/s, 3 mph
  std::atomic<bool> altitudeFromGeoidField{false};
  std::atomic<int32_t> utcOffsetMinutes{0};  // UTC minus local time
  // Which sentence closes an epoch: 0 the first of each burst, otherwise bits 1 RMC, 2 GGA.
  std::atomic<int32_t> epochSentenceSetting{0};
  std::atomic<bool> logNmea{false};
  std::atomic<int32_t> talkers{0};  // TalkerSetting
};

// One received line or binary message, as it is sent to the user-interface thread.
struct ReceivedLine {
  std::string_view text;          // the raw line without its CR LF, or the raw message bytes
  const void* message = nullptr;  // the SirfMessage if the input is binary
  uint32_t said = 0;              // which values a parsed sentence reported: Said bits
};

// What the receiver code needs from the program around it; each function is optional. Called on the
// thread that parses.
class GpsHooks {
 public:
  virtual ~GpsHooks() = default;
  virtual void playSound(const char* /*name*/) {}
  // Requests a repaint, at most one every 800 ms; the receiver of the message copies the fix first.
  virtual void repaint() {}
  // The maximum speed or altitude has changed; update the displays that show it.
  virtual void maxSpeedChanged() {}
  virtual void maxAltitudeChanged() {}
  // Returns when the user-interface thread has handled the line.
  virtual void lineReceived(const ReceivedLine& /*line*/) {}
  // A chunk of data was handled; update the display.
  virtual void refreshDisplay() {}
  // Bytes that match no supported protocol, for the raw log screen.
  virtual void unknownBytes(std::string_view /*bytes*/) {}
  virtual void setTitle(std::string_view /*title*/) {}
  virtual void sensorReading(double /*longitude*/, double /*latitude*/) {}
  // Stepping through the simulation: holding Shift while the simulation is at a stop steps
  // automatically.
  virtual bool shiftHeld() { return false; }
  virtual void pressSpace() {}
  // The stream log cannot be opened or written; reported once until it works again.
  virtual void logFailed(const std::string& /*path*/) {}
};

}  // namespace vgps
