#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "gps/options.h"

namespace vgps {

// Records what the receiver's side asked for.
class FakeHooks : public GpsHooks {
 public:
  void playSound(const char* name) override { sounds.emplace_back(name); }
  void repaint() override { ++repaints; }
  void maxSpeedChanged() override { ++maxSpeedChanges; }
  void maxAltitudeChanged() override { ++maxAltitudeChanges; }
  void lineReceived(const ReceivedLine& line) override {
    lines.emplace_back(line.text);
    if (onLine) onLine(line);
  }
  void refreshDisplay() override { ++refreshes; }
  void unknownBytes(std::string_view bytes) override { unknown.emplace_back(bytes); }
  void setTitle(std::string_view text) override { title = text; }
  void sensorReading(double longitude, double latitude) override {
    sensorX = longitude;
    sensorY = latitude;
  }
  bool shiftHeld() override { return shift; }
  void pressSpace() override { ++spaces; }
  void logFailed(const std::string&) override { ++logFailures; }

  std::vector<std::string> sounds, lines, unknown;
  std::function<void(const ReceivedLine&)> onLine;
  int repaints = 0, maxSpeedChanges = 0, maxAltitudeChanges = 0, refreshes = 0, spaces = 0;
  int logFailures = 0;
  std::string title;
  std::atomic<double> sensorX{0}, sensorY{0};
  bool shift = false;
};

}  // namespace vgps
