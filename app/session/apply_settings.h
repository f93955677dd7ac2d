#pragma once

#include <string>

#include "app/session/app_state.h"

namespace vgps {

// Takes over what the settings say, for every part that keeps values of its own: receiver,
// recording, display. After the start and after each dialog that saved.
void applySettings(AppState& app);

// The same for what something else than this program's dialogs has written into the settings
// document since it was read: the options grid, another program. The document is looked at before
// a connection is opened and before a dialog shows settings.
void refreshSettings(AppState& app);

// What the settings say about recording.
RecordingOptions recordingOptionsOf(const Settings& settings);

// The file that a person has chosen for a sound of the program; empty: the program's own.
const std::string& soundFile(const Settings& settings, std::string_view sound);

}  // namespace vgps
