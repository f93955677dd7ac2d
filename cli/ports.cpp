#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

#include "cli/commands.h"
#include "cli/state_json.h"
#include "gps/port_finder.h"
#include "platform/port_candidates.h"

namespace vgps {
namespace {

// A receiver speaks once a second at the least.
constexpr uint32_t kListenMs = 3000;

std::vector<PortName> portsToProbe(const PortsOptions& options) {
  if (options.ports.empty()) return portCandidates();
  std::vector<PortName> ports;
  for (const std::string& name : options.ports) ports.push_back({name, {}});
  return ports;
}

// All at once: one after the other thirty silent ports would take a minute and a half.
std::vector<ProbeAnswer> probeAll(const std::vector<PortName>& ports, uint32_t speed) {
  std::vector<ProbeAnswer> answers(ports.size());
  std::vector<std::thread> threads;
  for (size_t i = 0; i < ports.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::unique_ptr<SerialPort> port = makeSerialPort();
      answers[i] = probePort(*port, devicePath(ports[i].name), speed, kListenMs);
    });
  }
  for (std::thread& thread : threads) thread.join();
  return answers;
}

void printJson(const std::vector<PortName>& ports, const std::vector<ProbeAnswer>& answers,
               uint32_t speed) {
  Json list = Json::array();
  for (size_t i = 0; i < ports.size(); ++i) {
    list.push_back({{"port", ports[i].name},
                    {"description", ports[i].description},
                    {"speed", speed},
                    {"result", probeResultName(answers[i].result)},
                    {"reason", answerText(answers[i], speed)},
                    {"talker", answers[i].talker},
                    {"sentencesPerSecond", answers[i].sentencesPerSecond}});
  }
  std::printf("%s\n", jsonText(list, 2).c_str());
}

void printWords(const std::vector<PortName>& ports, const std::vector<ProbeAnswer>& answers,
                uint32_t speed) {
  if (ports.empty()) std::puts("No serial ports found.");
  size_t width = 0;
  for (const PortName& port : ports) width = std::max(width, port.name.size());
  for (size_t i = 0; i < ports.size(); ++i) {
    const std::string about =
        ports[i].description.empty() ? "" : "  [" + ports[i].description + "]";
    std::printf("%-*s  %-13s  %s%s\n", static_cast<int>(width), ports[i].name.c_str(),
                probeResultName(answers[i].result), answerText(answers[i], speed).c_str(),
                about.c_str());
  }
}

}  // namespace

int runPorts(const PortsOptions& options) {
  const std::vector<PortName> ports = portsToProbe(options);
  const std::vector<ProbeAnswer> answers = probeAll(ports, options.speed);
  if (options.json) {
    printJson(ports, answers, options.speed);
  } else {
    printWords(ports, answers, options.speed);
  }
  const int written = finishOutput();
  const bool found = std::any_of(answers.begin(), answers.end(), [](const ProbeAnswer& answer) {
    return answer.result == ProbeResult::found;
  });
  return found ? written : 1;
}

}  // namespace vgps
