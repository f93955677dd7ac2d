#include <gtest/gtest.h>

#include <atomic>

#include "app/desktop/menus.h"
#include "app/win32/message_parameter.h"
#include "tests/app/win32/drive.h"

// The menu bar of the real window, in the same process: another's menus cannot be read.
namespace vgps {
namespace {

void collect(HMENU menu, std::vector<Command>& items) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const HMENU popup = GetSubMenu(menu, i);
    if (popup != nullptr) {
      collect(popup, items);
    } else if (GetMenuItemID(menu, i) != 0) {
      items.push_back(Command{GetMenuItemID(menu, i)});
    }
  }
}

// Counts the commands that the window has dealt with, whatever opened meanwhile.
class CommandCounter {
 public:
  explicit CommandCounter(HWND window) {
    finished = 0;
    original = addressIn<std::remove_pointer_t<WNDPROC>>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }
  static inline std::atomic<int> finished{0};

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    const LRESULT result = CallWindowProcW(original, window, message, first, second);
    if (message == WM_COMMAND) ++finished;
    return result;
  }
  static inline WNDPROC original = nullptr;
};

class Menu : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(program.window(), nullptr);
    collect(GetMenu(program.window()), items);
  }

  ProgramInProcess program{{}};
  std::vector<Command> items;
};

// Dialogs and questions that open are given up; nothing may hang or end the program.
TEST_F(Menu, EveryItemAnswers) {
  const CommandCounter counter(program.window());
  int sent = 0;
  const auto isAnswered = [&](Command command) {
    postCommand(program.window(), command);
    ++sent;
    return waitFor([&] {
      const HWND dialog = openDialog();
      if (dialog == nullptr) return CommandCounter::finished >= sent;
      for (const WPARAM button : {IDNO, IDCANCEL}) PostMessageW(dialog, WM_COMMAND, button, 0);
      return false;
    });
  };
  for (const Command item : items) {
    if (item == Command::shutdown) continue;
    SCOPED_TRACE(static_cast<int>(item));
    ASSERT_TRUE(isAnswered(item));
    ASSERT_TRUE(isResponsive(program.window()));
  }
  size_t rows = 0;
  for (const MenuRow& row : offeredMenuRows()) rows += row.kind == MenuRow::item;
  EXPECT_EQ(items.size(), rows);
  // What was begun is ended, and nothing is left open.
  EXPECT_TRUE(isAnswered(Command::endRecording));
  EXPECT_TRUE(isAnswered(Command::disconnect));
}

}  // namespace
}  // namespace vgps
