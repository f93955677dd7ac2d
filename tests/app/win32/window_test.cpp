#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <mutex>

#include "app/session/app_state.h"
#include "app/win32/main_window.h"
#include "app/win32/message_parameter.h"
#include "app/win32/window_ui_thread.h"
#include "display/palette.h"
#include "display/readout_layout.h"
#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"
#include "tests/fakes/fake_clock.h"

// The window from inside: its messages and what is drawn in it, on a real serial line.
namespace vgps {
namespace {

std::string rmc(const char* time, const char* latitude, const char* knots) {
  return std::string("$GPRMC,") + time + ",A," + latitude + ",N,01131.000,E," + knots +
         ",084.4,230394,003.1,W*6A\r\n";
}

// A window procedure in front of the window's own that writes down what comes.
class Eavesdropper {
 public:
  struct Line {
    std::wstring text;
    LPARAM fix;
    bool sent;
    DWORD thread;
  };

  explicit Eavesdropper(HWND window) : window_(window) {
    current = this;
    original = addressIn<std::remove_pointer_t<WNDPROC>>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }

  // The window's thread may be in `procedure` still, which needs nothing of this object then.
  ~Eavesdropper() {
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original));
    const std::lock_guard lock(mutex);
    current = nullptr;
  }

  std::vector<Line> lines() {
    const std::lock_guard lock(mutex);
    return heard;
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == 0x466) {
      const std::lock_guard lock(mutex);
      if (current != nullptr) {
        current->heard.push_back({addressIn<const wchar_t>(first), second, InSendMessage() != FALSE,
                                  GetCurrentThreadId()});
      }
    }
    return CallWindowProcW(original, window, message, first, second);
  }

  static inline std::mutex mutex;  // of the two below
  static inline Eavesdropper* current = nullptr;
  static inline WNDPROC original = nullptr;
  const HWND window_;
  std::vector<Line> heard;
};

class LiveWindow : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(line.isUp());
    ASSERT_NE(program.window(), nullptr);
  }

  bool changes(const Rect& part, const Picture& before) {
    return waitFor([&] { return Picture::ofWindow(program.window()).differs(part, before); });
  }

  SerialLine line;
  ProgramInProcess program{{"--port", "COM3", "--speed=4800"}};
};

TEST_F(LiveWindow, EachLineIsSentWithTheFix) {
  Eavesdropper eavesdropper(program.window());
  const std::string first = rmc("123519", "4807.038", "022.4");
  line.write(first + "!AIVDM,1,1,,A,x*00\r\n" + "$GPGSA,A,3,01*00\r\n$NOISE\xff\r\n");
  const ULONGLONG written = GetTickCount64();
  ASSERT_TRUE(waitFor([&] { return eavesdropper.lines().size() >= 3; }));
  std::printf("the lines reached the window after %llu ms\n", GetTickCount64() - written);
  const auto lines = eavesdropper.lines();
  const std::string text = first.substr(0, first.size() - 2);
  EXPECT_EQ(lines[0].text, std::wstring(text.begin(), text.end()));
  EXPECT_EQ(lines[1].text, L"$GPGSA,A,3,01*00");
  EXPECT_EQ(lines[2].text, L"$NOISE\xFFFD");
  for (const auto& heard : lines) {
    EXPECT_TRUE(heard.sent) << "the reader must wait";
    EXPECT_EQ(heard.fix, lines[0].fix);
    EXPECT_EQ(heard.thread, GetWindowThreadProcessId(program.window(), nullptr));
  }
  const auto* fix = addressIn<const GpsFix>(lines[0].fix);
  EXPECT_EQ(fix->latitude, 48.117300001780194);
}

TEST_F(LiveWindow, TheReadoutFollowsTheReceiver) {
  RECT client{};
  GetClientRect(program.window(), &client);
  const ReadoutLayout layout =
      layoutReadout({0, 0, static_cast<float>(client.right), static_cast<float>(client.bottom)});
  Picture before = Picture::ofWindow(program.window());
  line.write(rmc("123519", "4807.038", "022.4"));
  EXPECT_TRUE(changes(layout.position, before)) << "the first position";
  EXPECT_TRUE(changes(layout.status, before)) << "from no data to a fix";
  ASSERT_TRUE(waitFor([&] { return changes(layout.speed, before); }));
  before = Picture::ofWindow(program.window());
  Sleep(900);
  line.write(rmc("123520", "4807.040", "022.4"));
  EXPECT_TRUE(changes(layout.position, before)) << "the position has moved";
  before = Picture::ofWindow(program.window());
  Sleep(900);
  line.write(rmc("123521", "4807.040", "033.3"));
  EXPECT_TRUE(changes(layout.speed, before)) << "the speed has changed";
}

TEST_F(LiveWindow, ResizingKeepsThePictureWhole) {
  for (const SIZE size : {SIZE{340, 270}, SIZE{960, 700}}) {
    SetWindowPos(program.window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER);
    RECT client{};
    GetClientRect(program.window(), &client);
    const auto corner = [&] {
      const Picture picture = Picture::ofWindow(program.window());
      return picture.at(picture.width() - 1, picture.height() - 1);
    };
    EXPECT_TRUE(waitFor([&] {
      return corner() == dayPalette().background || corner() == nightPalette().background;
    })) << size.cx;
  }
}

TEST_F(LiveWindow, ADenserScreenGetsTheSuggestedSize) {
  const RECT suggested{10, 20, 10 + 912, 20 + 569};  // within a screen of 1024x768
  SendMessageW(program.window(), WM_DPICHANGED, MAKEWPARAM(144, 144),
               reinterpret_cast<LPARAM>(&suggested));
  RECT window{};
  GetWindowRect(program.window(), &window);
  EXPECT_TRUE(EqualRect(&window, &suggested));
}

TEST(Window, ClosingEndsTheReader) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  for (int round = 0; round < 3; ++round) {
    ProgramInProcess program({"--port", "COM3"});
    ASSERT_NE(program.window(), nullptr);
    line.write(rmc("123519", "4807.038", "022.4"));
    EXPECT_EQ(program.close(), 0);
    // The line is free for the next one only when the reader has let go of it.
    const Handle port(
        CreateFileW(L"\\\\.\\COM3", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(port.isValid());
  }
}

class WindowUiThreads : public testing::Test {
 protected:
  FakeClock clock;
  Sounds sounds;
  WindowUiThread uiThread;
  MainWindow mainWindow;
  AppState app{Platform{clock, sounds, uiThread, mainWindow, makeSerialPort}};
};

TEST_F(WindowUiThreads, ShuttingLetsAWaitingSenderGo) {
  enterTestDesktop();
  const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
  ASSERT_NE(window, nullptr);
  EXPECT_FALSE(uiThread.send({.event = UiEvent::refresh})) << "not open yet";
  uiThread.open(window, app.fix);
  std::atomic<int> answer{-1};
  // This thread handles no messages, so the sender waits.
  std::thread sender([&] { answer = uiThread.send({.event = UiEvent::line, .text = "$GPGGA"}); });
  Sleep(100);
  EXPECT_EQ(answer, -1);
  uiThread.close(2000);
  sender.join();
  EXPECT_EQ(answer, 0) << "the window does not know the message";
  EXPECT_FALSE(uiThread.send({.event = UiEvent::refresh}));
  DestroyWindow(window);
}

// What an earlier reader has on its way is a text or a record by its own protocol, not by that of
// the source opened since: it must not even be looked at.
TEST_F(WindowUiThreads, AMessageOfAnEarlierSourceIsNotRead) {
  app.gps.readers.generation = 2;
  const auto fix = reinterpret_cast<LPARAM>(&app.fix);
  const auto line = reinterpret_cast<WPARAM>(L"$GPRMC");
  for (const auto& [speaking, text] : {std::pair{1U, ""}, {2U, "$GPRMC"}, {0U, "$GPRMC"}}) {
    app.gps.readers.deliveringGeneration = speaking;
    std::string held;
    UiMessage message;
    EXPECT_TRUE(readUiMessage(0x466, line, fix, app.fix, held, message));
    EXPECT_EQ(message.text, text);
    EXPECT_EQ(message.generation, speaking);
  }
}

TEST(Tray, ARightPressOffersAMenu) {
  ProgramInProcess program({});
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  PostMessageW(window, 0x465, 1, WM_RBUTTONUP);
  HWND popup = nullptr;
  ASSERT_TRUE(
      waitFor([&] { return (popup = findWindow(GetCurrentProcessId(), L"#32768")) != nullptr; }));
  constexpr UINT kGetMenu = 0x1E1;  // MN_GETHMENU
  const auto* const menu = addressIn<HMENU__>(SendMessageW(popup, kGetMenu, 0, 0));
  const auto item = [&](UINT place) {
    wchar_t text[64] = L"";
    GetMenuStringW(const_cast<HMENU>(menu), place, text, 64, MF_BYPOSITION);
    return std::wstring(text);
  };
  EXPECT_EQ(item(0), L"&Open");
  EXPECT_EQ(item(2), L"&Connect");
  EXPECT_EQ(item(4), L"E&xit");
  PostMessageW(window, WM_CHAR, L'x', 0);
  EXPECT_TRUE(waitFor([&] { return IsWindow(window) == FALSE; })) << "the program ends";
  EXPECT_EQ(program.close(), 0);
}

}  // namespace
}  // namespace vgps
