#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "xml/buffer.h"
#include "xml/window.h"

namespace vgps {

// Converts a source to UTF-8 without a byte order mark. Text that starts with FF FE or FE FF is
// UTF-16; anything else passes through unchanged.
class XmlDecoder {
 public:
  explicit XmlDecoder(XmlSource source) : source_(source) {}
  XmlSource source() { return {read, this}; }

 private:
  enum class Form { unknown, bytes, utf16Little, utf16Big };

  static size_t read(void* from, char* to, size_t size);
  size_t readStart(char* to, size_t size);
  size_t readConverted(char* to, size_t size);
  bool convertMore();

  XmlSource source_;
  Form form_ = Form::unknown;
  std::string units_;      // bytes not converted yet: half a unit, half a surrogate pair
  std::string converted_;  // not returned yet, from `given_` on
  size_t given_ = 0;
};

// UTF-16, little-endian, with a byte order mark; empty if the memory could not be allocated.
XmlBuffer utf16File(std::string_view utf8);

}  // namespace vgps
