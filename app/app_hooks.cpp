#include "app/app_hooks.h"

namespace vgps {

void AppHooks::lineReceived(const ReceivedLine& line) {
  door_.send({.event = UiEvent::line, .text = line.text, .record = line.message});
}

void AppHooks::unknownBytes(std::string_view bytes) {
  door_.send({.event = UiEvent::unknownBytes, .text = bytes});
}

void AppHooks::sensorReading(double longitude, double latitude) {
  door_.post({.event = UiEvent::sensor, .x = longitude, .y = latitude});
}

void AppHooks::logFailed(const std::string& path) {
  door_.send({.event = UiEvent::logFailed, .text = path});
}

}  // namespace vgps
