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
static_assert(std::atomic<bool>::is_always_lock_free);  // it is set while a thread is interrupted

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

// The signals are blocked in every thread that is started from now on and taken by one thread that
// waits for them, so that the handler may do anything that a thread may do. A signal that whoever
// started the program wants to be ignored (nohup) stays so: waiting for it would bring it back.
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

// The thread that waits for the first one takes it, where that has not come yet.
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
