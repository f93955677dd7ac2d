#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// The interface to the program's window, as far as the session needs it. A program without a window
// prints the same messages to the terminal or, where a function has a default here, does nothing; a
// test records the calls. Call everything on the user-interface thread unless noted otherwise.
namespace vgps {

class Window {
 public:
  virtual ~Window() = default;
  // Redraws the current screen, at once or without a visible delay: several lines in one burst may
  // share one redraw.
  virtual void repaint() {}
  // From any thread; returns without waiting for the user-interface thread.
  virtual void setTitle(std::string_view) {}
  // Shows an error or a notice to the user and returns without waiting for an answer.
  virtual void tellError(std::string_view) {}
  virtual void tell(std::string_view) {}
  // Shows an error that a receiver search may fix, and offers that search in the same message box.
  virtual void offerSearch(std::string_view error) { tellError(error); }
  // Asks a yes/no question and waits. Returns true for Yes. No is the default, and the answer of a
  // program that cannot ask.
  virtual bool ask(std::string_view) { return false; }
  // Asks a question with several answers and waits. "&" marks the letter that selects an answer.
  // Returns the index of the chosen one; Enter chooses `standard`. The last answer is returned if
  // the user just closes the question, so it must be harmless.
  virtual size_t choose(std::string_view, std::span<const std::string_view> answers,
                        size_t /*standard*/) {
    return answers.size() - 1;
  }
  // Stepping through the simulation with Shift and Space; from any thread.
  virtual bool shiftHeld() { return false; }
  virtual void pressSpace() {}

  // A timer that calls `onTimer(number)` every `ms` milliseconds. Setting it again restarts it.
  virtual void setTimer(uint32_t, uint32_t) {}
  virtual void killTimer(uint32_t) {}
};

}  // namespace vgps
