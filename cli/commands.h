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

// Fixes of a log through the recording filter into a track file.
struct RecordOptions {
  std::string log;
  std::string output;
  std::string settings;  // empty: those of a program that starts for the first time
  int32_t utcOffsetMinutes = 0;
};
int runRecord(const RecordOptions& options);

// Files of any exchange format, logs and tracks into one file. The numbers of `as` are those of
// ConvertAs.
struct ConvertCommandOptions {
  std::vector<std::string> inputs;
  std::string output;  // "-": standard output
  std::string to;      // a format by its extension; empty: that of the output
  int as = 0;
  int gpx = 11;  // 10 or 11
  std::string name;
  bool allPoints = false;
  bool join = false;
  bool report = false;
};
int runConvert(const ConvertCommandOptions& options);

struct InfoOptions {
  std::string file;
  int32_t speedUnit = 0;  // SpeedUnit of the file's speeds
  bool json = false;
};
int runInfo(const InfoOptions& options);

// A track file into another. Points count from 1, as the program numbers them.
struct TrackOptions {
  enum class Action { join, split, reverse, thin, trim };
  Action action = Action::join;
  std::vector<std::string> files;
  std::string output;
  std::string secondOutput;  // of a split
  uint32_t at = 0;           // of a split: the first point of the second part
  double metres = 0;         // of thinning; 0: the program's own
  double angle = 0;          // likewise, degrees
  std::string from, to;      // of trimming: a point's number or a local time; empty: the end
};
int runTrack(const TrackOptions& options);

struct GeoOptions {
  enum class Action { distance, bearing, destination, area, utm, dms, mgrs, locator };
  Action action = Action::distance;
  std::vector<std::string> positions;  // LAT,LON each
  int32_t unit = 0;                    // DistanceUnit
  int32_t ellipsoid = 0;               // index
  int digits = 0;                      // of each of a grid reference's two numbers
  int pairs = 0;                       // of characters in a locator
  double course = 0;                   // degrees true
  double way = 0;                      // in the unit
  bool json = false;
};
int runGeo(const GeoOptions& options);

struct RecoverOptions {
  enum class Action { tell, continueRecording, save, discard };
  Action action = Action::tell;
  std::string file;  // empty: vgps.xml beside the program
  // Of continueRecording:
  std::string port;
  uint32_t speed = 9600;
  bool simulate = false;
  double seconds = 0;  // 0: until it is stopped
};
int runRecover(const RecoverOptions& options);

// One clear line on standard error; the exit status of a failure.
int fail(std::string_view message);

// One line on standard error about something that does not end the command.
void warn(std::string_view message);

// Writes to standard output what is still held back; a failure (a full disk) is told.
int finishOutput();

}  // namespace vgps
