#pragma once

#include "platform/canvas.h"

namespace vgps {

// The positions of the parts of the read-out, in whole pixels. Wide windows show the position
// beside the speed, tall ones above it.
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
  float smallest = 0;        // never less: smaller text is unreadable
  float largeTextShare = 1;  // of the room that large texts have, what they take
};

// How large texts are wanted.
struct TextScale {
  float density = 1;  // pixels per 1/96 inch
  float factor = 1;   // chosen by the user
};

// Texts grow with the window and with the user's factor, as long as all of them fit.
ReadoutLayout layoutReadout(const Rect& bounds, const TextScale& scale = {});

// Everything above the status line, for screens with a single part.
Rect contentArea(const ReadoutLayout& layout);

// `rect` without `amount` on every side; never of negative size.
Rect inset(const Rect& rect, float amount);

}  // namespace vgps
