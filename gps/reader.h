#pragma once

#include <functional>
#include <string_view>

namespace vgps {

struct GpsFix;

// Splits received blocks at line starts, so that each line reaches `onReceive` separately and
// dropping a foreign line (AIS, noise) never drops a sentence with it. (Where a block ends is only
// a matter of timing.) Binary input is not split, except that the damaged rest of a message ends
// where the next one starts; `binary` says that the last input was binary. `carriedStart` is the
// first byte of the incomplete line that `onReceive` keeps, 0 if there is none.
void splitAtLineStarts(std::string_view block, char carriedStart, bool binary,
                       const std::function<void(std::string_view)>& take);

// Starts a detached reader thread for the current generation of the source.
void startReaderThread(GpsFix& fix);

}  // namespace vgps
