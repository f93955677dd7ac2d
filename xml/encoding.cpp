#include "xml/encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/text.h"

namespace vgps {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

}  // namespace

size_t XmlDecoder::read(void* from, char* to, size_t size) {
  auto& self = *static_cast<XmlDecoder*>(from);
  switch (self.form_) {
    case Form::unknown: return self.readStart(to, size);
    case Form::bytes: return self.source_.read(self.source_.from, to, size);
    default: return self.readConverted(to, size);
  }
}

// Detects the encoding from the first three bytes, or from all there are. `size` must be larger.
size_t XmlDecoder::readStart(char* to, size_t size) {
  size_t got = 0;
  while (got < kUtf8Mark.size()) {
    const size_t more = source_.read(source_.from, to + got, size - got);
    if (more == 0) break;
    got += more;
  }
  const std::string_view start(to, got);
  if (start.starts_with(kLittleMark) || start.starts_with(kBigMark)) {
    form_ = start.starts_with(kLittleMark) ? Form::utf16Little : Form::utf16Big;
    units_ = start.substr(kLittleMark.size());
    return readConverted(to, size);
  }
  form_ = Form::bytes;
  if (!start.starts_with(kUtf8Mark)) return got;
  got -= kUtf8Mark.size();
  std::memmove(to, to + kUtf8Mark.size(), got);
  return got > 0 ? got : source_.read(source_.from, to, size);
}

size_t XmlDecoder::readConverted(char* to, size_t size) {
  while (given_ == converted_.size()) {
    if (!convertMore()) return 0;
  }
  const size_t count = std::min(size, converted_.size() - given_);
  std::memcpy(to, converted_.data() + given_, count);
  given_ += count;
  return count;
}

// Returns false at the end of the text, where half a unit is dropped.
bool XmlDecoder::convertMore() {
  constexpr size_t kPiece = 64 * 1024;
  const size_t kept = units_.size();
  units_.resize(kept + kPiece);
  const size_t got = source_.read(source_.from, units_.data() + kept, kPiece);
  units_.resize(kept + got);
  const bool last = got == 0;
  std::u16string text;
  const size_t high = form_ == Form::utf16Big ? 0 : 1;
  for (size_t i = 0; i + 1 < units_.size(); i += 2) {
    const auto byte = [&](size_t at) { return static_cast<uint8_t>(units_[at]); };
    text.push_back(static_cast<char16_t>(byte(i + high) << 8 | byte(i + 1 - high)));
  }
  // A high surrogate must wait for the other half of its pair.
  const bool halfPair = !last && !text.empty() && text.back() >= 0xD800 && text.back() < 0xDC00;
  if (halfPair) text.pop_back();
  units_.erase(0, text.size() * 2);
  converted_ = utf8FromUtf16(text);
  given_ = 0;
  if (last) units_.clear();
  return !last || !converted_.empty();
}

XmlBuffer utf16File(std::string_view utf8) {
  const std::u16string text = utf16FromUtf8(utf8);
  XmlBuffer bytes = XmlBuffer::ofSize(kLittleMark.size() + text.size() * 2);
  if (!bytes) return bytes;
  char* to = bytes.data();
  for (const char c : kLittleMark) *to++ = c;
  for (const char16_t unit : text) {
    *to++ = static_cast<char>(unit & 0xFF);
    *to++ = static_cast<char>(unit >> 8);
  }
  return bytes;
}

}  // namespace vgps
