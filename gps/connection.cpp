#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "base/texts.h"
#include "gps/gps_fix.h"
#include "gps/port_probe.h"
#include "gps/reader.h"

// Opening and closing the source, and one read from it.
namespace vgps {
namespace {

using Milliseconds = std::chrono::milliseconds;

// At the end of the program. A Bluetooth line whose receiver is away takes half a minute to open.
constexpr int kOpeningEndMs = 300;

}  // namespace

GpsFix::GpsFix(GpsState& gpsState)
    : satellites(std::make_unique<SatelliteTable>()), state(gpsState) {
  unknown = kAllUnknown;
}

void GpsFix::setPort(std::string_view portName, uint32_t speed) {
  portPath = devicePath(std::string(portName));
  baudRate = speed;
}

bool GpsFix::open(bool simulation, bool gpsApi, bool sensorApi, bool probeOnly) {
  simulate = simulation;
  useGpsApi = gpsApi;
  useSensorApi = sensorApi;
  portError = PortError::none;
  if (!probeOnly) {
    running = false;
    sensor = nullptr;
    if (const std::shared_ptr<SerialPort> before = endSource()) before->close();
  }
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
  std::shared_ptr<SerialPort> port = state.makePort();
  portError = port->open(portPath);
  if (portError != PortError::none) return false;
  state.hooks.playSound("OK");
  if (!port->setUp(baudRate)) portError = PortError::settings;
  {
    const std::lock_guard lock(sourceMutex_);
    source_.port = std::move(port);
  }
  if (portError != PortError::none) return false;
  startReader();
  return true;
}

bool GpsFix::probePort() { return answersAsGps(*state.makePort(), portPath, baudRate, portError); }

void GpsFix::startReader() {
  ++state.readers.generation;
  state.satellitesInUseKnown = false;
  portFailed = false;
  lastByteMicros = 0;
  {
    const std::lock_guard lock(sourceMutex_);
    source_.generation = state.readers.generation;
    source_.simulation = simulate;
    source_.sensor = sensor;
    device_ = {};
    device_.path = portPath;
    device_.baudRate = baudRate;
  }
  running = true;
  state.simulation.wake();  // the reader before may be waiting for its next line
  startReaderThread(*this);
}

// Whatever a reader still does for the source is in vain from now on; a port that it is opening is
// closed again when that is over. Returns the port, if there is one.
std::shared_ptr<SerialPort> GpsFix::endSource() {
  const std::lock_guard lock(sourceMutex_);
  state.readers.portRequested = false;
  attempt_ = {};
  return std::exchange(source_, {}).port;
}

bool GpsFix::close(bool silent) {
  running = false;
  state.satellitesInUseKnown = false;
  state.simulation.wake();
  const std::shared_ptr<SerialPort> port = endSource();
  if (sensor != nullptr) {
    sensor = nullptr;
    state.hooks.playSound("ERR2");
    return true;
  }
  if (port == nullptr) return false;
  port->close();
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
    state.hooks.setTitle(
        textWith(Text::simulationIndex, std::to_string(index), std::to_string(count)));
  }
  got = line.copy(buffer.data(), buffer.size());
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
  if (const std::shared_ptr<SerialPort> port = endSource()) port->close();
  const auto waitUntil = [&](int ms, int32_t mostLeft) {
    std::unique_lock lock(readers.mutex);
    return readers.wake.wait_for(lock, Milliseconds(ms),
                                 [&] { return readers.liveReaders <= mostLeft; });
  };
  const int forOpening = std::min(timeoutMs, kOpeningEndMs);
  if (waitUntil(forOpening, 0)) return true;
  waitUntil(timeoutMs - forOpening, readers.opening);
  return readers.liveReaders == 0;
}

}  // namespace vgps
