#include "app/session/ui_mailbox.h"

#include <chrono>

namespace vgps {

bool UiMailbox::send(const UiMessage& message) {
  std::unique_lock lock(mutex_);
  if (running_ != nullptr && runner_ == std::this_thread::get_id()) {
    const Handler& handler = *running_;
    lock.unlock();
    handler(message);
    return true;
  }
  changed_.wait(lock, [this] { return closed_ || slot_ == Slot::free; });
  if (closed_) return false;
  message_ = &message;
  slot_ = Slot::sent;
  arrived_.notify_one();
  changed_.wait(lock, [this] { return slot_ == Slot::done || (closed_ && slot_ == Slot::sent); });
  const bool handled = slot_ == Slot::done;
  message_ = nullptr;
  slot_ = Slot::free;
  changed_.notify_all();
  return handled;
}

void UiMailbox::post(const UiMessage& message) {
  const std::lock_guard lock(mutex_);
  if (closed_) return;
  posted_.push_back(message);
  arrived_.notify_one();
}

UiMailbox::WaitResult UiMailbox::wait(int timeoutMs, const Handler& handler) {
  std::unique_lock lock(mutex_);
  const auto ready = [this] { return somethingToDo(); };
  if (timeoutMs < 0) {
    arrived_.wait(lock, ready);
  } else if (!arrived_.wait_for(lock, std::chrono::milliseconds(timeoutMs), ready)) {
    return WaitResult::nothing;
  }
  if (closed_) return WaitResult::closed;
  running_ = &handler;
  runner_ = std::this_thread::get_id();
  if (slot_ == Slot::sent) handleSent(lock, handler);
  if (!posted_.empty()) handlePosted(lock, handler);
  running_ = nullptr;
  return WaitResult::handled;
}

void UiMailbox::handleSent(std::unique_lock<std::mutex>& lock, const Handler& handler) {
  slot_ = Slot::inHand;
  lock.unlock();
  handler(*message_);
  lock.lock();
  slot_ = Slot::done;
  changed_.notify_all();
}

void UiMailbox::handlePosted(std::unique_lock<std::mutex>& lock, const Handler& handler) {
  takenPosts_.swap(posted_);
  lock.unlock();
  for (const UiMessage& message : takenPosts_) handler(message);
  takenPosts_.clear();
  lock.lock();
}

void UiMailbox::close() {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  arrived_.notify_all();
  changed_.notify_all();
}

}  // namespace vgps
