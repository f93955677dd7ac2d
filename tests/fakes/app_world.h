#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/direct_ui_thread.h"
#include "app/on_line.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/fake_serial_port.h"

namespace vgps {

class FakeSounds : public Sounds {
 public:
  void play(const char* name) override { played.emplace_back(name); }
  std::vector<std::string> played;
};

class FakeWindow : public Window {
 public:
  void repaint() override {
    ++repaints;
    if (onRepaint) onRepaint();
  }
  void setTitle(std::string_view text) override { title = text; }
  void tellError(std::string_view text) override { errors.emplace_back(text); }
  bool shiftHeld() override { return false; }
  void pressSpace() override { ++spaces; }

  std::function<void()> onRepaint;
  int repaints = 0, spaces = 0;
  std::string title;
  std::vector<std::string> errors;
};

// The whole program without a system: everything runs on the thread that calls.
struct AppWorld {
  AppWorld() {
    door.setHandler([this](const UiMessage& message) { onUiMessage(app, message); });
  }
  void receive(std::string_view bytes) { app.fix.onReceive(bytes); }

  FakeClock clock;
  FakeSounds sounds;
  FakeWindow window;
  FakePorts ports;
  DirectUiThread door;
  AppState app{Platform{clock, sounds, door, window, [this] { return ports.make(); }}};
};

}  // namespace vgps
