#pragma once

#include <array>
#include <string>

#include "display/scene.h"

// The texts of the readout. A value that has not been received yet is shown as dashes, not 0.
namespace vgps {

inline constexpr const char* kDashes = "--";

struct ReadoutTexts {
  // "X: 11 31' 0.000''E", "Y: ..." and "Z: 545.00m"; or "no position" alone.
  std::array<std::string, 3> position;
  std::string zone;      // UTM zone, "32U"; empty in other position formats
  std::string quality;   // of the fix, such as "GPS fix"
  std::string accuracy;  // "± 4 m est.", empty if unknown

  std::string speed;                       // in the chosen unit: "41.48 Km/H" or "-- Km/H"
  std::array<std::string, 3> otherSpeeds;  // the same in the other units
  std::string maxSpeed;

  std::string course;
  std::string courseDetail;  // compass point and magnetic variation
  std::string altitude;
  std::string maxAltitude;

  std::string utc;
  std::string date;
  std::string local;
  std::string offset;  // "UTC+02:00"

  std::string satellitesUsed;
  std::string satellitesInView;
  std::string pdop;
  std::string hdop;
  std::string vdop;
};

ReadoutTexts readoutTexts(const Scene& scene);

// The nearest of the 16 compass points, "N" to "NNW".
std::string_view compassPoint(double degrees);

// Whether the fix contains a position: receivers without a fix report zeros.
bool hasPosition(const FixRecord& fix);

// The number of satellites in view; one with several signals counts once.
int32_t distinctSatellites(std::span<const ViewedSatellite> view);

}  // namespace vgps
