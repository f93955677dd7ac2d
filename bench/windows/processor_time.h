#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace vgps {

// What a program has used of the processor since it began, all its threads together. Wine answers
// the system's question for another process with the numbers of whoever asks; there the host
// system is asked.
class ProcessorTime {
 public:
  // `path` is what the program was started by.
  ProcessorTime(HANDLE process, const std::string& path);

  // Threads that have ended may be missing.
  double seconds() const;

 private:
  HANDLE process_;
  std::filesystem::path host_;  // the host's folder of the process; empty without one
};

}  // namespace vgps
