#pragma once

#include <string_view>

// The seam to the main window: a program without one says the same on the terminal, a test records
// what was asked.
namespace vgps {

class Window {
 public:
  virtual ~Window() = default;
  // The current screen is drawn anew, at once or so soon that nobody sees the difference: the lines
  // of one burst may share a drawing. On the user-interface thread.
  virtual void repaint() = 0;
  // From any thread; returns without waiting for the user-interface thread.
  virtual void setTitle(std::string_view title) = 0;
  // Tells the person that something failed and returns without waiting for an answer; on the
  // user-interface thread.
  virtual void tellError(std::string_view text) = 0;
  // The stepping aid of the simulation; from any thread.
  virtual bool shiftHeld() = 0;
  virtual void pressSpace() = 0;
};

}  // namespace vgps
