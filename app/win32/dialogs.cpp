#include "app/win32/dialogs.h"

#include <commctrl.h>

#include <new>

#include "app/desktop/command.h"
#include "app/desktop/dialog_hidden_option.h"
#include "app/win32/dialog_opening.h"
#include "app/win32/dialog_search.h"
#include "app/win32/dialog_view.h"
#include "app/win32/main_window.h"
#include "app/win32/message_parameter.h"
#include "app/win32/night_look.h"
#include "app/win32/out_of_memory.h"
#include "base/number.h"
#include "base/texts.h"
#include "platform/win32/wide.h"
#include "res/dialog_ids.h"

namespace vgps {
namespace {

const DLGTEMPLATE* templateIn(HMODULE module, const wchar_t* name) {
  const HRSRC found = module == nullptr ? nullptr : FindResourceW(module, name, RT_DIALOG);
  const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(module, found);
  return loaded == nullptr ? nullptr : static_cast<const DLGTEMPLATE*>(LockResource(loaded));
}

INT_PTR openLayout(HWND owner, const char* name, HMODULE layouts, DLGPROC procedure, LPARAM data) {
  const HMODULE program = GetModuleHandleW(nullptr);
  const std::wstring wide = wideFromUtf8(name);
  const DLGTEMPLATE* layout = templateIn(layouts, wide.c_str());
  if (layout == nullptr) layout = templateIn(program, wide.c_str());
  if (layout == nullptr) return 0;
  const INT_PTR result = DialogBoxIndirectParamW(program, layout, owner, procedure, data);
  return result < 0 ? 0 : result;
}

// A settings dialog while it is open.
class OpenDialog {
 public:
  OpenDialog(const Dialog& rows, DialogContext& context) : rows_(rows), context_(context) {}

  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(window, DWLP_USER, second);
    auto* const self = addressIn<OpenDialog>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr) return FALSE;
    try {
      return self->handle(window, message, first, second);
    } catch (const std::bad_alloc&) {
      tellOutOfMemory(window);
      return FALSE;
    }
  }

 private:
  INT_PTR handle(HWND window, UINT message, WPARAM first, LPARAM second);
  void open(HWND window);
  void onCommand(uint16_t control, uint16_t notification);
  void confirm();
  void giveUp();
  void startSearch();
  void endSearch(bool stopped);
  void showSearching(bool searching);

  const Dialog& rows_;
  DialogContext& context_;
  HWND window_ = nullptr;
  std::optional<WindowDialogView> view_;
  DialogSearch search_;
  std::string searchCaption_;  // caption of its button in the layout
};

INT_PTR OpenDialog::handle(HWND window, UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_INITDIALOG: open(window); return TRUE;  // the first control gets the keyboard focus
    case WM_COMMAND: onCommand(LOWORD(first), HIWORD(first)); return TRUE;
    case WM_DRAWITEM:
      return view_ && view_->drawColor(*addressIn<const DRAWITEMSTRUCT>(second)) ? TRUE : FALSE;
    case DialogSearch::kTesting:
      if (!search_.isRunning()) return TRUE;  // sent by a search that was stopped
      view_->setText(CONTROL_SEARCH_STATE,
                     textWith(Text::testingPort, decimalText(uint64_t{first})));
      return TRUE;
    case DialogSearch::kEnded: endSearch(false); return TRUE;
    default: return FALSE;
  }
}

void OpenDialog::open(HWND window) {
  window_ = window;
  view_.emplace(window);
  translateDialog(window, rows_.texts);
  fillDialog(rows_, *view_, context_);
  searchCaption_ = view_->text(CONTROL_SEARCH_PORTS);
  if (!context_.beginPortSearch) view_->enable(CONTROL_SEARCH_PORTS, false);
  if (context_.night) darkenDialog(window);
  centerOverOwner(window);
}

void OpenDialog::onCommand(uint16_t control, uint16_t notification) {
  if (control == IDOK) return confirm();
  if (control == IDCANCEL) return giveUp();
  if (notification != BN_CLICKED) return;
  if (pressControl(rows_, *view_, control)) startSearch();
}

// The Enter key gets here even if the button is disabled.
void OpenDialog::confirm() {
  if (search_.isRunning()) return;
  confirmDialog(rows_, *view_, context_);
  EndDialog(window_, IDOK);
}

void OpenDialog::giveUp() {
  search_.end();
  EndDialog(window_, IDCANCEL);
}

void OpenDialog::startSearch() {
  if (search_.isRunning()) return endSearch(true);
  search_.start(window_, context_.beginPortSearch(searchSpeed(*view_)));
  showSearching(true);
}

void OpenDialog::endSearch(bool stopped) {
  if (!search_.isRunning()) return;
  const std::vector<uint32_t> answered = search_.end();
  showSearching(false);
  if (!stopped || !answered.empty()) tellSearchResult(*view_, answered);
}

void OpenDialog::showSearching(bool searching) {
  view_->setText(CONTROL_SEARCH_PORTS, searching ? textOf(Text::stopTesting) : searchCaption_);
  view_->setText(CONTROL_SEARCH_STATE, "");
  view_->enable(CONTROL_SEARCH_PORTS, true);
  view_->enable(IDOK, !searching);
}

// Data of the one-line text prompt.
struct OpenPrompt {
  std::string_view caption;
  std::string_view prompt;
  std::string text;
  bool night = false;
};

// A list and the row that was chosen in it.
struct OpenRows {
  std::string_view caption;
  std::span<const std::string> rows;
  bool night = false;
  std::optional<size_t> chosen;
};

void beginPrompt(HWND window, std::string_view caption, bool night) {
  translateDialog(window, Text{});
  SetWindowTextW(window, wideFromUtf8(caption).c_str());
  if (night) darkenDialog(window);
  centerOverOwner(window);
}

INT_PTR CALLBACK promptProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, second);
    const OpenPrompt& asked = *addressIn<const OpenPrompt>(second);
    beginPrompt(window, asked.caption, asked.night);
    WindowDialogView view(window);
    view.setText(CONTROL_PROMPT, asked.prompt);
    view.setText(CONTROL_PROMPT_TEXT, asked.text);
    SendDlgItemMessageW(window, CONTROL_PROMPT_TEXT, EM_SETSEL, 0, -1);
    return TRUE;
  }
  if (message != WM_COMMAND || (LOWORD(first) != IDOK && LOWORD(first) != IDCANCEL)) return FALSE;
  auto& asked = *addressIn<OpenPrompt>(GetWindowLongPtrW(window, DWLP_USER));
  asked.text = WindowDialogView(window).text(CONTROL_PROMPT_TEXT);
  EndDialog(window, LOWORD(first));
  return TRUE;
}

void fillRows(HWND window, const OpenRows& asked) {
  beginPrompt(window, asked.caption, asked.night);
  const HWND list = GetDlgItem(window, CONTROL_ROWS);
  for (const std::string& row : asked.rows) {
    SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wideFromUtf8(row).c_str()));
  }
  SendMessageW(list, LB_SETCURSEL, 0, 0);
}

// Rows with a check box each, under the title of their column.
struct OpenChecks {
  std::string_view caption;
  std::string_view column;
  std::span<const std::string> rows;
  bool night = false;
  std::vector<size_t> chosen;
};

void fillChecks(HWND window, const OpenChecks& asked) {
  const HWND list = GetDlgItem(window, CONTROL_CHECKED_ROWS);
  ListView_SetExtendedListViewStyle(list, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
  beginPrompt(window, asked.caption, asked.night);
  RECT area{};
  GetClientRect(list, &area);
  std::wstring title = wideFromUtf8(asked.column);
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.pszText = title.data();
  column.cx = area.right - GetSystemMetrics(SM_CXVSCROLL);
  SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  for (size_t i = 0; i < asked.rows.size(); ++i) {
    std::wstring text = wideFromUtf8(asked.rows[i]);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(i);
    item.pszText = text.data();
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
  // The space bar marks nothing unless a row has the focus.
  constexpr UINT kCurrent = LVIS_FOCUSED | LVIS_SELECTED;
  ListView_SetItemState(list, 0, kCurrent, kCurrent);
}

INT_PTR CALLBACK checksProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, second);
    fillChecks(window, *addressIn<const OpenChecks>(second));
    return TRUE;
  }
  if (message != WM_COMMAND || (LOWORD(first) != IDOK && LOWORD(first) != IDCANCEL)) return FALSE;
  auto& asked = *addressIn<OpenChecks>(GetWindowLongPtrW(window, DWLP_USER));
  const HWND list = GetDlgItem(window, CONTROL_CHECKED_ROWS);
  for (size_t i = 0; LOWORD(first) == IDOK && i < asked.rows.size(); ++i) {
    if (ListView_GetCheckState(list, static_cast<int>(i))) asked.chosen.push_back(i);
  }
  return EndDialog(window, LOWORD(first));
}

INT_PTR CALLBACK rowsProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, second);
    fillRows(window, *addressIn<const OpenRows>(second));
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  const bool twice = LOWORD(first) == CONTROL_ROWS && HIWORD(first) == LBN_DBLCLK;
  if (LOWORD(first) == IDCANCEL) return EndDialog(window, IDCANCEL);
  if (LOWORD(first) != IDOK && !twice) return FALSE;
  const LRESULT row = SendDlgItemMessageW(window, CONTROL_ROWS, LB_GETCURSEL, 0, 0);
  auto& asked = *addressIn<OpenRows>(GetWindowLongPtrW(window, DWLP_USER));
  if (row >= 0) asked.chosen = static_cast<size_t>(row);
  return EndDialog(window, IDOK);
}

int runHiddenOption(HWND owner, DialogContext& context, HMODULE layouts) {
  const bool edited = editHiddenOption(
      context.store,
      [&](std::string_view caption, std::string_view prompt, const std::string& text) {
        return askText(owner, caption, prompt, text, {layouts, context.night});
      },
      [&](std::string_view text) {
        MessageBoxW(owner, wideFromUtf8(text).c_str(), programTitle().c_str(),
                    MB_OK | MB_ICONINFORMATION);
      });
  return edited ? IDOK : IDCANCEL;
}

}  // namespace

int runDialog(HWND owner, DialogContext& context, Command command, HMODULE layouts) {
  if (command == Command::hiddenOption) return runHiddenOption(owner, context, layouts);
  const Dialog* const rows = findDialog(command);
  if (rows == nullptr) return 0;
  OpenDialog dialog(*rows, context);
  return static_cast<int>(openLayout(owner, rows->layout, layouts, OpenDialog::procedure,
                                     reinterpret_cast<LPARAM>(&dialog)));
}

std::optional<std::string> askText(HWND owner, std::string_view caption, std::string_view prompt,
                                   const std::string& text, const PromptLook& look) {
  OpenPrompt asked{caption, prompt, text, look.night};
  if (openLayout(owner, "DIALOG_PROMPT", look.layouts, promptProcedure,
                 reinterpret_cast<LPARAM>(&asked)) != IDOK) {
    return std::nullopt;
  }
  return asked.text;
}

std::optional<size_t> chooseRow(HWND owner, std::string_view caption,
                                std::span<const std::string> rows, const PromptLook& look) {
  OpenRows asked{caption, rows, look.night, std::nullopt};
  openLayout(owner, "DIALOG_ROWS", look.layouts, rowsProcedure, reinterpret_cast<LPARAM>(&asked));
  return asked.chosen;
}

std::vector<size_t> chooseRows(HWND owner, std::string_view caption, std::string_view column,
                               std::span<const std::string> rows, const PromptLook& look) {
  OpenChecks asked{caption, column, rows, look.night, {}};
  openLayout(owner, "DIALOG_CHECKED_ROWS", look.layouts, checksProcedure,
             reinterpret_cast<LPARAM>(&asked));
  return asked.chosen;
}

}  // namespace vgps
