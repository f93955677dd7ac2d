#pragma once

#include <gtest/gtest.h>

#include "tests/app/win32/drive.h"

namespace vgps {

// The program ends by its window's closing and has nothing to complain of.
inline void expectCleanEnd(Program& program, HWND window) {
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(program.exitCode(), 0);
}

}  // namespace vgps
