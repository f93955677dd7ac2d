#pragma once

#include <string_view>

// The seam to the main window: a program without one says the same on the terminal, a test records
// what was asked.
namespace vgps {

class Window {
 public:
  virtual ~Window() = default;
  // Draws the current screen anew and returns when it is drawn. On the user-interface thread.
  virtual void repaint() = 0;
  // From any thread.
  virtual void setTitle(std::string_view title) = 0;
  // Tells the person that something failed; on the user-interface thread.
  virtual void tellError(std::string_view text) = 0;
  // The stepping aid of the simulation; from any thread.
  virtual bool shiftHeld() = 0;
  virtual void pressSpace() = 0;
};

}  // namespace vgps
