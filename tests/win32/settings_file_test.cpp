#include <gtest/gtest.h>

#include <algorithm>

#include "res/dialog_ids.h"
#include "tests/win32/drive.h"
#include "win32/handle.h"
#include "win32/wide.h"

// Settings that cannot be read or written: said, nothing lost, and the program goes on.
namespace vgps {
namespace {

constexpr wchar_t kDamaged[] = L"VGPS.XML is corrupted and can't be loaded!";

bool contains(const RunFolder& folder, std::string_view name, std::string_view text) {
  return folder.read(name).find(text) != std::string::npos;
}

// Chooses a port in the receiver's dialog and confirms.
bool changePort(Program& program, const wchar_t* port) {
  const HWND dialog = openByCommand(program.window(), kSettingsCommand);
  if (!choose(dialog, CONTROL_PORT, port)) return false;
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  return true;
}

// Another program's hold on the file, which lets others do so much with it.
Handle holdSettings(const RunFolder& folder, DWORD share) {
  return Handle(CreateFileW(wideFromUtf8(folder.file("vgps.xml")).c_str(), GENERIC_READ, share,
                            nullptr, OPEN_EXISTING, 0, nullptr));
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

TEST(SettingsFile, ADamagedOneIsToldKeptAndReplaced) {
  const std::string rows[] = {
      "These are notes, not settings.",
      std::string("MZ\0\1\2\3 no text at all \0\0", 24),
      "\xEF\xBB\xBF{\"port\": \"COM7\"}",
  };
  for (const std::string& damaged : rows) {
    SCOPED_TRACE(damaged);
    const RunFolder folder{damaged};
    {
      Program program(L"", &folder);
      const HWND told = program.messageBox(kDamaged);
      ASSERT_NE(told, nullptr);
      ASSERT_TRUE(press(told, IDOK));
      const HWND question = program.messageBox(L"Check for VGPS updates now?");
      ASSERT_NE(question, nullptr) << "as at a first start";
      ASSERT_TRUE(press(question, IDNO));
      ASSERT_TRUE(changePort(program, L"COM11"));
      EXPECT_TRUE(waitFor([&] { return contains(folder, "vgps.xml", "port=\"COM11\""); }));
      EXPECT_EQ(folder.read("vgps.bad"), damaged);
      EXPECT_EQ(program.close(), 0);
    }
    Program again(L"", &folder);
    const HWND question = again.messageBox(L"Check for VGPS updates now?");
    ASSERT_NE(question, nullptr) << "the damage is told once; the starts are counted from now on";
    ASSERT_TRUE(press(question, IDNO));
    EXPECT_TRUE(isResponsive(again.window()));
    EXPECT_EQ(again.dialog(), nullptr);
  }
}

TEST(SettingsFile, OneThatAnotherProgramHoldsIsNotOverwrittenWithDefaults) {
  const std::string before = R"(<root><cfg><vgps upd="20" gfs="7"/></cfg></root>)";
  const RunFolder folder{before};
  Handle held = holdSettings(folder, 0);
  ASSERT_TRUE(held.isValid());
  Program program(L"", &folder);
  const HWND told = dialogThatSays(program, L"Your settings in");
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
  const HWND told = dialogThatSays(program, L"The settings cannot be written");
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
