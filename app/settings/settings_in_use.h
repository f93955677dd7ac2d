#pragma once

#include "app/settings/settings.h"

namespace vgps {

// Whether the program does something with the setting. The others belong to features that do not
// exist yet: they are loaded, shown and kept, but cannot be changed in the dialogs.
bool isInUse(const SettingRow& row);

}  // namespace vgps
