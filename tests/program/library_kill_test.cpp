#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/library/library_world.h"

// Programs that are killed while a library is written. The program is this one, started once more
// for a test that never ends.
namespace vgps {
namespace {

using namespace std::chrono_literals;

constexpr const char* kPathVariable = "VGPS_KILLED_LIBRARY";
constexpr const char* kKillsVariable = "VGPS_SOAK_KILLS";  // how many; a few without it
constexpr uint32_t kPointsEach = 40;

// How many tracks were added for sure, in memory that outlives the killed program.
struct Additions {
  std::atomic<uint32_t> added;
};

Additions* openAdditions(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  EXPECT_EQ(::ftruncate(fd, sizeof(Additions)), 0);
  void* const memory =
      ::mmap(nullptr, sizeof(Additions), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  ::close(fd);
  return static_cast<Additions*>(memory);
}

// Adds a track in each round, and changes others without taking any away.
TEST(LibraryKill, DISABLED_ChangesTheLibrary) {
  const char* const path = std::getenv(kPathVariable);
  ASSERT_NE(path, nullptr);
  Additions* const witness = openAdditions(std::string(path) + ".witness");
  TrackLibrary library;
  library.open(path);
  for (uint32_t round = 0;; ++round) {
    Track track = walkingTrack("T" + std::to_string(round), kPointsEach);
    ASSERT_EQ(library.add(track, {}, kAddedAt), LibraryResult::done);
    ++witness->added;
    const size_t some = round % library.tracks().size();
    ASSERT_EQ(library.reverse(some, {}), LibraryResult::done);
    ASSERT_EQ(library.rename(some, "R" + std::to_string(round)), LibraryResult::done);
    ASSERT_EQ(library.undo(), LibraryResult::done);
  }
}

void killOnce(const std::string& path, std::chrono::milliseconds after) {
  Additions* const witness = openAdditions(path + ".witness");
  const pid_t pid = fork();
  if (pid == 0) {
    ::setenv(kPathVariable, path.c_str(), 1);
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    execl("/proc/self/exe", "library", "--gtest_also_run_disabled_tests",
          "--gtest_filter=LibraryKill.DISABLED_ChangesTheLibrary", nullptr);
    _exit(127);
  }
  for (int i = 0; i < 2000 && witness->added == 0; ++i) std::this_thread::sleep_for(5ms);
  std::this_thread::sleep_for(after);
  ASSERT_EQ(::kill(pid, SIGKILL), 0);
  int status = 0;
  ASSERT_EQ(::waitpid(pid, &status, 0), pid);
  ASSERT_TRUE(WIFSIGNALED(status)) << "ended by itself";

  TrackLibrary library;
  EXPECT_EQ(library.open(path), LibraryState::whole) << library.message();
  const uint32_t added = witness->added;
  EXPECT_GE(library.tracks().size(), added);
  EXPECT_LE(library.tracks().size(), added + 2);  // one not counted yet, one renamed half way
  for (const TrackSummary& track : library.tracks()) EXPECT_EQ(track.points, kPointsEach);
  // The next program goes on.
  Track track = walkingTrack("After", 1);
  EXPECT_EQ(library.add(track, {}, kAddedAt), LibraryResult::done);
  ::munmap(witness, sizeof(Additions));
}

TEST(LibraryKill, AtAnyMomentTheLibraryIsWhole) {
  const char* const wanted = std::getenv(kKillsVariable);
  const int kills = wanted != nullptr ? std::atoi(wanted) : 8;
  std::mt19937 random(std::random_device{}());
  std::uniform_int_distribution<int> delay(0, 150);
  const TestFolder folder;
  for (int i = 0; i < kills; ++i) {
    const int after = delay(random);
    SCOPED_TRACE(std::to_string(i) + " after " + std::to_string(after));
    const std::string path = folder / (std::to_string(i) + (i % 2 == 0 ? ".xml" : ""));
    if (i % 2 != 0) std::filesystem::create_directories(path);
    killOnce(path, std::chrono::milliseconds(after));
  }
}

}  // namespace
}  // namespace vgps
