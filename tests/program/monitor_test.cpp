// `vgps monitor` and `vgps ports` with a receiver on a pseudo-terminal.
#include <filesystem>
#include <random>

#include "tests/fakes/test_folder.h"
#include "tests/places.h"
#include "tests/platform/posix/pty.h"
#include "tests/program/program.h"

namespace vgps {
namespace {

using nlohmann::json;
using std::chrono::milliseconds;

const std::string kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230324,003.1,W*61\r\n";
const std::string kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const std::string kGsa = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n";

// A whole number out of the last JSON object that the program printed, -1 without one.
int64_t counted(const Program& program, const char* kind) {
  const json state = program.lastJson();
  return state.is_object() ? state["sentences"][kind].get<int64_t>() : -1;
}

// Epochs at a rate, each cut anywhere.
void play(Pty& line, int perSecond, int epochs) {
  std::mt19937 random(static_cast<unsigned>(perSecond));
  auto next = std::chrono::steady_clock::now();
  for (int epoch = 0; epoch < epochs; ++epoch) {
    std::string rest = kGga + kGsa + kRmc;
    while (!rest.empty()) {
      const size_t piece = std::min<size_t>(rest.size(), 1 + random() % 90);
      line.write(rest.substr(0, piece));
      rest.erase(0, piece);
      std::this_thread::sleep_for(milliseconds(random() % 5));
    }
    next += milliseconds(1000 / perSecond);
    std::this_thread::sleep_until(next);
  }
}

TEST(Monitor, DeliversEverySentenceAtOneFiveAndTenHertz) {
  struct Run {
    int perSecond;
    Pty line{};
    std::unique_ptr<Program> program{};
    std::thread receiver{};
  };
  std::vector<std::unique_ptr<Run>> runs;
  for (const int perSecond : {1, 5, 10}) {
    runs.push_back(std::make_unique<Run>(perSecond));
    Run& run = *runs.back();
    run.program.reset(new Program({"monitor", "--json", "--all", "--port", run.line.path()}));
    run.receiver = std::thread([&run] { play(run.line, run.perSecond, 2 * run.perSecond); });
  }
  for (auto& run : runs) {
    const int64_t sentences = 6 * run->perSecond;
    Program& program = *run->program;
    EXPECT_TRUE(program.readUntil([&] { return counted(program, "total") >= sentences; }));
    run->receiver.join();
    const json state = program.lastJson();
    ASSERT_TRUE(state.is_object());
    EXPECT_EQ(state["sentences"]["total"], sentences);
    EXPECT_EQ(state["sentences"]["rmc"], 2 * run->perSecond);
    EXPECT_EQ(state["sentences"]["checksumWrong"], 0);
    EXPECT_EQ(state["sentences"]["rejected"], 0);
    EXPECT_EQ(state["fix"]["latitude"].get<double>(), 48.117300001780194);
    EXPECT_EQ(state["fix"]["portPath"], run->line.path());
    EXPECT_EQ(state["fix"]["running"], true);
    EXPECT_EQ(state["link"], "fix");
    EXPECT_LT(state["fixAgeMs"], 2500);
    EXPECT_EQ(state["time"], "2024-03-23T12:35:19.000Z");
    EXPECT_EQ(state["quality"], "GPS fix");
    EXPECT_NEAR(state["accuracy"]["horizontal"].get<double>(), 5.2, 1e-6) << "HDOP 1.3";
    EXPECT_EQ(state["fix"]["altitude"], 545);
    EXPECT_EQ(state["fix"]["altitudeExact"], 545.4);
    EXPECT_TRUE(state["satellites"]["inViewCount"].is_null()) << "no GSV has come";
    program.signal(SIGINT);
    EXPECT_EQ(program.finish(), 0);
  }
}

TEST(Monitor, UnpluggedItSaysSoAndGoesOnWhenPluggedInAgain) {
  const TestFolder folder;
  const std::string path = folder / "gps";
  auto line = std::make_unique<Pty>(path);
  Program program({"monitor", "--json", "--port", path});
  line->write(kRmc);
  EXPECT_TRUE(program.readUntil([&] { return counted(program, "rmc") == 1; }));
  line = nullptr;
  EXPECT_TRUE(program.readUntil([&] { return says(program.errors, "was unplugged"); }));
  EXPECT_TRUE(program.readUntil([&] { return program.lastJson()["link"] == "unplugged"; }));
  line = std::make_unique<Pty>(path);
  EXPECT_TRUE(program.readUntil([&] {
    const json state = program.lastJson();
    return state.is_object() && state["link"] != "unplugged";
  }));
  line->write(kGga + kRmc);
  EXPECT_TRUE(program.readUntil([&] { return counted(program, "total") == 3; })) << program.output;
  program.signal(SIGTERM);
  EXPECT_EQ(program.finish(), 0);
}

TEST(Monitor, NothingReceivedIsAFailure) {
  Pty silent;
  for (const std::string& port : {silent.path(), std::string("/dev/vgps-none")}) {
    const Finished run = runProgram({"monitor", "--json", "--port", port, "--for", "1.2"});
    EXPECT_EQ(run.status, 1) << port;
    EXPECT_TRUE(says(run.errors, "nothing was received")) << run.errors;
    const json state = json::parse(run.output, nullptr, false);
    EXPECT_EQ(state["link"], port == silent.path() ? "waiting" : "notConnected");
    EXPECT_TRUE(state["dataAgeMs"].is_null() && state["fix"]["latitude"].is_null()) << state;
    EXPECT_FALSE(state["fix"].contains("portPath"));
  }
}

TEST(Monitor, OneLineASecondAndTheLogHoldsWhatCame) {
  const TestFolder folder;
  const std::string log = folder / "stream.log";
  Pty line;
  Program program({"monitor", "--port", line.path(), "--log", log, "--for", "2.1"});
  line.write("noise\r\n" + kGga + kRmc);
  EXPECT_EQ(program.finish(), 0);
  EXPECT_EQ(std::count(program.output.begin(), program.output.end(), '\n'), 2) << program.output;
  EXPECT_TRUE(
      says(program.output,
           "2024-03-23 12:35:19.000  48.117300 N  11.516667 E  545 m  41.48 km/h  84.4 deg  "
           "8 satellites  GPS fix, "))
      << program.output;
  std::ifstream file(log, std::ios::binary);
  const std::string logged{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(logged, kGga + kRmc);
}

TEST(Monitor, BinaryMessagesDoNotFreshenAnOldFix) {
  Pty line;
  Program program({"monitor", "--port", line.path()});
  line.write(kGga + kRmc);
  EXPECT_TRUE(program.readUntil([&] { return says(program.output, "GPS fix, "); }));
  std::thread receiver([&] {
    for (int i = 0; i < 50; ++i) {
      line.write(std::string_view("\xA0\xA2\x00\x01\x29\x00\x29\xB0\xB3", 9));
      std::this_thread::sleep_for(milliseconds(100));
    }
  });
  EXPECT_TRUE(program.readUntil([&] { return says(program.output, "sending SiRF binary"); }, 8000))
      << program.output;
  receiver.join();
}

TEST(Monitor, PlaysTheSimulation) {
  for (const char* const which : {"--simulate", "--simulate=walk", "--simulate=trip"}) {
    Program program({"monitor", which, "--json", "--all", "--for", "2.2"});
    EXPECT_EQ(program.finish(), 0);
    EXPECT_GE(counted(program, "total"), 1);
    const bool walks = std::string_view(which) != "--simulate=trip";
    EXPECT_EQ(program.lastJson()["fix"]["altitude"].is_number(), walks) << which;
    EXPECT_EQ(program.lastJson()["fix"]["simulate"], true);
    EXPECT_EQ(std::count(program.output.begin(), program.output.end(), '\n'), 2);
  }
}

TEST(Monitor, StopsWhenAskedUnlessItWasStartedToIgnoreThat) {
  const struct {
    int ignored, asked;
  } rows[] = {{0, SIGHUP}, {SIGHUP, SIGTERM}, {SIGINT, SIGHUP}, {SIGTERM, SIGINT}};
  for (const auto& row : rows) {
    Program program({"monitor", "--simulate", "--json"}, row.ignored);
    EXPECT_TRUE(program.readUntil([&] { return !program.output.empty(); }));
    if (row.ignored != 0) {
      program.signal(row.ignored);
      program.output.clear();
      EXPECT_TRUE(program.readUntil([&] { return !program.output.empty(); })) << row.ignored;
    }
    program.signal(row.asked);
    EXPECT_EQ(program.finish(), 0) << row.ignored;
  }
}

TEST(Monitor, SecondsInWhichItWasStoppedAreLeftOut) {
  const auto count = [](const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
  };
  Program program({"monitor", "--simulate", "--json"});
  EXPECT_TRUE(program.readUntil([&] { return count(program.output) >= 1; }));
  program.signal(SIGSTOP);
  std::this_thread::sleep_for(milliseconds(5200));
  const auto before = count(program.output);
  program.signal(SIGCONT);
  EXPECT_TRUE(program.readUntil([&] { return count(program.output) > before; }));
  program.readUntil([] { return false; }, 500);
  program.signal(SIGINT);
  EXPECT_EQ(program.finish(), 0);
  EXPECT_LE(count(program.output), before + 3);
}

// On a terminal: a block in one place; Ctrl-C ends it and brings the cursor back.
TEST(Monitor, OnATerminalItKeepsToItsPlace) {
  int terminal = -1;
  winsize size{.ws_row = 24, .ws_col = 60, .ws_xpixel = 0, .ws_ypixel = 0};
  Pty line;
  setenv("TERM", "xterm", 1);
  const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
  if (child == 0) {
    setSignals(0);
    execl(vgpsProgram(), "vgps", "monitor", "--port", line.path().c_str(), nullptr);
    _exit(127);
  }
  std::string screen;
  const auto readUntil = [&](const std::string& text) {
    char buffer[4096];
    pollfd waited{terminal, POLLIN, 0};
    for (int i = 0; i < 500 && !says(screen, text); ++i) {
      if (poll(&waited, 1, 20) <= 0) continue;
      const ssize_t count = read(terminal, buffer, sizeof buffer);
      if (count <= 0) break;
      screen.append(buffer, static_cast<size_t>(count));
    }
    return says(screen, text);
  };
  EXPECT_TRUE(readUntil("waiting for data"));
  line.write(kGga + kRmc);
  EXPECT_TRUE(readUntil("Position    48.117300 N  11.516667 E"));
  EXPECT_TRUE(readUntil("\x1b[17A")) << screen;
  EXPECT_FALSE(says(screen, "\x1b[?25h"));
  ASSERT_EQ(write(terminal, "\x03", 1), 1);
  EXPECT_TRUE(readUntil("\x1b[?25h"));
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  ::close(terminal);
}

// Sanitizers have work of their own to do, so this is measured in the program as it is used.
TEST(Monitor, IdleItCostsNextToNothing) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "measured in the optimised build";
#endif
  const TestFolder folder;
  Pty silent;
  auto unplugged = std::make_unique<Pty>(folder / "unplugged");
  struct Row {
    const char* about;
    std::string port;
    std::unique_ptr<Program> program{};
    double before = 0;
  };
  Row rows[] = {{"a silent port", silent.path()},
                {"no such port", folder / "none"},
                {"a port that was unplugged", unplugged->path()}};
  for (Row& row : rows) row.program.reset(new Program({"monitor", "--port", row.port}));
  std::this_thread::sleep_for(milliseconds(300));
  unplugged = nullptr;
  std::this_thread::sleep_for(milliseconds(1200));
  for (Row& row : rows) row.before = row.program->processorMs();
  std::this_thread::sleep_for(milliseconds(2000));
  for (Row& row : rows) {
    const double used = row.program->processorMs() - row.before;
    RecordProperty(row.about, std::to_string(used) + " ms in 2 s");
    EXPECT_LT(used, 10) << row.about;  // half a percent of two seconds
    EXPECT_GT(row.program->processorMs(), 0) << row.about;
  }
}

TEST(Ports, AReasonForEachPort) {
  const TestFolder folder;
  Pty receiver, silent, text, noise, held;
  Program holder({"monitor", "--json", "--port", held.path()});
  EXPECT_TRUE(holder.readUntil([&] { return holder.lastJson().is_object(); }));
  const std::string none = folder / "none";
  std::vector<std::string> words = {"ports", "--json"};
  for (const std::string& port :
       {receiver.path(), silent.path(), text.path(), noise.path(), held.path(), none}) {
    words.insert(words.end(), {"--port", port});
  }
  Program program(words);
  for (int i = 0; i < 4; ++i) {
    std::this_thread::sleep_for(milliseconds(400));
    receiver.write(kRmc + "$GPVTG,1,T\r\n");
    text.write("hello there\r\n");
    noise.write(std::string(50, '\xE5') + std::string(50, '\x02'));
  }
  EXPECT_EQ(program.finish(), 0);
  std::vector<std::string> results;
  const json list = json::parse(program.output, nullptr, false);
  for (const json& port : list) results.push_back(port["result"]);
  EXPECT_EQ(results, (std::vector<std::string>{"found", "no data", "not NMEA", "wrong speed",
                                               "busy", "not there"}));
  EXPECT_EQ(list[0]["talker"], "GP");
  EXPECT_EQ(list[0]["speed"], 9600);
  EXPECT_NEAR(list[0]["sentencesPerSecond"].get<double>(), 8 / 3.0, 0.5);
  for (const json& port : list) EXPECT_NE(port["reason"], "");
}

}  // namespace
}  // namespace vgps
