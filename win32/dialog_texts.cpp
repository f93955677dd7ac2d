#include "win32/dialog_texts.h"

#include <string>

#include "app/dialogs.h"
#include "win32/wide.h"

namespace vgps {
namespace {

void translate(HWND window, uint32_t texts) {
  const int length = GetWindowTextLengthW(window);
  if (length <= 0) return;
  std::wstring word(static_cast<size_t>(length) + 1, L'\0');
  word.resize(static_cast<size_t>(GetWindowTextW(window, word.data(), length + 1)));
  const std::string_view text = dialogText(utf8FromWide(word), texts);
  if (!text.empty()) SetWindowTextW(window, wideFromUtf8(text).c_str());
}

}  // namespace

void translateDialog(HWND dialog, uint32_t texts) {
  translate(dialog, texts);
  for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    translate(child, texts);
  }
}

}  // namespace vgps
