#pragma once

#include <functional>
#include <string>
#include <vector>

// What a program without a window needs from its terminal. Chosen at link time.
namespace vgps {

// The arguments after the program's name, as UTF-8. Takes the arguments of `main`.
std::vector<std::string> commandLineArguments(int argc, char** argv);

// Whether standard output is a terminal that supports escape sequences; enables them if necessary.
bool outputIsTerminal();

struct TerminalSize {
  int columns = 80;
  int rows = 24;
};

// The size of the terminal at standard output; the default size if it is unknown.
TerminalSize terminalSize();

// Calls `handler` on a separate thread when the user or the system asks the program to stop
// (Ctrl-C, a closed terminal, a termination signal). A second request ends the program at once.
// Call this once, before starting other threads.
void onStopRequest(std::function<void()> handler);

// Call after `onStopRequest`, before work that must not be interrupted: the next request is only
// recorded, and the one after that ends the program at once.
void deferNextStopRequest();
// Whether a request was recorded since.
bool stopRequestWasDeferred();

}  // namespace vgps
