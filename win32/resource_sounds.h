#pragma once

#include "platform/sounds.h"

namespace vgps {

// Plays the program's WAVE resources; a sound that it does not have is silence.
class ResourceSounds : public Sounds {
 public:
  void play(const char* name) override;
};

}  // namespace vgps
