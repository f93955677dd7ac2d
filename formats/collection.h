#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/exchange.h"
#include "track/track.h"

namespace vgps {

// A file of exchange in memory, 72 bytes a point and its name.
struct CollectedPoint {
  double longitude = 0;  // degrees
  double latitude = 0;
  double altitude = 0;  // meters
  DateTime utc{};       // year 0: unknown
  float speed = 0;      // meters per second, where `hasSpeed`
  float course = 0;     // degrees
  uint32_t name = 0;    // place in the list of names, from 1
  bool hasAltitude = false;
  bool hasSpeed = false;
  bool hasCourse = false;
};

struct CollectedWaypoint {
  CollectedPoint point;
  size_t place = 0;  // among all waypoints and paths of the file
};

struct CollectedSegment {
  bool own = false;  // an element of its own in the file
  std::vector<CollectedPoint> points{};
};

struct CollectedPath {
  PathKind kind = PathKind::track;
  std::string name{};
  std::vector<CollectedSegment> segments{};
  size_t place = 0;
};

class ExchangeCollection : public ExchangeSink {
 public:
  bool waypoint(const ExchangePoint& point) override;
  bool beginPath(PathKind kind, std::string_view name) override;
  bool beginSegment(bool own) override;
  bool point(const ExchangePoint& point) override;
  bool endPath(std::string_view name) override;

  std::string_view nameOf(const CollectedPoint& point) const {
    return point.name == 0 ? std::string_view() : std::string_view(names_[point.name - 1]);
  }

  std::vector<CollectedWaypoint> waypoints;
  std::vector<CollectedPath> paths;

 private:
  CollectedPoint collected(const ExchangePoint& point);

  std::vector<std::string> names_;
  size_t places_ = 0;
};

// All segments in a row, as a track of this program; local times by the offset from UTC. Points
// without a position are left out.
Track trackOf(const ExchangeCollection& file, const CollectedPath& path, int32_t utcOffsetMinutes);

}  // namespace vgps
