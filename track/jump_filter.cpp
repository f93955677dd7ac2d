#include "track/jump_filter.h"

#include <algorithm>

#include "geo/distance.h"
#include "geo/units.h"

namespace vgps {

// Fixes of one second may arrive together. A speed that came with a wrong checksum is not believed.
bool JumpFilter::reaches(const Place& from, const FixRecord& fix, uint32_t tick) {
  constexpr double kFastest = 1200;  // km/h
  constexpr double kHour = 3600 * 1000;
  if (!from.known) return false;
  const double stated = fix.speedKnown() && !fix.positionDoubtful() ? 5 * fix.speedKmh : 0;
  const double hours = std::max<uint32_t>(tick - from.tick, 1000) / kHour;
  const double km =
      pointDistance({from.longitude, from.latitude, 0}, {fix.longitude, fix.latitude, 0},
                    kKilometers, kKilometers, false);
  return km <= std::max(kFastest, stated) * hours;
}

bool JumpFilter::isJump(const FixRecord& fix, uint32_t tick) {
  const Place place = {true, fix.longitude, fix.latitude, tick};
  const bool begins = !last_.known && !fix.positionDoubtful();
  if (begins || reaches(last_, fix, tick) || reaches(jump_, fix, tick)) {
    last_ = place;
    jump_ = {};
    return false;
  }
  jump_ = place;
  return true;
}

}  // namespace vgps
