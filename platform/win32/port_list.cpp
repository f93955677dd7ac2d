// The other headers need <windows.h> first.
#include <windows.h>

#include <cfgmgr32.h>
#include <devguid.h>
#include <setupapi.h>

#include <algorithm>
#include <map>

#include "base/number.h"
#include "platform/port_candidates.h"
#include "platform/serial_port.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

// The port numbers that a search tries.
constexpr int kCandidates = 30;

bool isPortName(std::wstring_view name) {
  return name.size() > 3 && name.substr(0, 3) == L"COM" &&
         name.find_first_not_of(L"0123456789", 3) == std::wstring_view::npos;
}

struct Device {
  std::string description;
  std::string identity;
  std::string make;
};
using Devices = std::map<std::string, Device>;

// The ports that drivers have registered. Some virtual ports are not registered.
void addRegistered(Devices& ports) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) !=
      ERROR_SUCCESS) {
    return;
  }
  for (DWORD index = 0;; ++index) {
    wchar_t device[256];
    wchar_t name[64];
    DWORD deviceLength = std::size(device);
    DWORD size = sizeof name;
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(key, index, device, &deviceLength, nullptr, &type,
                                         reinterpret_cast<BYTE*>(name), &size);
    if (status == ERROR_MORE_DATA) continue;  // no port name is that long
    if (status != ERROR_SUCCESS) break;
    if (type != REG_SZ) continue;
    std::wstring_view text(name, size / sizeof(wchar_t));
    text = text.substr(0, text.find(L'\0'));
    if (isPortName(text)) ports.try_emplace(utf8FromWide(text));
  }
  RegCloseKey(key);
}

// The ports that the object manager knows by name.
void addNamed(Devices& ports) {
  std::wstring names(16384, L'\0');
  DWORD length = 0;
  while ((length = QueryDosDeviceW(nullptr, names.data(), static_cast<DWORD>(names.size()))) == 0 &&
         GetLastError() == ERROR_INSUFFICIENT_BUFFER && names.size() < (1u << 22)) {
    names.resize(names.size() * 2);
  }
  std::wstring_view rest(names.data(), length);
  while (!rest.empty()) {
    const std::wstring_view name = rest.substr(0, rest.find(L'\0'));
    if (isPortName(name)) ports.try_emplace(utf8FromWide(name));
    rest.remove_prefix(std::min(name.size() + 1, rest.size()));
  }
}

std::wstring portNameOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
  const HKEY key = SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
  if (key == INVALID_HANDLE_VALUE) return {};
  wchar_t name[64];
  DWORD size = sizeof name;
  const LSTATUS status =
      RegQueryValueExW(key, L"PortName", nullptr, nullptr, reinterpret_cast<BYTE*>(name), &size);
  RegCloseKey(key);
  if (status != ERROR_SUCCESS) return {};
  const std::wstring_view text(name, size / sizeof(wchar_t));
  return std::wstring(text.substr(0, text.find(L'\0')));
}

// "Prolific USB-to-Serial (COM3)" without the port number, which is shown anyway.
std::string withoutPortName(std::wstring_view text, std::wstring_view port) {
  const std::wstring ending = L" (" + std::wstring(port) + L")";
  if (text.ends_with(ending)) text.remove_suffix(ending.size());
  return utf8FromWide(text);
}

// The device's own name, or that of its class. Some have neither.
std::wstring textOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
  for (const DWORD property : {SPDRP_FRIENDLYNAME, SPDRP_DEVICEDESC}) {
    wchar_t text[256] = L"";
    if (SetupDiGetDeviceRegistryPropertyW(devices, &device, property, nullptr,
                                          reinterpret_cast<BYTE*>(text), sizeof text - sizeof *text,
                                          nullptr)) {
      return text;
    }
  }
  return {};
}

// Stays the same when the device is plugged in again, whatever port number it gets. Converted to
// one case, because Windows ignores case here and changes it.
std::string instanceOf(HDEVINFO devices, SP_DEVINFO_DATA& device) {
  wchar_t instance[MAX_DEVICE_ID_LEN] = L"";
  if (!SetupDiGetDeviceInstanceIdW(devices, &device, instance, std::size(instance), nullptr)) {
    return {};
  }
  CharUpperW(instance);
  return utf8FromWide(instance);
}

// USB\VID_067B&PID_2303\5&2A5B7C9D&0&3: for devices without a serial number, Windows makes up the
// last part, which then contains "&".
std::string modelIdOf(const std::string& instance) {
  const size_t last = instance.rfind('\\');
  const bool madeUp = instance.starts_with("USB\\") && instance.find('&', last) != instance.npos;
  return madeUp ? instance.substr(0, last) : std::string();
}

void addDescriptions(Devices& ports) {
  const HDEVINFO devices =
      SetupDiGetClassDevsW(&GUID_DEVCLASS_PORTS, nullptr, nullptr, DIGCF_PRESENT);
  if (devices == INVALID_HANDLE_VALUE) return;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD index = 0; SetupDiEnumDeviceInfo(devices, index, &device); ++index) {
    const std::wstring name = portNameOf(devices, device);
    if (isPortName(name)) {
      const std::string instance = instanceOf(devices, device);
      ports[utf8FromWide(name)] = {withoutPortName(textOf(devices, device), name), instance,
                                   modelIdOf(instance)};
    }
  }
  SetupDiDestroyDeviceInfoList(devices);
}

}  // namespace

std::vector<PortName> listSerialPorts() {
  Devices found;
  addRegistered(found);
  addNamed(found);
  addDescriptions(found);
  std::vector<PortName> ports;
  for (const auto& [name, device] : found) {
    ports.push_back({name, device.description, device.identity, device.make});
  }
  const auto number = [](const PortName& port) {
    return leadingInt(std::string_view(port.name).substr(3));
  };
  std::sort(ports.begin(), ports.end(),
            [&](const PortName& a, const PortName& b) { return number(a) < number(b); });
  return ports;
}

std::vector<PortName> portCandidates() {
  std::vector<PortName> candidates;
  const std::vector<PortName> present = listSerialPorts();
  for (int number = 0; number < kCandidates; ++number) {
    PortName port{.name = "COM" + std::to_string(number)};
    const auto known = std::find_if(present.begin(), present.end(),
                                    [&](const PortName& other) { return other.name == port.name; });
    if (known != present.end()) port = *known;
    candidates.push_back(std::move(port));
  }
  return candidates;
}

}  // namespace vgps
