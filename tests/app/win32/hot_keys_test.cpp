#include <gtest/gtest.h>

#include "app/desktop/menus.h"
#include "display/readout_layout.h"
#include "tests/app/win32/drive.h"

// Keys that reach the program wherever the person is at work.
namespace vgps {
namespace {

void sendKeys(std::initializer_list<WORD> keys, DWORD flags) {
  for (const WORD key : keys) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
  }
}

// As from a keyboard: no window is named.
void pressHotKey(char letter) {
  const auto key = static_cast<WORD>(letter);
  sendKeys({VK_CONTROL, VK_SHIFT, VK_MENU, key}, 0);
  sendKeys({key, VK_MENU, VK_SHIFT, VK_CONTROL}, KEYEVENTF_KEYUP);
}

class HotKeys : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(window(), nullptr); }
  HWND window() const { return program.window(); }
  bool is(UINT flag, Command command) const { return (menuState(window(), command) & flag) != 0; }
  bool isRecording() const { return is(MF_GRAYED, Command::startRecording); }

  // What was sent or pressed before has been dealt with when this command has.
  void waitUntilDealtWith() const {
    const bool night = is(MF_CHECKED, Command::nightColors);
    postCommand(window(), night ? Command::dayColors : Command::nightColors);
    ASSERT_TRUE(waitFor([&] { return is(MF_CHECKED, Command::nightColors) != night; }));
  }

  ProgramInProcess program{{}, R"(<root><cfg><vgps upd="20"/><gps simu="1"/></cfg></root>)"};
};

TEST_F(HotKeys, EachDoesItsCommand) {
  const bool night = is(MF_CHECKED, Command::nightColors);
  // The item of the menu that shows what the key has done.
  const struct {
    char letter;
    UINT flag;
    Command item;
    bool set;
  } rows[] = {
      {'R', MF_GRAYED, Command::startRecording, true},
      {'P', MF_CHECKED, Command::pauseOrResume, true},
      {'E', MF_GRAYED, Command::startRecording, false},
      {'V', MF_CHECKED, Command::viewGps, false},
      {'N', MF_CHECKED, Command::nightColors, !night},
      {'C', MF_GRAYED, Command::disconnect, false},
  };
  EXPECT_EQ(std::size(rows) + 1, hotKeyRows().size());
  {
    const Picture before = Picture::ofWindow(window());
    const Rect status = layoutReadout({0, 0, static_cast<float>(before.width()),
                                       static_cast<float>(before.height())})
                            .status;
    pressHotKey('M');
    EXPECT_TRUE(waitFor([&] { return Picture::ofWindow(window()).differs(status, before); }))
        << "says that nothing is recorded";
  }
  for (const auto& row : rows) {
    EXPECT_NE(is(row.flag, row.item), row.set) << row.letter;
    pressHotKey(row.letter);
    EXPECT_TRUE(waitFor([&] { return is(row.flag, row.item) == row.set; })) << row.letter;
  }
}

TEST_F(HotKeys, WaitWhileADialogOrAQuestionIsOpen) {
  const HWND dialog = openByCommand(window(), Command::gpsSetup);
  ASSERT_NE(dialog, nullptr);
  pressHotKey('R');
  waitUntilDealtWith();
  EXPECT_FALSE(isRecording());
  ASSERT_TRUE(press(dialog, IDCANCEL));
  pressHotKey('R');
  ASSERT_TRUE(waitFor([&] { return isRecording(); }));

  PostMessageW(window(), WM_CLOSE, 0, 0);
  HWND question = nullptr;
  ASSERT_TRUE(waitFor([&] { return (question = openDialog()) != nullptr; }));
  pressHotKey('E');
  waitUntilDealtWith();
  EXPECT_TRUE(isRecording());
  ASSERT_TRUE(press(question, IDNO));
  pressHotKey('E');
  EXPECT_TRUE(waitFor([&] { return !isRecording(); }));
}

}  // namespace
}  // namespace vgps
