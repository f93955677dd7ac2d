#pragma once

#include <functional>
#include <string_view>

namespace vgps {

struct GpsFix;

// Cuts received blocks at line starts, so that every line reaches `onReceive` as a chunk of its
// own: a foreign line (AIS, noise) takes no sentence with it when it is dropped. Block borders are
// accidents of timing anyhow. Binary input passes untouched; the damaged rest of a message
// (`binary`: messages came last) ends where the next one starts. `carriedStart`: the first byte of
// what `onReceive` carries, 0 when nothing.
void splitAtLineStarts(std::string_view block, char carriedStart, bool binary,
                       const std::function<void(std::string_view)>& take);

// Starts a detached reader thread for the current generation of the source.
void startReaderThread(GpsFix& fix);

}  // namespace vgps
