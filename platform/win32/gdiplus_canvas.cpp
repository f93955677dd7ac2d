#include "platform/win32/gdiplus_canvas.h"

#include <array>
#include <cmath>
#include <vector>

#include "platform/win32/wide.h"

namespace vgps {
namespace {

Gdiplus::Color gdiplusColor(Color color) {
  return Gdiplus::Color(static_cast<BYTE>(color), static_cast<BYTE>(color >> 8),
                        static_cast<BYTE>(color >> 16));
}

Gdiplus::RectF gdiplusRect(const Rect& rect) {
  return Gdiplus::RectF(rect.x, rect.y, rect.width, rect.height);
}

std::vector<Gdiplus::PointF> gdiplusPoints(std::span<const Point> points) {
  std::vector<Gdiplus::PointF> converted;
  converted.reserve(points.size());
  for (const Point& point : points) converted.emplace_back(point.x, point.y);
  return converted;
}

// GDI+ does not substitute a missing font family: it draws nothing.
std::unique_ptr<Gdiplus::Font> makeFont(const std::string& wanted, float size, bool bold) {
  const std::array<std::wstring, 5> families = {wideFromUtf8(wanted), L"Arial", L"Liberation Sans",
                                                L"DejaVu Sans", L"Tahoma"};
  for (const std::wstring& name : families) {
    const Gdiplus::FontFamily family(name.c_str());
    if (family.GetLastStatus() != Gdiplus::Ok) continue;
    auto font = std::make_unique<Gdiplus::Font>(
        &family, size, bold ? Gdiplus::FontStyleBold : Gdiplus::FontStyleRegular,
        Gdiplus::UnitPixel);
    if (font->GetLastStatus() == Gdiplus::Ok) return font;
  }
  return nullptr;
}

}  // namespace

GdiplusSession::GdiplusSession() {
  const Gdiplus::GdiplusStartupInput input;
  if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) token_ = 0;
}

GdiplusSession::~GdiplusSession() {
  if (token_ != 0) Gdiplus::GdiplusShutdown(token_);
}

const Gdiplus::Font* GdiplusFonts::get(const Font& font) {
  constexpr float kSteps = 16;
  constexpr size_t kMostFonts = 200;  // resizing a window keeps requesting new sizes
  const int size = std::max(static_cast<int>(std::lround(font.size * kSteps)), 1);
  if (fonts_.size() >= kMostFonts) fonts_.clear();
  const auto [place, isNew] = fonts_.try_emplace({std::string(font.family), size, font.bold});
  if (isNew) {
    place->second =
        makeFont(std::string(font.family), static_cast<float>(size) / kSteps, font.bold);
  }
  return place->second.get();
}

GdiplusCanvas::GdiplusCanvas(HDC target, int width, int height, GdiplusFonts& fonts)
    : graphics_(target),
      // The default format adds a margin at both ends of a text.
      format_(Gdiplus::StringFormat::GenericTypographic()),
      bounds_{0, 0, static_cast<float>(width), static_cast<float>(height)},
      fonts_(fonts) {
  check(graphics_.GetLastStatus());
  check(graphics_.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias));
  check(format_.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap |
                               Gdiplus::StringFormatFlagsNoFitBlackBox |
                               Gdiplus::StringFormatFlagsMeasureTrailingSpaces));
  check(format_.SetTrimming(Gdiplus::StringTrimmingNone));
}

void GdiplusCanvas::check(Gdiplus::Status status) {
  if (status_ == Gdiplus::Ok) status_ = status;
}

void GdiplusCanvas::clear(Color color) { check(graphics_.Clear(gdiplusColor(color))); }

void GdiplusCanvas::line(Point from, Point to, const Pen& pen) {
  const Gdiplus::Pen drawn(gdiplusColor(pen.color), pen.width);
  check(drawn.GetLastStatus());
  check(graphics_.DrawLine(&drawn, from.x, from.y, to.x, to.y));
}

void GdiplusCanvas::polyline(std::span<const Point> points, const Pen& pen) {
  if (points.size() < 2) return;
  const Gdiplus::Pen drawn(gdiplusColor(pen.color), pen.width);
  const auto converted = gdiplusPoints(points);
  check(drawn.GetLastStatus());
  check(graphics_.DrawLines(&drawn, converted.data(), static_cast<INT>(converted.size())));
}

void GdiplusCanvas::fillRect(const Rect& rect, Color color) {
  const Gdiplus::SolidBrush brush(gdiplusColor(color));
  check(brush.GetLastStatus());
  check(graphics_.FillRectangle(&brush, gdiplusRect(rect)));
}

void GdiplusCanvas::fillPolygon(std::span<const Point> points, Color color) {
  if (points.size() < 3) return;
  const Gdiplus::SolidBrush brush(gdiplusColor(color));
  const auto converted = gdiplusPoints(points);
  check(brush.GetLastStatus());
  check(graphics_.FillPolygon(&brush, converted.data(), static_cast<INT>(converted.size())));
}

void GdiplusCanvas::ellipse(const Rect& box, const Pen& pen) {
  const Gdiplus::Pen drawn(gdiplusColor(pen.color), pen.width);
  check(drawn.GetLastStatus());
  check(graphics_.DrawEllipse(&drawn, gdiplusRect(box)));
}

void GdiplusCanvas::fillEllipse(const Rect& box, Color color) {
  const Gdiplus::SolidBrush brush(gdiplusColor(color));
  check(brush.GetLastStatus());
  check(graphics_.FillEllipse(&brush, gdiplusRect(box)));
}

// Implementations of GDI+ differ in how they clip text to its box: by whole letters or not at all.
// So this function positions the text itself and clips only if it does not fit.
void GdiplusCanvas::text(std::string_view text, const Rect& box, const Font& font, Color color,
                         Align align) {
  const Gdiplus::Font* const drawn = fonts_.get(font);
  if (drawn == nullptr) {
    check(Gdiplus::FontFamilyNotFound);
    return;
  }
  const Gdiplus::SolidBrush brush(gdiplusColor(color));
  check(brush.GetLastStatus());
  const std::wstring wide = wideFromUtf8(text);
  const Gdiplus::RectF size = measure(wide, *drawn);
  const float rest = box.width - size.Width;
  const float left = align == Align::left ? 0 : align == Align::center ? rest / 2 : rest;
  const bool clipped = rest < 0 || size.Height > box.height;
  if (clipped) check(graphics_.SetClip(gdiplusRect(box)));
  check(graphics_.DrawString(wide.c_str(), static_cast<INT>(wide.size()), drawn,
                             Gdiplus::PointF(box.x + left, box.y), &format_, &brush));
  if (clipped) check(graphics_.ResetClip());
}

float GdiplusCanvas::textWidth(std::string_view text, const Font& font) {
  const Gdiplus::Font* const measured = fonts_.get(font);
  if (measured == nullptr) {
    check(Gdiplus::FontFamilyNotFound);
    return 0;
  }
  return measure(wideFromUtf8(text), *measured).Width;
}

Gdiplus::RectF GdiplusCanvas::measure(const std::wstring& text, const Gdiplus::Font& font) {
  Gdiplus::RectF box;
  check(graphics_.MeasureString(text.c_str(), static_cast<INT>(text.size()), &font,
                                Gdiplus::PointF(0, 0), &format_, &box));
  return box;
}

}  // namespace vgps
