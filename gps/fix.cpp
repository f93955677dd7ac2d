#include "gps/fix.h"

#include <algorithm>
#include <cstring>

namespace vgps {

NmeaSentence::NmeaSentence() { std::memset(static_cast<void*>(this), 0, sizeof *this); }

// Clears only the record for that kind of sentence: the satellite records are large, and other
// lines need none. The size comes from a table so that the library's function clears it; for a
// constant size, compilers inline a slow instruction.
void NmeaSentence::begin(int32_t newKind, int32_t newTag) {
  static constexpr std::array<size_t, 5> kRecordSizes = {0, sizeof rmc, sizeof gga, 0,
                                                         std::max(sizeof gsa, sizeof gsv)};
  kind = newKind;
  tag = newTag;
  std::memset(static_cast<void*>(&rmc), 0, kRecordSizes[static_cast<size_t>(newKind)]);
}

}  // namespace vgps
