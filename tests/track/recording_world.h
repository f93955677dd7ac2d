#pragma once

#include <string>
#include <vector>

#include "geo/units.h"
#include "tests/fakes/fake_clock.h"
#include "track/recording.h"

namespace vgps {

// Writes down what recording asks for, in its order.
class FakeRecordingHooks : public RecordingHooks {
 public:
  void startTimer() override { said.emplace_back("timer on"); }
  void stopTimer() override { said.emplace_back("timer off"); }
  void playSound(const char* name) override { said.emplace_back(name); }
  void resetDrawnPath() override { said.emplace_back("path reset"); }
  void appendToDrawnPath(double, double) override { said.emplace_back("path"); }
  bool askToSave() override {
    said.emplace_back("ask");
    return answer;
  }
  bool save(Track& track) override {
    said.emplace_back("save " + std::to_string(track.points.size()));
    return saved;
  }
  void trackChanged(Track&) override { said.emplace_back("changed"); }
  void pointRecorded(const TrackPoint& point) override { journal.push_back(point); }
  void flushPoints() override { said.emplace_back("flush"); }
  void pointsSavedOrDiscarded() override { said.emplace_back("settled"); }

  std::vector<std::string> takeSaid() { return std::exchange(said, {}); }

  bool answer = false;
  bool saved = true;
  std::vector<std::string> said;
  std::vector<TrackPoint> journal;
};

struct RecordingWorld {
  FakeClock clock;
  Track track;
  RecordingOptions options;
  FakeRecordingHooks hooks;
  Recording recording{track, options, hooks, clock};
};

struct FixAt {
  double course = 0;
  double kmh = 20;
  double altitude = 500;
  double longitude = 11.5;
  double latitude = 48.1;

  operator FixRecord() const {
    FixRecord fix;
    fix.fixStatus = 1;
    fix.course = course;
    fix.altitude = altitude;
    fix.longitude = longitude;
    fix.latitude = latitude;
    const Speeds speeds = speedsFromKnots(kmh / kKmhPerKnot);
    fix.speedKnots = speeds.knots;
    fix.speedMps = speeds.mps;
    fix.speedKmh = kmh;
    fix.speedMph = speeds.mph;
    return fix;
  }
};

inline TrackPoint pointAt(double longitude, double latitude, double altitude = 0) {
  TrackPoint point;
  point.longitude = longitude;
  point.latitude = latitude;
  point.altitude = altitude;
  return point;
}

}  // namespace vgps
