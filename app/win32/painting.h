#pragma once

#include <windows.h>

#include "platform/canvas.h"

namespace vgps {

inline void fillArea(HDC context, const RECT& area, Color color) {
  SetDCBrushColor(context, color);
  FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

inline void frameArea(HDC context, const RECT& area, Color color) {
  SetDCBrushColor(context, color);
  FrameRect(context, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

}  // namespace vgps
