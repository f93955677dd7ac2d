#include "app/port_finder.h"

#include <algorithm>
#include <array>

#include "base/number.h"
#include "base/texts.h"

namespace vgps {
namespace {

// In baud. Most receivers leave the factory with the first ones.
constexpr std::array<uint32_t, 9> kSpeeds = {9600,  115200, 4800,   38400, 57600,
                                             19200, 230400, 460800, 921600};

// Bytes at a wrong speed look wrong soon.
constexpr size_t kEnoughNoise = 120;

enum TextNumber : uint32_t {
  kFound = 830,
  kNoPosition,
  kNotThere,
  kBusy,
  kNoPermission,
  kCannotOpen,
  kNoData,
  kNotNmea,
  kSirf,
  kWrongSpeed,
  kListening,
  kWaiting,
  kNotTried,
};

struct ResultRow {
  ProbeResult result;
  int rank;         // the greater says more about a port
  bool conclusive;  // no other speed can tell anything better
  TextNumber text;
};

constexpr ResultRow kResults[] = {
    {ProbeResult::found, 9, true, kFound},
    {ProbeResult::sirfBinary, 8, true, kSirf},
    {ProbeResult::noPosition, 7, true, kNoPosition},
    {ProbeResult::busy, 6, true, kBusy},
    {ProbeResult::noPermission, 6, true, kNoPermission},
    {ProbeResult::notThere, 6, true, kNotThere},
    // Not every line takes every speed.
    {ProbeResult::cannotOpen, 0, false, kCannotOpen},
    {ProbeResult::notNmea, 3, false, kNotNmea},
    {ProbeResult::wrongSpeed, 2, false, kWrongSpeed},
    {ProbeResult::noData, 1, false, kNoData},
};

const ResultRow& rowOf(ProbeResult result) {
  return *std::find_if(std::begin(kResults), std::end(kResults),
                       [result](const ResultRow& row) { return row.result == result; });
}

// "5", "0.4"
std::string rateText(double perSecond) {
  std::string text = fixedText(perSecond, 1);
  if (text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
}

}  // namespace

void PortFinder::start(std::vector<PortName> ports) {
  stop();
  cancelled_ = false;
  stepsDone_ = 0;
  {
    const std::lock_guard lock(mutex_);
    findings_.clear();
    for (PortName& port : ports) findings_.emplace_back().port = std::move(port);
  }
  const size_t count = ports.size();
  running_ = static_cast<int>(count);
  for (size_t i = 0; i < count; ++i) threads_.emplace_back([this, i] { search(i); });
}

void PortFinder::stop() {
  cancel();
  for (std::thread& thread : threads_) thread.join();
  threads_.clear();
}

int PortFinder::progress() const {
  const size_t steps = threads_.size() * kSpeeds.size();
  return steps == 0 || !running() ? 1000 : static_cast<int>(stepsDone_ * 1000UL / steps);
}

std::vector<PortFinding> PortFinder::findings() const {
  const std::lock_guard lock(mutex_);
  return findings_;
}

void PortFinder::search(size_t index) {
  size_t tried = 0;
  while (tried < kSpeeds.size() && !cancelled_ && !tryAt(index, kSpeeds[tried])) ++tried;
  stepsDone_ += static_cast<int>(kSpeeds.size() - tried);
  {
    const std::lock_guard lock(mutex_);
    findings_[index].done = true;
  }
  --running_;
  changed_();
}

// True when nothing better can come.
bool PortFinder::tryAt(size_t index, uint32_t speed) {
  std::string path;
  {
    const std::lock_guard lock(mutex_);
    findings_[index].listening = speed;
    path = devicePath(findings_[index].port.name);
  }
  changed_();

  uint32_t positionMs = 0;
  const auto enough = [&](std::string_view bytes, uint32_t ms) {
    if (cancelled_) return true;
    const ProbeResult result = judgeBytes(bytes, ms).result;
    if (result == ProbeResult::found && positionMs == 0) positionMs = std::max(ms, 1U);
    if (positionMs != 0) return ms >= positionMs + times_.countMs;
    return result == ProbeResult::wrongSpeed && bytes.size() >= kEnoughNoise;
  };
  const std::unique_ptr<SerialPort> port = makePort_();
  const ProbeAnswer answer = probePort(*port, path, speed, times_.listenMs, enough);
  const ResultRow& row = rowOf(answer.result);
  if (cancelled_ && !row.conclusive) return false;

  const std::lock_guard lock(mutex_);
  PortFinding& finding = findings_[index];
  if (!finding.answered || row.rank > rowOf(finding.answer.result).rank) {
    finding.answer = answer;
    finding.speed = speed;
    finding.answered = true;
  }
  if (!row.conclusive) ++stepsDone_;
  return row.conclusive;
}

const PortFinding* bestFinding(const std::vector<PortFinding>& findings) {
  const PortFinding* best = nullptr;
  for (const PortFinding& finding : findings) {
    if (!finding.answered || finding.answer.result != ProbeResult::found) continue;
    if (best == nullptr || finding.answer.sentencesPerSecond > best->answer.sentencesPerSecond) {
      best = &finding;
    }
  }
  return best;
}

std::string findingText(const PortFinding& finding) {
  if (!finding.done) {
    return finding.listening == 0 ? std::string(textOf(kWaiting))
                                  : textWith(kListening, std::to_string(finding.listening));
  }
  if (!finding.answered) return std::string(textOf(kNotTried));
  std::string text = textWith(rowOf(finding.answer.result).text, std::to_string(finding.speed));
  if (finding.answer.result != ProbeResult::found) return text;
  for (const std::string& part :
       {finding.answer.talker, rateText(finding.answer.sentencesPerSecond)}) {
    const size_t percent = text.find('%');
    if (percent != std::string::npos) text.replace(percent, 2, part);
  }
  return text;
}

}  // namespace vgps
