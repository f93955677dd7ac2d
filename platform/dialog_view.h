#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/canvas.h"

namespace vgps {

// The interface to an open dialog: its controls by number, and the small dialogs that it opens in
// turn. Tests implement it without a window. Because language libraries bring their own layouts, a
// control may be missing: it then ignores writes and reads as empty.
class DialogView {
 public:
  virtual ~DialogView() = default;

  virtual bool has(uint16_t control) = 0;

  // The text of an edit box, or of the edit part of a combo box.
  virtual void setText(uint16_t control, std::string_view text) = 0;
  virtual std::string text(uint16_t control) = 0;
  // The maximum number of UTF-16 units that the user can type.
  virtual void limitText(uint16_t control, size_t units) = 0;

  virtual void setChecked(uint16_t control, bool checked) = 0;
  virtual bool checked(uint16_t control) = 0;

  virtual void setItems(uint16_t control, std::span<const std::string> items) = 0;
  // -1 means no item.
  virtual void select(uint16_t control, int item) = 0;
  virtual int selected(uint16_t control) = 0;

  // A button that shows a color.
  virtual void setColor(uint16_t control, Color color) = 0;
  virtual Color color(uint16_t control) = 0;

  virtual void enable(uint16_t control, bool enabled) = 0;
  // A line below everything else; at most once for a dialog.
  virtual void showNote(std::string_view text) = 0;

  // Lets the user choose an existing file and returns its path; empty if the user cancels. `kind`
  // describes these files, `pattern` is like "*.png;*.jpg", `current` is the initial path.
  virtual std::optional<std::string> chooseFile(std::string_view kind, std::string_view pattern,
                                                const std::string& current) = 0;
  virtual std::optional<std::string> chooseFolder(const std::string& current) = 0;
  virtual std::optional<Color> chooseColor(Color current) = 0;
  // Plays the file or, if `file` is empty, the program's own sound `name`.
  virtual void playSound(const std::string& file, const char* name) = 0;
  // Shows a message and waits for OK.
  virtual void tell(std::string_view text) = 0;
};

}  // namespace vgps
