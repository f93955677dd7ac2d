#include "app/session/link.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "app/desktop/scene_of.h"
#include "app/session/connection.h"
#include "app/session/timers.h"
#include "app/session/ui_mailbox.h"
#include "tests/fakes/app_world.h"
#include "tests/fakes/sample_lines.h"

// A receiver that goes away and comes back, with the real reader thread.
namespace vgps {
namespace {

using Heard = std::vector<std::string>;

class Reconnecting : public testing::Test {
 protected:
  Reconnecting() {
    list({{"COM3", "Receiver", "USB\\VID_1\\7"}, {"COM4", "Modem", "USB\\VID_2\\1"}});
    line = &ports.add(devicePath("COM3"));
    app.recorder.track.state = kRecording;
  }
  ~Reconnecting() override {
    mailbox.close();
    EXPECT_TRUE(stopReceiver(app));
  }

  void serve() {
    mailbox.wait(10, [this](const UiMessage& message) { onUiMessage(app, message); });
  }
  bool serveUntil(const std::function<bool()>& happened) {
    for (int i = 0; i < 1000 && !happened(); ++i) serve();
    return happened();
  }
  bool receive(FakeLine& from) {
    const uint64_t wanted = app.shown.stats.total() + 1;
    from.feed(kRmcBytes);
    return serveUntil([&] { return app.shown.stats.total() >= wanted; });
  }
  // The 5-second timer; the reader does at once what it is asked.
  void fiveSecondsPass(int times = 1) {
    for (int i = 0; i < times; ++i) {
      clock.now += 5000;
      onTimer(app, kStatisticsTimer);
      EXPECT_TRUE(serveUntil([&] { return !isTrying(); }));
    }
  }
  void secondsPass(int times = 1) {
    for (int i = 0; i < times; ++i) {
      clock.now += 1000;
      app.link.check(true);
      EXPECT_TRUE(serveUntil([&] { return !isTrying(); }));
    }
  }
  // The receiver is lost, and the system takes long to open its port.
  void loseWhileOpeningHangs() {
    ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
    ASSERT_TRUE(receive(*line));
    line->blockOpening();
    clock.now += 10000;
    onTimer(app, kStatisticsTimer);
    ASSERT_TRUE(serveUntil([&] { return line->number(&FakeLine::opening) == 1; }));
  }
  bool isTrying() { return app.fix.connection.portAttempt().state == PortAttempt::State::waiting; }
  // Readers look at the list too.
  void list(const std::vector<PortName>& now) {
    const std::lock_guard lock(listMutex);
    listed = now;
  }
  ReceiverState state() { return makeScene(app).state; }

  FakeClock clock;
  FakeSounds sounds;
  FakeWindow window;
  FakePorts ports;
  UiMailbox mailbox;
  std::mutex listMutex;
  std::vector<PortName> listed;
  FakeLine* line = nullptr;
  AppState app{Platform{clock, sounds, mailbox, window, [this] { return ports.make(); }, nullptr,
                        [this] {
                          const std::lock_guard lock(listMutex);
                          return listed;
                        }}};
};

TEST_F(Reconnecting, ASilentPortIsOpenedAgainUntilDataCome) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  ASSERT_TRUE(receive(*line));
  fiveSecondsPass();
  EXPECT_EQ(state(), ReceiverState::fix);
  EXPECT_EQ(line->number(&FakeLine::opens), 1);
  fiveSecondsPass();  // 10 s without a byte
  EXPECT_EQ(state(), ReceiverState::lost);
  EXPECT_EQ(sounds.played, (Heard{"OK", "ERR2"}));
  EXPECT_EQ(currentNotice(app), "No data for 10 seconds. Trying to reconnect to COM3.");
  EXPECT_EQ(line->number(&FakeLine::opens), 2);
  fiveSecondsPass(3);
  EXPECT_EQ(line->number(&FakeLine::opens), 5) << "every five seconds";
  EXPECT_EQ(sounds.played, (Heard{"OK", "ERR2"})) << "once";
  EXPECT_TRUE(app.fix.running);
  ASSERT_TRUE(receive(*line));
  EXPECT_EQ(state(), ReceiverState::fix);
  EXPECT_EQ(sounds.played, (Heard{"OK", "ERR2", "OK"}));
  EXPECT_EQ(app.gps.readers.liveReaders, 1) << "the same reader goes on";
  EXPECT_EQ(app.recorder.track.state, kRecording);
  EXPECT_EQ(app.recorder.track.points.size(), 2U);
  fiveSecondsPass();
  EXPECT_EQ(line->number(&FakeLine::opens), 5);
}

TEST_F(Reconnecting, AReadErrorIsNoticedAtOnceAndTheDeviceFoundUnderAnotherName) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3", .speed = 4800}));
  ASSERT_TRUE(receive(*line));
  line->feed("$GPRMC,123519,A,48");  // half a line, never to be finished
  line->unplug();
  ASSERT_TRUE(serveUntil([&] { return app.fix.portFailed.load(); }));
  ports.remove(devicePath("COM3"));
  list({{"COM4", "Modem", "USB\\VID_2\\1"}});
  fiveSecondsPass();
  EXPECT_EQ(state(), ReceiverState::lost);
  EXPECT_EQ(sounds.played, (Heard{"OK", "ERR2"}));
  EXPECT_EQ(currentNotice(app), "Receiver unplugged. Trying to reconnect to COM3.");
  fiveSecondsPass(4);
  EXPECT_TRUE(app.fix.running);
  list({{"COM4", "Modem", "USB\\VID_2\\1"}, {"COM7", "Receiver", "USB\\VID_1\\7"}});
  FakeLine& again = ports.add(devicePath("COM7"));
  fiveSecondsPass();
  EXPECT_EQ(again.number(&FakeLine::opens), 1);
  EXPECT_EQ(again.baudRate, 4800U);
  ASSERT_TRUE(receive(again));
  EXPECT_EQ(sourceName(app.link.source()), "COM7, 4800 baud");
  EXPECT_EQ(state(), ReceiverState::fix);
  EXPECT_EQ(app.shown.stats.rejected, 0U) << "half a line of before stood in front";
  EXPECT_EQ(sounds.played, (Heard{"OK", "ERR2", "OK"}));
  // It may move again.
  fiveSecondsPass(2);
  list({{"COM8", "Receiver", "USB\\VID_1\\7"}});
  FakeLine& third = ports.add(devicePath("COM8"));
  fiveSecondsPass();
  EXPECT_EQ(third.number(&FakeLine::opens), 1);
  ASSERT_TRUE(receive(third));
}

TEST_F(Reconnecting, AnotherDeviceOnTheOldNameIsOnlyTakenWhereDevicesHaveNoIdentity) {
  for (const bool known : {true, false}) {
    list({{"COM3", "Receiver", known ? "USB\\VID_1\\7" : ""}});
    FakeLine& first = ports.add(devicePath("COM3"));
    ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
    ASSERT_TRUE(receive(first));
    list({{"COM3", "Receiver", "USB\\VID_9\\9"}});
    fiveSecondsPass(2);
    EXPECT_EQ(first.number(&FakeLine::opens), known ? 1 : 2) << known;
    app.link.close();
  }
}

// Without numbers of their own devices are known by where they are plugged in.
TEST_F(Reconnecting, ADeviceWithoutANumberIsFoundInAnotherSocket) {
  const auto stick = [](const char* name, const char* socket) {
    return PortName{name, "Stick", "USB\\VID_1&PID_2\\" + std::string(socket), "USB\\VID_1&PID_2"};
  };
  const struct {
    std::vector<PortName> before, after;
    bool found;
  } rows[] = {
      {{stick("COM3", "1&1")}, {stick("COM4", "1&2")}, true},
      {{stick("COM3", "1&1"), stick("COM4", "1&2")}, {stick("COM4", "1&2")}, false},
      {{stick("COM3", "1&1")}, {stick("COM4", "1&2"), stick("COM5", "1&3")}, false},
      {{stick("COM3", "1&1")}, {{"COM4", "Other", "USB\\VID_9\\1"}}, false},
  };
  for (const auto& row : rows) {
    list(row.before);
    line = &ports.add(devicePath("COM3"));
    FakeLine& other = ports.add(devicePath("COM4"));
    ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
    ASSERT_TRUE(receive(*line));
    line->unplug();
    ASSERT_TRUE(serveUntil([&] { return app.fix.portFailed.load(); }));
    ports.remove(devicePath("COM3"));
    list(row.after);
    fiveSecondsPass(2);
    EXPECT_EQ(other.number(&FakeLine::opens) > 0, row.found) << &row - rows;
    app.link.close();
  }
}

TEST_F(Reconnecting, EndsWithTheConnection) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  ASSERT_TRUE(receive(*line));
  fiveSecondsPass(2);
  EXPECT_EQ(state(), ReceiverState::lost);
  app.link.close();
  EXPECT_EQ(state(), ReceiverState::notConnected);
  const int opens = line->number(&FakeLine::opens);
  fiveSecondsPass(4);
  EXPECT_EQ(line->number(&FakeLine::opens), opens);
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  EXPECT_EQ(state(), ReceiverState::noData);
  EXPECT_TRUE(receive(*line));
}

TEST_F(Reconnecting, OnlyWatchesSerialLinesAndOnlyWhenItMay) {
  app.gps.simulation.paceMs = 600000;
  ASSERT_TRUE(connectReceiver(app, {.simulate = true}));
  fiveSecondsPass(4);
  EXPECT_NE(state(), ReceiverState::lost);
  app.settings.reconnect = false;
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  fiveSecondsPass(4);
  EXPECT_EQ(state(), ReceiverState::noData);
  EXPECT_EQ(line->number(&FakeLine::opens), 1);
}

TEST_F(Reconnecting, SwitchedOffWhileAPortIsLostItIsClosed) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  line->unplug();
  ASSERT_TRUE(serveUntil([&] { return app.fix.portFailed.load(); }));
  fiveSecondsPass();
  ASSERT_EQ(state(), ReceiverState::lost);
  app.settings.reconnect = false;
  fiveSecondsPass();
  EXPECT_EQ(state(), ReceiverState::notConnected);
}

TEST_F(Reconnecting, NoiseIsDataToo) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  for (int i = 0; i < 4; ++i) {
    clock.now += 4000;
    const uint64_t rejected = app.shown.stats.rejected;
    line->feed("\x80\x81 another speed \x82\r\n");
    EXPECT_TRUE(serveUntil([&] { return app.shown.stats.rejected > rejected; }));
    onTimer(app, kStatisticsTimer);
  }
  EXPECT_EQ(line->number(&FakeLine::opens), 1);
}

TEST_F(Reconnecting, NobodyWaitsForAnOpeningThatTakesLong) {
  ASSERT_NO_FATAL_FAILURE(loseWhileOpeningHangs());
  for (int i = 0; i < 4; ++i) {  // it stays with the one attempt
    clock.now += 5000;
    onTimer(app, kStatisticsTimer);
  }
  EXPECT_EQ(line->number(&FakeLine::opening), 1);
  EXPECT_EQ(state(), ReceiverState::lost);
  // Its time begins when it is open.
  line->letOpen();
  ASSERT_TRUE(serveUntil([&] { return !isTrying(); }));
  clock.now += 1000;
  onTimer(app, kStatisticsTimer);
  EXPECT_EQ(line->number(&FakeLine::opens), 2);
  EXPECT_TRUE(receive(*line));
  EXPECT_EQ(app.gps.readers.liveReaders, 1);
}

TEST_F(Reconnecting, APortThatOpensTooLateIsClosedAgain) {
  FakeLine& other = ports.add(devicePath("COM4"));
  for (const bool connectAgain : {true, false}) {
    line = &ports.add(devicePath("COM3"));
    ASSERT_NO_FATAL_FAILURE(loseWhileOpeningHangs());
    app.link.close();
    if (connectAgain) {
      ASSERT_TRUE(connectReceiver(app, {.port = "COM4"}));
    } else {
      EXPECT_FALSE(stopReceiver(app)) << "a reader is in the hands of the system";
    }
    line->letOpen();
    EXPECT_TRUE(serveUntil([&] { return line->number(&FakeLine::closes) == 2; }));
    EXPECT_EQ(app.fix.running, connectAgain);
    if (connectAgain) {
      EXPECT_TRUE(receive(other));
    }
  }
}

TEST_F(Reconnecting, SaysWhyThePortDoesNotOpen) {
  const struct {
    PortError error;
    const char* words;
  } rows[] = {{PortError::busy, "COM3 is in use by another program."},
              {PortError::noPermission, "You do not have permission to open COM3."},
              {PortError::other, "COM3 cannot be used as a serial port."}};
  for (const auto& row : rows) {
    line = &ports.add(devicePath("COM3"));
    ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
    ASSERT_TRUE(receive(*line));
    line->openError = row.error;
    fiveSecondsPass(2);
    EXPECT_EQ(currentNotice(app), "No data for 10 seconds. Trying to reconnect to COM3.")
        << "first of all";
    fiveSecondsPass(2);
    EXPECT_EQ(currentNotice(app), row.words);
    fiveSecondsPass(4);
    EXPECT_EQ(currentNotice(app), row.words) << "as long as it is so";
    app.link.close();
    clock.now += 20000;
  }
}

TEST_F(Reconnecting, ThePortIsLeftToOthersForAWhile) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  ASSERT_TRUE(receive(*line));
  app.link.releasePort();
  EXPECT_EQ(line->number(&FakeLine::closes), 1);
  fiveSecondsPass(4);
  EXPECT_EQ(line->number(&FakeLine::opens), 1);
  EXPECT_TRUE(app.fix.running);
  app.link.reclaimPort();
  EXPECT_TRUE(receive(*line));
  EXPECT_EQ(state(), ReceiverState::fix);
  EXPECT_EQ(app.gps.readers.liveReaders, 1);
}

TEST_F(Reconnecting, OnlyUnattendedIsAFirstOpeningTriedAgain) {
  line->openError = PortError::busy;
  EXPECT_FALSE(connectReceiver(app, {.port = "COM3"}));
  fiveSecondsPass(4);
  EXPECT_EQ(line->number(&FakeLine::opens), 1);
  app.link.times = kHeadlessLinkTimes;
  secondsPass(2);
  EXPECT_EQ(line->number(&FakeLine::opens), 3) << "each second";
  EXPECT_EQ(app.link.state(), Link::State::failed);
  EXPECT_EQ(app.link.error(), PortError::busy);
  line->openError = PortError::none;
  secondsPass();
  EXPECT_EQ(app.link.state(), Link::State::open);
  EXPECT_TRUE(receive(*line));
}

TEST_F(Reconnecting, ADeviceThatHangsUpAtOnceIsLeftAloneForLonger) {
  app.link.times = kHeadlessLinkTimes;
  line->unplug();
  ASSERT_TRUE(app.link.open({.port = "COM3"}));
  for (int opens = 1; opens < 4; ++opens) {
    ASSERT_TRUE(serveUntil([&] { return app.fix.portFailed.load(); }));
    secondsPass(4);
    EXPECT_EQ(app.link.state(), Link::State::lost);
    EXPECT_EQ(app.link.error(), PortError::notFound);
    EXPECT_EQ(line->number(&FakeLine::opens), opens);
    secondsPass();
    EXPECT_EQ(line->number(&FakeLine::opens), opens + 1);
  }
  ports.remove(devicePath("COM3"));
  secondsPass(5);
  line = &ports.add(devicePath("COM3"));
  secondsPass();
  EXPECT_TRUE(receive(*line)) << "not there, it is asked for each second";
}

// For the thread sanitizer: handles change under the reader while it reads.
TEST_F(Reconnecting, ManyUnpluggings) {
  ASSERT_TRUE(connectReceiver(app, {.port = "COM3"}));
  for (int i = 0; i < 30; ++i) {
    FakeLine* const current = line;
    ASSERT_TRUE(receive(*current)) << i;
    current->feed(kRmcBytes.substr(0, 20));
    if (i % 2 == 0) current->unplug();
    line = &ports.add(devicePath("COM3"));
    fiveSecondsPass(3);
  }
  EXPECT_EQ(app.gps.readers.liveReaders, 1);
  EXPECT_EQ(app.shown.stats.total(), 30U);
}

TEST(ReadoutDelay, IsMeasuredFromTheLastByteToTheDrawing) {
  AppWorld world;
  world.app.fix.lastByteMicros = 1000000;
  world.clock.now = 1040;
  world.receive(kRmcBytes);
  world.clock.now = 1055;
  noteDrawn(world.app);
  EXPECT_EQ(world.app.readoutDelayMicros, 55000U);
  world.clock.now = 9000;
  noteDrawn(world.app);
  EXPECT_EQ(world.app.readoutDelayMicros, 55000U) << "nothing new was drawn";
}

}  // namespace
}  // namespace vgps
