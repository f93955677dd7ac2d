#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "bench/child.h"
#include "bench/epochs.h"

// bench_replay VGPS LOG: how long the program takes for a log of 100 MB (made when it is missing)
// and how much memory. A small program of its own, because a child's greatest memory counts what
// its parent had when it started.
namespace {

constexpr int kRuns = 7;
constexpr size_t kLogBytes = 100'000'000;

int replay(const std::string& program, const std::string& log) {
  std::error_code missing;
  if (std::filesystem::file_size(log, missing) < kLogBytes || missing) {
    if (!vgps::writeEpochs(log, kLogBytes)) {
      std::fprintf(stderr, "%s cannot be written\n", log.c_str());
      return 1;
    }
  }
  std::vector<double> seconds;
  double megabytes = 0;
  for (int i = 0; i < kRuns; ++i) {
    const vgps::ChildRun run = vgps::runChild({program, "replay", log});
    if (!run.succeeded) {
      std::fprintf(stderr, "%s replay %s failed\n", program.c_str(), log.c_str());
      return 1;
    }
    seconds.push_back(run.seconds);
    megabytes = std::max(megabytes, run.megabytes);
  }
  std::sort(seconds.begin(), seconds.end());
  std::printf(
      "vgps replay of 100 MB: %.3f s (median of %d, from %.3f), %.1f MB of memory at most\n",
      seconds[kRuns / 2], kRuns, seconds[0], megabytes);
  return 0;
}

}  // namespace

int main(int argc, char** argv) { return argc == 3 ? replay(argv[1], argv[2]) : 2; }
