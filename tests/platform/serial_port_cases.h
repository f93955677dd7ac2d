#pragma once

// Tests of serial ports on any system. The including file provides a `TestLine`: the far end of a
// line whose port is at `path()`, which can be unplugged and plugged in again.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "platform/serial_port.h"

namespace vgps {
namespace {

class SerialPortOnALine : public testing::Test {
 protected:
  void SetUp() override { open(); }

  void open() {
    ASSERT_EQ(port->open(line.path()), PortError::none);
    ASSERT_TRUE(port->setUp(9600));
  }
  PortRead read(int timeoutMs) {
    size_t got = 99;
    const PortRead result = port->read(buffer, got, timeoutMs);
    text.assign(buffer.data(), got);
    return result;
  }
  // Reads until this many bytes have arrived or the line is silent.
  std::string readAll(size_t length) {
    std::string all;
    while (all.size() < length && read(2000) == PortRead::data) all += text;
    return all;
  }
  void expectUsable() {
    line.write("$GP");
    EXPECT_EQ(readAll(3), "$GP");
  }

  TestLine line;
  std::unique_ptr<SerialPort> port = makeSerialPort();
  std::array<char, 10000> buffer{};
  std::string text;
};

TEST_F(SerialPortOnALine, BytesPassUnchangedBothWays) {
  std::string all;  // XON, XOFF, CR, LF, Ctrl-C, end of file and all the others
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  line.write(all);
  EXPECT_EQ(readAll(all.size()), all);
  EXPECT_TRUE(port->write(all));
  EXPECT_EQ(line.read(all.size()), all);
  std::string large;
  for (int i = 0; large.size() < 30000; ++i) large += "$GPGSV," + std::to_string(i) + "\r\n";
  std::thread writer([&] { line.write(large); });
  EXPECT_EQ(readAll(large.size()), large);
  writer.join();
}

TEST_F(SerialPortOnALine, SilenceEndsAReadAfterItsTimeAndLosesNothing) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(read(20), PortRead::silence);
    EXPECT_EQ(text, "");
  }
  expectUsable();
  EXPECT_EQ(read(0), PortRead::silence);
  expectUsable();
}

TEST_F(SerialPortOnALine, ClosingAndInterruptingWakeTheReaderAndThePortOpensAgainAtOnce) {
  for (int round = 0; round < 12; ++round) {
    const bool interrupts = round % 2 == 0;
    PortRead result = PortRead::data;
    std::thread reader([&] { result = read(round % 3 == 0 ? 60000 : -1); });
    if (round % 4 < 3) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    if (interrupts) {
      port->interrupt();
    } else {
      std::thread closer([&] { port->close(); });
      port->close();
      closer.join();
    }
    reader.join();
    EXPECT_EQ(result, PortRead::closed);
    EXPECT_EQ(read(1000), PortRead::closed) << "and stays so";
    EXPECT_EQ(port->setUp(4800), interrupts) << "the device is still held";
    port->close();
    EXPECT_FALSE(port->write(std::string("x")));
    ASSERT_NO_FATAL_FAILURE(open());
    expectUsable();
  }
}

TEST_F(SerialPortOnALine, AnUnpluggedDeviceFailsUntilItIsOpenedAgain) {
  PortRead result = PortRead::data;
  std::thread reader([&] { result = read(-1); });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  line.unplug();
  reader.join();
  EXPECT_EQ(result, PortRead::failed);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 5; ++i) EXPECT_EQ(read(-1), PortRead::failed);
  EXPECT_GE(std::chrono::steady_clock::now() - start, 5 * TestLine::kFailureTakes)
      << "the reader would be kept busy";
  port->close();
  line.plugIn();
  ASSERT_NO_FATAL_FAILURE(open());
  expectUsable();
}

TEST_F(SerialPortOnALine, WritingNeverWaitsForTheLine) {
  EXPECT_FALSE(port->write(std::string(1 << 20, 'x'))) << "more than any driver holds";
}

}  // namespace
}  // namespace vgps
