#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "xml/buffer.h"

namespace vgps {

// A source of text: `read` delivers up to `size` bytes, and 0 at the end.
struct XmlSource {
  size_t (*read)(void* from, char* to, size_t size) = nullptr;
  void* from = nullptr;

  // Reads from `rest` and advances it.
  static XmlSource of(std::string_view& rest);
};

// The part of a text that is currently being read. A file passes through a window small enough for
// the processor's cache, which is faster than loading the whole file; only what the tree keeps is
// copied elsewhere. A single tag or text that is longer enlarges the window.
//
// The bytes to scan are [begin(), end()). They are followed by "<" and ">", so that no scan needs
// to check for the end. Except at the end of the text, end() is just after the last ">", so that a
// tag that starts in the window also ends in it.
class XmlWindow {
 public:
  static constexpr size_t kUsualSize = 128 * 1024;

  XmlWindow(XmlSource source, size_t size) : source_(source), usualSize_(size) {}

  char* begin() { return bytes_.data(); }
  char* end() { return bytes_.data() + end_; }
  // Whether there is no more text after end().
  bool isLast() const { return isLast_; }
  // The position of `p` in the text.
  uint64_t placeOf(const char* p) const {
    return passed_ + static_cast<uint64_t>(p - bytes_.data());
  }

  // Discards everything before `keep` and reads more text; begin() is then at `keep`. Only if not
  // isLast(). Returns false if there is no memory for a larger window.
  bool advance(const char* keep);
  // Reads the whole text. Call it instead of the first `advance`.
  bool takeAll();

 private:
  bool fill();
  void markEnd();

  XmlSource source_;
  size_t usualSize_;
  XmlBuffer bytes_;
  size_t filled_ = 0;
  size_t end_ = 0;
  char behindEnd_[2] = {};  // the original bytes at the position of the marks
  uint64_t passed_ = 0;
  bool isLast_ = false;
};

}  // namespace vgps
