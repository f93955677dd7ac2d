#pragma once

#include <atomic>
#include <cstdint>

#include "gps/options.h"
#include "platform/sounds.h"
#include "platform/ui_thread.h"
#include "platform/window.h"

namespace vgps {

// Forwards requests from the receiver code. Sounds play immediately; everything else is sent to the
// user-interface thread, tagged with the generation of the source that sent it.
class SessionGpsHooks : public GpsHooks {
 public:
  // `deliveringGeneration` is the generation of the source whose reader is calling.
  SessionGpsHooks(UiThread& uiThread, Sounds& sounds, Window& window,
                  const std::atomic<uint32_t>& deliveringGeneration)
      : uiThread_(uiThread),
        sounds_(sounds),
        window_(window),
        deliveringGeneration_(deliveringGeneration) {}

  void playSound(const char* name) override { sounds_.play(name); }
  void repaint() override { send({.event = UiEvent::repaint}); }
  void maxSpeedChanged() override {}     // shown with the next refresh of the display
  void maxAltitudeChanged() override {}  // likewise
  void lineReceived(const ReceivedLine& line) override;
  void refreshDisplay() override { send({.event = UiEvent::refresh}); }
  void unknownBytes(std::string_view bytes) override;
  void setTitle(std::string_view title) override { window_.setTitle(title); }
  void sensorReading(double longitude, double latitude) override;
  bool shiftHeld() override { return window_.shiftHeld(); }
  void pressSpace() override { window_.pressSpace(); }
  void logFailed(const std::string& path) override;

 private:
  void send(UiMessage message);

  UiThread& uiThread_;
  Sounds& sounds_;
  Window& window_;
  const std::atomic<uint32_t>& deliveringGeneration_;
};

}  // namespace vgps
