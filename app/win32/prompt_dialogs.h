#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Two small questions that have no layout of their own: a list and a line of text. Nothing when the
// user gave up.
namespace vgps {

std::optional<size_t> chooseRowIn(HWND owner, std::string_view title,
                                  std::span<const std::string> rows);
std::optional<std::string> askTextIn(HWND owner, std::string_view title, std::string_view text);

}  // namespace vgps
