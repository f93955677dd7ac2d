#include "app/win32/file_chooser.h"

#include <windows.h>

#include <cderr.h>
#include <commdlg.h>
#include <shlobj.h>

#include <utility>

#include "base/texts.h"
#include "platform/win32/com.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr size_t kLongestPath = 4096;

// Pairs of names and patterns, each terminated by a NUL.
std::wstring filterOf(std::string_view kind, std::string_view pattern,
                      std::span<const FileType> more) {
  std::wstring filter;
  const auto add = [&filter](std::string_view words, std::string_view type) {
    const std::wstring shown = wideFromUtf8(type);
    filter += wideFromUtf8(words) + L" (" + shown + L")" + L'\0' + shown + L'\0';
  };
  add(kind, pattern);
  for (const FileType& type : more) add(type.kind, type.pattern);
  add(textOf(Text::allFiles), "*.*");
  return filter;
}

std::wstring fullPath(const std::string& path) {
  const std::wstring wide = wideFromUtf8(path);
  std::wstring full(kLongestPath, L'\0');
  const DWORD length =
      GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (wide.empty() || length == 0 || length >= full.size()) return {};
  full.resize(length);
  return full;
}

void beginIn(IFileOpenDialog& chooser, const std::string& folder) {
  const std::wstring path = fullPath(folder);
  if (path.empty()) return;
  void* item = nullptr;
  if (FAILED(SHCreateItemFromParsingName(path.c_str(), nullptr, __uuidof(IShellItem), &item)))
    return;  // no such folder: the system chooses where to start
  const ComPtr<IShellItem> owned(static_cast<IShellItem*>(item));
  chooser.SetFolder(owned.get());
}

// "*.kml;*.kmz" as the ending that a typed name gets: "kml".
std::wstring firstEnding(std::string_view pattern) {
  const size_t dot = pattern.find('.');
  if (dot == std::string_view::npos) return {};
  return wideFromUtf8(pattern.substr(dot + 1, pattern.find(';') - dot - 1));
}

// What opening and saving a file have in common. Not copyable: the system's structure points into
// it.
struct FileDialog {
  FileDialog(HWND owner, std::wstring first, std::string_view title, std::wstring filterText)
      : caption(wideFromUtf8(title)), filter(std::move(filterText)), path(std::move(first)) {
    path.resize(kLongestPath, L'\0');
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.lpstrFilter = filter.c_str();
    choice.lpstrFile = path.data();
    choice.nMaxFile = static_cast<DWORD>(path.size());
    if (!caption.empty()) choice.lpstrTitle = caption.c_str();
    choice.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  }
  FileDialog(const FileDialog&) = delete;
  FileDialog& operator=(const FileDialog&) = delete;

  std::wstring caption;
  std::wstring filter;
  std::wstring path;  // the one to begin with, then the chosen one
  OPENFILENAMEW choice{};
};

}  // namespace

std::optional<std::string> chooseNewFileIn(HWND owner, const FileChoice& wanted) {
  FileDialog dialog(owner, wideFromUtf8(wanted.name), wanted.title,
                    filterOf(wanted.kind, wanted.pattern, wanted.more));
  const std::wstring ending = firstEnding(wanted.pattern);
  dialog.choice.lpstrDefExt = ending.c_str();
  dialog.choice.Flags |= OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
  if (GetSaveFileNameW(&dialog.choice) == FALSE) return std::nullopt;
  return utf8FromWide(dialog.path.c_str());
}

std::string documentsFolder() {
  wchar_t path[MAX_PATH] = {};
  const HRESULT found =
      SHGetFolderPathW(nullptr, CSIDL_PERSONAL | CSIDL_FLAG_CREATE, nullptr, 0, path);
  return SUCCEEDED(found) ? utf8FromWide(path) : std::string();
}

std::optional<std::string> chooseExistingFile(HWND owner, std::string_view kind,
                                              std::string_view pattern, const std::string& current,
                                              std::string_view title, const std::string& folder,
                                              std::span<const FileType> more) {
  FileDialog dialog(owner, fullPath(current), title, filterOf(kind, pattern, more));
  const std::wstring begin = fullPath(folder);
  if (!begin.empty()) dialog.choice.lpstrInitialDir = begin.c_str();
  dialog.choice.Flags |= OFN_FILEMUSTEXIST;
  BOOL chosen = GetOpenFileNameW(&dialog.choice);
  // The initial text may not be a valid file name at all.
  if (chosen == FALSE && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
    dialog.path[0] = L'\0';
    chosen = GetOpenFileNameW(&dialog.choice);
  }
  if (chosen == FALSE) return std::nullopt;
  return utf8FromWide(dialog.path.c_str());
}

std::optional<std::string> chooseExistingFolder(HWND owner, const std::string& current) {
  const ComPtr<IFileOpenDialog> chooser = createObject<IFileOpenDialog>(CLSID_FileOpenDialog);
  if (chooser == nullptr) return std::nullopt;
  chooser->SetOptions(FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_NOCHANGEDIR | FOS_PATHMUSTEXIST);
  beginIn(*chooser, current);
  if (FAILED(chooser->Show(owner))) return std::nullopt;
  IShellItem* item = nullptr;
  if (FAILED(chooser->GetResult(&item))) return std::nullopt;
  const ComPtr<IShellItem> owned(item);
  wchar_t* path = nullptr;
  if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &path))) return std::nullopt;
  std::string chosen = utf8FromWide(path);
  CoTaskMemFree(path);
  return chosen;
}

}  // namespace vgps
