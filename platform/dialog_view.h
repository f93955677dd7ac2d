#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/canvas.h"

namespace vgps {

// The seam to an open dialog: its controls by their numbers, and the small questions that it asks
// on top of itself. A test fills and reads one without a window. A control that is not there is
// ignored and reads as nothing: a language library brings layouts of its own.
class DialogView {
 public:
  virtual ~DialogView() = default;

  virtual bool has(uint16_t control) = 0;

  // Of an edit box, or of the edit part of a box with a list.
  virtual void setText(uint16_t control, std::string_view text) = 0;
  virtual std::string text(uint16_t control) = 0;
  // The user can type so many UTF-16 units.
  virtual void limitText(uint16_t control, size_t units) = 0;

  virtual void setChecked(uint16_t control, bool checked) = 0;
  virtual bool checked(uint16_t control) = 0;

  virtual void setItems(uint16_t control, std::span<const std::string> items) = 0;
  // -1: none of them.
  virtual void select(uint16_t control, int item) = 0;
  virtual int selected(uint16_t control) = 0;

  // A button that shows a colour.
  virtual void setColour(uint16_t control, Colour colour) = 0;
  virtual Colour colour(uint16_t control) = 0;

  virtual void enable(uint16_t control, bool enabled) = 0;
  // A line below everything else; at most once for a dialog.
  virtual void showNote(std::string_view text) = 0;

  // The path of an existing file; nothing when the user gave up. `kind` names such files in
  // words, `pattern` is "*.png;*.jpg", `current` the path to begin with.
  virtual std::optional<std::string> chooseFile(std::string_view kind, std::string_view pattern,
                                                const std::string& current) = 0;
  virtual std::optional<std::string> chooseFolder(const std::string& current) = 0;
  virtual std::optional<Colour> chooseColour(Colour current) = 0;
  // Starts the file, or without one the program's own sound of that name.
  virtual void playSound(const std::string& file, const char* name) = 0;
  // A message that waits for its OK.
  virtual void tell(std::string_view text) = 0;
};

}  // namespace vgps
