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
  uint32_t listening = 0;  // baud, at present; 0: not begun
  bool opening = false;    // the system has not opened it yet
  bool done = false;       // nothing more will be tried
  bool triedAll = false;   // every speed, or one that answered
  bool answered = false;   // `answer` and `speed` say something
  ProbeAnswer answer;      // the best so far
  uint32_t speed = 0;      // baud, that it came at
};

struct PortFinderTimes {
  // At each speed. A receiver that is silent longer than this is not heard.
  uint32_t listenMs = 3000;
  // After a position sentence, until the sentences of a second or more are counted.
  uint32_t countMs = 1500;
  // All together. What has not answered by then is not waited for.
  uint32_t limitMs = 28000;
};

// Looks for a receiver on all ports side by side, on each at one speed after the other, the usual
// ones first. Nine speeds of three seconds end within thirty seconds; a port that takes long to
// open (Bluetooth) is left to itself then: its thread closes it and ends when the system lets it
// go.
//
// All calls come from one thread. `changed` is called on the threads of the search, and not any
// more once `stop` has returned; it must not call back.
class PortFinder {
 public:
  using MakePort = std::function<std::unique_ptr<SerialPort>()>;

  // `makePort` may be called by threads that outlive this.
  PortFinder(MakePort makePort, std::function<void()> changed, PortFinderTimes times = {})
      : makePort_(std::move(makePort)), changed_(std::move(changed)), times_(times) {}
  PortFinder(const PortFinder&) = delete;
  PortFinder& operator=(const PortFinder&) = delete;
  ~PortFinder() { stop(); }

  // Ends a running search first.
  void start(std::vector<PortName> ports);

  // Cancels, and waits a little for the ports to be free; not for one that is being opened.
  void stop();

  bool running() const;
  // Of 1000.
  int progress() const;
  std::vector<PortFinding> findings() const;

 private:
  struct Search;

  const MakePort makePort_;
  const std::function<void()> changed_;
  const PortFinderTimes times_;

  std::shared_ptr<Search> search_;  // with its threads
};

// The best finding: a receiver that has a position before one that has none, and of these the one
// with the most sentences per second. Null if there is no receiver.
const PortFinding* bestFinding(const std::vector<PortFinding>& findings);

// What is known of a position there: "fix, 9 satellites", "no fix yet", "AIS"; empty without any.
std::string positionText(const PortFinding& finding);

// What a probe at this speed has found, in words.
std::string answerText(const ProbeAnswer& answer, uint32_t speed);

// What the user reads about a port: "NMEA at 9600 baud, talker GN, 5.0 sentences/s".
std::string findingText(const PortFinding& finding);

}  // namespace vgps
