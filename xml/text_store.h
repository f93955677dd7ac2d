#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "xml/buffer.h"

namespace vgps {

// A string of a document: its position in the document's TextStore.
struct XmlSpan {
  uint32_t offset = 0;
  uint32_t length = 0;
};

// Stores all strings of one document, addressed by 32-bit offsets, each with XmlBuffer::kTail
// readable bytes after it. While a document is read, they go into one growing block. After `seal`,
// further strings go into separate chunks and nothing moves: a view is then valid until its own
// string is overwritten.
class TextStore {
 public:
  static constexpr uint64_t kLimit = 0xFFFF0000U;

  const char* at(uint32_t offset) const {
    return offset < sideBase_ ? block_.data() + offset : sideAt(offset);
  }
  std::string_view view(XmlSpan span) const { return {at(span.offset), span.length}; }

  // A sealed store that is full counts as a failed allocation.
  XmlSpan add(std::string_view text);
  // For a string with XmlBuffer::kTail readable bytes after it.
  XmlSpan addFromWindow(const char* from, size_t length) {
    if (!open_ || block_.size() - used_ <= length) return add({from, length});
    char* const to = block_.data() + used_;
    if (length <= 16) {
      std::memcpy(to, from, 16);
    } else if (length <= 32) {
      std::memcpy(to, from, 32);
    } else {
      std::memcpy(to, from, length);
    }
    const XmlSpan span{static_cast<uint32_t>(used_), static_cast<uint32_t>(length)};
    used_ += length;
    return span;
  }
  // Overwrites the start of a string.
  void overwrite(uint32_t offset, std::string_view text) {
    if (!text.empty()) std::memmove(const_cast<char*>(at(offset)), text.data(), text.size());
  }

  // Starts the growing block; only in an empty store. A text that would exceed kLimit or the
  // memory is then dropped, and `overflowed` returns true.
  void open() {
    open_ = true;
    sideBase_ = UINT32_MAX;
  }
  void seal();
  bool overflowed() const { return overflowed_; }
  // The approximate size of all strings, in bytes.
  uint64_t used() const { return used_ + sideUsed_; }

 private:
  // Chunk k has kFirstChunk << k bytes: there are few chunks, and a bit scan finds the chunk of an
  // offset.
  static constexpr uint64_t kFirstChunk = 4096;
  static constexpr size_t kChunks = 21;
  static uint64_t chunkStart(size_t chunk) { return kFirstChunk * ((uint64_t{1} << chunk) - 1); }

  const char* sideAt(uint32_t offset) const;
  XmlSpan addToBlock(std::string_view text);

  XmlBuffer block_;
  uint64_t used_ = 0;  // bytes used in the block while it is open
  uint32_t sideBase_ = 0;
  bool open_ = false;
  bool overflowed_ = false;
  size_t chunk_ = 0;       // the chunk being filled
  uint64_t sideUsed_ = 0;  // from the start of the first chunk's range
  std::array<XmlBuffer, kChunks> chunks_;
};

}  // namespace vgps
