#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "gps/gps_fix.h"
#include "gps/reader.h"

// Opening and closing the source, and one read from it.
namespace vgps {
namespace {

using SteadyClock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr size_t kProbeSize = 1000;
// A port that stays silent would be waited for without end: this long, then it did not answer.
constexpr int kProbeLimitMs = 3000;
constexpr int kProbeSilenceMs = 250;

int millisecondsUntil(SteadyClock::time_point deadline) {
  const auto left = std::chrono::duration_cast<Milliseconds>(deadline - SteadyClock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

}  // namespace

GpsFix::GpsFix(GpsState& gpsState)
    : satellites(std::make_unique<SatelliteTable>()), state(gpsState) {}

void GpsFix::setPort(std::string_view portName, uint32_t speed) {
  portPath = devicePath(std::string(portName));
  baudRate = speed;
}

bool GpsFix::open(bool simulation, bool gpsApi, bool sensorApi, bool probeOnly) {
  simulate = simulation;
  useGpsApi = gpsApi;
  useSensorApi = sensorApi;
  portError = PortError::none;
  if (!probeOnly) sensor = nullptr;
  if (simulate) {
    useGpsApi = useSensorApi = false;
    startReader();
    return true;
  }
  if (useSensorApi && state.sensors != nullptr) return openSensor();
  return probeOnly ? probePort() : openPort();
}

// A sensor that is not there is no error: the program stays silently without a source.
bool GpsFix::openSensor() {
  sensor = state.sensors->open(state.sensorIdentifier);
  if (sensor == nullptr) return true;
  state.inputProtocol = kSensorInput;
  startReader();
  state.hooks.playSound("OK");
  return true;
}

bool GpsFix::openPort() {
  running = false;
  if (port != nullptr) port->close();
  port = state.makePort();
  portError = port->open(portPath);
  if (portError != PortError::none) {
    port = nullptr;
    return false;
  }
  state.hooks.playSound("OK");
  if (!port->setUp(baudRate)) {
    portError = PortError::settings;
    return false;
  }
  startReader();
  return true;
}

// One read: up to 1,000 bytes, over when the line pauses.
bool GpsFix::probePort() {
  const std::unique_ptr<SerialPort> probed = state.makePort();
  portError = probed->open(portPath);
  if (portError != PortError::none) return false;
  if (!probed->setUp(baudRate)) {
    portError = PortError::settings;
    return false;
  }
  std::string answer(kProbeSize, '\0');
  size_t length = 0;
  const auto deadline = SteadyClock::now() + Milliseconds(kProbeLimitMs);
  while (length < answer.size()) {
    int wait = millisecondsUntil(deadline);
    if (length > 0 && wait > kProbeSilenceMs) wait = kProbeSilenceMs;
    size_t got = 0;
    const std::span<char> rest(answer.data() + length, answer.size() - length);
    if (wait == 0 || probed->read(rest, got, wait) != PortRead::data) break;
    length += got;
  }
  probed->close();
  return answer.starts_with("$GP");
}

void GpsFix::startReader() {
  ++state.readers.generation;
  state.satellitesInUseKnown = false;
  portFailed = false;
  lastByteMicros = 0;
  {
    const std::lock_guard lock(sourceMutex_);
    source_ = {state.readers.generation, simulate, simulate || sensor ? nullptr : port, sensor};
  }
  running = true;
  state.simulation.wake();  // the reader before may be waiting for its next line
  startReaderThread(*this);
}

void GpsFix::dropPort() {
  {
    const std::lock_guard lock(sourceMutex_);
    source_.port = nullptr;
  }
  if (port != nullptr) port->close();
  port = nullptr;
}

bool GpsFix::replacePort(std::string_view portName) {
  dropPort();
  portPath = devicePath(std::string(portName));
  std::shared_ptr<SerialPort> opened = state.makePort();
  portError = opened->open(portPath);
  if (portError != PortError::none) return false;
  if (!opened->setUp(baudRate)) {
    portError = PortError::settings;
    return false;
  }
  port = opened;
  portFailed = false;
  ++portReplacements;
  const std::lock_guard lock(sourceMutex_);
  source_.port = std::move(opened);
  return true;
}

bool GpsFix::close(bool silent) {
  running = false;
  state.satellitesInUseKnown = false;
  state.simulation.wake();
  if (sensor != nullptr) {
    sensor = nullptr;
    state.hooks.playSound("ERR2");
    return true;
  }
  if (port == nullptr) return false;
  port->close();
  port = nullptr;
  if (!silent) state.hooks.playSound("ERR2");
  return true;
}

GpsFix::Source GpsFix::sourceOf(uint32_t generation) const {
  const std::lock_guard lock(sourceMutex_);
  return source_.generation == generation ? source_ : Source();
}

std::shared_ptr<LocationSensor> GpsFix::sensorOf(uint32_t generation) const {
  return sourceOf(generation).sensor;
}

bool GpsFix::simulating(uint32_t generation) const { return sourceOf(generation).simulation; }

PortRead GpsFix::read(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs) {
  got = 0;
  if (!running) return PortRead::closed;
  const Source source = sourceOf(generation);
  if (source.simulation) return readSimulation(generation, buffer, got, timeoutMs);
  if (source.port == nullptr) return PortRead::closed;
  const PortRead result = source.port->read(buffer, got, timeoutMs);
  if (result == PortRead::data) lastByteMicros = state.clock.microseconds();
  // A read of a port that was taken away meanwhile says nothing about the one in its place.
  if (result == PortRead::failed && sourceOf(generation).port == source.port) portFailed = true;
  return result;
}

// Paces itself, so a line is a burst of its own and there is nothing to wait for behind it.
PortRead GpsFix::readSimulation(uint32_t generation, std::span<char> buffer, size_t& got,
                                int timeoutMs) {
  if (timeoutMs >= 0) return PortRead::silence;
  std::string line;
  uint32_t index = 0;
  uint32_t count = 0;
  const bool arrived = state.simulation.next(line, index, count, [&] {
    return state.readers.readerStop || !running || state.readers.generation != generation;
  });
  if (!arrived) return PortRead::silence;
  if (state.simulation.mode() != SimMode::tapping) {
    state.hooks.setTitle("Sim index: " + std::to_string(index) + "/" + std::to_string(count));
  }
  got = line.copy(buffer.data(), buffer.size());
  lastByteMicros = state.clock.microseconds();
  return PortRead::data;
}

bool GpsFix::stopReaders(int timeoutMs) {
  ReaderControl& readers = state.readers;
  {
    const std::lock_guard lock(readers.mutex);
    readers.readerStop = true;
    readers.wake.notify_all();
  }
  state.simulation.wake();
  if (port != nullptr) port->close();
  std::unique_lock lock(readers.mutex);
  return readers.wake.wait_for(lock, Milliseconds(timeoutMs),
                               [&] { return readers.liveReaders == 0; });
}

}  // namespace vgps
