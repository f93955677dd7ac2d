#include "formats/xml_text.h"

#include <algorithm>
#include <charconv>

#include "base/number.h"
#include "xml/document.h"
#include "xml/escape.h"

namespace vgps {
namespace {

constexpr size_t kTextBuffer = size_t{1} << 18;

}  // namespace

XmlText::XmlText(TextSink sink, size_t depth, Texts texts)
    : sink_(std::move(sink)),
      buffer_(kTextBuffer),
      at_(buffer_.data()),
      end_(at_ + buffer_.size()),
      depth_(depth),
      texts_(texts) {}

char* XmlText::roomAfterHanding(size_t size) {
  const auto used = static_cast<size_t>(at_ - buffer_.data());
  good_ = good_ && sink_({buffer_.data(), used});
  if (buffer_.size() < size) buffer_.resize(size);
  end_ = buffer_.data() + buffer_.size();
  return at_ = buffer_.data();
}

bool XmlText::finish() {
  roomAfterHanding(0);
  return good_;
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

void XmlText::settleForText() {
  if (!open_.back().pending) return;
  if (texts_ == Texts::onLines) return settle();
  open_.back().pending = false;
  open_.back().inLine = true;
  put(">");
}

void XmlText::endText() {
  if (texts_ == Texts::onLines) put("\r\n");
}

// A tag up to its name.
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
  if (last.inLine) {
    put("</"), put(last.name);
  } else {
    beginLine("</", last.name);
  }
  put(">\r\n");
}

void XmlText::beginElement(std::string_view name) {
  settle(), beginLine("<", name);
  put(texts_ == Texts::onLines ? ">\r\n" : ">");
}

void XmlText::endElement(std::string_view name) {
  if (texts_ == Texts::onLines) {
    put("\r\n"), beginLine("</", name);
  } else {
    put("</"), put(name);
  }
  put(">\r\n");
}

void XmlText::element(std::string_view name, std::string_view text) {
  if (text.empty()) return settle(), beginLine("<", name), put("/>\r\n");
  beginElement(name), putEscaped(text), endElement(name);
}

void XmlText::elementWithPlainText(std::string_view name, std::string_view text) {
  beginElement(name);
  for (size_t at = 0; at < text.size();) {
    const size_t reference = std::min(text.find('&', at), text.size());
    putEscaped(text.substr(at, reference - at));
    if (reference < text.size()) put("&amp;");
    at = reference + 1;
  }
  endElement(name);
}

void XmlText::element(std::string_view name, double value, int decimals) {
  beginElement(name), putNumber(value, decimals), endElement(name);
}

void XmlText::element(std::string_view name, uint32_t value) {
  char digits[16];
  const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  element(name, {digits, static_cast<size_t>(end - digits)});
}

}  // namespace vgps
