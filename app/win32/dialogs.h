#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/desktop/dialogs.h"

namespace vgps {

// Opens the settings dialog for a command over `owner` and waits until it is closed. Returns IDOK
// if it was confirmed and saved, IDCANCEL if nothing was changed, 0 if the command has no dialog or
// the system refuses. `layouts` is a language library whose layout is used if it has one.
int runDialog(HWND owner, DialogContext& context, Command command, HMODULE layouts = nullptr);

// How a small question looks.
struct PromptLook {
  HMODULE layouts = nullptr;  // of a language library
  bool night = false;
};

// Asks for one line of text; empty if the user cancels.
std::optional<std::string> askText(HWND owner, std::string_view caption, std::string_view prompt,
                                   const std::string& text, const PromptLook& look = {});

// Lets the user choose one of the rows; empty if the user cancels.
std::optional<size_t> chooseRow(HWND owner, std::string_view caption,
                                std::span<const std::string> rows, const PromptLook& look = {});

// Lets the user check any of the rows; empty if the user cancels.
std::vector<size_t> chooseRows(HWND owner, std::string_view caption, std::string_view column,
                               std::span<const std::string> rows, const PromptLook& look = {});

}  // namespace vgps
