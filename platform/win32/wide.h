#pragma once

#include <string>
#include <string_view>

namespace vgps {

// UTF-8 to the text of the system's functions and back.
std::wstring wideFromUtf8(std::string_view text);
std::string utf8FromWide(std::wstring_view text);

}  // namespace vgps
