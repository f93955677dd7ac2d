#include "gps/port_finder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "base/number.h"
#include "base/texts.h"
#include "gps/port_errors.h"

namespace vgps {
namespace {

// The most common factory settings come first.
constexpr std::array<uint32_t, 9> kSpeeds = {9600,  115200, 4800,   38400, 57600,
                                             19200, 230400, 460800, 921600};

// Data at a wrong baud rate looks wrong soon.
constexpr size_t kEnoughNoise = 120;

constexpr int kWholeProgress = 1000;
constexpr std::chrono::milliseconds kLettingGo{300};

struct ResultRow {
  ProbeResult result;
  int rank;         // the higher, the more it tells about a port
  bool conclusive;  // no other baud rate could give a better answer
  Text text;
};

constexpr ResultRow kResults[] = {
    {ProbeResult::found, 9, true, Text::finderFound},
    {ProbeResult::sirfBinary, 8, true, Text::finderSirf},
    {ProbeResult::noPosition, 7, true, Text::finderNoPosition},
    {ProbeResult::busy, 6, true, wordsOf(PortError::busy).answer},
    {ProbeResult::noPermission, 6, true, wordsOf(PortError::noPermission).answer},
    {ProbeResult::notFound, 6, true, wordsOf(PortError::notFound).answer},
    // Not every port supports every baud rate.
    {ProbeResult::cannotOpen, 0, false, wordsOf(PortError::other).answer},
    {ProbeResult::notNmea, 3, false, Text::finderNoNmea},
    {ProbeResult::wrongSpeed, 2, false, Text::probablyWrongSpeed},
    {ProbeResult::noData, 1, false, Text::finderNoData},
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

// The data shared by the threads of one search. Each thread owns a reference, so that one that the
// system blocks for a long time still finds it intact.
struct PortFinder::Search : std::enable_shared_from_this<Search> {
  Search(MakePort portMaker, std::function<void()> onChange, PortFinderTimes timesToTake)
      : makePort(std::move(portMaker)), times(timesToTake), changed(std::move(onChange)) {}

  void begin(std::vector<PortName> ports);
  void end();
  int progress();

  const MakePort makePort;
  const PortFinderTimes times;

  std::mutex mutex;  // protects everything below
  std::function<void()> changed;
  std::vector<PortFinding> findings;
  bool over = false;  // cancelled, or the time is up; later results are ignored
  size_t busy = 0;    // threads that may have a port open
  size_t stepsDone = 0;
  std::condition_variable settled;

 private:
  void searchPort(size_t index);
  void watchTime();
  bool tryAt(size_t index, uint32_t speed);
  bool isOver();
  bool noteOpen(size_t index);
};

void PortFinder::Search::begin(std::vector<PortName> ports) {
  for (PortName& port : ports) findings.emplace_back().port = std::move(port);
  const size_t count = findings.size();
  busy = count;
  for (size_t i = 0; i < count; ++i) {
    std::thread([self = shared_from_this(), i] { self->searchPort(i); }).detach();
  }
  std::thread([self = shared_from_this()] { self->watchTime(); }).detach();
}

// Ports that are being listened to are released within one time slice.
void PortFinder::Search::end() {
  std::unique_lock lock(mutex);
  over = true;
  changed = nullptr;
  for (PortFinding& finding : findings) finding.done = true;
  settled.notify_all();
  settled.wait_for(lock, kLettingGo, [this] { return busy == 0; });
}

void PortFinder::Search::watchTime() {
  std::unique_lock lock(mutex);
  settled.wait_for(lock, std::chrono::milliseconds(times.limitMs),
                   [this] { return over || busy == 0; });
  over = true;
  for (PortFinding& finding : findings) finding.done = true;
  if (changed) changed();
}

int PortFinder::Search::progress() {
  const std::lock_guard lock(mutex);
  const size_t steps = findings.size() * kSpeeds.size();
  return over || steps == 0 ? kWholeProgress : static_cast<int>(stepsDone * kWholeProgress / steps);
}

bool PortFinder::Search::isOver() {
  const std::lock_guard lock(mutex);
  return over;
}

void PortFinder::Search::searchPort(size_t index) {
  size_t tried = 0;
  while (tried < kSpeeds.size() && !isOver() && !tryAt(index, kSpeeds[tried])) ++tried;
  const std::lock_guard lock(mutex);
  if (!over) {
    findings[index].done = findings[index].triedAll = true;
    stepsDone += kSpeeds.size() - tried;
    if (changed) changed();
  }
  --busy;
  settled.notify_all();
}

// Returns true if no better result is possible.
bool PortFinder::Search::tryAt(size_t index, uint32_t speed) {
  std::string path;
  {
    const std::lock_guard lock(mutex);
    findings[index].listening = speed;
    findings[index].opening = true;
    path = devicePath(findings[index].port.name);
    if (changed) changed();
  }
  uint32_t positionMs = 0;
  const auto enough = [&](std::string_view bytes, uint32_t ms) {
    if (noteOpen(index)) return true;
    const ProbeResult result = classifyBytes(bytes, ms).result;
    if (result == ProbeResult::found && positionMs == 0) positionMs = std::max(ms, 1U);
    if (positionMs != 0) return ms >= positionMs + times.countMs;
    return result == ProbeResult::wrongSpeed && bytes.size() >= kEnoughNoise;
  };
  const std::unique_ptr<SerialPort> port = makePort();
  const ProbeReport answer = probePort(*port, path, speed, times.listenMs, enough);
  const ResultRow& row = rowOf(answer.result);

  const std::lock_guard lock(mutex);
  if (over) return row.conclusive;
  PortFinding& finding = findings[index];
  finding.opening = false;
  if (!finding.answered || row.rank > rowOf(finding.answer.result).rank) {
    finding.answer = answer;
    finding.speed = speed;
    finding.answered = true;
  }
  if (!row.conclusive) ++stepsDone;
  return row.conclusive;
}

// Called while listening to an open port. Returns true if the result is no longer wanted.
bool PortFinder::Search::noteOpen(size_t index) {
  const std::lock_guard lock(mutex);
  if (!over) findings[index].opening = false;
  return over;
}

void PortFinder::start(std::vector<PortName> ports) {
  stop();
  search_ = std::make_shared<Search>(makePort_, changed_, times_);
  search_->begin(std::move(ports));
}

void PortFinder::stop() {
  if (search_ != nullptr) search_->end();
}

bool PortFinder::running() const {
  if (search_ == nullptr) return false;
  const std::lock_guard lock(search_->mutex);
  return !search_->over && search_->busy > 0;
}

int PortFinder::progress() const {
  return search_ == nullptr ? kWholeProgress : search_->progress();
}

std::vector<PortFinding> PortFinder::findings() const {
  if (search_ == nullptr) return {};
  const std::lock_guard lock(search_->mutex);
  return search_->findings;
}

std::string positionText(const PortFinding& finding) {
  const ProbeReport& answer = finding.answer;
  if (!finding.answered) return {};
  if (answer.result == ProbeResult::found && !answer.hasFix) {
    return std::string(textOf(Text::finderNoFixYet));
  }
  if (answer.hasFix && answer.satellites > 0) {
    return textWith(Text::finderFixOf, std::to_string(answer.satellites));
  }
  if (answer.hasFix) return std::string(textOf(Text::finderFix));
  return std::string(answer.ais ? textOf(Text::finderAis) : "");
}

const PortFinding* bestFinding(const std::vector<PortFinding>& findings) {
  const PortFinding* best = nullptr;
  for (const PortFinding& finding : findings) {
    if (!finding.answered || finding.answer.result != ProbeResult::found) continue;
    const auto worth = [](const PortFinding& one) {
      return std::pair(one.answer.hasFix, one.answer.sentencesPerSecond);
    };
    if (best == nullptr || worth(finding) > worth(*best)) best = &finding;
  }
  return best;
}

std::string reportText(const ProbeReport& answer, uint32_t speed) {
  std::string text = textWith(rowOf(answer.result).text, std::to_string(speed));
  if (answer.result != ProbeResult::found) return text;
  for (const std::string& part : {answer.talker, rateText(answer.sentencesPerSecond)}) {
    const size_t percent = text.find('%');
    if (percent != std::string::npos) text.replace(percent, 2, part);
  }
  return text;
}

std::string findingText(const PortFinding& finding) {
  if (!finding.done) {
    return finding.listening == 0
               ? std::string(textOf(Text::finderWaiting))
               : textWith(Text::finderListening, std::to_string(finding.listening));
  }
  if (!finding.triedAll) {
    if (finding.opening && !finding.answered) return std::string(textOf(Text::finderNotOpened));
    // Silence at only some of the baud rates means nothing.
    const bool silent = !finding.answered || finding.answer.result == ProbeResult::noData;
    if (silent) return std::string(textOf(Text::finderUnfinished));
  }
  return reportText(finding.answer, finding.speed);
}

}  // namespace vgps
