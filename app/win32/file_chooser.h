#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

// The system's own dialogs for files and folders that exist. Nothing when the user gave up. They
// begin where `current` lies, or in `folder`, and leave the program's current folder alone: names
// like ".\maps" count from it.
namespace vgps {

std::optional<std::string> chooseExistingFile(HWND owner, std::string_view kind,
                                              std::string_view pattern, const std::string& current,
                                              std::string_view title = {},
                                              const std::string& folder = {});
std::optional<std::string> chooseExistingFolder(HWND owner, const std::string& current);

}  // namespace vgps
