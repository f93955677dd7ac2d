#include <algorithm>
#include <utility>

#include "gps/gps_fix.h"

// The reader itself looks for a serial device that has disappeared: listing the ports takes a
// while, opening one can take half a minute (Bluetooth), and closing an unplugged one hangs in some
// drivers. The user interface only makes requests and checks the progress.
namespace vgps {
namespace {

// Where ports are numbered, their names may be typed in lower case.
bool isSamePath(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char left, char right) { return lower(left) == lower(right); });
}

// Counts a reader for as long as opening a port may block it.
class Opening {
 public:
  explicit Opening(ReaderControl& readers) : readers_(readers) { ++readers_.opening; }
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;
  ~Opening() { --readers_.opening; }

 private:
  ReaderControl& readers_;
};

}  // namespace

void Connection::requestPort() {
  std::shared_ptr<SerialPort> port;
  {
    const std::lock_guard lock(sourceMutex_);
    port = source_.port;
    ++source_.openRequest;
    attempt_ = {.state = PortAttempt::State::waiting, .tick = state_.clock.tick()};
  }
  {
    const std::lock_guard lock(state_.readers.mutex);
    state_.readers.portRequested = true;
    state_.readers.wake.notify_all();
  }
  if (port != nullptr) port->interrupt();
}

PortAttempt Connection::portAttempt() const {
  const std::lock_guard lock(sourceMutex_);
  return attempt_;
}

void Connection::releasePort() {
  std::shared_ptr<SerialPort> port;
  {
    const std::lock_guard lock(sourceMutex_);
    state_.readers.portRequested = false;
    ++source_.openRequest;
    attempt_ = {};
    port = std::exchange(source_.port, nullptr);
  }
  if (port != nullptr) port->close();
}

void Connection::rememberDevice(uint32_t generation) {
  Device device;
  {
    const std::lock_guard lock(sourceMutex_);
    if (source_.generation != generation || source_.port == nullptr || !state_.listPorts) return;
    device = device_;
  }
  const std::vector<PortName> present = state_.listPorts();
  for (const PortName& port : present) {
    if (!isSamePath(devicePath(port.name), device.path)) continue;
    device.identity = port.identity;
    device.make = port.make;
  }
  for (const PortName& port : present) {
    const bool isOther = port.make == device.make && port.identity != device.identity;
    if (isOther && !port.make.empty()) device.others.push_back(port.identity);
  }
  const std::lock_guard lock(sourceMutex_);
  if (source_.generation == generation) device_ = device;
}

// The port of a device among those that are there: the one that has its identity, else, of a make
// without numbers, the only one that was plugged in since.
const PortName* Connection::portOf(const Device& device, const std::vector<PortName>& present) {
  const PortName* found = nullptr;
  for (const PortName& port : present) {
    if (port.identity == device.identity) return &port;
    if (device.make.empty() || port.make != device.make) continue;
    if (std::find(device.others.begin(), device.others.end(), port.identity) !=
        device.others.end()) {
      continue;
    }
    if (found != nullptr) return nullptr;
    found = &port;
  }
  return found;
}

// Puts the path under which the device is there now into it. False when another device has its old
// one.
bool Connection::findDevice(Device& device, std::string& newName) const {
  if (device.identity.empty() || !state_.listPorts) return true;
  const std::vector<PortName> present = state_.listPorts();
  const PortName* const found = portOf(device, present);
  if (found != nullptr) {
    const std::string path = devicePath(found->name);
    if (!isSamePath(path, device.path)) newName = found->name;
    device.path = path;
    device.identity = found->identity;
    return true;
  }
  return std::none_of(present.begin(), present.end(), [&](const PortName& port) {
    return !port.identity.empty() && isSamePath(devicePath(port.name), device.path);
  });
}

bool Connection::reopenPort(uint32_t generation) {
  const Opening opening(state_.readers);
  Source source;
  Device device;
  {
    const std::lock_guard lock(sourceMutex_);
    if (source_.generation != generation || !state_.readers.portRequested) return false;
    state_.readers.portRequested = false;
    source = source_;
    source_.port = nullptr;
    device = device_;
  }
  // Close the old handle first: a device that is still there cannot be opened twice.
  if (source.port != nullptr) source.port->close();
  PortAttempt attempt{.state = PortAttempt::State::failed};
  // Goes, and with it closes the port, outside the lock when nobody wants it any more.
  std::shared_ptr<SerialPort> opened = state_.makePort();
  const bool free = findDevice(device, attempt.newName);
  attempt.error = free ? opened->open(device.path) : PortError::notFound;
  if (attempt.error == PortError::none && !opened->setUp(device.baudRate)) {
    attempt.error = PortError::settings;
  }
  const std::lock_guard lock(sourceMutex_);
  if (source_.generation != generation || source_.openRequest != source.openRequest) return true;
  attempt.tick = state_.clock.tick();
  if (attempt.error == PortError::none) {
    attempt.state = PortAttempt::State::opened;
    status_.portFailed = false;
    device_ = device;
    source_.port = std::move(opened);
  }
  attempt_ = attempt;
  return true;
}

}  // namespace vgps
