#pragma once

#include <windows.h>

namespace vgps {

// Makes the included font "Crystal" available to this process while this object exists. The font
// file is written to the working folder; if that fails, the font is loaded from memory.
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
