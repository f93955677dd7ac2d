#pragma once

#include <atomic>
#include <cstdint>

#include "gps/options.h"
#include "platform/sounds.h"
#include "platform/ui_thread.h"
#include "platform/window.h"

namespace vgps {

// What the receiver's side asks for, passed on: sounds at once, everything else through the door
// to the user-interface thread, in the name of the source whose reader speaks.
class AppHooks : public GpsHooks {
 public:
  // `speaking`: the generation of the source whose reader calls.
  AppHooks(UiThread& uiThread, Sounds& sounds, Window& window,
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
