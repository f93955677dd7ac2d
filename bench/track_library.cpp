#include "bench/track_library.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>

#include "files/input_file.h"
#include "files/whole_file.h"
#include "library/track_library.h"
#include "platform/files.h"
#include "track/track_xml.h"

namespace vgps {
namespace {

constexpr int kTracks = 1000;
constexpr int kPoints = 5000;  // of each
constexpr const char* kPath = "bench_tracks.xml";
constexpr const char* kIndexPath = "bench_tracks.index";

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The most memory that this process has had so far, in MB; 0 where the system does not say.
double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}

Track makeTrack(int number) {
  Track track;
  for (int i = 0; i < kPoints; ++i) {
    TrackPoint point;
    point.longitude = 11 + number * 1e-3 + std::sin(i * 0.01) * 0.1;
    point.latitude = 48 + i * 1e-5;
    point.altitude = 500 + std::cos(i * 0.02) * 50;
    point.localTime = {.year = 2010,
                       .month = 7,
                       .day = static_cast<uint16_t>(1 + number % 28),
                       .hour = static_cast<uint16_t>(i / 3600),
                       .minute = static_cast<uint16_t>(i / 60 % 60),
                       .second = static_cast<uint16_t>(i % 60)};
    point.speedKmh = 20;
    point.course = i % 360;
    track.points.push_back(point);
  }
  return track;
}

bool makeDocument(const RecordingOptions& options) {
  OutputFile out(kPath, openExclusive);
  out.write(std::string(kXmlDeclaration) + "\r\n<root>\r\n\t<tracks>\r\n");
  for (int i = 0; i < kTracks; ++i) {
    out.write(trackText(makeTrack(i), options, "Track " + std::to_string(i + 1), 2));
  }
  out.write("\t</tracks>\r\n</root>\r\n");
  return out.finish();
}

void row(const char* what, double seconds) { std::printf("  %-44s %10.4f\n", what, seconds); }

double openSeconds(TrackLibrary& library) {
  return secondsOf([&] { library.open(kPath); });
}

}  // namespace

void measureLibrary() {
  RecordingOptions options;
  options.recordTime = options.recordSpeed = options.recordCourse = true;
  if (!makeDocument(options)) {
    std::printf("Library: no room for it on this disk\n");
    return;
  }
  removeFile(kIndexPath);
  FileStamp stamp;
  fileStamp(kPath, stamp);
  std::printf("Library of %d tracks with %d points, %.0f MB (s)\n", kTracks, kTracks * kPoints,
              static_cast<double>(stamp.size) / 1e6);
  InputFile plain(kPath);
  row("its bytes read once, for comparison",
      secondsOf([&] { plain.copy(0, stamp.size, [](std::string_view) { return true; }); }));
  TrackLibrary library;
  row("listing it the first time", openSeconds(library));
  double least = HUGE_VAL;
  for (int round = 0; round < 5; ++round) {
    TrackLibrary again;
    least = std::min(least, openSeconds(again));
    if (again.tracks().size() != kTracks || again.tracks()[7].points != kPoints) {
      std::printf("  not all tracks were listed\n");
    }
  }
  row("listing it by its index", least);
  Track track;
  row("loading one track", secondsOf([&] { library.load(kTracks / 2, 0, track); }));
  const double before = peakMegabytes();
  row("adding one", secondsOf([&] { library.add(track, options, {}); }));
  row("renaming one", secondsOf([&] { library.rename(3, "Other"); }));
  row("taking it back", secondsOf([&] { library.undo(); }));
  row("deleting one", secondsOf([&] { library.remove(3); }));
  if (library.tracks().size() != kTracks) std::printf("  not all changes were made\n");
  std::printf("  %-44s %10.0f\n", "more memory for these changes, MB", peakMegabytes() - before);
  removeFile(kPath);
  removeFile(kIndexPath);
}

}  // namespace vgps
