#include "platform/serial_port.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

namespace vgps {
namespace {

using namespace std::chrono_literals;

class TestLine : public SerialLine {
 public:
  static constexpr std::chrono::milliseconds kFailureTakes{0};

  TestLine() { EXPECT_TRUE(isUp()); }
  std::string path() const { return R"(\\.\COM3)"; }
};

}  // namespace
}  // namespace vgps

#include "tests/platform/serial_port_cases.h"

namespace vgps {
namespace {

// A stream whose gaps are shorter than the interval would never end one large read.
TEST_F(SerialPortOnALine, AStreamWithoutPausesIsReadAsItComes) {
  std::atomic<bool> stop{false};
  std::thread writer([&] {
    while (!stop) {
      line.write("$GPRMC,x\r\n");
      Sleep(50);
    }
  });
  int blocks = 0;
  const auto start = std::chrono::steady_clock::now();
  while (blocks < 10 && read(2000) == PortRead::data) ++blocks;
  const auto passed = std::chrono::steady_clock::now() - start;
  stop = true;
  writer.join();
  EXPECT_EQ(blocks, 10);
  EXPECT_LT(passed, 5s) << "one read waits for a pause";
}

TEST_F(SerialPortOnALine, ClosingLeavesNoReadBehind) {
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(read(1), PortRead::silence);  // one byte is being read still
    port->close();
    port->close();
    ASSERT_EQ(port->open(line.path()), PortError::none);
  }
  expectUsable();
}

TEST(SerialPort, MissingDevicesAreTold) {
  const auto port = makeSerialPort();
  EXPECT_EQ(port->open(R"(\\.\COM29)"), PortError::notFound);
  EXPECT_EQ(port->open(""), PortError::notFound);
  EXPECT_FALSE(port->setUp(9600));
  std::array<char, 10> buffer{};
  size_t got = 1;
  EXPECT_EQ(port->read(buffer, got, -1), PortRead::closed);
  EXPECT_EQ(got, 0U);
}

TEST(SerialPort, AFileIsNoSerialPort) {
  const auto port = makeSerialPort();
  ASSERT_EQ(port->open(R"(C:\windows\system32\kernel32.dll)"), PortError::none);
  EXPECT_FALSE(port->setUp(9600));
}

TEST(SerialPort, PathsAreMadeOfShortNames) {
  const std::pair<const char*, const char*> rows[] = {
      {"COM3", R"(\\.\COM3)"},
      {"COM12345678901234", R"(\\.\COM1234567)"},
      {"äöüäöüäöüäöü", R"(\\.\äöüäöüäöüä)"},
      {"", R"(\\.\)"},
  };
  for (const auto& [name, path] : rows) EXPECT_EQ(devicePath(name), path);
}

TEST(SerialPort, RegisteredPortsAreListedInOrderOfTheirNumbers) {
  const RegisteredPorts registered({{L"\\Device\\A", L"COM12"},
                                    {L"\\Device\\B", L"COM7"},
                                    {L"\\Device\\C", L"LPT1"},
                                    {L"\\Device\\D", L"COM"},
                                    {L"\\Device\\E", L"COM7"}});
  std::vector<std::string> names;
  for (const PortName& port : listSerialPorts()) names.push_back(port.name);
  const auto seven = std::find(names.begin(), names.end(), "COM7");
  const auto twelve = std::find(names.begin(), names.end(), "COM12");
  ASSERT_NE(twelve, names.end());
  EXPECT_LT(seven, twelve);
  EXPECT_EQ(std::count(names.begin(), names.end(), "COM7"), 1);
  for (const char* other : {"LPT1", "COM"}) {
    EXPECT_EQ(std::count(names.begin(), names.end(), other), 0) << other;
  }
}

}  // namespace
}  // namespace vgps
