#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/desktop/command.h"
#include "app/desktop/window_place.h"
#include "app/session/app_state.h"
#include "platform/window.h"

namespace vgps {

struct FileType {
  std::string kind;     // in words: "Tracks"
  std::string pattern;  // "*.xml"; several with semicolons between
};

// How to ask the user for a file.
struct FileChoice {
  std::string title;  // of the dialog
  std::string kind;   // as in FileType
  std::string pattern;
  std::string folder = {};          // where it begins; empty: where the system likes
  std::vector<FileType> more = {};  // kinds that are offered besides
  std::string name = {};            // of a new file, as it is proposed
};

// The main window as seen by the desktop program: adds its size, its dialogs, and closing to what
// the session needs. Used on the user-interface thread.
class DesktopWindow : public Window {
 public:
  // Posts a left button press at client coordinates, packed like in window messages: x in the lower
  // 16 bits, y in the upper.
  virtual void postTap(uint32_t) {}
  // Resizes the drawing area; in pixels at 96 dpi.
  virtual void resizeClient(int32_t, int32_t) {}
  // The window's position while neither maximized nor minimized. Width 0 if there is no window.
  virtual WindowPlace place() const { return {}; }
  // Shows the dialog for the command and waits until it is closed. Returns false if there is no
  // such dialog.
  virtual bool openDialog(Command) { return false; }
  // Lets the user choose an existing file and returns its path; empty if none was chosen.
  virtual std::string chooseFile(const FileChoice&) { return {}; }
  // The same for a file to be written, which need not exist. Whether one that does may be replaced
  // was asked then. Without an extension it gets that of the first kind.
  virtual std::string chooseNewFile(const FileChoice&) { return {}; }
  // Into the clipboard.
  virtual void copyText(std::string_view) {}
  // Lets the user choose from a list. Returns the index of the chosen row; none if canceled.
  virtual std::optional<size_t> chooseRow(std::string_view, std::span<const std::string>) {
    return std::nullopt;
  }
  // The places of the rows that the user marked, ascending; `column` is the title of the list.
  virtual std::vector<size_t> chooseRows(std::string_view /*caption*/, std::string_view /*column*/,
                                         std::span<const std::string> /*rows*/) {
    return {};
  }
  // As `choose`, with a box to mark below the question.
  virtual size_t chooseWithBox(std::string_view question, std::span<const std::string_view> answers,
                               std::string_view /*box*/, bool& /*marked*/) {
    return choose(question, answers, answers.size() - 1);
  }
  // With the program that the system has for it.
  virtual void openDocument(const std::string& /*path*/) {}
  // Long work is at `done` of `total`, which is 0 when not known. False: the user gave up. Lets the
  // window work meanwhile.
  virtual bool showProgress(uint64_t /*done*/, uint64_t /*total*/) { return true; }
  virtual void endProgress() {}
  // One line of text that the user types, `text` at first; none when the user gave up.
  virtual std::optional<std::string> askText(std::string_view, std::string_view) {
    return std::nullopt;
  }
  // Posts a close request, like the close button of the frame; it is handled by `closeRequested`.
  virtual void close() {}
  // Destroys the window with its menu and child windows and ends the message loop.
  virtual void destroy() {}
};

// The complete state of the desktop program: the session's state plus the window.
struct Desktop : AppState {
  Desktop(Platform platformToUse, DesktopWindow& windowToUse)
      : AppState(std::move(platformToUse)), window(windowToUse) {}

  DesktopWindow& window;           // also the platform's
  bool commandFromHotKey = false;  // while such a command runs
  ColorScheme startScheme = ColorScheme::day;
  uint32_t tapPoint = 0;  // of a tap that waits; packed as `DesktopWindow::postTap` says
};

}  // namespace vgps
