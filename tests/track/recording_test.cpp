#include "track/recording.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "geo/distance.h"
#include "tests/track/recording_world.h"

namespace vgps {
namespace {

using Said = std::vector<std::string>;

// One letter for each fix: R recorded, a dot not.
std::string offered(RecordingWorld& world, const std::vector<FixAt>& fixes, uint32_t force = 0) {
  std::string result;
  for (const FixAt& fix : fixes) result += world.recording.offer(fix, force) ? 'R' : '.';
  return result;
}

TEST(Recording, WhichFixesBecomePoints) {
  struct {
    const char* what;
    std::vector<FixAt> fixes;
    const char* recorded;
  } const rows[] = {
      {"the first, even standing", {{.course = 0, .kmh = 0}}, "R"},
      {"no position",
       {{.longitude = 0.001, .latitude = -0.001}, {.longitude = 0.00100000005}},
       ".R"},
      {"not on the earth", {{.longitude = 720, .latitude = 360}, {.latitude = NAN}}, ".."},
      {"a slow right turn never", {{90}, {95}, {100}, {105}, {110}, {115}}, "R....."},
      {"a slow left turn soon", {{90}, {85}, {80}}, "R.R"},
      {"more than ten degrees", {{90}, {100}, {90}, {100.5}}, "R..R"},
      {"across north", {{359}, {1}}, "RR"},
      {"last course is cut", {{84.9}, {94.5}}, "RR"},
      {"last course is cut", {{84.9}, {74.5}}, "R."},
      {"more than thirty meters", {{.altitude = 500}, {.altitude = 530}, {.altitude = 470}}, "R.."},
      {"up or down", {{.altitude = 500}, {.altitude = 530.5}, {.altitude = 500}}, "RRR"},
      {"below 5 km/h not", {{90}, {.course = 180, .kmh = 4.999}, {.course = 180, .kmh = 5}}, "R.R"},
      {"a slow fix leaves the deviation", {{90}, {.course = 70, .kmh = 4}, {95}}, "R.."},
      {"a fix leaves its deviation", {{90}, {85}, {95}, {86}}, "R..."},
  };
  for (const auto& row : rows) {
    RecordingWorld world;
    world.recording.start();
    EXPECT_EQ(offered(world, row.fixes), row.recorded) << row.what;
  }
}

TEST(Recording, JumpsAreLeftOutWhereThatIsWanted) {
  constexpr double kMoscow = 37.6;
  struct Row {
    const char* what;
    double longitude;
    double kmh;
    bool doubtful;
    bool recorded;
  };
  const Row rows[] = {
      {"doubtful without one before", kMoscow, 20, true, false},
      {"a right one disagrees with it", 11.5, 20, false, true},
      {"so does the next", 11.501, 20, false, true},
      {"a wrong digit", kMoscow, 20, false, false},
      {"back", 11.502, 20, true, true},
      {"a jet: 1,400 km/h on the ground, it says so", 11.507, 1400, false, true},
      {"the speed of a doubtful one is not believed", 11.6, 90000, true, false},
      {"by ship to Moscow", kMoscow, 20, false, false},
      {"arrived", kMoscow, 20, false, true},
  };
  for (const bool wanted : {true, false}) {
    RecordingWorld world;
    world.options.jumpFilter = wanted;
    world.options.everyMeters = 1;
    ASSERT_TRUE(world.recording.start());
    size_t left = 0;
    for (const Row& row : rows) {
      SCOPED_TRACE(row.what);
      FixRecord fix = FixAt{.kmh = row.kmh, .longitude = row.longitude};
      if (row.doubtful) fix.unknown |= kDoubtfulPosition;
      world.clock.now += 1000;
      const bool recorded = world.recording.offer(fix);
      EXPECT_TRUE(!wanted || recorded == row.recorded);
      left += row.recorded ? 0 : 1;
      for (const TrackPoint& point : world.track.points) EXPECT_FALSE(point.positionDoubtful());
    }
    EXPECT_EQ(world.recording.jumps(), wanted ? left : 0);
  }
}

TEST(Recording, OrderOfTheTests) {
  const FixAt moving{.course = 90};
  const FixAt standing{.course = 90, .kmh = 1};
  const FixAt nowhere{.longitude = 0, .latitude = 0};
  struct {
    const char* what;
    std::function<void(RecordingWorld&)> setUp;
    std::vector<FixAt> fixes;
    uint32_t force;
    const char* recorded;
  } const rows[] = {
      {"force is below the speed", [](auto&) {}, {moving, standing, moving}, 7, "R.R"},
      {"every second",
       [](auto& w) { w.options.everyNth = 1; },
       {standing, standing, standing},
       0,
       "R.R"},
      {"every third",
       [](auto& w) { w.options.everyNth = 2; },
       {moving, moving, moving, moving, nowhere, moving, moving, moving},
       0,
       "R..R...R"},
      {"switched off by its sign",
       [](auto& w) { w.options.everyNth = -2; },
       {moving, moving},
       0,
       "R."},
      {"every Nth is above force",
       [](auto& w) { w.options.everyNth = 2; },
       {moving, moving},
       7,
       "R."},
      {"by hand only", [](auto& w) { w.options.manual = true; }, {moving, moving}, 7, ".."},
      {"asked for, once",
       [](auto& w) { w.options.manual = true, w.options.everyNth = 5, w.recording.requestPoint(); },
       {nowhere, standing, standing},
       0,
       ".R."},
      {"a cell, once",
       [](auto& w) { w.options.recordCell = true, w.track.cellMode = 1; },
       {standing, standing},
       0,
       "R."},
      {"without cells",
       [](auto& w) { w.track.cellMode = 1, w.track.lastCourse = 90; },
       {standing},
       0,
       "."},
  };
  for (const auto& row : rows) {
    RecordingWorld world;
    world.recording.start();
    row.setUp(world);
    EXPECT_EQ(offered(world, row.fixes, row.force), row.recorded) << row.what;
  }
}

TEST(Recording, ACellIsTakenWhileStanding) {
  RecordingWorld world;
  world.options.recordCell = true;
  world.recording.start();
  EXPECT_EQ(offered(world, {{.kmh = 0}, {.kmh = 0}}), "R.");
  world.track.cellMode = 3;
  EXPECT_EQ(offered(world, {{.kmh = 0}, {.kmh = 0}}), "R.");
  EXPECT_EQ(world.track.cellMode, 0U);
}

TEST(Recording, TheLastCourseIsA32BitFloat) {
  RecordingWorld world;
  world.recording.start();
  offered(world, {{84.4}, {84.4}});
  EXPECT_EQ(world.track.lastCourse, 84.4F);
  EXPECT_EQ(world.track.courseDeviation, 1.5258789289873675e-06F);
}

TEST(Recording, APointIsACopyWithTheComputersTimes) {
  RecordingWorld world;
  world.clock.utcNow = {2010, 7, 1, 5, 7, 3, 4, 56};
  world.clock.localNow = {2010, 7, 1, 5, 9, 3, 4, 56};
  world.recording.start();
  FixRecord fix = FixAt{.course = 84.4};
  fix.utcTime = {1999, 1, 0, 2, 3, 4, 5, 6};
  fix.magneticVariation = -3.1;
  world.track.cellMode = 5;
  ASSERT_TRUE(world.recording.offer(fix, 9));
  const TrackPoint& point = world.track.points.back();
  EXPECT_EQ(point.utcTime, world.clock.utcNow);
  EXPECT_EQ(point.localTime, world.clock.localNow);
  EXPECT_EQ(point.s, 9U);
  EXPECT_EQ(point.m, 0U);
  EXPECT_EQ(point.c, 0U);
  EXPECT_EQ(point.course, 84.4);
  EXPECT_EQ(point.speedMps, fix.speedMps);
  EXPECT_EQ(point.magneticVariation, -3.1);
  ASSERT_EQ(world.hooks.journal.size(), 1U);
  EXPECT_EQ(world.hooks.journal[0].localTime, world.clock.localNow);
}

TEST(Recording, OnlyTheSurfaceDistanceBeginsAnew) {
  RecordingWorld world;
  world.options.everyNth = 1;
  const FixAt munich{.altitude = 545, .longitude = 11.516667, .latitude = 48.1173};
  const FixAt berlin{.altitude = 645, .longitude = 13.4, .latitude = 52.52};
  const auto record = [&](const FixAt& fix) {
    while (!world.recording.offer(fix)) {
    }
  };
  world.recording.start();
  record(munich), record(berlin);
  EXPECT_NEAR(world.recording.distance(), 509.1481833889535, 1e-9);
  const double first3d = world.recording.distance3d();
  EXPECT_GT(first3d, world.recording.distance());
  world.recording.stop(nullptr, true);
  world.options.distanceUnit = kMiles;
  world.recording.start();
  EXPECT_EQ(world.recording.distance(), 0);
  record(berlin), record(munich);
  EXPECT_NEAR(world.recording.distance(), 505.88527361245866 / kKmPerMile, 1e-9);
  EXPECT_GT(world.recording.distance3d(), first3d + world.recording.distance());
}

TEST(Recording, OneThatWasBrokenOffKeepsItsLength) {
  RecordingWorld whole;
  whole.options.manual = true;
  whole.recording.start();
  const auto record = [](RecordingWorld& world, double longitude, double altitude) {
    world.recording.requestPoint();
    ASSERT_TRUE(world.recording.offer(FixAt{.altitude = altitude, .longitude = longitude}));
  };
  record(whole, 11.5, 500), record(whole, 11.6, 900), record(whole, 11.7, 400);
  RecordingWorld later;
  later.options.manual = true;
  later.track.points = whole.track.points;
  ASSERT_TRUE(later.recording.continueRecovered());
  EXPECT_FALSE(later.recording.continueRecovered());
  EXPECT_EQ(later.track.state, kRecording);
  for (RecordingWorld* world : {&whole, &later}) record(*world, 11.8, 500);
  EXPECT_GT(later.recording.distance(), 20);
  EXPECT_EQ(later.recording.distance(), whole.recording.distance());
  EXPECT_EQ(later.recording.distance3d(), whole.recording.distance3d());
}

TEST(Recording, TheFirstStartFreezesTheThresholds) {
  RecordingWorld world;
  const auto restart = [&] {
    world.recording.stop(nullptr, false);
    EXPECT_TRUE(world.recording.start());
    return world.track.speedThreshold;
  };
  world.track.angleThreshold = 33;
  EXPECT_EQ(restart(), 5);
  EXPECT_FALSE(world.recording.start());
  EXPECT_EQ(world.track.angleThreshold, 33);
  EXPECT_EQ(world.track.altitudeThreshold, 30);
  world.options.speed = 50;
  EXPECT_EQ(restart(), 5);
  forgetThresholds(world.track);  // not while recording
  EXPECT_EQ(restart(), 5);
  world.recording.stop(nullptr, false);
  forgetThresholds(world.track);
  EXPECT_EQ(restart(), 50);
  EXPECT_EQ(world.track.angleThreshold, 10);
}

TEST(Recording, StartSetsTheRunningValues) {
  RecordingWorld world;
  world.options.drawPath = true;
  world.options.bes = -4;
  world.track.lastCourse = 7, world.track.courseDeviation = 8;
  ASSERT_TRUE(world.recording.start());
  EXPECT_EQ(world.track.state, kRecording);
  EXPECT_EQ(world.track.lastCourse, -1);
  EXPECT_EQ(world.track.courseDeviation, 0);
  EXPECT_EQ(world.track.bes, -4);
  offered(world, {{90}, {91}});
  EXPECT_EQ(world.hooks.said, (Said{"path reset", "timer on", "path"}));
}

TEST(Recording, PauseAndResume) {
  struct {
    int32_t before, after;
    Said said;
  } const rows[] = {
      {kIdle, kRecording, {"TURN"}},  // without any of the steps of a start
      {kRecording, kPaused, {"SPD", "flush"}},
      {kPaused, kRecording, {"TURN"}},
      {kPlaying, kPlaying, {}},
  };
  for (const auto& row : rows) {
    RecordingWorld world;
    world.track.state = row.before;
    world.recording.pauseOrResume();
    EXPECT_EQ(world.track.state, row.after) << row.before;
    EXPECT_EQ(world.hooks.said, row.said) << row.before;
    EXPECT_EQ(world.track.angleThreshold, 0);
    EXPECT_EQ(world.recording.offer(FixAt{}), row.after == kRecording);
  }
}

TEST(Recording, StopAsksSavesAndClears) {
  struct {
    const char* what;
    int32_t state;
    size_t points;
    bool ask, answer, saved;
    size_t left;
    Said said;
  } const rows[] = {
      {"played", kPlaying, 2, true, true, true, 2, {"timer off"}},
      {"empty", kRecording, 0, true, true, true, 0, {"timer off"}},
      {"No",
       kRecording,
       2,
       true,
       false,
       true,
       0,
       {"timer off", "flush", "ask", "settled", "changed"}},
      {"Yes",
       kPaused,
       2,
       true,
       true,
       true,
       0,
       {"timer off", "flush", "ask", "save 2", "settled", "changed"}},
      {"unasked",
       kRecording,
       2,
       false,
       false,
       true,
       2,
       {"timer off", "flush", "save 2", "settled"}},
      {"disk full", kRecording, 2, true, true, false, 2, {"timer off", "flush", "ask", "save 2"}},
      {"disk full, unasked",
       kRecording,
       2,
       false,
       false,
       false,
       2,
       {"timer off", "flush", "save 2"}},
  };
  for (const auto& row : rows) {
    RecordingWorld world;
    world.track.state = row.state;
    for (size_t i = 0; i < row.points; ++i) world.track.points.push_back(pointAt(11, 48));
    world.track.attachments.push_back({0, "photo"});
    world.track.name = "Ride";
    world.hooks.answer = row.answer;
    world.hooks.saved = row.saved;
    world.recording.stop(row.points == 2 ? nullptr : &world.track, row.ask);
    EXPECT_EQ(world.track.state, kIdle) << row.what;
    EXPECT_EQ(world.track.points.size(), row.left) << row.what;
    EXPECT_EQ(world.track.attachments.empty(), row.points > 0 && row.left == 0) << row.what;
    EXPECT_EQ(world.track.name.empty(), world.track.attachments.empty()) << row.what;
    EXPECT_EQ(world.hooks.said, row.said) << row.what;
  }
}

TEST(Recording, MarksCountFromEachStart) {
  RecordingWorld world;
  EXPECT_FALSE(world.recording.mark());
  for (int round = 0; round < 2; ++round) {
    world.recording.start();
    EXPECT_EQ(offered(world, {{90}}), "R");
    EXPECT_TRUE(world.recording.mark());
    EXPECT_FALSE(world.recording.offer(FixAt{.course = 90, .kmh = 1}));
    EXPECT_TRUE(world.recording.mark());  // one is waiting already
    EXPECT_TRUE(world.recording.offer(FixAt{90}));
    EXPECT_FALSE(world.recording.offer(FixAt{90}));
    EXPECT_TRUE(world.recording.mark());
    EXPECT_TRUE(world.recording.offer(FixAt{90}));
    const PointList& points = world.track.points;
    ASSERT_EQ(points.size(), 3U);
    for (uint32_t i = 0; i < 3; ++i) {
      EXPECT_EQ(points[i].m, i);
      EXPECT_EQ(points[i].s, i);
    }
    EXPECT_EQ(pointLabel(world.track, 0), "P #1");
    EXPECT_EQ(pointLabel(world.track, 1), "P #2 (M)");
    world.recording.stop(nullptr, true);
  }
}

}  // namespace
}  // namespace vgps
