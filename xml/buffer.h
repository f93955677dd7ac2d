#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace vgps {

// An uninitialized byte buffer with kTail extra bytes after its end, so that scans and copies of
// short strings may read a little too far. Grows with realloc: the system extends a large block
// without copying it.
class XmlBuffer {
 public:
  static constexpr size_t kTail = 128;

  XmlBuffer() = default;
  // Empty if the memory could not be allocated.
  static XmlBuffer ofSize(size_t size);
  XmlBuffer(XmlBuffer&& other) noexcept
      : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}
  XmlBuffer& operator=(XmlBuffer&& other) noexcept {
    bytes_ = std::move(other.bytes_);
    size_ = std::exchange(other.size_, 0);
    return *this;
  }

  // Keeps the contents. Returns false, with nothing changed, if the memory could not be allocated.
  bool resize(size_t size);

  char* data() { return bytes_.get(); }
  const char* data() const { return bytes_.get(); }
  size_t size() const { return size_; }
  std::string_view view() const { return {bytes_.get(), size_}; }
  explicit operator bool() const { return bytes_ != nullptr; }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<char[], Free> bytes_;
  size_t size_ = 0;
};

}  // namespace vgps
