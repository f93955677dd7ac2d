#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/serial_port.h"

namespace vgps {

// A line that a test feeds by hand.
struct FakeLine {
  std::mutex mutex;
  std::condition_variable changed;
  std::string waiting;
  PortError openError = PortError::none;
  bool setUpWorks = true;
  bool unplugged = false;
  int opens = 0, closes = 0, reads = 0;
  uint32_t baudRate = 0;

  void feed(std::string_view bytes) {
    const std::lock_guard lock(mutex);
    waiting += bytes;
    changed.notify_all();
  }
  void unplug() {
    const std::lock_guard lock(mutex);
    unplugged = true;
    changed.notify_all();
  }
};

class FakeSerialPort : public SerialPort {
 public:
  explicit FakeSerialPort(std::shared_ptr<std::map<std::string, std::shared_ptr<FakeLine>>> lines)
      : lines_(std::move(lines)) {}
  ~FakeSerialPort() override { FakeSerialPort::close(); }

  PortError open(const std::string& path) override {
    const auto found = lines_->find(path);
    if (found == lines_->end()) return PortError::notThere;
    const std::lock_guard lock(found->second->mutex);
    ++found->second->opens;
    if (found->second->openError != PortError::none) return found->second->openError;
    line_ = found->second;
    return PortError::none;
  }
  bool setUp(uint32_t baudRate) override {
    const std::lock_guard lock(line_->mutex);
    line_->baudRate = baudRate;
    return line_->setUpWorks;
  }
  PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) override {
    got = 0;
    if (line_ == nullptr) return PortRead::closed;
    std::unique_lock lock(line_->mutex);
    ++line_->reads;
    const auto ready = [&] { return closed_ || line_->unplugged || !line_->waiting.empty(); };
    if (timeoutMs < 0) {
      line_->changed.wait(lock, ready);
    } else if (!line_->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), ready)) {
      return PortRead::silence;
    }
    if (closed_) return PortRead::closed;
    if (line_->unplugged) return PortRead::failed;
    got = std::min(buffer.size(), line_->waiting.size());
    line_->waiting.copy(buffer.data(), got);
    line_->waiting.erase(0, got);
    return PortRead::data;
  }
  bool write(std::span<const char>) override { return true; }
  void close() override {
    if (line_ == nullptr) return;
    const std::lock_guard lock(line_->mutex);
    if (!closed_) ++line_->closes;
    closed_ = true;
    line_->changed.notify_all();
  }

 private:
  std::shared_ptr<std::map<std::string, std::shared_ptr<FakeLine>>> lines_;
  std::shared_ptr<FakeLine> line_;
  bool closed_ = false;
};

// The serial lines of a test's world, by path.
class FakePorts {
 public:
  FakeLine& add(const std::string& path) {
    auto& line = (*lines_)[path];
    line = std::make_shared<FakeLine>();
    return *line;
  }
  void remove(const std::string& path) { lines_->erase(path); }
  std::unique_ptr<SerialPort> make() { return std::make_unique<FakeSerialPort>(lines_); }

 private:
  std::shared_ptr<std::map<std::string, std::shared_ptr<FakeLine>>> lines_ =
      std::make_shared<std::map<std::string, std::shared_ptr<FakeLine>>>();
};

}  // namespace vgps
