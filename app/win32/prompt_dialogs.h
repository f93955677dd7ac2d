#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Small questions that have no layout of their own: lists and a line of text. Nothing when the
// user gave up.
namespace vgps {

std::optional<size_t> chooseRowIn(HWND owner, std::string_view title,
                                  std::span<const std::string> rows);
// Rows with a box each; the marked ones, ascending.
std::vector<size_t> chooseRowsIn(HWND owner, std::string_view title, std::string_view column,
                                 std::span<const std::string> rows);
std::optional<std::string> askTextIn(HWND owner, std::string_view title, std::string_view text);

}  // namespace vgps
