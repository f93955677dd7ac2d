#include <gtest/gtest.h>

#include <cstdio>

#include "app/win32/main_window.h"
#include "platform/files.h"
#include "platform/win32/wide.h"
#include "tests/app/win32/clean_end.h"
#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

// The started program, seen from outside.
namespace vgps {
namespace {

TEST(Program, ShowsItsWindow) {
  const ULONGLONG start = GetTickCount64();
  Program program(L"");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  std::printf("first window after %llu ms\n", GetTickCount64() - start);
  EXPECT_EQ(windowText(window), L"Vexa GPS");
  RECT client{};
  GetClientRect(window, &client);
  EXPECT_EQ(client.right, 800);
  EXPECT_EQ(client.bottom, 480);
  EXPECT_TRUE(isResponsive(window));
  EXPECT_EQ(program.dialog(), nullptr) << "nothing to connect to is no failure";
  expectCleanEnd(program, window);
}

TEST(Program, EndsWithItsMessageOpen) {
  Program program(L"--port=COM29");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(waitFor([&] { return program.dialog() != nullptr; }));
  expectCleanEnd(program, window);
}

TEST(Program, ForeignMessagesDoNoHarm) {
  Program program(L"--simulate");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  for (UINT number = WM_USER; number < WM_USER + 0x80; ++number) {
    PostMessageW(window, number, 0, 0);
    PostMessageW(window, number, 0x1234, 0x5678);
  }
  EXPECT_TRUE(isResponsive(window));
  expectCleanEnd(program, window);
}

TEST(Program, ASilentPortCostsNextToNothing) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  for (const wchar_t* arguments : {L"", L"--port COM3"}) {
    Program program(arguments);
    const HWND window = program.window();
    ASSERT_NE(window, nullptr);
    isResponsive(window);
    Sleep(500);  // the start is over
    const double before = program.processorSeconds();
    constexpr DWORD kWatchedMs = 1500;
    Sleep(kWatchedMs);
    const double used = program.processorSeconds() - before;
    std::printf("idle %ls: %.2f %% of a core, %zu kB of memory\n",
                *arguments == 0 ? L"unconnected" : L"on a silent port", used / kWatchedMs * 1e5,
                program.workingSet() / 1024);
    EXPECT_LT(used, 0.3) << "something is spinning";
    expectCleanEnd(program, window);  // while the reader waits for a byte
  }
}

TEST(Program, UnpluggingNeitherHangsNorCrashes) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  Program program(L"--port COM3 --speed 4800");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 5; ++i) {
      line.write(epochText(i));
      Sleep(50);
    }
    line.unplug();
    Sleep(300);
    EXPECT_TRUE(isResponsive(window));
    line.plugIn();
    EXPECT_TRUE(isResponsive(window));
  }
  line.unplug();
  const double before = program.processorSeconds();
  Sleep(1000);
  const double used = program.processorSeconds() - before;
  std::printf("unplugged: %.2f %% of a core\n", used * 100);
  EXPECT_LT(used, 0.3) << "a dead port is asked all the time";
  expectCleanEnd(program, window);
}

TEST(Program, ClosesWhileDataStreamIn) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  for (int round = 0; round < 5; ++round) {
    Program program(L"--port COM3 --speed 115200");
    const HWND window = program.window();
    ASSERT_NE(window, nullptr);
    for (int i = 0; i < 20; ++i) line.write(epochText(i));
    expectCleanEnd(program, window);
  }
}

TEST(Program, CarriesItsResources) {
  const std::string path = programFolder() + "\\VexaGPS.exe";
  const HMODULE module =
      LoadLibraryExW(wideFromUtf8(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(module, nullptr);
  for (const wchar_t* sound : {L"OK", L"ERR2", L"TURN", L"SPD", L"FORBIDDEN"}) {
    EXPECT_NE(FindResourceW(module, sound, L"WAVE"), nullptr) << sound;
  }
  for (const wchar_t* icon :
       {L"ICON_1", L"ICON_RECORD", L"ICON_PLAY", L"ICON_PAUSE", L"ICON_PHOTO"}) {
    EXPECT_NE(FindResourceW(module, icon, RT_GROUP_ICON), nullptr) << icon;
  }
  for (const wchar_t* bitmap : {L"BITMAP_LEFT", L"BITMAP_RIGHT"}) {
    EXPECT_NE(FindResourceW(module, bitmap, RT_BITMAP), nullptr) << bitmap;
  }
  EXPECT_NE(FindResourceW(module, L"FONT_1", RT_RCDATA), nullptr);
  EXPECT_NE(FindResourceW(module, MAKEINTRESOURCEW(1), RT_MANIFEST), nullptr);
  EXPECT_NE(FindResourceW(module, MAKEINTRESOURCEW(1), RT_VERSION), nullptr);
  FreeLibrary(module);
}

}  // namespace
}  // namespace vgps
