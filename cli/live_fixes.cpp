#include "cli/live_fixes.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "app/session/apply_settings.h"
#include "app/session/connection.h"
#include "app/session/on_line.h"
#include "app/session/ui_mailbox.h"
#include "cli/monitor_view.h"
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
    app_.link.open({.port = source_.port, .speed = source_.speed, .simulate = source_.simulate});
    for (;;) {
      app_.link.check(true);
      say(linkText());
      const double left = limitMs - (clock_.tick() - start);
      if (left <= 0) return;
      const auto handler = [this](const UiMessage& message) { onUiMessage(app_, message); };
      const int wait = static_cast<int>(std::min<double>(kLookMs, std::ceil(left)));
      if (mailbox_->wait(wait, handler) == UiMailbox::WaitResult::closed) return;
    }
  }

  // The last fix may still have been waiting for a sentence.
  void finish() {
    for (const FixRecord& fix : app_.epochs.takeWaiting()) take_(fix);
  }

  // False: a reader still lives, and this must not be destroyed.
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
        return "reading " + (source_.simulate ? "the simulation" : port);
      case MonitorStatus::Line::failed: return "cannot open " + port + "; retrying";
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

void readLiveFixes(const LiveSource& source, const std::function<void(const FixRecord&)>& take,
                   const std::function<void(const std::string&)>& tell) {
  const auto mailbox = std::make_shared<UiMailbox>();
  onStopRequest([mailbox] { mailbox->close(); });
  auto live = std::make_unique<LiveFixes>(source, mailbox, take, tell);
  live->run();
  live->finish();
  // What a reader could still touch must outlive it.
  if (!live->stop()) (void)live.release();
}

}  // namespace vgps
