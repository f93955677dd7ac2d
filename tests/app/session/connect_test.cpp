#include <gtest/gtest.h>

#include "app/desktop/scene_of.h"
#include "app/session/connection.h"
#include "tests/fakes/app_world.h"
#include "tests/fakes/sample_lines.h"

// A connection that follows another one.
namespace vgps {
namespace {

TEST(Connect, TheSourceBeforeIsClosedSilently) {
  struct {
    SourceChoice next;
    bool works;
    std::vector<std::string> sounds;
  } const rows[] = {
      {{.port = "COM3"}, true, {"OK", "OK"}},
      {{.port = "COM4"}, true, {"OK", "OK"}},
      {{.port = "COM9"}, false, {"OK"}},  // there is none
      {{.port = "COM3", .simulate = true}, true, {"OK"}},
  };
  for (const auto& row : rows) {
    AppWorld world;
    FakeLine& first = world.ports.add(devicePath("COM3"));
    world.ports.add(devicePath("COM4"));
    world.app.gps.simulation.paceMs = 600000;
    ASSERT_TRUE(connectReceiver(world.app, {.port = "COM3"}));
    EXPECT_EQ(connectReceiver(world.app, row.next), row.works) << row.next.port;
    EXPECT_EQ(first.closes, 1) << row.next.port << row.next.simulate;
    EXPECT_EQ(world.app.fix.running, row.works) << row.next.port;
    EXPECT_EQ(world.sounds.played, row.sounds) << row.next.port << row.next.simulate;
    first.unplug();  // a reader left on it would keep the test from ending
    EXPECT_TRUE(stopReceiver(world.app));
  }
}

TEST(Connect, TheStatusSaysWhyAPortDoesNotOpen) {
  AppWorld world;
  world.ports.add(devicePath("COM3")).openError = PortError::busy;
  EXPECT_FALSE(connectReceiver(world.app, {.port = "COM3"}));
  EXPECT_EQ(currentNotice(world.app), "COM3 is in use by another program.");
  EXPECT_FALSE(connectReceiver(world.app, {.port = "COM4"}));
  EXPECT_EQ(currentNotice(world.app), "Port COM4 was not found.");
  EXPECT_FALSE(connectReceiver(world.app, {}));
  EXPECT_EQ(currentNotice(world.app), "No receiver selected yet.");
}

TEST(Connect, TheStatusSaysOnceWhichSentencesAreLeftOut) {
  AppWorld world;
  const auto epoch = [&] {
    world.receive(kRmcLine + "\r\n");
    world.receive("$GN" + kRmcLine.substr(3) + "\r\n");
    checkConnection(world.app);
  };
  epoch();
  EXPECT_EQ(currentNotice(world.app), "Sentences left out: GNRMC 1 (GP is used)");
  world.clock.now += 60000;
  epoch();
  EXPECT_EQ(currentNotice(world.app), "");
}

// A computer without sensors has neither: the port is opened instead, and the user is told.
TEST(Connect, ASourceThatCannotBeHadIsSaid) {
  const struct {
    SourceChoice source;
    std::string_view notice;
  } rows[] = {
      {{.port = "COM3", .useGpsApi = true}, "The GPS interface is not available here."},
      {{.port = "COM3", .useSensorApi = true}, "Location sensors are not available here."},
  };
  for (const auto& row : rows) {
    AppWorld world;
    FakeLine& line = world.ports.add(devicePath("COM3"));
    EXPECT_TRUE(connectReceiver(world.app, row.source));
    EXPECT_TRUE(currentNotice(world.app).starts_with(row.notice)) << currentNotice(world.app);
    EXPECT_EQ(makeScene(world.app).source, "COM3, 9600 baud");
    line.unplug();
    EXPECT_TRUE(stopReceiver(world.app));
  }
}

// Offered in the message with the reason, and once for bytes that are not sentences.
TEST(Connect, TheSearchIsOfferedWithTheReason) {
  AppWorld world;
  EXPECT_FALSE(connectReceiver(world.app, {.port = "COM99"}));
  EXPECT_EQ(world.window.errors.back(), "GPS Opening failed\n\nPort COM99 was not found.");
  FakeLine& line = world.ports.add(devicePath("COM3"));
  EXPECT_TRUE(connectReceiver(world.app, {.port = "COM3"}));
  checkConnection(world.app);
  EXPECT_EQ(world.window.errors.size(), 1U) << "silence says nothing about the speed";
  world.receive("\x80\xFE\x13\x80\xFE");
  checkConnection(world.app);
  checkConnection(world.app);
  ASSERT_EQ(world.window.errors.size(), 2U) << "asked once";
  EXPECT_TRUE(world.window.errors[1].starts_with("COM3 is sending data, but not NMEA."));
  line.unplug();
  EXPECT_TRUE(stopReceiver(world.app));
}

TEST(Connect, NothingHasComeYetAfterAConnection) {
  for (const bool there : {true, false}) {
    AppWorld world;
    if (there) world.ports.add(devicePath("COM3"));
    world.receive(kRmcBytes);
    EXPECT_TRUE(world.app.shown.dataSeen);
    EXPECT_TRUE(world.app.shown.fixSeen);
    EXPECT_EQ(connectReceiver(world.app, {.port = "COM3"}), there);
    EXPECT_FALSE(world.app.shown.dataSeen);
    EXPECT_FALSE(world.app.shown.fixSeen);
    world.app.shown.dataSeen = true;  // of another kind
    EXPECT_EQ(makeScene(world.app).state,
              there ? ReceiverState::noFix : ReceiverState::notConnected);
    EXPECT_TRUE(stopReceiver(world.app));
  }
}

}  // namespace
}  // namespace vgps
