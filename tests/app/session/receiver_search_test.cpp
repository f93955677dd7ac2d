#include "app/session/receiver_search.h"

#include <gtest/gtest.h>

#include "tests/fakes/live_world.h"
#include "tests/fakes/program_world.h"

namespace vgps {
namespace {

constexpr const char* kUsed = "COM3";
constexpr const char* kFound = "COM7";

// A receiver in use, and another one that a search finds.
struct SearchWorld : ProgramWorld {
  SearchWorld() {
    load("", "port=\"COM5\" simu=\"1\" gapi=\"1\" sapi=\"1\"");
    EXPECT_TRUE(connectReceiver(app, {.port = kUsed}));
  }
  FakeLine& used = ports.add(devicePath(kUsed));
  FakeLine& found = ports.add(devicePath(kFound));
};

TEST(ReceiverSearch, TheChosenReceiverIsConnectedAndKept) {
  SearchWorld world;
  beginReceiverSearch(world.app);
  EXPECT_TRUE(comes([&] { return world.used.number(&FakeLine::closes) == 1; })) << "given free";
  endReceiverSearch(world.app, FoundReceiver{{.port = kFound, .speed = 38400}, true});
  EXPECT_EQ(sourceName(world.app.link.source()), "COM7, 38400 baud");
  EXPECT_EQ(world.found.baudRate, 38400U);
  ConfigStore next;
  ASSERT_TRUE(next.open(world.app.paths.settings));
  const Settings kept = loadSettings(next);
  EXPECT_EQ(kept.port, kFound);
  EXPECT_EQ(kept.baudRate, 38400);
  EXPECT_TRUE(kept.autoConnect);
  EXPECT_FALSE(kept.simulate || kept.useGpsApi || kept.useSensorApi != 0);
  EXPECT_TRUE(world.window.errors.empty());
}

TEST(ReceiverSearch, OneThatCannotBeKeptIsToldOnceAndConnected) {
  SearchWorld world;
  world.app.config.open(world.folder / "missing/vgps.xml");
  for (int round = 0; round < 2; ++round) {
    beginReceiverSearch(world.app);
    endReceiverSearch(world.app, FoundReceiver{{.port = kFound}});
    EXPECT_EQ(sourceName(world.app.link.source()), "COM7, 9600 baud");
    ASSERT_EQ(world.window.errors.size(), 1U);
    EXPECT_TRUE(world.window.errors[0].starts_with("Cannot write the settings"));
  }
}

TEST(ReceiverSearch, WithoutAChoiceThePortInUseIsTakenAgain) {
  SearchWorld world;
  beginReceiverSearch(world.app);
  endReceiverSearch(world.app, std::nullopt);
  EXPECT_TRUE(comes([&] { return world.used.number(&FakeLine::opens) == 2; }));
  EXPECT_EQ(sourceName(world.app.link.source()), "COM3, 9600 baud");
  EXPECT_EQ(loadSettings(world.app.config).port, "COM5") << "nothing was kept";
}

}  // namespace
}  // namespace vgps
