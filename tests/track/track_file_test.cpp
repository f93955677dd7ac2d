#include "track/track_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "platform/files.h"
#include "tests/fakes/test_folder.h"
#include "tests/library/memory_file.h"
#include "tests/track/recording_world.h"
#include "track/track_xml.h"

namespace vgps {
namespace {

constexpr const char* kDeclaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n";

TrackPoint samplePoint() {
  TrackPoint point{FixAt{.course = 84.4, .kmh = 41.484799250793458, .altitude = 545}};
  point.longitude = 11.516666666666667;
  point.latitude = 48.117300001780194;
  point.localTime = {2009, 3, 1, 23, 12, 35, 19, 999};
  return point;
}

RecordingOptions everything() {
  RecordingOptions options;
  options.recordCell = options.recordSpeed = options.recordTime = options.recordCourse = true;
  return options;
}

std::string pointText(const TrackPoint& point, const RecordingOptions& options) {
  Track track;
  track.points.push_back(point);
  const std::string text = trackText(track, options, {}, 0);
  const std::string open = "<t>\r\n\t";
  const std::string close = "\r\n</t>\r\n";
  EXPECT_TRUE(text.starts_with(open) && text.ends_with(close)) << text;
  return text.substr(open.size(), text.size() - open.size() - close.size());
}

TEST(TrackXml, Points) {
  const RecordingOptions none;
  TrackPoint marked = samplePoint();
  marked.s = 2, marked.m = 1;
  const std::string place = R"(<p x="11.516667" y="48.117300" z="545.000000")";
  EXPECT_EQ(pointText(samplePoint(), none), place + "/>");
  EXPECT_EQ(pointText(marked, none), place + R"( s="2" m="1"/>)");
  EXPECT_EQ(pointText(marked, everything()),
            place + R"( s="2" c="0" spd="41.48" time="23-03-2009 12:35:19" br="84.4" m="1"/>)");
  TrackPoint partly = samplePoint();
  partly.receiverUtc = 1237811719250;
  partly.unknown = kUnknownAltitude | kUnknownCourse;
  EXPECT_EQ(pointText(partly, none), place + R"( unknown="z"/>)");
  EXPECT_EQ(pointText(partly, everything()),
            place + R"( c="0" spd="41.48" time="23-03-2009 12:35:19" br="84.4")" +
                R"( utc="2009-03-23T12:35:19.250Z" unknown="z br"/>)");
  marked.localTime = {.hour = 12};  // a log without a date
  EXPECT_EQ(pointText(marked, everything()).find("time="), std::string::npos);
  const char* speeds[] = {"41.48", "22.40", "11.52", "25.78", "0.00"};
  for (int32_t unit = 0; unit < 5; ++unit) {
    RecordingOptions options;
    options.recordSpeed = true;
    options.speedUnit = unit;
    EXPECT_EQ(pointText(samplePoint(), options), place + " spd=\"" + speeds[unit] + "\"/>");
  }
  EXPECT_EQ(pointText(pointAt(-0.0000004, 1), none),
            R"(<p x="-0.000000" y="1.000000" z="0.000000"/>)");
  EXPECT_EQ(pointText(pointAt(179.9999996, 1), none),
            R"(<p x="180.000000" y="1.000000" z="0.000000"/>)");
  EXPECT_EQ(pointText(pointAt(1, 1, HUGE_VAL), none),
            R"(<p x="1.000000" y="1.000000" z="0.000000"/>)");
}

TEST(TrackXml, PointsWithoutAPositionAreLeftOut) {
  Track track;
  track.points.push_back(pointAt(0.001, -0.001));
  EXPECT_EQ(trackText(track, {}, {}, 0), "<t/>\r\n");
  EXPECT_EQ(trackText(track, {}, "A & <B>", 1), "\t<t n=\"A &amp; &lt;B&gt;\"/>\r\n");
  track.points.push_back(pointAt(0.00100000005, 0));
  EXPECT_EQ(trackText(track, {}, {}, 0),
            "<t>\r\n\t<p x=\"0.001000\" y=\"0.000000\" z=\"0.000000\"/>\r\n</t>\r\n");
}

// Far too many to count those that are left anew for each.
TEST(TrackXml, AnyNumberOfAttachments) {
  constexpr uint32_t kMany = 1000000;
  Track track;
  track.points.push_back(pointAt(11, 48));
  track.points.push_back(pointAt(12, 48));
  for (uint32_t i = 0; i < kMany; ++i) track.attachments.push_back({i % 2, "f"});
  const std::string text = trackText(track, {}, {}, 0);
  const size_t second = text.find("<p x=\"12");
  // The first point's go one by one from the end, those of the second stay among them.
  EXPECT_NE(text.find("<n n=\"Item 999999\" f=\"f\"/>"), std::string::npos);
  EXPECT_LT(text.find("<n n=\"Item 1\" f=\"f\"/>"), second);
  EXPECT_NE(text.find("<n n=\"Item 500000\" f=\"f\"/>", second), std::string::npos);
  EXPECT_EQ(text.find("<n n=\"Item 500001\" f=\"f\"/>", second), std::string::npos);
}

TEST(TrackXml, AttachmentsFromTheLastToTheFirst) {
  Track track;
  for (const double x : {0.0, 1.0, 2.0}) track.points.push_back(pointAt(x, 0));
  track.attachments = {{1, "a"}, {2, "b&b"}, {0, "nowhere"}, {1, "c"}};
  const std::string expected =
      "<t>\r\n"
      "\t<p x=\"1.000000\" y=\"0.000000\" z=\"0.000000\">\r\n"
      "\t\t<ass>\r\n"
      "\t\t\t<n n=\"Item 4\" f=\"c\"/>\r\n"
      "\t\t\t<n n=\"Item 1\" f=\"a\"/>\r\n"
      "\t\t</ass>\r\n"
      "\t</p>\r\n"
      "\t<p x=\"2.000000\" y=\"0.000000\" z=\"0.000000\">\r\n"
      "\t\t<ass>\r\n"
      "\t\t\t<n n=\"Item 1\" f=\"b&amp;b\"/>\r\n"  // the two before it are gone from the list
      "\t\t</ass>\r\n"
      "\t</p>\r\n"
      "</t>\r\n";
  EXPECT_EQ(trackText(track, {}, {}, 0), expected);
  dropWrittenAttachments(track);
  ASSERT_EQ(track.attachments.size(), 1U);
  EXPECT_EQ(track.attachments[0].path, "nowhere");
}

TEST(TrackXml, IsWhatTheDocumentWrites) {
  Track track;
  for (int i = 0; i < 3; ++i) track.points.push_back(samplePoint());
  setPointName(track, track.points[1], "Gate \"2\"");
  track.attachments = {{1, "photo.jpg"}, {2, "Müller's.jpg"}};
  XmlDocument document;
  XmlElement root = document.GetRootElement();
  const std::string name = libraryName(track, 3);
  EXPECT_EQ(name, "Track 3");
  root.AddElement("tracks").AddElement(trackElement(document, track, everything(), name));
  std::string text;
  ASSERT_EQ(document.saveText(text), 1);
  EXPECT_EQ(text, kDeclaration + std::string("<root>\r\n\t<tracks>\r\n") +
                      trackText(track, everything(), name, 2) + "\t</tracks>\r\n</root>\r\n");
}

class TrackFiles : public testing::Test {
 protected:
  TrackLoading load(const std::string& text) {
    std::ofstream(path_, std::ios::binary) << text;
    return loadTrackFile(path_, 0, track_);
  }
  const TestFolder testFolder_;
  const std::string folder_ = testFolder_.path();
  const std::string path_ = testFolder_ / "Ride.XML";
  const DateTime noon_ = {2010, 7, 1, 5, 12, 0, 0, 0};
  Track track_;
};

TEST_F(TrackFiles, WhateverTheDiskRefusesTheOldFileAndTheAttachmentsStay) {
  track_.points.push_back(samplePoint());
  ASSERT_TRUE(writeTrackFile(track_, path_, {}));
  const std::string old = testFolder_.read("Ride.XML");
  track_.points.push_back(samplePoint());
  track_.attachments.push_back({0, "a"});
  for (const bool full : {true, false}) {
    MemoryDisk disk;
    disk.room = full ? 50 : SIZE_MAX;
    disk.flushWorks = full;
    EXPECT_FALSE(writeTrackFile(track_, path_, {}, disk.opener()));
    EXPECT_EQ(saveTrackFile(track_, folder_, {}, noon_, disk.opener()), TrackSaving::notWritten);
    XmlDocument document;
    const XmlElement element = document.createElement("<t><p x=\"1\" y=\"2\"/></t>");
    EXPECT_EQ(importTrackFile(element, folder_, disk.opener()), TrackSaving::notWritten);
    EXPECT_TRUE(disk.files.empty());
    EXPECT_EQ(track_.attachments.size(), 1U);
  }
  EXPECT_EQ(testFolder_.names(), std::vector<std::string>{"Ride.XML"});
  EXPECT_EQ(testFolder_.read("Ride.XML"), old);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(saveTrackFile(track_, folder_, {}, noon_), TrackSaving::saved);
    EXPECT_TRUE(track_.attachments.empty());  // a second save would have none
  }
  EXPECT_EQ(track_.name, "Track05_07_2010_12_00");
  EXPECT_NE(testFolder_.read(track_.name + ".XML").find("Item 1"), std::string::npos);
  track_.attachments.push_back({0, "b"});
  EXPECT_EQ(saveTrackFile(track_, folder_, {}, noon_), TrackSaving::noFreeName);
  EXPECT_EQ(track_.attachments.size(), 1U);
}

TEST_F(TrackFiles, Imported) {
  XmlDocument document;
  const XmlElement named = document.createElement("<t n=\"A/B\"><p x=\"1\" y=\"2\"/></t>");
  const XmlElement nameless = document.createElement("<t><p x=\"1\" y=\"2\"/></t>");
  EXPECT_EQ(importTrackFile(named, folder_), TrackSaving::saved);
  EXPECT_EQ(importTrackFile(nameless, folder_), TrackSaving::saved);
  EXPECT_EQ(importTrackFile(nameless, folder_), TrackSaving::saved);
  EXPECT_EQ(testFolder_.names(),
            (std::vector<std::string>{"A_B-1.XML", "Import-1.XML", "Import-2.XML"}));
  EXPECT_EQ(testFolder_.read("A_B-1.XML"),
            kDeclaration + std::string("<t n=\"A/B\">\r\n\t<p x=\"1\" y=\"2\"/>\r\n</t>\r\n"));
  EXPECT_EQ(loadTrackFile(pathIn(folder_, "A_B-1.XML"), 0, track_), TrackLoading::whole);
  EXPECT_EQ(track_.name, "A/B");
}

TEST_F(TrackFiles, WhatWasWrittenIsReadBack) {
  Track track;
  for (uint32_t i = 0; i < 4; ++i) {
    track.points.push_back(samplePoint());
    track.points.back().s = i, track.points.back().m = i / 2, track.points.back().c = 7 * i;
    track.points.back().longitude += i;
  }
  setPointName(track, track.points[2], "<Gate>");
  track.startUtc = 1237811719000;
  track.points[2].receiverUtc = 1237811719250;
  track.points[2].unknown = kUnknownSpeed;
  track.attachments = {{1, "a"}, {1, "b"}, {3, "c"}};
  for (int32_t unit = 0; unit < 4; ++unit) {
    RecordingOptions options = everything();
    options.speedUnit = unit;
    const std::string text = kDeclaration + trackText(track, options, {}, 0);
    std::ofstream(path_, std::ios::binary) << text;
    ASSERT_EQ(loadTrackFile(path_, unit, track_), TrackLoading::whole);
    EXPECT_EQ(track_.name, "Ride");
    const TrackPoint& point = track_.points[2];
    EXPECT_EQ(point.longitude, 13.516667);
    EXPECT_EQ(point.altitude, 545);
    EXPECT_EQ(point.localTime, (DateTime{2009, 3, 0, 23, 12, 35, 19, 0}));
    EXPECT_EQ(point.utcTime, DateTime{});
    EXPECT_NEAR(point.speedMps, 11.52, 0.02);
    EXPECT_NEAR(point.speedMph, 25.78, 0.02);
    EXPECT_EQ(pointName(track_, point), "<Gate>");
    EXPECT_EQ(point.receiverUtc, 1237811719250);
    EXPECT_EQ(track_.startUtc, track.startUtc);
    EXPECT_EQ(point.unknown, kUnknownSpeed);
    std::reverse(track_.attachments.begin(), track_.attachments.end());  // of point 3, then 1
    ASSERT_EQ(track_.attachments.size(), 3U);
    EXPECT_EQ(track_.attachments[1].path, "a");
    track_.attachments = track.attachments;
    EXPECT_EQ(kDeclaration + trackText(track_, options, {}, 0), text) << unit;
  }
}

TEST_F(TrackFiles, DamagedFilesGiveTheirGoodPart) {
  const std::string p = "<p x=\"1\" y=\"2\" z=\"3\"/>";
  struct {
    const char* what;
    std::string text;
    TrackLoading result;
    size_t points;
  } const rows[] = {
      {"whole", "<t>" + p + p + "</t>", TrackLoading::whole, 2},
      {"empty track", "<t/>", TrackLoading::whole, 0},
      {"remark at the end", "<t>" + p + "</t>\n<!-- made by hand -->\n", TrackLoading::whole, 1},
      {"cut", "<t>" + p + p, TrackLoading::damaged, 2},
      {"cut in a tag", "<t>" + p + "<p x=\"1\" y=", TrackLoading::damaged, 1},
      {"no latitude", "<t>" + p + "<p x=\"1\" z=\"2\"/></t>", TrackLoading::damaged, 1},
      {"no number", "<t>" + p + "<p x=\"1;5\" y=\"2\"/></t>", TrackLoading::damaged, 1},
      {"beyond the pole", "<t>" + p + "<p x=\"1\" y=\"92\"/></t>", TrackLoading::damaged, 1},
      {"height without end", "<t>" + p + "<p x=\"1\" y=\"2\" z=\"1e999\"/></t>",
       TrackLoading::damaged, 2},
      {"bad time", "<t><p x=\"1\" y=\"2\" time=\"5-7-2010 9:3:4\"/></t>", TrackLoading::damaged, 1},
      {"no such day", "<t><p x=\"1\" y=\"2\" time=\"31-02-2026 01:00:00\"/></t>",
       TrackLoading::damaged, 1},
      {"no such hour", "<t><p x=\"1\" y=\"2\" time=\"03-02-2026 25:61:61\"/></t>",
       TrackLoading::damaged, 1},
      {"no time", "<t><p x=\"1\" y=\"2\" time=\"00-00-0000 00:00:00\"/></t>", TrackLoading::whole,
       1},
      {"a page", "<html><p>Good day</p><p>x</p></html>", TrackLoading::notATrack, 9},
      {"bad mark", "<t><p x=\"1\" y=\"2\" m=\"4294967296\"/></t>", TrackLoading::damaged, 1},
      {"another element", "<t>" + p + "<q x=\"1\" y=\"2\"/></t>", TrackLoading::damaged, 1},
      {"a point left open", "<t>" + p + "<p x=\"1\" y=\"2\">" + p + p + "</t>",
       TrackLoading::damaged, 4},
      {"the first tag gone", p + p + p + "</t>", TrackLoading::damaged, 3},
      {"another first tag", "<u>" + p + p + "</t>", TrackLoading::damaged, 2},
      {"declaration as a tag", "<xml version=\"1.0\"?>\r\n<t>" + p + p + "</t>",
       TrackLoading::damaged, 2},
      {"nowhere", "<t><p x=\"0\" y=\"0\"/>" + p + "</t>", TrackLoading::whole, 1},
      {"a library", "<root><tracks><t n=\"A\">" + p + "</t></tracks></root>",
       TrackLoading::notATrack, 9},
      {"other XML", "<gpx/>", TrackLoading::notATrack, 9},
      {"no XML", "once upon a time", TrackLoading::notATrack, 9},
      {"empty", "", TrackLoading::notATrack, 9},
  };
  for (const auto& row : rows) {
    track_.points.clear();
    for (int i = 0; i < 9; ++i) track_.points.push_back(samplePoint());
    EXPECT_EQ(load(row.text), row.result) << row.what;
    EXPECT_EQ(track_.points.size(), row.points) << row.what;
  }
  EXPECT_EQ(loadTrackFile(pathIn(folder_, "none"), 0, track_), TrackLoading::noFile);
  EXPECT_EQ(loadTrackFile(folder_, 0, track_) == TrackLoading::whole, false);
}

TEST_F(TrackFiles, CutAnywhereEachWholePositionIsThere) {
  Track track;
  for (int i = 0; i < 4; ++i) track.points.push_back(samplePoint());
  track.attachments = {{1, "photo"}};
  const std::string text = kDeclaration + trackText(track, everything(), {}, 0);
  for (size_t size = text.find("<t>") + 3; size < text.size() - 2; size += 3) {
    size_t whole = 0;
    const std::string part = text.substr(0, size);
    for (size_t at = part.find("y=\""); at != std::string::npos; at = part.find("y=\"", at + 1)) {
      whole += part.find('"', at + 3) != std::string::npos;  // its position, if not all of it
    }
    EXPECT_EQ(load(part), TrackLoading::damaged) << size;
    EXPECT_EQ(track_.points.size(), whole) << size;
  }
}

}  // namespace
}  // namespace vgps
