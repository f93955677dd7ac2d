#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <utility>

#include "app/session/connection.h"
#include "app/session/fix_values.h"
#include "app/session/on_line.h"
#include "app/session/ui_mailbox.h"
#include "base/date_time.h"
#include "cli/commands.h"
#include "cli/monitor_view.h"
#include "cli/state_json.h"
#include "cli/state_text.h"
#include "platform/console.h"
#include "platform/files.h"

namespace vgps {
namespace {

// A terminal shows changes with at most this delay.
constexpr uint32_t kRefreshMs = 200;
constexpr uint32_t kNoiseMs = 3000;

std::string sourceOf(const MonitorOptions& options) {
  return options.simulate ? "the simulation" : options.port;
}

enum class Output { block, lines, json };

Output outputOf(const MonitorOptions& options) {
  if (options.json) return Output::json;
  return outputIsTerminal() ? Output::block : Output::lines;
}

// Error messages for the user: below the block, or on standard error.
class MonitorWindow : public Window {
 public:
  void tellError(std::string_view text) override { message = text; }
  std::string message;
};

class Monitor {
 public:
  Monitor(const MonitorOptions& options, std::shared_ptr<UiMailbox> mailbox)
      : options_(options),
        output_(outputOf(options)),
        mailbox_(std::move(mailbox)),
        app_({clock_, sounds_, *mailbox_, window_, makeSerialPort, locationSensorManager(),
              listSerialPorts}) {
    app_.link.times = kHeadlessLinkTimes;
    status_.speed = options.speed;
    app_.gps.options.utcOffsetMinutes = measureUtcOffset(clock_.utc(), clock_.local());
    if (options.logPath.empty()) return;
    app_.gps.log.path = options.logPath;
    app_.gps.options.logNmea = true;
  }

  void run();
  bool heard() const { return heard_; }

  // Returns false if a reader is still running; then this object must not be destroyed.
  bool stop() {
    mailbox_->close();
    app_.link.close();
    return stopReceiver(app_);
  }

 private:
  void followLink();
  void handle(const UiMessage& message);
  MonitorStatus statusNow() const;
  Json stateNow(const MonitorStatus& status) const;
  bool takeDue();
  void show();
  void tellStatus();
  uint32_t msToNextStep() const;
  uint32_t since(uint32_t tick) const { return clock_.tick() - tick; }

  const MonitorOptions options_;
  const Output output_;
  const Clock& clock_ = systemClock();
  Sounds sounds_;
  MonitorWindow window_;
  std::shared_ptr<UiMailbox> mailbox_;
  AppState app_;

  MonitorStatus status_;
  uint32_t openedTick_ = clock_.tick();  // when the port was opened
  uint32_t noiseTick_ = 0;
  bool noiseSeen_ = false;
  uint32_t dueTick_ = 0;  // when the state is shown next
  uint32_t shownTick_ = 0;
  bool changed_ = false;
  bool heard_ = false;  // a line or message has come, of any connection
  int blockRows_ = 0;
  std::string toldStatus_;
};

// Tracks changes of the link since the last check.
void Monitor::followLink() {
  const Link& link = app_.link;
  const MonitorStatus::Line before = std::exchange(status_.line, lineOf(link));
  changed_ |= std::exchange(status_.error, link.error()) != link.error();
  status_.source = options_.simulate ? sourceOf(options_) : link.source().port;
  if (status_.line == before) return;
  changed_ = true;
  if (status_.line == MonitorStatus::Line::open) {
    openedTick_ = clock_.tick();
  } else {
    resetSourceState(app_.shown);
    noiseSeen_ = false;
  }
}

void Monitor::handle(const UiMessage& message) {
  onUiMessage(app_, message);
  changed_ = true;
  heard_ |= message.event == UiEvent::line;
  if (message.event == UiEvent::unknownBytes) {
    noiseSeen_ = true;
    noiseTick_ = clock_.tick();
  }
}

MonitorStatus Monitor::statusNow() const {
  MonitorStatus now = status_;
  now.dataSeen = app_.shown.dataSeen;
  now.silentMs = since(now.dataSeen ? app_.shown.lastDataTick : openedTick_);
  now.noiseSeen = noiseSeen_ && since(noiseTick_) < kNoiseMs;
  now.fixSeen = app_.shown.fixSeen;
  now.fixAgeMs = since(app_.shown.lastFixTick);
  now.quality = currentQuality(app_.shown, clock_.tick());
  return now;
}

// While the device is missing only the reader thread is running; that does not count as connected.
Json Monitor::stateNow(const MonitorStatus& status) const {
  Json state = {{"link", linkName(status, app_.shown)},
                {"status", statusText(status, app_.shown)},
                {"dataAgeMs", nullptr},
                {"fixAgeMs", nullptr}};
  if (status.dataSeen) state["dataAgeMs"] = status.silentMs;
  if (status.fixSeen) state["fixAgeMs"] = status.fixAgeMs;
  state.update(stateJson(app_.shown, app_.fix, clock_.tick(), options_.all));
  if (options_.all && status.line != MonitorStatus::Line::open) state["fix"]["running"] = false;
  return state;
}

// Whether the next second has come. Missed seconds (a stopped program, a sleeping computer) are
// skipped: each would show the same state.
bool Monitor::takeDue() {
  const uint32_t late = since(dueTick_);
  if (static_cast<int32_t>(late) < 0) return false;
  dueTick_ += (late / kSecondMs + 1) * kSecondMs;
  return true;
}

void Monitor::show() {
  const MonitorStatus status = statusNow();
  std::string text;
  switch (output_) {
    case Output::json: text = jsonText(stateNow(status), -1) + "\n"; break;
    case Output::lines: text = monitorLine(status, app_.shown); break;
    case Output::block:
      text = monitorBlock(statusText(status, app_.shown) + "\n" + window_.message + "\n" +
                              alignedText(stateRows(app_.shown, clock_.tick())),
                          terminalSize(), blockRows_);
      break;
  }
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
  shownTick_ = clock_.tick();
  changed_ = false;
}

// With JSON output, the status is printed to standard error, each change once.
void Monitor::tellStatus() {
  if (output_ != Output::block && !window_.message.empty()) {
    fail(window_.message);
    window_.message.clear();
  }
  // The block has a row for it.
  const std::string news = newsOfLines(app_.shown.stats, app_.linesTold);
  if (output_ != Output::block && !news.empty()) warn(news);
  if (output_ != Output::json || status_.line == MonitorStatus::Line::open) {
    toldStatus_.clear();
    return;
  }
  const std::string text = statusText(statusNow(), app_.shown);
  if (text != toldStatus_) fail(text);
  toldStatus_ = text;
}

uint32_t Monitor::msToNextStep() const {
  const auto left = [this](uint32_t from, uint32_t span) {
    const uint32_t passed = since(from);
    return passed >= span ? 0 : span - passed;
  };
  uint32_t wait = left(dueTick_ - kSecondMs, kSecondMs);
  if (output_ == Output::block && changed_) wait = std::min(wait, left(shownTick_, kRefreshMs));
  return wait;
}

void Monitor::run() {
  const uint32_t start = clock_.tick();
  const double limitMs = options_.seconds > 0 ? options_.seconds * 1000 : HUGE_VAL;
  if (output_ == Output::block) std::fputs("\x1b[?25l", stdout);
  app_.link.open({.port = options_.port, .speed = options_.speed, .simulate = options_.simulate});
  // A pipe gets its first line later, so that some data can arrive.
  dueTick_ = start + (output_ == Output::block ? 0 : kSecondMs);
  for (;;) {
    app_.link.check(true);
    followLink();
    tellStatus();
    const bool fresh = output_ == Output::block && changed_ && since(shownTick_) >= kRefreshMs;
    if (takeDue() || fresh) show();
    const double left = limitMs - since(start);
    if (left <= 0) break;
    const double wait = std::min<double>(msToNextStep(), std::ceil(left));
    const auto handler = [this](const UiMessage& message) { handle(message); };
    if (mailbox_->wait(static_cast<int>(wait), handler) == UiMailbox::WaitResult::closed) break;
  }
  if (output_ == Output::block) std::fputs("\x1b[?25h", stdout);
}

std::string whatToGive() {
  std::string ports;
  for (const PortName& port : listSerialPorts()) {
    if (!ports.empty()) ports += ", ";
    ports += port.name;
    if (!port.description.empty()) ports += " (" + port.description + ")";
  }
  return "use --port DEV or --simulate; available ports: " + (ports.empty() ? "none" : ports);
}

bool canAppend(const std::string& path) {
  std::FILE* const file = openFile(path, "ab");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

}  // namespace

int runMonitor(const MonitorOptions& options) {
  if (options.port.empty() && !options.simulate) return fail(whatToGive());
  if (!options.logPath.empty() && !canAppend(options.logPath)) {
    return fail("cannot write the log file " + options.logPath);
  }
  const auto mailbox = std::make_shared<UiMailbox>();
  onStopRequest([mailbox] { mailbox->close(); });
  auto monitor = std::make_unique<Monitor>(options, mailbox);
  monitor->run();
  const bool heard = monitor->heard();
  // What a reader could still touch must outlive it.
  if (!monitor->stop()) (void)monitor.release();
  const int written = finishOutput();
  return heard || options.simulate ? written
                                   : fail("nothing was received from " + sourceOf(options));
}

}  // namespace vgps
