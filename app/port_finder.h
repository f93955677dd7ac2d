#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "gps/port_probe.h"
#include "platform/serial_port.h"

namespace vgps {

// What the search knows of one port.
struct PortFinding {
  PortName port;
  uint32_t listening = 0;  // baud, at present; 0: not begun
  bool done = false;       // nothing more will be tried
  bool answered = false;   // `answer` and `speed` say something
  ProbeAnswer answer;      // the best so far
  uint32_t speed = 0;      // baud, that it came at
};

struct PortFinderTimes {
  // At each speed. A receiver that is silent longer than this is not heard.
  uint32_t listenMs = 3000;
  // After a position sentence, until the sentences of a second or more are counted.
  uint32_t countMs = 1500;
};

// Looks for a receiver on all ports side by side, on each at one speed after the other, the usual
// ones first. Nine speeds of three seconds end within thirty seconds.
//
// All calls come from one thread. `changed` is called on the threads of the search.
class PortFinder {
 public:
  using MakePort = std::function<std::unique_ptr<SerialPort>()>;

  PortFinder(MakePort makePort, std::function<void()> changed, PortFinderTimes times = {})
      : makePort_(std::move(makePort)), changed_(std::move(changed)), times_(times) {}
  PortFinder(const PortFinder&) = delete;
  PortFinder& operator=(const PortFinder&) = delete;
  ~PortFinder() { stop(); }

  // Ends the search before, if one is going on.
  void start(std::vector<PortName> ports);

  // The search ends as soon as the ports give way; does not wait for it.
  void cancel() { cancelled_ = true; }
  // Cancels and waits.
  void stop();

  bool running() const { return running_ > 0; }
  bool cancelled() const { return cancelled_; }
  // Of 1000.
  int progress() const;
  std::vector<PortFinding> findings() const;

 private:
  void search(size_t index);
  bool tryAt(size_t index, uint32_t speed);

  const MakePort makePort_;
  const std::function<void()> changed_;
  const PortFinderTimes times_;

  std::vector<std::thread> threads_;
  std::atomic<bool> cancelled_{false};
  std::atomic<int> running_{0};
  std::atomic<int> stepsDone_{0};
  mutable std::mutex mutex_;  // of the findings
  std::vector<PortFinding> findings_;
};

// The finding to be used: a receiver's with the most sentences a second. Null when none is one.
const PortFinding* bestFinding(const std::vector<PortFinding>& findings);

// What a person reads about a port: "NMEA at 9600 baud, talker GN, 5.0 sentences a second".
std::string findingText(const PortFinding& finding);

}  // namespace vgps
