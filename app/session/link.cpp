#include "app/session/link.h"

namespace vgps {

bool Link::open(const SourceChoice& source) {
  fix_.close(true);
  source_ = source;
  fix_.setPort(source_.port, source_.speed);
  attemptOpened_ = fix_.open(source_.simulate, source_.useGpsApi, source_.useSensorApi, false);
  serial_ = fix_.running && !fix_.simulate && fix_.sensor == nullptr;
  error_ = fix_.portError;
  attemptTick_ = lastBytesTick_ = clock_.tick();
  state_ = !attemptOpened_ ? State::failed : fix_.running ? State::open : State::closed;
  return attemptOpened_;
}

bool Link::close(bool silent) {
  state_ = State::closed;
  error_ = PortError::none;
  return fix_.close(silent);
}

void Link::releasePort() {
  if (state_ == State::failed) fix_.close(true);  // an unusable port may still be open
  if (!serial_ || (state_ != State::open && state_ != State::lost)) return;
  state_ = State::released;
  fix_.connection.releasePort();
}

void Link::reclaimPort() {
  if (state_ != State::released) return;
  state_ = State::lost;
  error_ = PortError::none;
  fix_.connection.requestPort();
}

bool Link::noteBytes() {
  lastBytesTick_ = clock_.tick();
  if (state_ != State::lost) return false;
  state_ = State::open;
  error_ = PortError::none;
  followName(fix_.connection.portAttempt());
  return true;
}

bool Link::check(bool reconnect) {
  if (state_ == State::failed && times.retryFirstOpening && attemptIsDue()) {
    open(SourceChoice(source_));
  } else if (state_ == State::lost) {
    followAttempt(reconnect);
  } else if (state_ == State::open && serial_ && reconnect && hasGone()) {
    state_ = State::lost;
    error_ = fix_.portFailed ? PortError::notFound : PortError::none;
    if (attemptIsDue()) fix_.connection.requestPort();
    return true;
  }
  return false;
}

// Measured from the end of the last attempt, because opening may take longer than the interval.
bool Link::attemptIsDue() const {
  const uint32_t ms = attemptOpened_ ? times.reopenMs : times.retryMs;
  return clock_.tick() - attemptTick_ >= ms - ms / 10;
}

bool Link::hasGone() const {
  return fix_.portFailed || clock_.tick() - lastBytesTick_ >= times.lostAfterMs;
}

void Link::followName(const PortAttempt& attempt) {
  if (attempt.newName.empty() || attempt.newName == source_.port) return;
  source_.port = attempt.newName;
  fix_.setPort(source_.port, source_.speed);
}

void Link::followAttempt(bool reconnect) {
  const PortAttempt attempt = fix_.connection.portAttempt();
  if (attempt.state == PortAttempt::State::waiting) return;
  followName(attempt);
  if (attempt.state != PortAttempt::State::none) {
    attemptOpened_ = attempt.state == PortAttempt::State::opened;
    attemptTick_ = attempt.tick;
    error_ = attemptOpened_ && fix_.portFailed ? PortError::notFound : attempt.error;
  }
  if (reconnect) {
    if (attemptIsDue()) fix_.connection.requestPort();
  } else if (attemptOpened_ && !fix_.portFailed) {
    state_ = State::open;
  } else {
    close();
  }
}

}  // namespace vgps
