#include "gps/reader.h"

#include <gtest/gtest.h>

#include "tests/fakes/live_world.h"

// Reader threads at work on a line that a test feeds.
namespace vgps {
namespace {

using Lines = std::vector<std::string>;

const std::string kPort = devicePath("COM3");
const std::string kMessage("\xA0\xA2\x00\x02\x29\x0A\x00\x33\xB0\xB3", 10);

int readsOf(FakeLine& line) {
  const std::lock_guard lock(line.mutex);
  return line.reads;
}

// Feeds bytes as a block of their own: the reader waits for data before and again after it. One
// read gives the bytes, one finds the line silent, the next waits.
void feedBlock(FakeLine& line, std::string_view bytes, int& reads) {
  ASSERT_TRUE(comes([&] { return readsOf(line) == reads; }));
  line.feed(bytes);
  reads += 2;
  ASSERT_TRUE(comes([&] { return readsOf(line) == reads; }));
}

TEST(Reader, HalfAStartSequenceWaitsForItsOtherHalf) {
  struct {
    Lines blocks;
    Lines lines;
  } const rows[] = {
      {{"\xA0", kMessage.substr(1)}, {kMessage}},
      {{"$A\r\n\xA0", kMessage.substr(1)}, {"$A", kMessage}},
      {{kMessage + "\xA0", kMessage.substr(1) + "\xA0", kMessage.substr(1)},
       {kMessage, kMessage, kMessage}},
      {{kMessage.substr(0, 2), kMessage.substr(2)}, {kMessage}},
  };
  for (const auto& row : rows) {
    LiveWorld world;
    FakeLine& line = world.ports.add(kPort);
    ASSERT_TRUE(world.fix.open(false, false, false, false));
    int reads = 1;
    for (const std::string& block : row.blocks) feedBlock(line, block, reads);
    EXPECT_TRUE(world.fix.stopReaders(10000));
    EXPECT_EQ(world.hooks.lines, row.lines);
    EXPECT_EQ(world.hooks.unknown, Lines());
  }
}

TEST(Reader, EachLineOfABlockHasTheTimeOfItsOwnEnd) {
  struct CountingClock : FakeClock {
    uint64_t microseconds() const override { return ++readings; }
    mutable std::atomic<uint64_t> readings{0};
  };
  FakeHooks hooks;
  CountingClock clock;
  FakePorts ports;
  GpsState state(hooks, clock);
  state.makePort = [&] { return ports.make(); };
  GpsFix fix(state);
  std::vector<uint64_t> times;
  std::atomic<int> received{0};
  hooks.onLine = [&](const ReceivedLine&) {
    times.push_back(fix.lastByteMicros);
    ++received;
  };
  FakeLine& line = ports.add(kPort);
  fix.setPort("COM3", 9600);
  ASSERT_TRUE(fix.open(false, false, false, false));
  uint64_t pieces = 0;
  for (const char* piece : {"$A\r\n$B", ",1\r\n$C\r\n$D", "\r\n"}) {
    line.feed(piece);
    ++pieces;
    EXPECT_TRUE(comes([&] { return clock.readings == pieces; }));
  }
  EXPECT_TRUE(comes([&] { return received == 4; }));
  EXPECT_TRUE(fix.stopReaders(10000));
  EXPECT_EQ(times, (std::vector<uint64_t>{1, 2, 2, 3}));
}

TEST(Reader, ClosingEndsTheBlockThatIsBeingHandled) {
  std::atomic<bool> released{false};
  LiveWorld world;
  world.hooks.onLine = [&](const ReceivedLine&) {
    ++world.received;
    EXPECT_TRUE(comes([&] { return released.load(); }));
  };
  world.ports.add(kPort).feed("$A\r\n$B\r\n$C\r\n");
  ASSERT_TRUE(world.fix.open(false, false, false, false));
  EXPECT_TRUE(comes([&] { return world.received == 1; }));
  EXPECT_TRUE(world.fix.close(true));
  released = true;
  EXPECT_TRUE(world.fix.stopReaders(10000));
  EXPECT_EQ(world.hooks.lines, Lines{"$A"});
}

TEST(Reader, OpeningAnewClosesThePortBefore) {
  for (const bool there : {true, false}) {
    LiveWorld world;
    FakeLine& first = world.ports.add(kPort);
    if (there) world.ports.add(devicePath("COM4"));
    ASSERT_TRUE(world.fix.open(false, false, false, false));
    world.fix.setPort("COM4", 9600);
    EXPECT_EQ(world.fix.open(false, false, false, false), there);
    EXPECT_EQ(first.closes, 1) << there;
    first.unplug();  // a reader left on it would keep the test from ending
  }
}

// Gives its answer in one piece, is silent from then on without real waiting, and notes how long
// it was to wait.
struct ProbedPort : SerialPort {
  struct Record {
    std::string answer;
    std::vector<int> waits;
    int closes = 0;
  };
  explicit ProbedPort(Record& recordToFill) : record(recordToFill) {}
  PortError open(const std::string&) override { return PortError::none; }
  bool setUp(uint32_t) override { return true; }
  PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) override {
    record.waits.push_back(timeoutMs);
    got = record.answer.copy(buffer.data(), buffer.size());
    record.answer.erase(0, got);
    // A probe that does not take silence for an answer must not go on without end.
    if (record.waits.size() > 10) return PortRead::failed;
    return got > 0 ? PortRead::data : PortRead::silence;
  }
  bool write(std::span<const char>) override { return true; }
  void interrupt() override {}
  void close() override { ++record.closes; }
  Record& record;
};

TEST(Reader, AProbeWaitsLongForTheFirstBytesAndShortlyForMore) {
  struct {
    std::string answer;
    bool found;
    size_t reads;
  } const rows[] = {
      {"$GPRMC,12", true, 2},
      {"", false, 1},
      {"$GPRMC," + std::string(2000, '1'), true, 1},  // the read is full
  };
  for (const auto& row : rows) {
    ProbedPort::Record record{.answer = row.answer, .waits = {}};
    GpsWorld world;
    world.state.makePort = [&] { return std::make_unique<ProbedPort>(record); };
    EXPECT_EQ(world.fix.open(false, false, false, true), row.found) << row.answer.size();
    EXPECT_EQ(record.closes, 1);
    ASSERT_EQ(record.waits.size(), row.reads);
    // A receiver speaks once a second.
    EXPECT_GT(record.waits[0], 1500);
    EXPECT_LE(record.waits[0], 3000);
    if (row.reads < 2) continue;
    EXPECT_GT(record.waits[1], 0);
    EXPECT_LE(record.waits[1], 250);
  }
}

}  // namespace
}  // namespace vgps
