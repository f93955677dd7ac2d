#pragma once

namespace vgps {

// Lists and changes a library of a thousand tracks with five million points.
void measureLibrary();

}  // namespace vgps
