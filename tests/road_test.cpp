// The road of one sentence, all nine steps, with a fake line at one end and a fake window or a
// track file at the other and real threads between them.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "app/session/connection.h"
#include "app/session/ui_mailbox.h"
#include "tests/fakes/app_world.h"
#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

struct RoadWorld {
  RoadWorld() { app.recorder.track.state = kRecording; }
  ~RoadWorld() {
    mailbox.close();
    EXPECT_TRUE(stopReceiver(app));
  }

  // The user interface at work until `done`, ten seconds at most.
  bool serve(const std::function<bool()>& done) {
    for (int i = 0; i < 1000 && !done(); ++i) {
      mailbox.wait(10, [this](const UiMessage& message) { onUiMessage(app, message); });
    }
    return done();
  }

  FakeClock clock;
  FakeSounds sounds;
  FakeWindow window;
  FakePorts ports;
  UiMailbox mailbox;
  AppState app{Platform{clock, sounds, mailbox, window, [this] { return ports.make(); }}};
};

TEST(Road, FromTheLineToTheWindow) {
  RoadWorld world;
  FakeLine& line = world.ports.add(devicePath("COM3"));
  ASSERT_TRUE(connectReceiver(world.app, {.port = "COM3"}));
  // One epoch in two pieces, with a foreign line and a blank one between.
  line.feed("!AIVDM,1\r\n$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,2303");
  std::this_thread::sleep_for(std::chrono::milliseconds(60));
  line.feed(
      "94,003.1,W*6A\r\n\r\n$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n");
  ASSERT_TRUE(world.serve([&] { return world.app.shown.stats.total() == 2; }));
  EXPECT_EQ(world.app.shown.fix.course, 84.4);
  EXPECT_EQ(world.app.shown.fix.altitude, 545);
  EXPECT_EQ(world.app.epochsOffered, 1U);
  ASSERT_EQ(world.app.recorder.track.points.size(), 1U);
  EXPECT_EQ(world.app.recorder.track.points[0].latitude, 48.117300001780194);
  EXPECT_GE(world.window.repaints, 1);
  EXPECT_EQ(world.sounds.played, std::vector<std::string>{"OK"});
}

// One burst as a receiver sends it: `$` and the checksum are put around the sentences.
std::string burst(std::initializer_list<const char*> sentences) {
  std::string bytes;
  for (const std::string text : sentences) {
    unsigned sum = 0;
    for (const char c : text) sum ^= static_cast<unsigned char>(c);
    char end[8];
    std::snprintf(end, sizeof end, "*%02X\r\n", sum);
    bytes += '$' + text + end;
  }
  return bytes;
}

TEST(Road, FromTheLineToTheTrackFile) {
  const TestFolder folder;
  RoadWorld world;
  FakeLine& line = world.ports.add(devicePath("COM3"));
  world.app.settings.trackStorePath = folder.path();
  RecordingOptions& options = world.app.recorder.options;
  options.recordCell = options.recordSpeed = options.recordTime = options.recordCourse = true;
  Recorder& recording = world.app.recorder;
  world.app.recorder.track.state = kIdle;
  ASSERT_TRUE(recording.start());
  ASSERT_TRUE(connectReceiver(world.app, {.port = "COM3"}));

  const struct {
    std::string bytes;
    bool mark;
  } bursts[] = {
      {burst({"GPGGA,123518,4807.038,N,01131.000,E,0,00,,545.4,M,46.9,M,,",
              "GPRMC,123518,V,,,,,,,230394,,"}),
       false},  // no fix yet
      {burst({"GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W",
              "GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,"}),
       false},  // the first is a point, once
      {burst({"GPRMC,123520,A,4807.038,N,01131.010,E,022.4,090.0,230394,003.1,W",
              "GPGGA,123520,4807.038,N,01131.010,E,1,08,0.9,545.4,M,46.9,M,,"}),
       false},  // straight on
      {burst({"GPRMC,123521,A,4807.040,N,01131.020,E,002.0,180.0,230394,003.1,W",
              "GPGGA,123521,4807.040,N,01131.020,E,1,08,0.9,545.4,M,46.9,M,,"}),
       true},  // too slow, also for a mark
      {burst({"GPRMC,123522,A,4807.042,N,01131.030,E,022.4,090.0,230394,003.1,W",
              "GPGGA,123522,4807.042,N,01131.030,E,1,08,0.9,545.4,M,46.9,M,,"}),
       false},  // the mark
      {burst({"GPRMC,123523,A,4807.030,N,01131.040,W,022.4,120.5,230394,003.1,W",
              "GPGGA,123523,4807.030,N,01131.040,W,1,08,0.9,545.4,M,46.9,M,,"}),
       false},  // a turn, far away
  };
  uint16_t second = 0;
  for (const auto& sent : bursts) {
    world.clock.localNow = {2010, 7, 1, 5, 9, 3, second++, 0};
    world.clock.now += 1000;  // a pause of a second before the burst
    if (sent.mark) recording.mark();
    const uint64_t lines = world.app.shown.stats.total() + 2;
    line.feed(sent.bytes);
    ASSERT_TRUE(world.serve([&] { return world.app.shown.stats.total() == lines; }));
  }
  recording.stop(false);

  EXPECT_EQ(folder.read("Track05_07_2010_09_03.XML"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n"
            "<t start=\"2094-03-23T12:35:19Z\">\r\n"
            "\t<p x=\"11.516667\" y=\"48.117300\" z=\"545.000000\" c=\"0\" spd=\"41.48\""
            " time=\"05-07-2010 09:03:01\" br=\"84.4\" utc=\"2094-03-23T12:35:19Z\"/>\r\n"
            "\t<p x=\"11.517167\" y=\"48.117367\" z=\"545.000000\" s=\"1\" c=\"0\" spd=\"41.48\""
            " time=\"05-07-2010 09:03:04\" br=\"90.0\" m=\"1\" utc=\"2094-03-23T12:35:22Z\"/>\r\n"
            "\t<p x=\"-11.517333\" y=\"48.117167\" z=\"545.000000\" c=\"0\" spd=\"41.48\""
            " time=\"05-07-2010 09:03:05\" br=\"120.5\" utc=\"2094-03-23T12:35:23Z\"/>\r\n"
            "</t>\r\n");
}

TEST(Road, OpeningAndClosingInALoopWhileDataCome) {
  RoadWorld world;
  FakeLine& line = world.ports.add(devicePath("COM3"));
  std::atomic<bool> stop{false};
  std::thread feeder([&] {
    while (!stop) {
      line.feed("$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n");
      std::this_thread::sleep_for(std::chrono::milliseconds(35));  // a pause ends the block
    }
  });
  for (int i = 0; i < 30; ++i) {
    ASSERT_TRUE(connectReceiver(world.app, {.port = "COM3"}));
    // Some sources are closed in the middle of a block, some never give one.
    const uint64_t wanted = world.app.shown.stats.total() + static_cast<uint64_t>(i % 3);
    EXPECT_TRUE(world.serve([&] { return world.app.shown.stats.total() >= wanted; }));
    if (i % 4 != 0) world.app.link.close();
  }
  EXPECT_GT(world.app.shown.stats.total(), 0U);
  stop = true;
  feeder.join();
}

}  // namespace
}  // namespace vgps
