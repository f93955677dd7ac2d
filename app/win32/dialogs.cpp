#include "app/win32/dialogs.h"

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
};

INT_PTR CALLBACK promptProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, second);
    const OpenPrompt& asked = *addressIn<const OpenPrompt>(second);
    translateDialog(window, Text{});
    SetWindowTextW(window, wideFromUtf8(asked.caption).c_str());
    WindowDialogView view(window);
    view.setText(CONTROL_PROMPT, asked.prompt);
    view.setText(CONTROL_PROMPT_TEXT, asked.text);
    centerOverOwner(window);
    return TRUE;
  }
  if (message != WM_COMMAND || (LOWORD(first) != IDOK && LOWORD(first) != IDCANCEL)) return FALSE;
  auto& asked = *addressIn<OpenPrompt>(GetWindowLongPtrW(window, DWLP_USER));
  asked.text = WindowDialogView(window).text(CONTROL_PROMPT_TEXT);
  EndDialog(window, LOWORD(first));
  return TRUE;
}

int runHiddenOption(HWND owner, DialogContext& context, HMODULE layouts) {
  const bool edited = editHiddenOption(
      context.store,
      [&](std::string_view caption, std::string_view prompt, const std::string& text) {
        return askText(owner, caption, prompt, text, layouts);
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
                                   const std::string& text, HMODULE layouts) {
  OpenPrompt asked{caption, prompt, text};
  if (openLayout(owner, "DIALOG_PROMPT", layouts, promptProcedure,
                 reinterpret_cast<LPARAM>(&asked)) != IDOK) {
    return std::nullopt;
  }
  return asked.text;
}

}  // namespace vgps
