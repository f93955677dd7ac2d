#pragma once

#include <cstdint>
#include <string_view>

// The only channel from worker threads to the user-interface thread: window messages in the desktop
// program, a mailbox in programs without a window, and direct calls in a replay.
namespace vgps {

enum class UiEvent : uint32_t {
  line = 0x466,          // a received line or receiver message; `text`, `record`
  sensor = 0x467,        // a reading of the location sensor; `x` longitude, `y` latitude, degrees
  repaint = 0x468,       // the parser requests a repaint; copies the fix first
  refresh = 0x469,       // a chunk of data was handled; update the displays
  unknownBytes = 0x46A,  // `text`: bytes that match no supported protocol
  logFailed = 0x46B,     // `text`: the path of the log that cannot be written
};

struct UiMessage {
  UiEvent event = UiEvent::line;
  std::string_view text = {};    // the raw line, UTF-8 or noise, without its line ending
  const void* record = nullptr;  // for a binary protocol: the SirfMessage
  uint32_t said = 0;             // which values the line set, as bits defined by the parser
  double x = 0;
  double y = 0;
  // The generation of the sending source, so that messages from an earlier source are ignored after
  // a new one is opened; 0 if there is none, as in a replay.
  uint32_t generation = 0;
};

class UiThread {
 public:
  virtual ~UiThread() = default;
  // Returns when the user-interface thread has handled the message; false if the channel is closed
  // and the message was not handled.
  virtual bool send(const UiMessage& message) = 0;
  // Returns at once. Only messages without text and record can be posted.
  virtual void post(const UiMessage& message) = 0;
};

}  // namespace vgps
