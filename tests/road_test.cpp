// The road of one sentence, all nine steps, with a fake line at one end and a fake window at the
// other and real threads between them.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "app/connection.h"
#include "app/ui_mailbox.h"
#include "tests/fakes/app_world.h"

namespace vgps {
namespace {

struct RoadWorld {
  RoadWorld() { app.track.state = kRecording; }
  ~RoadWorld() {
    door.shut();
    EXPECT_TRUE(stopReceiver(app));
  }

  // The user interface at work until `done`, ten seconds at most.
  bool serve(const std::function<bool()>& done) {
    for (int i = 0; i < 1000 && !done(); ++i) {
      door.wait(10, [this](const UiMessage& message) { onUiMessage(app, message); });
    }
    return done();
  }

  FakeClock clock;
  FakeSounds sounds;
  FakeWindow window;
  FakePorts ports;
  UiMailbox door;
  AppState app{Platform{clock, sounds, door, window, [this] { return ports.make(); }}};
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
  ASSERT_EQ(world.app.track.points.size(), 1U);
  EXPECT_EQ(world.app.track.points[0].latitude, 48.117300001780194);
  EXPECT_GE(world.window.repaints, 1);
  EXPECT_EQ(world.sounds.played, std::vector<std::string>{"OK"});
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
    if (i % 4 != 0) disconnectReceiver(world.app);
  }
  EXPECT_GT(world.app.shown.stats.total(), 0U);
  stop = true;
  feeder.join();
}

}  // namespace
}  // namespace vgps
