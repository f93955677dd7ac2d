#include "app/session/session_gps_hooks.h"

namespace vgps {

void SessionGpsHooks::send(UiMessage message) {
  message.generation = deliveringGeneration_;
  uiThread_.send(message);
}

void SessionGpsHooks::lineReceived(const ReceivedLine& line) {
  send({.event = UiEvent::line, .text = line.text, .record = line.message, .said = line.said});
}

void SessionGpsHooks::unknownBytes(std::string_view bytes) {
  send({.event = UiEvent::unknownBytes, .text = bytes});
}

void SessionGpsHooks::sensorReading(double longitude, double latitude) {
  uiThread_.post({.event = UiEvent::sensor,
                  .x = longitude,
                  .y = latitude,
                  .generation = deliveringGeneration_});
}

void SessionGpsHooks::logFailed(const std::string& path) {
  send({.event = UiEvent::logFailed, .text = path});
}

}  // namespace vgps
