#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "tests/win32/drive.h"
#include "tests/win32/line.h"

// Hours of a receiver in minutes: sentences as fast as they are taken, and a cable that comes
// loose. The numbers of the long form come by the environment.
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
  return {program.workingSet(), program.handles(), program.threads(), program.guiObjects()};
}

void tell(const char* when, const Size& size) {
  std::printf("%s: %zu kB, %lu handles, %lu threads, %lu windows and drawing objects\n", when,
              size.memory / 1024, size.handles, size.threads, size.objects);
  std::fflush(stdout);
}

TEST(Soak, NothingGrowsAndTheReceiverIsFoundAgainEachTime) {
  const int cycles = fromEnvironment("VGPS_SOAK_CYCLES", 2);
  const int sentences = fromEnvironment("VGPS_SOAK_SENTENCES", 4000);
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  Program program(L"--port COM3 --speed 115200");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);

  int number = 0;
  Size settled;
  for (int cycle = 0; cycle <= cycles; ++cycle) {
    ASSERT_TRUE(line.passes(epochs(sentences, number))) << "cycle " << cycle;
    ASSERT_TRUE(isResponsive(window)) << "cycle " << cycle;
    if (cycle == cycles / 5) tell("settled", settled = sizeOf(program));
    if (cycle == cycles) break;
    line.unplug();
    Sleep(100);
    line.plugIn();
    ASSERT_TRUE(line.isUp());
  }
  const Size after = sizeOf(program);
  tell("after", after);
  EXPECT_LT(after.memory, settled.memory + (2 << 20));
  EXPECT_LE(after.handles, settled.handles + 4);
  EXPECT_LE(after.threads, settled.threads);
  EXPECT_LE(after.objects, settled.objects + 4);
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(program.exitCode(), 0);
}

}  // namespace
}  // namespace vgps
