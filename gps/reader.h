#pragma once

#include <functional>
#include <string_view>

namespace vgps {

struct GpsFix;

// Splits received blocks at line starts and around complete messages, so that each line reaches
// `onReceive` separately and dropping a foreign line (AIS, noise) never drops a sentence with it.
// Block boundaries depend on timing anyway. An incomplete message extends to the end of the block;
// the damaged rest of one (`binary`: the last data was binary) ends where the next message starts.
// Consecutive blank lines stay together. `carriedStart` is the first byte that `onReceive` has
// kept, 0 if there is none.
void splitAtLineStarts(std::string_view block, char carriedStart, bool binary,
                       const std::function<void(std::string_view)>& take);

// Starts a detached reader thread for the current generation of the source.
void startReaderThread(GpsFix& fix);

}  // namespace vgps
