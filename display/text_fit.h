#pragma once

#include <string>
#include <string_view>

#include "platform/canvas.h"

// Functions that make text fit into a box.
namespace vgps {

// The line height relative to the font size, large enough for every fallback font.
inline constexpr float kLineHeight = 1.2f;

// The largest font, at least `smallest`, in which `text` fits into width and height (pixels).
Font fittingFont(Canvas& canvas, std::string_view text, float width, float height, float smallest,
                 bool bold);

// `text`, shortened and ended by an ellipsis if it is wider than `width`; empty if not even the
// ellipsis fits.
std::string shortened(Canvas& canvas, std::string_view text, const Font& font, float width);

// Draws one line at the top of `box`, shortened with an ellipsis if necessary.
void drawShortened(Canvas& canvas, std::string_view text, const Rect& box, const Font& font,
                   Color color, Align align);

// Draws text on a colored background, at the left or right end of `box`. Returns its width.
float drawBadge(Canvas& canvas, std::string_view text, const Rect& box, float textSize,
                Color ground, Color color, bool atRight);

}  // namespace vgps
