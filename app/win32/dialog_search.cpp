#include "app/win32/dialog_search.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace vgps {
namespace {

constexpr std::chrono::milliseconds kLettingGo{300};

}  // namespace

struct DialogSearch::Run {
  std::mutex mutex;       // protects everything below
  HWND dialog = nullptr;  // null: the dialog is closed
  bool ended = false;
  std::condition_variable settled;
  std::vector<uint32_t> answered;

  std::optional<uint32_t> testing;

  // Returns false if the dialog is gone.
  bool tell(uint32_t port) {
    const std::lock_guard lock(mutex);
    if (dialog != nullptr && testing != port) PostMessageW(dialog, kTesting, port, 0);
    testing = port;
    return dialog != nullptr;
  }
};

void DialogSearch::start(HWND dialog, PortSearch search) {
  end();
  run_ = std::make_shared<Run>();
  run_->dialog = dialog;
  std::thread([run = run_, search = std::move(search)] {
    std::vector<uint32_t> answered = search([&](uint32_t port) { return !run->tell(port); });
    const std::lock_guard lock(run->mutex);
    run->answered = std::move(answered);
    run->ended = true;
    run->settled.notify_all();
    if (run->dialog != nullptr) PostMessageW(run->dialog, kEnded, 0, 0);
  }).detach();
}

std::vector<uint32_t> DialogSearch::end() {
  const std::shared_ptr<Run> run = std::exchange(run_, nullptr);
  if (run == nullptr) return {};
  std::unique_lock lock(run->mutex);
  run->dialog = nullptr;
  run->settled.wait_for(lock, kLettingGo, [&] { return run->ended; });
  return std::move(run->answered);
}

}  // namespace vgps
