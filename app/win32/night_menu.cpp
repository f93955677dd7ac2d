#include "app/win32/night_menu.h"

#include <algorithm>
#include <array>
#include <string>

#include "app/win32/painting.h"
#include "display/palette.h"

namespace vgps {
namespace {

constexpr UINT kMenuTextLength = 200;

// Empty for a line, and for a position that the menu does not have.
std::wstring textOfItem(HMENU menu, int position) {
  std::array<wchar_t, kMenuTextLength> text{};
  MENUITEMINFOW info{};
  info.cbSize = sizeof info;
  info.fMask = MIIM_STRING;
  info.dwTypeData = text.data();
  info.cch = kMenuTextLength;
  GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info);
  return text.data();
}

// The menu's own font, as long as the object lives.
class MenuFont {
 public:
  explicit MenuFont(HDC context) : context_(context) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    font_ = CreateFontIndirectW(&metrics.lfMenuFont);
    before_ = SelectObject(context, font_);
  }
  ~MenuFont() {
    SelectObject(context_, before_);
    DeleteObject(font_);
  }
  MenuFont(const MenuFont&) = delete;
  MenuFont& operator=(const MenuFont&) = delete;

 private:
  HDC context_;
  HFONT font_;
  HGDIOBJ before_;
};

// What stands in `dwItemData`: the item's menu. Neither message tells a popup's item from another.
HMENU menuOf(ULONG_PTR data) { return reinterpret_cast<HMENU>(data); }  // NOLINT

int positionOf(HMENU menu, UINT item) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const HMENU popup = GetSubMenu(menu, i);
    const UINT own = popup == nullptr ? GetMenuItemID(menu, i)
                                      : static_cast<UINT>(reinterpret_cast<UINT_PTR>(popup));
    if (own == item) return i;
  }
  return -1;
}

void drawLines(HDC context, const std::array<POINT, 3>& points) {
  const HGDIOBJ before = SelectObject(context, GetStockObject(DC_PEN));
  SetDCPenColor(context, GetTextColor(context));
  Polyline(context, points.data(), static_cast<int>(points.size()));
  SelectObject(context, before);
}

// In the room in front of the words.
void drawTick(HDC context, const RECT& area, int unit) {
  const LONG x = area.left + unit;
  const LONG y = (area.top + area.bottom) / 2;
  drawLines(context, {{{x, y}, {x + unit / 2, y + unit / 2}, {x + 2 * unit, y - unit}}});
}

void drawArrow(HDC context, const RECT& area, int unit) {
  const LONG x = area.right - unit;
  const LONG y = (area.top + area.bottom) / 2;
  drawLines(context, {{{x - unit, y - unit}, {x, y}, {x - unit, y + unit}}});
}

void drawWords(HDC context, const std::wstring& text, RECT area, UINT format) {
  const size_t tab = text.find(L'\t');
  DrawTextW(context, text.c_str(), static_cast<int>(std::min(tab, text.size())), &area, format);
  if (tab == std::wstring::npos) return;
  DrawTextW(context, text.c_str() + tab + 1, -1, &area, (format & ~UINT{DT_LEFT}) | DT_RIGHT);
}

}  // namespace

void darkenMenu(HMENU menu, bool dark) {
  static const HBRUSH kBrush = CreateSolidBrush(nightPalette().panel);
  MENUINFO ground{};
  ground.cbSize = sizeof ground;
  ground.fMask = MIM_BACKGROUND;
  ground.hbrBack = dark ? kBrush : nullptr;
  SetMenuInfo(menu, &ground);
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const auto position = static_cast<UINT>(i);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_SUBMENU;
    if (GetMenuItemInfoW(menu, position, TRUE, &info) == FALSE) continue;
    if (info.hSubMenu != nullptr) darkenMenu(info.hSubMenu, dark);
    info.fMask = MIIM_FTYPE | MIIM_DATA;
    info.fType = dark ? info.fType | MFT_OWNERDRAW : info.fType & ~UINT{MFT_OWNERDRAW};
    info.dwItemData = reinterpret_cast<ULONG_PTR>(menu);
    SetMenuItemInfoW(menu, position, TRUE, &info);
  }
}

bool measureNightMenuItem(HWND window, MEASUREITEMSTRUCT& item) {
  if (item.CtlType != ODT_MENU) return false;
  const HMENU menu = menuOf(item.itemData);
  const HDC context = GetDC(window);
  if (context == nullptr) return false;
  {
    const MenuFont font(context);
    const std::wstring text = textOfItem(menu, positionOf(menu, item.itemID));
    const size_t tab = text.find(L'\t');
    RECT area{};
    DrawTextW(context, text.empty() ? L"x" : text.c_str(), -1, &area,
              DT_SINGLELINE | DT_CALCRECT | DT_EXPANDTABS);
    const LONG height = area.bottom;
    const bool inBar = menu == GetMenu(window);
    item.itemWidth = static_cast<UINT>(area.right + (inBar ? 0 : 2 * height));
    if (tab != std::wstring::npos) item.itemWidth += static_cast<UINT>(height);
    item.itemHeight = static_cast<UINT>(text.empty() ? height / 2 : height * 3 / 2);
  }
  ReleaseDC(window, context);
  return true;
}

bool drawNightMenuItem(HWND window, const DRAWITEMSTRUCT& item) {
  if (item.CtlType != ODT_MENU) return false;
  const Palette& palette = nightPalette();
  const HMENU menu = menuOf(item.itemData);
  const int position = positionOf(menu, item.itemID);
  const std::wstring text = textOfItem(menu, position);
  const HDC context = item.hDC;
  RECT area = item.rcItem;
  const bool selected = (item.itemState & (ODS_SELECTED | ODS_HOTLIGHT)) != 0;
  fillArea(context, area, selected && !text.empty() ? palette.idle : palette.panel);
  if (text.empty()) {
    const LONG middle = (area.top + area.bottom) / 2;
    fillArea(context, {area.left, middle, area.right, middle + 1}, palette.idle);
    return true;
  }
  const MenuFont font(context);
  SetBkMode(context, TRANSPARENT);
  const bool gray = (item.itemState & (ODS_GRAYED | ODS_DISABLED)) != 0;
  SetTextColor(context, gray ? palette.staleValue : palette.value);
  const UINT hidden = (item.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0;
  const UINT format = DT_SINGLELINE | DT_VCENTER | hidden;
  if (menu == GetMenu(window)) {
    drawWords(context, text, area, format | DT_CENTER);
    return true;
  }
  const int unit = (area.bottom - area.top) / 2;
  if ((item.itemState & ODS_CHECKED) != 0) drawTick(context, area, unit / 2);
  const HMENU popup = GetSubMenu(menu, position);
  if (popup != nullptr) drawArrow(context, area, unit / 2);
  RECT words = area;
  words.left += 2 * unit;
  words.right -= unit;
  drawWords(context, text, words, format);
  // The system draws its own arrow afterwards, in a color for bright menus.
  if (popup != nullptr) ExcludeClipRect(context, area.left, area.top, area.right, area.bottom);
  return true;
}

LRESULT itemOfMenuCharacter(HMENU menu, wchar_t typed) {
  const auto upper = [](wchar_t c) {
    return reinterpret_cast<UINT_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(UINT_PTR{c})));
  };
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const std::wstring text = textOfItem(menu, i);
    const size_t mark = text.find(L'&');
    if (mark == std::wstring::npos || mark + 1 >= text.size()) continue;
    if (upper(text[mark + 1]) == upper(typed)) return MAKELRESULT(i, MNC_EXECUTE);
  }
  return MAKELRESULT(0, MNC_IGNORE);
}

}  // namespace vgps
