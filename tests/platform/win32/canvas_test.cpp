#include <gtest/gtest.h>

#include <array>

#include "app/win32/back_buffer.h"
#include "display/readout.h"
#include "platform/win32/gdiplus_canvas.h"
#include "tests/app/win32/drive.h"

namespace vgps {
namespace {

constexpr Color kGround = rgb(255, 255, 255);
constexpr Color kInk = rgb(10, 90, 200);

class GdiplusDrawing : public testing::Test {
 protected:
  static constexpr int kWidth = 200;
  static constexpr int kHeight = 100;

  void SetUp() override {
    const HDC screen = GetDC(nullptr);
    context = buffer.prepare(screen, kWidth, kHeight);
    ReleaseDC(nullptr, screen);
    ASSERT_NE(context, nullptr);
    canvas = std::make_unique<GdiplusCanvas>(context, kWidth, kHeight, fonts);
    canvas->clear(kGround);
  }

  void TearDown() override {
    EXPECT_EQ(canvas->status(), Gdiplus::Ok);
    canvas = nullptr;
  }

  Picture picture() {
    // What GDI+ holds back is drawn when its object goes.
    canvas = std::make_unique<GdiplusCanvas>(context, kWidth, kHeight, fonts);
    return Picture(context, {0, 0, kWidth, kHeight});
  }

  const GdiplusSession session;
  GdiplusFonts fonts;
  BackBuffer buffer;
  HDC context = nullptr;
  std::unique_ptr<GdiplusCanvas> canvas;
};

TEST_F(GdiplusDrawing, RectanglesHaveTheirColorAndBorders) {
  canvas->fillRect({20, 30, 40, 10}, kInk);
  const Picture drawn = picture();
  for (const auto& [x, y] : {std::pair(20, 30), std::pair(59, 39), std::pair(40, 35)}) {
    EXPECT_EQ(drawn.at(x, y), kInk) << x << ',' << y;
  }
  EXPECT_EQ(drawn.ink({0, 0, kWidth, kHeight}, kGround), 40 * 10);
}

TEST_F(GdiplusDrawing, ShapesStandWhereTheyShould) {
  const std::array<Point, 3> triangle = {Point{100, 10}, Point{140, 10}, Point{100, 50}};
  canvas->fillPolygon(triangle, kInk);
  canvas->fillEllipse({10, 10, 40, 40}, kInk);
  canvas->line({0, 80}, {200, 80}, {kInk, 3});
  const std::array<Point, 3> corner = {Point{150, 60}, Point{190, 60}, Point{190, 95}};
  canvas->polyline(corner, {kInk, 2});
  canvas->polyline({corner.data(), 1}, {kInk, 2});  // nothing, and no failure
  canvas->ellipse({60, 10, 30, 30}, {kInk, 2});
  const Picture drawn = picture();
  EXPECT_EQ(drawn.at(110, 20), kInk);
  EXPECT_EQ(drawn.at(135, 45), kGround) << "beyond the long side";
  EXPECT_EQ(drawn.at(30, 30), kInk);
  EXPECT_EQ(drawn.at(12, 12), kGround) << "outside the round";
  EXPECT_EQ(drawn.at(100, 80), kInk);
  EXPECT_EQ(drawn.at(75, 25), kGround) << "only the rim";
  EXPECT_GT(drawn.ink({60, 20, 6, 10}, kGround), 5);
  EXPECT_GT(drawn.ink({187, 70, 6, 5}, kGround), 5);
}

TEST_F(GdiplusDrawing, TextIsAlignedInItsBoxAndClippedToIt) {
  const Font font{.size = 16, .bold = true};
  const float width = canvas->textWidth("48.117", font);
  EXPECT_GT(width, 30);
  EXPECT_LT(width, 70);
  struct {
    Align align;
    float left;
  } const rows[] = {
      {Align::left, 20}, {Align::center, 100 - width / 2}, {Align::right, 180 - width}};
  for (const auto& row : rows) {
    canvas->clear(kGround);
    canvas->text("48.117", {20, 40, 160, 24}, font, kInk, row.align);
    const Picture drawn = picture();
    EXPECT_GT(drawn.ink({row.left, 40, width, 24}, kGround), 60);
    EXPECT_EQ(drawn.ink({0, 0, kWidth, kHeight}, kGround),
              drawn.ink({row.left - 1, 40, width + 2, 24}, kGround));
  }
  canvas->clear(kGround);
  canvas->text("48.117300 N", {20, 40, 30, 8}, font, kInk, Align::left);
  const Picture clipped = picture();
  EXPECT_GT(clipped.ink({20, 40, 30, 8}, kGround), 5);
  EXPECT_EQ(clipped.ink({52, 0, 148, kHeight}, kGround), 0);
  EXPECT_EQ(clipped.ink({0, 50, kWidth, 50}, kGround), 0);
}

TEST_F(GdiplusDrawing, UnknownFamiliesAreReplaced) {
  const Font font{.family = "No such family", .size = 16};
  canvas->text("text", {0, 0, 100, 24}, font, kInk, Align::left);
  EXPECT_GT(picture().ink({0, 0, 100, 24}, kGround), 20);
  EXPECT_EQ(canvas->textWidth("text", font), canvas->textWidth("text", Font{.size = 16}));
}

TEST_F(GdiplusDrawing, DegreesAndNoiseHaveWidth) {
  const Font font{.size = 16};
  EXPECT_GT(canvas->textWidth("1°", font), canvas->textWidth("1", font));
  EXPECT_GT(canvas->textWidth("\xff\xfe", font), 0);
  EXPECT_EQ(canvas->textWidth("", font), 0);
  canvas->text("", {0, 0, 10, 10}, font, kInk, Align::left);
}

TEST(GdiplusReadout, IsDrawnWithoutFailureAtEverySize) {
  const GdiplusSession session;
  GdiplusFonts fonts;
  const HDC screen = GetDC(nullptr);
  for (const SIZE size : {SIZE{800, 480}, {1280, 800}, {320, 240}, {1, 1}, {3, 500}}) {
    BackBuffer buffer;
    const HDC context = buffer.prepare(screen, size.cx, size.cy);
    ASSERT_NE(context, nullptr);
    Scene scene;
    scene.palette = nightPalette();
    GdiplusCanvas canvas(context, size.cx, size.cy, fonts);
    drawReadout(canvas, scene);
    EXPECT_EQ(canvas.status(), Gdiplus::Ok) << size.cx;
  }
  ReleaseDC(nullptr, screen);
}

}  // namespace
}  // namespace vgps
