#include "formats/xml_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/number.h"
#include "xml/document.h"
#include "xml/escape.h"

namespace vgps {
namespace {

constexpr size_t kTextBuffer = size_t{1} << 18;

}  // namespace

XmlText::XmlText(TextSink sink, size_t depth)
    : sink_(std::move(sink)), buffer_(kTextBuffer), at_(buffer_.data()), depth_(depth) {}

char* XmlText::room(size_t size) {
  const auto used = static_cast<size_t>(at_ - buffer_.data());
  if (used + size <= buffer_.size()) return at_;
  good_ = good_ && sink_({buffer_.data(), used});
  if (buffer_.size() < size) buffer_.resize(size);
  return at_ = buffer_.data();
}

bool XmlText::finish() {
  room(buffer_.size());
  return good_;
}

void XmlText::put(std::string_view text) {
  char* const to = room(text.size());
  std::memcpy(to, text.data(), text.size());
  at_ = to + text.size();
}

void XmlText::putEscaped(std::string_view text) {
  if (needsEscape(text)) {
    put(escapeXml(text));
  } else {
    put(text);
  }
}

void XmlText::putNumber(double value, int decimals) {
  at_ = writeFixed(room(kLongestFixedText), value, decimals);
}

void XmlText::settle() {
  if (open_.empty() || !open_.back().pending) return;
  open_.back().pending = false;
  put(">\r\n");
}

// Writes a tag up to its name.
void XmlText::beginLine(std::string_view mark, std::string_view name) {
  const size_t tabs = depth_ + open_.size();
  at_ = std::fill_n(room(tabs), tabs, '\t');
  put(mark), put(name);
}

void XmlText::declaration() { put(kXmlDeclaration), put("\r\n"); }

void XmlText::beginTag(std::string_view name) {
  settle(), beginLine("<", name);
  open_.push_back({std::string(name)});
}

void XmlText::attribute(std::string_view name, std::string_view value) {
  put(" "), put(name), put("=\""), putEscaped(value), put("\"");
}

void XmlText::attribute(std::string_view name, double value, int decimals) {
  put(" "), put(name), put("=\""), putNumber(value, decimals), put("\"");
}

void XmlText::close() {
  const Open last = std::move(open_.back());
  open_.pop_back();
  if (last.pending) return put("/>\r\n");
  beginLine("</", last.name), put(">\r\n");
}

void XmlText::element(std::string_view name, std::string_view text) {
  settle(), beginLine("<", name);
  if (text.empty()) return put("/>\r\n");
  put(">\r\n"), putEscaped(text), put("\r\n");
  beginLine("</", name), put(">\r\n");
}

void XmlText::element(std::string_view name, double value, int decimals) {
  settle(), beginLine("<", name);
  put(">\r\n"), putNumber(value, decimals), put("\r\n");
  beginLine("</", name), put(">\r\n");
}

void XmlText::element(std::string_view name, uint32_t value) {
  char digits[16];
  const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  element(name, {digits, static_cast<size_t>(end - digits)});
}

}  // namespace vgps
