#include "platform/location_sensor.h"

#include <windows.h>

#include <initguid.h>
#include <propidl.h>
#include <sensors.h>
#include <sensorsapi.h>

#include <algorithm>
#include <cstring>

#include "platform/win32/com.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

// The compiler's headers do not declare these.
constexpr CLSID kSensorCollection = {
    0x79C43ADB, 0xA429, 0x469F, {0xAA, 0x39, 0x2F, 0x2B, 0x74, 0xB7, 0x59, 0x37}};
constexpr CLSID kGlobalInterfaceTable = {
    0x00000323, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

constexpr int kPollMs = 100;

// Opened by the user-interface thread, but read and released by the sensor's own thread: the global
// interface table passes the object between their apartments.
class Win32LocationSensor : public LocationSensor {
 public:
  Win32LocationSensor(ComPtr<IGlobalInterfaceTable> table, DWORD cookie)
      : table_(std::move(table)), cookie_(cookie) {}
  ~Win32LocationSensor() override {
    enterApartment();
    table_->RevokeInterfaceFromGlobal(cookie_);
  }

  bool read(double& longitude, double& latitude, int timeoutMs) override;

 private:
  bool isNew(ISensorDataReport& report);

  ComPtr<IGlobalInterfaceTable> table_;
  DWORD cookie_;
  SYSTEMTIME lastReport_{};
};

bool degreesOf(ISensorDataReport& report, REFPROPERTYKEY key, double& degrees) {
  PROPVARIANT value;
  PropVariantInit(&value);
  if (FAILED(report.GetSensorValue(key, &value))) return false;
  const bool isNumber = value.vt == VT_R8;
  if (isNumber) degrees = value.dblVal;
  PropVariantClear(&value);
  return isNumber;
}

// A sensor keeps returning its last report.
bool Win32LocationSensor::isNew(ISensorDataReport& report) {
  SYSTEMTIME time{};
  if (FAILED(report.GetTimestamp(&time))) return false;
  if (std::memcmp(&time, &lastReport_, sizeof time) == 0) return false;
  lastReport_ = time;
  return true;
}

bool Win32LocationSensor::read(double& longitude, double& latitude, int timeoutMs) {
  enterApartment();
  void* object = nullptr;
  table_->GetInterfaceFromGlobal(cookie_, __uuidof(ISensor), &object);
  const ComPtr<ISensor> sensor(static_cast<ISensor*>(object));
  for (int left = timeoutMs;; left -= kPollMs) {
    ISensorDataReport* got = nullptr;
    if (sensor != nullptr && SUCCEEDED(sensor->GetData(&got)) && got != nullptr) {
      const ComPtr<ISensorDataReport> report(got);
      if (isNew(*report) && degreesOf(*report, SENSOR_DATA_TYPE_LONGITUDE_DEGREES, longitude) &&
          degreesOf(*report, SENSOR_DATA_TYPE_LATITUDE_DEGREES, latitude)) {
        return true;
      }
    }
    if (left <= 0) return false;
    Sleep(static_cast<DWORD>(std::min(left, kPollMs)));
  }
}

class Win32SensorManager : public LocationSensorManager {
 public:
  std::unique_ptr<LocationSensor> open(const std::string& identifier) override;
};

// Asks the user once, without waiting. If the user refuses, the sensor delivers no data.
void askForPermission(ISensorManager& manager, ISensor& sensor) {
  const auto sensors = createObject<ISensorCollection>(kSensorCollection);
  if (sensors == nullptr || FAILED(sensors->Add(&sensor))) return;
  manager.RequestPermissions(nullptr, sensors.get(), FALSE);
}

std::unique_ptr<LocationSensor> Win32SensorManager::open(const std::string& identifier) {
  enterApartment();
  GUID id{};
  if (FAILED(CLSIDFromString(wideFromUtf8(identifier).c_str(), &id))) return nullptr;
  const auto manager = createObject<ISensorManager>(CLSID_SensorManager);
  auto table = createObject<IGlobalInterfaceTable>(kGlobalInterfaceTable);
  ISensor* found = nullptr;
  if (manager == nullptr || table == nullptr || FAILED(manager->GetSensorByID(id, &found)) ||
      found == nullptr) {
    return nullptr;
  }
  const ComPtr<ISensor> sensor(found);
  askForPermission(*manager, *sensor);
  DWORD cookie = 0;
  if (FAILED(table->RegisterInterfaceInGlobal(sensor.get(), __uuidof(ISensor), &cookie))) {
    return nullptr;
  }
  return std::make_unique<Win32LocationSensor>(std::move(table), cookie);
}

}  // namespace

LocationSensorManager* locationSensorManager() {
  enterApartment();
  static Win32SensorManager manager;
  static const bool available = createObject<ISensorManager>(CLSID_SensorManager) != nullptr;
  return available ? &manager : nullptr;
}

}  // namespace vgps
