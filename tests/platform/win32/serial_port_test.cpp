#include "platform/serial_port.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <thread>

#include "tests/app/win32/drive.h"
#include "tests/app/win32/line.h"

namespace vgps {
namespace {

using namespace std::chrono_literals;

class Line : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(line.isUp());
    ASSERT_EQ(port->open(R"(\\.\COM3)"), PortError::none);
    ASSERT_TRUE(port->setUp(9600));
  }

  PortRead read(int timeoutMs) {
    size_t got = 0;
    const PortRead result = port->read(buffer, got, timeoutMs);
    text.assign(buffer.data(), got);
    return result;
  }

  // Until so many bytes have come or the line is silent.
  std::string readAll(size_t length) {
    std::string all;
    while (all.size() < length && read(2000) == PortRead::data) all += text;
    return all;
  }

  SerialLine line;
  std::unique_ptr<SerialPort> port = makeSerialPort();
  std::array<char, 10000> buffer{};
  std::string text;
};

TEST_F(Line, WhatIsWrittenArrives) {
  line.write("$GPGGA,1\r\n");
  EXPECT_EQ(readAll(10), "$GPGGA,1\r\n");
  std::string large;
  for (int i = 0; large.size() < 30000; ++i) large += "$GPGSV," + std::to_string(i) + "\r\n";
  std::thread writer([&] { line.write(large); });
  EXPECT_EQ(readAll(large.size()), large);
  writer.join();
}

TEST_F(Line, SilenceEndsAfterTheTimeAndLosesNothing) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(read(20), PortRead::silence);
  line.write("a");
  EXPECT_EQ(readAll(1), "a");
  EXPECT_EQ(read(0), PortRead::silence);
  line.write("bcd");
  EXPECT_EQ(readAll(3), "bcd");
}

// A stream whose gaps are shorter than the interval would never end one large read.
TEST_F(Line, AStreamWithoutPausesIsReadAsItComes) {
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

TEST_F(Line, ClosingAndInterruptingWakeTheReader) {
  for (const auto& [timeoutMs, interrupt] : {std::pair(-1, false), {60000, false}, {-1, true}}) {
    PortRead result = PortRead::data;
    std::thread reader([&, limit = timeoutMs] { result = read(limit); });
    Sleep(100);
    interrupt ? port->interrupt() : port->close();
    reader.join();
    EXPECT_EQ(result, PortRead::closed);
    EXPECT_EQ(read(1000), PortRead::closed);
    EXPECT_EQ(port->setUp(4800), interrupt) << "the device is still held";
    port->close();
    ASSERT_EQ(port->open(R"(\\.\COM3)"), PortError::none);
    ASSERT_TRUE(port->setUp(4800));
    line.write("again");
    EXPECT_EQ(readAll(5), "again");
  }
}

TEST_F(Line, ClosingLeavesNoReadBehind) {
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(read(1), PortRead::silence);  // one byte is being read still
    port->close();
    port->close();
    ASSERT_EQ(port->open(R"(\\.\COM3)"), PortError::none);
  }
  line.write("x");
  EXPECT_EQ(readAll(1), "x");
}

TEST_F(Line, AnUnpluggedDeviceFailsAtOnce) {
  PortRead result = PortRead::data;
  std::thread reader([&] { result = read(-1); });
  Sleep(100);
  line.unplug();
  reader.join();
  EXPECT_EQ(result, PortRead::failed);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(read(-1), PortRead::failed);
  port->close();
  line.plugIn();
  ASSERT_EQ(port->open(R"(\\.\COM3)"), PortError::none);
  line.write("back");
  EXPECT_EQ(readAll(4), "back");
}

TEST_F(Line, WritesReachTheDevice) {
  const std::string command = "$PSRF100,0,9600,8,1,0*0C\r\n";
  EXPECT_TRUE(port->write(command));
  EXPECT_EQ(line.read(command.size()), command);
  EXPECT_FALSE(port->write(std::string(100000, 'x'))) << "more than the driver takes";
  port->close();
  EXPECT_FALSE(port->write(command));
}

TEST(SerialPort, MissingDevicesAreTold) {
  const auto port = makeSerialPort();
  EXPECT_EQ(port->open(R"(\\.\COM29)"), PortError::notThere);
  EXPECT_EQ(port->open(""), PortError::notThere);
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
