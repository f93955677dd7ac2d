#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

#include "platform/serial_port.h"
#include "platform/ui_thread.h"

namespace vgps {

// A serial port that tells when its device has gone, so that the program can say so: the reader
// itself only goes on asking.
class WatchedPort : public SerialPort {
 public:
  // `onGone` is called once for each opening, on the reading thread; it must not close the port.
  WatchedPort(std::unique_ptr<SerialPort> port, std::function<void()> onGone)
      : port_(std::move(port)), onGone_(std::move(onGone)) {}

  PortError open(const std::string& path) override {
    told_ = false;
    return port_->open(path);
  }
  bool setUp(uint32_t baudRate) override { return port_->setUp(baudRate); }
  PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) override {
    const PortRead result = port_->read(buffer, got, timeoutMs);
    if (result == PortRead::failed && !told_.exchange(true)) onGone_();
    return result;
  }
  bool write(std::span<const char> bytes) override { return port_->write(bytes); }
  void interrupt() override { port_->interrupt(); }
  void close() override { port_->close(); }

 private:
  std::unique_ptr<SerialPort> port_;
  std::function<void()> onGone_;
  std::atomic<bool> told_{false};
};

// The system's port. `gone` is set when its device has gone, and `door` wakes the program to see
// it; both outlive the reader.
inline std::unique_ptr<SerialPort> watchedPort(std::atomic<bool>& gone, UiThread& door) {
  return std::make_unique<WatchedPort>(makeSerialPort(), [&gone, &door] {
    gone = true;
    door.post({.event = UiEvent::refresh});
  });
}

}  // namespace vgps
