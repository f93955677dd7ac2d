#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "bench/epochs.h"
#include "bench/qt_positioning.h"
#include "fuzz/quiet_hooks.h"
#include "gps/gps_fix.h"
#include "gps/reader.h"

// How long a sentence takes, beside a bare walk over the same lines and beside Qt.

namespace {
size_t allocations = 0;
}

void* operator new(size_t size) {
  ++allocations;
  if (void* block = std::malloc(size)) return block;
  std::abort();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }

namespace vgps {
namespace {

constexpr size_t kEpochs = 4000;
constexpr int kRounds = 25;

volatile size_t sink = 0;  // keeps results from being optimised away

double nanosecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

std::vector<std::string_view> linesOf(std::string_view log) {
  std::vector<std::string_view> lines;
  while (!log.empty()) {
    const size_t end = log.find("\r\n");
    lines.push_back(log.substr(0, end));
    log.remove_prefix(end + 2);
  }
  return lines;
}

// The least that any reader of lines does.
size_t walk(std::string_view log) {
  size_t lines = 0;
  const char* at = log.data();
  const char* const end = at + log.size();
  while (const void* found = std::memchr(at, '\n', static_cast<size_t>(end - at))) {
    at = static_cast<const char*>(found) + 1;
    ++lines;
  }
  return lines;
}

struct Contestant {
  const char* name;
  std::function<void()> work;  // once over all lines
  int repetitions;             // of the work in a round: short work is timed longer
  bool countsAllocations;
  std::vector<double> nanoseconds;  // a sentence, one for each round
  double allocationsEach = 0;
};

// One after the other in each round, so that a busy moment of the machine meets all of them.
void race(std::vector<Contestant>& contestants, size_t sentences) {
  for (Contestant& contestant : contestants) contestant.work();
  for (int round = 0; round < kRounds; ++round) {
    for (Contestant& contestant : contestants) {
      const double share = 1.0 / (static_cast<double>(sentences) * contestant.repetitions);
      contestant.nanoseconds.reserve(kRounds);
      const size_t before = allocations;
      const double spent = nanosecondsOf([&contestant] {
        for (int i = 0; i < contestant.repetitions; ++i) contestant.work();
      });
      contestant.allocationsEach = static_cast<double>(allocations - before) * share;
      contestant.nanoseconds.push_back(spent * share);
    }
  }
}

void print(const std::vector<Contestant>& contestants) {
  const double reference = median(contestants.front().nanoseconds);
  std::printf("%-40s %12s %9s %9s\n", "", "ns/sentence", "x walk", "heap");
  for (const Contestant& contestant : contestants) {
    const double spent = median(contestant.nanoseconds);
    std::printf("%-40s %12.1f %9.1f", contestant.name, spent, spent / reference);
    if (contestant.countsAllocations) std::printf(" %9.3f", contestant.allocationsEach);
    std::printf("\n");
  }
}

void raceOnce() {
  const std::string log = makeEpochs(kEpochs);
  const std::vector<std::string_view> lines = linesOf(log);
  GpsHooks hooks;
  const SteppingClock clock(1);
  GpsState state(hooks, clock);
  GpsFix fix(state);
  NmeaSentence sentence;
  QtPositioning qt;
  std::vector<Contestant> contestants;
  contestants.push_back(
      {"walk over the lines by memchr", [&] { sink = walk(log); }, 10, false, {}});
  contestants.push_back({"parse into the fix",
                         [&] {
                           for (const std::string_view line : lines)
                             fix.parseSentence(line, sentence, true);
                         },
                         1,
                         true,
                         {}});
  contestants.push_back({"whole road: cut, frame, parse, count",
                         [&] {
                           splitAtLineStarts(
                               log, fix.framing.carriedStart(), false,
                               [&](std::string_view chunk) { fix.receiveLine(chunk); });
                         },
                         1,
                         true,
                         {}});
  if (QtPositioning::installed()) {
    contestants.push_back(
        {"Qt 6 Positioning, source on a buffer", [&] { sink = qt.readLog(log); }, 1, false, {}});
    contestants.push_back({"Qt 6 Positioning, parser line by line",
                           [&] { sink = qt.parseLines(log); },
                           1,
                           false,
                           {}});
  }
  std::printf(
      "%zu different lines, %zu bytes: GGA, RMC, GSA and 3 GSV an epoch, 12 satellites; "
      "median of %d rounds\n",
      lines.size(), log.size(), kRounds);
  race(contestants, lines.size());
  print(contestants);
  if (!QtPositioning::installed()) {
    std::printf("Qt 6 Positioning is not installed (qt6-positioning-dev): no comparison\n");
  } else if (qt.readLog(log) < kEpochs / 2) {
    std::printf("Qt 6 Positioning told %zu positions of %zu epochs: do not trust its times\n",
                qt.readLog(log), kEpochs);
  }
}

}  // namespace
}  // namespace vgps

int main() { vgps::raceOnce(); }
