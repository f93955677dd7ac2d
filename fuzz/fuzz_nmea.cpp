#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "base/number.h"
#include "fuzz/quiet_hooks.h"
#include "gps/gps_fix.h"
#include "gps/nmea.h"

// Any line into the parser, and its fields into the readers of angles and numbers.
namespace {

using namespace vgps;

// The number at the start of `field` by the C library, which reads more than numbers: only what
// can belong to a decimal number is shown to it.
double referenceDouble(std::string_view field) {
  const size_t start = field.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  const std::string_view rest = field.substr(start);
  const std::string number(rest.substr(0, rest.find_first_not_of("+-.0123456789eE")));
  return std::strtod(number.c_str(), nullptr);
}

void checkField(std::string_view field) {
  const double value = leadingDouble(field);
  const double reference = referenceDouble(field);
  require(value == reference && std::signbit(value) == std::signbit(reference));
  require(field.find_first_of(",") == std::string_view::npos);
  int32_t milliseconds = 0;
  int32_t millisecondsAlone = 0;
  double degrees = 0;
  double degreesAlone = 0;
  ddmmToDegrees(field, &milliseconds, &degrees);
  ddmmToDegrees(field, &millisecondsAlone, nullptr);
  ddmmToDegrees(field, nullptr, &degreesAlone);
  require(milliseconds == millisecondsAlone && degrees == degreesAlone);
}

void checkFields(std::string_view line) {
  static std::vector<std::string_view> fields;
  splitFields(line, fields);
  size_t length = fields.size() - 1;  // the commas
  for (const std::string_view field : fields) {
    checkField(field);
    length += field.size();
  }
  require(length == line.size());
}

bool sameTable(const SatelliteTable& a, const SatelliteTable& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

void checkLine(GpsFix& fix, std::string_view line) {
  static NmeaSentence looked;
  static NmeaSentence taken;
  const FixRecord before = fix;
  const SatelliteTable satellitesBefore = *fix.satellites;
  const bool accepted = fix.parseSentence(line, looked, false);
  const FixRecord& after = fix;
  require(std::memcmp(&before, &after, sizeof before) == 0);
  require(sameTable(satellitesBefore, *fix.satellites));
  require(accepted == line.starts_with('$'));
  require(fix.parseSentence(line, taken, true) == accepted);
  require(std::memcmp(&looked, &taken, sizeof looked) == 0);
  checkNmeaChecksum(line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  GpsHooks hooks;
  const SteppingClock clock(1);
  GpsState state(hooks, clock);
  state.options.altitudeFromGeoidField = size % 2 == 1;
  state.options.speedUnit = static_cast<int32_t>(size % 5);
  state.options.utcOffsetMinutes = static_cast<int32_t>(size) * 7 - 900;
  GpsFix fix(state);
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  while (!rest.empty()) {
    const size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    // A block of its own for each line: one byte too far is outside of it.
    const auto block = std::make_unique<char[]>(line.size());
    line.copy(block.get(), line.size());
    checkLine(fix, {block.get(), line.size()});
    checkFields({block.get(), line.size()});
  }
  return 0;
}
