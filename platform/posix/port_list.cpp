#include "platform/posix/port_list.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "base/number.h"
#include "base/text.h"
#include "platform/port_candidates.h"

namespace vgps {
namespace {

namespace fs = std::filesystem;

// Empty if the folder does not exist. Devices may appear and disappear during the call.
std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    entries.push_back(at->path());
  }
  return entries;
}

std::string firstLineOf(const fs::path& file) {
  std::ifstream in(file);
  std::string line;
  std::getline(in, line);
  return validUtf8(line);
}

// The kernel lists every terminal that a driver could serve, including consoles, pseudo-terminals,
// and UART numbers without a UART. An entry with a parent device is backed by hardware; a UART must
// also be of a known type. A Bluetooth port has a parent only while connected.
bool hasHardware(const fs::path& entry) {
  if (entry.filename().string().starts_with("rfcomm")) return true;
  std::error_code error;
  return fs::exists(entry / "device", error) && firstLineOf(entry / "type") != "0";
}

// USB devices report a product name, which is stored one to three levels above the terminal.
std::string productOf(const fs::path& entry) {
  std::error_code error;
  fs::path device = fs::canonical(entry / "device", error);
  for (int level = 0; level < 4 && !error && device.has_relative_path(); ++level) {
    std::string product = firstLineOf(device / "product");
    if (!product.empty()) return product;
    device = device.parent_path();
  }
  return {};
}

std::string linkTo(const std::string& name, const fs::path& linkFolder) {
  for (const fs::path& link : entriesOf(linkFolder)) {
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    if (!error && target.filename() == name) return validUtf8(link.filename().string());
  }
  return {};
}

// Numeric order: ttyUSB2 before ttyUSB10.
bool inOrderOfNumbers(const PortName& a, const PortName& b) {
  const auto split = [](const std::string& name) {
    const size_t digits = name.find_last_not_of("0123456789") + 1;
    return std::pair(name.substr(0, digits), leadingInt(std::string_view(name).substr(digits)));
  };
  return split(a.name) < split(b.name);
}

}  // namespace

std::vector<PortName> listSerialPortsIn(const std::string& classFolder,
                                        const std::string& linkFolder) {
  std::vector<PortName> ports;
  for (const fs::path& entry : entriesOf(classFolder)) {
    if (!hasHardware(entry)) continue;
    const std::string name = entry.filename().string();
    std::string description = productOf(entry);
    std::string identity = linkTo(name, linkFolder);
    if (description.empty()) description = identity;
    ports.push_back({"/dev/" + name, std::move(description), std::move(identity)});
  }
  std::sort(ports.begin(), ports.end(), inOrderOfNumbers);
  return ports;
}

std::vector<PortName> listSerialPorts() {
  return listSerialPortsIn("/sys/class/tty", "/dev/serial/by-id");
}

std::vector<PortName> portCandidates() { return listSerialPorts(); }

}  // namespace vgps
