#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "app/session/receiver_search.h"
#include "gps/port_finder.h"

namespace vgps {

struct FinderSetup {
  std::vector<PortName> (*listPorts)() = listSerialPorts;
  PortFinder::MakePort makePort = makeSerialPort;
  PortFinderTimes times{};
  bool night = false;  // use night colors
};

// A cell of a list, up to 200 characters.
std::wstring cellText(HWND list, int row, int column);

// Searches all ports for a receiver and lets the user choose among the results. Empty if nothing
// was chosen. Close the program's own connection first: its port would be busy.
std::optional<FoundReceiver> runFinder(HINSTANCE resources, HWND owner,
                                       const FinderSetup& setup = {});

}  // namespace vgps
