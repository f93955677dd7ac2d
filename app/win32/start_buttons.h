#pragma once

#include <windows.h>

#include <array>

#include "display/palette.h"
#include "display/readout_layout.h"
#include "platform/canvas.h"

namespace vgps {

// Before a source was ever chosen the read-out has nothing to show: two large buttons in its place
// say what to do. Real buttons, so that keyboard and screen readers find them; their numbers are
// those of the commands that they send.
class StartButtons {
 public:
  StartButtons() = default;
  StartButtons(const StartButtons&) = delete;
  StartButtons& operator=(const StartButtons&) = delete;
  ~StartButtons() { forgetFont(); }

  // Shown and hidden; the first showing makes them. False when the system refuses. `fontFactor`:
  // how large the user wants the texts.
  bool show(HWND parent, bool shown, float fontFactor = 1);
  bool areShown() const { return shown_; }
  // Anew for the size of the client area.
  void place();
  // The words above and below the buttons.
  void drawWords(Canvas& canvas, const Palette& palette) const;
  // WM_DRAWITEM of one of them.
  void drawButton(const DRAWITEMSTRUCT& item, const Palette& palette) const;
  // The button that has the keyboard, or is to have it; null while hidden.
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
