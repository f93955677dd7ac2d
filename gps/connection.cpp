#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "base/texts.h"
#include "gps/gps_fix.h"
#include "gps/port_probe.h"
#include "gps/reader.h"

// Opens and closes the source, and reads from it.
namespace vgps {
namespace {

using Milliseconds = std::chrono::milliseconds;

// Used at the end of the program. A Bluetooth port whose receiver is out of reach takes half a
// minute to open.
constexpr int kOpeningEndMs = 300;

}  // namespace

Connection::Connection(GpsFix& fix) : fix_(fix), status_(fix), state_(fix.state) {}

void Connection::setPort(std::string_view portName, uint32_t speed) {
  status_.portPath = devicePath(std::string(portName));
  status_.baudRate = speed;
}

bool Connection::open(bool simulation, bool gpsApi, bool sensorApi, bool probeOnly) {
  status_.simulate = simulation;
  status_.useGpsApi = gpsApi;
  status_.useSensorApi = sensorApi;
  status_.portError = PortError::none;
  if (!probeOnly) {
    status_.running = false;
    status_.sensor = nullptr;
    if (const std::shared_ptr<SerialPort> before = endSource()) before->close();
  }
  if (status_.simulate) {
    status_.useGpsApi = status_.useSensorApi = false;
    startReader();
    return true;
  }
  if (status_.useSensorApi && state_.sensors != nullptr) return openSensor();
  return probeOnly ? probePort() : openPort();
}

// A sensor that is not there is no error: the program stays silently without a source.
bool Connection::openSensor() {
  status_.sensor = state_.sensors->open(state_.sensorIdentifier);
  if (status_.sensor == nullptr) return true;
  state_.inputProtocol = kSensorInput;
  startReader();
  state_.hooks.playSound("OK");
  return true;
}

bool Connection::openPort() {
  std::shared_ptr<SerialPort> port = state_.makePort();
  status_.portError = port->open(status_.portPath);
  if (status_.portError != PortError::none) return false;
  state_.hooks.playSound("OK");
  if (!port->setUp(status_.baudRate)) status_.portError = PortError::settings;
  {
    const std::lock_guard lock(sourceMutex_);
    source_.port = std::move(port);
  }
  if (status_.portError != PortError::none) return false;
  startReader();
  return true;
}

bool Connection::probePort() {
  return sendsGps(*state_.makePort(), status_.portPath, status_.baudRate, status_.portError);
}

void Connection::startReader() {
  ++state_.readers.generation;
  state_.satellitesInUseKnown = false;
  status_.portFailed = false;
  status_.lastByteMicros = 0;
  {
    const std::lock_guard lock(sourceMutex_);
    source_.generation = state_.readers.generation;
    source_.simulation = status_.simulate;
    source_.sensor = status_.sensor;
    device_ = {};
    device_.path = status_.portPath;
    device_.baudRate = status_.baudRate;
  }
  status_.running = true;
  state_.simulation.wake();  // the reader before may be waiting for its next line
  startReaderThread(fix_);
}

// Whatever a reader still does for the source is in vain from now on; a port that it is opening is
// closed again when that is over. Returns the port, if there is one.
std::shared_ptr<SerialPort> Connection::endSource() {
  const std::lock_guard lock(sourceMutex_);
  state_.readers.portRequested = false;
  attempt_ = {};
  return std::exchange(source_, {}).port;
}

bool Connection::close(bool silent) {
  status_.running = false;
  state_.satellitesInUseKnown = false;
  state_.simulation.wake();
  const std::shared_ptr<SerialPort> port = endSource();
  if (status_.sensor != nullptr) {
    status_.sensor = nullptr;
    state_.hooks.playSound("ERR2");
    return true;
  }
  if (port == nullptr) return false;
  port->close();
  if (!silent) state_.hooks.playSound("ERR2");
  return true;
}

Connection::Source Connection::sourceOf(uint32_t generation) const {
  const std::lock_guard lock(sourceMutex_);
  return source_.generation == generation ? source_ : Source();
}

std::shared_ptr<LocationSensor> Connection::sensorOf(uint32_t generation) const {
  return sourceOf(generation).sensor;
}

bool Connection::simulating(uint32_t generation) const { return sourceOf(generation).simulation; }

PortRead Connection::read(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs) {
  got = 0;
  if (!status_.running) return PortRead::closed;
  const Source source = sourceOf(generation);
  if (source.simulation) return readSimulation(generation, buffer, got, timeoutMs);
  if (source.port == nullptr) return PortRead::closed;
  const PortRead result = source.port->read(buffer, got, timeoutMs);
  // A read of a port that was taken away meanwhile says nothing about the one in its place.
  if (result == PortRead::failed && sourceOf(generation).port == source.port)
    status_.portFailed = true;
  return result;
}

// Paces itself, so a line is a burst of its own and there is nothing to wait for behind it.
PortRead Connection::readSimulation(uint32_t generation, std::span<char> buffer, size_t& got,
                                    int timeoutMs) {
  if (timeoutMs >= 0) return PortRead::silence;
  std::string line;
  uint32_t index = 0;
  uint32_t count = 0;
  const bool arrived = state_.simulation.next(line, index, count, [&] {
    return state_.readers.readerStop || !status_.running || state_.readers.generation != generation;
  });
  if (!arrived) return PortRead::silence;
  if (state_.simulation.mode() != SimMode::tapping) {
    state_.hooks.setTitle(
        textWith(Text::simulationIndex, std::to_string(index), std::to_string(count)));
  }
  got = line.copy(buffer.data(), buffer.size());
  return PortRead::data;
}

bool Connection::stopReaders(int timeoutMs) {
  ReaderControl& readers = state_.readers;
  {
    const std::lock_guard lock(readers.mutex);
    readers.readerStop = true;
    readers.wake.notify_all();
  }
  state_.simulation.wake();
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
