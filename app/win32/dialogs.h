#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "app/desktop/dialogs.h"

namespace vgps {

// Opens the settings dialog of a command over `owner` and waits until it is closed. IDOK when it
// was confirmed and saved, IDCANCEL when nothing was changed, 0 when the command opens no dialog
// or the system refuses. `layouts`: a language library to take the layout from when it has it.
int runDialog(HWND owner, DialogContext& context, Command command, HMODULE layouts = nullptr);

// Asks for one line of text; nothing when the user gave up.
std::optional<std::string> askText(HWND owner, std::string_view caption, std::string_view prompt,
                                   const std::string& text, HMODULE layouts = nullptr);

}  // namespace vgps
