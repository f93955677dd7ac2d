#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Two small dialogs without a layout in the resources: a list and a line of text. They return none
// if the user cancels.
namespace vgps {

std::optional<size_t> chooseRowIn(HWND owner, std::string_view title,
                                  std::span<const std::string> rows);
std::optional<std::string> askTextIn(HWND owner, std::string_view title, std::string_view text);

}  // namespace vgps
