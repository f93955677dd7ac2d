#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/desktop/desktop.h"

// The system's own dialogs for files and folders. Nothing when the user gave up. They
// begin where `current` lies, or in `folder`, and leave the program's current folder alone: names
// like ".\maps" count from it.
namespace vgps {

std::optional<std::string> chooseExistingFile(HWND owner, std::string_view kind,
                                              std::string_view pattern, const std::string& current,
                                              std::string_view title = {},
                                              const std::string& folder = {},
                                              std::span<const FileType> more = {});
// A file to be written. Asks before one that exists is chosen.
std::optional<std::string> chooseNewFileIn(HWND owner, const FileChoice& wanted);
std::optional<std::string> chooseExistingFolder(HWND owner, const std::string& current);

// Where the system keeps the user's documents; empty when there is no such folder.
std::string documentsFolder();

}  // namespace vgps
