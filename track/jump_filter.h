#pragma once

#include <cstdint>

#include "gps/fix.h"

namespace vgps {

// Recognizes positions that a receiver cannot have reached since its last one: damage on the line
// changes a digit, and a point lies a continent away.
class JumpFilter {
 public:
  // Whether reaching this fix takes more than 1,200 km/h and more than five times the speed that it
  // states. A second fix in reach of such a one shows that the receiver is there, and is no jump.
  // One with a wrong checksum needs that confirmation even as the first of all. `tick`: when the
  // fix came, in milliseconds.
  bool isJump(const FixRecord& fix, uint32_t tick);

 private:
  struct Place {
    bool known = false;
    double longitude = 0;
    double latitude = 0;
    uint32_t tick = 0;
  };
  static bool reaches(const Place& from, const FixRecord& fix, uint32_t tick);

  Place last_;  // of the last fix that was no jump
  Place jump_;  // of the fix before, if it was one
};

}  // namespace vgps
