#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

#include "cli/commands.h"
#include "cli/state_json.h"
#include "gps/port_finder.h"
#include "platform/port_candidates.h"

namespace vgps {
namespace {

// Receivers send at least once a second.
constexpr uint32_t kListenMs = 3000;

std::vector<PortName> portsToProbe(const PortsOptions& options) {
  if (options.ports.empty()) return portCandidates();
  std::vector<PortName> ports;
  for (const std::string& name : options.ports) ports.push_back({name, {}});
  return ports;
}

// All at once: one after the other thirty silent ports would take a minute and a half.
std::vector<PortFinding> probeAll(const std::vector<PortName>& ports, uint32_t speed) {
  std::vector<PortFinding> answers(ports.size());
  std::vector<std::thread> threads;
  for (size_t i = 0; i < ports.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::unique_ptr<SerialPort> port = makeSerialPort();
      answers[i].port = ports[i];
      answers[i].answer = probePort(*port, devicePath(ports[i].name), speed, kListenMs);
      answers[i].speed = speed;
      answers[i].answered = answers[i].done = answers[i].triedAll = true;
    });
  }
  for (std::thread& thread : threads) thread.join();
  return answers;
}

// As the window's search does.
std::vector<PortFinding> searchAll(const std::vector<PortName>& ports) {
  std::mutex mutex;
  std::condition_variable changed;
  PortFinder finder(makeSerialPort, [&] {
    const std::lock_guard lock(mutex);
    changed.notify_all();
  });
  finder.start(ports);
  std::unique_lock lock(mutex);
  constexpr std::chrono::milliseconds kLook(100);
  while (finder.running()) changed.wait_for(lock, kLook);
  return finder.findings();
}

void printJson(const std::vector<PortFinding>& findings) {
  Json list = Json::array();
  for (const PortFinding& finding : findings) {
    const ProbeReport& answer = finding.answer;
    list.push_back({{"port", finding.port.name},
                    {"description", finding.port.description},
                    {"speed", finding.speed},
                    {"result", probeResultName(answer.result)},
                    {"reason", findingText(finding)},
                    {"talker", answer.talker},
                    {"fix", answer.hasFix},
                    {"satellites", answer.satellites},
                    {"ais", answer.ais},
                    {"sentencesPerSecond", answer.sentencesPerSecond}});
  }
  std::printf("%s\n", jsonText(list, 2).c_str());
}

void printWords(const std::vector<PortFinding>& findings) {
  if (findings.empty()) std::puts("No serial ports found.");
  size_t width = 0;
  for (const PortFinding& finding : findings) width = std::max(width, finding.port.name.size());
  for (const PortFinding& finding : findings) {
    const std::string& description = finding.port.description;
    const std::string position = positionText(finding);
    std::printf("%-*s  %-13s  %s%s%s\n", static_cast<int>(width), finding.port.name.c_str(),
                probeResultName(finding.answer.result), findingText(finding).c_str(),
                position.empty() ? "" : (", " + position).c_str(),
                description.empty() ? "" : ("  [" + description + "]").c_str());
  }
}

}  // namespace

int runPorts(const PortsOptions& options) {
  const std::vector<PortName> ports = portsToProbe(options);
  const std::vector<PortFinding> findings =
      options.search ? searchAll(ports) : probeAll(ports, options.speed);
  if (options.json) {
    printJson(findings);
  } else {
    printWords(findings);
  }
  const int written = finishOutput();
  const bool found = std::any_of(findings.begin(), findings.end(), [](const PortFinding& finding) {
    return finding.answer.result == ProbeResult::found;
  });
  return found ? written : 1;
}

}  // namespace vgps
