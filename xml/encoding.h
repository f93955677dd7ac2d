#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "xml/buffer.h"
#include "xml/window.h"

namespace vgps {

// Hands on a source as UTF-8 without a byte order mark: a text that begins with FF FE or FE FF is
// UTF-16 and converted, any other passes as it is.
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
  std::string units_;      // bytes not yet converted: half a unit, half a pair
  std::string converted_;  // not yet handed on from `given_` on
  size_t given_ = 0;
};

// UTF-16, low bytes first, behind its byte order mark; empty when the memory cannot be had.
XmlBuffer utf16File(std::string_view utf8);

}  // namespace vgps
