#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gps/fix.h"
#include "gps/options.h"
#include "gps/satellite_view.h"
#include "gps/sentence_stats.h"
#include "gps/simulation.h"
#include "gps/sirf.h"
#include "gps/talkers.h"
#include "platform/clock.h"
#include "platform/location_sensor.h"
#include "platform/serial_port.h"

namespace vgps {

inline constexpr size_t kReadBufferSize = 10000;
inline constexpr size_t kCarrySize = 5000;
inline constexpr int kDefaultBaudRate = 9600;

// The last recognized protocol of the stream.
enum InputProtocol : int32_t { kNmeaText = 0, kSirfBinary = 1, kSensorInput = 3 };

// The raw stream, appended to a file.
struct StreamLog {
  std::string path = "./gps.log";
  std::FILE* file = nullptr;
  bool failureTold = false;

  StreamLog() = default;
  StreamLog(const StreamLog&) = delete;
  StreamLog& operator=(const StreamLog&) = delete;
  ~StreamLog();
};

// Reading state shared by the reader threads and the user-interface thread.
struct ReaderControl {
  std::atomic<bool> readerStop{false};  // set once, at the end of the program
  std::atomic<uint32_t> generation{0};  // of the source that may be read
  std::atomic<int32_t> liveReaders{0};
  std::atomic<int32_t> opening{0};         // of these, held by the system in the opening of a port
  std::atomic<bool> portRequested{false};  // the reader shall look for its device; under `mutex`
  // Locked by the reader that handles a block: after a reopening two may have one.
  std::mutex deliveryMutex;
  std::atomic<uint32_t> deliveringGeneration{0};  // of the reader that has the lock; 0: none
  std::mutex mutex;
  std::condition_variable wake;
};

// The state of the last request for the port, and when it changed.
struct PortAttempt {
  enum class State { none, waiting, opened, failed };
  State state = State::none;
  PortError error = PortError::none;  // why it failed
  std::string newName = {};           // of the port, when the device has come back under another
  uint32_t tick = 0;
};

// The receiver state beside the fix: values that the parser and the reader keep for the whole
// program, their options, and the services they use.
struct GpsState {
  GpsState(GpsHooks& gpsHooks, const Clock& gpsClock) : hooks(gpsHooks), clock(gpsClock) {}

  GpsOptions options;
  GpsHooks& hooks;
  const Clock& clock;
  std::function<std::unique_ptr<SerialPort>()> makePort;
  std::function<std::vector<PortName>()> listPorts;  // may be missing; called by readers
  LocationSensorManager* sensors = nullptr;
  std::string sensorIdentifier;  // a GUID as text

  // Written by the parsing thread; the user interface copies them while the reader waits.
  double maxSpeed = 0;       // in the speed unit chosen at the time
  double maxAltitude = 0;    // metres
  double exactAltitude = 0;  // metres, of the fix: with the decimals that its record lacks
  int32_t epochSentenceKind = 0;
  int32_t leadingSentenceKind = 0;
  SatelliteView view;
  SentenceStats stats;

  std::atomic<uint32_t> lineSaid{0};  // of the last line: Said bits
  std::atomic<bool> satellitesInUseKnown{false};
  std::atomic<int32_t> inputProtocol{kNmeaText};

  TalkerTranslation talkers;
  StreamLog log;
  Simulation simulation;
  ReaderControl readers;
};

// The current fix with its connection. Created once, lives as long as the program.
//
// `open`, `close`, `setPort`, `requestPort` and `releasePort` belong to the user-interface thread;
// `read`, `onReceive` and `processLines` to the reader thread, or to the one thread of a replay.
struct GpsFix : FixRecord {
  explicit GpsFix(GpsState& gpsState);

  std::unique_ptr<SatelliteTable> satellites;

  std::string portPath;
  uint32_t baudRate = kDefaultBaudRate;
  std::shared_ptr<LocationSensor> sensor;
  std::atomic<bool> simulate{false};  // the reader asks it too
  bool useGpsApi = false;
  bool useSensorApi = false;
  PortError portError = PortError::none;  // why the last `open` failed
  std::atomic<bool> running{false};
  std::atomic<bool> portFailed{false};      // the device has reported an error to the reader
  std::atomic<uint64_t> lastByteMicros{0};  // when the end of the newest line was read

  // Parses one line without its line end. `out` is always filled; the fix changes only when
  // `apply` is set, the greatest speed and altitude in any case. False when the text does not
  // begin with "$".
  bool parseSentence(std::string_view text, NmeaSentence& out, bool apply);

  void setPort(std::string_view portName, uint32_t speed);

  // Opens the simulation, the location sensor or the serial port and starts its reader thread.
  // `probeOnly` opens the port, reads once and closes it: true when the bytes begin with "$GP".
  bool open(bool simulation, bool gpsApi, bool sensorApi, bool probeOnly);

  // Returns false if neither a sensor nor a serial port was open.
  bool close(bool silent);

  // For a serial source whose device has gone, while `running` stays true and the same reader goes
  // on: the reader lets go of the port, looks where the device is now and opens it there, however
  // long that takes. Until then `read` reports nothing. No sound.
  void requestPort();
  PortAttempt portAttempt() const;
  // Closes the port until it is requested again, so that other programs can open it.
  void releasePort();

  // One read from the current source by the reader of `generation`.
  PortRead read(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs);

  // By the reader of `generation`: notes which device is behind its port, to find it again.
  void rememberDevice(uint32_t generation);
  // Called by the reader of `generation`: opens the port that `requestPort` asked for. Returns
  // false if nothing was requested.
  bool reopenPort(uint32_t generation);

  // The sensor that the reader of `generation` reads; null for other sources.
  std::shared_ptr<LocationSensor> sensorOf(uint32_t generation) const;

  // Whether the source of `generation` is the simulation.
  bool simulating(uint32_t generation) const;

  // Bytes into lines or binary messages; what is not whole yet is carried to the next call.
  void onReceive(std::string_view bytes);

  // Whole lines, or one whole binary message.
  void processLines(std::string_view bytes);

  // Sets `readerStop`, wakes every reader and waits up to `timeoutMs` for all to end; for one that
  // is blocked in opening a port only briefly. Returns false if one is still running: then nothing
  // that it uses may be destroyed.
  bool stopReaders(int timeoutMs);

  // Whether a received line is being carried, and of what kind its first byte is (0: none).
  char carriedStart() const { return carryLength > 0 ? carry[0] : '\0'; }

  GpsState& state;
  std::array<char, kCarrySize> carry{};
  int32_t carryLength = 0;

 private:
  void carryOver(std::string_view rest);
  void stepWhileShiftHeld();
  void processLine(std::string_view line);
  void processMessage(std::string_view bytes);
  void startReader();
  bool openSensor();
  bool openPort();
  bool probePort();

  // What the reader of a generation reads from, so that it never looks at the fields that the
  // user interface is changing.
  struct Source {
    uint32_t generation = 0;
    bool simulation = false;
    std::shared_ptr<SerialPort> port;  // not null: open, or opened and refused to be set up
    std::shared_ptr<LocationSensor> sensor;
    uint32_t openRequest = 0;  // number of the last one; an attempt for an older one is in vain
  };
  // What is behind the port, to find it again.
  struct Device {
    std::string path;
    uint32_t baudRate = 0;
    std::string identity;  // empty when the system knows none
    std::string make;
    std::vector<std::string> others;  // of the same make, there from the beginning
  };
  Source sourceOf(uint32_t generation) const;
  std::shared_ptr<SerialPort> endSource();
  static const PortName* portOf(const Device& device, const std::vector<PortName>& present);
  bool findDevice(Device& device, std::string& newName) const;
  PortRead readSimulation(uint32_t generation, std::span<char> buffer, size_t& got, int timeoutMs);

  mutable std::mutex sourceMutex_;
  Source source_;
  Device device_;
  PortAttempt attempt_;
  std::string joined_;
  NmeaSentence sentence_;
};

}  // namespace vgps
