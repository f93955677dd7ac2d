#pragma once

#include "platform/canvas.h"

namespace vgps {

// Where the parts of the read-out stand, in whole pixels. Wide windows have the position beside
// the speed, tall ones above it.
struct ReadoutLayout {
  Rect position;
  Rect speed;
  Rect altitude;
  Rect course;
  Rect utc;
  Rect local;
  Rect satellites;
  Rect status;
  float padding = 0;    // inside a part
  float smallText = 0;  // font sizes, pixels
  float smallest = 0;   // never less: below it nobody can read
};

ReadoutLayout layoutReadout(const Rect& bounds);

// `rect` without `amount` on every side; never of negative size.
Rect inset(const Rect& rect, float amount);

}  // namespace vgps
