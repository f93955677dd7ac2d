#pragma once

#include <string>
#include <string_view>

namespace vgps {

// Converts between UTF-8 and the UTF-16 of Windows functions.
std::wstring wideFromUtf8(std::string_view text);
std::string utf8FromWide(std::wstring_view text);

}  // namespace vgps
