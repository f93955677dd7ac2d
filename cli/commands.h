#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gps/talkers.h"

// The commands of `vgps`, one file each, and what the command line says to them. A command returns
// the exit status.
namespace vgps {

struct MonitorOptions {
  std::string port;
  uint32_t speed = 9600;
  bool simulate = false;
  std::string logPath;  // empty: no log
  bool json = false;
  double seconds = 0;  // 0: until it is stopped
};
int runMonitor(const MonitorOptions& options);

struct ReplayOptions {
  std::string path;
  bool json = false;
  bool lines = false;
  TalkerSetting talkers = TalkerSetting::automatic;
  int32_t utcOffsetMinutes = 0;  // UTC minus local time
};
int runReplay(const ReplayOptions& options);

struct PortsOptions {
  std::vector<std::string> ports;  // empty: those of the system
  uint32_t speed = 9600;
  bool json = false;
};
int runPorts(const PortsOptions& options);

struct SettingsOptions {
  enum class Action { list, get, set };
  Action action = Action::list;
  std::string file;  // empty: vgps.xml beside the program
  bool json = false;
  std::string path, key, value;
};
int runSettings(const SettingsOptions& options);
// The command line with "--" in front of the value that `settings set` is given, which may look
// like an option, and with the file before everything else. Other command lines stay as they are.
std::vector<std::string> withValueMarked(std::vector<std::string> words);

struct XmlOptions {
  std::string file;
  std::string output;  // empty: nothing is written
};
int runXml(const XmlOptions& options);

struct RecoverOptions {
  enum class Action { tell, goOn, save, discard };
  Action action = Action::tell;
  std::string file;  // empty: vgps.xml beside the program
  // Of goOn:
  std::string port;
  uint32_t speed = 9600;
  bool simulate = false;
  double seconds = 0;  // 0: until it is stopped
};
int runRecover(const RecoverOptions& options);

// One clear line on standard error; the exit status of a failure.
int fail(std::string_view message);

// Writes to standard output what is still held back; a failure (a full disk) is told.
int finishOutput();

}  // namespace vgps
