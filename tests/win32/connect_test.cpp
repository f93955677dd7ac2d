#include <gtest/gtest.h>

#include <cstdio>

#include "app/timers.h"
#include "display/readout_layout.h"
#include "library/journal.h"
#include "library/journal_format.h"
#include "res/dialog_ids.h"
#include "res/finder_ids.h"
#include "tests/win32/drive.h"
#include "tests/win32/line.h"
#include "win32/finder_dialog.h"
#include "win32/handle.h"
#include "win32/wide.h"

// From the person's choice of a receiver to the read-out, through the program's real windows and a
// real line.
namespace vgps {
namespace {

constexpr UINT kFinderButton = 105;

// Where the read-out of the window has the position.
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
    PostMessageW(GetDlgItem(window, kFinderButton), BM_CLICK, 0, 0);
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
    EXPECT_TRUE(waitFor([&] { return !IsWindowVisible(GetDlgItem(window, kFinderButton)); }));
    const Picture before = Picture::ofWindow(window);
    EXPECT_TRUE(showsAnotherPosition(window, before)) << "it has moved on";
  }
  const std::string settings = program.settings();
  EXPECT_NE(settings.find("port=\"COM3\""), std::string::npos) << settings;
  EXPECT_NE(settings.find("speed=\"9600\""), std::string::npos) << settings;
  EXPECT_EQ(program.close(), 0);
}

TEST(Connecting, AFoundReceiverThatCannotBeKeptIsTold) {
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  const RegisteredPorts registered{{{L"\\Device\\OfTheTest", L"COM3"}}};
  const RunFolder folder;
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  Handle held(CreateFileW(wideFromUtf8(folder.file("vgps.xml")).c_str(), GENERIC_READ,
                          FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(held.isValid());
  const Receiver receiver(line);
  PostMessageW(GetDlgItem(window, kFinderButton), BM_CLICK, 0, 0);
  HWND search = nullptr;
  ASSERT_TRUE(waitFor([&] { return (search = program.dialog()) != nullptr; }));
  ASSERT_TRUE(waitFor([&] { return IsWindowEnabled(GetDlgItem(search, IDOK)) != FALSE; }, 30000));
  PostMessageW(search, WM_COMMAND, IDOK, 0);
  HWND told = nullptr;
  ASSERT_TRUE(waitFor([&] {
    told = program.dialog();
    return told != nullptr &&
           windowText(GetDlgItem(told, 0xFFFF)).starts_with(L"The settings cannot be written");
  }));
  ASSERT_TRUE(press(told, IDOK));
  EXPECT_TRUE(waitFor([&] { return !IsWindowVisible(GetDlgItem(window, kFinderButton)); }))
      << "it is connected for this run";
  EXPECT_EQ(program.close(), 0) << "without a second word";
}

TEST(Connecting, AtTheStartAsTheSettingsSay) {
  const auto folderWith = [](const char* gps, int connect) {
    char text[300];
    std::snprintf(text, sizeof text,
                  R"(<root><cfg><vgps upd="20" lgn="1" agc="%d"/><gps %s/></cfg></root>)", connect,
                  gps);
    return std::make_unique<RunFolder>(text);
  };
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  {
    const auto folder = folderWith(R"(port="COM3" speed="4800")", 1);
    Program program(L"", folder.get());
    ASSERT_NE(program.window(), nullptr);
    const Receiver receiver(line);
    EXPECT_TRUE(waitFor([&] { return folder->size("gps.log") > 0; })) << "nothing was received";
    EXPECT_EQ(program.close(), 0);
  }
  {
    const auto folder = folderWith(R"(port="COM29")", 1);
    Program program(L"", folder.get());
    const HWND told = program.messageBox(L"GPS Opening failed");
    ASSERT_NE(told, nullptr);
    EXPECT_TRUE(press(told, IDOK));
    EXPECT_EQ(program.close(), 0);
  }
  {
    const auto folder = folderWith(R"(port="COM29" simu="1")", 1);
    Program program(L"", folder.get());
    EXPECT_TRUE(waitFor([&] { return windowText(program.window()).starts_with(L"Sim index"); }));
  }
  const auto folder = folderWith(R"(port="COM29")", 0);
  Program program(L"", folder.get());
  ASSERT_NE(program.window(), nullptr);
  EXPECT_TRUE(isResponsive(program.window()));
  EXPECT_EQ(program.dialog(), nullptr) << "it was not to connect";
}

TEST(Connecting, TheSettingsDialogWritesWhatWasConfirmed) {
  const RunFolder folder{
      R"(<root><cfg><vgps upd="20"/><gps port="COM5" speed="4800"/></cfg></root>)"};
  Program program(L"", &folder);
  ASSERT_NE(program.window(), nullptr);
  for (const int button : {IDCANCEL, IDOK}) {
    const HWND dialog = openByCommand(program.window(), kSettingsCommand);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(windowText(GetDlgItem(dialog, CONTROL_PORT)), L"COM5") << button;
    EXPECT_EQ(windowText(GetDlgItem(dialog, CONTROL_BAUD_RATE)), L"4800") << button;
    const std::string before = folder.read("vgps.xml");
    EXPECT_TRUE(choose(dialog, CONTROL_PORT, L"COM17"));
    EXPECT_TRUE(choose(dialog, CONTROL_BAUD_RATE, L"38400"));
    ASSERT_TRUE(press(dialog, button));
    const std::string settings = folder.read("vgps.xml");
    EXPECT_EQ(settings == before, button == IDCANCEL);
    EXPECT_EQ(settings.find("port=\"COM17\"") != std::string::npos, button == IDOK) << settings;
    EXPECT_EQ(settings.find("speed=\"38400\"") != std::string::npos, button == IDOK) << settings;
  }
  const HWND dialog = openByCommand(program.window(), kSettingsCommand);
  EXPECT_EQ(windowText(GetDlgItem(dialog, CONTROL_PORT)), L"COM17");
  EXPECT_EQ(program.close(), 0) << "with its dialog open";
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
  const HWND dialog = openByCommand(program.window(), kSettingsCommand);
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
  constexpr UINT kRawLog = 299;
  const RunFolder folder;
  SerialLine line;
  ASSERT_TRUE(line.isUp());
  Program program(L"--port COM3", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  SendMessageW(window, WM_COMMAND, kRawLog, 0);
  const std::string piece(64 * 1024, 'A');
  // First as a sentence that does not end; its rest, when that was given up, as bytes that are
  // none.
  ASSERT_TRUE(line.passes("$GPRMC,"));
  const size_t before = program.peakWorkingSet();
  for (size_t i = 0; i < kPieces; ++i) {
    ASSERT_TRUE(line.passes(piece)) << i;
    ASSERT_TRUE(isResponsive(window)) << i;
  }
  EXPECT_LT(program.peakWorkingSet(), before + (6 << 20)) << "of 10 MB";
  ASSERT_TRUE(line.passes("\r\n"));
  // The first good sentence is taken, to the track and so to the screens.
  SendMessageW(window, WM_COMMAND, 1202, 0);
  const Receiver receiver(line);
  EXPECT_TRUE(waitFor([&] { return folder.size(kJournalName) > kJournalHeader; }));
  PostMessageW(window, WM_COMMAND, 1204, 0);
  const HWND question = program.messageBox(L"Save the track?");
  ASSERT_NE(question, nullptr);
  ASSERT_TRUE(press(question, IDNO));
  EXPECT_EQ(program.close(), 0);
}

}  // namespace
}  // namespace vgps
