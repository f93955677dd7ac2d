#include "platform/threads.h"

#include <sys/resource.h>
#include <unistd.h>

namespace vgps {

// On Linux a thread has a niceness of its own, addressed by its thread number. 19 is the weakest.
void lowerThreadPriority() { setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 19); }

}  // namespace vgps
