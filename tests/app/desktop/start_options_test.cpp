#include "app/desktop/start_options.h"

#include <gtest/gtest.h>

#include <vector>

namespace vgps {
namespace {

struct Row {
  std::vector<std::string> arguments;
  std::string port;
  uint32_t speed;
  bool simulate;
  std::string unknownArguments;
};

TEST(StartOptions, AreReadFromTheCommandLine) {
  const Row rows[] = {
      {{}, "", 9600, false, ""},
      {{"--port", "COM3"}, "COM3", 9600, false, ""},
      {{"--port=COM3", "--speed=4800"}, "COM3", 4800, false, ""},
      {{"--speed", "115200", "--simulate"}, "", 115200, true, ""},
      {{"--simulate", "--port", "COM12"}, "COM12", 9600, true, ""},
      {{"-log", "--port", "COM3", "file.gpx"}, "COM3", 9600, false, "file.gpx"},
      {{"--port"}, "", 9600, false, "--port"},
      {{"--port", "--simulate"}, "", 9600, true, "--port"},
      {{"--port="}, "", 9600, false, "--port="},
      {{"--speed", "fast"}, "", 9600, false, "--speed fast"},
      {{"--speed=-1"}, "", 9600, false, "--speed=-1"},
      {{"--speed=0", "--simulate=1"}, "", 9600, false, "--speed=0 --simulate=1"},
      {{"--port=COM3=x"}, "COM3=x", 9600, false, ""},
  };
  for (const Row& row : rows) {
    const StartOptions options = parseStartOptions(row.arguments);
    const std::string what = row.arguments.empty() ? "" : row.arguments[0];
    EXPECT_EQ(options.port, row.port) << what;
    EXPECT_EQ(options.speed, row.speed) << what;
    EXPECT_EQ(options.simulate, row.simulate) << what;
    EXPECT_EQ(options.unknownArguments, row.unknownArguments) << what;
    EXPECT_EQ(options.connects(), row.simulate || !row.port.empty()) << what;
  }
}

}  // namespace
}  // namespace vgps
