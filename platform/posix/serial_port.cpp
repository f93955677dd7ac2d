#include "platform/serial_port.h"

#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace vgps {
namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

// A failed device returns from every read immediately; this pause keeps a caller that retries from
// using up the processor.
constexpr int kFailedPauseMs = 250;

class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }

 private:
  int fd_;
};

PortError openError(int error) {
  switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
    case ENOTDIR:
    case EISDIR:
    case EIO:  // a port number that the driver lists without hardware
      return PortError::notFound;
    case EBUSY:
    case EWOULDBLOCK: return PortError::busy;
    case EACCES:
    case EPERM: return PortError::noPermission;
    default: return PortError::other;
  }
}

// Checks both kinds of exclusive use: for a superuser, `open` ignores another program's exclusive
// mode, and it never notices programs that only lock the device.
PortError takeExclusively(int fd) {
  if (!::isatty(fd)) return PortError::other;
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) return openError(errno);
  int exclusive = 0;
  if (::ioctl(fd, TIOCGEXCL, &exclusive) == 0 && exclusive != 0) return PortError::busy;
  ::ioctl(fd, TIOCEXCL);
  return PortError::none;
}

// Raw bytes: no line editing, no echo, no signals, no flow control; 8N1.
bool setRaw(int fd) {
  termios2 line{};
  if (::ioctl(fd, TCGETS2, &line) != 0) return false;
  line.c_iflag = IGNBRK;
  line.c_oflag = 0;
  line.c_lflag = 0;
  line.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | CSTOPB | CRTSCTS);
  line.c_cflag |= CS8 | CLOCAL | CREAD;
  line.c_cc[VMIN] = 1;
  line.c_cc[VTIME] = 0;
  return ::ioctl(fd, TCSETS2, &line) == 0;
}

// Sets any baud rate as a plain number. Errors are ignored: some virtual ports have no baud rate.
void setSpeed(int fd, uint32_t baudRate) {
  termios2 line{};
  if (baudRate == 0 || ::ioctl(fd, TCGETS2, &line) != 0) return;  // 0 would hang up
  line.c_cflag &= ~static_cast<tcflag_t>(CBAUD | CBAUD << IBSHIFT);
  line.c_cflag |= BOTHER;
  line.c_ispeed = line.c_ospeed = baudRate;
  (void)::ioctl(fd, TCSETS2, &line);
}

int remainingMs(SteadyTime deadline) {
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
  return static_cast<int>(std::max<int64_t>(0, left.count()));
}

// Waits for `events` on `fd` or for a wake-up. Returns what occurred; both fields are 0 on a
// timeout.
struct Ready {
  short device = 0;
  bool woken = false;
};
Ready waitFor(int fd, short events, int wakeFd, int timeoutMs) {
  const SteadyTime deadline =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(std::max(timeoutMs, 0));
  pollfd waited[] = {{wakeFd, POLLIN, 0}, {fd, events, 0}};
  for (;;) {
    const int count = ::poll(waited, fd >= 0 ? 2 : 1, timeoutMs < 0 ? -1 : remainingMs(deadline));
    if (count >= 0 || errno != EINTR) break;
  }
  return {waited[1].revents, waited[0].revents != 0};
}

class PosixSerialPort : public SerialPort {
 public:
  ~PosixSerialPort() override { PosixSerialPort::close(); }

  PortError open(const std::string& path) override;
  bool setUp(uint32_t baudRate) override;
  PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) override;
  bool write(std::span<const char> bytes) override;
  void interrupt() override;
  void close() override;

 private:
  // Marks a call that uses the device; `close` waits until there are none.
  class Use {
   public:
    explicit Use(PosixSerialPort& port);
    ~Use();
    explicit operator bool() const { return open_; }

   private:
    PosixSerialPort& port_;
    bool open_ = false;
  };

  PortRead readOnce(std::span<char> buffer, size_t& got, int timeoutMs);
  PortRead fail();
  void wakeReader();

  std::mutex mutex_;
  std::condition_variable unused_;
  bool isOpen_ = false;
  bool closing_ = false;
  int uses_ = 0;
  Descriptor device_;
  Descriptor wake_;
  bool failed_ = false;  // used only by the reading thread while the port is open
};

PosixSerialPort::Use::Use(PosixSerialPort& port) : port_(port) {
  const std::lock_guard lock(port_.mutex_);
  open_ = port_.isOpen_ && !port_.closing_;
  if (open_) ++port_.uses_;
}

PosixSerialPort::Use::~Use() {
  if (!open_) return;
  const std::lock_guard lock(port_.mutex_);
  if (--port_.uses_ == 0) port_.unused_.notify_all();
}

PortError PosixSerialPort::open(const std::string& path) {
  close();
  // Without O_NONBLOCK, `open` would wait for a modem's carrier. O_NOCTTY keeps the port from
  // becoming the controlling terminal, which could send signals to this program.
  Descriptor device(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (device.get() < 0) return openError(errno);
  if (const PortError error = takeExclusively(device.get()); error != PortError::none) return error;
  Descriptor wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (wake.get() < 0) return PortError::other;
  const std::lock_guard lock(mutex_);
  device_ = std::move(device);
  wake_ = std::move(wake);
  failed_ = false;
  isOpen_ = true;
  return PortError::none;
}

bool PosixSerialPort::setUp(uint32_t baudRate) {
  const Use use(*this);
  if (!use || !setRaw(device_.get())) return false;
  setSpeed(device_.get(), baudRate);
  return true;
}

PortRead PosixSerialPort::read(std::span<char> buffer, size_t& got, int timeoutMs) {
  got = 0;
  const Use use(*this);
  if (!use) return PortRead::closed;
  if (failed_) {
    const int pause = timeoutMs < 0 ? kFailedPauseMs : std::min(timeoutMs, kFailedPauseMs);
    return waitFor(-1, 0, wake_.get(), pause).woken ? PortRead::closed : PortRead::failed;
  }
  return readOnce(buffer, got, timeoutMs);
}

PortRead PosixSerialPort::readOnce(std::span<char> buffer, size_t& got, int timeoutMs) {
  const Ready ready = waitFor(device_.get(), POLLIN, wake_.get(), timeoutMs);
  if (ready.woken) return PortRead::closed;
  if (ready.device == 0) return PortRead::silence;
  if ((ready.device & POLLIN) == 0) return fail();  // hung up
  const ssize_t count = ::read(device_.get(), buffer.data(), buffer.size());
  if (count > 0) {
    got = static_cast<size_t>(count);
    return PortRead::data;
  }
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return PortRead::silence;
  return fail();  // end of file means that the device is gone
}

PortRead PosixSerialPort::fail() {
  failed_ = true;
  return PortRead::failed;
}

bool PosixSerialPort::write(std::span<const char> bytes) {
  const Use use(*this);
  return use &&
         ::write(device_.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

// The event stays readable, so it wakes later waits too.
void PosixSerialPort::wakeReader() {
  const uint64_t one = 1;
  (void)!::write(wake_.get(), &one, sizeof one);
}

void PosixSerialPort::interrupt() {
  const std::lock_guard lock(mutex_);
  if (isOpen_) wakeReader();
}

void PosixSerialPort::close() {
  std::unique_lock lock(mutex_);
  if (closing_) {  // another thread is closing it: return when that is done
    unused_.wait(lock, [this] { return !closing_; });
    return;
  }
  if (!isOpen_) return;
  closing_ = true;
  wakeReader();
  unused_.wait(lock, [this] { return uses_ == 0; });
  // A pseudo-terminal would otherwise keep exclusive mode for the next program.
  ::ioctl(device_.get(), TIOCNXCL);
  device_ = Descriptor();
  wake_ = Descriptor();
  isOpen_ = false;
  closing_ = false;
  unused_.notify_all();
}

}  // namespace

std::unique_ptr<SerialPort> makeSerialPort() { return std::make_unique<PosixSerialPort>(); }

std::string devicePath(const std::string& portName) {
  const bool plainName = !portName.empty() && portName.find('/') == std::string::npos;
  return plainName ? "/dev/" + portName : portName;
}

}  // namespace vgps
