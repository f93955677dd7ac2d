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

// The processor time of all threads of this process since it started.
double processorSeconds() {
  FILETIME created, ended, kernel, user;
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  const auto ticks = [](const FILETIME& time) {
    return static_cast<double>(static_cast<ULONGLONG>(time.dwHighDateTime) << 32 |
                               time.dwLowDateTime);
  };
  return (ticks(kernel) + ticks(user)) / 1e7;
}

TEST(Program, WithoutDataItCostsNextToNothing) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"unconnected", {}},
      {"on a silent port", {"--port", "COM3"}},
      {"unplugged", {"--port", "COM3", "--speed", "4800"}}};
  for (const auto& [what, arguments] : rows) {
    ProgramInProcess program(arguments);
    const HWND window = program.window();
    ASSERT_NE(window, nullptr);
    for (int round = 0; what == std::string("unplugged") && round < 3; ++round) {
      if (!line.isUp()) line.plugIn();
      for (int i = 0; i < 5; ++i) line.write(epochText(i));
      line.unplug();
      Sleep(300);
      EXPECT_TRUE(isResponsive(window));
    }
    Sleep(500);  // the start is over
    const double before = processorSeconds();
    constexpr DWORD kWatchedMs = 1500;
    Sleep(kWatchedMs);
    const double used = processorSeconds() - before;
    std::printf("idle, %s: %.2f %% of a core\n", what, used / kWatchedMs * 1e5);
    EXPECT_LT(used, 0.3) << what << ": something is spinning";
    EXPECT_EQ(program.close(), 0) << what;
  }
  EXPECT_GT(processorSeconds(), 0) << "not told";
}

TEST(Program, CarriesItsResources) {
  const std::string path = programFolder() + "\\VexaGPS.exe";
  const HMODULE module =
      LoadLibraryExW(wideFromUtf8(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(module, nullptr);
  const std::pair<const wchar_t*, std::vector<const wchar_t*>> rows[] = {
      {L"WAVE", {L"OK", L"ERR2", L"TURN", L"SPD", L"FORBIDDEN"}},
      {RT_GROUP_ICON, {L"ICON_1", L"ICON_RECORD", L"ICON_PLAY", L"ICON_PAUSE", L"ICON_PHOTO"}},
      {RT_BITMAP, {L"BITMAP_LEFT", L"BITMAP_RIGHT"}},
      {RT_RCDATA, {L"FONT_1"}},
      {RT_MANIFEST, {MAKEINTRESOURCEW(1)}},
      {RT_VERSION, {MAKEINTRESOURCEW(1)}}};
  for (const auto& [type, names] : rows) {
    for (const wchar_t* name : names) EXPECT_NE(FindResourceW(module, name, type), nullptr);
  }
  FreeLibrary(module);
}

}  // namespace
}  // namespace vgps
