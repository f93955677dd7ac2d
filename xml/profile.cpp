#include "xml/profile.h"

#include <cstring>
#include <optional>

#include "base/number.h"

namespace vgps {
namespace {

// The document that a call works on: the given one, or the file's.
class Target {
 public:
  Target(const char* file, XmlDocument* document) : document_(document) {
    if (document_ != nullptr || file == nullptr) return;
    document_ = &loaded_.emplace();
    loaded_->Load(file);
  }

  XmlDocument* document() { return document_; }
  int finish() { return loaded_ ? loaded_->Save() : 1; }

 private:
  std::optional<XmlDocument> loaded_;
  XmlDocument* document_;
};

// Empty if there is no such value.
std::string valueAt(XmlDocument* document, std::string_view section, std::string_view key) {
  if (document == nullptr) return {};
  return xmlElementAt(*document, section).FindAttribute(key).GetValue();
}

// Sizes of the buffers of the numeric getters. A buffer is initialized with the default as text, so
// that a value too long for it reads as the default.
constexpr size_t kWholeBuffer = 100;
constexpr size_t kFloatBuffer = 30;

std::string numberText(std::string_view section, std::string_view key,
                       const std::string& defaultText, size_t size, const char* file,
                       XmlDocument* document) {
  std::string value = XmlGetString(section, key, defaultText, file, document);
  return value.size() > size ? defaultText : value;
}

// Creates missing elements of the path first; their parents remain.
int removeElement(std::string_view section, const char* file, XmlDocument* document) {
  Target target(file, document);
  if (target.document() == nullptr) return 0;
  const bool removed = xmlElementAt(*target.document(), section, true).Remove();
  return removed ? target.finish() : 0;
}

int removeValue(std::string_view section, std::string_view key, const char* file,
                XmlDocument* document) {
  Target target(file, document);
  if (target.document() == nullptr) return 0;
  XmlElement element = xmlElementAt(*target.document(), section, true);
  const int index = element.FindVariable(key);
  if (index >= 0) element.RemoveVariable(static_cast<size_t>(index));
  return target.finish();
}

constexpr std::string_view kDigits = "0123456789ABCDEF";

}  // namespace

XmlElement xmlElementAt(XmlDocument& document, std::string_view section, bool create) {
  XmlElement element = document.GetRootElement();
  while (element && !section.empty()) {
    const std::string_view name = section.substr(0, section.find('\\'));
    section.remove_prefix(name.size() < section.size() ? name.size() + 1 : name.size());
    if (!name.empty()) element = element.FindElement(name, create);
  }
  return element;
}

std::string XmlGetString(std::string_view section, std::string_view key,
                         std::string_view defaultValue, const char* file, XmlDocument* document) {
  Target target(file, document);
  std::string value = valueAt(target.document(), section, key);
  return value.empty() ? std::string(defaultValue) : value;
}

size_t XmlGetString(std::string_view section, std::string_view key, std::string_view defaultValue,
                    char* out, size_t size, const char* file, XmlDocument* document) {
  const std::string value = XmlGetString(section, key, defaultValue, file, document);
  if (out != nullptr && value.size() <= size) std::memcpy(out, value.c_str(), value.size() + 1);
  return value.size();
}

int XmlSetString(std::string_view section, const char* key, const char* value, const char* file,
                 XmlDocument* document) {
  if (key == nullptr) return removeElement(section, file, document);
  if (value == nullptr) return removeValue(section, key, file, document);
  return XmlSetString(section, std::string_view(key), std::string_view(value), file, document);
}

int XmlSetString(std::string_view section, std::string_view key, std::string_view value,
                 const char* file, XmlDocument* document) {
  Target target(file, document);
  if (target.document() == nullptr) return 0;
  XmlElement element = xmlElementAt(*target.document(), section, true);
  XmlAttribute attribute = element.FindAttribute(key);
  if (attribute) {
    attribute.SetValue(value);
  } else {
    element.AddVariable(key, value);
  }
  return target.finish();
}

int32_t XmlGetInt(std::string_view section, std::string_view key, int32_t defaultValue,
                  const char* file, XmlDocument* document) {
  return leadingInt(
      numberText(section, key, decimalText(int64_t{defaultValue}), kWholeBuffer, file, document));
}

int XmlSetInt(std::string_view section, std::string_view key, int32_t value, const char* file,
              XmlDocument* document) {
  return XmlSetInt64(section, key, value, file, document);
}

int64_t XmlGetInt64(std::string_view section, std::string_view key, int64_t defaultValue,
                    const char* file, XmlDocument* document) {
  return leadingInt64(
      numberText(section, key, decimalText(defaultValue), kWholeBuffer, file, document));
}

int XmlSetInt64(std::string_view section, std::string_view key, int64_t value, const char* file,
                XmlDocument* document) {
  return XmlSetString(section, key, decimalText(value), file, document);
}

uint64_t XmlGetUInt64(std::string_view section, std::string_view key, uint64_t defaultValue,
                      const char* file, XmlDocument* document) {
  return leadingUint64(
      numberText(section, key, decimalText(defaultValue), kWholeBuffer, file, document));
}

int XmlSetUInt64(std::string_view section, std::string_view key, uint64_t value, const char* file,
                 XmlDocument* document) {
  return XmlSetString(section, key, decimalText(value), file, document);
}

float XmlGetFloat(std::string_view section, std::string_view key, float defaultValue,
                  const char* file, XmlDocument* document) {
  constexpr int kDecimals = 6;
  const std::string defaultText = fixedText(defaultValue, kDecimals);
  return static_cast<float>(
      leadingDouble(numberText(section, key, defaultText, kFloatBuffer, file, document)));
}

int XmlSetFloat(std::string_view section, std::string_view key, float value, const char* file,
                XmlDocument* document) {
  constexpr int kDecimals = 6;
  return XmlSetString(section, key, fixedText(value, kDecimals), file, document);
}

size_t XmlGetBinary(std::string_view section, std::string_view key, void* out, size_t size,
                    const char* file, XmlDocument* document) {
  const std::string text = XmlGetString(section, key, "", file, document);
  if (text.size() != size * 2 || text.find_first_not_of(kDigits) != std::string::npos) return 0;
  auto* const bytes = static_cast<uint8_t*>(out);
  for (size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<uint8_t>(kDigits.find(text[2 * i]) << 4 | kDigits.find(text[2 * i + 1]));
  }
  return size;
}

int XmlSetBinary(std::string_view section, std::string_view key, const void* bytes, size_t size,
                 const char* file, XmlDocument* document) {
  const auto* const from = static_cast<const uint8_t*>(bytes);
  std::string text;
  text.reserve(size * 2);
  for (size_t i = 0; i < size; ++i) {
    text += kDigits[from[i] >> 4];
    text += kDigits[from[i] & 0xF];
  }
  return XmlSetString(section, key, text, file, document);
}

}  // namespace vgps
