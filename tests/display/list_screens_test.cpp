#include <gtest/gtest.h>

#include <algorithm>

#include "display/raw_log.h"
#include "display/screens.h"
#include "display/statistics_list.h"
#include "tests/display/tidy.h"

namespace vgps {
namespace {

const std::pair<float, float> kSizes[] = {{800, 480}, {320, 240}, {240, 320}, {1600, 1000}};

TEST(StatisticsScreen, TimesAreHoursMinutesAndSeconds) {
  Scene scene;
  scene.screen = Screen::statistics;
  scene.statistics = {.totalSeconds = 3 * 3600 + 7 * 60 + 59,
                      .connectedSeconds = 100.0 * 3600,
                      .movingSeconds = 90,
                      .stoppedSeconds = 30,
                      .distance = 509.148,
                      .distance3d = 510};
  scene.maxAltitude = 545;
  const std::vector<StatisticsRow> rows = statisticsRows(scene);
  ASSERT_EQ(rows.size(), 9U);
  EXPECT_EQ(rows[0].value, "03:07:59");
  EXPECT_EQ(rows[1].value, "100:00:00");
  EXPECT_EQ(rows[3].value, "00:01:30, 75.00%");
  EXPECT_EQ(rows[4].value, "00:00:30, 25.00%");
  EXPECT_EQ(rows[7].value, "509.15 Km");
  scene.statistics.movingSeconds = scene.statistics.stoppedSeconds =
      0;  // no total, so no percentages
  EXPECT_EQ(statisticsRows(scene)[3].value, "00:00:00");
}

// Every line inside its screen, above the status, and none over another.
TEST(ListScreens, FitEverySize) {
  SceneRawLog log;
  log.kept = 300;
  log.rows.assign(300,
                  {"12:35:19.250", "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394"});
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
      const auto rows = std::count_if(
          canvas.texts.begin(), canvas.texts.end(),
          [](const RecordingCanvas::Text& text) { return text.text.starts_with("$GPRMC"); });
      const size_t room = rawLogRoom(canvas.bounds(), scene.density, scene.fontFactor);
      EXPECT_TRUE(screen != Screen::rawLog || static_cast<size_t>(rows) == room) << rows;
    }
  }
}

TEST(RawLogScreen, TheNewestStandsAtTheFoot) {
  Scene scene;
  scene.screen = Screen::rawLog;
  RecordingCanvas empty(800, 480);
  drawScreen(empty, scene);
  EXPECT_TRUE(empty.said("Nothing received since this screen opened."));

  for (const char* const text : {"first", "second", "third"}) {
    scene.rawLog.rows.push_back({"12:00:00.000", text});
  }
  scene.rawLog.kept = 3;
  scene.readoutDelayMicros = 38240;
  RecordingCanvas canvas(800, 480);
  drawScreen(canvas, scene);
  ASSERT_TRUE(canvas.said("third"));
  EXPECT_GT(canvas.find("third")->box.y, canvas.find("second")->box.y);
  EXPECT_GT(canvas.find("second")->box.y, canvas.find("first")->box.y);
  EXPECT_TRUE(canvas.said("Display delay: 38.2 ms"));
}

TEST(RawLogScreen, MoreRoomShowsMoreRowsOfTheSameSize) {
  Scene scene;
  scene.screen = Screen::rawLog;
  scene.rawLog.kept = kMostRawLogRows;
  scene.rawLog.rows.assign(kMostRawLogRows, {"12:00:00.000", "row"});
  RecordingCanvas small(800, 480);
  RecordingCanvas large(1600, 960);
  drawScreen(small, scene);
  drawScreen(large, scene);
  EXPECT_EQ(large.find("row")->font.size, small.find("row")->font.size);
  EXPECT_GT(large.texts.size(), 2 * small.texts.size() - 20);
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
