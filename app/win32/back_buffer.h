#pragma once

#include <windows.h>

namespace vgps {

// A bitmap in memory that is drawn whole and then copied to the window, so that nobody sees a
// picture half drawn.
class BackBuffer {
 public:
  BackBuffer() = default;
  BackBuffer(const BackBuffer&) = delete;
  BackBuffer& operator=(const BackBuffer&) = delete;
  ~BackBuffer() { release(); }

  // A device context of that size on a bitmap like those of `window`; null when there is no memory.
  // What was drawn before is kept while the size stays.
  HDC prepare(HDC window, int width, int height);
  // Whether the last picture drawn is of that size.
  bool holds(int width, int height) const {
    return context_ != nullptr && width == width_ && height == height_;
  }
  void release();

 private:
  HDC context_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ bitmapBefore_ = nullptr;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace vgps
