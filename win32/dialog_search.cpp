#include "win32/dialog_search.h"

#include <utility>

namespace vgps {

DialogSearch::~DialogSearch() {
  cancel();
  if (thread_.joinable()) thread_.join();
}

void DialogSearch::start(HWND dialog, PortSearch search) {
  if (isRunning()) return;
  cancelled_ = false;
  thread_ = std::thread([this, dialog, search = std::move(search)] {
    WPARAM port = 0;
    answered_ = search([&] {
      if (!cancelled_) PostMessageW(dialog, kTesting, port++, 0);
      return cancelled_.load();
    });
    PostMessageW(dialog, kEnded, 0, 0);
  });
}

std::vector<uint32_t> DialogSearch::take() {
  thread_.join();
  return std::exchange(answered_, {});
}

}  // namespace vgps
