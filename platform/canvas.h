#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// The interface to drawing: small and stateless; each call passes its own pen, brush, and font.
// Backends: GDI+ (platform/win32/), a recorder (tests/fakes/). Units are pixels; y grows downward.
namespace vgps {

struct Point {
  float x = 0;
  float y = 0;
};

struct Rect {
  float x = 0;
  float y = 0;
  float width = 0;
  float height = 0;
};

// 0x00BBGGRR, as in Windows and in the settings: 0x0000FF is red.
using Color = uint32_t;

struct Pen {
  Color color = 0;
  float width = 1;
};

struct Font {
  std::string_view family = "Arial";  // a backend may substitute a system font
  float size = 12;                    // height of the em square, pixels
  bool bold = false;
};

enum class Align { left, center, right };

class Canvas {
 public:
  virtual ~Canvas() = default;
  virtual Rect bounds() const = 0;
  virtual void clear(Color color) = 0;
  virtual void line(Point from, Point to, const Pen& pen) = 0;
  virtual void polyline(std::span<const Point> points, const Pen& pen) = 0;
  virtual void fillRect(const Rect& rect, Color color) = 0;
  virtual void fillPolygon(std::span<const Point> points, Color color) = 0;
  virtual void ellipse(const Rect& box, const Pen& pen) = 0;
  virtual void fillEllipse(const Rect& box, Color color) = 0;
  // One line of UTF-8 text: at the top of the box, aligned horizontally in it, and clipped to it.
  virtual void text(std::string_view text, const Rect& box, const Font& font, Color color,
                    Align align) = 0;
  virtual float textWidth(std::string_view text, const Font& font) = 0;
};

}  // namespace vgps
