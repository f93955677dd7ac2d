#include "display/text_fit.h"

#include <algorithm>

namespace vgps {
namespace {

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

Font fittingFont(Canvas& canvas, std::string_view text, float width, float height, float smallest,
                 bool bold) {
  Font font{.size = std::max(height / kLineHeight, smallest), .bold = bold};
  // Widths grow with the size, but hinting rounds them: ask again after each step.
  for (int step = 0; step < 4; ++step) {
    const float wanted = canvas.textWidth(text, font);
    if (wanted <= width || font.size <= smallest) break;
    font.size = std::max(font.size * std::max(width, 1.f) / wanted * 0.99f, smallest);
  }
  return font;
}

std::string shortened(Canvas& canvas, std::string_view text, const Font& font, float width) {
  if (canvas.textWidth(text, font) <= width) return std::string(text);
  size_t length = text.size();
  // A line that is far too long is cut near its place first.
  const float whole = canvas.textWidth(text, font);
  length = std::min(length, static_cast<size_t>(static_cast<float>(length) * width / whole) + 4);
  while (length > 0) {
    --length;
    while (length > 0 && continuesCharacter(text[length])) --length;
    std::string cut = std::string(text.substr(0, length)) + "…";
    if (canvas.textWidth(cut, font) <= width) return cut;
  }
  return {};
}

}  // namespace vgps
