#pragma once

#include <string>

#include "gps/gps_fix.h"
#include "tests/fakes/fake_clock.h"
#include "tests/fakes/fake_hooks.h"
#include "tests/fakes/fake_serial_port.h"

namespace vgps {

// A fix with everything around it, a world of its own for each test.
struct GpsWorld {
  GpsWorld() {
    state.makePort = [this] { return ports.make(); };
  }

  // Parses one line into the fix.
  NmeaSentence parse(const std::string& line, bool apply = true) {
    NmeaSentence out;
    accepted = fix.parseSentence(line, out, apply);
    return out;
  }

  FakeHooks hooks;
  FakeClock clock;
  FakePorts ports;
  GpsState state{hooks, clock};
  GpsFix fix{state};
  bool accepted = false;
};

}  // namespace vgps
