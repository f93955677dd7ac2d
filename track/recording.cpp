#include "track/recording.h"

#include <cmath>
#include <utility>

#include "geo/distance.h"
#include "geo/units.h"
#include "track/track_statistics.h"

namespace vgps {
namespace {

constexpr uint32_t kWaitsMs = 10000;
constexpr uint32_t kFixesComeMs = 3000;

Position positionOf(const FixRecord& fix) { return {fix.longitude, fix.latitude, fix.altitude}; }

// The date is the last one that an RMC gave: behind midnight a GGA may come before the next. Then
// the time lies a day behind the point before.
int64_t receiverUtcOf(const FixRecord& fix, int64_t before) {
  if (!isCalendarTime(fix.utcTime)) return 0;
  DateTime second = fix.utcTime;
  second.millisecond = 0;
  const int64_t utc = millisecondsOf(second).value_or(0) + fix.utcMilliseconds;
  const int64_t back = before - utc;
  return back > kDayMs / 2 && back <= kDayMs ? utc + kDayMs : utc;
}

void takeWhereZero(float& threshold, int32_t option) {
  if (threshold == 0) threshold = static_cast<float>(option);
}

// The change of course since the last point, computed as it always has been: not across north, and
// against the last course plus the deviation of the previous fix. As a result, a slow right turn
// goes unnoticed, while a left turn does not.
bool turned(const Track& track, double course) {
  const double base = std::trunc(std::fabs(double{track.lastCourse}) + track.courseDeviation);
  return std::fabs(course - base) > track.angleThreshold;
}

// An altitude that was not measured says nothing about a climb.
bool climbed(const Track& track, const FixRecord& fix) {
  if (!fix.altitudeKnown() || !track.lastAltitudeKnown) return false;
  return std::fabs(track.lastAltitude - fix.altitude) > track.altitudeThreshold;
}

}  // namespace

bool Recording::start() {
  if (current_.state != kIdle) return false;
  distance_ = 0;
  takeWhereZero(current_.angleThreshold, options_.angle);
  takeWhereZero(current_.speedThreshold, options_.speed);
  takeWhereZero(current_.altitudeThreshold, options_.altitude);
  current_.courseDeviation = 0;
  current_.lastCourse = -1;
  current_.lastAltitudeKnown = false;
  current_.state = kRecording;
  current_.bes = options_.bes;
  lastRule_ = RecordingRule::none;
  jumpFilter_ = {};
  jumps_ = 0;
  lastRecordTick_ = clock_.tick();
  lastMark_ = 0;
  pendingMark_ = 0;
  if (options_.drawPath) hooks_.resetDrawnPath();
  hooks_.startTimer();
  return true;
}

bool Recording::continueRecovered() {
  if (!start()) return false;
  for (size_t i = 1; i < current_.points.size(); ++i) {
    addDistance(current_.points[i - 1], current_.points[i]);
  }
  return true;
}

void Recording::pauseOrResume() {
  if (current_.state == kPlaying) return;
  if (current_.state == kRecording) {
    current_.state = kPaused;
    hooks_.playSound("SPD");
    hooks_.flushPoints();
  } else {
    current_.state = kRecording;
    hooks_.playSound("TURN");
  }
}

void Recording::stop(Track* track, bool ask) {
  Track& ended = track == nullptr ? current_ : *track;
  hooks_.stopTimer();
  const bool played = ended.state == kPlaying;
  ended.state = kIdle;
  if (played || ended.points.empty()) return;
  hooks_.flushPoints();
  const bool wanted = !ask || hooks_.askToSave();
  if (wanted && !hooks_.save(ended)) return;
  hooks_.pointsSavedOrDiscarded();
  if (ask) discard(ended);
}

void Recording::discard(Track& track) {
  track.points.clear();
  track.attachments.clear();
  track.pointNames.clear();
  track.startUtc = 0;
  track.name.clear();  // the next recording is another track
  hooks_.trackChanged(track);
}

bool Recording::offer(const FixRecord& fix, uint32_t force) {
  if (current_.state != kRecording) return false;
  lastRule_ = ruleAgainst(fix, force);
  lastOfferTick_ = clock_.tick();
  if (lastRule_ != RecordingRule::none) return false;
  record(fix, force);
  return true;
}

bool Recording::recordNow(const FixRecord& fix) {
  if (current_.state != kRecording || fix.fixStatus == 0) return false;
  if (!isPosition(fix.longitude, fix.latitude)) return false;
  record(fix, pendingMark_);
  return true;
}

RecordingRule Recording::waitingFor() const {
  const uint32_t now = clock_.tick();
  const bool coming = now - lastOfferTick_ < kFixesComeMs;
  const bool waiting = current_.state == kRecording && coming && now - lastRecordTick_ >= kWaitsMs;
  return waiting ? lastRule_ : RecordingRule::none;
}

RecordingRule Recording::ruleAgainst(const FixRecord& fix, uint32_t force) {
  using enum RecordingRule;
  if (!isPosition(fix.longitude, fix.latitude)) return noPosition;
  if (options_.jumpFilter && jumpFilter_.isJump(fix, clock_.tick())) {
    ++jumps_;
    return jump;
  }
  if (options_.manual) return std::exchange(requested_, false) ? none : manual;
  if (options_.everyNth > 0) return passesCountdown() ? none : everyNth;
  if (current_.cellMode != 0 && options_.recordCell) return none;
  if (current_.lastCourse == -1) return none;
  if (fix.speedKmh < current_.speedThreshold) return tooSlow;
  if (force != 0 || turned(current_, fix.course) || climbed(current_, fix)) return none;
  if (passesInterval(fix)) return none;
  current_.courseDeviation = static_cast<float>(std::fabs(current_.lastCourse - fix.course));
  return noChange;
}

// Fixes come at whole seconds, and a little earlier or later.
bool Recording::passesInterval(const FixRecord& fix) const {
  constexpr int64_t kJitterMs = 300;
  const int64_t passed = int64_t{clock_.tick() - lastRecordTick_} + kJitterMs;
  if (options_.everySeconds > 0 && passed >= int64_t{options_.everySeconds} * kSecondMs) {
    return true;
  }
  if (options_.everyMeters <= 0 || current_.points.empty()) return false;
  const double km = pointDistance(positionOf(current_.points.back()), positionOf(fix), kKilometers,
                                  kKilometers, false);
  return km * 1000 >= options_.everyMeters;
}

bool Recording::passesCountdown() {
  if (countdown_ > 0) {
    --countdown_;
    return false;
  }
  countdown_ = options_.everyNth;
  return true;
}

void Recording::addDistance(const FixRecord& last, const FixRecord& fix) {
  const double surface =
      pointDistance(positionOf(last), positionOf(fix), kKilometers, kKilometers, false);
  const double slant = slantDistance(surface, last, fix);
  distance_ += distanceInUnit(surface, options_.distanceUnit);
  distance3d_ += distanceInUnit(slant, options_.distanceUnit);
}

void Recording::record(const FixRecord& fix, uint32_t force) {
  if (!current_.points.empty()) addDistance(current_.points.back(), fix);
  TrackPoint point{fix};
  point.unknown &= kAllUnknown;
  point.receiverUtc =
      receiverUtcOf(fix, current_.points.empty() ? 0 : current_.points.back().receiverUtc);
  point.utcTime = clock_.utc();
  point.localTime = clock_.local();
  point.s = force;
  point.m = pendingMark_;
  if (pendingMark_ != 0) lastMark_ = pendingMark_;
  pendingMark_ = 0;
  if (current_.points.empty()) current_.startUtc = startOf(point);
  current_.points.push_back(point);
  if (options_.drawPath) hooks_.appendToDrawnPath(fix.longitude, fix.latitude);
  current_.lastCourse = static_cast<float>(fix.course);
  if (fix.altitudeKnown()) current_.lastAltitude = static_cast<float>(fix.altitude);
  current_.lastAltitudeKnown |= fix.altitudeKnown();
  current_.cellMode = 0;
  current_.courseDeviation = 0;
  lastRecordTick_ = clock_.tick();
  hooks_.pointRecorded(point);
  if (point.m != 0) hooks_.flushPoints();
}

bool Recording::mark() {
  if (current_.state != kRecording && current_.state != kPaused) return false;
  pendingMark_ = lastMark_ + 1;
  hooks_.flushPoints();
  return true;
}

}  // namespace vgps
