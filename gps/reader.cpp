#include "gps/reader.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "gps/gps_fix.h"
#include "platform/threads.h"

namespace vgps {
namespace {

using Milliseconds = std::chrono::milliseconds;

// A burst has ended when the line is silent for so long...
constexpr int kSilenceMs = 30;
// ...and a receiver that never pauses is shown this long after the first byte at the latest.
constexpr int kLongestBlockMs = 250;
// After a read error or while the device is away: not a busy loop, and no long wait either.
constexpr int kRetryMs = 100;

constexpr char kBinaryStart = '\xA0';
constexpr std::string_view kBinaryMessageStart = "\xA0\xA2";

bool isCurrent(const GpsFix& fix, uint32_t generation) {
  return fix.running && fix.state.readers.generation == generation;
}

// Old readers and those of a closed source have nothing to do until the program ends.
void waitForStop(ReaderControl& readers) {
  std::unique_lock lock(readers.mutex);
  readers.wake.wait(lock, [&] { return readers.readerStop.load(); });
}

void pause(ReaderControl& readers, int ms) {
  std::unique_lock lock(readers.mutex);
  readers.wake.wait_for(lock, Milliseconds(ms), [&] { return readers.readerStop.load(); });
}

// Reads until the burst is over, the block has lasted long enough or the buffer is full.
size_t readBlock(GpsFix& fix, uint32_t generation, std::span<char> buffer) {
  size_t length = 0;
  if (fix.read(generation, buffer, length, -1) != PortRead::data) return 0;
  const auto deadline = std::chrono::steady_clock::now() + Milliseconds(kLongestBlockMs);
  while (length < buffer.size()) {
    const auto left =
        std::chrono::duration_cast<Milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) break;
    const int wait = static_cast<int>(std::min<int64_t>(left.count(), kSilenceMs));
    size_t got = 0;
    if (fix.read(generation, buffer.subspan(length), got, wait) != PortRead::data) break;
    length += got;
  }
  return length;
}

// Nothing that the source before left half done belongs to this one.
void beginSource(GpsFix& fix) {
  fix.carryLength = 0;
  fix.state.view.clear();
  fix.state.talkers.reset();
}

// While a reader hands over what it has read. It may lose its source meanwhile, so it is known by
// whose data it speaks.
class Turn {
 public:
  Turn(ReaderControl& readers, uint32_t generation) : lock_(readers.turn), readers_(readers) {
    readers_.speaking = generation;
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn() { readers_.speaking = 0; }

 private:
  const std::lock_guard<std::mutex> lock_;
  ReaderControl& readers_;
};

void readerLoop(GpsFix& fix, uint32_t generation) {
  ReaderControl& readers = fix.state.readers;
  std::vector<char> buffer(kReadBufferSize);
  bool ownSource = false;  // what is carried, seen and heard came from this source
  uint32_t replacements = fix.portReplacements;
  size_t held = 0;  // bytes at the front of the buffer that wait for the next block
  while (!readers.readerStop) {
    if (!isCurrent(fix, generation)) {
      waitForStop(readers);
      break;
    }
    size_t length = readBlock(fix, generation, std::span(buffer).subspan(held));
    if (length == 0) {
      if (isCurrent(fix, generation) && !fix.simulating(generation)) pause(readers, kRetryMs);
      continue;
    }
    length += held;
    // Half a start sequence of a binary message would not be recognised.
    held = buffer[length - 1] == kBinaryStart ? 1 : 0;
    length -= held;
    // A reader of the source before may still be busy with its last block.
    const Turn turn(readers, generation);
    if (!isCurrent(fix, generation)) continue;
    if (!ownSource) beginSource(fix);
    // The device was plugged in again: half a line of before is no front of its first one.
    if (replacements != fix.portReplacements) fix.carryLength = 0;
    replacements = fix.portReplacements;
    ownSource = true;
    const std::string_view block(buffer.data(), length);
    // Half a sentence in front of a message is no use to either.
    if (fix.carriedStart() == '$' && block.starts_with(kBinaryMessageStart)) fix.carryLength = 0;
    const bool binary = fix.state.inputProtocol == kSirfBinary;
    cutAtLineStarts(block, fix.carriedStart(), binary, [&](std::string_view chunk) {
      if (isCurrent(fix, generation)) fix.onReceive(chunk);
    });
    if (held > 0) buffer[0] = kBinaryStart;
  }
}

void sensorLoop(GpsFix& fix, uint32_t generation, const std::shared_ptr<LocationSensor>& sensor) {
  ReaderControl& readers = fix.state.readers;
  constexpr int kWaitMs = 500;
  while (!readers.readerStop && isCurrent(fix, generation)) {
    double longitude = 0;
    double latitude = 0;
    if (sensor->read(longitude, latitude, kWaitMs)) {
      const Turn turn(readers, generation);
      fix.state.hooks.sensorReading(longitude, latitude);
    }
  }
}

template <typename Loop>
void startDetached(GpsFix& fix, Loop loop) {
  ++fix.state.readers.liveReaders;
  std::thread([&fix, loop] {
    lowerThreadPriority();
    loop();
    ReaderControl& readers = fix.state.readers;
    // Notified under the lock: the waiting end of the program may destroy all this right after.
    const std::lock_guard lock(readers.mutex);
    --readers.liveReaders;
    readers.wake.notify_all();
  }).detach();
}

}  // namespace

void cutAtLineStarts(std::string_view block, char carriedStart, bool binary,
                     const std::function<void(std::string_view)>& take) {
  if (carriedStart == kBinaryStart) {
    take(block);
    return;
  }
  const size_t start = binary ? block.find(kBinaryMessageStart) : std::string_view::npos;
  if (start != std::string_view::npos && start > 0 && carriedStart == '\0' && block[0] != '$') {
    take(block.substr(0, start));
    block.remove_prefix(start);
  }
  while (!block.empty()) {
    const bool message = block.starts_with(kBinaryMessageStart);
    const size_t lineFeed = message ? std::string_view::npos : block.find('\n');
    const size_t length = lineFeed == std::string_view::npos ? block.size() : lineFeed + 1;
    take(block.substr(0, length));
    block.remove_prefix(length);
  }
}

void startReaderThread(GpsFix& fix) {
  const uint32_t generation = fix.state.readers.generation;
  if (const std::shared_ptr<LocationSensor> sensor = fix.sensorOf(generation)) {
    startDetached(fix, [&fix, generation, sensor] { sensorLoop(fix, generation, sensor); });
  } else {
    startDetached(fix, [&fix, generation] { readerLoop(fix, generation); });
  }
}

}  // namespace vgps
