#pragma once

// What std::thread does not offer. Chosen at link time.
namespace vgps {

// The calling thread runs only when nothing else wants the processor, or as near to that as the
// system lets an ordinary user go.
void lowerThreadPriority();

}  // namespace vgps
