#include "library/waypoint_library.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/library/library_world.h"

namespace vgps {
namespace {

// "Home | Huts: Camp, Peak": waypoints in the order of the list, by category.
std::string listOf(const WaypointLibrary& library) {
  std::string text;
  size_t last = kNoCategory - 1;
  for (const StoredWaypoint& stored : library.waypoints()) {
    const bool same = stored.category == last;
    if (!text.empty()) text += same ? ", " : " | ";
    if (!same && stored.category != kNoCategory) {
      text += library.categories()[stored.category] + ": ";
    }
    text += stored.waypoint.name;
    last = stored.category;
  }
  return text;
}

class Waypoints : public testing::Test {
 protected:
  LibraryState openWith(std::string_view bytes) {
    putFile(path_, bytes);
    return library_.open(path_);
  }
  std::string listOnDisk(LibraryState state = LibraryState::whole) {
    WaypointLibrary other;
    EXPECT_EQ(other.open(path_), state);
    return listOf(other);
  }

  TestFolder folder_;
  const std::string path_ = folder_ / "waypoints.xml";
  const std::string bad_ = folder_ / "waypoints.bad";
  WaypointLibrary library_;
};

TEST_F(Waypoints, TheDocument) {
  EXPECT_EQ(library_.open(path_), LibraryState::missing);
  ASSERT_EQ(library_.addCategory("Huts & more"), LibraryResult::done);
  ASSERT_EQ(
      library_.add({.name = "Camp \"1\"", .x = 11.516666666666667, .y = -48.1173, .z = 545}, 0),
      LibraryResult::done);
  ASSERT_EQ(library_.add({.name = "Home", .x = 1, .y = 2, .z = 1e300}), LibraryResult::done);
  EXPECT_EQ(
      fileBytes(path_),
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n"
      "<root>\r\n"
      "\t<waypoints>\r\n"
      "\t\t<c n=\"Huts &amp; more\">\r\n"
      "\t\t\t<w n=\"Camp &quot;1&quot;\" x=\"11.516667\" y=\"-48.117300\" z=\"545.000000\"/>\r\n"
      "\t\t</c>\r\n"
      "\t\t<w n=\"Home\" x=\"1.000000\" y=\"2.000000\" z=\"0.000000\"/>\r\n"
      "\t</waypoints>\r\n"
      "</root>\r\n");
  EXPECT_EQ(listOnDisk(), "Huts & more: Camp \"1\" | Home");
}

const char* const kSample =
    "<root><keep/><waypoints><w n=\"Home\" x=\"1\" y=\"2\" z=\"3\" mine=\"yes\"/>"
    "<c n=\"Huts\"><w n=\"Camp\" x=\"1\" y=\"2\"/><w n=\"Peak\" x=\"1\" y=\"2\" z=\"9\"/></c>"
    "<c n=\"None\"/></waypoints></root>";

TEST_F(Waypoints, Changes) {
  using Library = WaypointLibrary;
  struct Row {
    const char* what;
    std::function<LibraryResult(Library&)> change;
    LibraryResult result;
    const char* after;
  };
  const Waypoint lake{.name = "Lake", .x = 5, .y = 6, .z = 7};
  const auto done = LibraryResult::done;
  const auto notFound = LibraryResult::notFound;
  const StoredWaypoint two[] = {{lake, 1}, {lake, kNoCategory}};
  const StoredWaypoint wrong[] = {{lake, 1}, {lake, 7}};
  const char* const same = "Home | Huts: Camp, Peak";
  const Row rows[] = {
      {"add", [&](Library& l) { return l.add(lake); }, done, "Home | Huts: Camp, Peak | Lake"},
      {"add to", [&](Library& l) { return l.add(lake, 0); }, done, "Home | Huts: Camp, Peak, Lake"},
      {"add to none", [&](Library& l) { return l.add(lake, 2); }, notFound, same},
      {"add two", [&](Library& l) { return l.add(two); }, done,
       "Home | Huts: Camp, Peak | None: Lake | Lake"},
      {"all or none", [&](Library& l) { return l.add(wrong); }, notFound, same},
      {"edit", [&](Library& l) { return l.edit(1, lake); }, done, "Home | Huts: Lake, Peak"},
      {"edit none", [&](Library& l) { return l.edit(3, lake); }, notFound, same},
      {"remove", [](Library& l) { return l.remove(0); }, done, "Huts: Camp, Peak"},
      {"move in", [](Library& l) { return l.move(0, 0); }, done, "Huts: Camp, Peak, Home"},
      {"move out", [](Library& l) { return l.move(1, kNoCategory); }, done,
       "Home | Huts: Peak | Camp"},
      {"move nowhere", [](Library& l) { return l.move(1, 2); }, notFound, same},
      {"rename", [](Library& l) { return l.renameCategory(0, "A"); }, done, "Home | A: Camp, Peak"},
      {"no name", [](Library& l) { return l.renameCategory(0, ""); }, LibraryResult::noName, same},
      {"dissolve", [](Library& l) { return l.removeCategory(0, false); }, done, "Home, Camp, Peak"},
      {"remove all of", [](Library& l) { return l.removeCategory(0, true); }, done, "Home"},
      {"remove none", [](Library& l) { return l.removeCategory(2, true); }, notFound, same},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    ASSERT_EQ(openWith(kSample), LibraryState::whole);
    EXPECT_EQ(row.change(library_), row.result);
    EXPECT_EQ(listOf(library_), row.after);
    EXPECT_EQ(listOnDisk(), row.after);
    if (row.result == done) {  // what is not ours stays
      EXPECT_NE(fileBytes(path_).find("<keep/>"), std::string::npos);
    }
  }
}

TEST_F(Waypoints, EditingKeepsForeignAttributes) {
  openWith(kSample);
  ASSERT_EQ(library_.edit(0, {.name = "Hut", .x = 5, .y = 6, .z = 7}), LibraryResult::done);
  EXPECT_NE(fileBytes(path_).find("<w n=\"Hut\" x=\"5.000000\" y=\"6.000000\" z=\"7.000000\" "
                                  "mine=\"yes\"/>"),
            std::string::npos);
}

TEST_F(Waypoints, DamagedDocumentsAreKept) {
  struct Row {
    const char* what;
    std::string bytes;
    const char* tracks;  // read of it
    const char* after;   // one was added to a whole document again
  };
  const std::string camp = "<w n=\"Camp\" x=\"1\" y=\"2\" z=\"3\"/>";
  const Row rows[] = {
      {"noise", "\x01 noise", "", "New"},
      {"cut", "<root><waypoints>" + camp + "<w n=\"Pe", "Camp", "Camp, New"},
      {"no number", "<root><waypoints>" + camp + "<w n=\"B\" x=\"1a\" y=\"2\"/></waypoints></root>",
       "Camp", "Camp, New"},
      {"no end", "<root><waypoints><w n=\"A\" x=\"1\" y=\"2\">" + camp + "</waypoints></root>",
       "A, Camp", "A, Camp, New"},
      {"a category's end lost",
       "<root><waypoints><w n=\"A\" x=\"1\" y=\"2\"/><c n=\"Huts\">" + camp, "A | Huts: Camp",
       "Huts: Camp | A, New"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    for (const std::string& name : folder_.names()) removeFile(folder_ / name);
    library_ = WaypointLibrary();
    EXPECT_EQ(openWith(row.bytes), LibraryState::damaged);
    EXPECT_EQ(listOf(library_), row.tracks);
    EXPECT_FALSE(fileExists(bad_));
    EXPECT_EQ(library_.add({.name = "New", .x = 1, .y = 2, .z = 3}), LibraryResult::done);
    EXPECT_EQ(listOnDisk(), row.after);
    EXPECT_EQ(fileBytes(bad_), row.bytes);
    EXPECT_EQ(library_.backupPath(), bad_);
  }
  EXPECT_EQ(openWith("<gpx/>"), LibraryState::notALibrary);
  EXPECT_EQ(library_.remove(0), LibraryResult::notALibrary);
  EXPECT_EQ(fileBytes(path_), "<gpx/>");
}

// In a damaged document numbers mean what the list showed.
TEST_F(Waypoints, ChangesToADamagedDocumentMeetTheRightOne) {
  openWith(
      "<root><waypoints><w n=\"A\" x=\"1\" y=\"2\"/><c n=\"Huts\"><w n=\"B\" x=\"1\" y=\"2\"/>");
  ASSERT_EQ(library_.remove(0), LibraryResult::done);
  EXPECT_EQ(listOnDisk(), "Huts: B");
}

TEST_F(Waypoints, NoStepOfAChangeLosesThem) {
  bool finished = false;
  for (int steps = 0; !finished && steps < 40; ++steps) {
    SCOPED_TRACE(steps);
    openWith(kSample);
    const DyingDisk dying(steps);
    WaypointLibrary library(dying.disk());
    library.open(path_);
    const LibraryResult result = library.remove(0);
    finished = !dying.isDead();
    const char* const expected =
        result == LibraryResult::done ? "Huts: Camp, Peak" : "Home | Huts: Camp, Peak";
    EXPECT_EQ(listOf(library), expected);
    EXPECT_EQ(listOnDisk(), expected);
  }
  EXPECT_TRUE(finished);
}

TEST_F(Waypoints, AChangeThatFailedIsNotWrittenWithTheNext) {
  openWith(kSample);
  bool isFull = true;
  WaypointLibrary library(
      {.open = [&](const std::string& path, OpenMode mode, FileOpening& opening) {
        opening = FileOpening::refused;
        return isFull && mode == OpenMode::createNew ? nullptr : openExclusive(path, mode, opening);
      }});
  library.open(path_);
  EXPECT_EQ(library.remove(0), LibraryResult::notWritten);
  isFull = false;
  EXPECT_EQ(library.remove(1), LibraryResult::done);
  EXPECT_EQ(listOnDisk(), "Home | Huts: Peak");
}

TEST_F(Waypoints, AnotherProgramsChangeIsNotWrittenOver) {
  openWith(kSample);
  WaypointLibrary other;
  other.open(path_);
  ASSERT_EQ(other.remove(0), LibraryResult::done);
  EXPECT_EQ(library_.remove(0), LibraryResult::changed);
  EXPECT_EQ(listOf(library_), "Huts: Camp, Peak");
  EXPECT_EQ(library_.remove(0), LibraryResult::done);
  EXPECT_EQ(library_.add({.name = "New", .x = 1, .y = 2, .z = 3}), LibraryResult::done);
  EXPECT_EQ(other.add({.name = "Newer", .x = 1, .y = 2, .z = 3}), LibraryResult::done);
  EXPECT_EQ(listOf(other), "Huts: Peak | New, Newer");
  EXPECT_EQ(other.remove(0), LibraryResult::done);
  EXPECT_EQ(library_.refresh(), LibraryState::whole);
  EXPECT_EQ(listOf(library_), "New, Newer");
}

}  // namespace
}  // namespace vgps
