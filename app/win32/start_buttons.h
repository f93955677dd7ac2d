#pragma once

#include <windows.h>

#include <array>

#include "display/palette.h"
#include "display/readout_layout.h"
#include "platform/canvas.h"

namespace vgps {

// Two large buttons that tell the user what to do. They replace the readout, which has nothing to
// show before a source was chosen. They are real buttons, so that the keyboard and screen readers
// can use them; their control numbers are the commands that they send.
class StartButtons {
 public:
  StartButtons() = default;
  StartButtons(const StartButtons&) = delete;
  StartButtons& operator=(const StartButtons&) = delete;
  ~StartButtons() { forgetFont(); }

  // Shows or hides the buttons and creates them when first shown. Returns false if the system
  // refuses. `fontFactor` is the user's text size factor.
  bool show(HWND parent, bool shown, float fontFactor = 1);
  bool areShown() const { return shown_; }
  // Positions them for the current size of the client area.
  void place();
  // Draws the texts above and below the buttons.
  void drawWords(Canvas& canvas, const Palette& palette) const;
  // Draws one of them, for WM_DRAWITEM.
  void drawButton(const DRAWITEMSTRUCT& item, const Palette& palette) const;
  // The button that has, or will get, the keyboard focus; null while hidden.
  HWND focused() const;
  void focus() const;

 private:
  bool create(HWND parent);
  void forgetFont();
  TextScale scale() const;

  HWND parent_ = nullptr;
  std::array<HWND, 2> buttons_{};
  HFONT font_ = nullptr;
  bool shown_ = false;
  float fontFactor_ = 1;
};

}  // namespace vgps
