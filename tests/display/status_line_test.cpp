#include "display/status_line.h"

#include <gtest/gtest.h>

#include "tests/display/tidy.h"

namespace vgps {
namespace {

Scene receiving() {
  Scene scene;
  scene.state = ReceiverState::fix;
  scene.fix.fixStatus = 1;
  scene.fixSeen = true;
  scene.satellites.usedCount = 8;
  scene.sentencesPerSecond = 6;
  scene.source = "COM3, 9600 baud";
  return scene;
}

TEST(StatusLine, SaysWhatTheReceiverIsDoing) {
  struct {
    ReceiverState state;
    int32_t quality, used;
    const char* text;
  } const rows[] = {
      {ReceiverState::notConnected, 1, 8, "not connected"},
      {ReceiverState::noData, 1, 8, "no data"},
      {ReceiverState::lost, 1, 8, "no data, trying again"},
      {ReceiverState::noFix, 0, 0, "no fix"},
      {ReceiverState::fix, 1, 3, "2D fix"},
      {ReceiverState::fix, 1, 4, "3D fix"},
      {ReceiverState::fix, 2, 9, "3D, differential fix"},
      {ReceiverState::fix, 4, 3, "2D, RTK fixed"},
      {ReceiverState::fix, 1, 0, "GPS fix"},    // only RMC: nobody counts satellites
      {ReceiverState::fix, 6, 5, "estimated"},  // no satellite stands behind it
      {ReceiverState::fix, 99, 5, "unknown fix type"},
  };
  for (const auto& row : rows) {
    Scene scene = receiving();
    scene.state = row.state;
    scene.fix.fixStatus = row.quality;
    scene.satellites.usedCount = row.used;
    EXPECT_EQ(statusTexts(scene).state, row.text);
  }
}

TEST(StatusLine, SaysWhatIsRecorded) {
  Scene scene = receiving();
  EXPECT_EQ(statusTexts(scene).recording, "");
  scene.trackPoints = 120;
  scene.trackLength = "4.56 Km";
  const char* const words[] = {"recording", "paused", "playing"};
  for (int32_t state = 1; state <= 3; ++state) {
    scene.trackState = state;
    EXPECT_EQ(statusTexts(scene).recording,
              std::string(words[state - 1]) + ": 120 points, 4.56 Km");
  }
  scene.trackState = 4;
  EXPECT_EQ(statusTexts(scene).recording, "");
}

TEST(StatusLine, SumsTheSignalsUp) {
  const std::vector<ViewedSatellite> view = {
      {.id = 1, .snr = 46}, {.id = 2, .snr = 31}, {.id = 3, .snr = 0}};
  Scene scene = receiving();
  EXPECT_EQ(statusTexts(scene).signal, "");
  scene.view = view;
  EXPECT_EQ(statusTexts(scene).signal, "C/N0 max 46, mean 39");
  scene.state = ReceiverState::noData;
  EXPECT_EQ(statusTexts(scene).signal, "") << "of satellites that are no longer heard";
}

TEST(StatusLine, NothingOverlapsHoweverNarrow) {
  const std::vector<ViewedSatellite> view = {{.id = 1, .snr = 46}};
  for (const float width : {60.f, 240.f, 320.f, 640.f, 1280.f}) {
    Scene scene = receiving();
    scene.view = view;
    scene.notice = "Not available yet.";
    scene.trackState = 1;
    scene.trackPoints = 123456;
    scene.trackLength = "1234.56 Km";
    RecordingCanvas canvas(width, 200);
    drawStatusLine(canvas, {{0, 180, width, 20}, 12}, scene);
    EXPECT_TRUE(canvas.texts[0].text == "3D fix" || width < 200);
    expectTidy(canvas);
    EXPECT_EQ(canvas.said("COM3, 9600 baud"), width >= 640);
  }
}

TEST(StatusLine, ANoticeIsReadableAndRecordingTellsWhyItWaitsHoweverNarrow) {
  for (const float width : {240.f, 320.f, 1280.f}) {
    Scene scene = receiving();
    scene.trackState = 1;
    scene.trackPoints = 1;
    scene.trackLength = "0.00 Km";
    scene.trackWaiting = "waiting: slower than 5 km/h";
    scene.notice = "Not saved. To get it back, choose Track, Recently discarded.";
    RecordingCanvas canvas(width, 240);
    drawStatusLine(canvas, {{0, 220, width, 20}, 12}, scene);
    expectTidy(canvas);
    std::string all;
    for (const auto& text : canvas.texts) all += text.text + ' ';
    EXPECT_NE(all.find(scene.notice), std::string::npos) << all;
    EXPECT_NE(all.find(scene.trackWaiting), std::string::npos) << all;
    EXPECT_EQ(all.find("1 point,") != std::string::npos, width == 1280.f) << all;
  }
}

TEST(StatusLine, TheAgeOfTheFixIsInSeconds) {
  Scene scene = receiving();
  const std::pair<uint32_t, const char*> rows[] = {
      {999, "fix 0 s ago"}, {14999, "fix 14 s ago"}, {7200000, "fix 7200 s ago"}};
  for (const auto& [ms, text] : rows) {
    scene.fixAgeMs = ms;
    EXPECT_EQ(statusTexts(scene).age, text);
  }
  scene.fixSeen = false;
  EXPECT_EQ(statusTexts(scene).age, "") << "before the first fix";
}

TEST(StatusLine, TellsWhatCameInNoSentence) {
  Scene scene = receiving();
  scene.message = "Sirf msg (29): 2 bytes";
  RecordingCanvas canvas(800, 200);
  drawStatusLine(canvas, {{0, 180, 800, 20}, 12}, scene);
  EXPECT_TRUE(canvas.said("Sirf msg (29): 2 bytes"));
}

TEST(StatusLine, ADrawingIsDueWhenAnAgeChangesWhatIsShown) {
  Scene scene = receiving();
  scene.state = ReceiverState::notConnected;
  scene.ages.dilution = 6000;
  const TimeDependentTexts before = timeDependentTexts(scene);
  scene.ages.dilution = 29000;
  EXPECT_EQ(timeDependentTexts(scene), before);
  scene.ages.dilution = 30001;
  EXPECT_NE(timeDependentTexts(scene).values, before.values) << "the values become dashes";
  scene.notice = "Not available yet.";
  EXPECT_NE(timeDependentTexts(scene).values, before.values) << "it may stand above the bar";
}

}  // namespace
}  // namespace vgps
