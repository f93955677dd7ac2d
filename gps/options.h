#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

namespace vgps {

// What the settings choose for the receiver's side. Written by the user-interface thread at any
// time, read by the reader thread, hence atomic.
struct GpsOptions {
  std::atomic<int32_t> speedUnit{0};  // 0 km/h, 1 knots, 2 m/s, 3 mph
  std::atomic<bool> altitudeFromGeoidField{false};
  std::atomic<int32_t> utcOffsetMinutes{0};  // UTC minus local time
  // Which sentence closes an epoch: 0 the first of each burst, else bits 1 RMC, 2 GGA.
  std::atomic<int32_t> epochSentenceSetting{0};
  std::atomic<bool> logNmea{false};
  std::atomic<int32_t> talkers{0};  // TalkerSetting
};

// One received line or binary message, as it is sent to the user-interface thread.
struct ReceivedLine {
  std::string_view text;          // the raw line without its CR LF, or the raw message bytes
  const void* message = nullptr;  // the SirfMessage when the input is binary
  uint32_t said = 0;              // what a parsed sentence vouched for: Said bits
};

// What the receiver's side asks of the program around it, which fills what it cares about. Called
// on the thread that parses.
class GpsHooks {
 public:
  virtual ~GpsHooks() = default;
  virtual void playSound(const char* /*name*/) {}
  // Requests a repaint, at most one every 800 ms; the receiver of the message copies the fix first.
  virtual void repaint() {}
  // The greatest speed or altitude has changed; the displays that show it follow.
  virtual void maxSpeedChanged() {}
  virtual void maxAltitudeChanged() {}
  // Returns when the user-interface thread has handled the line.
  virtual void lineReceived(const ReceivedLine& /*line*/) {}
  // A chunk of data was handled: the display follows.
  virtual void refreshDisplay() {}
  // Bytes that are neither text nor binary of a receiver, for the raw log screen.
  virtual void unknownBytes(std::string_view /*bytes*/) {}
  virtual void setTitle(std::string_view /*title*/) {}
  virtual void sensorReading(double /*longitude*/, double /*latitude*/) {}
  // The stepping aid of the simulation: holding Shift while standing steps on by itself.
  virtual bool shiftHeld() { return false; }
  virtual void pressSpace() {}
  // The stream log cannot be opened or written; told once until it works again.
  virtual void logFailed(const std::string& /*path*/) {}
};

}  // namespace vgps
