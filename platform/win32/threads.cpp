#include "platform/threads.h"

#include <windows.h>

namespace vgps {

void lowerThreadPriority() { SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_IDLE); }

}  // namespace vgps
