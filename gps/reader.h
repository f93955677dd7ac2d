#pragma once

#include <functional>
#include <string_view>

namespace vgps {

struct GpsFix;

// Splits received blocks at line starts and around whole messages, so that each line reaches
// `onReceive` separately and dropping a foreign line (AIS, noise) never drops a sentence with it.
// Block borders are accidents of timing anyhow. A message that is not whole takes the rest of the
// block with it; the damaged rest of one (`binary`: messages came last) ends where the next one
// starts. Blank lines in a row stay together. `carriedStart`: the first byte of what `onReceive`
// carries, 0 when nothing.
void splitAtLineStarts(std::string_view block, char carriedStart, bool binary,
                       const std::function<void(std::string_view)>& take);

// Starts a detached reader thread for the current generation of the source.
void startReaderThread(GpsFix& fix);

}  // namespace vgps
