#pragma once

#include <windows.h>

namespace vgps {

// The font "Crystal" that the program brings along, known to this process while this lives. The
// file lies where the program was started; where none can be written, the font comes from memory.
class ProgramFont {
 public:
  explicit ProgramFont(HINSTANCE instance);
  ProgramFont(const ProgramFont&) = delete;
  ProgramFont& operator=(const ProgramFont&) = delete;
  ~ProgramFont();

 private:
  bool fromFile_ = false;
  HANDLE inMemory_ = nullptr;
};

}  // namespace vgps
