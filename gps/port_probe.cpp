#include "gps/port_probe.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "gps/fields.h"
#include "gps/sentence.h"
#include "gps/sirf.h"
#include "gps/stray_start.h"

namespace vgps {
namespace {

using SteadyClock = std::chrono::steady_clock;

// Enough for three seconds at 115200 baud.
constexpr size_t kMostBytes = 40000;
// How often `end` is checked.
constexpr uint32_t kSliceMs = 100;

// Limits of the single read: on a silent port it would never end.
constexpr size_t kAnswerSize = 1000;
constexpr uint32_t kAnswerLimitMs = 3000;
constexpr uint32_t kAnswerSilenceMs = 250;

uint32_t msUntil(SteadyClock::time_point start, uint32_t limitMs) {
  const auto passed =
      std::chrono::duration_cast<std::chrono::milliseconds>(SteadyClock::now() - start).count();
  return passed < limitMs ? limitMs - static_cast<uint32_t>(passed) : 0;
}

bool isPrintable(char c) { return (c >= ' ' && c <= '~') || c == '\r' || c == '\n' || c == '\t'; }

bool isMostlyText(std::string_view bytes) {
  const auto printable = std::count_if(bytes.begin(), bytes.end(), isPrintable);
  return static_cast<size_t>(printable) * 4 >= bytes.size() * 3;
}

// A complete SiRF message, or at least its start and end.
bool looksLikeSirf(std::string_view bytes) {
  const size_t start = bytes.find(kSirfStart);
  return start != std::string_view::npos && bytes.find(kSirfEnd, start) != std::string_view::npos;
}

// "$" and five letters or digits, then a comma.
bool isSentence(std::string_view line, const SentenceName& name) {
  if (!name.whole) return false;
  return std::all_of(line.begin() + 1, line.begin() + SentenceName::kLength,
                     [](char c) { return (c >= 'A' && c <= 'Z') || isDigit(c); });
}

bool isPosition(const SentenceName& name) { return name.isFromGnss() && name.isPosition(); }

// What a position sentence says besides: an RMC that is valid, a GGA of some quality.
//   $GPRMC,time,A,...    $GPGGA,time,lat,N,lon,E,quality,used,...
void noteFix(const SentenceName& name, std::string_view line, ProbeReport& answer) {
  const Fields fields(line);
  if (name.type == SentenceType::rmc) {
    answer.hasFix |= fields.has(2) && fields[2].starts_with('A');
  } else if (fields.has(6) && fields.wholeNumber(6) > 0) {
    answer.hasFix = true;
    if (fields.has(7)) answer.satellites = fields.wholeNumber(7);
  }
}

ProbeResult openResult(PortError error) {
  switch (error) {
    case PortError::notFound: return ProbeResult::notFound;
    case PortError::busy: return ProbeResult::busy;
    case PortError::noPermission: return ProbeResult::noPermission;
    default: return ProbeResult::cannotOpen;
  }
}

std::string listen(SerialPort& port, uint32_t limitMs, const ProbeEnd& end, uint32_t& heardMs) {
  const auto start = SteadyClock::now();
  const auto passed = [start] {
    return static_cast<uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(SteadyClock::now() - start).count());
  };
  std::string bytes;
  std::array<char, 4096> buffer{};
  for (uint32_t now = 0; bytes.size() < kMostBytes && now < limitMs; now = passed()) {
    if (end && end(bytes, now)) break;
    size_t got = 0;
    const uint32_t wait = end ? std::min(kSliceMs, limitMs - now) : limitMs - now;
    const PortRead result = port.read(buffer, got, static_cast<int>(wait));
    if (result == PortRead::closed || result == PortRead::failed) break;
    bytes.append(buffer.data(), got);
  }
  heardMs = passed();
  return bytes;
}

}  // namespace

const char* probeResultName(ProbeResult result) {
  switch (result) {
    case ProbeResult::found: return "found";
    case ProbeResult::noPosition: return "no position";
    case ProbeResult::notFound: return "not there";
    case ProbeResult::busy: return "busy";
    case ProbeResult::noPermission: return "no permission";
    case ProbeResult::cannotOpen: return "cannot open";
    case ProbeResult::noData: return "no data";
    case ProbeResult::notNmea:
    case ProbeResult::sirfBinary: return "not NMEA";
    case ProbeResult::wrongSpeed: return "wrong speed";
  }
  return "";
}

ProbeReport classifyBytes(std::string_view bytes, uint32_t ms) {
  ProbeReport answer;
  if (bytes.empty()) return answer;
  size_t sentences = 0;
  for (std::string_view rest = bytes; !rest.empty();) {
    const size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    const std::string_view line = withoutStrayStart(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    const SentenceName name = nameOf(line);
    if (line.starts_with("!AIVD")) answer.ais = true;
    if (!isSentence(line, name)) continue;
    ++sentences;
    if (!isPosition(name)) continue;
    answer.talker = line.substr(1, 2);
    noteFix(name, line, answer);
  }
  answer.sentencesPerSecond = ms == 0 ? 0 : static_cast<double>(sentences) * 1000 / ms;
  if (!answer.talker.empty()) {
    answer.result = ProbeResult::found;
  } else if (sentences > 0 || answer.ais) {
    answer.result = ProbeResult::noPosition;
  } else if (looksLikeSirf(bytes)) {
    answer.result = ProbeResult::sirfBinary;
  } else if (isMostlyText(bytes)) {
    answer.result = ProbeResult::notNmea;
  } else {
    answer.result = ProbeResult::wrongSpeed;
  }
  return answer;
}

ProbeReport probePort(SerialPort& port, const std::string& path, uint32_t speed, uint32_t limitMs,
                      const ProbeEnd& end) {
  const PortError error = port.open(path);
  if (error != PortError::none) return {openResult(error), {}, 0};
  if (!port.setUp(speed)) return {ProbeResult::cannotOpen, {}, 0};
  uint32_t heardMs = 0;
  const std::string bytes = listen(port, limitMs, end, heardMs);
  port.close();
  return classifyBytes(bytes, heardMs);
}

bool sendsGps(SerialPort& port, const std::string& path, uint32_t speed, PortError& error,
              const std::function<bool()>& cancelled) {
  error = port.open(path);
  if (error == PortError::none && !port.setUp(speed)) error = PortError::settings;
  if (error != PortError::none) return false;
  std::string answer(kAnswerSize, '\0');
  size_t length = 0;
  const auto start = SteadyClock::now();
  auto lastByte = start;
  while (length < answer.size() && !(cancelled && cancelled())) {
    const uint32_t left =
        length == 0 ? msUntil(start, kAnswerLimitMs)
                    : std::min(msUntil(start, kAnswerLimitMs), msUntil(lastByte, kAnswerSilenceMs));
    if (left == 0) break;
    const uint32_t wait = cancelled ? std::min(left, kSliceMs) : left;
    size_t got = 0;
    const std::span<char> rest(answer.data() + length, answer.size() - length);
    const PortRead result = port.read(rest, got, static_cast<int>(wait));
    if (result == PortRead::silence && wait < left) continue;
    if (result != PortRead::data) break;
    length += got;
    lastByte = SteadyClock::now();
  }
  port.close();
  return answer.starts_with("$GP");
}

}  // namespace vgps
