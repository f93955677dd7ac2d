#include "tests/app/win32/line.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "platform/win32/wide.h"
#include "tests/app/win32/drive.h"

namespace vgps {

SerialLine::SerialLine() { plugIn(); }

SerialLine::~SerialLine() { unplug(); }

// The cable is made of the other system's pseudo-terminals, by the script that started this test.
bool SerialLine::command(const char* word) {
  const char* const script = std::getenv("VGPS_TEST_WINE");
  const char* const folder = std::getenv("VGPS_TEST_WINE_DIR");
  if (script == nullptr || folder == nullptr) return false;
  const std::string state = "Z:" + std::string(folder) + "/line/state";
  DeleteFileW(wideFromUtf8(state).c_str());
  std::wstring command =
      wideFromUtf8("Z:\\bin\\sh " + std::string(script) + " line " + folder + " " + word);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &process)) {
    return false;
  }
  return waitFor([&] {
    std::ifstream in(state);
    std::string said;
    return static_cast<bool>(in >> said);
  });
}

void SerialLine::unplug() {
  end_ = Handle();
  command("stop");
  up_ = false;
}

void SerialLine::plugIn() {
  if (!command("start")) return;
  end_ = Handle(CreateFileW(L"\\\\.\\COM4", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                            0, nullptr));
  up_ = end_.isValid();
}

void SerialLine::write(std::string_view bytes) {
  DWORD written = 0;
  WriteFile(end_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

bool SerialLine::passes(std::string_view bytes, DWORD limitMs) {
  std::atomic<bool> done{false};
  std::thread writer([&] {
    write(bytes);
    done = true;
  });
  const bool passed = waitFor([&] { return done.load(); }, limitMs);
  if (!passed) unplug();  // lets the writer go
  writer.join();
  return passed;
}

std::string SerialLine::read(size_t length) {
  std::string bytes(length, '\0');
  DWORD got = 0;
  ReadFile(end_.get(), bytes.data(), static_cast<DWORD>(length), &got, nullptr);
  bytes.resize(got);
  return bytes;
}

std::string epochText(int number) {
  char text[200];
  const int minute = number / 60 % 60;
  const int second = number % 60;
  std::snprintf(text, sizeof text,
                "$GPGGA,12%02d%02d,48%02d.%03d,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,\r\n"
                "$GPRMC,12%02d%02d,A,48%02d.%03d,N,01131.000,E,022.4,%03d.4,230394,003.1,W\r\n",
                minute, second, second, minute, minute, second, second, minute, number * 20 % 360);
  return text;
}

Receiver::Receiver(SerialLine& line, int periodMs) : line_(line) {
  thread_ = std::thread([this, periodMs] {
    for (int number = 0; !stop_; ++number) {
      line_.write(epochText(number));
      Sleep(static_cast<DWORD>(periodMs));
    }
    ended_ = true;
  });
}

Receiver::~Receiver() {
  stop_ = true;
  // A line that nobody reads from holds the writer up.
  if (!waitFor([this] { return ended_.load(); }, 5000)) line_.unplug();
  thread_.join();
}

RegisteredPorts::RegisteredPorts(const std::map<std::wstring, std::wstring>& ports) {
  RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, nullptr,
                  REG_OPTION_VOLATILE, KEY_WRITE, nullptr, &key_, nullptr);
  for (const auto& [device, name] : ports) {
    devices_.push_back(device);
    RegSetValueExW(key_, device.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(name.c_str()),
                   static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t)));
  }
}

RegisteredPorts::~RegisteredPorts() {
  for (const std::wstring& device : devices_) RegDeleteValueW(key_, device.c_str());
  RegCloseKey(key_);
}

}  // namespace vgps
