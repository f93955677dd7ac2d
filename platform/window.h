#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// The seam to the main window: a program without one says the same on the terminal, a test records
// what was asked. Everything is called on the user-interface thread unless it says otherwise.
namespace vgps {

// What a person is asked for a file by.
struct FileChoice {
  bool save = false;    // a new file, not one that is there
  std::string title;    // of the dialog
  std::string kind;     // in words: "Tracks"
  std::string pattern;  // "*.xml"; several with semicolons between
  std::string suggestedName = {};
};

class Window {
 public:
  virtual ~Window() = default;
  // The current screen is drawn anew, at once or so soon that nobody sees the difference: the lines
  // of one burst may share a drawing.
  virtual void repaint() = 0;
  // From any thread; returns without waiting for the user-interface thread.
  virtual void setTitle(std::string_view title) = 0;
  // Tells the person that something failed, or something good to know, and returns without waiting
  // for an answer.
  virtual void tellError(std::string_view text) = 0;
  virtual void tell(std::string_view text) = 0;
  // A question that is answered with Yes or No; waits. True for Yes; No is the default, and the
  // answer where nobody can be asked.
  virtual bool ask(std::string_view question) = 0;
  // A question with several answers, "&" in front of a letter that chooses one; waits. The place
  // of the chosen one. The last is the default, and the answer of who only closes the question;
  // it has to be harmless.
  virtual size_t choose(std::string_view question, std::span<const std::string_view> answers) = 0;
  // The stepping aid of the simulation; from any thread.
  virtual bool shiftHeld() = 0;
  virtual void pressSpace() = 0;

  // A timer that comes back every `ms` as `onTimer(number)`; set again it begins anew.
  virtual void setTimer(uint32_t number, uint32_t ms) = 0;
  virtual void killTimer(uint32_t number) = 0;
  // A press of the left button at client coordinates, packed as window messages carry them: x in
  // the lower 16 bits, y in the upper. Posted, not sent.
  virtual void postTap(uint32_t point) = 0;

  // Makes the drawing area so large, pixels at 96 dots per inch.
  virtual void resizeClient(int32_t width, int32_t height) = 0;
  // Shows the dialog that the command of that number opens and waits until it is closed. False
  // when there is no such dialog.
  virtual bool openDialog(uint32_t command) = 0;
  // In the system's browser. False when there is none.
  virtual bool openUrl(std::string_view url) = 0;
  // The path that a person chose; empty when none.
  virtual std::string chooseFile(const FileChoice& choice) = 0;

  // Posts the wish to close, as the frame's button does; the answer is `closeRequested`.
  virtual void close() = 0;
  virtual void closeBrowser() = 0;  // the child that shows pages, if there is one
  // Takes menu, child and window away and ends the message loop.
  virtual void destroy() = 0;
};

}  // namespace vgps
