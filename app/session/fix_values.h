#pragma once

#include <cstdint>
#include <optional>

#include "app/session/app_state.h"
#include "gps/accuracy.h"

// What the values of a fix are worth to a person. `now` is the clock's tick.
namespace vgps {

// GGA's quality while a GGA says it; an RMC knows no more than that there is a fix.
int32_t currentQuality(const UiFix& shown, uint32_t now);

// In the fix, as GGA counts them or GSA lists them.
int32_t usedSatellites(const UiFix& shown);

// None without a fix, or when nothing tells.
std::optional<Accuracy> currentAccuracy(const UiFix& shown, uint32_t now);

// Which values stand for something that the receiver said. `FixRecord` marks what a fix lacks; what
// is not 0 was said even without one, and a 0 counts only when a fix vouches for it.
struct KnownValues {
  bool status = false;  // whether there is a fix
  bool position = false;
  bool altitude = false;
  bool speed = false;
  bool course = false;
  bool variation = false;
  bool time = false;
  bool date = false;
  bool used = false;  // counts of satellites
  bool inView = false;
};
KnownValues knownValues(const UiFix& shown);

}  // namespace vgps
