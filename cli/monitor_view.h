#pragma once

#include <cstdint>
#include <string>

#include "app/session/app_state.h"
#include "platform/console.h"

// The texts of the monitor, made from plain values.
namespace vgps {

struct MonitorStatus {
  enum class Line {
    open,
    failed,  // could not be opened; `error` tells why
    gone,    // was open, but the device has disappeared
  };
  Line line = Line::open;
  PortError error = PortError::none;
  std::string source;      // "/dev/ttyUSB0", "the simulation"
  uint32_t speed = 0;      // baud
  uint32_t silentMs = 0;   // since the last line, or since opening
  bool dataSeen = false;   // since it was opened
  bool noiseSeen = false;  // recently received bytes that were not lines
  bool fixSeen = false;    // since it was opened
  uint32_t fixAgeMs = 0;   // since the last sentence with a fix
  int32_t quality = 0;     // of the fix, from a recent GGA; 0: none
};

// The line status for a link. A silent link counts as open.
MonitorStatus::Line lineOf(const Link& link);

// The status as one sentence, the most severe problem first: not connected and why, the device
// gone, no data for some time, no fix, or a fix and its age.
std::string statusText(const MonitorStatus& status, const UiFix& shown);

// The same as one word, for programs: "notConnected", "unplugged", "silent", "waiting", "noFix",
// "fix".
const char* linkName(const MonitorStatus& status, const UiFix& shown);

// One line for a log or a pipe: the status and, if there is one, the fix.
std::string monitorLine(const MonitorStatus& status, const UiFix& shown);

// A block of text that a terminal updates in place: moves up by `previousRows` rows, overwrites
// them, and sets `previousRows` to the new number. Omits what does not fit, since a line that wraps
// or scrolls would shift the whole block.
std::string monitorBlock(const std::string& text, TerminalSize terminal, int& previousRows);

}  // namespace vgps
