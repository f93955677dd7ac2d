#include "display/text_fit.h"

#include <algorithm>
#include <cmath>

namespace vgps {
namespace {

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

Font fittingFont(Canvas& canvas, std::string_view text, float width, float height, float smallest,
                 bool bold) {
  Font font{.size = std::max(height / kLineHeight, smallest), .bold = bold};
  // Width grows with size, but not exactly, because of hinting: measure again after each step.
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
  // A very long line is first cut to approximately the right length.
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

void drawShortened(Canvas& canvas, std::string_view text, const Rect& box, const Font& font,
                   Color color, Align align) {
  if (text.empty()) return;
  const std::string shown = shortened(canvas, text, font, box.width);
  if (shown.empty()) return;
  const float height = std::min(std::ceil(font.size * kLineHeight), box.height);
  canvas.text(shown, {box.x, box.y, box.width, height}, font, color, align);
}

float drawBadge(Canvas& canvas, std::string_view text, const Rect& box, float textSize,
                Color ground, Color color, bool atRight) {
  const Font font = {.size = textSize, .bold = true};
  const float margin = std::round(textSize * 0.6f);
  const float width = std::min(std::ceil(canvas.textWidth(text, font)) + 2 * margin, box.width);
  const Rect mark = {atRight ? box.x + box.width - width : box.x, box.y, width, box.height};
  canvas.fillRect(mark, ground);
  const float top = mark.y + std::round((mark.height - font.size * kLineHeight) / 2);
  drawShortened(canvas, text,
                {mark.x + margin, std::max(top, mark.y), width - 2 * margin + 1, mark.height}, font,
                color, Align::left);
  return width;
}

}  // namespace vgps
