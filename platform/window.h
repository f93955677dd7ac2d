#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// The seam to the window, as far as the session needs one: a program without one says the same on
// the terminal or, where a default stands here, does nothing; a test records what was asked.
// Everything is called on the user-interface thread unless it says otherwise.
namespace vgps {

class Window {
 public:
  virtual ~Window() = default;
  // The current screen is drawn anew, at once or with no visible delay: the lines of one burst may
  // share a drawing.
  virtual void repaint() {}
  // From any thread; returns without waiting for the user-interface thread.
  virtual void setTitle(std::string_view) {}
  // Shows an error or a notice to the user and returns without waiting for an answer.
  virtual void tellError(std::string_view) {}
  virtual void tell(std::string_view) {}
  // An error that a search for the receiver may mend, which is offered in the same box.
  virtual void offerSearch(std::string_view error) { tellError(error); }
  // A question that is answered with Yes or No; waits. True for Yes; No is the default, and the
  // answer of a program that cannot ask.
  virtual bool ask(std::string_view) { return false; }
  // A question with several answers, "&" in front of a letter that chooses one; waits. The place of
  // the chosen one. The last is the default, and the answer if the user only closes the question;
  // it must be harmless.
  virtual size_t choose(std::string_view, std::span<const std::string_view> answers) {
    return answers.size() - 1;
  }
  // The stepping aid of the simulation; from any thread.
  virtual bool shiftHeld() { return false; }
  virtual void pressSpace() {}

  // A timer that comes back every `ms` as `onTimer(number)`; set again it begins anew.
  virtual void setTimer(uint32_t, uint32_t) {}
  virtual void killTimer(uint32_t) {}
};

}  // namespace vgps
