#include "platform/serial_port.h"

#include <windows.h>

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <list>
#include <mutex>

#include "base/text.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr DWORD kDriverBuffer = 64 * 1024;  // ten seconds at the fastest receiver's rate
constexpr DWORD kIntervalMs = 250;
constexpr size_t kMostUnwritten = kDriverBuffer;
constexpr size_t kNameUnits = 10;  // "COM" and a number, as limited by the settings

PortError openError(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_GEN_FAILURE:  // a Bluetooth port whose device is out of reach
    case ERROR_SEM_TIMEOUT: return PortError::notFound;
    // Only one program can open a port; ports have no other access rights.
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_BUSY: return PortError::busy;
    default: return PortError::other;
  }
}

// One overlapped operation and its completion event. The driver writes into it until then, so it
// must not move.
struct Operation {
  OVERLAPPED overlapped{};
  Handle event;

  explicit Operation(bool manualReset) : event(CreateEventW(nullptr, manualReset, FALSE, nullptr)) {
    overlapped.hEvent = event.get();
  }
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  // Call after a cancellation: waits until the driver has released the buffer.
  void waitForEnd(HANDLE device) {
    DWORD count = 0;
    GetOverlappedResult(device, &overlapped, &count, TRUE);
  }
};

struct PendingWrite {
  Operation operation{true};
  std::vector<char> bytes;

  explicit PendingWrite(std::span<const char> data) : bytes(data.begin(), data.end()) {}
};

class Win32SerialPort : public SerialPort {
 public:
  ~Win32SerialPort() override { Win32SerialPort::close(); }

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
    explicit Use(Win32SerialPort& port);
    ~Use();
    explicit operator bool() const { return open_; }

   private:
    Win32SerialPort& port_;
    bool open_ = false;
  };

  bool setTimeouts();
  void setLine(uint32_t baudRate);
  bool start(std::span<char> into);
  PortRead collect(size_t& got, DWORD limitMs);
  PortRead takeWaiting(std::span<char> buffer, size_t& got);
  void forgetFinishedWrites();

  std::mutex mutex_;
  std::condition_variable unused_;
  bool isOpen_ = false;
  bool closing_ = false;  // stays set until the next `open`
  int uses_ = 0;
  Handle device_;
  Handle cancel_;  // wakes the reader when the port is closed

  // Used only by the reading thread. The one-byte read stays pending after the call that started
  // it.
  std::unique_ptr<Operation> reading_;
  bool pending_ = false;
  char oneByte_ = 0;

  std::list<PendingWrite> writes_;
};

Win32SerialPort::Use::Use(Win32SerialPort& port) : port_(port) {
  const std::lock_guard lock(port_.mutex_);
  open_ = port_.isOpen_ && !port_.closing_;
  if (open_) ++port_.uses_;
}

Win32SerialPort::Use::~Use() {
  if (!open_) return;
  const std::lock_guard lock(port_.mutex_);
  if (--port_.uses_ == 0) port_.unused_.notify_all();
}

PortError Win32SerialPort::open(const std::string& path) {
  close();
  Handle device(CreateFileW(wideFromUtf8(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                            OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
  if (!device.isValid()) return openError(GetLastError());
  Handle cancel(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  auto reading = std::make_unique<Operation>(false);
  if (!cancel.isValid() || !reading->event.isValid()) return PortError::other;
  const std::lock_guard lock(mutex_);
  device_ = std::move(device);
  cancel_ = std::move(cancel);
  reading_ = std::move(reading);
  pending_ = false;
  closing_ = false;
  isOpen_ = true;
  return PortError::none;
}

bool Win32SerialPort::setUp(uint32_t baudRate) {
  const Use use(*this);
  if (!use) return false;
  // Only a hint: a driver that keeps its own buffer size loses no more data than before.
  SetupComm(device_.get(), kDriverBuffer, kDriverBuffer);
  if (!SetCommMask(device_.get(), EV_RXCHAR) || !setTimeouts()) return false;
  setLine(baudRate);
  return true;
}

bool Win32SerialPort::setTimeouts() {
  COMMTIMEOUTS timeouts{};
  if (!GetCommTimeouts(device_.get(), &timeouts)) return false;
  timeouts.ReadIntervalTimeout = kIntervalMs;
  timeouts.ReadTotalTimeoutMultiplier = 0;
  timeouts.ReadTotalTimeoutConstant = 0;
  timeouts.WriteTotalTimeoutMultiplier = 0;
  timeouts.WriteTotalTimeoutConstant = 0;
  return SetCommTimeouts(device_.get(), &timeouts) != FALSE;
}

// Errors are ignored: some virtual ports have no baud rate.
void Win32SerialPort::setLine(uint32_t baudRate) {
  wchar_t text[64];
  std::swprintf(text, std::size(text), L"baud=%u parity=N data=8 stop=1", baudRate);
  DCB line{};
  line.DCBlength = sizeof line;
  if (GetCommState(device_.get(), &line) && BuildCommDCBW(text, &line)) {
    SetCommState(device_.get(), &line);
  }
}

// Waits for one byte, then takes everything already received. Requesting more bytes at once would
// wait for a pause, which a receiver at 10 Hz never makes.
PortRead Win32SerialPort::read(std::span<char> buffer, size_t& got, int timeoutMs) {
  got = 0;
  const Use use(*this);
  if (!use) return PortRead::closed;
  if (buffer.empty()) return PortRead::silence;
  if (!pending_) {
    const PortRead waiting = takeWaiting(buffer, got);
    if (waiting != PortRead::silence) return waiting;
    if (!start({&oneByte_, 1})) return PortRead::failed;
  }
  size_t first = 0;
  const DWORD limitMs = timeoutMs < 0 ? INFINITE : static_cast<DWORD>(timeoutMs);
  const PortRead result = collect(first, limitMs);
  if (result != PortRead::data) return result;
  buffer[0] = oneByte_;
  size_t more = 0;
  // If this fails, the next call fails too; the first byte is kept.
  if (buffer.size() > 1) takeWaiting(buffer.subspan(1), more);
  got = 1 + more;
  return PortRead::data;
}

// A read that completes immediately also signals the event, so both cases are collected the same
// way.
bool Win32SerialPort::start(std::span<char> into) {
  const bool ended = ReadFile(device_.get(), into.data(), static_cast<DWORD>(into.size()), nullptr,
                              &reading_->overlapped) != FALSE;
  pending_ = ended || GetLastError() == ERROR_IO_PENDING;
  return pending_;
}

// Collects the pending read. `silence` means that it is still pending.
PortRead Win32SerialPort::collect(size_t& got, DWORD limitMs) {
  const HANDLE events[] = {cancel_.get(), reading_->event.get()};
  const DWORD woken = WaitForMultipleObjects(2, events, FALSE, limitMs);
  if (woken == WAIT_TIMEOUT) return PortRead::silence;
  pending_ = false;
  if (woken != WAIT_OBJECT_0 + 1) {
    CancelIoEx(device_.get(), &reading_->overlapped);
    reading_->waitForEnd(device_.get());
    return woken == WAIT_OBJECT_0 ? PortRead::closed : PortRead::failed;
  }
  DWORD count = 0;
  if (GetOverlappedResult(device_.get(), &reading_->overlapped, &count, FALSE)) {
    got = count;
    return count > 0 ? PortRead::data : PortRead::silence;
  }
  // `close` cancels every pending operation; that can be noticed before its event.
  const bool closed = WaitForSingleObject(cancel_.get(), 0) == WAIT_OBJECT_0;
  return closed ? PortRead::closed : PortRead::failed;
}

PortRead Win32SerialPort::takeWaiting(std::span<char> buffer, size_t& got) {
  DWORD errors = 0;
  COMSTAT waiting{};
  // Also clears an overrun or framing error, after which some drivers deliver no more data.
  if (!ClearCommError(device_.get(), &errors, &waiting)) return PortRead::failed;
  const size_t wanted = std::min<size_t>(waiting.cbInQue, buffer.size());
  if (wanted == 0) return PortRead::silence;
  // The bytes have arrived already, so this waits only for the driver.
  return start(buffer.first(wanted)) ? collect(got, INFINITE) : PortRead::failed;
}

void Win32SerialPort::forgetFinishedWrites() {
  writes_.remove_if([](const PendingWrite& write) {
    return WaitForSingleObject(write.operation.event.get(), 0) == WAIT_OBJECT_0;
  });
}

bool Win32SerialPort::write(std::span<const char> bytes) {
  const std::lock_guard lock(mutex_);
  if (!isOpen_ || closing_) return false;
  forgetFinishedWrites();
  size_t unwritten = bytes.size();
  for (const PendingWrite& write : writes_) unwritten += write.bytes.size();
  if (unwritten > kMostUnwritten) return false;
  PendingWrite& write = writes_.emplace_back(bytes);
  if (WriteFile(device_.get(), write.bytes.data(), static_cast<DWORD>(write.bytes.size()), nullptr,
                &write.operation.overlapped) ||
      GetLastError() == ERROR_IO_PENDING) {
    return true;
  }
  writes_.pop_back();
  return false;
}

void Win32SerialPort::interrupt() {
  const std::lock_guard lock(mutex_);
  if (isOpen_) SetEvent(cancel_.get());
}

void Win32SerialPort::close() {
  std::unique_lock lock(mutex_);
  if (!isOpen_) return;
  if (closing_) {  // another thread is closing it: return when that is done
    unused_.wait(lock, [this] { return !isOpen_ || !closing_; });
    return;
  }
  closing_ = true;
  SetEvent(cancel_.get());
  CancelIoEx(device_.get(), nullptr);
  unused_.wait(lock, [this] { return uses_ == 0; });
  // A reader may have started an operation after the first cancellation.
  CancelIoEx(device_.get(), nullptr);
  if (pending_) reading_->waitForEnd(device_.get());
  for (PendingWrite& write : writes_) write.operation.waitForEnd(device_.get());
  pending_ = false;
  writes_.clear();
  device_ = Handle();
  reading_ = nullptr;
  cancel_ = Handle();
  isOpen_ = false;
  unused_.notify_all();
}

}  // namespace

std::unique_ptr<SerialPort> makeSerialPort() { return std::make_unique<Win32SerialPort>(); }

std::string devicePath(const std::string& portName) {
  return "\\\\.\\" + std::string(firstUtf16Units(portName, kNameUnits));
}

}  // namespace vgps
