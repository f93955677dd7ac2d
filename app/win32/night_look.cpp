#include "app/win32/night_look.h"

// Behind <windows.h>, on which they build.
#include <commctrl.h>
#include <uxtheme.h>

#include <string_view>

#include "app/win32/message_parameter.h"
#include "display/palette.h"

namespace vgps {
namespace {

constexpr UINT_PTR kNightLook = 1;

// The brush lives as long as the program: every dialog uses it again.
HBRUSH panelBrush() {
  static const HBRUSH kBrush = CreateSolidBrush(nightPalette().panel);
  return kBrush;
}

HBRUSH backgroundBrush() {
  static const HBRUSH kBrush = CreateSolidBrush(nightPalette().background);
  return kBrush;
}

LRESULT paintedWith(WPARAM context, HBRUSH brush, Color ground) {
  SetTextColor(addressIn<HDC__>(context), nightPalette().value);
  SetBkColor(addressIn<HDC__>(context), ground);
  return reinterpret_cast<LRESULT>(brush);
}

// A push button in the dialog's colors, as the system would draw it in its own.
void drawButton(const NMCUSTOMDRAW& draw) {
  const Palette& palette = nightPalette();
  const bool enabled = (draw.uItemState & CDIS_DISABLED) == 0;
  const bool pressed = (draw.uItemState & CDIS_SELECTED) != 0;
  const bool focused = (draw.uItemState & CDIS_FOCUS) != 0;
  RECT area = draw.rc;
  SetDCBrushColor(draw.hdc, focused ? palette.label : palette.idle);
  FillRect(draw.hdc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  InflateRect(&area, -1, -1);
  SetDCBrushColor(draw.hdc, pressed ? palette.background : palette.grid);
  FillRect(draw.hdc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  wchar_t text[100] = L"";
  GetWindowTextW(draw.hdr.hwndFrom, text, static_cast<int>(std::size(text)));
  SetBkMode(draw.hdc, TRANSPARENT);
  SetTextColor(draw.hdc, enabled ? palette.value : palette.staleValue);
  const HGDIOBJ before = SelectObject(
      draw.hdc, reinterpret_cast<HFONT>(SendMessageW(draw.hdr.hwndFrom, WM_GETFONT, 0, 0)));
  DrawTextW(draw.hdc, text, -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  SelectObject(draw.hdc, before);
}

bool isOfClass(HWND control, std::wstring_view name) {
  wchar_t own[32] = L"";
  const int length = GetClassNameW(control, own, static_cast<int>(std::size(own)));
  return CompareStringOrdinal(own, length, name.data(), static_cast<int>(name.size()), TRUE) ==
         CSTR_EQUAL;
}

// -1 for what is no button.
LONG buttonKind(HWND control) {
  return isOfClass(control, WC_BUTTONW) ? GetWindowLongW(control, GWL_STYLE) & BS_TYPEMASK : -1;
}

bool isPushButton(HWND control) {
  const LONG kind = buttonKind(control);
  return kind == BS_PUSHBUTTON || kind == BS_DEFPUSHBUTTON;
}

// A group box asks nobody for the color of its caption.
void drawGroup(HWND group) {
  const Palette& palette = nightPalette();
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(group, &paint);
  if (context == nullptr) return;
  const HGDIOBJ before =
      SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(group, WM_GETFONT, 0, 0)));
  wchar_t text[100] = L"";
  GetWindowTextW(group, text, static_cast<int>(std::size(text)));
  RECT area{};
  GetClientRect(group, &area);
  RECT caption{};
  DrawTextW(context, text, -1, &caption, DT_SINGLELINE | DT_CALCRECT);
  RECT frame = area;
  frame.top += caption.bottom / 2;
  SetDCBrushColor(context, palette.idle);
  FrameRect(context, &frame, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  OffsetRect(&caption, caption.bottom / 2 + 2, 0);
  SetBkColor(context, palette.panel);
  SetTextColor(context, palette.label);
  DrawTextW(context, text, -1, &caption, DT_SINGLELINE);
  SelectObject(context, before);
  EndPaint(group, &paint);
}

LRESULT CALLBACK groupProcedure(HWND group, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                DWORD_PTR) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(group, groupProcedure, kNightLook);
  if (message != WM_PAINT) return DefSubclassProc(group, message, first, second);
  drawGroup(group);
  return 0;
}

LRESULT CALLBACK procedure(HWND dialog, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                           DWORD_PTR) {
  const Palette& palette = nightPalette();
  switch (message) {
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: return paintedWith(first, panelBrush(), palette.panel);
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX: return paintedWith(first, backgroundBrush(), palette.background);
    case WM_NOTIFY: {
      const auto& draw = *addressIn<const NMCUSTOMDRAW>(second);
      if (draw.hdr.code != NM_CUSTOMDRAW || !isPushButton(draw.hdr.hwndFrom)) break;
      if (draw.dwDrawStage != CDDS_PREPAINT) break;
      drawButton(draw);
      return CDRF_SKIPDEFAULT;
    }
    case WM_NCDESTROY: RemoveWindowSubclass(dialog, procedure, kNightLook); break;
    default: break;
  }
  return DefSubclassProc(dialog, message, first, second);
}

using SetWindowThemeFunction = HRESULT(WINAPI*)(HWND, LPCWSTR, LPCWSTR);

// Controls in the system's theme take no color from the dialog; without it they do.
BOOL CALLBACK darkenControl(HWND control, LPARAM function) {
  const Palette& palette = nightPalette();
  if (isOfClass(control, WC_LISTVIEWW)) {
    ListView_SetBkColor(control, palette.background);
    ListView_SetTextBkColor(control, palette.background);
    ListView_SetTextColor(control, palette.value);
  } else if (buttonKind(control) == BS_GROUPBOX) {
    SetWindowSubclass(control, groupProcedure, kNightLook, 0);
  } else if (!isPushButton(control)) {
    reinterpret_cast<SetWindowThemeFunction>(function)(control, L"", L"");
    if (isOfClass(control, PROGRESS_CLASSW)) {
      SendMessageW(control, PBM_SETBKCOLOR, 0, palette.background);
      SendMessageW(control, PBM_SETBARCOLOR, 0, palette.good);
    }
  }
  return TRUE;
}

// A library of the system that not every version of it has; never let go again.
template <typename Function>
Function functionOf(const wchar_t* library, const char* name) {
  const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace

void darkenFrame(HWND window, bool dark) {
  using SetAttribute = HRESULT(WINAPI*)(HWND, DWORD, LPCVOID, DWORD);
  constexpr DWORD kUseImmersiveDarkMode = 20;
  static const auto kSet = functionOf<SetAttribute>(L"dwmapi.dll", "DwmSetWindowAttribute");
  const BOOL value = dark ? TRUE : FALSE;
  if (kSet != nullptr) kSet(window, kUseImmersiveDarkMode, &value, sizeof value);
}

void darkenDialog(HWND dialog) {
  static const auto kSetTheme =
      functionOf<SetWindowThemeFunction>(L"uxtheme.dll", "SetWindowTheme");
  if (kSetTheme == nullptr) return;
  darkenFrame(dialog, true);
  SetWindowSubclass(dialog, procedure, kNightLook, 0);
  EnumChildWindows(dialog, darkenControl, reinterpret_cast<LPARAM>(kSetTheme));
}

}  // namespace vgps
