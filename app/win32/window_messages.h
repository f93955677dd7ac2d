#pragma once

#include <windows.h>

namespace vgps {

// Messages that the main window posts to itself.
inline constexpr UINT kTitleChanged = WM_APP + 1;
inline constexpr UINT kMessagesWaiting = WM_APP + 2;
inline constexpr UINT kFilesDropped = WM_APP + 3;

}  // namespace vgps
