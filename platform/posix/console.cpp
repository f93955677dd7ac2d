#include "platform/console.h"

#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <string_view>
#include <thread>
#include <utility>

namespace vgps {
namespace {

std::atomic<bool> requestCame{false};
static_assert(std::atomic<bool>::is_always_lock_free);  // because a signal handler sets it

void noteRequest(int) { requestCame = true; }

}  // namespace

std::vector<std::string> commandLineArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

bool outputIsTerminal() {
  const char* const kind = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && kind != nullptr && std::string_view(kind) != "dumb";
}

TerminalSize terminalSize() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
    return {};
  }
  return {size.ws_col, size.ws_row};
}

// Blocks the signals in all threads started from now on and lets one thread wait for them, so that
// the handler may do anything a thread may do. A signal that is set to be ignored (nohup) stays
// ignored: waiting for it would re-enable it.
void onStopRequest(std::function<void()> handler) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction atStart {};
    const bool known = sigaction(each, nullptr, &atStart) == 0;
    if (!known || atStart.sa_handler != SIG_IGN) sigaddset(&signals, each);
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, handler = std::move(handler)] {
    int received = 0;
    if (sigwait(&signals, &received) != 0) return;
    noteRequest(received);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    handler();
    for (;;) pause();
  }).detach();
}

// If the first request has not come yet, the waiting thread still receives it.
void deferNextStopRequest() {
  requestCame = false;
  struct sigaction note {};
  note.sa_handler = noteRequest;
  note.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    const bool known = sigaction(each, nullptr, &before) == 0;
    if (!known || before.sa_handler != SIG_IGN) sigaction(each, &note, nullptr);
  }
}

bool stopRequestWasDeferred() { return requestCame; }

}  // namespace vgps
