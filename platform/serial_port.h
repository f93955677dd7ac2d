#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

// The interface to serial ports, implemented once per system. `tests/fakes/fake_serial_port.h`
// implements it too, so that a test can act as a receiver.
namespace vgps {

enum class PortError {
  none,
  notFound,
  busy,          // open in another program
  noPermission,  // the user lacks the permission
  settings,      // opened, but could not be configured
  other,
};

enum class PortRead {
  data,     // at least one byte was read
  silence,  // nothing arrived within the timeout
  closed,   // the port was closed, or was never open
  failed,   // the device reports an error: unplugged, for instance
};

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Opens the device exclusively for reading and writing. `path` is the system's own ("\\.\COM3",
  // "/dev/ttyUSB0"). Does not configure the port yet.
  virtual PortError open(const std::string& path) = 0;

  // Configures the port: `baudRate`, no parity, eight data bits, one stop bit; only received
  // characters end a wait; a read ends 250 ms after the last byte; writes have no timeout. Returns
  // false if the system refuses the event mask or the timeouts. A refused baud rate is ignored,
  // because some virtual ports do not support any.
  virtual bool setUp(uint32_t baudRate) = 0;

  // Waits up to `timeoutMs` (-1: forever) for the first byte, then returns what has arrived, at
  // most the size of the buffer. Only one thread may read at a time.
  virtual PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) = 0;

  // Passes the bytes to the driver without waiting for transmission. Returns false if the driver
  // did not accept all of them.
  virtual bool write(std::span<const char> bytes) = 0;

  // Callable from any thread; does not wait. The current read and every later one return `closed`
  // until the port is opened again. The device is not released.
  virtual void interrupt() = 0;

  // Callable from any thread, repeatedly. Ends the current read with `closed`, then releases the
  // device, so that it can be reopened immediately.
  virtual void close() = 0;
};

std::unique_ptr<SerialPort> makeSerialPort();

struct PortName {
  std::string name;  // as typed by the user and stored in settings: "COM3", "/dev/ttyUSB0"
  std::string description = {};  // the system's name for the device; may be empty
  // Identifies the device itself, even when it returns under another port name: the device instance
  // on Windows, the name of the by-id link on Linux. Empty if the system provides none.
  std::string identity = {};
  // For devices without a serial number: identifies the model. The `identity` of such a device
  // names the place where it is plugged in, and changes with it. Empty if `identity` belongs to the
  // device itself.
  std::string make = {};
};

// The serial ports that the system lists now. Windows: every COM port. Linux: every serial device
// that is backed by hardware.
std::vector<PortName> listSerialPorts();

// Turns "COM3" into "\\.\COM3" on Windows; returns the name unchanged where names are paths.
std::string devicePath(const std::string& portName);

}  // namespace vgps
