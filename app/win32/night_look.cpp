#include "app/win32/night_look.h"

// Behind <windows.h>, on which they build.
#include <commctrl.h>
#include <uxtheme.h>

#include <algorithm>
#include <string_view>

#include "app/win32/message_parameter.h"
#include "app/win32/painting.h"
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
  fillArea(draw.hdc, area, focused ? palette.label : palette.idle);
  InflateRect(&area, -1, -1);
  fillArea(draw.hdc, area, pressed ? palette.background : palette.grid);
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
  frameArea(context, frame, palette.idle);
  OffsetRect(&caption, caption.bottom / 2 + 2, 0);
  SetBkColor(context, palette.panel);
  SetTextColor(context, palette.label);
  DrawTextW(context, text, -1, &caption, DT_SINGLELINE);
  SelectObject(context, before);
  EndPaint(group, &paint);
}

void drawHeaderItem(HDC context, HWND header, int index) {
  const Palette& palette = nightPalette();
  RECT area{};
  if (Header_GetItemRect(header, index, &area) == FALSE) return;
  RECT line = {area.right - 1, area.top, area.right, area.bottom};
  fillArea(context, line, palette.idle);
  wchar_t text[100] = L"";
  HDITEMW item{};
  item.mask = HDI_TEXT;
  item.pszText = text;
  item.cchTextMax = static_cast<int>(std::size(text));
  SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
  InflateRect(&area, -3 * GetSystemMetrics(SM_CXEDGE), 0);
  DrawTextW(context, item.pszText, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
}

// The names of a list's columns; the header, too, asks nobody for its colors.
void drawHeader(HWND header) {
  const Palette& palette = nightPalette();
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(header, &paint);
  if (context == nullptr) return;
  RECT area{};
  GetClientRect(header, &area);
  fillArea(context, area, palette.grid);
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, palette.value);
  const HGDIOBJ before =
      SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(header, WM_GETFONT, 0, 0)));
  for (int i = 0; i < Header_GetItemCount(header); ++i) drawHeaderItem(context, header, i);
  SelectObject(context, before);
  EndPaint(header, &paint);
}

// In the system's theme it takes no colors, and without it not everywhere.
void drawProgress(HWND bar) {
  const Palette& palette = nightPalette();
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(bar, &paint);
  if (context == nullptr) return;
  PBRANGE range{};
  SendMessageW(bar, PBM_GETRANGE, FALSE, reinterpret_cast<LPARAM>(&range));
  const int done = static_cast<int>(SendMessageW(bar, PBM_GETPOS, 0, 0)) - range.iLow;
  RECT area{};
  GetClientRect(bar, &area);
  fillArea(context, area, palette.grid);
  area.right = MulDiv(area.right, done, std::max(range.iHigh - range.iLow, 1));
  fillArea(context, area, palette.good);
  EndPaint(bar, &paint);
}

// Controls that are drawn here; the last parameter is their function.
struct DrawnControl {
  std::wstring_view name;
  LONG kind;  // of a button
  void (*draw)(HWND control);
};
constexpr DrawnControl kDrawn[] = {
    {WC_BUTTONW, BS_GROUPBOX, drawGroup},
    {WC_HEADERW, -1, drawHeader},
    {PROGRESS_CLASSW, -1, drawProgress},
};

const DrawnControl* findDrawn(HWND control) {
  const auto* const found =
      std::find_if(std::begin(kDrawn), std::end(kDrawn), [control](const DrawnControl& row) {
        return isOfClass(control, row.name) && buttonKind(control) == row.kind;
      });
  return found == std::end(kDrawn) ? nullptr : found;
}

LRESULT CALLBACK drawnProcedure(HWND control, UINT message, WPARAM first, LPARAM second, UINT_PTR,
                                DWORD_PTR row) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(control, drawnProcedure, kNightLook);
  if (message != WM_PAINT) return DefSubclassProc(control, message, first, second);
  reinterpret_cast<const DrawnControl*>(row)->draw(control);
  return 0;
}

// The row that is selected is bright in the system's colors.
LRESULT drawListRow(NMLVCUSTOMDRAW& draw) {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const HWND list = draw.nmcd.hdr.hwndFrom;
  const auto row = static_cast<int>(draw.nmcd.dwItemSpec);
  const bool selected = (ListView_GetItemState(list, row, LVIS_SELECTED) & LVIS_SELECTED) != 0;
  draw.nmcd.uItemState &= ~UINT{CDIS_SELECTED | CDIS_FOCUS};
  draw.clrText = nightPalette().value;
  draw.clrTextBk = selected ? nightPalette().idle : nightPalette().background;
  return CDRF_NEWFONT;
}

LRESULT drawPart(NMCUSTOMDRAW& draw) {
  if (isOfClass(draw.hdr.hwndFrom, WC_LISTVIEWW)) {
    return drawListRow(reinterpret_cast<NMLVCUSTOMDRAW&>(draw));
  }
  if (!isPushButton(draw.hdr.hwndFrom) || draw.dwDrawStage != CDDS_PREPAINT) return CDRF_DODEFAULT;
  drawButton(draw);
  return CDRF_SKIPDEFAULT;
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
      auto& draw = *addressIn<NMCUSTOMDRAW>(second);
      if (draw.hdr.code != NM_CUSTOMDRAW) break;
      return drawPart(draw);
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
  } else if (const DrawnControl* const drawn = findDrawn(control)) {
    SetWindowSubclass(control, drawnProcedure, kNightLook, reinterpret_cast<DWORD_PTR>(drawn));
  } else if (!isPushButton(control)) {
    reinterpret_cast<SetWindowThemeFunction>(function)(control, L"", L"");
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
