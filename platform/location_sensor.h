#pragma once

#include <memory>
#include <string>

// The interface to the system's location sensors.
namespace vgps {

class LocationSensor {
 public:
  virtual ~LocationSensor() = default;
  // Waits up to `timeoutMs` for the next reading, in decimal degrees. Returns false on a timeout.
  virtual bool read(double& longitude, double& latitude, int timeoutMs) = 0;
};

class LocationSensorManager {
 public:
  virtual ~LocationSensorManager() = default;
  // `identifier` is a GUID as text. Returns null if there is no such sensor.
  virtual std::unique_ptr<LocationSensor> open(const std::string& identifier) = 0;
};

// Returns null if the system has no sensor manager.
LocationSensorManager* locationSensorManager();

}  // namespace vgps
