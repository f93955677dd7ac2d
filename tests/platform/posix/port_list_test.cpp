#include "platform/posix/port_list.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

namespace fs = std::filesystem;

void writeFile(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path) << text;
}

// A tree as the kernel has it: /sys/class/tty/NAME with a link `device` to the hardware.
TEST(PortList, DevicesWithHardwareAndWhatTheyAreCalled) {
  const TestFolder folder;
  const fs::path root = folder.path();
  const fs::path tty = root / "tty";
  const fs::path links = root / "by-id";
  const auto hardware = [&](const std::string& name, const fs::path& device) {
    fs::create_directories(tty / name);
    fs::create_directories(device);
    fs::create_symlink(device, tty / name / "device");
  };
  fs::create_directories(tty / "tty1");  // a console
  fs::create_directories(tty / "ptmx");
  // A USB adapter: the product stands two levels above its line.
  const fs::path usb = root / "usb" / "1-2";
  writeFile(usb / "product", "u-blox 7\n");
  hardware("ttyUSB10", usb / "1-2:1.0" / "ttyUSB10");
  hardware("ttyUSB2", root / "usb" / "1-3" / "1-3:1.0" / "ttyUSB2");
  fs::create_directories(links);
  fs::create_symlink("../../ttyUSB2", links / "usb-Prolific_PL2303-if00-port0");
  hardware("ttyACM0", root / "usb" / "1-4");
  // UART numbers with and without a UART.
  hardware("ttyS0", root / "pnp" / "00:01");
  writeFile(tty / "ttyS0" / "type", "4\n");
  hardware("ttyS1", root / "platform" / "serial8250");
  writeFile(tty / "ttyS1" / "type", "0\n");
  fs::create_directories(tty / "rfcomm0");

  const std::vector<PortName> ports = listSerialPortsIn(tty.string(), links.string());
  std::vector<std::pair<std::string, std::string>> found;
  for (const PortName& port : ports) found.emplace_back(port.name, port.description);
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"/dev/rfcomm0", ""},
      {"/dev/ttyACM0", ""},
      {"/dev/ttyS0", ""},
      {"/dev/ttyUSB2", "usb-Prolific_PL2303-if00-port0"},
      {"/dev/ttyUSB10", "u-blox 7"}};
  EXPECT_EQ(found, expected);
  EXPECT_EQ(ports[3].identity, "usb-Prolific_PL2303-if00-port0");
  EXPECT_EQ(ports[4].identity, "") << "no link says which device it is";
}

TEST(PortList, NoSuchFoldersMeanNoPorts) {
  EXPECT_TRUE(listSerialPortsIn("/there/is/no/folder", "/nor/here").empty());
}

}  // namespace
}  // namespace vgps
