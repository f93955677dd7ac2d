#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

// The seam to serial lines. It exists for the second system and so that a test can play a
// receiver; `tests/fakes/fake_serial_port.h` is the third implementation.
namespace vgps {

enum class PortError {
  none,
  notThere,
  busy,          // another program holds it
  noPermission,  // the user may not open it
  settings,      // opened, but it refused to be set up
  other,
};

enum class PortRead {
  data,     // at least one byte was read
  silence,  // none came within the time given
  closed,   // the port was closed, or was never open
  failed,   // the device reports an error: unplugged, for instance
};

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Opens the device exclusively for reading and writing. `path` is the system's own ("\\.\COM3",
  // "/dev/ttyUSB0"). The line is not set up yet.
  virtual PortError open(const std::string& path) = 0;

  // Waits for received characters only, a read that ends 250 ms after the last byte, no limit on
  // writes; `baudRate`, no parity, eight data bits, one stop bit. False when the wait or the time
  // limits are refused; a refused line speed is ignored, since some virtual ports know none.
  virtual bool setUp(uint32_t baudRate) = 0;

  // Waits up to `timeoutMs` (-1: for ever) for the first byte and takes what has arrived, at most
  // the buffer. One thread reads at a time.
  virtual PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) = 0;

  // Hands the bytes to the driver without waiting for the line. False when it took not all.
  virtual bool write(std::span<const char> bytes) = 0;

  // From any thread, without waiting for anything: a waiting read and every later one answers
  // `closed`, until the port is opened anew. The device is still held.
  virtual void interrupt() = 0;

  // From any thread, any number of times: a waiting read ends with `closed`, then the device is
  // released, so that it can be opened again at once.
  virtual void close() = 0;
};

std::unique_ptr<SerialPort> makeSerialPort();

struct PortName {
  std::string name;              // what the user types and settings store: "COM3", "/dev/ttyUSB0"
  std::string description = {};  // what the system calls the device, may be empty
  // Of the device itself, the same when it comes back under another name: the device instance on
  // Windows, the name of the link by identity on Linux. Empty when the system knows none.
  std::string identity = {};
  // What devices of one make share that have no number of their own: their identity says where they
  // are plugged in, and changes with that. Empty when the identity is the device's own.
  std::string make = {};
};

// The ports that the system lists now. Windows: every COM port; Linux: every serial device with
// hardware behind it.
std::vector<PortName> listSerialPorts();

// "COM3" becomes "\\.\COM3" on Windows; the name itself where names are paths.
std::string devicePath(const std::string& portName);

}  // namespace vgps
