#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vgps {

// The English text of that number; empty when there is none.
std::string_view textOf(uint32_t number);

// The text with its "%s" or "%u" replaced.
std::string textWith(uint32_t number, std::string_view value);

}  // namespace vgps
