#include "xml/window.h"

#include <algorithm>
#include <cstring>

namespace vgps {

XmlSource XmlSource::of(std::string_view& rest) {
  return {[](void* whole, char* to, size_t size) {
            auto& text = *static_cast<std::string_view*>(whole);
            const size_t count = text.substr(0, size).copy(to, size);
            text.remove_prefix(count);
            return count;
          },
          &rest};
}

bool XmlWindow::advance(const char* keep) {
  const size_t given = static_cast<size_t>(keep - bytes_.data());
  if (bytes_) std::memcpy(bytes_.data() + end_, behindEnd_, sizeof behindEnd_);
  if (given > 0) std::memmove(bytes_.data(), keep, filled_ - given);
  passed_ += given;
  filled_ -= given;
  for (;;) {
    if (filled_ == bytes_.size() && !bytes_.resize(std::max(usualSize_, bytes_.size() * 2)))
      return false;
    if (!fill()) isLast_ = true;
    const size_t tag = std::string_view(bytes_.data(), filled_).rfind('>');
    end_ = isLast_ ? filled_ : tag + 1;
    if (end_ > 0 || isLast_) break;
  }
  markEnd();
  return true;
}

bool XmlWindow::takeAll() {
  do {
    if (!bytes_.resize(std::max(usualSize_, bytes_.size() * 2))) return false;
  } while (fill());
  isLast_ = true;
  end_ = filled_;
  markEnd();
  return true;
}

void XmlWindow::markEnd() {
  std::memcpy(behindEnd_, bytes_.data() + end_, sizeof behindEnd_);
  bytes_.data()[end_] = '<';
  bytes_.data()[end_ + 1] = '>';
}

// Returns false at the end of the text.
bool XmlWindow::fill() {
  while (filled_ < bytes_.size()) {
    const size_t got = source_.read(source_.from, bytes_.data() + filled_, bytes_.size() - filled_);
    if (got == 0) return false;
    filled_ += got;
  }
  return true;
}

}  // namespace vgps
