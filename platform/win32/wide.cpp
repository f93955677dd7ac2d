#include "platform/win32/wide.h"

#include "base/text.h"

namespace vgps {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::wstring wideFromUtf8(std::string_view text) {
  const std::u16string units = utf16FromUtf8(text);
  return {units.begin(), units.end()};
}

std::string utf8FromWide(std::wstring_view text) {
  return utf8FromUtf16(std::u16string(text.begin(), text.end()));
}

}  // namespace vgps
