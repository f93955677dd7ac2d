#include "app/win32/back_buffer.h"

namespace vgps {

HDC BackBuffer::prepare(HDC window, int width, int height) {
  if (holds(width, height)) return context_;
  release();
  context_ = CreateCompatibleDC(window);
  bitmap_ = CreateCompatibleBitmap(window, width, height);
  if (context_ == nullptr || bitmap_ == nullptr) {
    release();
    return nullptr;
  }
  bitmapBefore_ = SelectObject(context_, bitmap_);
  width_ = width;
  height_ = height;
  return context_;
}

void BackBuffer::release() {
  if (bitmapBefore_ != nullptr) SelectObject(context_, bitmapBefore_);
  if (bitmap_ != nullptr) DeleteObject(bitmap_);
  if (context_ != nullptr) DeleteDC(context_);
  context_ = nullptr;
  bitmap_ = nullptr;
  bitmapBefore_ = nullptr;
}

}  // namespace vgps
