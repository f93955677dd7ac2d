#include "app/win32/start_buttons.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "app/desktop/command.h"
#include "app/win32/dpi.h"
#include "app/win32/message_parameter.h"
#include "base/texts.h"
#include "display/readout_layout.h"
#include "display/text_fit.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

struct ButtonRow {
  Command command;
  Text text;
  Text hint;
};
constexpr std::array<ButtonRow, 2> kButtons = {
    ButtonRow{Command::findReceiver, Text::startFindReceiver, Text::startFindReceiverHint},
    ButtonRow{Command::startSimulation, Text::startSimulationButton, Text::startSimulationHint}};

// The positions of the buttons and texts, in whole pixels.
struct StartLayout {
  Rect greeting;
  Rect whatToDo;
  std::array<Rect, 2> button;
  std::array<Rect, 2> hint;
  float greetingText = 0;  // font sizes, pixels
  float buttonText = 0;
  float smallText = 0;
};

Rect wholePixels(const Rect& rect) {
  return {std::round(rect.x), std::round(rect.y), std::round(rect.width), std::round(rect.height)};
}

// Side by side if there is enough space, otherwise one above the other. A very low window omits the
// texts.
StartLayout layoutStart(const Rect& bounds, const TextScale& scale) {
  const ReadoutLayout readout = layoutReadout(bounds, scale);
  const float gap = readout.padding;
  const Rect body = inset({bounds.x, bounds.y, bounds.width, readout.status.y - bounds.y}, gap);
  StartLayout layout;
  layout.smallText = readout.smallText;
  layout.greetingText = layout.smallText * 1.9f;
  layout.buttonText = std::round(layout.smallText * 1.5f);
  const bool wide = body.width >= body.height * 1.1f && body.width >= layout.buttonText * 26;
  const float line = std::ceil(layout.smallText * kLineHeight);
  const float greeting = std::ceil(layout.greetingText * kLineHeight);
  const float buttonWidth = wide ? (body.width - 3 * gap) * 0.45f : body.width * 0.9f;
  const float rows = wide ? 1 : 2;
  float head = greeting + line + 3 * gap;
  const float buttonHeight =
      std::min(layout.buttonText * 4, (body.height - head) / rows - line - gap);
  const bool words = buttonHeight >= layout.buttonText * 1.6f;
  const float height = words ? buttonHeight : body.height / rows - gap;
  const float hint = words ? line + gap / 2 : 0;
  if (!words) head = 0;
  const float used = head + rows * (height + hint) + (rows - 1) * gap;
  const float top = body.y + std::max((body.height - used) * 0.4f, 0.f);
  if (words) {
    layout.greeting = wholePixels({body.x, top, body.width, greeting});
    layout.whatToDo = wholePixels({body.x, top + greeting + gap / 2, body.width, line});
  }
  for (size_t i = 0; i < kButtons.size(); ++i) {
    const auto place = static_cast<float>(i);
    const float x =
        wide ? body.x + body.width / 2 + (place - 1) * buttonWidth + (place * 2 - 1) * gap
             : body.x + (body.width - buttonWidth) / 2;
    const float y = top + head + (wide ? 0 : place * (height + hint + gap));
    layout.button[i] = wholePixels({x, y, buttonWidth, height});
    if (words) layout.hint[i] = wholePixels({x, y + height + gap / 2, buttonWidth, line});
  }
  return layout;
}

Rect clientOf(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {0, 0, static_cast<float>(client.right), static_cast<float>(client.bottom)};
}

void drawLine(Canvas& canvas, std::string_view text, const Rect& box, const Font& font,
              Color color) {
  if (box.height <= 0) return;
  const std::string shown = shortened(canvas, text, font, box.width);
  canvas.text(shown, box, font, color, Align::center);
}

void fill(HDC target, const RECT& area, Color color) {
  SetDCBrushColor(target, color);
  FillRect(target, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

}  // namespace

bool StartButtons::create(HWND parent) {
  parent_ = parent;
  for (size_t i = 0; i < kButtons.size(); ++i) {
    const std::wstring text = wideFromUtf8(textOf(kButtons[i].text));
    buttons_[i] = CreateWindowExW(
        0, L"BUTTON", text.c_str(), WS_CHILD | WS_TABSTOP | BS_OWNERDRAW, 0, 0, 10, 10, parent,
        addressIn<std::remove_pointer_t<HMENU>>(static_cast<UINT_PTR>(kButtons[i].command)),
        addressIn<std::remove_pointer_t<HINSTANCE>>(GetWindowLongPtrW(parent, GWLP_HINSTANCE)),
        nullptr);
    if (buttons_[i] == nullptr) return false;
  }
  return true;
}

bool StartButtons::show(HWND parent, bool shown, float fontFactor) {
  fontFactor_ = fontFactor;
  if (shown == shown_) return true;
  if (shown && buttons_[0] == nullptr && !create(parent)) return false;
  const bool hadFocus = focused() == GetFocus();
  shown_ = shown;
  if (shown) place();
  for (const HWND button : buttons_) ShowWindow(button, shown ? SW_SHOWNA : SW_HIDE);
  if (shown && GetFocus() == parent) focus();
  if (!shown && hadFocus) SetFocus(parent);
  return true;
}

TextScale StartButtons::scale() const { return {densityOf(parent_), fontFactor_}; }

void StartButtons::place() {
  if (!shown_) return;
  const StartLayout layout = layoutStart(clientOf(parent_), scale());
  forgetFont();
  font_ = CreateFontW(-static_cast<int>(layout.buttonText), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                      DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                      DEFAULT_PITCH | FF_SWISS, L"Arial");
  for (size_t i = 0; i < buttons_.size(); ++i) {
    const Rect& box = layout.button[i];
    MoveWindow(buttons_[i], static_cast<int>(box.x), static_cast<int>(box.y),
               static_cast<int>(box.width), static_cast<int>(box.height), TRUE);
  }
}

void StartButtons::drawWords(Canvas& canvas, const Palette& palette) const {
  const Rect bounds = canvas.bounds();
  const StartLayout layout = layoutStart(bounds, scale());
  const float bottom = layoutReadout(bounds, scale()).status.y;
  canvas.fillRect({bounds.x, bounds.y, bounds.width, bottom - bounds.y}, palette.background);
  const Font small = {.size = layout.smallText};
  drawLine(canvas, textOf(Text::welcome), layout.greeting,
           {.size = layout.greetingText, .bold = true}, palette.value);
  drawLine(canvas, textOf(Text::noReceiverChosen), layout.whatToDo, small, palette.label);
  for (size_t i = 0; i < kButtons.size(); ++i) {
    drawLine(canvas, textOf(kButtons[i].hint), layout.hint[i], small, palette.label);
  }
}

// The system's own look would be too bright with the night colors.
void StartButtons::drawButton(const DRAWITEMSTRUCT& item, const Palette& palette) const {
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  const bool hasKeyboard = (item.itemState & ODS_FOCUS) != 0;
  const int thin = std::max(static_cast<int>(item.rcItem.bottom) / 40, 1);
  const int border = hasKeyboard ? 3 * thin : thin;
  RECT inner = item.rcItem;
  fill(item.hDC, inner, hasKeyboard ? palette.good : palette.label);
  InflateRect(&inner, -border, -border);
  fill(item.hDC, inner, pressed ? palette.grid : palette.panel);
  if (pressed) OffsetRect(&inner, thin, thin);
  const HGDIOBJ before = SelectObject(item.hDC, font_);
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC, palette.value);
  const std::wstring text = wideFromUtf8(textOf(
      item.CtlID == static_cast<UINT>(kButtons[0].command) ? kButtons[0].text : kButtons[1].text));
  UINT format = DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS;
  if ((item.itemState & ODS_NOACCEL) != 0) format |= DT_HIDEPREFIX;
  DrawTextW(item.hDC, text.c_str(), -1, &inner, format);
  SelectObject(item.hDC, before);
}

HWND StartButtons::focused() const {
  if (!shown_) return nullptr;
  return GetFocus() == buttons_[1] ? buttons_[1] : buttons_[0];
}

void StartButtons::focus() const {
  if (shown_) SetFocus(focused());
}

void StartButtons::forgetFont() {
  if (font_ != nullptr) DeleteObject(font_);
  font_ = nullptr;
}

}  // namespace vgps
