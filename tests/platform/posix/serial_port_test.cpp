// The serial port on a pseudo-terminal.
#include "platform/serial_port.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <memory>

#include "tests/fakes/test_folder.h"
#include "tests/platform/posix/pty.h"

namespace vgps {
namespace {

// A pseudo-terminal that comes back at the same place.
class TestLine {
 public:
  static constexpr std::chrono::milliseconds kFailureTakes{60};

  std::string path() const { return folder_ / "port"; }
  void write(std::string_view bytes) { line_->write(bytes); }
  std::string read(size_t count) { return line_->readBack(count); }
  void unplug() { line_ = nullptr; }
  void plugIn() { line_ = std::make_unique<Pty>(path()); }

 private:
  const TestFolder folder_;
  std::unique_ptr<Pty> line_ = std::make_unique<Pty>(path());
};

}  // namespace
}  // namespace vgps

#include "tests/platform/serial_port_cases.h"

namespace vgps {
namespace {

TEST(SerialPort, WhyItDoesNotOpen) {
  const TestFolder folder;
  std::ofstream(folder / "file") << "no line";
  const struct {
    std::string path;
    PortError error;
  } rows[] = {{"/dev/there-is-no-such-port", PortError::notFound},
              {"", PortError::notFound},
              {folder.path(), PortError::notFound},
              {folder / "file" + "/below", PortError::notFound},
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

TEST_F(SerialPortOnALine, AnUnpluggedDeviceCanBeNeitherSetUpNorOpened) {
  line.unplug();
  EXPECT_FALSE(port->setUp(9600));
  port->close();
  EXPECT_EQ(port->open(line.path()), PortError::notFound);
}

TEST_F(SerialPortOnALine, TakesAnySpeed) {
  for (const uint32_t speed : {1200U, 4800U, 9600U, 115200U, 100000U, 123457U, 0U, 4000000000U}) {
    EXPECT_TRUE(port->setUp(speed)) << speed;
    expectUsable();
  }
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
