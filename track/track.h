#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "track/track_point.h"

namespace vgps {

enum TrackState : int32_t { kIdle = 0, kRecording = 1, kPaused = 2, kPlaying = 3 };

// A file that belongs to a point: a photograph, a voice note.
struct TrackAttachment {
  uint32_t point = 0;  // index into the track's points; several may name the same one
  std::string path;
};

struct Track {
  std::string name;  // empty until the user gives one, or a file of its own needs one
  // When its first point was recorded, milliseconds since 1970; 0: not known. The receiver's UTC,
  // that of the computer where the receiver has not told a date.
  int64_t startUtc = 0;
  // Which recording it is, by a number that its journal has too, so that what is saved twice stays
  // one track in a library; 0: not known.
  uint64_t recording = 0;

  // Thresholds of the recording filter; 0 is replaced by the option's value when recording starts.
  float angleThreshold = 0;     // degrees
  float speedThreshold = 0;     // km/h
  float altitudeThreshold = 0;  // meters

  PointList points;
  std::vector<TrackAttachment> attachments;
  std::vector<std::string> pointNames;  // of imported tracks; TrackPoint::name refers to them

  // Running values of the recording filter.
  float courseDeviation = 0;  // degrees
  float lastCourse = -1;      // degrees, of the last recorded point; -1: none since the start
  float lastAltitude = 0;     // meters, likewise; of the last point whose altitude is known
  bool lastAltitudeKnown = false;
  uint32_t cellMode = 0;  // not 0: the next fix is recorded when cells are
  int32_t state = kIdle;  // TrackState
  int32_t bes = 0;        // the option of that name when recording started
};

// When a track began whose first point this is: `Track::startUtc`.
int64_t startOf(const TrackPoint& first);

// A point can stand there: it is on the earth, and it is not the 0,0 of a receiver that knows
// nothing. Receivers have been seen to say 360 degrees north.
bool isPosition(double longitude, double latitude);

struct Waypoint {
  std::string name;
  double x = 0;  // longitude, degrees
  double y = 0;  // latitude, degrees
  double z = 0;  // meters
};

// Empty if the point has no name.
std::string_view pointName(const Track& track, const TrackPoint& point);
void setPointName(Track& track, TrackPoint& point, std::string_view name);

// "P #3", "P #3 (M)" for a marked point; points count from 1.
std::string pointLabel(const Track& track, size_t index);

}  // namespace vgps
