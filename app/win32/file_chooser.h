#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

// The system's dialogs for choosing existing files and folders; the result is empty if the user
// cancels. They start in the folder of `current`, or in `folder`, and do not change the current
// folder, which paths like ".\maps" are relative to.
namespace vgps {

std::optional<std::string> chooseExistingFile(HWND owner, std::string_view kind,
                                              std::string_view pattern, const std::string& current,
                                              std::string_view title = {},
                                              const std::string& folder = {});
std::optional<std::string> chooseExistingFolder(HWND owner, const std::string& current);

}  // namespace vgps
