#include "gps/port_probe.h"

#include <gtest/gtest.h>

#include "tests/fakes/fake_serial_port.h"

namespace vgps {
namespace {

TEST(PortProbe, WhatTheBytesAre) {
  const std::string rmc =
      "$GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
  const std::string depth = "$SDDBT,7.2,f,2.2,M,1.2,F*07\r\n";
  std::string noise;
  for (int i = 0; i < 300; ++i) noise += static_cast<char>(0x80 + i * 37 % 128);
  const struct {
    const char* about;
    std::string bytes;
    ProbeResult result;
    std::string talker;
  } rows[] = {
      {"silence", "", ProbeResult::noData, ""},
      {"a receiver", rmc + depth, ProbeResult::found, "GN"},
      {"GGA of GPS", "$GPGGA,,,,,,0,,,,,,,,*66\r\n", ProbeResult::found, "GP"},
      {"from the middle of a sentence on", rmc.substr(30) + rmc, ProbeResult::found, "GN"},
      {"cut off before its line ends", rmc.substr(0, 40), ProbeResult::found, "GN"},
      {"position of something else", "$IIRMC,123519,A,,,,,,,,*00\r\n", ProbeResult::noPosition, ""},
      {"a depth sounder", depth + depth, ProbeResult::noPosition, ""},
      {"text", "login: \r\nPassword: \r\n", ProbeResult::notNmea, ""},
      {"SiRF binary", std::string("\xA0\xA2\x00\x01\x29\x00\x29\xB0\xB3", 9),
       ProbeResult::sirfBinary, ""},
      {"another speed", noise, ProbeResult::wrongSpeed, ""},
      {"a few bad bytes before a receiver", "\xFF\xFE" + rmc + rmc, ProbeResult::found, "GN"},
  };
  for (const auto& row : rows) {
    const ProbeReport answer = classifyBytes(row.bytes, 1000);
    EXPECT_EQ(answer.result, row.result) << row.about;
    EXPECT_EQ(answer.talker, row.talker) << row.about;
    EXPECT_STRNE(probeResultName(answer.result), "");
  }
  EXPECT_EQ(classifyBytes(rmc + depth + depth, 2000).sentencesPerSecond, 1.5);
}

TEST(PortProbe, WhatOpeningSays) {
  const struct {
    PortError error;
    bool setUpWorks;
    ProbeResult result;
  } rows[] = {{PortError::busy, true, ProbeResult::busy},
              {PortError::noPermission, true, ProbeResult::noPermission},
              {PortError::other, true, ProbeResult::cannotOpen},
              {PortError::none, false, ProbeResult::cannotOpen},
              {PortError::none, true, ProbeResult::noData}};
  for (const auto& row : rows) {
    FakePorts ports;
    FakeLine& line = ports.add("COM3");
    line.openError = row.error;
    line.setUpWorks = row.setUpWorks;
    EXPECT_EQ(probePort(*ports.make(), "COM3", 4800, 10).result, row.result);
    EXPECT_EQ(line.closes, row.error == PortError::none ? 1 : 0);
  }
  FakePorts none;
  EXPECT_EQ(probePort(*none.make(), "COM3", 4800, 10).result, ProbeResult::notFound);
}

TEST(PortProbe, ListensUntilTheTimeIsOver) {
  FakePorts ports;
  FakeLine& line = ports.add("COM3");
  line.feed("$GPGGA,");
  EXPECT_EQ(probePort(*ports.make(), "COM3", 19200, 50).talker, "GP");
  EXPECT_EQ(line.baudRate, 19200U);
  EXPECT_GE(line.reads, 2);
  line.unplug();
  EXPECT_EQ(probePort(*ports.make(), "COM3", 4800, 60000).result, ProbeResult::noData);
}

}  // namespace
}  // namespace vgps
