#include <gtest/gtest.h>

#include <cstdio>

#include "app/session/timers.h"
#include "app/win32/finder_dialog.h"
#include "display/readout_layout.h"
#include "library/journal.h"
#include "library/journal_format.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"
#include "res/dialog_ids.h"
#include "res/finder_ids.h"
#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

// From the user's choice of a receiver to the readout, through the program's real windows and a
// real line.
namespace vgps {
namespace {

// Where the readout of the window shows the position.
Rect positionIn(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return layoutReadout({0, 0, static_cast<float>(client.right), static_cast<float>(client.bottom)})
      .position;
}

bool showsAnotherPosition(HWND window, const Picture& before) {
  return waitFor([&] { return Picture::ofWindow(window).differs(positionIn(window), before); });
}

TEST(Connecting, FromTheFirstStartToTheFirstPosition) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  const RegisteredPorts registered{{{L"\\Device\\OfTheTest", L"COM3"}}};
  ProgramInProcess program({});
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  {
    const Receiver receiver(line);
    PostMessageW(buttonOf(window, Command::findReceiver), BM_CLICK, 0, 0);
    HWND search = nullptr;
    ASSERT_TRUE(waitFor([&] { return (search = openDialog()) != nullptr; }));
    const HWND use = GetDlgItem(search, IDOK);
    ASSERT_TRUE(waitFor([&] { return IsWindowEnabled(use) != FALSE; }, 30000)) << "none found";
    const HWND list = GetDlgItem(search, FINDER_LIST);
    const int row = cellText(list, 0, 0) == L"COM3" ? 0 : 1;  // the machine may have one before
    EXPECT_TRUE(cellText(list, row, 2).starts_with(L"NMEA at 9600 baud, talker GP, "))
        << utf8FromWide(cellText(list, row, 2));
    EXPECT_EQ(cellText(list, row, 2).find(L" 0 sentences"), std::wstring::npos);
    ASSERT_TRUE(press(search, IDOK));
    EXPECT_TRUE(waitFor([&] { return !IsWindowVisible(buttonOf(window, Command::findReceiver)); }));
    const Picture before = Picture::ofWindow(window);
    EXPECT_TRUE(showsAnotherPosition(window, before)) << "it has moved on";
  }
  const std::string settings = program.settings();
  EXPECT_NE(settings.find("port=\"COM3\""), std::string::npos) << settings;
  EXPECT_NE(settings.find("speed=\"9600\""), std::string::npos) << settings;
  EXPECT_EQ(program.close(), 0);
}

TEST(Connecting, AReceiverUnpluggedBehindTheSettingsDialogComesBack) {
  const RunFolder folder;
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  Program program(L"--port COM3 -log", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  const auto receives = [&] {
    const auto before = folder.size("gps.log");
    const Receiver receiver(line);
    return waitFor([&] { return folder.size("gps.log") > before; }, 30000);
  };
  EXPECT_TRUE(receives());
  const HWND dialog = openByCommand(program.window(), Command::gpsSetup);
  ASSERT_NE(dialog, nullptr);
  line.unplug();
  // The timer that looks after the connection, a little early.
  for (int i = 0; i < 2; ++i) {
    PostMessageW(window, WM_TIMER, kStatisticsTimer, 0);
    Sleep(150);
  }
  EXPECT_TRUE(isResponsive(window));
  EXPECT_TRUE(isResponsive(dialog));
  line.plugIn();
  ASSERT_TRUE(line.isUp());
  EXPECT_TRUE(receives()) << "it is looked for while the dialog is open";
  EXPECT_TRUE(choose(dialog, CONTROL_BAUD_RATE, L"19200"));
  line.unplug();
  ASSERT_TRUE(press(dialog, IDOK));
  EXPECT_NE(folder.read("vgps.xml").find("speed=\"19200\""), std::string::npos);
  EXPECT_EQ(program.close(), 0);
}

TEST(Connecting, ALineThatNeverEndsIsNoHarm) {
  constexpr size_t kPieces = 160;
  const RunFolder folder;
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  Program program(L"--port COM3", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  sendCommand(window, Command::viewRawLog);
  const std::string piece(64 * 1024, 'A');
  // First as a sentence that does not end; its rest, when that was given up, as bytes that are
  // none.
  ASSERT_TRUE(line.passes("$GPRMC,"));
  const size_t before = program.memory().PeakWorkingSetSize;
  for (size_t i = 0; i < kPieces; ++i) {
    ASSERT_TRUE(line.passes(piece)) << i;
    ASSERT_TRUE(isResponsive(window)) << i;
  }
  EXPECT_LT(program.memory().PeakWorkingSetSize, before + (6 << 20)) << "of 10 MB";
  ASSERT_TRUE(line.passes("\r\n"));
  // The first good sentence is taken, to the track and so to the screens.
  sendCommand(window, Command::startRecording);
  const Receiver receiver(line);
  EXPECT_TRUE(waitFor([&] { return folder.size(kJournalName) > kJournalStart; }));
  postCommand(window, Command::endRecording);
  const HWND question = program.messageBox(L"Save the track?");
  ASSERT_NE(question, nullptr);
  ASSERT_TRUE(press(question, IDNO));
  EXPECT_EQ(program.close(), 0);
}

}  // namespace
}  // namespace vgps
