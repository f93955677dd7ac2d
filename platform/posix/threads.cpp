#include "platform/threads.h"

#include <sys/resource.h>
#include <unistd.h>

namespace vgps {

// On Linux each thread has its own nice value, set through its thread ID. 19 is the lowest
// priority.
void lowerThreadPriority() { setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 19); }

}  // namespace vgps
