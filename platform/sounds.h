#pragma once

// The interface to sounds: a program without audio plays none; a test counts them.
namespace vgps {

class Sounds {
 public:
  virtual ~Sounds() = default;
  // Starts one of the program's sounds ("OK", "ERR2", "TURN", "FORBIDDEN", "SPD") and returns at
  // once. May be called from any thread.
  virtual void play(const char*) {}
};

}  // namespace vgps
