#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "gps/options.h"
#include "gps/satellite_view.h"
#include "gps/sentence_stats.h"
#include "gps/simulation.h"
#include "gps/talkers.h"
#include "platform/clock.h"
#include "platform/location_sensor.h"
#include "platform/serial_port.h"

namespace vgps {

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
  std::atomic<int32_t> opening{0};         // readers that the system blocks while opening a port
  std::atomic<bool> portRequested{false};  // find the device; protected by `mutex`
  // Locked by the reader that handles a block: after reopening, two readers may have one.
  std::mutex deliveryMutex;
  std::atomic<uint32_t> deliveringGeneration{0};  // of the reader that holds the lock; 0: none
  std::mutex mutex;
  std::condition_variable wake;
};

// The state of the receiver code besides the fix: values that the parser and the reader keep while
// the program runs, their options, and the services they use.
struct GpsState {
  GpsState(GpsHooks& gpsHooks, const Clock& gpsClock) : hooks(gpsHooks), clock(gpsClock) {}

  GpsOptions options;
  GpsHooks& hooks;
  const Clock& clock;
  std::function<std::unique_ptr<SerialPort>()> makePort;
  std::function<std::vector<PortName>()> listPorts;  // may be empty; called by readers
  LocationSensorManager* sensors = nullptr;
  std::string sensorIdentifier;  // a GUID as text

  // Written by the parsing thread; the user interface copies them while the reader waits.
  double maxSpeed = 0;     // in the speed unit chosen at the time
  double maxAltitude = 0;  // meters
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

}  // namespace vgps
