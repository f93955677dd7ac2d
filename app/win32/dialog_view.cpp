#include "app/win32/dialog_view.h"

#include <commdlg.h>

#include "app/win32/file_chooser.h"
#include "app/win32/main_window.h"
#include "app/win32/program_sounds.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

bool isComboBox(HWND control) {
  wchar_t name[16] = L"";
  GetClassNameW(control, name, std::size(name));
  return lstrcmpiW(name, L"ComboBox") == 0;
}

COLORREF halfway(COLORREF one, COLORREF other) {
  return RGB((GetRValue(one) + GetRValue(other)) / 2, (GetGValue(one) + GetGValue(other)) / 2,
             (GetBValue(one) + GetBValue(other)) / 2);
}

// The longest item decides, so that a port's name is not cut off; the box itself stays.
void widenDropDown(HWND box, std::span<const std::string> items) {
  const HDC context = GetDC(box);
  if (context == nullptr) return;
  const HGDIOBJ before = SelectObject(
      context, reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));  // NOLINT
  LONG widest = 0;
  for (const std::string& item : items) {
    const std::wstring wide = wideFromUtf8(item);
    SIZE size{};
    GetTextExtentPoint32W(context, wide.c_str(), static_cast<int>(wide.size()), &size);
    widest = std::max(widest, size.cx);
  }
  SelectObject(context, before);
  ReleaseDC(box, context);
  const LONG edges = GetSystemMetrics(SM_CXVSCROLL) + 4 * GetSystemMetrics(SM_CXEDGE);
  const LONG width = widest + edges;
  SendMessageW(box, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(width), 0);
}

}  // namespace

bool WindowDialogView::has(uint16_t number) { return control(number) != nullptr; }

void WindowDialogView::setText(uint16_t number, std::string_view text) {
  SetDlgItemTextW(dialog_, number, wideFromUtf8(text).c_str());
}

std::string WindowDialogView::text(uint16_t number) {
  const HWND window = control(number);
  if (window == nullptr) return {};
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return utf8FromWide(text);
}

void WindowDialogView::limitText(uint16_t number, size_t units) {
  const HWND window = control(number);
  SendMessageW(window, isComboBox(window) ? CB_LIMITTEXT : EM_SETLIMITTEXT, units, 0);
}

void WindowDialogView::setChecked(uint16_t number, bool checked) {
  CheckDlgButton(dialog_, number, checked ? BST_CHECKED : BST_UNCHECKED);
}

bool WindowDialogView::checked(uint16_t number) {
  return IsDlgButtonChecked(dialog_, number) == BST_CHECKED;
}

void WindowDialogView::setItems(uint16_t number, std::span<const std::string> items) {
  const HWND box = control(number);
  SendMessageW(box, CB_RESETCONTENT, 0, 0);
  for (const std::string& item : items) {
    SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wideFromUtf8(item).c_str()));
  }
  widenDropDown(box, items);
}

void WindowDialogView::select(uint16_t number, int item) {
  SendMessageW(control(number), CB_SETCURSEL, static_cast<WPARAM>(item), 0);
}

int WindowDialogView::selected(uint16_t number) {
  return static_cast<int>(SendMessageW(control(number), CB_GETCURSEL, 0, 0));
}

void WindowDialogView::setColor(uint16_t number, Color color) {
  colors_[number] = color;
  const HWND window = control(number);
  if (window != nullptr) InvalidateRect(window, nullptr, TRUE);
}

Color WindowDialogView::color(uint16_t number) { return colors_[number]; }

// A disabled control must not keep the keyboard focus.
void WindowDialogView::enable(uint16_t number, bool enabled) {
  const HWND window = control(number);
  if (window == nullptr || (IsWindowEnabled(window) != FALSE) == enabled) return;
  if (!enabled && GetFocus() == window) SendMessageW(dialog_, WM_NEXTDLGCTL, 0, FALSE);
  EnableWindow(window, enabled ? TRUE : FALSE);
}

// The layout may be a language library's, so the dialog grows by the line that it needs.
void WindowDialogView::showNote(std::string_view text) {
  RECT units = {7, 0, 0, 12};  // margin, height of the line
  MapDialogRect(dialog_, &units);
  RECT window{};
  RECT client{};
  GetWindowRect(dialog_, &window);
  GetClientRect(dialog_, &client);
  SetWindowPos(dialog_, nullptr, 0, 0, window.right - window.left,
               window.bottom - window.top + units.bottom, SWP_NOMOVE | SWP_NOZORDER);
  const HWND line = CreateWindowExW(0, L"STATIC", wideFromUtf8(text).c_str(),
                                    WS_CHILD | WS_VISIBLE | SS_LEFT | SS_ENDELLIPSIS, units.left,
                                    client.bottom, client.right - 2 * units.left, units.bottom,
                                    dialog_, nullptr, nullptr, nullptr);
  SendMessageW(line, WM_SETFONT, SendMessageW(dialog_, WM_GETFONT, 0, 0), FALSE);
  // The first that a screen reader comes to.
  SetWindowPos(line, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

std::optional<std::string> WindowDialogView::chooseFile(std::string_view kind,
                                                        std::string_view pattern,
                                                        const std::string& current) {
  return chooseExistingFile(dialog_, kind, pattern, current);
}

std::optional<std::string> WindowDialogView::chooseFolder(const std::string& current) {
  return chooseExistingFolder(dialog_, current);
}

std::optional<Color> WindowDialogView::chooseColor(Color current) {
  CHOOSECOLORW choice{};
  choice.lStructSize = sizeof choice;
  choice.hwndOwner = dialog_;
  choice.rgbResult = current;
  choice.lpCustColors = mixedColors_.data();
  choice.Flags = CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR;
  if (ChooseColorW(&choice) == FALSE) return std::nullopt;
  return choice.rgbResult;
}

void WindowDialogView::playSound(const std::string& file, const char* name) {
  vgps::playSound(file, name);
}

void WindowDialogView::tell(std::string_view text) {
  MessageBoxW(dialog_, wideFromUtf8(text).c_str(), programTitle().c_str(),
              MB_OK | MB_ICONINFORMATION);
}

bool WindowDialogView::drawColor(const DRAWITEMSTRUCT& item) {
  const auto found = colors_.find(static_cast<uint16_t>(item.CtlID));
  if (found == colors_.end()) return false;
  const bool focused = (item.itemState & ODS_FOCUS) != 0;
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  RECT area = item.rcItem;
  const auto ground = SendMessageW(dialog_, WM_CTLCOLORBTN, reinterpret_cast<WPARAM>(item.hDC),
                                   reinterpret_cast<LPARAM>(item.hwndItem));
  FillRect(item.hDC, &area, reinterpret_cast<HBRUSH>(ground));
  FrameRect(item.hDC, &area, GetSysColorBrush(focused ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW));
  const int margin = GetSystemMetrics(SM_CXEDGE) + (pressed ? 2 : 1);
  InflateRect(&area, -margin, -margin);
  const bool disabled = (item.itemState & ODS_DISABLED) != 0;
  const COLORREF face = GetSysColor(COLOR_BTNFACE);
  const HBRUSH brush =
      CreateSolidBrush(disabled ? halfway(found->second, face) : found->second & 0xFFFFFF);
  FillRect(item.hDC, &area, brush);
  DeleteObject(brush);
  // Makes a color visible that resembles the dialog's background.
  FrameRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNSHADOW));
  if (focused && (item.itemState & ODS_NOFOCUSRECT) == 0) DrawFocusRect(item.hDC, &item.rcItem);
  return true;
}

}  // namespace vgps
