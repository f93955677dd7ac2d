#include "xml/buffer.h"

#include <cstdint>
#include <cstring>

namespace vgps {

XmlBuffer XmlBuffer::ofSize(size_t size) {
  XmlBuffer buffer;
  buffer.resize(size);
  return buffer;
}

bool XmlBuffer::resize(size_t size) {
  if (size > SIZE_MAX / 2) return false;
  void* const bytes = std::realloc(bytes_.get(), size + kTail);
  if (bytes == nullptr) return false;
  static_cast<void>(bytes_.release());
  bytes_.reset(static_cast<char*>(bytes));
  size_ = size;
  std::memset(bytes_.get() + size, 0, kTail);
  return true;
}

}  // namespace vgps
