#include <gtest/gtest.h>

#include <atomic>

#include "app/desktop/menus.h"
#include "app/win32/message_parameter.h"
#include "display/palette.h"
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

bool isDrawnByTheWindow(HMENU menu) {
  MENUITEMINFOW item{};
  item.cbSize = sizeof item;
  item.fMask = MIIM_FTYPE;
  return GetMenuItemInfoW(menu, 0, TRUE, &item) != FALSE && (item.fType & MFT_OWNERDRAW) != 0;
}

// At night the window draws the items, and the system no longer looks for their letters.
TEST_F(Menu, IsDarkAtNightAndKeepsItsLetters) {
  const HMENU bar = GetMenu(program.window());
  const HMENU view = GetSubMenu(bar, 1);
  postCommand(program.window(), Command::dayColors);
  ASSERT_TRUE(waitFor([&] { return !isDrawnByTheWindow(view); }));
  postCommand(program.window(), Command::nightColors);
  ASSERT_TRUE(waitFor([&] { return isDrawnByTheWindow(bar) && isDrawnByTheWindow(view); }));
  EXPECT_EQ(SendMessageW(program.window(), WM_MENUCHAR, 'v', reinterpret_cast<LPARAM>(bar)),
            MAKELRESULT(1, MNC_EXECUTE));

  const HDC context = CreateCompatibleDC(nullptr);
  const HBITMAP picture = CreateBitmap(200, 20, 1, 32, nullptr);
  const HGDIOBJ before = SelectObject(context, picture);
  DRAWITEMSTRUCT item{};
  item.CtlType = ODT_MENU;
  item.itemID = GetMenuItemID(view, 0);
  item.hDC = context;
  item.rcItem = {0, 0, 200, 20};
  item.itemData = reinterpret_cast<ULONG_PTR>(view);
  EXPECT_NE(SendMessageW(program.window(), WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&item)), 0);
  int ink = 0;
  for (int i = 0; i < 200 * 20; ++i) {
    ink += GetPixel(context, i % 200, i / 200) != nightPalette().panel;
  }
  EXPECT_TRUE(ink > 20 && ink < 2000) << ink;
  SelectObject(context, before);
  DeleteObject(picture);
  DeleteDC(context);
  postCommand(program.window(), Command::dayColors);
  EXPECT_TRUE(waitFor([&] { return !isDrawnByTheWindow(bar); }));
}

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
