#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/settings/config_store.h"

namespace vgps {

// Asks the user for one line of text; empty if the user cancels.
using TextPrompt = std::function<std::optional<std::string>(
    std::string_view caption, std::string_view prompt, const std::string& text)>;
using TextTeller = std::function<void(std::string_view text)>;

// Lets the user edit an option that no dialog shows, by its name, and saves the document. Returns
// false if the user cancels.
bool editHiddenOption(ConfigStore& store, const TextPrompt& prompt, const TextTeller& tell);

}  // namespace vgps
