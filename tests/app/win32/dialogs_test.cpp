#include "app/win32/dialogs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>

#include "app/win32/finder_dialog.h"
#include "app/win32/language_library.h"
#include "app/win32/main_menu.h"
#include "app/win32/message_parameter.h"
#include "base/texts.h"
#include "platform/win32/wide.h"
#include "res/dialog_ids.h"
#include "tests/app/win32/drive.h"
#include "tests/fakes/test_folder.h"
#include "xml/profile.h"

// The real dialogs from their compiled layouts.
namespace vgps {
namespace {

namespace fs = std::filesystem;

constexpr int kFileName = 1148;  // of the system's file dialog

// A settings dialog that is open, on a thread of its own.
class Opened {
 public:
  explicit Opened(const std::function<int()>& run) {
    enterTestDesktop();
    thread_ = std::thread([this, run] {
      enterTestDesktop();
      result_ = run();
    });
    next();
  }
  Opened(DialogContext& context, Command command, HMODULE layouts = nullptr)
      : Opened([&context, command, layouts] {
          return runDialog(nullptr, context, command, layouts);
        }) {}
  ~Opened() { press(IDCANCEL); }

  // Waits for a dialog that is another one than before.
  bool next() {
    const HWND before = window_;
    return waitFor([&] {
      const HWND found = openDialog();
      if (found == nullptr || found == before || !isResponsive(found)) return false;
      window_ = found;
      return true;
    });
  }

  HWND window() const { return window_; }
  HWND control(int number) const { return GetDlgItem(window_, number); }

  void click(int number) const { SendMessageW(control(number), BM_CLICK, 0, 0); }

  int press(int number) {
    if (!thread_.joinable()) return result_;
    PostMessageW(window_, WM_COMMAND, static_cast<WPARAM>(number), 0);
    thread_.join();
    return result_;
  }

 private:
  std::thread thread_;
  HWND window_ = nullptr;
  int result_ = -1;
};

class SettingsDialogs : public testing::Test {
 protected:
  SettingsDialogs() {
    store_.open(folder_ / "vgps.xml");
    settings_ = loadSettings(store_);
  }

  TestFolder folder_;
  ConfigStore store_;
  Settings settings_;
  DialogContext context_{.store = store_,
                         .settings = settings_,
                         .ports = {{"COM3", "Prolific USB-to-Serial Comm Port"}, {"COM27", ""}}};
};

// For a person to look at: with VGPS_TEST_PICTURES, every dialog as a picture in that folder.
void keepPicture(HWND window, const char* name) {
  const char* const folder = std::getenv("VGPS_TEST_PICTURES");
  if (folder == nullptr) return;
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  const Picture picture = Picture::ofWindow(window);
  std::ofstream out(std::string(folder) + "/" + name + ".ppm", std::ios::binary);
  out << "P6\n" << picture.width() << " " << picture.height() << "\n255\n";
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const Color color = picture.at(x, y);
      out.put(static_cast<char>(color)).put(static_cast<char>(color >> 8));
      out.put(static_cast<char>(color >> 16));
    }
  }
}

// What a person sees of a control, and how.
struct Seen {
  HWND window;
  int number;
  RECT area;  // in the dialog
  std::wstring type;
  std::wstring text;
  bool isGroup;
  bool isLabel;
};

std::vector<Seen> controlsOf(HWND dialog) {
  std::vector<Seen> seen;
  for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    Seen one{child, GetDlgCtrlID(child), {}, L"", windowText(child), false, false};
    GetWindowRect(child, &one.area);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&one.area), 2);
    wchar_t name[32] = L"";
    GetClassNameW(child, name, std::size(name));
    one.type = name;
    const LONG style = GetWindowLongW(child, GWL_STYLE);
    one.isGroup = one.type == L"Button" && (style & BS_TYPEMASK) == BS_GROUPBOX;
    one.isLabel = one.type == L"Static";
    seen.push_back(one);
  }
  return seen;
}

// The character behind the "&", in lower case; 0 when there is none.
wchar_t mnemonicOf(const std::wstring& text) {
  const size_t place = text.find(L'&');
  return place == std::wstring::npos || place + 1 == text.size() ? L'\0'
                                                                 : towlower(text[place + 1]);
}

std::wstring withoutMnemonic(std::wstring text) {
  std::erase(text, L'&');
  return text;
}

LONG textWidth(HWND control, const std::wstring& text) {
  const HDC context = GetDC(control);
  const HGDIOBJ before =
      SelectObject(context, addressIn<void>(SendMessageW(control, WM_GETFONT, 0, 0)));
  SIZE size{};
  GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
  SelectObject(context, before);
  ReleaseDC(control, context);
  return size.cx;
}

// What a control needs beside its text, in dialog units.
LONG ornamentOf(const Seen& control) {
  if (control.isLabel) return 0;
  const LONG type = GetWindowLongW(control.window, GWL_STYLE) & BS_TYPEMASK;
  return type == BS_AUTOCHECKBOX || type == BS_AUTORADIOBUTTON ? 12 : 6;
}

LONG pixelsOf(HWND dialog, LONG units) {
  RECT area{0, 0, units, 0};
  MapDialogRect(dialog, &area);
  return area.right;
}

// With a reserve for other systems' fonts, of which a dialog unit is a quarter of the average width
// of a character.
void expectNothingClipped(HWND dialog, const std::vector<Seen>& controls) {
  RECT client{};
  GetClientRect(dialog, &client);
  for (const Seen& control : controls) {
    const std::string name = utf8FromWide(control.text) + " " + std::to_string(control.number);
    EXPECT_LE(pixelsOf(dialog, 6), control.area.left) << name;
    EXPECT_LE(control.area.right, client.right - pixelsOf(dialog, 6)) << name;
    EXPECT_LE(control.area.bottom, client.bottom) << name;
    if (control.type != L"Button" && !control.isLabel) continue;
    const std::wstring text = withoutMnemonic(control.text);
    const auto characters = static_cast<LONG>(text.size());
    const LONG width = control.area.right - control.area.left;
    EXPECT_LE(textWidth(control.window, text) + pixelsOf(dialog, ornamentOf(control)), width)
        << name;
    EXPECT_LE(pixelsOf(dialog, 4 * characters + (control.isGroup ? 0 : ornamentOf(control) - 2)),
              width)
        << name << ": no reserve";
  }
}

void expectNoOverlap(const std::vector<Seen>& controls) {
  for (size_t i = 0; i < controls.size(); ++i) {
    for (size_t k = i + 1; k < controls.size(); ++k) {
      if (controls[i].isGroup || controls[k].isGroup) continue;
      RECT both{};
      EXPECT_FALSE(IntersectRect(&both, &controls[i].area, &controls[k].area))
          << controls[i].number << " " << utf8FromWide(controls[i].text) << " and "
          << controls[k].number << " " << utf8FromWide(controls[k].text);
    }
  }
}

void expectMnemonicsDiffer(const std::vector<Seen>& controls) {
  std::map<wchar_t, std::wstring> taken;
  for (size_t i = 0; i < controls.size(); ++i) {
    const wchar_t key = mnemonicOf(controls[i].text);
    if (key == 0) continue;
    EXPECT_TRUE(taken.emplace(key, controls[i].text).second)
        << utf8FromWide(controls[i].text) << " and " << utf8FromWide(taken[key]);
    if (!controls[i].isLabel) continue;
    ASSERT_LT(i + 1, controls.size());
    EXPECT_TRUE(GetWindowLongW(controls[i + 1].window, GWL_STYLE) & WS_TABSTOP)
        << utf8FromWide(controls[i].text) << " leads to no control";
  }
}

void expectRowsHaveControls(HWND window, const Dialog& dialog) {
  const auto has = [&](int number) {
    EXPECT_NE(GetDlgItem(window, number), nullptr) << dialog.layout << " " << number;
  };
  for (const DialogField& field : dialog.fields) {
    has(field.control);
    if (field.switchControl != 0) has(field.switchControl);
    for (const uint16_t other : field.disables) has(other);
    if (field.kind != FieldKind::radio) continue;
    for (const DialogChoice& choice : field.choices) has(choice.control);
  }
  for (const DialogAction& action : dialog.actions) {
    has(action.control);
    if (action.target != 0) has(action.target);
  }
  has(IDOK);
  has(IDCANCEL);
}

// The Tab key visits what stands further down, or to the right, later; columns and group boxes may
// begin at the top again.
void expectTabOrder(HWND window, const std::vector<Seen>& controls) {
  int lastRow = -1;
  LONG lastLeft = -1;
  for (const Seen& control : controls) {
    if (control.isGroup) lastRow = -1;
    if (control.isGroup || control.isLabel || control.number == IDOK) continue;
    const auto row = static_cast<int>(control.area.top / pixelsOf(window, 5));
    if (row < lastRow) {
      EXPECT_GT(control.area.left, lastLeft) << control.number;
    }
    lastRow = row;
    lastLeft = control.area.left;
  }
  ASSERT_GE(controls.size(), 2u);
  EXPECT_EQ(controls[controls.size() - 2].number, IDOK);
  EXPECT_EQ(controls.back().number, IDCANCEL);
}

TEST_F(SettingsDialogs, LayoutsAreWholeAndReadable) {
  context_.beginPortSearch = [](uint32_t) { return PortSearch(); };
  for (const Dialog& dialog : dialogs()) {
    SCOPED_TRACE(dialog.layout);
    Opened opened(context_, dialog.command);
    ASSERT_NE(opened.window(), nullptr);
    const std::vector<Seen> controls = controlsOf(opened.window());
    expectRowsHaveControls(opened.window(), dialog);
    expectNothingClipped(opened.window(), controls);
    expectNoOverlap(controls);
    expectMnemonicsDiffer(controls);
    expectTabOrder(opened.window(), controls);
    keepPicture(opened.window(), dialog.layout);
  }
}

TEST_F(SettingsDialogs, OkSavesAndCancelDoesNot) {
  for (const bool confirmed : {false, true}) {
    Opened opened(context_, Command::recordingOptions);
    ASSERT_NE(opened.window(), nullptr);
    SetWindowTextW(opened.control(CONTROL_RECORD_SPEED_STEP), L"");
    SetWindowTextW(opened.control(CONTROL_RECORD_ANGLE_STEP), L"25");
    EXPECT_FALSE(IsWindowEnabled(opened.control(CONTROL_EVERY)));
    opened.click(CONTROL_EVERY_ON);
    EXPECT_TRUE(IsWindowEnabled(opened.control(CONTROL_EVERY)));
    SetWindowTextW(opened.control(CONTROL_EVERY), L"4");
    EXPECT_EQ(opened.press(confirmed ? IDOK : IDCANCEL), confirmed ? IDOK : IDCANCEL);
    EXPECT_EQ(folder_.has("vgps.xml"), confirmed);
    EXPECT_EQ(settings_.recordAngle, confirmed ? 25 : 10);
  }
  const Settings stored = loadSettings(store_);
  EXPECT_EQ(stored.recordMinSpeed, 5);
  EXPECT_EQ(stored.recordAngle, 25);
  EXPECT_EQ(stored.recordEvery, 4);
}

TEST_F(SettingsDialogs, ReceiverBoxesShowPortsAndDisable) {
  settings_.port = "COM7";
  ASSERT_TRUE(saveSettings(store_, settings_, SettingGroup::gps));
  Opened opened(context_, Command::gpsSetup);
  ASSERT_NE(opened.window(), nullptr);
  const HWND port = opened.control(CONTROL_PORT);
  EXPECT_EQ(windowText(port), L"COM7");
  EXPECT_EQ(SendMessageW(port, CB_GETCOUNT, 0, 0), 22);
  EXPECT_EQ(windowText(opened.control(CONTROL_BAUD_RATE)), L"9600");
  opened.click(CONTROL_SIMULATE);
  for (const int other : {CONTROL_PORT, CONTROL_BAUD_RATE, CONTROL_GPS_API, CONTROL_SENSOR_API}) {
    EXPECT_FALSE(IsWindowEnabled(opened.control(other))) << other;
  }
  opened.click(CONTROL_SIMULATE);
  SendMessageW(port, CB_SETCURSEL, 0, 0);
  EXPECT_EQ(windowText(port), L"COM3 - Prolific USB-to-Serial Comm Port");
  opened.click(CONTROL_EPOCH_BOTH);
  opened.press(IDOK);
  EXPECT_EQ(settings_.port, "COM3");
  EXPECT_EQ(settings_.epochSentenceSetting, 3);
}

TEST_F(SettingsDialogs, ColorButtonsShowTheirColor) {
  Opened opened(context_, Command::colors);
  ASSERT_NE(opened.window(), nullptr);
  RedrawWindow(opened.window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  const Picture picture = Picture::ofWindow(opened.window());
  for (const auto& [number, color] : {std::pair{CONTROL_COLOUR_SUCCESS, Color{0xFF0000}},
                                      std::pair{CONTROL_COLOUR_FAILURE, Color{0x0000FF}},
                                      std::pair{CONTROL_COLOUR_GRAY, Color{0x969696}}}) {
    RECT area{};
    GetWindowRect(opened.control(number), &area);
    MapWindowPoints(nullptr, opened.window(), reinterpret_cast<POINT*>(&area), 2);
    EXPECT_EQ(picture.at((area.left + area.right) / 2, (area.top + area.bottom) / 2), color)
        << number;
  }
}

// The message box over the dialog.
HWND messageOver(HWND dialog) {
  HWND box = nullptr;
  waitFor([&] {
    box = GetLastActivePopup(dialog);
    return box != dialog && IsWindowVisible(box);
  });
  return box;
}

TEST_F(SettingsDialogs, PortSearchRunsBesideTheDialog) {
  std::atomic<bool> released{false};
  std::atomic<uint32_t> speed{0};
  const auto search = [&](const std::function<bool(uint32_t)>& cancelled) {
    for (uint32_t port = 0; port < 5; ++port) {
      if (cancelled(port)) return std::vector<uint32_t>{};
    }
    waitFor([&] { return released || cancelled(5); });
    return cancelled(5) ? std::vector<uint32_t>{} : std::vector<uint32_t>{3};
  };
  context_.beginPortSearch = [&](uint32_t wanted) {
    speed = wanted;
    return search;
  };
  Opened opened(context_, Command::gpsSetup);
  ASSERT_NE(opened.window(), nullptr);
  opened.click(CONTROL_SEARCH_PORTS);
  EXPECT_TRUE(waitFor([&] {
    return windowText(opened.control(CONTROL_SEARCH_STATE)).starts_with(L"Testing COM");
  }));
  EXPECT_EQ(windowText(opened.control(CONTROL_SEARCH_PORTS)), L"&Stop");
  EXPECT_FALSE(IsWindowEnabled(opened.control(IDOK)));
  EXPECT_EQ(speed, 9600u);
  released = true;
  const HWND box = messageOver(opened.window());
  EXPECT_EQ(windowText(GetDlgItem(box, 0xFFFF)), L"COM3 GPS Found!");
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(waitFor([&] { return IsWindowEnabled(opened.control(IDOK)) != FALSE; }));
  EXPECT_EQ(windowText(opened.control(CONTROL_SEARCH_PORTS)), L"&Find ports");
  EXPECT_EQ(windowText(opened.control(CONTROL_SEARCH_STATE)), L"");
  EXPECT_EQ(windowText(opened.control(CONTROL_PORT)), L"COM3");

  // Stopped: the dialog goes on, silently.
  released = false;
  opened.click(CONTROL_SEARCH_PORTS);
  opened.click(CONTROL_SEARCH_PORTS);
  EXPECT_TRUE(waitFor([&] { return IsWindowEnabled(opened.control(IDOK)) != FALSE; }));
  EXPECT_EQ(GetLastActivePopup(opened.window()), opened.window());

  // Closed while the search hangs in a port: that is left to itself.
  const auto letGo = std::make_shared<std::atomic<bool>>(false);
  const auto gone = std::make_shared<std::atomic<bool>>(false);
  context_.beginPortSearch = [&](uint32_t) {
    return [letGo, gone](const std::function<bool(uint32_t)>& cancelled) {
      waitFor([&] { return letGo->load(); });
      *gone = cancelled(0);
      return std::vector<uint32_t>{3};
    };
  };
  opened.click(CONTROL_SEARCH_PORTS);
  EXPECT_EQ(opened.press(IDCANCEL), IDCANCEL);
  *letGo = true;
  EXPECT_TRUE(waitFor([&] { return gone->load(); }));
}

// A library of a language: a copy of some module with one layout in it.
std::wstring libraryWith(const std::string& path, const wchar_t* name, const wchar_t* layout) {
  wchar_t system[MAX_PATH] = L"";
  GetSystemDirectoryW(system, MAX_PATH);
  const std::wstring wide = wideFromUtf8(path);
  CopyFileW((std::wstring(system) + L"\\version.dll").c_str(), wide.c_str(), FALSE);
  const HMODULE program = GetModuleHandleW(nullptr);
  const HRSRC found = FindResourceW(program, layout, RT_DIALOG);
  const HGLOBAL loaded = LoadResource(program, found);
  const HANDLE update = BeginUpdateResourceW(wide.c_str(), FALSE);
  UpdateResourceW(update, RT_DIALOG, name, 0, LockResource(loaded), SizeofResource(program, found));
  EndUpdateResourceW(update, FALSE);
  return wide;
}

TEST_F(SettingsDialogs, ALanguageLibraryReplacesLayouts) {
  const std::wstring path =
      libraryWith(folder_ / "language.dll", L"DIALOG_DISTANCE", L"DIALOG_SPEED");
  const HMODULE library = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(library, nullptr);
  for (const auto& [command, title] :
       {std::pair{Command::distanceViews, L"Speed"}, std::pair{Command::pursue, L"Pursue"}}) {
    Opened opened(context_, command, library);
    ASSERT_NE(opened.window(), nullptr);
    EXPECT_EQ(windowText(opened.window()), title);
    // The layout lacks the dialog's own controls: nothing of them changes.
    opened.press(IDOK);
  }
  EXPECT_EQ(settings_.longDistanceUnit, 0);
  FreeLibrary(library);
}

// In the library of the test every text is its number in angle brackets.
bool isTranslated(const std::wstring& text) {
  return text.empty() || (text.starts_with(L'<') && text.find(L'>') != std::wstring::npos);
}

void expectTranslated(HWND dialog) {
  EXPECT_TRUE(isTranslated(windowText(dialog))) << utf8FromWide(windowText(dialog));
  for (const Seen& control : controlsOf(dialog)) {
    if (control.type != L"Button" && !control.isLabel) continue;
    EXPECT_TRUE(isTranslated(control.text)) << utf8FromWide(control.text);
  }
}

void expectTranslated(HMENU menu) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    wchar_t text[200] = L"";
    GetMenuStringW(menu, static_cast<UINT>(i), text, std::size(text), MF_BYPOSITION);
    EXPECT_TRUE(isTranslated(text)) << utf8FromWide(text);
    if (const HMENU popup = GetSubMenu(menu, i)) expectTranslated(popup);
  }
}

TEST_F(SettingsDialogs, ALanguageLibraryReplacesEveryWordOfDialogsAndMenus) {
  const LanguageLibrary library("test_language.dll");
  ASSERT_TRUE(library.isLoaded());
  for (const Dialog& dialog : dialogs()) {
    SCOPED_TRACE(dialog.layout);
    Opened opened(context_, dialog.command, library.module());
    ASSERT_NE(opened.window(), nullptr);
    expectTranslated(opened.window());
  }
  {
    Opened prompt(context_, Command::hiddenOption, library.module());
    ASSERT_NE(prompt.window(), nullptr);
    expectTranslated(prompt.window());
  }
  FinderSetup nothing;
  nothing.listPorts = [] { return std::vector<PortName>(); };
  Opened finder([&] { return runFinder(GetModuleHandleW(nullptr), nullptr, nothing) ? 1 : 0; });
  ASSERT_NE(finder.window(), nullptr);
  expectTranslated(finder.window());
  const HMENU menu = createMainMenu();
  expectTranslated(menu);
  DestroyMenu(menu);
}

// Whoever translates opens the program with a resource editor.
TEST(Texts, StandInTheProgram) {
  for (const Text text : allTexts()) {
    const auto number = static_cast<UINT>(text);
    wchar_t stored[4096] = L"";
    LoadStringW(GetModuleHandleW(nullptr), number, stored, std::size(stored));
    EXPECT_EQ(utf8FromWide(stored), textOf(text)) << number;
  }
}

TEST_F(SettingsDialogs, AHiddenOptionIsAskedInTwoSteps) {
  Opened opened(context_, Command::hiddenOption);
  ASSERT_NE(opened.window(), nullptr);
  const HWND first = opened.window();
  EXPECT_EQ(windowText(first), L"Option");
  EXPECT_EQ(windowText(opened.control(CONTROL_PROMPT)), L"Option title:");
  keepPicture(first, "DIALOG_PROMPT");
  SetWindowTextW(opened.control(CONTROL_PROMPT_TEXT), L"zoom");
  PostMessageW(first, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(opened.next());
  EXPECT_EQ(windowText(opened.control(CONTROL_PROMPT)), L"Option value:");
  SetWindowTextW(opened.control(CONTROL_PROMPT_TEXT), L"17");
  EXPECT_EQ(opened.press(IDOK), IDOK);
  ConfigStore other;
  other.open(folder_ / "vgps.xml");
  EXPECT_EQ(other.other("Cfg\\Other", "zoom"), "17");
}

TEST_F(SettingsDialogs, ChoosingAFileLeavesTheCurrentFolder) {
  folder_.write("tone.wav", "RIFF");
  const std::wstring wanted = wideFromUtf8(folder_ / "tone.wav");
  const fs::path before = fs::current_path();
  Opened opened(context_, Command::sounds);
  ASSERT_NE(opened.window(), nullptr);
  for (const int answer : {IDCANCEL, IDOK}) {
    PostMessageW(opened.control(CONTROL_CHOOSE_SOUND_ZONE), BM_CLICK, 0, 0);
    const HWND chooser = messageOver(opened.window());
    ASSERT_TRUE(waitFor([&] { return GetDlgItem(chooser, kFileName) != nullptr; }));
    SetWindowTextW(GetDlgItem(chooser, kFileName), wanted.c_str());
    PostMessageW(chooser, WM_COMMAND, static_cast<WPARAM>(answer), 0);
    ASSERT_TRUE(waitFor([&] { return IsWindowEnabled(opened.window()) != FALSE; }));
    EXPECT_EQ(windowText(opened.control(CONTROL_SOUND_ZONE)), answer == IDOK ? wanted : L"");
  }
  EXPECT_EQ(fs::current_path(), before);
  opened.press(IDOK);
  EXPECT_EQ(settings_.soundZone, utf8FromWide(wanted));
}

TEST_F(SettingsDialogs, CommandsOfNoDialogOpenNone) {
  for (const Command command :
       {Command{}, Command{1900}, Command::waypointAlarms, Command::allOptions}) {
    EXPECT_EQ(runDialog(nullptr, context_, command), 0) << static_cast<int>(command);
  }
}

}  // namespace
}  // namespace vgps
