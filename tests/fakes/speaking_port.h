#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <thread>

#include "platform/serial_port.h"

namespace vgps {

// Lines that speak at one speed only: at another one their bytes are noise.
class SpeakingPort : public SerialPort {
 public:
  struct Voice {
    uint32_t speed = 9600;
    std::string bytes;
    PortError error = PortError::none;
    int openMs = 0;  // that the opening takes
  };
  using Voices = std::map<std::string, Voice>;

  explicit SpeakingPort(Voices voices) : voices_(std::move(voices)) {}
  PortError open(const std::string& path) override {
    const auto found = std::find_if(voices_.begin(), voices_.end(), [&](const auto& voice) {
      return devicePath(voice.first) == path;
    });
    if (found == voices_.end()) return PortError::notFound;
    voice_ = &found->second;
    std::this_thread::sleep_for(std::chrono::milliseconds(voice_->openMs));
    return voice_->error;
  }
  bool setUp(uint32_t baudRate) override {
    rate_ = baudRate;
    return true;
  }
  PortRead read(std::span<char> buffer, size_t& got, int timeoutMs) override {
    got = 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(std::min(timeoutMs, 2)));
    if (voice_->bytes.empty()) return PortRead::silence;
    std::string bytes = voice_->bytes;
    if (rate_ != voice_->speed) {
      for (char& c : bytes) c = static_cast<char>(c * 5 | 0x80);
    }
    got = bytes.copy(buffer.data(), buffer.size());
    return PortRead::data;
  }
  bool write(std::span<const char>) override { return true; }
  void interrupt() override {}
  void close() override {}

 private:
  const Voices voices_;
  const Voice* voice_ = nullptr;
  uint32_t rate_ = 0;
};

}  // namespace vgps
