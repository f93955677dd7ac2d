#include "platform/console.h"

#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>
#include <thread>
#include <utility>

namespace vgps {

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
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    handler();
    for (;;) pause();
  }).detach();
}

}  // namespace vgps
