#pragma once

#include "platform/sounds.h"
#include "platform/window.h"

namespace vgps {

// A program without loudspeaker...
class QuietSounds : public Sounds {
 public:
  void play(const char*) override {}
};

// ...and without window.
class QuietWindow : public Window {
 public:
  void repaint() override {}
  void setTitle(std::string_view) override {}
  void tellError(std::string_view) override {}
  bool shiftHeld() override { return false; }
  void pressSpace() override {}
};

}  // namespace vgps
