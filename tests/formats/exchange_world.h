#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formats/exports.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/test_folder.h"
#include "tests/library/library_world.h"
#include "tests/places.h"

namespace vgps {

// A user who gives the prepared answers; records what was asked and shown.
class ToldHooks : public ExchangeHooks {
 public:
  Answer ask(const std::string& question, bool) override {
    said.push_back(question);
    return answers.empty() ? answer
                           : std::exchange(answers, {answers.begin() + 1, answers.end()})[0];
  }
  std::vector<size_t> choose(std::string_view caption, std::string_view column,
                             const std::vector<std::string>& names) override {
    said.push_back(std::string(caption) + " [" + std::string(column) + "]");
    offered = names;
    return chosen;
  }
  void tell(const std::string& message) override { said.push_back(message); }
  void openDocument(const std::string& path) override { opened.push_back(path); }

  Answer answer = Answer::yes;
  std::vector<Answer> answers;  // used before `answer`
  std::vector<size_t> chosen;
  std::vector<std::string> said, offered, opened;
};

inline std::string expectedFile(const std::string& name) {
  return fileBytes(std::string(sourceFolder()) + "/tests/answers/exchange/" + name);
}

// Two points of a ride with one without a position between them; the clock is two hours east.
class ExchangeWorld : public testing::Test {
 protected:
  ExchangeWorld() {
    clock.utcNow = {.year = 2010, .month = 12, .day = 24, .hour = 10};
    clock.localNow = {.year = 2010, .month = 12, .day = 24, .hour = 12};
    TrackPoint first;
    first.longitude = 11.516666666666667;
    first.latitude = 48.117300001780194;
    first.altitude = 545;
    first.localTime = {.year = 2010, .month = 7, .day = 15, .hour = 12};
    first.speedKmh = 41.48;
    first.course = 84.4;
    TrackPoint nowhere;
    nowhere.longitude = 0.0005;
    TrackPoint last;
    last.longitude = -122.084075;
    last.latitude = -0.0000004;
    last.altitude = -3.25;
    last.utcTime = {.year = 2010, .month = 7, .day = 15, .hour = 10, .minute = 1, .millisecond = 7};
    ride.name = "A & B";
    ride.points = {first, nowhere, last};
    waypoints.open(folder / "waypoints.xml");
    tracks.open(folder / "tracks.xml");
  }

  // Two waypoints and two tracks in the libraries.
  void fillLibraries() {
    EXPECT_EQ(waypoints.add(Waypoint{"Camp \"1\"", 11.516667, 48.1173, 545}), LibraryResult::done);
    EXPECT_EQ(waypoints.add(Waypoint{"", 179.9999996, -48.5, 0}), LibraryResult::done);
    EXPECT_EQ(tracks.add(ride, {.recordTime = true}, {}), LibraryResult::done);
    Track empty;
    empty.name = "Empty";
    EXPECT_EQ(tracks.add(empty, {}, {}), LibraryResult::done);
  }

  ExportPlace place() const {
    return {.clock = clock, .open = openExclusive, .temporaryFolder = folder.path()};
  }

  TestFolder folder;
  FakeClock clock;
  Track ride;
  WaypointLibrary waypoints;
  TrackLibrary tracks;
  ToldHooks hooks;
};

}  // namespace vgps
