#pragma once

#include "app/settings/settings.h"

namespace vgps {

// Whether the program uses the setting. The others belong to missing features: they are loaded,
// shown, and saved, but cannot be changed in the dialogs.
bool isInUse(const SettingRow& row);

}  // namespace vgps
