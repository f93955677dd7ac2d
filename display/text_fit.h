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

}  // namespace vgps
