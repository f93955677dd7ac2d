#include "cli/live_fixes.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "app/session/apply_settings.h"
#include "app/session/connection.h"
#include "app/session/line_notes.h"
#include "app/session/on_line.h"
#include "app/session/ui_mailbox.h"
#include "cli/monitor_view.h"
#include "gps/port_errors.h"
#include "platform/console.h"

namespace vgps {
namespace {

// Between two checks of the link.
constexpr uint32_t kLookMs = 1000;

class LiveFixes {
 public:
  LiveFixes(const LiveSource& source, std::shared_ptr<UiMailbox> mailbox,
            const std::function<void(const FixRecord&)>& take,
            const std::function<void(const std::string&)>& tell)
      : source_(source),
        take_(take),
        tell_(tell),
        mailbox_(std::move(mailbox)),
        app_({clock_, sounds_, *mailbox_, window_, makeSerialPort, nullptr, listSerialPorts}) {
    app_.link.times = kHeadlessLinkTimes;
    if (source_.settings != nullptr) {
      app_.settings = *source_.settings;
      applySettings(app_);
    }
    if (source_.talkers) app_.gps.options.talkers = static_cast<int32_t>(*source_.talkers);
    app_.gps.options.utcOffsetMinutes = measureUtcOffset(clock_.utc(), clock_.local());
    app_.extensions.takeFix = [this](const FixRecord& fix) { take_(fix); };
  }

  void run() {
    const uint32_t start = clock_.tick();
    const double limitMs = source_.seconds > 0 ? source_.seconds * 1000 : HUGE_VAL;
    openSource(app_, source_.port, source_.speed, source_.simulated);
    for (;;) {
      app_.link.check(true);
      say(linkText());
      if (const auto news = newsOfLines(app_.shown.stats, app_.linesTold); !news.empty()) {
        tell_(news);
      }
      const double left = limitMs - (clock_.tick() - start);
      if (left <= 0) return;
      const auto handler = [this](const UiMessage& message) { onUiMessage(app_, message); };
      const int wait = static_cast<int>(std::min<double>(kLookMs, std::ceil(left)));
      if (mailbox_->wait(wait, handler) == UiMailbox::WaitResult::closed) return;
    }
  }

  // The last fix may still be waiting for a sentence.
  void finish() {
    for (const FixRecord& fix : app_.epochs.takeWaiting()) take_(fix);
  }

  // Returns false if a reader is still running; then this object must not be destroyed.
  bool stop() {
    take_ = [](const FixRecord&) {};
    mailbox_->close();
    app_.link.close();
    return stopReceiver(app_);
  }

 private:
  std::string linkText() const {
    const std::string& port = app_.link.source().port;
    switch (lineOf(app_.link)) {
      case MonitorStatus::Line::open:
        return "reading " + (app_.link.source().simulate ? "the simulation" : port);
      case MonitorStatus::Line::failed:
        return port + " " + wordsOf(app_.link.error()).predicate + "; retrying";
      case MonitorStatus::Line::gone: return port + " was disconnected; trying to reconnect";
    }
    return {};
  }

  void say(const std::string& text) {
    if (text != said_) tell_(text);
    said_ = text;
  }

  const LiveSource source_;
  std::function<void(const FixRecord&)> take_;
  std::function<void(const std::string&)> tell_;
  const Clock& clock_ = systemClock();
  Sounds sounds_;
  Window window_;
  std::shared_ptr<UiMailbox> mailbox_;
  AppState app_;
  std::string said_;
};

}  // namespace

void openSource(AppState& app, const std::string& port, uint32_t speed, Simulated simulated) {
  const bool simulate = simulated != Simulated::none;
  const bool walk = simulated == Simulated::walk;
  if (simulate) chooseSimulationData(app, walk);
  app.link.open({.port = port, .speed = speed, .simulate = simulate, .walk = walk});
}

std::shared_ptr<UiMailbox> stoppableMailbox() {
  auto mailbox = std::make_shared<UiMailbox>();
  onStopRequest([mailbox] { mailbox->close(); });
  return mailbox;
}

void readLiveFixes(const std::shared_ptr<UiMailbox>& mailbox, const LiveSource& source,
                   const std::function<void(const FixRecord&)>& take,
                   const std::function<void(const std::string&)>& tell) {
  auto live = std::make_unique<LiveFixes>(source, mailbox, take, tell);
  live->run();
  live->finish();
  // If a reader is still running, this must not be destroyed.
  if (!live->stop()) (void)live.release();
}

}  // namespace vgps
