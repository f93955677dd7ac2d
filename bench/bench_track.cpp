#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "bench/track_library.h"
#include "geo/distance.h"
#include "geo/ellipsoids.h"
#include "geo/utm.h"
#include "library/journal_format.h"
#include "platform/files.h"
#include "track/recording.h"
#include "track/track_file.h"
#include "track/track_xml.h"
#include "track/whole_file.h"
#if VEXA_HAVE_PROJ
#include <proj.h>
#endif

// Recording, track files and the geodesy under them, each beside a reference.

namespace {
size_t allocations = 0;
size_t allocatedBytes = 0;
}  // namespace

void* operator new(size_t size) {
  ++allocations;
  allocatedBytes += size;
  if (void* block = std::malloc(size)) return block;
  std::abort();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }

namespace vgps {
namespace {

constexpr int kRounds = 15;
constexpr size_t kPositions = 1 << 16;
constexpr size_t kMillion = 1000000;

volatile double sink = 0;  // keeps results from being optimised away

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Of equal work the fastest round was disturbed least.
double least(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

struct Contestant {
  const char* name;
  std::function<void()> work;  // once over all positions
  std::vector<double> nanoseconds;
};

// In turns, so that a busy moment of the machine meets all of them. The first is the reference.
void race(const char* title, std::vector<Contestant> contestants, size_t times) {
  for (Contestant& contestant : contestants) contestant.work();
  for (int round = 0; round < kRounds; ++round) {
    for (Contestant& contestant : contestants) {
      contestant.nanoseconds.push_back(secondsOf(contestant.work) * 1e9 /
                                       static_cast<double>(times));
    }
  }
  std::printf("%s\n%-44s %10s %10s\n", title, "", "ns each", "speed");
  const double reference = least(contestants.front().nanoseconds);
  for (const Contestant& contestant : contestants) {
    const double spent = least(contestant.nanoseconds);
    std::printf("  %-42s %10.1f %9.2fx\n", contestant.name, spent, reference / spent);
  }
}

// A walk in zone 32 with a new course and height at each step.
std::vector<FixRecord> makeWalk(size_t count) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> step(-1e-4, 1e-4);
  std::vector<FixRecord> fixes(count);
  FixRecord fix;
  fix.fixStatus = 1;
  fix.longitude = 9.5;
  fix.latitude = 48.1;
  fix.altitude = 500;
  for (FixRecord& at : fixes) {
    fix.longitude = std::clamp(fix.longitude + step(random), 6.1, 11.9);
    fix.latitude = std::clamp(fix.latitude + step(random), -70.0, 55.0);
    fix.altitude += step(random) * 1e5;
    fix.course = 180 + step(random) * 1.79e6;
    fix.speedKmh = 30 + step(random) * 1e5;
    fix.speedMps = fix.speedKmh / 3.6;
    fix.speedKnots = fix.speedKmh / 1.852;
    fix.speedMph = fix.speedKmh / 1.609;
    at = fix;
  }
  return fixes;
}

// The formula as a book has it, in double precision and without units.
double plainDistance(const FixRecord& a, const FixRecord& b) {
  constexpr double kRadians = 3.14159265358979323846 / 180;
  const double phi1 = a.latitude * kRadians;
  const double phi2 = b.latitude * kRadians;
  const double sinPhi = std::sin((phi2 - phi1) / 2);
  const double sinLambda = std::sin((b.longitude - a.longitude) * kRadians / 2);
  const double h = sinPhi * sinPhi + std::cos(phi1) * std::cos(phi2) * sinLambda * sinLambda;
  return 2 * kEarthRadiusKm * std::atan2(std::sqrt(h), std::sqrt(1 - h));
}

double ourDistance(const FixRecord& a, const FixRecord& b) {
  return surfaceDistance(static_cast<float>(a.longitude), static_cast<float>(a.latitude),
                         static_cast<float>(b.longitude), static_cast<float>(b.latitude), 0, 0);
}

template <class Distance>
void walk(const std::vector<FixRecord>& fixes, Distance distance) {
  double sum = 0;
  for (size_t i = 1; i < fixes.size(); ++i) sum += distance(fixes[i - 1], fixes[i]);
  sink = sum;
}

void raceDistance(const std::vector<FixRecord>& fixes) {
  race("Surface distance",
       {{"plain loop of the formula", [&] { walk(fixes, plainDistance); }, {}},
        {"surfaceDistance", [&] { walk(fixes, ourDistance); }, {}}},
       fixes.size());
}

#if VEXA_HAVE_PROJ
class ProjGrid {
 public:
  explicit ProjGrid(const char* definition)
      : context_(proj_context_create()), grid_(proj_create(context_, definition)) {}
  ProjGrid(const ProjGrid&) = delete;
  ProjGrid& operator=(const ProjGrid&) = delete;
  ~ProjGrid() {
    proj_destroy(grid_);
    proj_context_destroy(context_);
  }
  PJ_XY of(const FixRecord& fix) const {
    const PJ_COORD at = proj_coord(proj_torad(fix.longitude), proj_torad(fix.latitude), 0, 0);
    return proj_trans(grid_, PJ_FWD, at).xy;
  }

 private:
  PJ_CONTEXT* context_;
  PJ* grid_;
};
#endif

void raceGrid(const std::vector<FixRecord>& fixes) {
  const auto ours = [&] {
    double sum = 0;
    for (const FixRecord& fix : fixes) {
      const UtmPosition at = utmFromDegrees(kWgs84, fix.latitude, fix.longitude);
      sum += at.easting + at.northing;
    }
    sink = sum;
  };
#if VEXA_HAVE_PROJ
  const ProjGrid grid("+proj=utm +zone=32 +ellps=WGS84 +approx");
  const auto proj = [&] {
    double sum = 0;
    for (const FixRecord& fix : fixes) {
      const PJ_XY at = grid.of(fix);
      sum += at.x + at.y;
    }
    sink = sum;
  };
  race("UTM", {{"PROJ, +proj=utm +zone=32 +approx", proj, {}}, {"utmFromDegrees", ours, {}}},
       fixes.size());
  double apart = 0;
  for (const FixRecord& fix : fixes) {
    const UtmPosition at = utmFromDegrees(kWgs84, fix.latitude, fix.longitude);
    const PJ_XY theirs = grid.of(fix);
    apart = std::max({apart, std::fabs(at.easting - theirs.x), std::fabs(at.northing - theirs.y)});
  }
  std::printf("  at most %.3f m apart\n", apart);
#else
  race("UTM", {{"utmFromDegrees", ours, {}}}, fixes.size());
  std::printf("  PROJ is not installed (libproj-dev): no comparison\n");
#endif
}

// A computer's clock that costs nothing: its price is the system's.
class StandingClock : public Clock {
 public:
  uint32_t tick() const override { return 0; }
  DateTime utc() const override { return {2010, 7, 1, 5, 7, 3, 0, 0}; }
  DateTime local() const override { return {2010, 7, 1, 5, 9, 3, 0, 0}; }
};

struct Recorder {
  explicit Recorder(int32_t angle, const Clock& clock) : recording(track, options, hooks, clock) {
    options.angle = angle;
    options.altitude = angle * 100;
    recording.start();
  }
  void offer(const std::vector<FixRecord>& fixes) {
    for (const FixRecord& fix : fixes) recording.offer(fix);
    sink = recording.distance();
  }
  void offerAnew(const std::vector<FixRecord>& fixes) {
    track.points.clear();
    offer(fixes);
  }

  Track track;
  RecordingOptions options;
  RecordingHooks hooks;
  Recording recording;
};

void raceOffers(const std::vector<FixRecord>& fixes) {
  const StandingClock standing;
  Recorder sparse(1000, standing);
  Recorder full(-1, standing);
  Recorder timed(-1, systemClock());
  race("Offering a fix",
       {{"one distance", [&] { walk(fixes, ourDistance); }, {}},
        {"not recorded", [&] { sparse.offer(fixes); }, {}},
        {"recorded", [&] { full.offerAnew(fixes); }, {}},
        {"recorded, with the system's clock", [&] { timed.offerAnew(fixes); }, {}}},
       fixes.size());
  if (full.track.points.size() != fixes.size() || sparse.track.points.size() != 1) {
    std::printf("  the filter did not do what it is measured for: do not trust these times\n");
  }
  std::vector<uint8_t> journal;
  race("Journal",
       {{"a point into its record",
         [&] {
           journal.clear();
           for (const TrackPoint& point : full.track.points) writeJournalPoint(point, journal);
         },
         {}},
        {"read back", [&] { sink = static_cast<double>(readJournal(journal).goodEnd); }, {}}},
       fixes.size());
}

// A million points as text, on the disk, and back.
void measureFile(const char* what, const Track& track, const RecordingOptions& options) {
  const std::string path = "bench_track.XML";
  std::string text;
  Track back;
  std::vector<double> rendering, writing, loading;
  for (int round = 0; round < 5; ++round) {
    rendering.push_back(secondsOf([&] { text = trackText(track, options, {}, 0); }));
    writing.push_back(secondsOf([&] { sink = writeWholeFile(path, text); }));
    loading.push_back(
        secondsOf([&] { sink = loadTrackFile(path, 0, back) == TrackLoading::whole; }));
  }
  removeFile(path);
  std::printf("  %-20s %6.1f %9.3f %9.3f %9.3f\n", what, static_cast<double>(text.size()) / 1e6,
              least(rendering), least(writing), least(loading));
  if (back.points.size() != track.points.size()) std::printf("  not all points came back\n");
}

void measureFiles(const Track& track) {
  std::printf("Files of %zu points      MB   as text   to disk   loading (s)\n",
              track.points.size());
  RecordingOptions options;
  measureFile("positions only", track, options);
  options.recordTime = options.recordSpeed = options.recordCourse = true;
  measureFile("time, speed, course", track, options);
}

void measureMillion(const std::vector<FixRecord>& fixes) {
  const StandingClock clock;
  Recorder recorder(-1, clock);
  const size_t before = allocations;
  const size_t bytesBefore = allocatedBytes;
  for (size_t i = 0; i < kMillion; ++i) recorder.recording.offer(fixes[i % fixes.size()]);
  const double points = static_cast<double>(recorder.track.points.size());
  std::printf("Memory of %.0f points\n  %.1f bytes and %.4f allocations each\n", points,
              static_cast<double>(allocatedBytes - bytesBefore) / points,
              static_cast<double>(allocations - before) / points);
  measureFiles(recorder.track);
}

void measureAll() {
  const std::vector<FixRecord> fixes = makeWalk(kPositions);
  raceDistance(fixes);
  raceGrid(fixes);
  raceOffers(fixes);
  measureLibrary();  // before the rest has taken its memory
  measureMillion(fixes);
}

}  // namespace
}  // namespace vgps

int main() { vgps::measureAll(); }
