#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/settings/config_store.h"

namespace vgps {

// One line of text that the user is asked for; nothing when they give up.
using TextPrompt = std::function<std::optional<std::string>(
    std::string_view caption, std::string_view prompt, const std::string& text)>;
using TextTeller = std::function<void(std::string_view text)>;

// Edits an option that no dialog shows, by its name, and saves the document. False when the user
// gave up.
bool editHiddenOption(ConfigStore& store, const TextPrompt& prompt, const TextTeller& tell);

}  // namespace vgps
