#include "library/document_layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "files/crc32.h"
#include "track/track_xml.h"

namespace vgps {
namespace {

// A text that comes in pieces, as a disk may give it.
TagReader::Source inPieces(std::string text, size_t piece) {
  return [text = std::move(text), piece, at = size_t{0}](char* to, size_t size) mutable {
    const size_t count = text.copy(to, std::min(piece, size), at);
    at += count;
    return count;
  };
}

TEST(DocumentLayout, PlacesAreThoseOfTheBytes) {
  const std::string text =
      "<?xml version=\"1.0\" ?>\r\n<root>\r\n\t<tracks>\r\n\t\t<t n=\"A\">\r\n"
      "<p x=\"1\" y=\"2\"/><!-- <t> --></t>\r\n\t\t<!-- b --> "
      "<t/><![CDATA[<t>]]>\r\n\t</tracks>\r\n</root>";
  for (const size_t piece : {1, 2, 7, 64, 100000}) {
    SCOPED_TRACE(piece);
    const DocumentLayout layout = readLayout(inPieces(text, piece));
    ASSERT_EQ(layout.places.size(), 2U);
    const TrackRange& first = layout.places[0];
    const TrackRange& second = layout.places[1];
    EXPECT_EQ(text.substr(first.blanksBegin, first.begin - first.blanksBegin), "\r\n\t\t");
    EXPECT_EQ(text.substr(first.begin, first.end - first.begin),
              "<t n=\"A\">\r\n<p x=\"1\" y=\"2\"/><!-- <t> --></t>");
    EXPECT_EQ(first.checksum, crc32Of(text.substr(first.begin, first.end - first.begin)));
    EXPECT_EQ(text.substr(second.blanksBegin, second.begin - second.blanksBegin), " ");
    EXPECT_EQ(text.substr(second.begin, second.end - second.begin), "<t/>");
    EXPECT_TRUE(text.substr(layout.end.begin).starts_with("\r\n\t</tracks>"));
    EXPECT_EQ(layout.tracks[1].name, "Track 2");
    EXPECT_EQ(layout.state, LibraryState::whole);
  }
}

TEST(DocumentLayout, DamagedTextsReadTheSameInPieces) {
  const std::string texts[] = {
      "<root><tracks><t n=\"A\"><p x=\"1\" y=\"2\"/><t n=\"B\"><p x=\"1\" y=\"2\"/></t></tracks>",
      "<root><tracks><t n=\"A><p x=\"1\" y=\"2\"/></t><u><p x=\"3\" y=\"4\"/></t></tracks></root>",
      "<root><tracks><!-- never ends <t n=\"A\"><p x=\"1\" y=\"2\"/></t>",
      "<root><tracks><t><p <p x=\"1\" y=\"2\"/></t></tracks></root>x",
      "<![CDATA[ <root><tracks><t/>",
      "<",
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text);
    const DocumentLayout whole = readLayout(inPieces(text, text.size()));
    EXPECT_EQ(whole.state, LibraryState::damaged);
    for (const size_t piece : {1, 3, 10}) {
      const DocumentLayout layout = readLayout(inPieces(text, piece));
      EXPECT_EQ(layout.state, whole.state);
      ASSERT_EQ(layout.places.size(), whole.places.size());
      for (size_t i = 0; i < whole.places.size(); ++i) {
        EXPECT_EQ(layout.places[i].blanksBegin, whole.places[i].blanksBegin);
        EXPECT_EQ(layout.places[i].begin, whole.places[i].begin);
        EXPECT_EQ(layout.places[i].end, whole.places[i].end);
        EXPECT_EQ(layout.places[i].missingStartTag, whole.places[i].missingStartTag);
        EXPECT_EQ(layout.tracks[i].points, whole.tracks[i].points);
      }
    }
  }
}

std::string repeated(std::string_view text, size_t count) {
  std::string all;
  for (size_t i = 0; i < count; ++i) all += text;
  return all;
}

// Each would keep a reader busy for minutes that goes back over the text, or over what is open, for
// each of its tags.
TEST(DocumentLayout, NoiseCostsNoMoreThanItsLength) {
  constexpr size_t kMany = 1000000;
  const std::string texts[] = {
      "<root><tracks>" + repeated("<!--", kMany),
      "<root><tracks>" + repeated("<![CDATA[", kMany),
      "<root><tracks>" + repeated("<!--<![CDATA[", kMany),
      repeated("<a>", kMany) + repeated("</b>", kMany),
      "<root><tracks><t>" + repeated("<a>", kMany) + repeated("</b>", kMany),
      repeated("<a>", kMany) + repeated("</a><a></b>", kMany),
  };
  for (const std::string& text : texts) {
    const DocumentLayout layout = readLayout(inPieces(text, text.size()));
    EXPECT_NE(layout.state, LibraryState::whole) << text.substr(0, 40);
  }
}

TEST(DocumentLayout, ATrackLongerThanAnyBlock) {
  std::string text = "<root><tracks><t n=\"Long\">";
  for (int i = 0; i < 20000; ++i) text += "\r\n\t\t\t<p x=\"11.000000\" y=\"48.000000\" z=\"0\"/>";
  text += "</t><t n=\"Short\"><p x=\"1\" y=\"2\"/></t></tracks></root>";
  const DocumentLayout layout = readLayout(inPieces(text, 100000));
  EXPECT_EQ(layout.state, LibraryState::whole);
  ASSERT_EQ(layout.tracks.size(), 2U);
  EXPECT_EQ(layout.tracks[0].points, 20000U);
  EXPECT_EQ(layout.tracks[1].points, 1U);
}

// What is summed up without a tree must be whole, and come to the same, for the reader of the tree.
TEST(DocumentLayout, PlainPointsAreWhatTheTreeSays) {
  const std::string good =
      "\r\n\t<p x=\"11.516667\" y=\"-48.117300\" z=\"545.0\" spd=\"41.4\" "
      "time=\"05-07-2010 09:03:04\" br=\"84.4\"/>";
  const std::string next = "<p x=\"11.6\" y=\"-48\" s=\"2\" n=\"A\" time=\"05-07-2010 09:03:09\"/>";
  const std::string end = "\r\n</t>";
  size_t plain = 0;
  const auto check = [&](const std::string& points) {
    TrackSums sums;
    if (readPlainPoints(points + end, sums) != points.size()) return;
    ++plain;
    const TrackSummary quick = summaryOf(sums);
    const TrackSummary slow = summaryOfText("<t>" + points + end, 1);
    EXPECT_FALSE(slow.damaged) << points;
    EXPECT_EQ(quick.points, slow.points) << points;
    EXPECT_EQ(quick.kilometers, slow.kilometers) << points;
    EXPECT_EQ(quick.seconds, slow.seconds) << points;
    EXPECT_EQ(quick.date, slow.date) << points;
    EXPECT_EQ(quick.bounds.west, slow.bounds.west) << points;
    EXPECT_EQ(quick.bounds.north, slow.bounds.north) << points;
  };
  check(good + good + next);
  EXPECT_EQ(plain, 1U);
  const std::string points = next + good + next + good;
  for (size_t at = 0; at < points.size(); ++at) {
    check(std::string(points).erase(at, 1));
    for (const char c : std::string_view(" <>/=\"'-.059xyzmcnpt&\0\xC3", 23)) {
      check(std::string(points).replace(at, 1, 1, c));
      check(std::string(points).insert(at, 1, c));
    }
  }
  EXPECT_GT(plain, 1000U);
}

}  // namespace
}  // namespace vgps
