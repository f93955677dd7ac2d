#include <gtest/gtest.h>

#include "display/raw_log.h"
#include "display/screens.h"
#include "display/statistics_list.h"
#include "tests/display/tidy.h"

namespace vgps {
namespace {

const std::pair<float, float> kSizes[] = {{800, 480}, {320, 240}, {240, 320}, {1600, 1000}};

TEST(StatisticsScreen, TimesAreHoursAndMinutes) {
  Scene scene;
  scene.screen = Screen::statistics;
  scene.statistics = {.totalSeconds = 3 * 3600 + 7 * 60 + 59,
                      .connectedSeconds = 100.0 * 3600,
                      .movingSeconds = 90,
                      .stoppedSeconds = 30,
                      .statSeconds = 120,
                      .distance = 509.148,
                      .distance3d = 510};
  scene.maxAltitude = 545;
  const std::vector<StatisticsRow> rows = statisticsRows(scene);
  ASSERT_EQ(rows.size(), 9U);
  EXPECT_EQ(rows[0].value, "03:07");
  EXPECT_EQ(rows[1].value, "100:00");
  EXPECT_EQ(rows[3].value, "00:01, 75.00%");
  EXPECT_EQ(rows[4].value, "00:00, 25.00%");
  EXPECT_EQ(rows[7].value, "509.15 Km");
  scene.statistics.statSeconds = 0;  // not counted yet: no share
  EXPECT_EQ(statisticsRows(scene)[3].value, "00:01");
}

// Every line inside its screen, above the status, and none over another.
TEST(ListScreens, FitEverySize) {
  const std::vector<std::string> log(300,
                                     "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394");
  for (const Screen screen : {Screen::statistics, Screen::rawLog}) {
    for (const auto& [width, height] : kSizes) {
      Scene scene;
      scene.screen = screen;
      scene.rawLog = log;
      scene.readoutDelayMicros = 38200;
      RecordingCanvas canvas(width, height);
      drawScreen(canvas, scene);
      EXPECT_GT(canvas.texts.size(), 9U);
      expectTidy(canvas);
    }
  }
}

TEST(RawLogScreen, TheNewestStandsAtTheFoot) {
  const std::vector<std::string> log = {"first", "second", "third"};
  Scene scene;
  scene.screen = Screen::rawLog;
  RecordingCanvas empty(800, 480);
  drawScreen(empty, scene);
  EXPECT_TRUE(empty.said("Nothing received since this screen opened."));

  scene.rawLog = log;
  scene.readoutDelayMicros = 38240;
  RecordingCanvas canvas(800, 480);
  drawScreen(canvas, scene);
  ASSERT_TRUE(canvas.said("third"));
  EXPECT_GT(canvas.find("third")->box.y, canvas.find("second")->box.y);
  EXPECT_GT(canvas.find("second")->box.y, canvas.find("first")->box.y);
  EXPECT_TRUE(canvas.said("Display delay: 38.2 ms"));
}

TEST(Screens, WhatIsNotThereIsTheReadout) {
  EXPECT_TRUE(isScreenDrawn(Screen::rawLog));
  EXPECT_FALSE(isScreenDrawn(Screen::map));
  Scene scene;
  scene.screen = Screen::map;
  RecordingCanvas canvas(800, 480);
  drawScreen(canvas, scene);
  EXPECT_TRUE(canvas.said("POSITION"));
}

}  // namespace
}  // namespace vgps
