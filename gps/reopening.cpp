#include <algorithm>
#include <utility>

#include "gps/gps_fix.h"

// A serial device that has gone is looked for by the reader itself: listing the ports takes the
// system a while, opening one can take half a minute (Bluetooth), and letting go of an unplugged
// one hangs in some drivers. The user interface only wishes and looks how far it has come.
namespace vgps {
namespace {

// Where ports have numbers, their names may be typed in small letters.
bool isSamePath(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char left, char right) { return lower(left) == lower(right); });
}

// Counts a reader for as long as the system may hold it.
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

void GpsFix::wantPort() {
  std::shared_ptr<SerialPort> port;
  {
    const std::lock_guard lock(sourceMutex_);
    port = source_.port;
    ++source_.wish;
    attempt_ = {.state = PortAttempt::State::waiting, .tick = state.clock.tick()};
  }
  {
    const std::lock_guard lock(state.readers.mutex);
    state.readers.portWanted = true;
    state.readers.wake.notify_all();
  }
  if (port != nullptr) port->interrupt();
}

PortAttempt GpsFix::portAttempt() const {
  const std::lock_guard lock(sourceMutex_);
  return attempt_;
}

void GpsFix::dropPort() {
  std::shared_ptr<SerialPort> port;
  {
    const std::lock_guard lock(sourceMutex_);
    state.readers.portWanted = false;
    ++source_.wish;
    attempt_ = {};
    port = std::exchange(source_.port, nullptr);
  }
  if (port != nullptr) port->close();
}

void GpsFix::learnDevice(uint32_t generation) {
  const Source source = sourceOf(generation);
  if (source.port == nullptr || !state.listPorts) return;
  for (const PortName& port : state.listPorts()) {
    if (!isSamePath(devicePath(port.name), source.path)) continue;
    const std::lock_guard lock(sourceMutex_);
    if (source_.generation == generation) source_.identity = port.identity;
  }
}

// Puts the path under which the device is there now into `source`. False when another device has
// its old one.
bool GpsFix::findDevice(Source& source, std::string& newName) const {
  if (source.identity.empty() || !state.listPorts) return true;
  bool taken = false;
  for (const PortName& port : state.listPorts()) {
    const std::string path = devicePath(port.name);
    const bool isOldPath = isSamePath(path, source.path);
    if (port.identity == source.identity) {
      if (!isOldPath) newName = port.name;
      source.path = path;
      return true;
    }
    if (isOldPath && !port.identity.empty()) taken = true;
  }
  return !taken;
}

bool GpsFix::reopenPort(uint32_t generation) {
  const Opening opening(state.readers);
  Source source;
  {
    const std::lock_guard lock(sourceMutex_);
    if (source_.generation != generation || !state.readers.portWanted) return false;
    state.readers.portWanted = false;
    source = source_;
    source_.port = nullptr;
  }
  // The old handle first: a device that is still there could not be opened beside it.
  if (source.port != nullptr) source.port->close();
  PortAttempt attempt{.state = PortAttempt::State::failed};
  // Goes, and with it closes the port, outside the lock when nobody wants it any more.
  std::shared_ptr<SerialPort> opened = state.makePort();
  attempt.error =
      findDevice(source, attempt.newName) ? opened->open(source.path) : PortError::notThere;
  if (attempt.error == PortError::none && !opened->setUp(source.baudRate)) {
    attempt.error = PortError::settings;
  }
  const std::lock_guard lock(sourceMutex_);
  if (source_.generation != generation || source_.wish != source.wish) return true;
  attempt.tick = state.clock.tick();
  if (attempt.error == PortError::none) {
    attempt.state = PortAttempt::State::opened;
    portFailed = false;
    source_.path = source.path;
    source_.port = std::move(opened);
  }
  attempt_ = attempt;
  return true;
}

}  // namespace vgps
