#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "gps/reader.h"
#include "gps/sirf.h"
#include "tests/fakes/gps_world.h"
#include "tests/fakes/sample_lines.h"
#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

using Lines = std::vector<std::string>;

std::string sirf(const std::string& payload) {
  std::string message = {'\xA0', '\xA2', static_cast<char>(payload.size() >> 8),
                         static_cast<char>(payload.size() & 0xFF)};
  return message + payload + "\x01\x02\xB0\xB3";
}

TEST(Framing, LinesThatReachTheParser) {
  const std::string whole = kRmcLine + "\r\n";
  struct {
    const char* what;
    std::vector<std::string> chunks;
    Lines lines;
  } const rows[] = {
      {"a whole line and the start of one", {whole + "$GPG", "GA,1\r\n"}, {kRmcLine, "$GPGGA,1"}},
      {"a line in single bytes", {"$", "A", "\r", "\n"}, {"$A"}},
      {"the middle of a line drops the chunk", {"PGGA,1\r\n" + whole, whole}, {kRmcLine}},
      {"a blank line ends the chunk", {"$A\r\n\r\n$B\r\n"}, {"$A"}},
      {"the character behind a CR is skipped blindly", {"$A\r$B\r\n"}, {"$A", "B"}},
      {"LF alone is one line per chunk", {"$A\n$B\n"}, {"$A\n$B\n"}},
      {"CR CR LF", {"$A\r\r\n"}, {"$A", "\n"}},
      {"no line end at all", {"$A,", "$B,"}, {}},
      {"empty chunks", {"", "$A\r\n", ""}, {"$A"}},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    for (const std::string& chunk : row.chunks) world.fix.onReceive(chunk);
    EXPECT_EQ(world.hooks.lines, row.lines) << row.what;
  }
}

TEST(Framing, StrayCharactersInFrontOfASentence) {
  const std::string line = kRmcLine + "\r\n";
  struct {
    std::vector<std::string> chunks;
    uint64_t counted;
    Lines lines;
  } const rows[] = {
      {{"$" + line}, 1, {kRmcLine}},
      {{"#" + line, line}, 1, {kRmcLine, kRmcLine}},
      {{"#$$" + line}, 1, {kRmcLine}},
      {{"$", line}, 1, {kRmcLine}},
      {{"$$", line.substr(1)}, 1, {kRmcLine}},
      {{"$P,1,$", line}, 0, {"$P,1,$" + kRmcLine}},  // inside a line
      {{"$$\r\n"}, 0, {"$$"}},
      {{"##\r\n", "#x$A\r\n"}, 0, {}},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    for (const std::string& chunk : row.chunks) world.fix.receiveLine(chunk);
    EXPECT_EQ(world.hooks.lines, row.lines) << row.chunks[0];
    EXPECT_EQ(world.state.stats.strayStarts, row.counted) << row.chunks[0];
  }
}

TEST(Framing, TooLongACarryLosesItsStart) {
  GpsWorld world;
  world.fix.onReceive("$" + std::string(5999, 'x'));
  EXPECT_EQ(world.fix.framing.carried(), 5000U);
  world.fix.onReceive("\r\n" + kRmcLine + "\r\n");
  EXPECT_TRUE(world.hooks.lines.empty());
  EXPECT_EQ(world.fix.framing.carried(), 0U);
  world.fix.onReceive(kRmcLine + "\r\n");
  EXPECT_EQ(world.hooks.lines, Lines{kRmcLine});
}

TEST(Framing, OtherBytesAreShownAndDropped) {
  GpsWorld world;
  world.fix.onReceive("!AIVDM,1\r\n");
  world.fix.onReceive("\xA0");
  EXPECT_EQ(world.hooks.unknown, (Lines{"!AIVDM,1\r\n", "\xA0"}));
  EXPECT_EQ(world.state.stats.rejected, 1U);
  EXPECT_EQ(world.state.inputProtocol, kNmeaText);
}

TEST(Framing, BinaryMessagesCutAnywhere) {
  const std::string stream = sirf("\x29\r\n$x") + sirf("\x02") + sirf(std::string(600, 'p'));
  for (size_t size = 1; size <= stream.size(); size = size * 2 + 1) {
    GpsWorld world;
    std::vector<uint32_t> numbers;
    std::vector<size_t> lengths;
    world.hooks.onLine = [&](const ReceivedLine& line) {
      const auto* message = static_cast<const SirfMessage*>(line.message);
      ASSERT_NE(message, nullptr);
      EXPECT_EQ(message->start, 0xA0A2);
      EXPECT_EQ(message->end, 0xB0B3);
      EXPECT_EQ(message->checksum, 0x0102);
      numbers.push_back(message->number());
      lengths.push_back(message->payload.size());
    };
    for (size_t at = 0; at < stream.size();) {
      // Half a start sequence is lost, which the reader sees to: it never ends a block with A0.
      size_t end = std::min(at + size, stream.size());
      if (stream[end - 1] == '\xA0') ++end;
      world.fix.onReceive(std::string_view(stream).substr(at, end - at));
      at = end;
    }
    EXPECT_EQ(numbers, (std::vector<uint32_t>{0x29, 0x02, 'p'})) << size;
    EXPECT_EQ(lengths, (std::vector<size_t>{5, 1, 600})) << size;
    EXPECT_EQ(world.state.stats.binary, 3U);
    EXPECT_EQ(world.state.inputProtocol, kSirfBinary);
  }
}

TEST(Framing, TextFollowsBinary) {
  GpsWorld world;
  world.fix.onReceive(sirf("\x02") + kRmcLine + "\r\n");
  EXPECT_EQ(world.hooks.lines.size(), 2U);
  EXPECT_EQ(world.state.inputProtocol, kNmeaText);
  EXPECT_EQ(world.fix.course, 84.4);
}

TEST(Framing, BlocksAreCutAtLineStarts) {
  const std::string binary = "\xA0\xA2\x01\n$x";
  const std::string message = sirf("\n$");
  struct {
    const char* what;
    std::string block;
    char carried;
    bool binary;
    Lines chunks;
  } const rows[] = {
      {"every line for itself", "$A\r\n!B\r\n$C", 0, false, {"$A\r\n", "!B\r\n", "$C"}},
      {"the rest of a carried line first", "rest\r\n$B\r\n", '$', false, {"rest\r\n", "$B\r\n"}},
      {"LF alone", "$A\n$B\n", 0, false, {"$A\n", "$B\n"}},
      {"binary from the start", binary, 0, false, {binary}},
      {"binary behind a line", "$A\r\n" + binary, 0, false, {"$A\r\n", binary}},
      {"binary being carried", "x\ny\n$A\r\n", '\xA0', false, {"x\ny\n$A\r\n"}},
      {"the rest of a damaged message", "x\n$y" + binary, 0, true, {"x\n$y", binary}},
      {"lines after binary", "!A\r\n$B\r\n", 0, true, {"!A\r\n", "$B\r\n"}},
      {"whole messages and text",
       message + "$A\r\n" + message,
       0,
       true,
       {message, "$A\r\n", message}},
      {"blank lines in a row",
       "\n\r\n\n$A\r\n\r\n\r$B",
       0,
       false,
       {"\n\r\n\n", "$A\r\n", "\r\n", "\r$B"}},
      {"but not behind what is carried", "\r\n\r\n\r\n", '$', false, {"\r\n", "\r\n\r\n"}},
      {"nothing", "", 0, false, {}},
  };
  for (const auto& row : rows) {
    Lines chunks;
    splitAtLineStarts(row.block, row.carried, row.binary,
                      [&](std::string_view chunk) { chunks.emplace_back(chunk); });
    EXPECT_EQ(chunks, row.chunks) << row.what;
  }
}

TEST(Framing, ForeignLinesTakeNoSentenceWithThem) {
  GpsWorld world;
  const std::string block =
      "+ 6: 28 (.....)\n$GPGGA,1\r\n!AIVDM\r\n\r\n" + kRmcLine + "\r\n$PSRF\n";
  std::mt19937 random(1);
  for (size_t at = 0; at < block.size();) {
    const size_t size = 1 + random() % 9;
    splitAtLineStarts(std::string_view(block).substr(at, size), world.fix.framing.carriedStart(),
                      false, [&](std::string_view chunk) { world.fix.onReceive(chunk); });
    at += size;
  }
  EXPECT_EQ(world.hooks.lines, (Lines{"$GPGGA,1", kRmcLine, "$PSRF\n"}));
}

TEST(Framing, NoiseNeitherCrashesNorBlocks) {
  std::mt19937 random(7);
  GpsWorld world;
  for (int i = 0; i < 20000; ++i) {
    std::string noise(random() % 300, '\0');
    for (char& c : noise)
      c = static_cast<char>(random() % 8 == 0 ? "$\r\n\xA0\xA2,*\0"[random() % 8] : random());
    splitAtLineStarts(noise, world.fix.framing.carriedStart(), random() % 2 == 0,
                      [&](std::string_view chunk) { world.fix.onReceive(chunk); });
  }
  world.fix.onReceive("$" + std::string(1000000, 'x'));
  EXPECT_LE(world.fix.framing.carried(), 5000U);
  world.fix.onReceive("\r\n");
  world.fix.onReceive("\r\n");
  world.hooks.lines.clear();
  world.fix.onReceive(kGgaLine + "\r\n");
  EXPECT_EQ(world.hooks.lines, Lines{kGgaLine});
}

TEST(Lines, EachLineIsTimedAndCounted) {
  GpsWorld world;
  world.fix.ticksWithoutData = 9;
  world.clock.now = 5000;
  uint32_t previous = 1;
  world.hooks.onLine = [&](const ReceivedLine&) { previous = world.fix.previousReceiveTick; };
  world.fix.onReceive(kRmcLine + "\r\n" + kGgaLine + "\r\n$GPGSV,1,1,00*00\r\n$PX\r\n");
  EXPECT_EQ(world.fix.receiveTick, 5000U);
  EXPECT_EQ(previous, 5000U);
  EXPECT_EQ(world.fix.ticksWithoutData, 0U);
  EXPECT_EQ(world.fix.lastSentenceKind, 0);
  EXPECT_EQ(world.hooks.refreshes, 1);
  const SentenceStats& stats = world.state.stats;
  const std::array<uint64_t, kSentenceTypes> counts = {1, 1, 0, 1, 1};
  for (size_t kind = 0; kind < counts.size(); ++kind) {
    EXPECT_EQ(stats.kinds[kind].count, counts[kind]) << kind;
  }
  EXPECT_EQ(stats.total(), 4U);
  EXPECT_EQ(stats.of(SentenceType::rmc).checksumRight, 1U);
  EXPECT_EQ(stats.sum(&KindStats::checksumRight), 2U);
  EXPECT_EQ(stats.of(SentenceType::gsv).checksumWrong, 1U);
  EXPECT_EQ(stats.of(SentenceType::other).checksumAbsent, 1U);
}

TEST(Lines, RatesFollowTheTicks) {
  GpsWorld world;
  for (int i = 0; i < 100; ++i) {
    world.clock.now += 100;
    world.fix.onReceive(kRmcLine + "\r\n");
    if (i % 10 == 0) world.fix.onReceive(kGgaLine + "\r\n");
  }
  const auto rate = [&](SentenceType kind) {
    return world.state.stats.of(kind).rate.perSecond(world.clock.now);
  };
  EXPECT_NEAR(rate(SentenceType::rmc), 10, 0.5);
  EXPECT_NEAR(rate(SentenceType::gga), 1, 0.1);
  EXPECT_EQ(rate(SentenceType::gsa), 0);
  world.clock.now += 60000;  // silence
  EXPECT_EQ(rate(SentenceType::rmc), 0);
  for (int i = 0; i < 3; ++i) {  // a pause is no part of the rate after it
    world.clock.now += 500;
    world.fix.onReceive(kRmcLine + "\r\n");
  }
  EXPECT_NEAR(rate(SentenceType::rmc), 2, 0.1);
}

TEST(Lines, TheLeaderOfABurstIsOfferedAndItsFollowerNot) {
  struct {
    int32_t setting;
    std::vector<std::pair<uint32_t, std::string>> lines;  // milliseconds before it, its text
    std::vector<int32_t> kinds;
  } const rows[] = {
      {0, {{200, "$GPGGA,1"}, {1, "$GPRMC,1"}}, {0, 2}},
      {0, {{200, "$GPRMC,1"}, {100, "$GPGGA,1"}}, {0, 1}},
      {0, {{200, "$GPRMC,1"}, {101, "$GPGGA,1"}}, {0, 0}},
      {0, {{200, "$GPRMC,1"}, {1, "$GPGSA,A"}, {1, "$GPGGA,1"}}, {0, 0, 1}},
      {3, {{200, "$GPRMC,1"}, {1, "$GPGGA,1"}}, {3, 3}},
  };
  for (const auto& row : rows) {
    GpsWorld world;
    world.state.options.epochSentenceSetting = row.setting;
    std::vector<int32_t> kinds;
    for (const auto& [gap, line] : row.lines) {
      world.clock.now += gap;
      world.fix.onReceive(line + "\r\n");
      kinds.push_back(world.state.epochSentenceKind);
    }
    EXPECT_EQ(kinds, row.kinds) << row.lines[0].second;
  }
}

class StreamLogFile : public testing::Test {
 protected:
  std::string content() const { return folder_.read("stream.log"); }
  TestFolder folder_;
  const std::string path_ = folder_ / "stream.log";
  const std::string refused_ = folder_ / "no/such";
};

TEST_F(StreamLogFile, HoldsWhatReachedTheLines) {
  GpsWorld world;
  world.state.log.path = path_;
  world.fix.onReceive("$A\r\n");
  EXPECT_FALSE(folder_.has("stream.log"));
  world.state.options.logNmea = true;
  world.fix.onReceive("$B\r\n$C");
  world.fix.onReceive("!foreign\r\n");
  world.fix.onReceive("\r\n");
  world.fix.onReceive(sirf(std::string("\x02\0zzz", 5)));
  EXPECT_EQ(content(), "$B\r\n$C!foreign\r\n\xA0\xA2\r\n");
  world.state.options.logNmea = false;
  world.fix.onReceive("$D\r\n");
  EXPECT_EQ(world.state.log.file, nullptr);
  world.state.options.logNmea = true;
  world.fix.onReceive("$E\r\n");
  EXPECT_TRUE(content().ends_with("$E\r\n"));
}

TEST_F(StreamLogFile, AFailureIsToldAgainAfterItWorkedOrWasTurnedOff) {
  GpsWorld world;
  const auto receiveTwice = [&](const std::string& path) {
    world.state.log.path = path;
    for (int i = 0; i < 2; ++i) world.fix.onReceive("$A\r\n");
  };
  world.state.options.logNmea = true;
  receiveTwice(refused_);
  EXPECT_EQ(world.hooks.logFailures, 1);
  EXPECT_EQ(world.hooks.lines.size(), 2U);
  receiveTwice(path_);
  EXPECT_EQ(content(), "$A\r\n$A\r\n");
  std::fclose(world.state.log.file);  // as if the folder had gone
  world.state.log.file = nullptr;
  receiveTwice(refused_);
  EXPECT_EQ(world.hooks.logFailures, 2);
  world.state.options.logNmea = false;
  receiveTwice(refused_);
  EXPECT_EQ(world.hooks.logFailures, 2);
  world.state.options.logNmea = true;
  receiveTwice(refused_);
  EXPECT_EQ(world.hooks.logFailures, 3);
}

}  // namespace
}  // namespace vgps
