#pragma once

#include <string>
#include <vector>

#include "platform/canvas.h"

namespace vgps {

// A canvas that keeps what was drawn. Text is measured with the widths of a common sans serif
// font, so that what fits here fits on a screen.
class RecordingCanvas : public Canvas {
 public:
  struct Text {
    std::string text;
    Rect box;  // as given
    Rect ink;  // where the text itself stands in it
    Font font;
    Color color = 0;
  };
  struct Fill {
    Rect box;
    Color color = 0;
  };

  RecordingCanvas(float width, float height) : bounds_{0, 0, width, height} {}

  std::vector<Text> texts;
  std::vector<Fill> fills;
  int lines = 0;

  Rect bounds() const override { return bounds_; }
  void clear(Color color) override { fills.push_back({bounds_, color}); }
  void line(Point, Point, const Pen&) override { ++lines; }
  void polyline(std::span<const Point>, const Pen&) override { ++lines; }
  void fillRect(const Rect& rect, Color color) override { fills.push_back({rect, color}); }
  void fillPolygon(std::span<const Point>, Color) override {}
  void ellipse(const Rect&, const Pen&) override { ++lines; }
  void fillEllipse(const Rect& box, Color color) override { fills.push_back({box, color}); }

  void text(std::string_view text, const Rect& box, const Font& font, Color color,
            Align align) override {
    const float width = textWidth(text, font);
    const float left = align == Align::left     ? box.x
                       : align == Align::center ? box.x + (box.width - width) / 2
                                                : box.x + box.width - width;
    texts.push_back({std::string(text), box, {left, box.y, width, font.size * kLine}, font, color});
  }

  float textWidth(std::string_view text, const Font& font) override {
    float ems = 0;
    for (const char c : text) ems += emsOf(c);
    return ems * font.size * (font.bold ? 1.07f : 1);
  }

  bool said(std::string_view wanted) const { return find(wanted) != nullptr; }

  const Text* find(std::string_view wanted) const {
    for (const Text& text : texts) {
      if (text.text == wanted) return &text;
    }
    return nullptr;
  }

 private:
  static constexpr float kLine = 1.15f;

  static float emsOf(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) == 0x80) return 0;  // the rest of a character
    if (byte == 0xE2) return 1.0f;        // the ellipsis
    if (byte >= 0x80) return 0.4f;        // the degree sign
    if (c == ' ' || c == '.' || c == ',' || c == ':' || c == '/' || c == 'i' || c == 'l')
      return 0.28f;
    if (c == 'm' || c == 'M' || c == 'W') return 0.9f;
    if (c >= 'A' && c <= 'Z') return 0.72f;
    return 0.556f;
  }

  Rect bounds_;
};

}  // namespace vgps
