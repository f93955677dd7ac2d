#pragma once

#include <cstdint>
#include <string_view>

// The one door between worker threads and the user-interface thread: a window message where there
// is a window, a one-slot mailbox where there is none, a direct call in a replay.
namespace vgps {

enum class UiEvent : uint32_t {
  line = 0x466,          // a received line or receiver message; `text`, `record`
  sensor = 0x467,        // a reading of the location sensor; `x` longitude, `y` latitude, degrees
  repaint = 0x468,       // the parser asks for a repaint; copies the fix first
  refresh = 0x469,       // a chunk of data was handled; the displays follow
  unknownBytes = 0x46A,  // `text`: neither text nor binary of a receiver
  logFailed = 0x46B,     // `text`: the path of the log that cannot be written
};

struct UiMessage {
  UiEvent event = UiEvent::line;
  std::string_view text = {};    // the raw line, UTF-8 or noise, without its line end
  const void* record = nullptr;  // of a binary protocol: the SirfMessage
  uint32_t said = 0;             // which values the line vouched for, in bits of the parser's own
  double x = 0;
  double y = 0;
  // Of the source that it speaks of; 0 when of none, as in a replay. A source that was opened since
  // has nothing to do with it.
  uint32_t generation = 0;
};

class UiThread {
 public:
  virtual ~UiThread() = default;
  // Returns when the user-interface thread has handled the message; false, unhandled, when the
  // door is shut.
  virtual bool send(const UiMessage& message) = 0;
  // Returns at once. Only messages without text and record can be posted.
  virtual void post(const UiMessage& message) = 0;
};

}  // namespace vgps
