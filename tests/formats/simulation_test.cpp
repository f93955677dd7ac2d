#include "formats/simulation.h"

#include <gtest/gtest.h>

#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

TEST(SimulationFile, CourseAndSpeedComeFromTheWayWhereTheFileHasNone) {
  const TestFolder folder;
  const auto gpx = [&](const std::string& more) {
    folder.write("a.gpx", "<gpx><trk><trkseg><trkpt lat='48' lon='11'><ele>500</ele>" + more +
                              "<time>2026-07-15T10:00:00Z</time></trkpt><trkpt lat='48.01' "
                              "lon='11'><time>2026-07-15T10:01:40Z</time></trkpt></trkseg></trk>"
                              "</gpx>");
    std::vector<std::string> lines;
    EXPECT_TRUE(simulationFromFile(folder / "a.gpx", 0, lines));
    return lines.size() == 3 ? lines[1] : "";
  };
  // 1.112 km in 100 s.
  const std::string start = "$GPRMCX,100000.000,A,11.000000,48.000000,500.000000,";
  EXPECT_TRUE(gpx("").starts_with(start + "0.000000,40.0")) << gpx("");
  const std::string known = gpx("<course>90</course><speed>10</speed>");
  EXPECT_TRUE(known.starts_with(start + "90.000000,36.0")) << known;
  std::vector<std::string> lines;
  EXPECT_FALSE(simulationFromFile(folder / "none.gpx", 0, lines));
}

}  // namespace
}  // namespace vgps
