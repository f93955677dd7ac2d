#include "gps/fix.h"

#include <algorithm>
#include <cstring>

namespace vgps {

NmeaSentence::NmeaSentence() { std::memset(static_cast<void*>(this), 0, sizeof *this); }

// Only what a sentence of that kind can fill: the satellite records are large, and a line that is
// none of them fills nothing. The size comes from a table so that the library clears it; compilers
// inline a slow instruction for a size they know.
void NmeaSentence::begin(int32_t newKind, int32_t newTag) {
  static constexpr std::array<size_t, 5> kRecordSizes = {0, sizeof rmc, sizeof gga, 0,
                                                         std::max(sizeof gsa, sizeof gsv)};
  kind = newKind;
  tag = newTag;
  std::memset(static_cast<void*>(&rmc), 0, kRecordSizes[static_cast<size_t>(newKind)]);
}

}  // namespace vgps
