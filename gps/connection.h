#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/location_sensor.h"
#include "platform/serial_port.h"

namespace vgps {

struct GpsFix;
struct GpsState;

inline constexpr int kDefaultBaudRate = 9600;

// The source that was chosen last, and its state.
struct ConnectionStatus {
  std::string portPath;
  uint32_t baudRate = kDefaultBaudRate;
  std::shared_ptr<LocationSensor> sensor;
  std::atomic<bool> simulate{false};  // also read by the reader
  bool useGpsApi = false;
  bool useSensorApi = false;
  PortError portError = PortError::none;  // why the last `open` failed
  std::atomic<bool> running{false};
  std::atomic<bool> portFailed{false};      // the reader got an error from the device
  std::atomic<uint64_t> lastByteMicros{0};  // when the end of the newest line was read
};

// The state of the last request for the port, and when it changed.
struct PortAttempt {
  enum class State { none, waiting, opened, failed };
  State state = State::none;
  PortError error = PortError::none;  // why it failed
  std::string newName = {};           // of the port, if the device has come back under another name
  uint32_t tick = 0;
};

// The connection to the receiver: opens and closes the source, reads from it, and finds a serial
// device again after it has disappeared.
//
// Call `setPort`, `open`, `close`, `requestPort`, `releasePort`, and `portAttempt` on the
// user-interface thread; `read`, `rememberDevice`, and `reopenPort` on the reader thread of the
// given generation.
class Connection {
 public:
  // Keeps `fix.status` up to date; the readers it starts update the fix.
  explicit Connection(GpsFix& fix);

  void setPort(std::string_view portName, uint32_t speed);

  // Opens the simulation, the location sensor, or the serial port and starts its reader thread.
  // With `probeOnly`, opens the port, reads once, closes it, and returns whether the bytes start
  // with "$GP".
  bool open(bool simulation, bool gpsApi, bool sensorApi, bool probeOnly);

  // Returns false if neither a sensor nor a serial port was open.
  bool close(bool silent);

  // For a serial source whose device has disappeared: the reader, which keeps running with
  // `running` true, releases the port, finds out where the device is now, and opens it there,
  // however long that takes. Until then `read` reports nothing. Plays no sound.
  void requestPort();
  PortAttempt portAttempt() const;
  // Closes the port until it is requested again, so that other programs can use it.
  void releasePort();

  // Reads once from the current source.
  PortRead read(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs);

  // Remembers which device is behind the port, to find it again.
  void rememberDevice(uint32_t generation);
  // Opens the port that `requestPort` asked for. Returns false if nothing was requested.
  bool reopenPort(uint32_t generation);

  // The sensor of this source; null for other sources.
  std::shared_ptr<LocationSensor> sensorOf(uint32_t generation) const;

  // Whether the source is the simulation.
  bool simulating(uint32_t generation) const;

  // Sets `readerStop`, wakes every reader, and waits up to `timeoutMs` for all to end, but only
  // briefly for one that is blocked while opening a port. Returns false if one is still running:
  // then nothing that it uses may be destroyed.
  bool stopReaders(int timeoutMs);

 private:
  // What the reader of a generation reads from, so that it never accesses the fields that the user
  // interface changes.
  struct Source {
    uint32_t generation = 0;
    bool simulation = false;
    std::shared_ptr<SerialPort> port;  // not null: open, or opened but could not be configured
    std::shared_ptr<LocationSensor> sensor;
    uint32_t openRequest = 0;  // number of the last request; older attempts are obsolete
  };
  // The device behind the port, to find it again.
  struct Device {
    std::string path;
    uint32_t baudRate = 0;
    std::string identity;  // empty if the system provides none
    std::string make;
    std::vector<std::string> others;  // devices of the same make that were already present
  };
  void startReader();
  bool openSensor();
  bool openPort();
  bool probePort();
  Source sourceOf(uint32_t generation) const;
  std::shared_ptr<SerialPort> endSource();
  static const PortName* portOf(const Device& device, const std::vector<PortName>& present);
  bool findDevice(Device& device, std::string& newName) const;
  PortRead readSimulation(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs);

  GpsFix& fix_;
  ConnectionStatus& status_;
  GpsState& state_;
  mutable std::mutex sourceMutex_;
  Source source_;
  Device device_;
  PortAttempt attempt_;
};

}  // namespace vgps
