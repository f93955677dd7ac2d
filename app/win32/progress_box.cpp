#include "app/win32/progress_box.h"

#include "base/texts.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr ULONGLONG kQuietMs = 1000;
constexpr ULONGLONG kStepMs = 50;

// The compiler's headers do not tie this interface to its identifier.
ComPtr<IProgressDialog> createBox() {
  void* box = nullptr;
  const HRESULT created = CoCreateInstance(CLSID_ProgressDialog, nullptr, CLSCTX_INPROC_SERVER,
                                           IID_IProgressDialog, &box);
  return ComPtr<IProgressDialog>(SUCCEEDED(created) ? static_cast<IProgressDialog*>(box) : nullptr);
}

// False when the program is to end.
bool handleWaitingMessages() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return false;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return true;
}

}  // namespace

bool ProgressBox::show(HWND owner, uint64_t done, uint64_t total) {
  const ULONGLONG now = GetTickCount64();
  if (begin_ == 0) begin_ = last_ = now;
  if (now - last_ < kStepMs) return true;
  last_ = now;
  EnableWindow(owner, FALSE);
  if (box_ == nullptr && now - begin_ >= kQuietMs) {
    box_ = createBox();
    if (box_ != nullptr) {
      box_->SetTitle(wideFromUtf8(textOf(Text::programName)).c_str());
      box_->SetLine(1, wideFromUtf8(textOf(Text::working)).c_str(), FALSE, nullptr);
      const DWORD bar = total == 0 ? PROGDLG_NOPROGRESSBAR : PROGDLG_NORMAL;
      box_->StartProgressDialog(owner, nullptr, PROGDLG_NOMINIMIZE | bar, nullptr);
    }
  }
  if (!handleWaitingMessages()) return false;
  if (box_ == nullptr) return true;
  if (total > 0) box_->SetProgress64(done, total);
  return box_->HasUserCancelled() == FALSE;
}

void ProgressBox::end(HWND owner) {
  if (begin_ == 0) return;
  begin_ = 0;
  // The owner first: otherwise the system gives the focus to another program's window.
  EnableWindow(owner, TRUE);
  if (box_ != nullptr) box_->StopProgressDialog();
  box_.reset();
}

}  // namespace vgps
