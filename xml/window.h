#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "xml/buffer.h"

namespace vgps {

// Where a text comes from: `read` gives up to `size` bytes and 0 at the end.
struct XmlSource {
  size_t (*read)(void* from, char* to, size_t size) = nullptr;
  void* from = nullptr;

  // `rest` moves on with the reading.
  static XmlSource of(std::string_view& rest);
};

// The part of a text that is being read. A file passes through a window small enough to stay in
// the processor's cache: that is faster than holding the file in memory, and only what the tree
// keeps is ever written anywhere else. A single tag or text longer than the window widens it.
//
// The bytes to scan are [begin(), end()). Behind them stand "<" and ">", so that no scan needs to
// test for the end. In front of the end of the text, end() lies behind the last ">" there is, so
// that a tag which begins in the window also ends in it.
class XmlWindow {
 public:
  static constexpr size_t kUsualSize = 128 * 1024;

  XmlWindow(XmlSource source, size_t size) : source_(source), usualSize_(size) {}

  char* begin() { return bytes_.data(); }
  char* end() { return bytes_.data() + end_; }
  // No more text behind end().
  bool isLast() const { return isLast_; }
  // The place of `p` in the text.
  uint64_t placeOf(const char* p) const {
    return passed_ + static_cast<uint64_t>(p - bytes_.data());
  }

  // Gives up what lies before `keep` and takes in more text; begin() is then what `keep` was.
  // Only when not isLast(). False when there is no memory for a wider window.
  bool advance(const char* keep);
  // Takes in the whole text; instead of the first `advance`.
  bool takeAll();

 private:
  bool fill();
  void markEnd();

  XmlSource source_;
  size_t usualSize_;
  XmlBuffer bytes_;
  size_t filled_ = 0;
  size_t end_ = 0;
  char behindEnd_[2] = {};  // the text's own bytes where the marks stand
  uint64_t passed_ = 0;
  bool isLast_ = false;
};

}  // namespace vgps
