#pragma once

#include <string>
#include <string_view>

#include "platform/canvas.h"

// Making text fit its box.
namespace vgps {

// The height of a line of text over that of its em square, with room for every fallback font.
inline constexpr float kLineHeight = 1.2f;

// The greatest font, at least `smallest`, in which `text` fits into width and height (pixels).
Font fittingFont(Canvas& canvas, std::string_view text, float width, float height, float smallest,
                 bool bold);

// `text` itself, or its start with an ellipsis behind it, so that it is no wider than `width`;
// empty when not even the ellipsis fits.
std::string shortened(Canvas& canvas, std::string_view text, const Font& font, float width);

// One line at the top of `box` that ends in an ellipsis rather than at the border.
void drawShortened(Canvas& canvas, std::string_view text, const Rect& box, const Font& font,
                   Colour colour, Align align);

// Text on a coloured ground, at the right end of `box` or at its left. Returns its width.
float drawBadge(Canvas& canvas, std::string_view text, const Rect& box, float textSize,
                Colour ground, Colour colour, bool atRight);

}  // namespace vgps
