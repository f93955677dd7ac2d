#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/child.h"
#include "files/whole_file.h"
#include "formats/gpx.h"

// Converting a million points as whole programs, each beside what the system's packages have.
namespace vgps {
namespace {

constexpr size_t kMillion = 1000000;
constexpr int kRounds = 3;

Track walk() {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> step(-1e-4, 1e-4);
  Track track;
  track.name = "A million points";
  TrackPoint point;
  point.longitude = 11.5;
  point.latitude = 48.1;
  for (size_t i = 0; i < kMillion; ++i) {
    point.longitude += step(random);
    point.latitude += step(random);
    point.altitude = 500 + static_cast<double>(i % 100);
    point.utcTime = dateTimeOf(1279188000 + static_cast<int64_t>(i));
    point.speedKmh = static_cast<double>(i % 300) / 10;
    point.course = static_cast<double>(i % 3600) / 10;
    track.points.push_back(point);
  }
  return track;
}

bool writeSource(const std::string& path) {
  const Track track = walk();
  OutputFile file(path);
  XmlText xml([&](std::string_view bytes) { return file.write(bytes); });
  xml.declaration();
  writeGpxRoot(xml);
  writeGpxTrack(xml, track, 1, true, 0);
  xml.close();
  return xml.finish() && file.finish();
}

struct Rival {
  const char* name;
  std::vector<std::string> words;
};

// The fastest of some rounds; the rivals in turns. The first one is ours.
void race(const char* title, const std::vector<Rival>& rivals) {
  std::printf("%s\n%-28s %10s %10s %10s\n", title, "", "seconds", "MB", "ours is");
  std::vector<ChildRun> best(rivals.size());
  for (int round = 0; round < kRounds; ++round) {
    for (size_t i = 0; i < rivals.size(); ++i) {
      const ChildRun run = runChild(rivals[i].words);
      if (!run.succeeded) continue;
      if (!best[i].succeeded || run.seconds < best[i].seconds) best[i] = run;
    }
  }
  for (size_t i = 0; i < rivals.size(); ++i) {
    if (!best[i].succeeded) {
      std::printf("%-28s not measured: it is not installed, or it failed\n", rivals[i].name);
      continue;
    }
    std::printf("%-28s %10.2f %10.0f %9.1fx\n", rivals[i].name, best[i].seconds, best[i].megabytes,
                best[i].seconds / best[0].seconds);
  }
  std::printf("\n");
}

}  // namespace
}  // namespace vgps

int main(int argc, char** argv) {
  using namespace vgps;
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_formats VGPS\n");
    return 2;
  }
  const std::string program = argv[1];
  if (!writeSource("million.gpx")) return 1;
  race("GPX to KML",
       {{"vgps", {program, "convert", "million.gpx", "-o", "ours.kml"}},
        {"gpsbabel",
         {"gpsbabel", "-t", "-i", "gpx", "-f", "million.gpx", "-o", "kml", "-F", "theirs.kml"}},
        {"ogr2ogr (LIBKML)",
         {"ogr2ogr", "-f", "LIBKML", "-overwrite", "ogr.kml", "million.gpx", "tracks"}}});
  race("GPX to GPX 1.0, seven items a point",
       {{"vgps", {program, "convert", "million.gpx", "--gpx", "1.0", "-o", "ours.gpx"}},
        {"gpsbabel",
         {"gpsbabel", "-t", "-i", "gpx", "-f", "million.gpx", "-o", "gpx,gpxver=1.0", "-F",
          "theirs.gpx"}}});
  race("KML to KMZ", {{"vgps", {program, "convert", "ours.kml", "-o", "ours.kmz"}},
                      {"zip", {"zip", "-q", "theirs.kmz", "ours.kml"}}});
  for (const char* name : {"million.gpx", "ours.kml", "theirs.kml", "ogr.kml", "ours.gpx",
                           "theirs.gpx", "ours.kmz", "theirs.kmz"}) {
    std::remove(name);
  }
  return 0;
}
