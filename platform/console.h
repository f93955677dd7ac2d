#pragma once

#include <functional>
#include <string>
#include <vector>

// What a program without a window needs of its terminal. Chosen at link time.
namespace vgps {

// The arguments after the program's name, as UTF-8; `argv` is what `main` got.
std::vector<std::string> commandLineArguments(int argc, char** argv);

// Whether standard output is a terminal that takes escape sequences; prepares it for them.
bool outputIsTerminal();

struct TerminalSize {
  int columns = 80;
  int rows = 24;
};

// Of the terminal behind standard output; the usual size when it is unknown.
TerminalSize terminalSize();

// Calls `handler` on a thread of its own when the person or the system asks the program to end
// (Ctrl-C, a closed terminal, a polite kill); asked a second time the program ends at once.
// To be called once, before any other thread is started.
void onStopRequest(std::function<void()> handler);

// Behind `onStopRequest`, for work that must not end in its middle: the next request is only noted
// from now on, and the one behind it ends the program at once.
void deferNextStopRequest();
// Whether one came since.
bool stopRequestWasDeferred();

}  // namespace vgps
