#include "app/session/on_line.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "gps/sirf.h"

namespace vgps {
namespace {

constexpr int32_t kNewsMessages = 10;  // two or three seconds with a typical receiver

void copyFix(AppState& app) {
  UiFix& shown = app.shown;
  shown.fix = app.fix;
  shown.satellites = *app.fix.satellites;
  if (shown.viewRevision != app.gps.view.revision()) {
    const auto satellites = app.gps.view.satellites();
    shown.view.assign(satellites.begin(), satellites.end());
    shown.viewRevision = app.gps.view.revision();
  }
  shown.stats = app.gps.stats;
  shown.maxSpeed = app.gps.maxSpeed;
  shown.maxAltitude = app.gps.maxAltitude;
  shown.inputProtocol = app.gps.inputProtocol;
  shown.satellitesInUseKnown = app.gps.satellitesInUseKnown;
  shown.lastByteMicros = app.fix.lastByteMicros;
}

void offer(AppState& app, const FixRecord& fix) {
  if (app.extensions.takeFix) app.extensions.takeFix(fix);
  const int32_t state = app.recorder.track.state;
  if (state != kRecording && state != kPlaying) return;
  ++app.epochsOffered;
  if (state == kRecording) {
    app.recorder.offer(fix);
  } else if (app.extensions.followRoute) {
    app.extensions.followRoute(app.shown);
  }
}

void offerEpoch(AppState& app, const UiMessage& message) {
  for (const FixRecord& fix :
       app.epochs.take(app.shown.fix, message.said, epochRuleOf(app.gps), message.generation)) {
    offer(app, fix);
  }
}

// Whether to ignore the message: only one of N is handled. N may change at any time.
bool isSkipped(AppState& app) {
  if (app.frameSkip <= 0) return false;
  if (app.frameCountdown <= 0 || app.frameCountdown > app.frameSkip) {
    app.frameCountdown = app.frameSkip;
  }
  return --app.frameCountdown > 0;
}

void addRawRow(AppState& app, std::string_view text) {
  if (app.currentScreen != Screen::rawLog || text.empty()) return;
  app.rawLog.add(app.platform.clock.local(), text);
}

// Shows messages that have no place of their own on the readout as text.
void tellMessage(AppState& app, std::string text) {
  app.lastMessageText = std::move(text);
  app.pendingDisplay.messageCountdown = kNewsMessages;
  app.pendingDisplay.messageSource = app.gps.readers.generation;
  addRawRow(app, app.lastMessageText);
}

std::string textOfMessage(const SirfMessage& message) {
  char number[16];
  std::snprintf(number, sizeof number, "%X", message.number());
  return textWith(Text::sirfMessage, number, std::to_string(message.length));
}

// The displayed maxima. All units are kept: a speed in the old unit would make no sense after the
// unit changes.
void noteGreatest(UiFix& shown, uint32_t said) {
  const FixRecord& fix = shown.fix;
  if (fix.fixStatus == 0) return;
  if ((said & kSaidSpeed) != 0 && fix.speedKmh > shown.fastest.kmh) {
    // The program's own sentence has no speed in knots.
    const double knots = fix.speedKnots > 0 ? fix.speedKnots : fix.speedKmh / kKmhPerKnot;
    shown.fastest = speedsFromKnots(knots);
  }
  if ((said & kSaidAltitude) == 0) return;
  shown.highest = std::max(shown.highest, fix.altitude);
  shown.exactHighest = std::max(shown.exactHighest, fix.preciseAltitude());
}

// New maximum values are highlighted for a while.
void noteMaxima(AppState& app) {
  PendingDisplay& pending = app.pendingDisplay;
  const UiFix& shown = app.shown;
  const bool faster = shown.fastest.kmh > pending.maxSpeed;
  const bool higher = shown.highest > pending.maxAltitude;
  if (pending.maximumCountdown == 0) pending.newMaxSpeed = pending.newMaxAltitude = false;
  if (faster || higher) pending.maximumCountdown = kNewsMessages;
  pending.newMaxSpeed |= faster;
  pending.newMaxAltitude |= higher;
  pending.maxSpeed = shown.fastest.kmh;
  pending.maxAltitude = shown.highest;
}

void handleForDisplays(AppState& app, const UiMessage& message) {
  PendingDisplay& pending = app.pendingDisplay;
  if (pending.messageCountdown > 0) --pending.messageCountdown;
  if (pending.maximumCountdown > 0) --pending.maximumCountdown;
  noteMaxima(app);
  if (message.record == nullptr) {
    addRawRow(app, message.text);
  } else {
    tellMessage(app, textOfMessage(*static_cast<const SirfMessage*>(message.record)));
  }
  pending.waiting = true;
}

void noteBytes(AppState& app) {
  if (app.link.noteBytes()) app.platform.sounds.play("OK");
}

void onLine(AppState& app, const UiMessage& message) {
  copyFix(app);
  noteBytes(app);
  const uint32_t now = app.platform.clock.tick();
  app.shown.dataSeen = true;
  app.shown.lastDataTick = now;
  noteReceived(app.shown, message.text, message.said, now);
  noteGreatest(app.shown, message.said);
  if (message.record == nullptr) offerEpoch(app, message);
  if (isSkipped(app)) return;
  handleForDisplays(app, message);
}

void onSensorReading(AppState& app, const UiMessage& message) {
  app.shown.dataSeen = true;
  app.shown.lastDataTick = app.platform.clock.tick();
  tellMessage(app, textWith(Text::sensorMessage, fixedText(message.x, 3), fixedText(message.y, 3)));
  repaintThrottled(app);
}

void onUnknownBytes(AppState& app, const UiMessage& message) {
  app.shown.stats = app.gps.stats;  // to show that something is arriving
  app.shown.arrivals.noise = {true, app.platform.clock.tick()};
  noteBytes(app);
  addRawRow(app, message.text);
  if (app.currentScreen == Screen::rawLog) repaintThrottled(app);
}

// A message may have been on its way while another source was opened; it must not affect that.
bool isOfAnotherSource(const AppState& app, const UiMessage& message) {
  return message.generation != 0 && message.generation != app.gps.readers.generation;
}

}  // namespace

void noteReceived(UiFix& shown, std::string_view line, uint32_t said, uint32_t tick) {
  const LastReceived::Arrival now = {true, tick};
  LastReceived& arrivals = shown.arrivals;
  const auto note = [&](uint32_t bits, LastReceived::Arrival& arrival) {
    if ((said & bits) != 0) arrival = now;
  };
  if (const auto gst = gstOf(line)) {
    shown.gst = gst;
    arrivals.errors = now;
  }
  note(kSaidTime, arrivals.time);
  note(kSaidUsedCount, arrivals.used);
  note(kSaidInViewCount, arrivals.view);
  note(kSaidPdop | kSaidHdop | kSaidVdop, arrivals.dilution);
  // A receiver without GGA still lists the satellites that it uses in GSA.
  if (shown.stats.of(SentenceType::gga).count == 0) note(kSaidUsed, arrivals.used);
  if (shown.fix.fixStatus == 0) return;
  note(kSaidPosition, arrivals.position);
  note(kSaidSpeed | kSaidCourse, arrivals.motion);
  note(kSaidAltitude, arrivals.altitude);
  note(kSaidQuality, arrivals.quality);
  // A following RMC only reports that the fix is valid, without its quality.
  if ((said & kSaidQuality) != 0) shown.quality = shown.fix.fixStatus;
  if ((said & kSaidPosition) == 0) return;
  shown.fixSeen = true;
  shown.lastFixTick = tick;
}

bool refreshDisplays(AppState& app) { return app.pendingDisplay.waiting && repaintThrottled(app); }

void onUiMessage(AppState& app, const UiMessage& message) {
  if (message.event == UiEvent::logFailed) {
    app.platform.window.tellError(textWith(Text::logNotWritten, message.text));
    return;
  }
  if (isOfAnotherSource(app, message)) return;
  switch (message.event) {
    case UiEvent::line: onLine(app, message); break;
    // The parser has gained or lost the fix; this is shown even if messages are skipped.
    case UiEvent::repaint:
      copyFix(app);
      repaintThrottled(app);
      break;
    case UiEvent::refresh: refreshDisplays(app); break;
    case UiEvent::sensor: onSensorReading(app, message); break;
    case UiEvent::unknownBytes: onUnknownBytes(app, message); break;
    case UiEvent::logFailed: break;
  }
}

}  // namespace vgps
