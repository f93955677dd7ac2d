#include "track/editing.h"

#include <gtest/gtest.h>

#include "tests/track/recording_world.h"
#include "track/thinning.h"

namespace vgps {
namespace {

// A point for each letter, named by it, one degree east of the last and a minute later; a photo at
// every capital.
Track trackOf(std::string_view letters) {
  Track track;
  track.name = letters;
  for (size_t i = 0; i < letters.size(); ++i) {
    track.points.push_back(pointAt(10 + static_cast<double>(i), 48));
    TrackPoint& point = track.points.back();
    point.localTime = {2010, 7, 0, 5, 9, static_cast<uint16_t>(i), 0, 0};
    point.m = static_cast<uint32_t>(i + 1);
    setPointName(track, point, letters.substr(i, 1));
    if (letters[i] < 'a') {
      track.attachments.push_back({static_cast<uint32_t>(i), std::string(1, letters[i])});
    }
  }
  return track;
}

// The letters of the points; a capital where the photo of that letter is attached.
std::string lettersOf(const Track& track) {
  std::string letters;
  for (const TrackPoint& point : track.points) {
    std::string letter(pointName(track, point));
    if (letter[0] < 'a') letter = "?";  // a photo that must follow below
    letters += letter;
  }
  for (const TrackAttachment& attachment : track.attachments) {
    const TrackPoint& point = track.points[attachment.point];
    letters[attachment.point] =
        pointName(track, point) == attachment.path ? attachment.path[0] : '!';
  }
  return letters;
}

TEST(Editing, JoinAppends) {
  Track track = trackOf("aBc");
  join(track, trackOf("DeF"));
  EXPECT_EQ(lettersOf(track), "aBcDeF");
  EXPECT_EQ(track.name, "aBc");
  join(track, track);
  EXPECT_EQ(lettersOf(track), "aBcDeFaBcDeF");
  Track empty;
  join(empty, track);
  EXPECT_EQ(lettersOf(empty), "aBcDeFaBcDeF");
}

TEST(Editing, SplitDoublesNoPoint) {
  struct {
    size_t index;
    const char *first, *second;
  } const rows[] = {{1, "A", "bCde"}, {2, "Ab", "Cde"}, {4, "AbCd", "e"}};
  for (const auto& row : rows) {
    Track track = trackOf("AbCde");
    const std::optional<Track> second = split(track, row.index, 3);
    ASSERT_TRUE(second);
    EXPECT_EQ(lettersOf(track), row.first);
    EXPECT_EQ(lettersOf(*second), row.second);
    EXPECT_EQ(second->name, "Split 3");
    EXPECT_EQ(track.name, "AbCde");
  }
  for (const size_t index : {0, 5, 99}) {
    Track track = trackOf("AbCde");
    EXPECT_FALSE(split(track, index, 1));
    EXPECT_EQ(lettersOf(track), "AbCde");
  }
}

TEST(Editing, ReverseKeepsWhatBelongsToAPoint) {
  Track track = trackOf("Abcd");
  reverse(track);
  EXPECT_EQ(lettersOf(track), "dcbA");
  EXPECT_EQ(track.points[0].m, 4U);
  EXPECT_EQ(track.points[0].localTime.minute, 3);
  Track none;
  reverse(none);
  EXPECT_TRUE(none.points.empty());
}

TEST(Editing, TrimKeepsWhatLiesBetween) {
  struct {
    size_t first, last;
    const char* left;
  } const rows[] = {{0, 4, "AbCdE"}, {1, 2, "bC"}, {4, 4, "E"}, {2, 1, ""}, {3, 5, ""}};
  for (const auto& row : rows) {
    const std::string left = row.left;
    Track track = trackOf("AbCdE");
    EXPECT_EQ(trim(track, row.first, row.last), !left.empty());
    EXPECT_EQ(lettersOf(track), left.empty() ? "AbCdE" : left);
  }
}

TEST(Editing, TrimToTimesKeepsPointsWithoutOne) {
  struct {
    uint16_t from, to;
    const char* left;
  } const rows[] = {{0, 4, "AbCdE"}, {0, 3, "AbC"},   {1, 4, "CdE"},
                    {2, 2, "C"},     {5, 9, "AbCdE"}, {3, 3, "AbCdE"}};
  for (const auto& row : rows) {
    Track track = trackOf("AbCdE");
    track.points[1].localTime = track.points[3].localTime = {};
    DateTime from = track.points[0].localTime;
    DateTime to = from;
    from.minute = row.from;
    to.minute = row.to;
    EXPECT_EQ(trimToTimes(track, from, to), std::string(row.left) != "AbCdE" || row.from == 0);
    EXPECT_EQ(lettersOf(track), row.left);
  }
}

TEST(Thinning, ThreeSidesTogether) {
  struct {
    double step;  // degrees of longitude at 50 N
    size_t left;
  } const rows[] = {{5e-5, 2}, {7e-5, 3}};
  for (const auto& row : rows) {
    Track track;
    for (int i = 0; i < 3; ++i) track.points.push_back(pointAt(10 + i * row.step, 50));
    track.points[1].m = 1;  // the second pass keeps it
    RecordingOptions options;
    options.normalizeMeters = 0;
    normalize(track, options);
    EXPECT_EQ(track.points.size(), row.left) << row.step;
  }
}

TEST(Thinning, CrowdsGoButForOtherCells) {
  RecordingOptions options;
  Track track;
  for (int i = 0; i < 200; ++i) track.points.push_back(pointAt(10 + i * 1e-6, 50));
  track.points[100].c = 7;
  for (TrackPoint& point : track.points) point.s = 1;
  track.attachments = {{50, "before"}, {100, "cell"}, {150, "after"}, {199, "last"}};
  normalize(track, options);
  // Around the other cell the neighbours stay, then the scan thins on.
  ASSERT_EQ(track.points.size(), 5U);
  EXPECT_EQ(track.points[2].c, 7U);
  const uint32_t expected[] = {0, 2, 3, 4};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(track.attachments[i].point, expected[i]) << i;
}

TEST(Thinning, PointsThatDoNotTurn) {
  // North, then east by 8 degrees of course, back, then a corner across north.
  Track track;
  const double way[][2] = {{10, 50},        {10, 50.01},      {10.0022, 50.02}, {10.0022, 50.03},
                           {10.002, 50.04}, {10.0024, 50.05}, {10.1, 50.05}};
  for (const auto& at : way) track.points.push_back(pointAt(at[0], at[1]));
  RecordingOptions options;
  Track straight = track;
  normalize(straight, options);
  ASSERT_EQ(straight.points.size(), 3U);  // the ends and the corner
  EXPECT_EQ(straight.points[1].longitude, 10.0024);

  options.angle = 1;
  Track own = track;
  own.angleThreshold = 10;  // the track's own goes first
  normalize(own, options);
  EXPECT_EQ(own.points.size(), 3U);
  Track fine = track;
  normalize(fine, options);
  EXPECT_EQ(fine.points.size(), 6U);  // one of them turns by less than a degree

  options.angle = 10;
  Track kept = track;
  kept.points[1].m = 1;
  kept.points[2].s = 1;
  kept.attachments = {{3, "photo"}};
  normalize(kept, options);
  EXPECT_EQ(kept.points.size(), 6U);
  EXPECT_EQ(kept.attachments[0].point, 3U);
}

}  // namespace
}  // namespace vgps
