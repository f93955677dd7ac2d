#include "app/session/app_hooks.h"

namespace vgps {

void AppHooks::send(UiMessage message) {
  message.generation = deliveringGeneration_;
  uiThread_.send(message);
}

void AppHooks::lineReceived(const ReceivedLine& line) {
  send({.event = UiEvent::line, .text = line.text, .record = line.message, .said = line.said});
}

void AppHooks::unknownBytes(std::string_view bytes) {
  send({.event = UiEvent::unknownBytes, .text = bytes});
}

void AppHooks::sensorReading(double longitude, double latitude) {
  uiThread_.post({.event = UiEvent::sensor,
                  .x = longitude,
                  .y = latitude,
                  .generation = deliveringGeneration_});
}

void AppHooks::logFailed(const std::string& path) {
  send({.event = UiEvent::logFailed, .text = path});
}

}  // namespace vgps
