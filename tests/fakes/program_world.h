#pragma once

#include <gtest/gtest.h>

#include "app/desktop/startup.h"
#include "tests/fakes/app_world.h"
#include "tests/fakes/test_folder.h"

namespace vgps {

// The desktop program in a folder of its own, without its window.
struct ProgramWorld : AppWorld {
  ProgramWorld() {
    app.paths = pathsOf(folder.path());
    app.paths.backup = folder / "vgpsbackup.gpx";
    app.paths.temporary = folder.path();
  }
  ~ProgramWorld() {
    app.recorder.closeJournal();
    EXPECT_TRUE(app.fix.stopReaders(10000));
  }

  // vgps.xml with these attributes of "cfg\vgps" and "cfg\gps", loaded as the start does.
  void load(const std::string& vgps, const std::string& gps = {}) {
    folder.write("vgps.xml", "<root><cfg><vgps " + vgps + "/><gps " + gps + "/></cfg></root>");
    startSettings(app);
  }

  // A complete fix; each call stands a little further north and is a second later.
  void receiveFix(double kmh = 36) {
    clock.now += 1000;
    minutes_ += 1;
    std::string minutes = std::to_string(minutes_);
    minutes.insert(0, 2 - minutes.size(), '0');
    const std::string place = "48" + minutes + ".038,N,01131.000,E,";
    receive("$GPRMC,1235" + minutes + ",A," + place + std::to_string(kmh / 1.852) +
            ",084.4,230394,003.1,W*6A\r\n$GPGGA,1235" + minutes + "," + place +
            "1,08,0.9,545.4,M,46.9,M,,*47\r\n");
  }

  // How many points each track of the library has.
  std::vector<uint64_t> savedPoints() {
    std::vector<uint64_t> points;
    if (!app.recorder.library.isOpen()) return points;
    app.recorder.library.refresh();
    for (const TrackSummary& track : app.recorder.library.tracks()) points.push_back(track.points);
    return points;
  }

  TestFolder folder;

 private:
  int minutes_ = 0;
};

}  // namespace vgps
