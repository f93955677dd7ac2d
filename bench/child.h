#pragma once

#include <string>
#include <vector>

namespace vgps {

struct ChildRun {
  bool succeeded = false;  // started and ended with 0
  double seconds = 0;      // from start to end
  double megabytes = 0;    // most memory resident at a time
};

// Runs a program, what it prints going nowhere, and waits for its end.
ChildRun runChild(const std::vector<std::string>& arguments);

}  // namespace vgps
