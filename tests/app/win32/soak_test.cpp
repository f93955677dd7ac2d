#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "app/session/timers.h"
#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

// Hours of a receiver in minutes: sentences as fast as they are taken, a cable that comes loose,
// recordings that are begun and given up, one screen after the other, dialogs. The numbers of the
// long form come by the environment.
namespace vgps {
namespace {

int fromEnvironment(const char* name, int usual) {
  const char* const text = std::getenv(name);
  return text == nullptr ? usual : std::max(std::atoi(text), 1);
}

// A drive: position, course and satellites change with every epoch.
std::string epoch(int number) {
  char text[300];
  const int minutes = number % 6000;
  std::snprintf(text, sizeof text,
                "$GPGGA,%02d%02d%02d,48%02d.%03d,N,011%02d.%03d,E,1,08,0.9,%d.4,M,46.9,M,,\r\n"
                "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1\r\n"
                "$GPGSV,1,1,04,04,40,083,%02d,05,17,308,41,09,07,344,39,12,22,228,45\r\n"
                "$GPRMC,%02d%02d%02d,A,48%02d.%03d,N,011%02d.%03d,E,022.4,%03d.4,230394,,\r\n",
                number / 3600 % 24, number / 60 % 60, number % 60, minutes / 100,
                minutes % 100 * 10, minutes / 100, minutes % 1000, 400 + number % 300,
                20 + number % 30, number / 3600 % 24, number / 60 % 60, number % 60, minutes / 100,
                minutes % 100 * 10, minutes / 100, minutes % 1000, number % 360);
  return text;
}

constexpr int kSentencesOfAnEpoch = 4;

std::string epochs(int sentences, int& number) {
  std::string bytes;
  for (int i = 0; i < sentences; i += kSentencesOfAnEpoch) bytes += epoch(number++);
  return bytes;
}

struct Size {
  size_t memory = 0;
  DWORD handles = 0;
  DWORD threads = 0;
  DWORD objects = 0;
};

Size sizeOf(const Program& program) {
  return {program.memory().WorkingSetSize, program.handles(), program.threads(),
          program.drawingObjects()};
}

void tell(const char* when, const Size& size) {
  std::printf("%s: %zu kB, %lu handles, %lu threads, %lu drawing objects\n", when,
              size.memory / 1024, size.handles, size.threads, size.objects);
  std::fflush(stdout);
}

class Soak : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(line.isUp());
    ASSERT_NE(window, nullptr);
  }

  void command(Command wanted) const { sendCommand(window, wanted); }

  // On one screen after the other.
  void receive(int sentences) {
    constexpr int kScreens = 10;
    for (int i = 0; i < kScreens; ++i) {
      command(Command::nextScreen);
      ASSERT_TRUE(line.passes(epochs(sentences / kScreens, number)));
      ASSERT_TRUE(isResponsive(window));
    }
  }

  void unplugAndPlugIn() {
    line.unplug();
    Sleep(100);
    line.plugIn();
    ASSERT_TRUE(line.isUp());
    // The timer that looks for the receiver comes a little early: hours are to pass in minutes.
    PostMessageW(window, WM_TIMER, kStatisticsTimer, 0);
  }

  void recordThroughAnUnpluggedReceiver(int sentences) {
    command(Command::startRecording);
    ASSERT_NO_FATAL_FAILURE(receive(sentences / 2));
    ASSERT_NO_FATAL_FAILURE(unplugAndPlugIn());
    ASSERT_NO_FATAL_FAILURE(receive(sentences / 2));
    postCommand(window, Command::endRecording);
    const HWND question = program.messageBox(L"Save the track?");
    ASSERT_NE(question, nullptr) << "nothing was recorded";
    ASSERT_TRUE(press(question, IDNO));
    const HWND dialog = openByCommand(window, Command::gpsSetup);
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(press(dialog, IDCANCEL));
  }

  SerialLine line;
  Program program{L"--port COM3 --speed 115200"};
  HWND window = program.window();
  int number = 0;
};

TEST_F(Soak, NothingGrowsAndTheReceiverIsFoundAgainEachTime) {
  const int cycles = fromEnvironment("VGPS_SOAK_CYCLES", 2);
  const int sentences = fromEnvironment("VGPS_SOAK_SENTENCES", 2000);
  Size settled;
  for (int cycle = 0; cycle < cycles; ++cycle) {
    SCOPED_TRACE(cycle);
    ASSERT_NO_FATAL_FAILURE(recordThroughAnUnpluggedReceiver(sentences));
    if (cycle == cycles / 5) tell("settled", settled = sizeOf(program));
    constexpr int kLong = 50;
    if (cycles >= kLong && cycle % kLong == kLong - 1) tell("on the way", sizeOf(program));
  }
  const Size after = sizeOf(program);
  tell("after", after);
  EXPECT_LT(after.memory, settled.memory + (4 << 20));
  EXPECT_LE(after.handles, settled.handles + 4);
  EXPECT_LE(after.threads, settled.threads + 1) << "a sound has a thread of its own for a moment";
  // Fonts are kept by their size, up to a limit that a short run does not reach.
  EXPECT_LE(after.objects, settled.objects + (cycles < 50 ? 200 : 4));
  for (const DWORD counted : {after.handles, after.objects}) EXPECT_GT(counted, 0U) << "not told";
  EXPECT_EQ(program.close(), 0);
}

}  // namespace
}  // namespace vgps
