#include <gtest/gtest.h>
#include <windows.h>

// Behind <windows.h>, on which it builds.
#include <shellapi.h>

#include <mutex>

#include "app/win32/message_parameter.h"
#include "tests/app/win32/drive.h"

// The icon beside the clock, in an area of the test's own. It answers the messages by which Wine's
// shell passes on what programs want of it.
namespace vgps {
namespace {

class TrayArea {
 public:
  TrayArea() {
    current = this;
    thread_ = std::thread([this] { run(); });
    waitFor([this] { return window_ != nullptr; });
  }
  ~TrayArea() {
    PostMessageW(window_, WM_CLOSE, 0, 0);
    thread_.join();
  }

  struct Wish {
    DWORD what;
    HWND window;
    bool tells;  // the name of the program
    bool operator==(const Wish&) const = default;
  };
  std::vector<Wish> wishes() const {
    const std::lock_guard lock(mutex_);
    return wishes_;
  }
  bool hears(size_t count, DWORD what) const {
    return waitFor([&] {
      const auto all = wishes();
      return all.size() >= count && all.back().what == what;
    });
  }

 private:
  void run() {
    enterTestDesktop();
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"Shell_TrayWnd";
    RegisterClassW(&description);
    window_ = CreateWindowExW(0, description.lpszClassName, L"", WS_POPUP, 0, 0, 10, 10, nullptr,
                              nullptr, description.hInstance, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    UnregisterClassW(description.lpszClassName, description.hInstance);
  }

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_COPYDATA) {
      const auto& sent = *addressIn<const COPYDATASTRUCT>(second);
      const std::string_view data(static_cast<const char*>(sent.lpData), sent.cbData);
      constexpr wchar_t kTip[] = L"Vexa GPS";
      const std::string_view tip(reinterpret_cast<const char*>(kTip), sizeof kTip);
      const std::lock_guard lock(current->mutex_);
      current->wishes_.push_back({static_cast<DWORD>(sent.dwData), addressIn<HWND__>(first),
                                  data.find(tip) != std::string_view::npos});
      return TRUE;
    }
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(window, message, first, second);
  }

  static inline TrayArea* current = nullptr;
  std::thread thread_;
  std::atomic<HWND> window_{nullptr};
  mutable std::mutex mutex_;
  std::vector<Wish> wishes_;
};

TEST(Tray, TheIconComesFollowsTheRecordingAndGoes) {
  const TrayArea area;
  Program program(L"");
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  ASSERT_TRUE(area.hears(1, NIM_ADD));
  EXPECT_EQ(area.wishes().front().window, window);
  EXPECT_TRUE(area.wishes().front().tells);
  const size_t before = area.wishes().size();
  sendCommand(window, Command::startRecording);
  EXPECT_TRUE(area.hears(before + 1, NIM_MODIFY)) << "the icon of a recording";
  // The shell was started anew.
  const size_t shown = area.wishes().size();
  SendMessageW(window, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
  EXPECT_TRUE(area.hears(shown + 1, NIM_ADD));
  sendCommand(window, Command::endRecording);
  EXPECT_EQ(program.close(), 0);
  EXPECT_EQ(area.wishes().back().what, DWORD{NIM_DELETE});
}

TEST(Tray, WhoWantsNoIconHasNone) {
  const TrayArea area;
  const RunFolder folder{R"(<root><cfg><vgps upd="20" sti="0"/><track asked="1"/></cfg></root>)"};
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  sendCommand(window, Command::startRecording);
  SendMessageW(window, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
  sendCommand(window, Command::endRecording);
  EXPECT_EQ(program.close(), 0);
  EXPECT_TRUE(area.wishes().empty());
}

}  // namespace
}  // namespace vgps
