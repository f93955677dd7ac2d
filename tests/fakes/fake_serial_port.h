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
  bool openBlocks = false;  // until `letOpen`
  int opens = 0, opening = 0, closes = 0, reads = 0;
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
  void blockOpening() {
    const std::lock_guard lock(mutex);
    openBlocks = true;
  }
  void letOpen() {
    const std::lock_guard lock(mutex);
    openBlocks = false;
    changed.notify_all();
  }
  int number(int FakeLine::*count) {
    const std::lock_guard lock(mutex);
    return this->*count;
  }
};

// The lines that there are, by path; ports of any thread look here.
struct FakeLines {
  std::mutex mutex;
  std::map<std::string, std::shared_ptr<FakeLine>> byPath;

  std::shared_ptr<FakeLine> find(const std::string& path) {
    const std::lock_guard lock(mutex);
    const auto found = byPath.find(path);
    return found == byPath.end() ? nullptr : found->second;
  }
};

class FakeSerialPort : public SerialPort {
 public:
  explicit FakeSerialPort(std::shared_ptr<FakeLines> lines) : lines_(std::move(lines)) {}
  ~FakeSerialPort() override { FakeSerialPort::close(); }

  PortError open(const std::string& path) override {
    const std::shared_ptr<FakeLine> found = lines_->find(path);
    if (found == nullptr) return PortError::notFound;
    std::unique_lock lock(found->mutex);
    ++found->opening;
    found->changed.wait(lock, [&] { return !found->openBlocks; });
    --found->opening;
    ++found->opens;
    if (found->openError != PortError::none) return found->openError;
    line_ = found;
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
    const auto ready = [&] {
      return closed_ || interrupted_ || line_->unplugged || !line_->waiting.empty();
    };
    if (timeoutMs < 0) {
      line_->changed.wait(lock, ready);
    } else if (!line_->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), ready)) {
      return PortRead::silence;
    }
    if (closed_ || interrupted_) return PortRead::closed;
    if (line_->unplugged) return PortRead::failed;
    got = std::min(buffer.size(), line_->waiting.size());
    line_->waiting.copy(buffer.data(), got);
    line_->waiting.erase(0, got);
    return PortRead::data;
  }
  bool write(std::span<const char>) override { return true; }
  void interrupt() override {
    if (line_ == nullptr) return;
    const std::lock_guard lock(line_->mutex);
    interrupted_ = true;
    line_->changed.notify_all();
  }
  void close() override {
    if (line_ == nullptr) return;
    const std::lock_guard lock(line_->mutex);
    if (!closed_) ++line_->closes;
    closed_ = true;
    line_->changed.notify_all();
  }

 private:
  std::shared_ptr<FakeLines> lines_;
  std::shared_ptr<FakeLine> line_;
  bool interrupted_ = false;
  bool closed_ = false;
};

// The serial lines of a test's world, by path.
class FakePorts {
 public:
  FakeLine& add(const std::string& path) {
    const std::lock_guard lock(lines_->mutex);
    auto& line = lines_->byPath[path];
    line = std::make_shared<FakeLine>();
    return *line;
  }
  void remove(const std::string& path) {
    const std::lock_guard lock(lines_->mutex);
    lines_->byPath.erase(path);
  }
  std::unique_ptr<SerialPort> make() { return std::make_unique<FakeSerialPort>(lines_); }

 private:
  std::shared_ptr<FakeLines> lines_ = std::make_shared<FakeLines>();
};

}  // namespace vgps
