#include "cli/monitor_view.h"

#include <algorithm>

#include "app/session/fix_values.h"
#include "base/number.h"
#include "base/text.h"
#include "cli/state_text.h"
#include "gps/port_errors.h"

namespace vgps {
namespace {

// Receivers report once a second; silence of more than two seconds is worth reporting.
constexpr uint32_t kSilentMs = 2500;

std::string secondsText(uint32_t ms) { return std::to_string(ms / 1000) + " s"; }

std::string silenceText(const MonitorStatus& status) {
  if (status.noiseSeen) {
    return "data is arriving from " + status.source + ", but no NMEA sentences; is " +
           std::to_string(status.speed) + " baud correct?";
  }
  return "no data from " + status.source + " for " + secondsText(status.silentMs);
}

// Binary messages leave the values of the last text sentence unchanged, however old they are.
bool hasFix(const MonitorStatus& status, const UiFix& shown) {
  const bool leftOver = shown.inputProtocol == kSirfBinary && status.fixAgeMs >= kSilentMs;
  return shown.fix.fixStatus != 0 && !leftOver;
}

std::string noFixText(const MonitorStatus& status, const UiFix& shown) {
  if (shown.inputProtocol == kSirfBinary) {
    return "no fix: the receiver is sending SiRF binary, which is not decoded";
  }
  return status.fixSeen ? "no fix for " + secondsText(status.fixAgeMs) : "no fix yet";
}

}  // namespace

MonitorStatus::Line lineOf(const Link& link) {
  if (link.state() == Link::State::failed) return MonitorStatus::Line::failed;
  if (link.state() != Link::State::lost) return MonitorStatus::Line::open;
  switch (link.error()) {
    case PortError::none: return MonitorStatus::Line::open;
    case PortError::notFound: return MonitorStatus::Line::gone;
    default: return MonitorStatus::Line::failed;
  }
}

std::string statusText(const MonitorStatus& status, const UiFix& shown) {
  if (status.line == MonitorStatus::Line::failed) {
    return "not connected: " + status.source + " " + wordsOf(status.error).predicate;
  }
  if (status.line == MonitorStatus::Line::gone) {
    return "not connected: " + status.source + " was unplugged";
  }
  if (status.silentMs >= kSilentMs) return silenceText(status);
  if (!status.dataSeen) return "connected to " + status.source + ", waiting for data";
  if (!hasFix(status, shown)) return noFixText(status, shown);
  return fixStatusText(std::max(status.quality, shown.fix.fixStatus)) + ", " +
         fixedText(status.fixAgeMs / 1000.0, 1) + " s old";
}

const char* linkName(const MonitorStatus& status, const UiFix& shown) {
  if (status.line == MonitorStatus::Line::failed) return "notConnected";
  if (status.line == MonitorStatus::Line::gone) return "unplugged";
  if (status.silentMs >= kSilentMs) return "silent";
  if (!status.dataSeen) return "waiting";
  return hasFix(status, shown) ? "fix" : "noFix";
}

std::string monitorLine(const MonitorStatus& status, const UiFix& shown) {
  const FixRecord& fix = shown.fix;
  std::string line = statusText(status, shown);
  const bool fixShown =
      status.line == MonitorStatus::Line::open && status.dataSeen && hasFix(status, shown);
  if (fixShown) {
    const KnownValues known = knownValues(shown);
    line = orDashes(known.time, timeText(fix.utcTime)) + "  " +
           orDashes(known.position, positionText(fix)) + "  " +
           orDashes(known.altitude, fixedText(fix.altitude, 0)) + " m  " +
           orDashes(known.speed, fixedText(fix.speedKmh, 2)) + " km/h  " +
           orDashes(known.course, fixedText(fix.course, 1)) + " deg  " +
           orDashes(known.used, std::to_string(shown.satellites.usedCount)) + " satellites  " +
           line;
  }
  return line + "\n";
}

std::string monitorBlock(const std::string& text, TerminalSize terminal, int& previousRows) {
  std::string block;
  if (previousRows > 0) block = "\x1b[" + std::to_string(previousRows) + "A";
  previousRows = 0;
  // The cursor is in the row below the last one.
  const int mostRows = std::max(terminal.rows - 1, 1);
  for (size_t at = 0; at < text.size() && previousRows < mostRows; ++previousRows) {
    const size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view row = std::string_view(text).substr(at, end - at);
    block += firstUtf16Units(row, static_cast<size_t>(terminal.columns));
    block += "\x1b[K\n";
    at = end + 1;
  }
  return block + "\x1b[J";
}

}  // namespace vgps
