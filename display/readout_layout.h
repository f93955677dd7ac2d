#pragma once

#include "platform/canvas.h"

namespace vgps {

// The positions of the panels of the readout, in whole pixels. Wide windows show the position
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
  float padding = 0;         // inside a panel
  float smallText = 0;       // font sizes, pixels
  float smallest = 0;        // smallest readable text size, pixels
  float largeTextShare = 1;  // the share of the available space that large texts use
};

// How large the texts should be.
struct TextScale {
  float density = 1;  // pixels per 1/96 inch
  float factor = 1;   // chosen by the user
};

// Texts grow with the window and with the user's factor, as long as all of them fit.
ReadoutLayout layoutReadout(const Rect& bounds, const TextScale& scale = {});

// The whole area above the status line, for screens without panels.
Rect contentArea(const ReadoutLayout& layout);

// `rect` reduced by `amount` on every side; its size is never negative.
Rect inset(const Rect& rect, float amount);

}  // namespace vgps
