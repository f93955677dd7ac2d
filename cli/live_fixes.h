#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "gps/fix.h"

namespace vgps {

struct LiveSource {
  std::string port;
  uint32_t speed = 9600;
  bool simulate = false;
  double seconds = 0;  // 0: until the user stops it
};

// Reads a receiver, or the simulation, until the user or the time ends it. `take` gets every
// complete fix, `tell` a line when the receiver cannot be opened, has gone, or is there again; both
// on this thread. To be called once.
void readLiveFixes(const LiveSource& source, const std::function<void(const FixRecord&)>& take,
                   const std::function<void(const std::string&)>& tell);

}  // namespace vgps
