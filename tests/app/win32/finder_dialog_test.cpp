#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include "app/win32/finder_dialog.h"
#include "res/finder_ids.h"
#include "tests/app/win32/drive.h"
#include "tests/fakes/speaking_port.h"

// The search for a receiver through its real dialog, on lines of the test's own.
namespace vgps {
namespace {

const std::string kRmc = "$GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

SpeakingPort::Voices voices;

std::vector<PortName> portsOfTheTest() {
  std::vector<PortName> ports;
  for (const auto& [name, voice] : voices) ports.push_back({name, "Test device"});
  return ports;
}

class FinderDialogTest : public testing::Test {
 protected:
  void open() {
    enterTestDesktop();
    thread_ = std::thread([this] {
      enterTestDesktop();
      const INITCOMMONCONTROLSEX controls{sizeof controls,
                                          ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS};
      InitCommonControlsEx(&controls);
      choice = runFinder(GetModuleHandleW(nullptr), nullptr,
                         {.listPorts = portsOfTheTest,
                          .makePort = [] { return std::make_unique<SpeakingPort>(voices); },
                          .times = {.listenMs = 40, .countMs = 10}});
    });
    ASSERT_TRUE(waitFor([&] { return (dialog = openDialog()) != nullptr; }));
  }
  void press(int button) {
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    thread_.join();
  }
  bool canUse() { return IsWindowEnabled(GetDlgItem(dialog, IDOK)) != FALSE; }
  void TearDown() override {
    if (thread_.joinable()) press(IDCANCEL);
  }

  HWND dialog = nullptr;
  std::optional<FoundReceiver> choice;

 private:
  std::thread thread_;
};

TEST_F(FinderDialogTest, TheReceiverFoundIsOfferedAndUsed) {
  voices = {{"COM4", {9600, ""}}, {"COM7", {38400, kRmc}}, {"COM9", {9600, "", PortError::busy}}};
  open();
  ASSERT_TRUE(waitFor([&] { return canUse(); }));
  EXPECT_EQ(cellText(GetDlgItem(dialog, FINDER_LIST), 1, 0), L"COM7");
  EXPECT_EQ(cellText(GetDlgItem(dialog, FINDER_LIST), 1, 1), L"Test device");
  ASSERT_TRUE(waitFor([&] {
    return cellText(GetDlgItem(dialog, FINDER_LIST), 1, 2).starts_with(L"NMEA at 38400 baud");
  }));
  EXPECT_EQ(cellText(GetDlgItem(dialog, FINDER_LIST), 2, 2), L"In use by another program");
  press(IDOK);
  ASSERT_TRUE(choice.has_value());
  EXPECT_EQ(choice->source.port, "COM7");
  EXPECT_EQ(choice->source.speed, 38400U);
  EXPECT_TRUE(choice->atEveryStart);
}

TEST_F(FinderDialogTest, CancelDoesNotWaitForAPortThatIsBeingOpened) {
  constexpr int kOpenMs = 5000;
  voices = {{"COM4", {9600, "", PortError::none, kOpenMs}}};
  open();
  ASSERT_TRUE(waitFor(
      [&] { return cellText(GetDlgItem(dialog, FINDER_LIST), 0, 2).starts_with(L"Listening"); }));
  const ULONGLONG start = GetTickCount64();
  press(IDCANCEL);
  EXPECT_LT(GetTickCount64() - start, kOpenMs / 2);
}

TEST_F(FinderDialogTest, WithoutAReceiverNothingCanBeUsed) {
  voices = {{"COM4", {9600, ""}}};
  open();
  const HWND again = GetDlgItem(dialog, FINDER_AGAIN);
  ASSERT_TRUE(waitFor([&] { return IsWindowEnabled(again) != FALSE; }));
  EXPECT_EQ(cellText(GetDlgItem(dialog, FINDER_LIST), 0, 2), L"No data");
  EXPECT_TRUE(windowText(GetDlgItem(dialog, FINDER_HEADLINE)).starts_with(L"No receiver"));
  EXPECT_FALSE(canUse());

  voices["COM4"] = {115200, kRmc};  // it was switched on
  PostMessageW(dialog, WM_COMMAND, FINDER_AGAIN, 0);
  EXPECT_TRUE(waitFor([&] { return canUse(); }));
  press(IDCANCEL);
  EXPECT_FALSE(choice.has_value());
}

}  // namespace
}  // namespace vgps
