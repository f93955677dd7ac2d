#include <cstring>

#include "base/number.h"
#include "xml/element.h"
#include "xml/escape.h"

namespace vgps {
namespace {

size_t copyUnescaped(std::string_view stored, char* buffer) {
  if (buffer == nullptr) return unescapedLength(stored);
  const std::string plain = unescapeXml(stored);
  std::memcpy(buffer, plain.c_str(), plain.size() + 1);
  return plain.size();
}

}  // namespace

XmlElement XmlAttribute::GetElement() const {
  return {tree_, tree_ == nullptr ? kNoRow : element_};
}

std::string_view XmlAttribute::storedName() const {
  return tree_ == nullptr ? std::string_view() : tree_->nameOf(tree_->attributes[row()]);
}

std::string_view XmlAttribute::storedValue() const {
  return tree_ == nullptr ? std::string_view() : tree_->valueOf(tree_->attributes[row()]);
}

size_t XmlAttribute::GetName(char* buffer) const { return copyUnescaped(storedName(), buffer); }
size_t XmlAttribute::GetValue(char* buffer) const { return copyUnescaped(storedValue(), buffer); }
std::string XmlAttribute::GetName() const { return unescapeXml(storedName()); }
std::string XmlAttribute::GetValue() const { return unescapeXml(storedValue()); }

std::string_view XmlAttribute::value(std::string& scratch) const {
  const std::string_view stored = storedValue();
  if (stored.find('&') == std::string_view::npos) return stored;
  scratch = unescapeXml(stored);
  return scratch;
}

// Entities cannot be part of a number, so the stored text can be parsed directly.
int32_t XmlAttribute::GetValueInt() const { return leadingInt(storedValue()); }
int64_t XmlAttribute::GetValueInt64() const { return leadingInt64(storedValue()); }
uint64_t XmlAttribute::GetValueUInt64() const { return leadingUint64(storedValue()); }
double XmlAttribute::GetValueDouble() const { return leadingDouble(storedValue()); }
float XmlAttribute::GetValueFloat() const { return static_cast<float>(GetValueDouble()); }

uint32_t XmlAttribute::GetValueUInt() const {
  const int64_t value = GetValueInt64();
  return value > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(value);
}

bool XmlAttribute::SetValue(std::string_view value) {
  if (tree_ == nullptr) return false;
  if (needsEscape(value)) {
    tree_->setValue(row(), escapeXml(value));
  } else {
    tree_->setValue(row(), value);
  }
  return true;
}

bool XmlAttribute::SetValueInt(int32_t value) { return SetValueInt64(value); }
bool XmlAttribute::SetValueUInt(uint32_t value) { return SetValueUInt64(value); }
bool XmlAttribute::SetValueInt64(int64_t value) { return SetValue(decimalText(value)); }
bool XmlAttribute::SetValueUInt64(uint64_t value) { return SetValue(decimalText(value)); }
bool XmlAttribute::SetValueFloat(double value) { return SetValue(fixedText(value, 6)); }

}  // namespace vgps
