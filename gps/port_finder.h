#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gps/port_probe.h"
#include "platform/serial_port.h"

namespace vgps {

// The state of the search on one port.
struct PortFinding {
  PortName port;
  uint32_t listening = 0;  // current baud rate; 0: not started
  bool opening = false;    // the system has not opened it yet
  bool done = false;       // nothing more will be tried
  bool triedAll = false;   // tried every baud rate, or got an answer
  bool answered = false;   // `answer` and `speed` are valid
  ProbeReport answer;      // the best so far
  uint32_t speed = 0;      // baud rate of that answer
};

struct PortFinderTimes {
  // At each baud rate. A receiver that stays silent longer is missed.
  uint32_t listenMs = 3000;
  // After a position sentence, to count the sentences of at least a second.
  uint32_t countMs = 1500;
  // For the whole search. Ports that have not answered by then are given up.
  uint32_t limitMs = 28000;
};

// Looks for a receiver on all ports in parallel, trying the baud rates of each port in turn, the
// most common ones first. Nine baud rates of three seconds take less than thirty seconds. A port
// that takes long to open (Bluetooth) is then abandoned: its thread closes it and ends once the
// system lets it continue.
//
// Make all calls from one thread. `changed` is called on the threads of the search, but never after
// `stop` has returned; it must not call back.
class PortFinder {
 public:
  using MakePort = std::function<std::unique_ptr<SerialPort>()>;

  // `makePort` may be called by threads that outlive this object.
  PortFinder(MakePort makePort, std::function<void()> changed, PortFinderTimes times = {})
      : makePort_(std::move(makePort)), changed_(std::move(changed)), times_(times) {}
  PortFinder(const PortFinder&) = delete;
  PortFinder& operator=(const PortFinder&) = delete;
  ~PortFinder() { stop(); }

  // Stops a running search first.
  void start(std::vector<PortName> ports);

  // Cancels the search and waits briefly until the ports are closed, but not for one that is still
  // being opened.
  void stop();

  bool running() const;
  // From 0 to 1000.
  int progress() const;
  std::vector<PortFinding> findings() const;

 private:
  struct Search;

  const MakePort makePort_;
  const std::function<void()> changed_;
  const PortFinderTimes times_;

  std::shared_ptr<Search> search_;  // shared with its threads
};

// The best finding: a receiver that has a position before one that has none, and of these the one
// with the most sentences per second. Null if there is no receiver.
const PortFinding* bestFinding(const std::vector<PortFinding>& findings);

// What is known of a position there: "fix, 9 satellites", "no fix yet", "AIS"; empty without any.
std::string positionText(const PortFinding& finding);

// What a probe at this speed has found, in words.
std::string reportText(const ProbeReport& answer, uint32_t speed);

// The text for a port: "NMEA at 9600 baud, talker GN, 5.0 sentences/s".
std::string findingText(const PortFinding& finding);

}  // namespace vgps
