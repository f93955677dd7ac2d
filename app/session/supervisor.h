#pragma once

#include <cstdint>
#include <string>

namespace vgps {

struct AppState;

inline constexpr uint32_t kLostAfterMs = 10000;
inline constexpr uint32_t kRetryEveryMs = 5000;

// Watches over a serial connection: a receiver that is unplugged, or falls silent, is looked for
// until its data come again, also under another name. The reader goes on meanwhile, does the
// looking and gets nothing; only the person ends the connection.
struct Supervisor {
  enum class State {
    off,       // not connected, no serial source, or switched off
    watching,  // data come, or the first are waited for
    lost,      // none come any more; the port is tried again and again
    held,      // the port is left to somebody else for a while
  };
  State state = State::off;
  std::string portName =
      {};              // in use, or in use last: changes when the device comes back elsewhere
  uint32_t speed = 0;  // of the line
  uint32_t lastBytesTick = 0;  // when anything came, or when the connection was opened
};

// A serial connection was opened through this port.
void superviseConnection(AppState& app, const std::string& portName, uint32_t speed);
// The person has ended it, or another source was chosen.
void endSupervision(AppState& app);

// Gives the port of a serial connection free, and takes it again. What is connected stays so.
void holdConnection(AppState& app);
void resumeConnection(AppState& app);

// Something came down the line.
void noteBytes(AppState& app);

// By the 5-second timer.
void checkConnection(AppState& app);

}  // namespace vgps
