#include "library/journal_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "tests/track/recording_world.h"

namespace vgps {
namespace {

TrackPoint numberedPoint(uint32_t number) {
  TrackPoint point{FixAt{.course = 84.4, .kmh = 41.5, .longitude = 11.0 + number * 1e-5}};
  point.magneticVariation = -3.1;
  point.utcTime = {2010, 7, 1, 5, 7, 3, 4, 56};
  point.localTime = {2010, 7, 1, 5, 9, 3, 4, 56};
  point.m = number;
  point.s = ~number;
  point.c = 77;
  return point;
}

std::vector<uint8_t> journalOf(uint32_t points) {
  std::vector<uint8_t> bytes;
  writeJournalHeader(bytes);
  for (uint32_t i = 0; i < points; ++i) writeJournalPoint(numberedPoint(i), bytes);
  return bytes;
}

std::vector<uint32_t> numbersIn(const JournalContents& contents) {
  std::vector<uint32_t> numbers;
  for (const TrackPoint& point : contents.points) numbers.push_back(point.m);
  return numbers;
}

TEST(JournalFormat, EveryFieldComesBack) {
  const std::vector<uint8_t> bytes = journalOf(3);
  ASSERT_EQ(bytes.size(), kJournalHeader + 3 * kJournalPoint);
  const JournalContents contents = readJournal(bytes);
  EXPECT_FALSE(contents.damaged);
  EXPECT_EQ(contents.goodEnd, bytes.size());
  ASSERT_EQ(contents.points.size(), 3U);
  const TrackPoint& got = contents.points[2];
  const TrackPoint wanted = numberedPoint(2);
  EXPECT_EQ(std::memcmp(&got, &wanted, sizeof got), 0);

  TrackPoint noted = wanted;
  noted.unknown = kUnknownAltitude;
  noted.receiverUtc = 1237811719250;
  std::vector<uint8_t> more = bytes;
  writeJournalPoint(noted, more);
  writeJournalPoint(wanted, more);
  const PointList points = readJournal(more).points;
  ASSERT_EQ(points.size(), 5U);
  EXPECT_EQ(std::memcmp(&points[3], &noted, sizeof noted), 0);
  EXPECT_EQ(std::memcmp(&points[4], &wanted, sizeof wanted), 0) << "the note is for one point";
}

TEST(JournalFormat, ANoteBelongsToThePointBehindItOnly) {
  std::vector<uint8_t> bytes = journalOf(1);
  writeJournalId(4711, bytes);
  const size_t good = bytes.size();
  TrackPoint noted = numberedPoint(1);
  noted.receiverUtc = 1237811719250;
  writeJournalPoint(noted, bytes);
  bytes.resize(bytes.size() - 1);
  const JournalContents contents = readJournal(bytes);
  EXPECT_EQ(contents.id, 4711U);
  EXPECT_EQ(contents.goodEnd, good) << "the next point must not get its note";
}

// 8 MB of lengths that reach to the end, each with a good point in front, and a hole of 100 GB.
TEST(JournalFormat, DamageCostsTimeInProportion) {
  std::vector<uint8_t> bytes;
  writeJournalHeader(bytes);
  std::vector<uint8_t> piece;
  writeJournalPoint(numberedPoint(7), piece);
  piece.insert(piece.end(), {0, 0, 0x40, 0, 1, 2, 3, 4});
  constexpr size_t kPieces = 60000;
  for (size_t i = 0; i < kPieces; ++i) bytes.insert(bytes.end(), piece.begin(), piece.end());
  EXPECT_EQ(readJournal(bytes).points.size(), kPieces);

  uint64_t read = 0;
  const JournalContents hole = readJournal([&](char* to, size_t size) {
    std::fill_n(to, size, '\0');
    read += size;
    return size;  // without end
  });
  EXPECT_TRUE(hole.damaged);
  EXPECT_LT(read, uint64_t{100} << 20);
}

TEST(JournalFormat, StartsAsDrawn) {
  const std::vector<uint8_t> bytes = journalOf(1);
  const uint8_t start[] = {'V', 'G', 'P', 'S', 'J', 'R', 'N', 'L', 1, 0, 0, 0};
  EXPECT_TRUE(std::equal(std::begin(start), std::end(start), bytes.begin()));
  EXPECT_EQ(bytes[16], 121);  // length of the body
  EXPECT_EQ(bytes[24], 1);    // a point
  EXPECT_EQ(bytes[25], 1);    // its fix status
}

TEST(JournalFormat, CutAnywhereAllWholePointsAreThere) {
  const std::vector<uint8_t> whole = journalOf(4);
  for (size_t size = 0; size <= whole.size(); ++size) {
    const JournalContents contents = readJournal(std::span(whole).first(size));
    const size_t points = size < kJournalHeader ? 0 : (size - kJournalHeader) / kJournalPoint;
    EXPECT_EQ(contents.points.size(), points) << size;
    EXPECT_FALSE(contents.damaged) << size;
    EXPECT_EQ(contents.goodEnd,
              size < kJournalHeader ? 0 : kJournalHeader + points * kJournalPoint);
  }
}

TEST(JournalFormat, AFlippedBitCostsOnePoint) {
  const std::vector<uint8_t> whole = journalOf(4);
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::vector<uint8_t> bytes = whole;
    bytes[bit / 8] ^= static_cast<uint8_t>(1U << (bit % 8));
    const JournalContents contents = readJournal(bytes);
    std::vector<uint32_t> expected = {0, 1, 2, 3};
    if (bit / 8 >= kJournalHeader) {
      expected.erase(expected.begin() +
                     static_cast<std::ptrdiff_t>((bit / 8 - kJournalHeader) / kJournalPoint));
    }
    EXPECT_EQ(numbersIn(contents), expected) << bit;
    EXPECT_TRUE(contents.damaged) << bit;
  }
}

TEST(JournalFormat, WhatIsNoPoint) {
  std::vector<uint8_t> zeroes = journalOf(2);
  zeroes.resize(zeroes.size() + 4096);  // what a power cut can leave of a block
  EXPECT_EQ(numbersIn(readJournal(zeroes)), (std::vector<uint32_t>{0, 1}));
  EXPECT_TRUE(readJournal(zeroes).damaged);
  EXPECT_EQ(readJournal(zeroes).goodEnd, kJournalHeader + 2 * kJournalPoint);

  std::vector<uint8_t> inserted = journalOf(3);
  inserted.insert(inserted.begin() + 100, 1000, 0x79);
  EXPECT_EQ(numbersIn(readJournal(inserted)), (std::vector<uint32_t>{1, 2}));

  const std::string noise = "<?xml version=\"1.0\"?><root/>";
  const JournalContents none =
      readJournal({reinterpret_cast<const uint8_t*>(noise.data()), noise.size()});
  EXPECT_EQ(none.goodEnd, 0U);
  EXPECT_TRUE(none.damaged);
}

}  // namespace
}  // namespace vgps
