#pragma once

#include <memory>
#include <string>

// The seam to the system's location sensors. Systems without a sensor manager give none.
namespace vgps {

class LocationSensor {
 public:
  virtual ~LocationSensor() = default;
  // Waits up to `timeoutMs` for the next reading, in decimal degrees. False when none came.
  virtual bool read(double& longitude, double& latitude, int timeoutMs) = 0;
};

class LocationSensorManager {
 public:
  virtual ~LocationSensorManager() = default;
  // `identifier`: a GUID as text. Null when there is no such sensor.
  virtual std::unique_ptr<LocationSensor> open(const std::string& identifier) = 0;
};

// Null where the system has no sensor manager.
LocationSensorManager* locationSensorManager();

}  // namespace vgps
