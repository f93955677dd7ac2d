#include "gps/reader.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "gps/gps_fix.h"
#include "gps/sirf.h"
#include "platform/threads.h"

namespace vgps {
namespace {

using Milliseconds = std::chrono::milliseconds;

// A burst has ended once the port is silent for this long...
constexpr int kSilenceMs = 30;
// ...and data from a receiver that never pauses is handled at the latest this long after the first
// byte...
constexpr int kLongestBlockMs = 250;
// ...or this soon, complete lines only, if the data rate is so high that even the longest sentences
// follow each other within the 100 ms that start a burst.
constexpr int kDenseBlockMs = 50;
constexpr int kDenseBytesPerMs = 2;
// After a read error or while the device is missing: neither a busy loop nor a long wait.
constexpr int kRetryMs = 100;

constexpr size_t kReadBufferSize = 10000;

constexpr char kBinaryStart = kSirfStart[0];

bool isCurrent(const GpsFix& fix, uint32_t generation) {
  return fix.running && fix.state.readers.generation == generation;
}

// A reader of a closed or replaced source has nothing to do until the program ends.
void waitForStop(ReaderControl& readers) {
  std::unique_lock lock(readers.mutex);
  readers.wake.wait(lock, [&] { return readers.readerStop.load(); });
}

void pause(ReaderControl& readers, int ms) {
  std::unique_lock lock(readers.mutex);
  readers.wake.wait_for(lock, Milliseconds(ms),
                        [&] { return readers.readerStop || readers.portRequested; });
}

// How far a read filled the buffer, and when.
struct Arrival {
  size_t end;
  uint64_t micros;
};

size_t lengthOfLine(std::string_view block) {
  const size_t lineFeed = block.find('\n');
  return lineFeed == std::string_view::npos ? block.size() : lineFeed + 1;
}

// Returns a line, a complete message, or the rest of the block after the start of one. Consecutive
// line ends stay together, because each chunk is sent to the user interface.
size_t lengthOfChunk(std::string_view block) {
  if (block.starts_with(kSirfStart)) {
    const size_t length = sirfFrameLength(block);
    const bool whole = length > 0 && block.substr(0, length).size() == length;
    return whole && block.substr(0, length).ends_with(kSirfEnd) ? length : block.size();
  }
  if (block[0] != '\r' && block[0] != '\n') return lengthOfLine(block);
  const size_t text = std::min(block.find_first_not_of("\r\n"), block.size());
  const size_t lineFeed = block.substr(0, text).rfind('\n');
  return lineFeed == std::string_view::npos ? lengthOfLine(block) : lineFeed + 1;
}

// Whether the block ends with a complete line or with the start of a sentence, which framing keeps.
// The start of any other line would be taken for unknown bytes.
bool endsWell(std::string_view block) {
  const size_t lineFeed = block.rfind('\n');
  if (lineFeed == std::string_view::npos) return false;
  return lineFeed + 1 == block.size() || block[lineFeed + 1] == '$';
}

bool isDense(std::string_view block, int64_t ms) {
  return ms >= kDenseBlockMs && block.size() >= static_cast<size_t>(ms) * kDenseBytesPerMs;
}

// Reads until the burst is over, the time limit is reached, or the buffer is full.
size_t readBlock(GpsFix& fix, uint32_t generation, std::span<char> buffer,
                 std::vector<Arrival>& arrivals) {
  arrivals.clear();
  size_t length = 0;
  int wait = -1;
  std::chrono::steady_clock::time_point start;
  while (length < buffer.size()) {
    size_t got = 0;
    if (fix.read(generation, buffer.subspan(length), got, wait) != PortRead::data) break;
    if (length == 0) start = std::chrono::steady_clock::now();
    length += got;
    arrivals.push_back({length, fix.state.clock.microseconds()});
    const int64_t passed =
        std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now() - start).count();
    const std::string_view block(buffer.data(), length);
    if (passed >= kLongestBlockMs || (isDense(block, passed) && endsWell(block))) break;
    wait = static_cast<int>(std::min<int64_t>(kLongestBlockMs - passed, kSilenceMs));
  }
  return length;
}

// Discards whatever the previous source left incomplete.
void beginSource(GpsFix& fix) {
  fix.framing.dropCarried();
  fix.state.view.clear();
  fix.state.talkers.reset();
  fix.state.leadingSentenceKind = kNoSentence;
  fix.unknown = kAllUnknown;
  fix.state.stats.leftOutKinds = 0;
  fix.state.stats.strayStarts = 0;
}

// Held while a reader delivers what it has read. Records the generation, because the reader may
// lose its source meanwhile.
class DeliveryLock {
 public:
  DeliveryLock(ReaderControl& readers, uint32_t generation)
      : lock_(readers.deliveryMutex), readers_(readers) {
    readers_.deliveringGeneration = generation;
  }
  DeliveryLock(const DeliveryLock&) = delete;
  DeliveryLock& operator=(const DeliveryLock&) = delete;
  ~DeliveryLock() { readers_.deliveringGeneration = 0; }

 private:
  const std::lock_guard<std::mutex> lock_;
  ReaderControl& readers_;
};

// What a reader keeps between blocks.
struct Reading {
  GpsFix& fix;
  const uint32_t generation;
  std::vector<char> buffer = std::vector<char>(kReadBufferSize);
  std::vector<Arrival> arrivals = {};
  bool ownSource = false;  // the state in `fix` was produced by this source
  bool reopened = false;   // since the last block
  size_t held = 0;         // bytes at the start of the buffer kept for the next block
};

// Handles the first bytes of the buffer. `heldBefore` of them were kept from the previous block;
// the positions in `arrivals` start after those.
void handleBlock(Reading& reading, std::string_view block, size_t heldBefore) {
  GpsFix& fix = reading.fix;
  if (!reading.ownSource) beginSource(fix);
  // After the device was plugged in again, half of an old line must not be joined with its first
  // new line.
  if (reading.reopened) {
    fix.framing.dropCarried();
    fix.unknown = kAllUnknown;
  }
  reading.ownSource = true;
  reading.reopened = false;
  // Half a sentence before a binary message would spoil both.
  if (fix.framing.carriedStart() == '$' && block.starts_with(kSirfStart)) fix.framing.dropCarried();
  const bool binary = fix.state.inputProtocol == kSirfBinary;
  auto arrival = reading.arrivals.begin();
  splitAtLineStarts(block, fix.framing.carriedStart(), binary, [&](std::string_view chunk) {
    if (!isCurrent(fix, reading.generation)) return;
    const auto end = static_cast<size_t>(chunk.data() + chunk.size() - block.data());
    while (heldBefore + arrival->end < end) ++arrival;
    fix.lastByteMicros = arrival->micros;
    fix.receiveLine(chunk);
  });
}

void readAndHandle(Reading& reading) {
  GpsFix& fix = reading.fix;
  ReaderControl& readers = fix.state.readers;
  const size_t heldBefore = reading.held;
  size_t length = readBlock(fix, reading.generation, std::span(reading.buffer).subspan(heldBefore),
                            reading.arrivals);
  if (length == 0) {
    const bool paces = fix.connection.simulating(reading.generation);
    if (isCurrent(fix, reading.generation) && !paces) pause(readers, kRetryMs);
    return;
  }
  length += heldBefore;
  // Half of a binary start sequence would not be recognized.
  reading.held = reading.buffer[length - 1] == kBinaryStart ? 1 : 0;
  length -= reading.held;
  // A reader of the previous source may still be busy with its last block.
  const DeliveryLock delivery(readers, reading.generation);
  if (!isCurrent(fix, reading.generation)) return;
  handleBlock(reading, {reading.buffer.data(), length}, heldBefore);
  if (reading.held > 0) reading.buffer[0] = kBinaryStart;
}

void readerLoop(GpsFix& fix, uint32_t generation) {
  ReaderControl& readers = fix.state.readers;
  Reading reading{fix, generation};
  fix.connection.rememberDevice(generation);
  while (!readers.readerStop) {
    if (!isCurrent(fix, generation)) {
      waitForStop(readers);
      break;
    }
    if (fix.connection.reopenPort(generation)) {
      reading.reopened = true;
      reading.held = 0;
    } else {
      readAndHandle(reading);
    }
  }
}

// Releases the sensor at the end: an unused sensor should not draw power.
void sensorLoop(GpsFix& fix, uint32_t generation) {
  ReaderControl& readers = fix.state.readers;
  constexpr int kWaitMs = 500;
  const std::shared_ptr<LocationSensor> sensor = fix.connection.sensorOf(generation);
  while (sensor != nullptr && !readers.readerStop && isCurrent(fix, generation)) {
    double longitude = 0;
    double latitude = 0;
    if (sensor->read(longitude, latitude, kWaitMs)) {
      const DeliveryLock delivery(readers, generation);
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
    // Notify while holding the lock: the thread that waits for the end may destroy everything right
    // afterward.
    const std::lock_guard lock(readers.mutex);
    --readers.liveReaders;
    readers.wake.notify_all();
  }).detach();
}

}  // namespace

void splitAtLineStarts(std::string_view block, char carriedStart, bool binary,
                       const std::function<void(std::string_view)>& take) {
  if (carriedStart == kBinaryStart) {
    take(block);
    return;
  }
  const size_t start = binary ? block.find(kSirfStart) : std::string_view::npos;
  if (start != std::string_view::npos && start > 0 && carriedStart == '\0' && block[0] != '$') {
    take(block.substr(0, start));
    block.remove_prefix(start);
  }
  for (bool carried = carriedStart != '\0'; !block.empty(); carried = false) {
    const size_t length = carried ? lengthOfLine(block) : lengthOfChunk(block);
    take(block.substr(0, length));
    block.remove_prefix(length);
  }
}

void startReaderThread(GpsFix& fix) {
  const uint32_t generation = fix.state.readers.generation;
  if (fix.connection.sensorOf(generation) != nullptr) {
    startDetached(fix, [&fix, generation] { sensorLoop(fix, generation); });
  } else {
    startDetached(fix, [&fix, generation] { readerLoop(fix, generation); });
  }
}

}  // namespace vgps
