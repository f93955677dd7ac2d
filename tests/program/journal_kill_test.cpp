#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "library/journal.h"
#include "platform/files.h"
#include "tests/track/recording_world.h"

// A program that records is killed, and all but the last seconds must be there again. The program
// is this one, started once more for a test that never ends.
namespace vgps {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr const char* kFolderVariable = "VGPS_KILLED_RECORDING";
constexpr auto kMayBeLost = 5s;

// When each point was recorded, in memory that outlives the killed program.
struct Witness {
  std::atomic<uint32_t> count;
  std::atomic<int64_t> recordedAt[1000];  // nanoseconds of the steady clock
};

Witness* openWitness(const std::string& folder) {
  const std::string path = pathIn(folder, "witness");
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  EXPECT_EQ(::ftruncate(fd, sizeof(Witness)), 0);
  void* const memory = ::mmap(nullptr, sizeof(Witness), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  ::close(fd);
  return static_cast<Witness*>(memory);
}

class JournalHooks : public FakeRecordingHooks {
 public:
  explicit JournalHooks(Journal& onDisk) : onDisk_(onDisk) {}
  void pointRecorded(const TrackPoint& point) override { onDisk_.append(point); }
  void flushPoints() override { onDisk_.flush(); }

 private:
  Journal& onDisk_;
};

TEST(JournalKill, DISABLED_RecordsAtTenHertz) {
  const char* const folder = std::getenv(kFolderVariable);
  ASSERT_NE(folder, nullptr);
  Witness* const witness = openWitness(folder);
  Journal journal;
  ASSERT_EQ(journal.create(pathIn(folder, kJournalName)), JournalResult::open);
  JournalHooks hooks(journal);
  Track track;
  RecordingOptions options;
  Recording recording(track, options, hooks, systemClock());
  recording.start();
  auto next = SteadyClock::now();
  for (uint32_t i = 0; i < 1000; ++i) {
    ASSERT_TRUE(recording.offer(FixAt{.course = i % 2 * 90.0, .altitude = 1.0 * i}));
    witness->recordedAt[i] = SteadyClock::now().time_since_epoch().count();
    ++witness->count;
    std::this_thread::sleep_until(next += 100ms);
  }
}

class KilledRecording {
 public:
  explicit KilledRecording(std::string folder) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_);
    witness_ = openWitness(folder_);
    pid_ = fork();
    if (pid_ != 0) return;
    ::setenv(kFolderVariable, folder_.c_str(), 1);
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    execl("/proc/self/exe", "recording", "--gtest_also_run_disabled_tests",
          "--gtest_filter=JournalKill.DISABLED_RecordsAtTenHertz", nullptr);
    _exit(127);
  }
  KilledRecording(const KilledRecording&) = delete;
  KilledRecording& operator=(const KilledRecording&) = delete;
  ~KilledRecording() { ::munmap(witness_, sizeof(Witness)); }

  void killIt() {
    const auto now = SteadyClock::now();
    ASSERT_EQ(::kill(pid_, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(pid_, &status, 0), pid_);
    ASSERT_TRUE(WIFSIGNALED(status)) << "ended by itself";
    checkJournal((now - kMayBeLost).time_since_epoch().count());
  }

 private:
  void checkJournal(int64_t safeUntil) {
    const uint32_t recorded = witness_->count;
    uint32_t safe = 0;
    while (safe < recorded && witness_->recordedAt[safe] <= safeUntil) ++safe;
    Journal journal;
    RecoveredTrack found;
    const JournalResult result = journal.recover(pathIn(folder_, kJournalName), found);
    if (result == JournalResult::missing) {
      EXPECT_EQ(recorded, 0U);
      return;
    }
    ASSERT_EQ(result, JournalResult::open);
    EXPECT_FALSE(found.damaged);
    EXPECT_GE(found.points.size(), safe) << "of " << recorded;
    for (size_t i = 0; i < found.points.size(); ++i) {
      EXPECT_EQ(found.points[i].altitude, static_cast<double>(i));
    }
  }

  std::string folder_;
  Witness* witness_ = nullptr;
  pid_t pid_ = -1;
};

TEST(JournalKill, AtAnyMomentAllButTheLastSecondsAreThere) {
  constexpr size_t kills = 100;  // side by side: they take no longer than the last of them
  std::mt19937 random(std::random_device{}());
  std::uniform_int_distribution<int> delay(0, 7500);
  std::vector<int> moments(kills);
  for (int& moment : moments) moment = delay(random);
  std::sort(moments.begin(), moments.end());

  const std::string folder = testing::TempDir() + "vgps_kill";
  std::vector<std::unique_ptr<KilledRecording>> recordings;
  for (size_t i = 0; i < kills; ++i) {
    recordings.push_back(std::make_unique<KilledRecording>(pathIn(folder, std::to_string(i))));
  }
  const auto start = SteadyClock::now();
  for (size_t i = 0; i < kills; ++i) {
    std::this_thread::sleep_until(start + std::chrono::milliseconds(moments[i]));
    SCOPED_TRACE(moments[i]);
    recordings[i]->killIt();
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace vgps
