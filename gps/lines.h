#pragma once

#include <string_view>

#include "gps/fix.h"

namespace vgps {

struct GpsFix;

// Handles complete lines one by one: logs, parses, and counts them and sends them to the user
// interface.
class Lines {
 public:
  explicit Lines(GpsFix& fix) : fix_(fix) {}

  // Processes complete lines, or one complete binary message.
  void process(std::string_view bytes);

 private:
  void processLine(std::string_view line);
  void processMessage(std::string_view bytes);

  GpsFix& fix_;
  NmeaSentence sentence_;
};

}  // namespace vgps
