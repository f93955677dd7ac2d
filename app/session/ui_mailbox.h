#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/ui_thread.h"

namespace vgps {

// The message channel to the user-interface thread of a program without a window: one slot for a
// sent message, whose sender blocks until it is handled, and a queue for posted messages. The
// thread that calls `wait` is the user-interface thread.
class UiMailbox : public UiThread {
 public:
  using Handler = std::function<void(const UiMessage&)>;

  enum class WaitResult { handled, nothing, closed };

  // When called by a handler, calls the handler directly, like sending to one's own window.
  bool send(const UiMessage& message) override;
  void post(const UiMessage& message) override;

  // Waits up to `timeoutMs` (-1: forever) for messages and handles those that are there.
  WaitResult wait(int timeoutMs, const Handler& handler);

  // Callable from any thread: makes every waiting and later `send` return false and `wait` return
  // at once. The message being handled is completed first, and its sender's `send` returns true.
  void close();

 private:
  enum class Slot { free, sent, inHand, done };

  bool somethingToDo() const { return closed_ || slot_ == Slot::sent || !posted_.empty(); }
  void handleSent(std::unique_lock<std::mutex>& lock, const Handler& handler);
  void handlePosted(std::unique_lock<std::mutex>& lock, const Handler& handler);

  std::mutex mutex_;
  std::condition_variable arrived_;  // for the user-interface thread
  std::condition_variable changed_;  // for senders: the slot is free or done
  Slot slot_ = Slot::free;
  const UiMessage* message_ = nullptr;  // from the waiting sender
  std::vector<UiMessage> posted_;
  std::vector<UiMessage> takenPosts_;  // used by the user-interface thread
  const Handler* running_ = nullptr;
  std::thread::id runner_;
  bool closed_ = false;
};

}  // namespace vgps
