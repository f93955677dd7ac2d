#pragma once

#include <windows.h>

#include <objidl.h>

// GDI+ takes min and max from the global namespace.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "platform/canvas.h"

namespace vgps {

// Keeps GDI+ initialized. Destroy everything made with GDI+ before this.
class GdiplusSession {
 public:
  GdiplusSession();
  GdiplusSession(const GdiplusSession&) = delete;
  GdiplusSession& operator=(const GdiplusSession&) = delete;
  ~GdiplusSession();

 private:
  ULONG_PTR token_ = 0;
};

// Caches the fonts of a canvas, since each screen uses the same few again and again.
class GdiplusFonts {
 public:
  // Returns null if neither the family nor any substitute is installed.
  const Gdiplus::Font* get(const Font& font);

 private:
  using Key = std::tuple<std::string, int, bool>;  // family, sixteenths of a pixel, bold
  std::map<Key, std::unique_ptr<Gdiplus::Font>> fonts_;
};

// Draws into a device context, usually one in memory.
class GdiplusCanvas : public Canvas {
 public:
  GdiplusCanvas(HDC target, int width, int height, GdiplusFonts& fonts);

  Rect bounds() const override { return bounds_; }
  void clear(Color color) override;
  void line(Point from, Point to, const Pen& pen) override;
  void polyline(std::span<const Point> points, const Pen& pen) override;
  void fillRect(const Rect& rect, Color color) override;
  void fillPolygon(std::span<const Point> points, Color color) override;
  void ellipse(const Rect& box, const Pen& pen) override;
  void fillEllipse(const Rect& box, Color color) override;
  void text(std::string_view text, const Rect& box, const Font& font, Color color,
            Align align) override;
  float textWidth(std::string_view text, const Font& font) override;

  // The first failure since the canvas was created; Ok if none.
  Gdiplus::Status status() const { return status_; }

 private:
  void check(Gdiplus::Status status);
  Gdiplus::RectF measure(const std::wstring& text, const Gdiplus::Font& font);

  Gdiplus::Graphics graphics_;
  Gdiplus::StringFormat format_;
  Rect bounds_;
  GdiplusFonts& fonts_;
  Gdiplus::Status status_ = Gdiplus::Ok;
};

}  // namespace vgps
