#include <gtest/gtest.h>

#include <sstream>

#include "base/number.h"
#include "base/text.h"
#include "formats/collection.h"
#include "formats/reading.h"
#include "tests/formats/exchange_world.h"
#include "tests/xml/shared_data.h"

// Files of many programs. What is in them was counted apart from this program; in a line of KML
// coordinates what is not a number is no point, and nothing lies at 200 or 3000 degrees.
namespace vgps {
namespace {

std::string placeText(const CollectedPoint* point) {
  if (point == nullptr) return "-";
  return fixedText(point->latitude, 6) + "," + fixedText(point->longitude, 6);
}

// "waypoints tracks routes", each as "number/points first last".
std::string countsOf(const ExchangeCollection& file) {
  std::ostringstream out;
  const CollectedPoint* first = file.waypoints.empty() ? nullptr : &file.waypoints[0].point;
  const CollectedPoint* last = file.waypoints.empty() ? nullptr : &file.waypoints.back().point;
  out << "1/" << file.waypoints.size() << ' ' << placeText(first) << ' ' << placeText(last);
  for (const PathKind kind : {PathKind::track, PathKind::route}) {
    size_t paths = 0;
    size_t points = 0;
    first = last = nullptr;
    for (const CollectedPath& path : file.paths) {
      if (path.kind != kind) continue;
      ++paths;
      for (const CollectedSegment& segment : path.segments) {
        points += segment.points.size();
        if (segment.points.empty()) continue;
        last = &segment.points.back();
        if (first == nullptr) first = &segment.points[0];
      }
    }
    out << ' ' << paths << '/' << points << ' ' << placeText(first) << ' ' << placeText(last);
  }
  return out.str();
}

class ForeignFormats : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(sharedData())) GTEST_SKIP() << sharedData() << " is not there";
  }
  static ReadingNotes read(const std::string& name, ExchangeCollection& file) {
    return readExchangeFile((sharedData() / name).string(), file);
  }
};

TEST_F(ForeignFormats, HoldWhatWasCountedInThem) {
  std::istringstream expected(expectedFile("foreign.txt"));
  size_t files = 0;
  for (std::string line; std::getline(expected, line); ++files) {
    const std::string name = line.substr(0, line.find(' '));
    ExchangeCollection file;
    const ReadingNotes notes = read(name, file);
    EXPECT_EQ(name + " " + countsOf(file), line);
    EXPECT_TRUE(notes.end == ReadingEnd::whole || notes.end == ReadingEnd::damaged) << name;
  }
  EXPECT_EQ(files, 42U);
}

TEST_F(ForeignFormats, DamageIsToldWithItsPlace) {
  ExchangeCollection file;
  const ReadingNotes notes = read("gpx/not-well-formed.gpx", file);
  EXPECT_EQ(notes.end, ReadingEnd::damaged);
  EXPECT_EQ(notes.damage, XmlDamage::wrongClosing);
  EXPECT_EQ(notes.damagePlace.line, 39U);
  EXPECT_EQ(countsOf(file),
            "1/1 48.203347,16.360805 48.203347,16.360805 1/2 48.199493,16.403774 "
            "48.199484,16.403710 0/0 - -");
}

TEST_F(ForeignFormats, LettersOfEveryEncoding) {
  const struct {
    const char *file, *waypoint;
  } kNames[] = {{"gpx/unicode-names.gpx", "šđčćž"},
                {"gpx/bom-noencoding.gpx", "bom noencoding ő"},
                {"gpx/spb-metro-cyrillic.gpx", "О справочнике Санкт-Петербург Метро - 2016.05"},
                {"loc/groundspeak-crlf.loc", "GC1BKP3"}};
  for (const auto& row : kNames) {
    ExchangeCollection file;
    read(row.file, file);
    ASSERT_FALSE(file.waypoints.empty());
    EXPECT_EQ(file.nameOf(file.waypoints[0].point), row.waypoint);
  }
  ExchangeCollection file;
  read("gpx/cdata-track-name.gpx", file);
  EXPECT_EQ(file.paths[0].name, "test™");
}

TEST_F(ForeignFormats, Archives) {
  const struct {
    const char* file;
    ReadingEnd end;
    const char* root;
  } kRows[] = {{"kmz/small_world.kmz", ReadingEnd::whole, "kml"},
               {"kmz/two-documents.kmz", ReadingEnd::whole, "Placemark"},
               {"kmz/no-kml.kmz", ReadingEnd::noKml, ""}};
  for (const auto& row : kRows) {
    ExchangeCollection file;
    const ReadingNotes notes = read(row.file, file);
    EXPECT_EQ(notes.end, row.end) << row.file;
    EXPECT_EQ(notes.root, row.root) << row.file;
  }
}

// The walk without a tree finds what the tree holds.
class SameWalk {
 public:
  explicit SameWalk(const std::string& text)
      : pull_([rest = std::string_view(text)](char* to, size_t size) mutable {
          const size_t count = rest.copy(to, std::min<size_t>(size, 1000));
          rest.remove_prefix(count);
          return count;
        }) {}

  bool of(XmlElement root) {
    if (!pull_.nextChild(0)) return false;
    const std::string_view name = root.storedName();
    prefix_ = name.substr(0, name.rfind(':') + 1);
    return element(root);
  }

 private:
  bool element(XmlElement expected) {
    const std::string whole = expected.GetElementName();
    std::string_view name = whole;
    if (!prefix_.empty() && name.starts_with(prefix_)) name.remove_prefix(prefix_.size());
    EXPECT_EQ(pull_.name(), name);
    for (size_t i = 0; i < expected.GetVariableNum(); ++i) {
      const std::string attribute = expected.GetVariable(i).GetName();
      const std::string value = expected.FindAttribute(attribute).GetValue();
      const auto found = pull_.attribute(expected.GetVariable(i).storedName());
      EXPECT_TRUE(found.has_value()) << attribute;
      if (found && validUtf8(value) == value) {
        EXPECT_EQ(*found, value);
      }
    }
    if (testing::Test::HasFailure()) return false;
    if (expected.GetChildrenNum() == 0) {
      const std::string text = expected.GetText();
      const std::string_view found = pull_.text();
      if (validUtf8(text) == text && pull_.damage() == XmlDamage::none) {
        EXPECT_EQ(found, text);
      }
      return !testing::Test::HasFailure();
    }
    const uint32_t level = pull_.level();
    for (const XmlElement child : expected.GetChildren()) {
      if (!pull_.nextChild(level) || !element(child)) return false;
    }
    EXPECT_FALSE(pull_.nextChild(level));
    return !testing::Test::HasFailure();
  }

  XmlPull pull_;
  std::string prefix_;
};

TEST_F(ForeignFormats, AreWalkedAsTheTreeReadsThem) {
  for (const auto& path : sharedFiles({"gpx", "kml", "loc", "xml"})) {
    SCOPED_TRACE(path.filename().string());
    const std::string text = fileBytes(path.string());
    XmlDocument document;
    if (!document.Load(text, XmlLoadMode::text, {.lenient = true})) continue;
    XmlPull whole([&, rest = std::string_view(text)](char* to, size_t size) mutable {
      const size_t count = rest.copy(to, size);
      rest.remove_prefix(count);
      return count;
    });
    while (whole.nextChild(whole.level())) {
    }
    // The test's own walk takes a piece of the stack for each level.
    if (path.filename().string().starts_with("tx-deep")) continue;
    const bool same = SameWalk(text).of(document.GetRootElement());
    EXPECT_TRUE(same || whole.damage() != XmlDamage::none);
  }
}

}  // namespace
}  // namespace vgps
