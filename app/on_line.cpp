#include "app/on_line.h"

#include <cstdio>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "gps/epoch.h"

namespace vgps {
namespace {

constexpr uint32_t kLogFailed = 701;
constexpr size_t kRawRowBytes = 1000;  // more of a row than any screen shows
constexpr size_t kRawRows = 500;       // kept for the raw log screen

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
  shown.epochSentenceKind = app.gps.epochSentenceKind;
  shown.inputProtocol = app.gps.inputProtocol;
  shown.satellitesInUseKnown = app.gps.satellitesInUseKnown;
  shown.lastByteMicros = app.fix.lastByteMicros;
}

void offerEpoch(AppState& app) {
  const bool wanted = app.track.state == kRecording || app.track.state == kPlaying;
  const FixRecord& fix = app.shown.fix;
  if (!wanted || fix.fixStatus == 0) return;
  if (!closesEpoch(fix.lastSentenceKind, app.shown.epochSentenceKind)) return;
  ++app.epochsOffered;
  if (app.track.state == kRecording) {
    app.recording.offer(fix);
  } else if (app.extensions.followRoute) {
    app.extensions.followRoute(app.shown);
  }
}

// Of N messages one is shown.
bool isSkipped(AppState& app) {
  if (app.frameSkip == 0) return false;
  if (app.frameCountdown == 0) app.frameCountdown = app.frameSkip;
  return --app.frameCountdown > 0;
}

void takeMessageText(AppState& app, const SirfMessage& message) {
  char text[64];
  std::snprintf(text, sizeof text, "Sirf msg (%X): %u bytes", message.number(),
                static_cast<unsigned>(message.length));
  app.lastMessageText = text;
}

// Only a position sentence is news of the fix. A binary message is none yet: the kind of the last
// text line still stands in the fix then.
void noteArrival(UiFix& shown, bool isText, uint32_t tick) {
  shown.dataSeen = true;
  shown.lastDataTick = tick;
  const int32_t kind = shown.fix.lastSentenceKind;
  if (!isText || shown.fix.fixStatus == 0 || (kind != kRmc && kind != kGga)) return;
  shown.fixSeen = shown.fixEver = true;
  shown.lastFixTick = tick;
}

void addRawRow(AppState& app, std::string_view text) {
  if (app.currentScreen != kScreenRawLog || text.empty()) return;
  app.rawLog.push_back(validUtf8(text.substr(0, kRawRowBytes)));
  if (app.rawLog.size() > kRawRows) app.rawLog.erase(app.rawLog.begin());
}

void onLine(AppState& app, const UiMessage& message) {
  copyFix(app);
  noteBytes(app);
  noteArrival(app.shown, message.record == nullptr, app.platform.clock.tick());
  if (message.record == nullptr) offerEpoch(app);
  if (isSkipped(app)) return;
  if (message.record == nullptr) addRawRow(app, message.text);
  if (message.record != nullptr) {
    takeMessageText(app, *static_cast<const SirfMessage*>(message.record));
  }
}

}  // namespace

void onUiMessage(AppState& app, const UiMessage& message) {
  switch (message.event) {
    case UiEvent::line: onLine(app, message); break;
    case UiEvent::repaint:
      copyFix(app);
      repaintThrottled(app);
      break;
    case UiEvent::refresh: repaintThrottled(app); break;
    case UiEvent::sensor:
      app.shown.dataSeen = true;
      app.shown.lastDataTick = app.platform.clock.tick();
      app.lastSensorText = "SENS msg: " + fixedText(message.x, 3) + "," + fixedText(message.y, 3);
      repaintThrottled(app);
      break;
    case UiEvent::unknownBytes:
      app.shown.stats = app.gps.stats;  // that something comes
      noteBytes(app);
      addRawRow(app, message.text);
      break;
    case UiEvent::logFailed:
      app.platform.window.tellError(textWith(kLogFailed, message.text));
      break;
  }
}

}  // namespace vgps
