#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

#include "library/journal.h"
#include "tests/library/library_world.h"
#include "tests/program/file_world.h"

// What a kill, a write that stops at any byte, a full disk, and other writers do to the files of
// this program. Prints a table; `./vexa soak --faults` runs the long form of it.
namespace vgps {
namespace {

constexpr const char* kLongVariable = "VGPS_SOAK_FAULTS";
constexpr rlim_t kNoLimit = RLIM_INFINITY;

bool isLong() { return std::getenv(kLongVariable) != nullptr; }

// The program is started with files limited to so many bytes: a write that goes further ends it
// there, or is refused as by a full disk.
pid_t startLimited(const std::vector<std::string>& arguments, rlim_t bytes, bool refused) {
  std::vector<const char*> words = {vgpsProgram()};
  for (const std::string& word : arguments) words.push_back(word.c_str());
  words.push_back(nullptr);
  const pid_t pid = fork();
  if (pid != 0) return pid;
  const int nowhere = ::open("/dev/null", O_WRONLY);
  ::dup2(nowhere, STDOUT_FILENO);
  ::dup2(nowhere, STDERR_FILENO);
  const rlimit files = {bytes, RLIM_INFINITY};
  const rlimit noCore = {0, 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  ::setrlimit(RLIMIT_FSIZE, &files);
  ::signal(SIGXFSZ, refused ? SIG_IGN : SIG_DFL);
  ::execv(vgpsProgram(), const_cast<char**>(words.data()));
  ::_exit(127);
}

int endOf(pid_t pid) {
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

int runQuietly(const std::vector<std::string>& arguments) {
  return endOf(startLimited(arguments, kNoLimit, false));
}

// A command that writes a file: what is there before, and how to tell that nothing is torn.
struct Scene {
  const char* file;
  std::function<void(const TestFolder&)> prepare;
  std::function<std::vector<std::string>(const TestFolder&)> command;
  // Empty if the files are whole; otherwise what is wrong. `status`: of the command.
  std::function<std::string(const TestFolder&, int status)> fault;
  size_t bytes;  // no file that the command writes is larger
};

std::string settingsText() {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n<root>\r\n";
  text +=
      "\t<cfg>\r\n\t\t<vgps tlp=\"old\" itu=\"" + std::string(300, 'u') + "\"/>\r\n\t</cfg>\r\n";
  return text + "</root>\r\n";
}

std::string changedSettings() {
  std::string text = settingsText();
  return text.replace(text.find("old"), 3, std::string(80, 'n'));
}

Scene settingsScene() {
  return {"vgps.xml", [](const TestFolder& folder) { folder.write("vgps.xml", settingsText()); },
          [](const TestFolder& folder) -> std::vector<std::string> {
            return {"settings",  "--file", folder / "vgps.xml", "set",
                    "cfg\\vgps", "tlp",    std::string(80, 'n')};
          },
          [](const TestFolder& folder, int status) -> std::string {
            // Whoever opens the settings next finishes the save.
            if (runQuietly({"settings", "--file", folder / "vgps.xml", "list"}) != 0)
              return "damaged";
            const std::string now = folder.read("vgps.xml");
            if (status == 0 && now != changedSettings()) return "exit status 0, but not saved";
            return now == settingsText() || now == changedSettings() ? "" : "torn";
          },
          600};
}

constexpr uint32_t kOldPoints = 5;
constexpr uint32_t kNewPoints = 7;

void leaveRecording(const TestFolder& folder) {
  Journal journal;
  journal.create(folder / kJournalName);
  for (const TrackPoint& point : walkingTrack("", kNewPoints).points) journal.append(point);
  journal.close();
}

// Saving again must neither double the track nor lose it.
Scene libraryScene(const char* file, bool isFolder) {
  const auto library = [isFolder](const TestFolder& folder) {
    return folder / (isFolder ? "tracks" : "tracks.xml");
  };
  const auto save = [](const TestFolder& folder) -> std::vector<std::string> {
    return {"recover", "--file", folder / "vgps.xml", "--save"};
  };
  return {file,
          [library, isFolder](const TestFolder& folder) {
            if (isFolder) std::filesystem::create_directories(library(folder));
            const std::string setting = isFolder ? "<vgps tlp=\"tracks\"/>" : "";
            folder.write("vgps.xml", "<root><cfg>" + setting + "</cfg></root>");
            TrackLibrary tracks;
            tracks.open(library(folder));
            addWalk(tracks, "Ride", kOldPoints);
            leaveRecording(folder);
          },
          save,
          [library, save](const TestFolder& folder, int) -> std::string {
            if (runQuietly(save(folder)) != 0) return "cannot be saved again";
            TrackLibrary tracks;
            if (tracks.open(library(folder)) != LibraryState::whole) return "damaged";
            if (tracks.tracks().size() != 2) {
              return std::to_string(tracks.tracks().size()) + " tracks";
            }
            if (tracks.tracks()[0].points + tracks.tracks()[1].points != kOldPoints + kNewPoints) {
              return "points are missing";
            }
            return existingJournals(folder / kJournalName).empty() ? "" : "the journal is left";
          },
          1500};
}

// A command whose output takes the place of an older file.
Scene outputScene(const char* file, const std::string& before, const std::string& input,
                  std::vector<std::string> words) {
  const auto command = [words](const TestFolder& folder) {
    std::vector<std::string> arguments = words;
    for (std::string& word : arguments) {
      if (word == "IN") word = folder / "in.xml";
      if (word == "OUT") word = folder / "out.xml";
    }
    return arguments;
  };
  const auto prepare = [before, input](const TestFolder& folder) {
    folder.write("in.xml", input);
    folder.write("out.xml", before);
  };
  const TestFolder whole;
  prepare(whole);
  EXPECT_EQ(runQuietly(command(whole)), 0) << file;
  const std::string after = whole.read("out.xml");
  return {file, prepare, command,
          [before, after](const TestFolder& folder, int status) -> std::string {
            const std::string now = folder.read("out.xml");
            if (status == 0 && now != after) return "exit status 0, but not written";
            return now == before || now == after ? "" : "torn";
          },
          after.size() + 1};
}

std::string trackText() {
  std::string text = "<t>\r\n";
  for (int i = 0; i < 6; ++i) {
    text += "\t<p x=\"11." + std::to_string(100000 + i * 1000) +
            "\" y=\"48.100000\" z=\"500.000000\"/>\r\n";
  }
  return text + "</t>\r\n";
}

std::string drive() {
  std::string text;
  for (int i = 10; i < 20; ++i) {
    text += "$GPRMC,0901" + std::to_string(i) + ",A,4807.0" + std::to_string(i) + ",N,01131." +
            std::to_string(i) + "0,E,22.4," + std::to_string(i * 7) + ".0,050710,,\r\n";
  }
  return text;
}

std::vector<Scene> scenes() {
  const std::string old = "<old>" + std::string(900, 'o') + "</old>";
  return {settingsScene(),
          libraryScene("tracks.xml", false),
          libraryScene("folder of tracks", true),
          outputScene("xml -o", old, trackText(), {"xml", "IN", "-o", "OUT"}),
          outputScene("track -o", old, trackText(), {"track", "reverse", "IN", "-o", "OUT"}),
          outputScene("record -o", old, drive(), {"record", "--replay", "IN", "-o", "OUT"})};
}

class FaultTable {
 public:
  FaultTable() { std::printf("%-18s %-28s %8s %8s\n", "file", "fault", "rounds", "broken"); }

  // `round` returns what is wrong, empty if nothing is.
  void row(const char* file, const char* fault, int rounds,
           const std::function<std::string(int)>& round) {
    int broken = 0;
    std::string first;
    for (int i = 0; i < rounds; ++i) {
      const std::string wrong = round(i);
      if (!wrong.empty() && broken++ == 0) first = wrong + " in round " + std::to_string(i);
    }
    std::printf("%-18s %-28s %8d %8d  %s\n", file, fault, rounds, broken, first.c_str());
    std::fflush(stdout);
    EXPECT_EQ(broken, 0) << file << ", " << fault << ": " << first;
  }
};

int randomUpTo(int most) {
  static std::mt19937 random(std::random_device{}());
  return std::uniform_int_distribution<int>(0, most)(random);
}

// Every byte in the long form; some in the short one.
void stopAtBytes(FaultTable& table, const Scene& scene, bool refused) {
  constexpr int kShortRounds = 12;
  const int most = static_cast<int>(scene.bytes);
  const int rounds = isLong() ? most + 1 : kShortRounds;
  table.row(scene.file, refused ? "disk full at a byte" : "write stopped at a byte", rounds,
            [&](int round) {
              const TestFolder folder;
              scene.prepare(folder);
              const int at = isLong() ? round : most * round / kShortRounds + randomUpTo(20);
              const int status =
                  endOf(startLimited(scene.command(folder), static_cast<rlim_t>(at), refused));
              return scene.fault(folder, status);
            });
}

void killAtAnyMoment(FaultTable& table, const Scene& scene) {
  const TestFolder whole;
  scene.prepare(whole);
  const auto start = std::chrono::steady_clock::now();
  runQuietly(scene.command(whole));
  const auto took = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  table.row(scene.file, "SIGKILL", isLong() ? 200 : 12, [&](int) {
    const TestFolder folder;
    scene.prepare(folder);
    const pid_t pid = startLimited(scene.command(folder), kNoLimit, false);
    std::this_thread::sleep_for(
        std::chrono::microseconds(randomUpTo(static_cast<int>(took.count()))));
    ::kill(pid, SIGKILL);
    return scene.fault(folder, endOf(pid));
  });
}

// Memory that outlives a killed child: how much it has done for sure.
struct Witness {
  std::atomic<uint32_t>* const done;

  Witness() : done(static_cast<std::atomic<uint32_t>*>(map())) {}
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() { ::munmap(done, sizeof *done); }

 private:
  static void* map() {
    return ::mmap(nullptr, sizeof(std::atomic<uint32_t>), PROT_READ | PROT_WRITE,
                  MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  }
};

// `work` never returns.
void killWhile(const std::function<void()>& work, std::chrono::milliseconds after) {
  const pid_t pid = fork();
  if (pid == 0) {
    work();
    ::_exit(1);
  }
  std::this_thread::sleep_for(after);
  ::kill(pid, SIGKILL);
  EXPECT_EQ(endOf(pid), 1000 + SIGKILL);
}

// A recording that is killed and continued again and again has its points without a hole.
std::string killRecording(int) {
  constexpr int kTimes = 3;
  const TestFolder folder;
  const std::string path = folder / kJournalName;
  uint32_t kept = 0;
  for (int time = 0; time < kTimes; ++time) {
    const Witness appended;
    killWhile(
        [&] {
          Journal journal({.flushAfter = std::chrono::milliseconds(1)});
          RecoveredTrack before;
          if (journal.recover(path, before) != JournalResult::open) journal.create(path);
          TrackPoint point = walkingTrack("", 1).points.front();
          for (uint32_t number = kept;; ++number) {
            point.m = number;
            point.receiverUtc = number;
            journal.append(point);
            *appended.done = number + 1;
            if (number % 3 == 0) std::this_thread::sleep_for(std::chrono::microseconds(300));
          }
        },
        std::chrono::milliseconds(5 + randomUpTo(40)));
    Journal journal;
    RecoveredTrack found;
    const JournalResult result = journal.recover(path, found);
    if (result == JournalResult::missing && kept == 0) continue;
    if (result != JournalResult::open) return "cannot be read";
    if (found.damaged) return "damaged";
    for (uint32_t i = 0; i < found.points.size(); ++i) {
      if (found.points[i].m != i || found.points[i].receiverUtc != i) return "a hole in the track";
    }
    const auto now = static_cast<uint32_t>(found.points.size());
    if (now < kept) return "points that were there are gone";
    if (now > std::max(kept, appended.done->load()) + 1) return "points from nowhere";
    kept = now;
  }
  return {};
}

// Additions, changes, and an undo, while a track that was added once must stay.
std::string killLibrary(int round) {
  constexpr uint32_t kPointsEach = 40;
  const TestFolder folder;
  const std::string path = folder / (round % 2 == 0 ? "tracks.xml" : "tracks");
  if (round % 2 != 0) std::filesystem::create_directories(path);
  const Witness added;
  killWhile(
      [&] {
        TrackLibrary library;
        library.open(path);
        for (uint32_t number = 0;; ++number) {
          Track track = walkingTrack("T" + std::to_string(number), kPointsEach);
          if (library.add(track, {}, kAddedAt) != LibraryResult::done) return;
          ++*added.done;
          const size_t some = number % library.tracks().size();
          if (library.reverse(some, {}) != LibraryResult::done) return;
          if (library.rename(some, "R" + std::to_string(number)) != LibraryResult::done) return;
          if (library.undo() != LibraryResult::done) return;
        }
      },
      std::chrono::milliseconds(10 + randomUpTo(150)));
  TrackLibrary library;
  const LibraryState state = library.open(path);
  if (*added.done == 0 && state == LibraryState::missing) return {};
  if (state != LibraryState::whole) return "damaged";
  if (library.tracks().size() < *added.done) return "a track is gone";
  if (library.tracks().size() > *added.done + 2) return "too many tracks";
  for (const TrackSummary& track : library.tracks()) {
    if (track.points != kPointsEach) return "points are missing";
  }
  Track track = walkingTrack("After", 1);
  return library.add(track, {}, kAddedAt) == LibraryResult::done ? "" : "cannot be changed again";
}

std::string changeSettingsAtOnce(int) {
  constexpr const char* kKeys[] = {"muw", "msw", "rws",      "wrm",       "wrs",      "pls", "mls",
                                   "swa", "ntm", "res",      "reseconds", "remeters", "bem", "its",
                                   "ips", "sts", "CompassX", "CompassY",  "CompassZ", "gfs"};
  constexpr int kPrograms = std::size(kKeys);
  const auto valueOf = [](int i) { return std::to_string(100 + i); };
  const TestFolder folder;
  folder.write("vgps.xml", settingsText());
  std::vector<pid_t> programs;
  for (int i = 0; i < kPrograms; ++i) {
    programs.push_back(startLimited(
        {"settings", "--file", folder / "vgps.xml", "set", "cfg\\vgps", kKeys[i], valueOf(i)},
        kNoLimit, false));
  }
  // A busy machine may need longer than they wait for one another; then they say so.
  std::vector<bool> saved;
  for (const pid_t program : programs) saved.push_back(endOf(program) == 0);
  const std::string text = folder.read("vgps.xml");
  for (int i = 0; i < kPrograms; ++i) {
    const bool there = says(text, std::string(kKeys[i]) + "=\"" + valueOf(i) + "\"");
    if (there != saved[static_cast<size_t>(i)]) return "a change is lost";
  }
  return std::count(saved.begin(), saved.end(), true) > 0 ? "" : "nothing was saved";
}

// Recordings are saved while the document is rewritten as a whole.
std::string saveAtOnce(int) {
  constexpr uint32_t kRecordings = 5;
  const TestFolder folder;
  folder.write("vgps.xml", "<root/>");
  TrackLibrary tracks;
  tracks.open(folder / "tracks.xml");
  addWalk(tracks, "Ride", kOldPoints);
  std::vector<pid_t> savers;
  for (uint32_t i = 0; i < kRecordings; ++i) {
    const std::string journal = folder / (std::to_string(i) + ".journal");
    Journal recording;
    recording.create(journal);
    for (const TrackPoint& point : walkingTrack("", kNewPoints).points) recording.append(point);
    recording.close();
    savers.push_back(
        startLimited({"recover", "--file", folder / "vgps.xml", "--journal", journal, "--save"},
                     kNoLimit, false));
    savers.push_back(
        startLimited({"xml", folder / "tracks.xml", "-o", folder / "tracks.xml"}, kNoLimit, false));
  }
  constexpr int kInUse = 2;
  for (const pid_t saver : savers) {
    const int status = endOf(saver);
    if (status != 0 && status != kInUse) return "exit status " + std::to_string(status);
  }
  if (tracks.refresh() != LibraryState::whole) return "damaged";
  size_t left = 0;
  for (uint32_t i = 0; i < kRecordings; ++i) {
    if (fileExists(folder / (std::to_string(i) + ".journal"))) ++left;
  }
  return tracks.tracks().size() + left == 1 + kRecordings ? "" : "a recording is lost";
}

TEST(Faults, NothingOnTheDiskIsEverHalf) {
  FaultTable table;
  for (const Scene& scene : scenes()) {
    stopAtBytes(table, scene, false);
    stopAtBytes(table, scene, true);
    killAtAnyMoment(table, scene);
  }
  table.row("journal", "SIGKILL, then continued", isLong() ? 200 : 12, killRecording);
  table.row("library, changed", "SIGKILL", isLong() ? 200 : 12, killLibrary);
  table.row("vgps.xml", "20 writers at once", isLong() ? 50 : 2, changeSettingsAtOnce);
  table.row("tracks.xml", "10 writers at once", isLong() ? 50 : 2, saveAtOnce);
}

}  // namespace
}  // namespace vgps
