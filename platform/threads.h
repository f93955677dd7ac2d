#pragma once

// Thread functions that std::thread lacks. Chosen at link time.
namespace vgps {

// Gives the calling thread the lowest priority that the system allows an ordinary user, ideally one
// that runs only when the processor is idle.
void lowerThreadPriority();

}  // namespace vgps
