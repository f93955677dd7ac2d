#include <gtest/gtest.h>

#include <algorithm>

#include "platform/win32/handle.h"
#include "platform/win32/wide.h"
#include "res/dialog_ids.h"
#include "tests/app/win32/drive.h"

// Settings that cannot be read or written: said, nothing lost, and the program goes on.
namespace vgps {
namespace {

bool contains(const RunFolder& folder, const std::string& name, std::string_view text) {
  return folder.read(name).find(text) != std::string::npos;
}

// Chooses a port in the receiver's dialog and confirms.
bool changePort(Program& program, const wchar_t* port) {
  const HWND dialog = openByCommand(program.window(), Command::gpsSetup);
  if (!choose(dialog, CONTROL_PORT, port)) return false;
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  return true;
}

// Another program's hold on the file, which lets others do so much with it.
Handle holdSettings(const RunFolder& folder, DWORD share) {
  return Handle(CreateFileW(wideFromUtf8(folder / "vgps.xml").c_str(), GENERIC_READ, share, nullptr,
                            OPEN_EXISTING, 0, nullptr));
}

// The message box whose text begins so; null when none comes.
HWND dialogThatSays(const Program& program, std::wstring_view begin) {
  HWND told = nullptr;
  const bool came = waitFor([&] {
    told = program.dialog();
    return told != nullptr && windowText(GetDlgItem(told, 0xFFFF)).starts_with(begin);
  });
  return came ? told : nullptr;
}

TEST(SettingsFile, OneThatAnotherProgramHoldsIsNotOverwrittenWithDefaults) {
  const std::string before = R"(<root><cfg><vgps upd="20" gfs="7"/></cfg></root>)";
  const RunFolder folder{before};
  Handle held = holdSettings(folder, 0);
  ASSERT_TRUE(held.isValid());
  Program program(L"", &folder);
  const HWND told = dialogThatSays(program, L"Cannot read your settings in");
  ASSERT_NE(told, nullptr);
  held = Handle();
  ASSERT_TRUE(press(told, IDOK));
  ASSERT_TRUE(changePort(program, L"COM11"));
  EXPECT_TRUE(waitFor([&] { return contains(folder, "vgps.xml", "port=\"COM11\""); }));
  EXPECT_TRUE(contains(folder, "vgps.xml", "gfs=\"7\""));
  EXPECT_EQ(program.close(), 0);
}

TEST(SettingsFile, OneThatCanOnlyBeReadIsToldAndStaysAsItIs) {
  const std::string before = R"(<root><cfg><vgps upd="20"/><gps port="COM7"/></cfg></root>)";
  const RunFolder folder{before};
  Handle held = holdSettings(folder, FILE_SHARE_READ);
  ASSERT_TRUE(held.isValid());
  Program program(L"", &folder);
  const HWND window = program.window();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(program.dialog(), nullptr) << "nothing to tell yet";
  ASSERT_TRUE(changePort(program, L"COM11"));
  const HWND told = dialogThatSays(program, L"Cannot write the settings");
  ASSERT_NE(told, nullptr);
  ASSERT_TRUE(press(told, IDOK));
  EXPECT_EQ(folder.read("vgps.xml"), before);
  EXPECT_TRUE(isResponsive(window));
  const auto names = folder.names();
  EXPECT_EQ(names.size(), 3U) << "no half-written file: program, font, settings";

  held = Handle();
  EXPECT_EQ(program.close(), 0);
  EXPECT_TRUE(contains(folder, "vgps.xml", "port=\"COM11\"")) << "kept until it could be written";
}

}  // namespace
}  // namespace vgps
