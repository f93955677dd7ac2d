// The serial port on a pseudo-terminal.
#include "platform/serial_port.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>
#include <vector>

#include "tests/fakes/test_folder.h"
#include "tests/platform/posix/pty.h"

namespace vgps {
namespace {

using std::chrono::milliseconds;

// Reads until `count` bytes are there; gives up after two silent seconds.
std::string readBytes(SerialPort& port, size_t count) {
  std::string bytes;
  std::array<char, 100> buffer{};
  size_t got = 0;
  while (bytes.size() < count && port.read(buffer, got, 2000) == PortRead::data) {
    bytes.append(buffer.data(), got);
  }
  return bytes;
}

TEST(SerialPort, BytesPassUnchangedBothWays) {
  Pty line;
  const auto port = makeSerialPort();
  ASSERT_EQ(port->open(line.path()), PortError::none);
  ASSERT_TRUE(port->setUp(4800));
  std::string all;  // XON, XOFF, CR, LF, Ctrl-C, end of file and all the others
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  line.write(all);
  EXPECT_EQ(readBytes(*port, all.size()), all);
  EXPECT_TRUE(port->write(all));
  EXPECT_EQ(line.readBack(all.size()), all);
}

TEST(SerialPort, SilenceEndsAReadAfterItsTime) {
  Pty line;
  const auto port = makeSerialPort();
  ASSERT_EQ(port->open(line.path()), PortError::none);
  ASSERT_TRUE(port->setUp(9600));
  std::array<char, 10> buffer{};
  size_t got = 99;
  EXPECT_EQ(port->read(buffer, got, 20), PortRead::silence);
  EXPECT_EQ(got, 0U);
  EXPECT_EQ(port->read(buffer, got, 0), PortRead::silence);
}

TEST(SerialPort, WhyItDoesNotOpen) {
  const TestFolder folder;
  std::ofstream(folder / "file") << "no line";
  const struct {
    std::string path;
    PortError error;
  } rows[] = {{"/dev/there-is-no-such-port", PortError::notThere},
              {"", PortError::notThere},
              {folder.path(), PortError::notThere},
              {folder / "file" + "/below", PortError::notThere},
              {folder / "file", PortError::other},
              {"/dev/null", PortError::other}};
  const auto port = makeSerialPort();
  for (const auto& row : rows) EXPECT_EQ(port->open(row.path), row.error) << row.path;
}

TEST(SerialPort, SaysWhenPermissionIsMissing) {
  Pty line;
  ASSERT_EQ(fchmod(line.slave(), 0), 0);
  const bool superuser = geteuid() == 0;
  if (superuser) {
    ASSERT_EQ(seteuid(65534), 0);
  }
  EXPECT_EQ(makeSerialPort()->open(line.path()), PortError::noPermission);
  if (superuser) {
    ASSERT_EQ(seteuid(0), 0);
  }
}

TEST(SerialPort, IsBusyWhileAnotherHoldsIt) {
  Pty line;
  const auto first = makeSerialPort();
  const auto second = makeSerialPort();
  ASSERT_EQ(first->open(line.path()), PortError::none);
  EXPECT_EQ(second->open(line.path()), PortError::busy);
  first->close();
  EXPECT_EQ(second->open(line.path()), PortError::none);
  second->close();
  // Programs that only lock, and programs that only ask for the exclusive mode.
  ASSERT_EQ(flock(line.slave(), LOCK_EX), 0);
  EXPECT_EQ(first->open(line.path()), PortError::busy);
  ASSERT_EQ(flock(line.slave(), LOCK_UN), 0);
  ASSERT_EQ(ioctl(line.slave(), TIOCEXCL), 0);
  EXPECT_EQ(first->open(line.path()), PortError::busy);
  ASSERT_EQ(ioctl(line.slave(), TIOCNXCL), 0);
  EXPECT_EQ(first->open(line.path()), PortError::none);
}

TEST(SerialPort, CloseWakesAWaitingReadAndThePortOpensAgainAtOnce) {
  Pty line;
  const auto port = makeSerialPort();
  for (int round = 0; round < 20; ++round) {
    ASSERT_EQ(port->open(line.path()), PortError::none);
    ASSERT_TRUE(port->setUp(9600));
    std::atomic<bool> reading{false};
    std::thread reader([&] {
      std::array<char, 10> buffer{};
      size_t got = 0;
      reading = true;
      EXPECT_EQ(port->read(buffer, got, -1), PortRead::closed);
      EXPECT_EQ(port->read(buffer, got, -1), PortRead::closed);  // and stays so
    });
    while (!reading) std::this_thread::yield();
    if (round % 2 == 0) std::this_thread::sleep_for(milliseconds(5));
    if (round % 4 < 2) {  // the device is still held then
      port->interrupt();
      reader.join();
      EXPECT_TRUE(port->setUp(9600));
      port->close();
      continue;
    }
    std::thread closer([&] { port->close(); });
    port->close();
    closer.join();
    reader.join();
  }
  EXPECT_FALSE(port->setUp(9600));
  EXPECT_FALSE(port->write(std::string("x")));
  ASSERT_EQ(port->open(line.path()), PortError::none);
  ASSERT_TRUE(port->setUp(9600));
  line.write("$");
  EXPECT_EQ(readBytes(*port, 1), "$");
}

TEST(SerialPort, AnUnpluggedDeviceFailsWithoutKeepingTheReaderBusy) {
  const TestFolder folder;
  const std::string path = folder / "port";
  Pty line(path);
  const auto port = makeSerialPort();
  ASSERT_EQ(port->open(path), PortError::none);
  ASSERT_TRUE(port->setUp(9600));
  std::atomic<int> failures{0};
  std::thread reader([&] {
    std::array<char, 10> buffer{};
    size_t got = 0;
    PortRead result = PortRead::data;
    while ((result = port->read(buffer, got, -1)) != PortRead::closed) {
      EXPECT_EQ(result, PortRead::failed);
      ++failures;
    }
  });
  std::this_thread::sleep_for(milliseconds(20));
  line.unplug();
  while (failures == 0) std::this_thread::sleep_for(milliseconds(1));
  EXPECT_FALSE(port->setUp(9600));
  std::this_thread::sleep_for(milliseconds(300));
  port->close();
  reader.join();
  EXPECT_LE(failures, 5);
  EXPECT_EQ(port->open(path), PortError::notThere);
  Pty again(path);
  ASSERT_EQ(port->open(path), PortError::none);
  ASSERT_TRUE(port->setUp(9600));
  again.write("$GP");
  EXPECT_EQ(readBytes(*port, 3), "$GP");
}

TEST(SerialPort, TakesAnySpeed) {
  Pty line;
  const auto port = makeSerialPort();
  ASSERT_EQ(port->open(line.path()), PortError::none);
  for (const uint32_t speed : {1200U, 4800U, 9600U, 115200U, 100000U, 123457U, 0U, 4000000000U}) {
    EXPECT_TRUE(port->setUp(speed)) << speed;
    line.write("x");
    EXPECT_EQ(readBytes(*port, 1), "x") << speed;
  }
}

TEST(SerialPort, WritingNeverWaitsForTheLine) {
  Pty line;
  const auto port = makeSerialPort();
  ASSERT_EQ(port->open(line.path()), PortError::none);
  ASSERT_TRUE(port->setUp(9600));
  EXPECT_FALSE(port->write(std::string(1 << 20, 'x')));  // more than any driver holds
}

TEST(SerialPort, NamesArePaths) {
  EXPECT_EQ(devicePath("ttyUSB0"), "/dev/ttyUSB0");
  const std::string byId = "/dev/serial/by-id/usb-a-name-longer-than-twenty-characters-if00";
  EXPECT_EQ(devicePath(byId), byId);
  EXPECT_EQ(devicePath("./port"), "./port");
  EXPECT_EQ(devicePath(""), "");
}

}  // namespace
}  // namespace vgps
