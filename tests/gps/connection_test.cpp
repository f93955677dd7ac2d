#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

#include "gps/port_search.h"
#include "tests/fakes/live_world.h"

namespace vgps {
namespace {

using Sounds = std::vector<std::string>;

const std::string kPath = devicePath("COM3");

TEST(Connection, AMissingPortFailsWithoutASound) {
  GpsWorld world;
  world.fix.setPort("COM3", 9600);
  EXPECT_FALSE(world.fix.open(false, false, false, false));
  EXPECT_EQ(world.fix.portError, PortError::notFound);
  EXPECT_FALSE(world.fix.running);
  EXPECT_TRUE(world.hooks.sounds.empty());
  EXPECT_FALSE(world.fix.close(false));
}

TEST(Connection, RefusedSettingsFailAfterTheSoundAndLeaveThePortOpen) {
  GpsWorld world;
  FakeLine& line = world.ports.add(kPath);
  line.setUpWorks = false;
  world.fix.setPort("COM3", 9600);
  EXPECT_FALSE(world.fix.open(false, false, false, false));
  EXPECT_FALSE(world.fix.running);
  EXPECT_EQ(world.hooks.sounds, Sounds{"OK"});
  EXPECT_EQ(line.closes, 0);
  EXPECT_TRUE(world.fix.close(false));
  EXPECT_EQ(line.closes, 1);
  EXPECT_EQ(world.hooks.sounds, (Sounds{"OK", "ERR2"}));
}

TEST(Connection, ASerialPortFeedsTheFix) {
  LiveWorld world;
  FakeLine& line = world.ports.add(kPath);
  ASSERT_TRUE(world.fix.open(false, true, false, false));
  EXPECT_TRUE(world.fix.running);
  EXPECT_TRUE(world.fix.useGpsApi);
  EXPECT_EQ(line.baudRate, 9600U);
  line.feed("!AIVDM,1\r\n$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n");
  EXPECT_TRUE(comes([&] { return world.received == 1; }));
  EXPECT_TRUE(world.fix.close(false));
  EXPECT_FALSE(world.fix.running);
  EXPECT_EQ(world.hooks.sounds, (Sounds{"OK", "ERR2"}));
  EXPECT_EQ(line.closes, 1);
  EXPECT_FALSE(world.fix.close(false));
}

TEST(Connection, EachOpeningStartsAReaderThatEndsWithTheProgramOnly) {
  LiveWorld world;
  world.ports.add(kPath);
  for (int i = 1; i <= 3; ++i) {
    world.state.satellitesInUseKnown = true;
    ASSERT_TRUE(world.fix.open(false, false, false, false));
    EXPECT_FALSE(world.state.satellitesInUseKnown);
    EXPECT_EQ(world.state.readers.liveReaders, i);
    world.state.satellitesInUseKnown = true;
    EXPECT_TRUE(world.fix.close(true));
    EXPECT_FALSE(world.state.satellitesInUseKnown);
    EXPECT_EQ(world.state.readers.liveReaders, i);
  }
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  world.ports.add(kPath);  // an old reader sees nothing of the new line
  EXPECT_TRUE(world.fix.stopReaders(10000));
  EXPECT_EQ(world.state.readers.liveReaders, 0);
}

TEST(Connection, AnotherOpeningClosesThePortOfBefore) {
  LiveWorld world;
  FakeLine& first = world.ports.add(kPath);
  world.ports.add(devicePath("COM4"));
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  ASSERT_TRUE(comes([&] { return first.number(&FakeLine::reads) == 1; }));
  world.fix.setPort("COM4", 9600);
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  EXPECT_EQ(first.number(&FakeLine::closes), 1);
  first.unplug();  // a reader left on it would keep the test from ending
}

TEST(Connection, WhatIsCarriedDoesNotOutliveItsSource) {
  LiveWorld world;
  FakeLine& first = world.ports.add(kPath);
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  first.feed("$A\r\n$GPGG");
  ASSERT_TRUE(comes([&] { return world.received == 1; }));
  world.fix.close(true);
  FakeLine& second = world.ports.add(kPath);
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  second.feed("$B\r\n");
  ASSERT_TRUE(comes([&] { return world.received == 2; }));
  EXPECT_EQ(world.hooks.lines, (std::vector<std::string>{"$A", "$B"}));
}

TEST(Connection, AnUnpluggedLineIsNotReadInABusyLoop) {
  LiveWorld world;
  FakeLine& line = world.ports.add(kPath);
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  line.unplug();
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  EXPECT_TRUE(world.fix.close(true));
  EXPECT_LT(line.reads, 20);
}

TEST(Connection, ABurstThatNeverPausesIsHandedOn) {
  LiveWorld world;
  FakeLine& line = world.ports.add(kPath);
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  std::atomic<bool> stop{false};
  auto feeder = std::async(std::launch::async, [&] {
    while (!stop) {
      line.feed("$A\r\n");
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  });
  EXPECT_TRUE(comes([&] { return world.received > 100; }));
  stop = true;
  feeder.wait();
}

TEST(Connection, SimulationRunsWithoutAPortAndClosesWithoutASound) {
  LiveWorld world;
  world.state.simulation.setLines({"$A", "$B"});
  world.state.simulation.paceMs = 5;
  ASSERT_TRUE(world.fix.open(true, true, true, false));
  EXPECT_FALSE(world.fix.useGpsApi);
  EXPECT_FALSE(world.fix.useSensorApi);
  EXPECT_TRUE(comes([&] { return world.received >= 4; }));
  EXPECT_FALSE(world.fix.close(false));
  EXPECT_TRUE(world.fix.stopReaders(10000));
  EXPECT_EQ(world.hooks.lines[0], "$A");
  EXPECT_EQ(world.hooks.lines[1], "$B");
  EXPECT_EQ(world.hooks.lines[2], "$A");
  EXPECT_TRUE(world.hooks.title.starts_with("Sim index: ")) << world.hooks.title;
  EXPECT_TRUE(world.hooks.title.ends_with("/2")) << world.hooks.title;
  EXPECT_TRUE(world.hooks.sounds.empty());
}

TEST(Connection, SteppedSimulationGivesALineForEachStep) {
  LiveWorld world;
  world.state.simulation.setLines({"$A", "$B"});
  world.state.simulation.setMode(SimMode::tapping);
  world.hooks.shift = true;
  ASSERT_TRUE(world.fix.open(true, false, false, false));
  for (int i = 1; i <= 3; ++i) {
    world.state.simulation.step();
    EXPECT_TRUE(comes([&] { return world.received == i; })) << i;
  }
  EXPECT_TRUE(world.fix.stopReaders(10000));
  EXPECT_EQ(world.hooks.spaces, 3);  // standing still with Shift held steps on by itself
}

struct OneSensor : LocationSensorManager {
  struct Sensor : LocationSensor {
    explicit Sensor(std::atomic<int>& count) : alive(count) { ++alive; }
    ~Sensor() override { --alive; }
    std::atomic<int>& alive;
    bool read(double& longitude, double& latitude, int) override {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      longitude = 11.5;
      latitude = 48.1;
      return true;
    }
  };
  std::unique_ptr<LocationSensor> open(const std::string& identifier) override {
    return identifier == "there" ? std::make_unique<Sensor>(alive) : nullptr;
  }
  std::atomic<int> alive{0};
};

TEST(Connection, ASensorIsReadOrSilentlyNotFound) {
  OneSensor manager;
  LiveWorld world;
  world.state.sensors = &manager;
  world.state.sensorIdentifier = "gone";
  EXPECT_TRUE(world.fix.open(false, false, true, false));
  EXPECT_FALSE(world.fix.running);
  world.state.sensorIdentifier = "there";
  EXPECT_TRUE(world.fix.open(false, false, true, false));
  EXPECT_EQ(world.state.inputProtocol, kSensorInput);
  EXPECT_TRUE(comes([&] { return world.hooks.sensorX == 11.5; }));
  EXPECT_TRUE(world.fix.close(true));
  EXPECT_TRUE(comes([&] { return manager.alive == 0; })) << "it would go on costing power";
  EXPECT_EQ(world.hooks.sounds, (Sounds{"OK", "ERR2"}));
  world.state.sensors = nullptr;  // no sensor manager: the serial port
  EXPECT_FALSE(world.fix.open(false, false, true, false));
}

TEST(PortSearch, AProbeCountsTextOfTheGpsTalkerOnly) {
  const std::pair<const char*, bool> rows[] = {
      {"$GPGSV,1,1,00\r\n", true}, {"$PSRF100", false}, {"$GNRMC,1", false}, {"x$GPRMC", false}};
  for (const auto& [text, found] : rows) {
    GpsWorld world;
    FakeLine& line = world.ports.add(kPath);
    line.feed(text);
    world.fix.setPort("COM3", 4800);
    EXPECT_EQ(world.fix.open(false, false, false, true), found) << text;
    EXPECT_EQ(line.closes, 1);
    EXPECT_TRUE(world.hooks.sounds.empty());
    EXPECT_EQ(world.state.readers.liveReaders, 0);
  }
}

TEST(PortSearch, TriesEveryPortAndReportsThoseThatAnswer) {
  GpsWorld world;
  world.ports.add(devicePath("COM0")).feed("$GPRMC,1\r\n");
  world.ports.add(devicePath("COM7")).feed("noise");
  FakeLine& last = world.ports.add(devicePath("COM29"));
  last.feed("$GPGGA,1\r\n");
  world.ports.add(devicePath("COM30")).feed("$GPGGA,1\r\n");
  EXPECT_EQ(scanPorts(world.state.makePort, 0, [](uint32_t) { return false; }),
            (std::vector<uint32_t>{0, 29}));
  EXPECT_EQ(last.baudRate, 4800U);
  EXPECT_TRUE(scanPorts(world.state.makePort, 9600, [](uint32_t) { return true; }).empty());
}

}  // namespace
}  // namespace vgps
