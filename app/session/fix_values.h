#pragma once

#include <cstdint>
#include <optional>

#include "app/session/app_state.h"
#include "gps/accuracy.h"

// How to present the values of a fix to the user. `now` is the clock's tick.
namespace vgps {

// The quality from GGA while GGA reports it; RMC only reports that there is a fix.
int32_t currentQuality(const UiFix& shown, uint32_t now);

// In the fix, as GGA counts them or GSA lists them.
int32_t usedSatellites(const UiFix& shown);

// None without a fix, or when nothing tells.
std::optional<Accuracy> currentAccuracy(const UiFix& shown, uint32_t now);

// Which values the receiver has ever reported: a 0 from one that left the field empty is unknown.
struct KnownValues {
  bool status = false;  // whether there is a fix
  bool position = false;
  bool altitude = false;
  bool speed = false;
  bool course = false;
  bool variation = false;
  bool time = false;
  bool date = false;
  bool used = false;  // number of satellites used
  bool inView = false;
};
KnownValues knownValues(const UiFix& shown);

}  // namespace vgps
