#include <algorithm>
#include <memory>

#include "fuzz/quiet_hooks.h"
#include "gps/gps_fix.h"
#include "gps/reader.h"
#include "gps/sirf.h"

// Any bytes in blocks of any length on the road from the read to the lines. The input is text or
// binary at its front and the lengths of its blocks at its back, one byte each, read backwards.
namespace {

using namespace vgps;

// Looks at every byte that it is shown, so that one of them lying outside is noticed.
class LookingHooks : public GpsHooks {
 public:
  void lineReceived(const ReceivedLine& line) override {
    ++lines;
    require(!line.text.empty());
    look(line.text);
    if (line.message == nullptr) {
      require(line.text.find('\r') == std::string_view::npos);
      return;
    }
    const auto& message = *static_cast<const SirfMessage*>(line.message);
    require(line.text.starts_with(kSirfStart) && sirfFrameLength(line.text) == line.text.size());
    require(message.start == 0xA0A2 && message.payload.size() == message.length);
    for (const uint8_t byte : message.payload) sum = sum + byte;
  }
  void unknownBytes(std::string_view bytes) override { look(bytes); }

  size_t lines = 0;

 private:
  void look(std::string_view bytes) {
    for (const char c : bytes) sum = sum + static_cast<uint8_t>(c);
  }
  volatile uint32_t sum = 0;
};

// The number of lines when all are sentences short enough to be carried, otherwise -1.
int wholeSentences(std::string_view bytes) {
  int lines = 0;
  while (!bytes.empty()) {
    const size_t end = bytes.find_first_of("\r\n");
    if (end == std::string_view::npos || bytes.substr(end, 2) != "\r\n") return -1;
    if (bytes[0] != '$' || end > 4000) return -1;
    bytes.remove_prefix(end + 2);
    ++lines;
  }
  return lines;
}

// The next length, from the back; long blocks follow when all are used up.
size_t takeLength(std::string_view& lengths) {
  if (lengths.empty()) return 4096;
  const auto length = static_cast<uint8_t>(lengths.back());
  lengths.remove_suffix(1);
  return size_t{length} + 1;
}

void feed(GpsFix& fix, std::string_view bytes, std::string_view lengths) {
  while (!bytes.empty()) {
    const size_t length = std::min(takeLength(lengths), bytes.size());
    const auto block = std::make_unique<char[]>(length);
    bytes.copy(block.get(), length);
    bytes.remove_prefix(length);
    splitAtLineStarts({block.get(), length}, fix.framing.carriedStart(),
                      fix.state.inputProtocol == kSirfBinary, [&](std::string_view chunk) {
                        require(!chunk.empty());
                        fix.receiveLine(chunk);
                        require(fix.framing.carried() <= kCarrySize);
                      });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LookingHooks hooks;
  const SteppingClock clock(static_cast<uint32_t>(size % 7 * 300));
  GpsState state(hooks, clock);
  state.options.talkers = static_cast<int32_t>(size % 3);
  state.options.epochSentenceSetting = static_cast<int32_t>(size % 4);
  GpsFix fix(state);
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  // An eighth of the input, 64 bytes at most, is lengths.
  const size_t lengths = std::min<size_t>(size / 8, 64);
  const std::string_view bytes = input.substr(0, size - lengths);
  feed(fix, bytes, input.substr(size - lengths));
  // Wherever the blocks end, no whole sentence is lost.
  const int sentences = wholeSentences(bytes);
  require(sentences < 0 || hooks.lines == static_cast<size_t>(sentences));
  return 0;
}
