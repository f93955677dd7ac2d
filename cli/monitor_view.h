#pragma once

#include <cstdint>
#include <string>

#include "app/session/app_state.h"
#include "platform/console.h"

// What the monitor says, from plain values.
namespace vgps {

struct MonitorStatus {
  enum class Line {
    open,
    failed,  // could not be opened; `error` says why
    gone,    // was open and the device disappeared
  };
  Line line = Line::open;
  PortError error = PortError::none;
  std::string source;      // "/dev/ttyUSB0", "the simulation"
  uint32_t speed = 0;      // baud
  uint32_t silentMs = 0;   // since the last line, or since the source was opened
  bool dataSeen = false;   // since it was opened
  bool noiseSeen = false;  // bytes came in the last seconds that were no lines
  bool fixSeen = false;    // since it was opened
  uint32_t fixAgeMs = 0;   // since the last sentence with a fix
  int32_t quality = 0;     // of the fix, as a GGA gave it lately; 0: none did
};

// How the link stands. One that is silent has an open line.
MonitorStatus::Line lineOf(const Link& link);

// One sentence that says how it stands, the worst first: not connected and why, the line gone, no
// data for so long, no fix, a fix and its age.
std::string statusText(const MonitorStatus& status, const UiFix& shown);

// The same in a word for programs: "notConnected", "unplugged", "silent", "waiting", "noFix",
// "fix".
const char* linkName(const MonitorStatus& status, const UiFix& shown);

// One line for a log or a pipe: the status, and the fix when there is one.
std::string monitorLine(const MonitorStatus& status, const UiFix& shown);

// The block that a terminal shows over and over in the same place: goes back up over `previousRows`
// rows and writes each row over the old one. What does not fit into the terminal is left out, since
// a line that wraps or scrolls away would shift all of it. Sets `previousRows`.
std::string monitorBlock(const std::string& text, TerminalSize terminal, int& previousRows);

}  // namespace vgps
