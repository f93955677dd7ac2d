#pragma once

#include <string>

#include "app/session/app_state.h"

namespace vgps {

// Applies the settings to every part that keeps its own copy of a value: receiver, recording,
// display. Called at startup and after each dialog that saved.
void applySettings(AppState& app);

// Applies changes that did not come from a dialog of this program: from the options grid, or from
// another program that wrote the file. Called before opening a connection and before a dialog shows
// settings.
void refreshSettings(AppState& app);

// The recording options in the settings.
RecordingOptions recordingOptionsOf(const Settings& settings);

// The file that the user chose for a sound; empty for the built-in sound.
const std::string& soundFile(const Settings& settings, std::string_view sound);

}  // namespace vgps
