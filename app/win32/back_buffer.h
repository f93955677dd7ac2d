#pragma once

#include <windows.h>

namespace vgps {

// A bitmap in memory that a picture is drawn into before it is copied to the window, so that a
// half-drawn picture is never visible.
class BackBuffer {
 public:
  BackBuffer() = default;
  BackBuffer(const BackBuffer&) = delete;
  BackBuffer& operator=(const BackBuffer&) = delete;
  ~BackBuffer() { release(); }

  // A device context of that size, compatible with `window`; null if there is no memory. Keeps its
  // contents while the size stays the same.
  HDC prepare(HDC window, int width, int height);
  // Whether the last picture has this size.
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
