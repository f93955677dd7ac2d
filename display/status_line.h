#pragma once

#include <string>

#include "display/scene.h"
#include "platform/canvas.h"

// The status line at the bottom of every screen: data source, fix status, recording, and signal
// strength.
namespace vgps {

struct StatusTexts {
  std::string state;      // "3D fix", "no data", ...
  std::string age;        // "fix 3 s ago"; empty before the first fix
  std::string rate;       // "6.0 sentences/s"
  std::string recording;  // "recording: 120 points, 4.56 Km"; empty while idle
  std::string waiting;    // "waiting: slower than 5 km/h"; empty while points are recorded
  std::string log;        // "log 1.2 MB"; empty while none is written
  std::string signal;     // "C/N0 max 46, mean 39, 8 used"; empty without signals
};

StatusTexts statusTexts(const Scene& scene);

// The bar across the bottom of a screen, and its text size.
struct StatusBar {
  Rect bar;
  float textSize = 0;
};

// Draw it last: a notice that is too long for the bar stands above it, over the screen.
void drawStatusLine(Canvas& canvas, const StatusBar& place, const Scene& scene);

// The texts that change with time alone. If they are unchanged, the screen need not be redrawn.
struct TimeDependentTexts {
  std::string status;  // in the status line
  std::string values;  // everywhere else, and the notice, which may stand above the status line
  bool operator==(const TimeDependentTexts&) const = default;
};
TimeDependentTexts timeDependentTexts(const Scene& scene);

}  // namespace vgps
