#pragma once

// The seam to sounds: a program without a loudspeaker plays none, a test counts them instead.
namespace vgps {

class Sounds {
 public:
  virtual ~Sounds() = default;
  // Starts a sound of the program ("OK", "ERR2", "TURN", "FORBIDDEN", "SPD") and returns at once.
  // May be called from any thread.
  virtual void play(const char*) {}
};

}  // namespace vgps
