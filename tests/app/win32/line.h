#pragma once

#include <windows.h>

#include <atomic>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/win32/handle.h"

// A serial line between the program and the test, and who speaks on it.
namespace vgps {

// The cable between COM3 and COM4. The program has one end, the test writes into the other.
class SerialLine {
 public:
  SerialLine();
  SerialLine(const SerialLine&) = delete;
  SerialLine& operator=(const SerialLine&) = delete;
  ~SerialLine();
  bool isUp() const { return up_; }
  void unplug();
  void plugIn();
  // Through COM4. The line holds a few kilobytes: more than that waits until the program takes it.
  void write(std::string_view bytes);
  // False, and the line is unplugged, when the program has not taken them in time.
  bool passes(std::string_view bytes, DWORD limitMs = 60000);
  std::string read(size_t length);

 private:
  bool command(const char* word);

  bool up_ = false;
  Handle end_;
};

// The two sentences of a second, at a position and on a course that change with it.
std::string epochText(int number);

// A receiver on the line, as long as this object lives.
class Receiver {
 public:
  explicit Receiver(SerialLine& line, int periodMs = 100);
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;
  ~Receiver();

 private:
  SerialLine& line_;
  std::atomic<bool> ended_{false};
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

// Entries as drivers make them, device and port; ours are gone with this object.
class RegisteredPorts {
 public:
  explicit RegisteredPorts(const std::map<std::wstring, std::wstring>& ports);
  RegisteredPorts(const RegisteredPorts&) = delete;
  RegisteredPorts& operator=(const RegisteredPorts&) = delete;
  ~RegisteredPorts();

 private:
  HKEY key_ = nullptr;
  std::vector<std::wstring> devices_;
};

}  // namespace vgps
