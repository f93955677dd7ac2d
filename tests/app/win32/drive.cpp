#include "tests/app/win32/drive.h"

#include <commctrl.h>
#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <iterator>

#include "app/win32/desktop.h"
#include "app/win32/main_window.h"
#include "app/win32/message_parameter.h"
#include "platform/files.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

const std::wstring& desktopName() {
  static const std::wstring name = L"vexa" + std::to_wstring(GetCurrentProcessId());
  return name;
}

// What the system's list of processes says of one. The question for a single process goes
// unanswered on some systems.
SYSTEM_PROCESS_INFORMATION processEntry(DWORD process) {
  std::vector<std::byte> list(1 << 20);
  ULONG length = 0;
  if (NtQuerySystemInformation(SystemProcessInformation, list.data(),
                               static_cast<ULONG>(list.size()), &length) != 0) {
    return {};
  }
  const std::byte* at = list.data();
  for (;;) {
    SYSTEM_PROCESS_INFORMATION entry;
    std::memcpy(&entry, at, sizeof entry);
    if (reinterpret_cast<ULONG_PTR>(entry.UniqueProcessId) == process) return entry;
    if (entry.NextEntryOffset == 0) return {};
    at += entry.NextEntryOffset;
  }
}

}  // namespace

bool waitFor(const std::function<bool()>& ok, DWORD limitMs) {
  const ULONGLONG start = GetTickCount64();
  while (!ok()) {
    if (GetTickCount64() - start > limitMs) return false;
    Sleep(10);
  }
  return true;
}

std::wstring windowText(HWND window) {
  wchar_t text[512] = L"";
  DWORD_PTR length = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text),
                      SMTO_ABORTIFHUNG, 3000, &length);
  return text;
}

bool isResponsive(HWND window) {
  DWORD_PTR answer = 0;
  return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 3000, &answer) != 0;
}

HWND findWindow(DWORD process, const wchar_t* className) {
  struct Search {
    DWORD process;
    const wchar_t* className;
    HWND found;
  } search{process, className, nullptr};
  EnumWindows(
      [](HWND window, LPARAM data) -> BOOL {
        Search& wanted = *addressIn<Search>(data);
        DWORD owner = 0;
        wchar_t name[64] = L"";
        GetWindowThreadProcessId(window, &owner);
        GetClassNameW(window, name, std::size(name));
        if (owner != wanted.process || std::wstring_view(name) != wanted.className ||
            !IsWindowVisible(window)) {
          return TRUE;
        }
        wanted.found = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND openDialog(DWORD process) { return findWindow(process, L"#32770"); }

void sendCommand(HWND window, Command command) {
  SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

void postCommand(HWND window, Command command) {
  PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

HWND buttonOf(HWND window, Command command) {
  return GetDlgItem(window, static_cast<int>(command));
}

HWND openByCommand(HWND window, Command command) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  postCommand(window, command);
  HWND dialog = nullptr;
  waitFor([&] { return (dialog = openDialog(process)) != nullptr && isResponsive(dialog); });
  return dialog;
}

void enterTestDesktop() {
  static const HDESK desktop =
      CreateDesktopW(desktopName().c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  SetThreadDesktop(desktop);
}

RunFolder::RunFolder(const std::string& settings) {
  const std::wstring program = wideFromUtf8(programFolder() + "\\VexaGPS.exe");
  const std::wstring copy = wideFromUtf8(*this / "VexaGPS.exe");
  if (!CreateHardLinkW(copy.c_str(), program.c_str(), nullptr)) {
    CopyFileW(program.c_str(), copy.c_str(), TRUE);
  }
  if (!settings.empty()) write("vgps.xml", settings);
}

uintmax_t RunFolder::size(const std::string& name) const {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  GetFileAttributesExW(wideFromUtf8(*this / name).c_str(), GetFileExInfoStandard, &data);
  return static_cast<uintmax_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
}

Program::Program(const std::wstring& arguments, const RunFolder* folder)
    : job_(CreateJobObjectW(nullptr, nullptr)) {
  enterTestDesktop();
  if (folder == nullptr) {
    ownFolder_ = std::make_unique<RunFolder>();
    folder = ownFolder_.get();
  }
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job_.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  path_ = *folder / "VexaGPS.exe";
  std::wstring command = L"\"" + wideFromUtf8(path_) + L"\" " + arguments;
  std::wstring desktop = desktopName();
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.lpDesktop = desktop.data();
  startup.dwFlags = STARTF_USESTDHANDLES;  // a killed test must not leave its pipes to a child
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                      wideFromUtf8(folder->path()).c_str(), &startup, &process_)) {
    return;
  }
  AssignProcessToJobObject(job_.get(), process_.hProcess);
  ResumeThread(process_.hThread);
}

Program::~Program() {
  job_ = Handle();  // ends the program if it still runs
  WaitForSingleObject(process_.hProcess, 5000);
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

HWND Program::window() {
  HWND found = nullptr;
  waitFor([&] { return (found = findWindow(process_.dwProcessId, kMainWindowClass)) != nullptr; });
  return found;
}

bool Program::hasWindow() const {
  return findWindow(process_.dwProcessId, kMainWindowClass) != nullptr;
}

HWND Program::dialogWith(int control, std::wstring_view text) const {
  HWND found = nullptr;
  const bool says = waitFor([&] {
    found = dialog();
    return found != nullptr && windowText(GetDlgItem(found, control)) == text;
  });
  return says ? found : nullptr;
}

bool press(HWND dialog, int button) {
  PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
  return waitFor([&] { return !IsWindow(dialog); });
}

namespace {

// The menu that holds the item itself.
HMENU menuWith(HMENU menu, UINT command) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    if (GetMenuItemID(menu, i) == command) return menu;
    const HMENU popup = GetSubMenu(menu, i);
    const HMENU found = popup == nullptr ? nullptr : menuWith(popup, command);
    if (found != nullptr) return found;
  }
  return nullptr;
}

}  // namespace

UINT menuState(HWND window, Command command) {
  const auto number = static_cast<UINT>(command);
  const HMENU menu = menuWith(GetMenu(window), number);
  SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), 0);
  return GetMenuState(menu, number, MF_BYCOMMAND);
}

bool choose(HWND dialog, int box, const wchar_t* text) {
  const HWND control = GetDlgItem(dialog, box);
  const LRESULT item = SendMessageW(control, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                    reinterpret_cast<LPARAM>(text));
  if (item == CB_ERR) return false;
  SendMessageW(control, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
  return windowText(control) == text;
}

int Program::close() {
  PostMessageW(window(), WM_CLOSE, 0, 0);
  return exitCode();
}

int Program::exitCode(DWORD limitMs) const {
  DWORD code = 0;
  if (WaitForSingleObject(process_.hProcess, limitMs) != WAIT_OBJECT_0) return -1;
  GetExitCodeProcess(process_.hProcess, &code);
  return static_cast<int>(code);
}

PROCESS_MEMORY_COUNTERS Program::memory() const {
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(process_.hProcess, &memory, sizeof memory);
  return memory;
}

// Counted one by one: the count in the list of processes is that of the places in a table on some
// systems, free ones included.
DWORD openHandles(DWORD process) {
  std::vector<std::byte> list(1 << 20);
  ULONG length = 0;
  if (NtQuerySystemInformation(SystemHandleInformation, list.data(),
                               static_cast<ULONG>(list.size()), &length) != 0) {
    return 0;
  }
  ULONG all = 0;
  std::memcpy(&all, list.data(), sizeof all);
  const std::byte* at = list.data() + offsetof(SYSTEM_HANDLE_INFORMATION, Handle);
  DWORD count = 0;
  for (; all > 0; --all, at += sizeof(SYSTEM_HANDLE_ENTRY)) {
    SYSTEM_HANDLE_ENTRY entry;
    std::memcpy(&entry, at, sizeof entry);
    count += entry.OwnerPid == process;
  }
  return count;
}

DWORD Program::handles() const { return openHandles(process_.dwProcessId); }

DWORD Program::threads() const { return processEntry(process_.dwProcessId).NumberOfThreads; }

// Wine counts none for GetGuiResources. Its table of them is where Windows has it: the process has
// a pointer to it, and an entry that is in use has a type.
DWORD drawingObjects(HANDLE process) {
  if (const DWORD counted = GetGuiResources(process, GR_GDIOBJECTS)) return counted;
  struct Entry {
    uint64_t object;
    uint32_t owner;
    uint16_t unique;
    uint8_t type, flags;
    uint64_t user;
  };
  constexpr size_t kTableInBlock = 0xF8;  // of the process's environment block
  constexpr size_t kPlaces = 0x10000;
  PROCESS_BASIC_INFORMATION about{};
  if (NtQueryInformationProcess(process, ProcessBasicInformation, &about, sizeof about, nullptr)) {
    return 0;
  }
  const void* table = nullptr;
  std::vector<Entry> entries(kPlaces);
  const std::byte* const block =
      static_cast<const std::byte*>(static_cast<void*>(about.PebBaseAddress));
  if (!ReadProcessMemory(process, block + kTableInBlock, &table, sizeof table, nullptr) ||
      !ReadProcessMemory(process, table, entries.data(), kPlaces * sizeof(Entry), nullptr)) {
    return 0;
  }
  return static_cast<DWORD>(std::count_if(entries.begin(), entries.end(),
                                          [](const Entry& entry) { return entry.type != 0; }));
}

ProgramInProcess::ProgramInProcess(std::vector<std::string> arguments, std::string_view settings) {
  enterTestDesktop();
  std::ofstream(programFolder() + "\\vgps.xml", std::ios::binary) << settings;
  thread_ = std::thread([this, arguments = std::move(arguments)] {
    enterTestDesktop();
    result_ = runDesktop(GetModuleHandleW(nullptr), SW_SHOWNORMAL, arguments);
  });
  waitFor(
      [&] { return (window_ = findWindow(GetCurrentProcessId(), kMainWindowClass)) != nullptr; });
}

std::string ProgramInProcess::settings() const {
  std::ifstream in(programFolder() + "\\vgps.xml", std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

int ProgramInProcess::close() {
  if (!thread_.joinable()) return result_;
  PostMessageW(window_, WM_CLOSE, 0, 0);
  thread_.join();
  removeFile(programFolder() + "\\vgps.xml");
  return result_;
}

Picture::Picture(HDC source, const RECT& area)
    : width_(area.right - area.left), height_(area.bottom - area.top) {
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width_, -height_, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const HDC memory = CreateCompatibleDC(source);
  const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width_, height_, source, area.left, area.top, SRCCOPY);
  GdiFlush();
  const auto* bytes = static_cast<const uint8_t*>(bits);
  for (int i = 0; i < width_ * height_; ++i, bytes += 4) {
    pixels_.push_back(bytes[2] | static_cast<Color>(bytes[1]) << 8 |
                      static_cast<Color>(bytes[0]) << 16);
  }
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
}

Picture Picture::ofWindow(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  const HDC context = GetDC(window);
  Picture picture(context, client);
  ReleaseDC(window, context);
  return picture;
}

int Picture::ink(const Rect& area, Color ground) const {
  int count = 0;
  const int right = std::min(static_cast<int>(area.x + area.width), width_);
  const int bottom = std::min(static_cast<int>(area.y + area.height), height_);
  for (int y = static_cast<int>(area.y); y < bottom; ++y) {
    for (int x = static_cast<int>(area.x); x < right; ++x) count += at(x, y) != ground;
  }
  return count;
}

bool Picture::differs(const Rect& area, const Picture& other) const {
  if (width_ != other.width_ || height_ != other.height_) return true;
  const int right = std::min(static_cast<int>(area.x + area.width), width_);
  const int bottom = std::min(static_cast<int>(area.y + area.height), height_);
  for (int y = static_cast<int>(area.y); y < bottom; ++y) {
    for (int x = static_cast<int>(area.x); x < right; ++x) {
      if (at(x, y) != other.at(x, y)) return true;
    }
  }
  return false;
}

}  // namespace vgps
