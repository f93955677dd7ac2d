#include <gtest/gtest.h>

#include "app/desktop/startup.h"
#include "app/win32/language_library.h"
#include "app/win32/main_window.h"
#include "app/win32/message_parameter.h"
#include "app/win32/single_instance.h"
#include "base/texts.h"
#include "platform/files.h"
#include "platform/win32/wide.h"
#include "tests/app/win32/clean_end.h"
#include "tests/app/win32/drive.h"

// How the program starts: the first time, beside another copy, in another language.
namespace vgps {
namespace {

bool isShown(HWND window, Command command) {
  return IsWindowVisible(buttonOf(window, command)) != FALSE;
}

void pressKey(HWND window, WORD key) {
  PostMessageW(window, WM_KEYDOWN, key, 0);
  PostMessageW(window, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

TEST(FirstStart, TheSimulationIsOneKeyAway) {
  Program program(L"");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(isShown(window, Command::findReceiver));
  pressKey(buttonOf(window, Command::findReceiver), VK_TAB);
  pressKey(buttonOf(window, Command::startSimulation), VK_RETURN);
  EXPECT_TRUE(waitFor([&] { return windowText(window) == L"Simulation - Vexa GPS"; }));
  EXPECT_FALSE(isShown(window, Command::findReceiver)) << "a source was chosen";
  EXPECT_FALSE(isShown(window, Command::startSimulation));
  sendCommand(window, Command::disconnect);
  EXPECT_TRUE(isShown(window, Command::startSimulation)) << "and given up again";
  EXPECT_EQ(windowText(window), L"Vexa GPS");
  expectCleanEnd(program, window);
}

TEST(FirstStart, ButtonsStayInsideTheDrawingAreaOfEverySize) {
  Program program(L"");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  const std::pair<Command, SIZE> presets[] = {
      {Command::size240x320, {240, 320}}, {Command::size320x240, {320, 240}},
      {Command::size240x240, {240, 240}}, {Command::size320x320, {320, 320}},
      {Command::size640x480, {640, 480}}, {Command::size320x480, {320, 480}}};
  for (const auto& [command, wanted] : presets) {
    const auto size = static_cast<int>(command);
    sendCommand(window, command);
    RECT client{};
    GetClientRect(window, &client);
    EXPECT_EQ(client.right, wanted.cx) << size;
    EXPECT_EQ(client.bottom, wanted.cy) << size << ": the menu bar takes several lines";
    RECT boxes[2];
    constexpr Command kButtons[] = {Command::findReceiver, Command::startSimulation};
    for (int i = 0; i < 2; ++i) {
      GetWindowRect(buttonOf(window, kButtons[i]), &boxes[i]);
      MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&boxes[i]), 2);
      RECT inside{};
      IntersectRect(&inside, &boxes[i], &client);
      EXPECT_TRUE(EqualRect(&inside, &boxes[i])) << size;
      EXPECT_GE(boxes[i].bottom - boxes[i].top, 24) << size;
    }
    RECT common{};
    EXPECT_FALSE(IntersectRect(&common, &boxes[0], &boxes[1])) << size;
  }
  expectCleanEnd(program, window);
}

TEST(SecondCopy, BringsTheFirstToTheFront) {
  Program first(L"");
  const HWND window = first.window();
  ASSERT_NE(window, nullptr);
  ShowWindow(window, SW_MINIMIZE);
  ASSERT_TRUE(waitFor([&] { return IsIconic(window) != FALSE; }));
  Program second(L"");
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_TRUE(waitFor([&] { return IsIconic(window) == FALSE; }));
  EXPECT_TRUE(first.isRunning());
  expectCleanEnd(first, window);
}

TEST(SecondCopy, OfTwoThatStartAtOnceOneStays) {
  for (int round = 0; round < 3; ++round) {
    Program first(L"");
    Program second(L"");
    EXPECT_TRUE(waitFor([&] { return first.isRunning() != second.isRunning(); }));
    Program& left = first.isRunning() ? first : second;
    const HWND window = left.window();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(left.isRunning());
    expectCleanEnd(left, window);
  }
}

TEST(SecondCopy, AQuestionOfTheFirstIsNoObstacle) {
  Program first(L"");
  const HWND window = first.window();
  ASSERT_NE(window, nullptr);
  postCommand(window, Command::about);
  ASSERT_TRUE(waitFor([&] { return first.dialog() != nullptr; }));
  Program second(L"");
  EXPECT_EQ(second.exitCode(), 0);
  expectCleanEnd(first, window);
}

// A window of the class whose owner answers the query with this.
class Stranger {
 public:
  explicit Stranger(LRESULT answer) {
    enterTestDesktop();
    reply = answer;
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(L"kernel32.dll");
    description.lpszClassName = kMainWindowClass;
    RegisterClassExW(&description);
    window = CreateWindowExW(0, kMainWindowClass, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                             description.hInstance, nullptr);
  }
  ~Stranger() {
    DestroyWindow(window);
    UnregisterClassW(kMainWindowClass, GetModuleHandleW(L"kernel32.dll"));
  }

  HWND window = nullptr;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == instanceQueryMessage()) return reply;
    return DefWindowProcW(window, message, first, second);
  }
  static inline LRESULT reply = 0;
};

// The exit code of a copy that is started while this thread answers its messages; -1 when its
// window comes up.
int exitCodeWhileAnswering(Program& program) {
  int code = -1;
  waitFor([&] {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    code = program.exitCode(0);
    return code >= 0 || program.hasWindow();
  });
  return code;
}

TEST(SecondCopy, OnlyOurAnswerCountsAndInItsLower32Bits) {
  {
    const Stranger stranger(static_cast<LRESULT>(0x12345678FEFEFEFE));
    ASSERT_NE(stranger.window, nullptr);
    Program program(L"");
    EXPECT_EQ(exitCodeWhileAnswering(program), 0);
  }
  const Stranger stranger(0xFEFEFEFF);
  Program program(L"");
  EXPECT_EQ(exitCodeWhileAnswering(program), -1) << "another program of that class";
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  expectCleanEnd(program, window);
}

TEST(Tray, WithoutAnAreaTheProgramRunsAndAPressBringsItUp) {
  Program program(L"");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  ShowWindow(window, SW_MINIMIZE);
  ASSERT_TRUE(waitFor([&] { return IsIconic(window) != FALSE; }));
  PostMessageW(window, 0x465, 1, WM_RBUTTONDOWN);
  PostMessageW(window, 0x465, 1, WM_LBUTTONDOWN);
  EXPECT_TRUE(waitFor([&] { return IsIconic(window) == FALSE; }));
  SendMessageW(window, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
  EXPECT_TRUE(isResponsive(window));
  expectCleanEnd(program, window);
}

TEST(ProgramFont, LeavesNothingBehind) {
  const RunFolder folder;
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  EXPECT_GT(folder.read("vgpsfont.ttf").size(), 1000U);
  expectCleanEnd(program, window);
  EXPECT_FALSE(folder.has("vgpsfont.ttf"));
}

TEST(ProgramFont, AFolderInItsPlaceIsNoHarm) {
  const RunFolder folder;
  CreateDirectoryW(wideFromUtf8(folder / "vgpsfont.ttf").c_str(), nullptr);
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(isResponsive(window));
  EXPECT_EQ(program.dialog(), nullptr);
  expectCleanEnd(program, window);
}

TEST(Language, WithoutALibraryEverythingIsEnglish) {
  for (const char* const file : {"", "missing.dll", "vgps.xml", "..\\bin"}) {
    const LanguageLibrary library(file);
    EXPECT_FALSE(library.isLoaded()) << file;
    EXPECT_EQ(textOf(Text::askToStop), "Stop Recording/Playback?");
  }
}

TEST(Language, TheProgramSpeaksIt) {
  const RunFolder folder{R"(<root><cfg><lang file="test_language.dll"/></cfg></root>)"};
  ASSERT_TRUE(CopyFileW(wideFromUtf8(programFolder() + "\\test_language.dll").c_str(),
                        wideFromUtf8(folder / "test_language.dll").c_str(), FALSE));
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  const HWND question = program.messageBox(L"<710>");
  ASSERT_NE(question, nullptr) << "the reminder of updates";
  press(question, IDNO);
  EXPECT_EQ(windowText(buttonOf(window, Command::findReceiver)), L"<872>");
  expectCleanEnd(program, window);
}

}  // namespace
}  // namespace vgps
