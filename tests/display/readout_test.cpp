#include "display/readout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "display/readout_text.h"
#include "display/status_line.h"
#include "display/text_fit.h"
#include "geo/coordinate_lines.h"
#include "geo/units.h"
#include "tests/display/tidy.h"

namespace vgps {
namespace {

void count(Scene& scene, SentenceType kind) {
  scene.stats.kinds[static_cast<size_t>(kind)].count = 10;
}

Scene liveScene(std::vector<ViewedSatellite>& view) {
  Scene scene;
  scene.fix.fixStatus = 1;
  scene.fix.latitude = -48.117300001780194;
  scene.fix.longitude = -171.516666666666667;
  scene.fix.altitude = 8848;
  scene.fix.speedKnots = 222.4;
  scene.fix.speedMps = 114.41;
  scene.fix.speedKmh = 411.88;
  scene.fix.speedMph = 255.93;
  scene.fix.course = 337.4;
  scene.fix.magneticVariation = -3.1;
  scene.fix.utcTime = {2026, 3, 0, 23, 22, 35, 19, 0};
  scene.fix.localTime = {0, 0, 0, 0, 0, 35, 19, 0};
  scene.utcOffsetMinutes = -120;
  scene.satellites.usedCount = 18;
  scene.satellites.inViewCount = 12;
  scene.satellites.pdop = 12.5f;
  scene.satellites.hdop = 0.9f;
  scene.satellites.vdop = 11.1f;
  for (int i = 0; i < 34; ++i) {
    const auto system = static_cast<SatelliteSystem>(1 + i / 9);
    view.push_back({.system = system,
                    .id = 1 + i * 3,
                    .snr = static_cast<float>(i) * 1.7f,
                    .used = i % 2 == 0});
  }
  scene.view = view;
  scene.maxSpeed = 512.25;
  scene.maxAltitude = 8900;
  scene.source = "COM13, 115200 baud";
  scene.state = ReceiverState::fix;
  scene.fixSeen = true;
  scene.fixAgeMs = 900;
  scene.sentencesPerSecond = 105.3;
  count(scene, SentenceType::rmc);
  count(scene, SentenceType::gga);
  count(scene, SentenceType::gsv);
  return scene;
}

struct Size {
  float width, height;
};

class ReadoutAtSize : public testing::TestWithParam<Size> {
 protected:
  RecordingCanvas canvas{GetParam().width, GetParam().height};
};

TEST_P(ReadoutAtSize, SaysEverythingWithoutClippingOrOverlap) {
  std::vector<ViewedSatellite> view;
  drawReadout(canvas, liveScene(view));
  expectTidy(canvas);
  for (const char* text :
       {"X: 171 31' 0.000''W", "Y: 48 7' 2.280''S", "411.88", "Km/H", "222.40 Knots", "max 512.25",
        "337.4°", "8848.00m", "22:35:19", "00:35:19", "18 used, 34 in view", "12.5", "0.9", "11.1",
        "GPS fix", "3D fix", "fix 0 s ago"}) {
    EXPECT_TRUE(canvas.said(text)) << text;
  }
  const bool roomForDetails = GetParam().width * GetParam().height > 240 * 240;
  for (const char* text : {"114.41 m/s", "255.93 MpH", "max 8900.00m", "2026-03-23", "UTC+02:00"}) {
    EXPECT_TRUE(canvas.said(text) || !roomForDetails) << text;
  }
}

TEST_P(ReadoutAtSize, IsTidyWithNothingKnown) {
  drawReadout(canvas, Scene());
  expectTidy(canvas);
  EXPECT_TRUE(canvas.said("no position"));
  EXPECT_TRUE(canvas.said("not connected"));
  EXPECT_TRUE(canvas.said("no satellites"));
  for (const auto& text : canvas.texts) {
    if (text.text == "UTC+00:00") continue;
    EXPECT_EQ(text.text.find_first_of("0123456789"), std::string::npos) << text.text;
  }
}

TEST_P(ReadoutAtSize, LongTextsEndInAnEllipsis) {
  std::vector<ViewedSatellite> view;
  Scene scene = liveScene(view);
  scene.source = std::string(300, 'W');
  scene.notice = "Unknown option";
  scene.fix.altitude = -1e30;
  scene.fix.speedKmh = 1e300;
  scene.fix.longitude = 1e18;
  scene.satellites.pdop = 1e30f;
  scene.satellites.usedCount = 2000000000;
  for (const int32_t format : {kDegreesMinutesSeconds, kDecimalDegrees, kUtmGrid}) {
    scene.positionFormat = format;
    canvas.texts.clear();
    drawReadout(canvas, scene);
    expectTidy(canvas);
  }
}

// However large or small a person wants the texts, and however dense the screen is.
TEST_P(ReadoutAtSize, IsTidyWithEveryTextSize) {
  std::vector<ViewedSatellite> view;
  Scene scene = liveScene(view);
  for (const float density : {1.f, 1.5f}) {
    scene.density = density;
    for (const float factor : {0.1f, 0.7f, 1.3f, 2.f, 5.f}) {
      scene.fontFactor = factor;
      RecordingCanvas scaled(GetParam().width * density, GetParam().height * density);
      drawReadout(scaled, scene);
      expectTidy(scaled);
      for (const auto& text : scaled.texts) EXPECT_GE(text.font.size, 9 * density) << text.text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ReadoutAtSize,
                         testing::Values(Size{800, 480}, Size{1280, 800}, Size{320, 240},
                                         Size{240, 320}, Size{480, 800}, Size{1920, 400},
                                         Size{240, 240}, Size{240, 180}));

TEST(Readout, SurvivesAWindowOfNoSize) {
  std::vector<ViewedSatellite> view;
  const Scene scene = liveScene(view);
  for (const float size : {0.f, 1.f, 20.f, 60.f}) {
    RecordingCanvas canvas(size, size);
    drawReadout(canvas, scene);
  }
}

TEST(Readout, ThePositionIsWrittenAsThePersonWantsIt) {
  using Lines = std::array<std::string, 3>;
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  struct {
    double latitude, longitude;
    int32_t format, ellipsoid;
    Lines lines;
    const char* zone;
  } const rows[] = {
      {-33.5, 151.25, 0, 0, {"X: 151 15' 0.000''E", "Y: 33 30' 0.000''S", "Z: 328.00f"}, ""},
      {-33.5, 151.25, 1, 0, {"X: 151.2500000", "Y: -33.5000000", "Z: 328.00f"}, ""},
      {48.1173, 11.5166667, 2, 0, {"X: 687299", "Y: 5332401", "Z: 328.00f"}, "32U"},
      {48.1173, 11.5166667, 2, 3, {"X: 687276", "Y: 5331857", "Z: 328.00f"}, "32U"},
      {0, -0.0011, 7, 0, {"X: 0 0' 3.960''W", "Y: 0 0' 0.000''N", "Z: 328.00f"}, ""},
      {0.0010000000474974513, -0.001, 0, 0, {"no position", "", ""}, ""},
      {kNone, 10, 2, 0, {"no position", "", ""}, ""},
      {10, std::numeric_limits<double>::infinity(), 2, 0, {"no position", "", ""}, ""},
  };
  for (const auto& row : rows) {
    Scene scene;
    scene.fix.latitude = row.latitude;
    scene.fix.longitude = row.longitude;
    scene.fix.altitude = 100;
    scene.altitudeUnit = kFeet;
    scene.positionFormat = row.format;
    scene.utmEllipsoid = row.ellipsoid;
    const ReadoutTexts texts = readoutTexts(scene);
    EXPECT_EQ(texts.position, row.lines);
    EXPECT_EQ(texts.zone, row.zone);
  }
}

TEST(Readout, ZerosOfAReceiverWithoutFixAreDashes) {
  Scene scene;
  count(scene, SentenceType::rmc);
  count(scene, SentenceType::gga);
  scene.state = ReceiverState::noFix;
  ReadoutTexts texts = readoutTexts(scene);
  for (const std::string& text :
       {texts.course, texts.altitude, texts.utc, texts.local, texts.pdop, texts.satellitesInView}) {
    EXPECT_EQ(text, kDashes);
  }
  EXPECT_EQ(texts.speed, "-- Km/H");
  EXPECT_EQ(texts.satellitesUsed, "0");

  scene.fix.fixStatus = 1;
  texts = readoutTexts(scene);
  EXPECT_EQ(texts.speed, "0.00 Km/H");
  EXPECT_EQ(texts.altitude, "0.00m");
  EXPECT_EQ(texts.course, kDashes) << "at rest there is no course";
  scene.fix.speedKmh = 0.5;
  EXPECT_EQ(readoutTexts(scene).course, "0.0°");
  EXPECT_EQ(readoutTexts(scene).accuracy, "");
  scene.accuracy = 5.2;
  EXPECT_EQ(readoutTexts(scene).accuracy, "") << "no fix";
  scene.state = ReceiverState::fix;
  EXPECT_EQ(readoutTexts(scene).accuracy, "± 5.2 m est.");
}

TEST(Readout, SpeedInTheChosenUnitFirst) {
  Scene scene;
  scene.fix.speedMps = 10;
  scene.fix.speedKmh = 36;
  scene.speedUnit = kMps;
  const ReadoutTexts texts = readoutTexts(scene);
  EXPECT_EQ(texts.speed, "10.00 m/s");
  EXPECT_EQ(texts.otherSpeeds[0], "36.00 Km/H");
  EXPECT_EQ(texts.otherSpeeds[1], "-- Knots") << "simulated sentences give no knots";
  EXPECT_EQ(texts.otherSpeeds[2], "-- MpH");
}

TEST(Readout, CompassPointsGoAllTheWayRound) {
  const std::pair<double, const char*> cases[] = {{0, "N"},
                                                  {11.24, "N"},
                                                  {11.26, "NNE"},
                                                  {90, "E"},
                                                  {348.74, "NNW"},
                                                  {348.76, "N"},
                                                  {360, "N"},
                                                  {720, "N"},
                                                  {-90, "W"},
                                                  {1e300, "N"},
                                                  {std::numeric_limits<double>::infinity(), ""}};
  for (const auto& [degrees, point] : cases) EXPECT_EQ(compassPoint(degrees), point) << degrees;
}

TEST(Readout, SignalsOfOneSatelliteCountOnce) {
  const std::vector<ViewedSatellite> view = {
      {.system = SatelliteSystem::gps, .signal = 1, .id = 4, .snr = 40},
      {.system = SatelliteSystem::gps, .signal = 8, .id = 4, .snr = 44},
      {.system = SatelliteSystem::galileo, .signal = 7, .id = 4, .snr = 30}};
  EXPECT_EQ(distinctSatellites(view), 2);
  Scene scene;
  scene.view = view;
  RecordingCanvas canvas(800, 480);
  drawReadout(canvas, scene);
  EXPECT_TRUE(canvas.said("G4"));
  EXPECT_TRUE(canvas.said("44"));
  EXPECT_FALSE(canvas.said("40"));
  EXPECT_TRUE(canvas.said("E4"));
}

TEST(Readout, AStrongerSignalHasAHigherBar) {
  const auto barHeight = [](float snr) {
    const std::vector<ViewedSatellite> view = {
        {.system = SatelliteSystem::gps, .id = 4, .snr = snr, .used = true}};
    Scene scene;
    scene.view = view;
    RecordingCanvas canvas(800, 480);
    drawReadout(canvas, scene);
    const Color color = scene.palette.systems[static_cast<size_t>(SatelliteSystem::gps)];
    for (const auto& fill : canvas.fills) {
      if (fill.color == color) return fill.box.height;
    }
    return 0.f;
  };
  EXPECT_GT(barHeight(20), 10);
  EXPECT_NEAR(barHeight(40), 2 * barHeight(20), 2);
  EXPECT_EQ(barHeight(99), barHeight(55)) << "beyond the scale ends at its top";
}

TEST(Readout, EachValueFadesAndBecomesDashesByItsOwnAge) {
  struct {
    uint32_t ValueAges::*age;
    std::vector<std::string> texts;  // on the canvas
  } const rows[] = {
      {&ValueAges::position, {"X: 171 31' 0.000''W", "Y: 48 7' 2.280''S"}},
      {&ValueAges::motion, {"411.88", "337.4°", "222.40 Knots", "NNW, var 3.1° W"}},
      {&ValueAges::altitude, {"8848.00m", "Z: 8848.00m"}},
      {&ValueAges::time, {"22:35:19", "00:35:19", "2026-03-23"}},
      {&ValueAges::used, {"18 used, 34 in view"}},
      {&ValueAges::view, {"18 used, 34 in view"}},
      {&ValueAges::dilution, {"12.5", "0.9", "11.1"}},
  };
  for (const ReceiverState state : {ReceiverState::fix, ReceiverState::noFix}) {
    for (const auto& row : rows) {
      for (const uint32_t age : {5000U, 5001U, 30000U, 30001U}) {
        std::vector<ViewedSatellite> view;
        Scene scene = liveScene(view);
        scene.state = state;
        scene.ages.*row.age = age;
        RecordingCanvas canvas(800, 480);
        drawReadout(canvas, scene);
        for (const auto& other : rows) {
          for (const std::string& text : other.texts) {
            const bool ages = other.texts == row.texts;
            const auto* const found = canvas.find(text);
            EXPECT_EQ(found != nullptr, !ages || age <= 30000) << text << " at " << age;
            if (found == nullptr) continue;
            EXPECT_EQ(found->color == scene.palette.staleValue, ages && age > 5000)
                << text << " at " << age;
          }
        }
        EXPECT_EQ(canvas.said("no satellites"), scene.ages.view > 30000);
        EXPECT_TRUE(canvas.said("max 512.25")) << "the greatest speed does not age";
      }
    }
  }
}

TEST(Readout, ANewMaximumIsPointedOut) {
  Scene scene;
  scene.maxSpeed = 100;
  scene.maxAltitude = 200;
  for (const bool isNew : {false, true}) {
    scene.newMaxSpeed = isNew;
    RecordingCanvas canvas(800, 480);
    drawReadout(canvas, scene);
    EXPECT_EQ(canvas.find("max 100.00")->color, isNew ? scene.palette.good : scene.palette.label);
    EXPECT_EQ(canvas.find("max 200.00m")->color, scene.palette.label);
  }
}

TEST(Scene, StateFollowsConnectionDataAndFix) {
  EXPECT_EQ(receiverState(false, true, 0, 1), ReceiverState::notConnected);
  EXPECT_EQ(receiverState(true, false, 0, 1), ReceiverState::noData);
  EXPECT_EQ(receiverState(true, true, kSilentAfterMs + 1, 1), ReceiverState::noData);
  EXPECT_EQ(receiverState(true, true, kSilentAfterMs, 0), ReceiverState::noFix);
  EXPECT_EQ(receiverState(true, true, 0, 2), ReceiverState::fix);
}

TEST(TextFit, CutsBetweenCharacters) {
  RecordingCanvas canvas(100, 100);
  const Font font{.size = 10};
  EXPECT_EQ(shortened(canvas, "short", font, 100), "short");
  const std::string cut = shortened(canvas, "°°°°°°°°", font, 26);
  EXPECT_EQ(cut, "°°°°…");
  EXPECT_EQ(shortened(canvas, "text", font, 3), "");
}

// Across the end of a month the measured offset is a day too far.
TEST(Readout, UtcOffsetsAreThoseOfZones) {
  const std::pair<int32_t, std::string_view> rows[] = {{-120, "UTC+02:00"},    {-2400, "UTC-08:00"},
                                                       {46 * 60, "UTC+02:00"}, {-840, "UTC+14:00"},
                                                       {720, "UTC-12:00"},     {900, "UTC+09:00"}};
  for (const auto& [minutes, text] : rows) {
    Scene scene;
    scene.utcOffsetMinutes = minutes;
    EXPECT_EQ(readoutTexts(scene).offset, text);
  }
}

}  // namespace
}  // namespace vgps
