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
  float padding = 0;         // inside a part
  float smallText = 0;       // font sizes, pixels
  float smallest = 0;        // never less: below it nobody can read
  float largeTextShare = 1;  // of the room that large texts have, what they take
};

// How large texts are wanted.
struct TextScale {
  float density = 1;  // pixels per 1/96 inch
  float factor = 1;   // a person's own wish
};

// Texts grow with the window and with the wish, as far as all of them keep their room.
ReadoutLayout layoutReadout(const Rect& bounds, const TextScale& scale = {});

// All that is above the status line, for screens that are one part.
Rect contentArea(const ReadoutLayout& layout);

// `rect` without `amount` on every side; never of negative size.
Rect inset(const Rect& rect, float amount);

}  // namespace vgps
