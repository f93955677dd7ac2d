#pragma once

#include <cstdint>
#include <optional>

#include "app/session/app_state.h"
#include "gps/accuracy.h"

// What the values of a fix are worth to a person. `now` is the clock's tick.
namespace vgps {

// GGA's quality while a GGA says it; an RMC knows no more than that there is a fix.
int32_t currentQuality(const UiFix& shown, uint32_t now);

// None without a fix, or when nothing tells.
std::optional<Accuracy> currentAccuracy(const UiFix& shown, uint32_t now);

// Which values the receiver has ever given: a 0 of one that left the field empty is unknown.
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
