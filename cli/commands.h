#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gps/talkers.h"

// The commands of `vgps`, one file each, with their options. A command returns the exit status; it
// is also 1 if a monitor received nothing, no port has a receiver, or a log is not one.
namespace vgps {

// Which of the two built-in simulations takes the place of a receiver.
enum class Simulated { none, walk, trip };

struct MonitorOptions {
  std::string port;
  uint32_t speed = 9600;
  Simulated simulated = Simulated::none;
  std::string logPath;  // empty: no log
  bool json = false;
  bool all = false;    // including internal values
  double seconds = 0;  // 0: until stopped
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
  std::vector<std::string> ports;  // empty: all ports of the system
  uint32_t speed = 9600;
  bool search = false;  // try all common baud rates instead of this one
  bool json = false;
};
int runPorts(const PortsOptions& options);

struct SettingsOptions {
  enum class Action { list, get, set };
  Action action = Action::list;
  std::string file;  // empty: vgps.xml in the program's folder
  bool json = false;
  std::string path, key, value;
};
int runSettings(const SettingsOptions& options);
// For `settings set`: inserts "--" before the value, which may look like an option, and moves the
// file option to the front. Returns other command lines unchanged.
std::vector<std::string> withValueMarked(std::vector<std::string> words);

struct XmlOptions {
  std::string file;
  std::string output;    // empty: do not write
  bool lenient = false;  // by the rules of XML, for other programs' files
};
int runXml(const XmlOptions& options);

// Records the fixes of a log, or live from a receiver, through the recording filter into a track
// file.
struct RecordOptions {
  std::string log;  // empty: live
  std::string port;
  uint32_t speed = 9600;
  Simulated simulated = Simulated::none;
  double seconds = 0;                                   // live; 0: until it is stopped
  std::optional<TalkerSetting> talkers = std::nullopt;  // none: as the settings say
  std::string output;
  std::string settings;  // empty: default settings
  int32_t utcOffsetMinutes = 0;
};
int runRecord(const RecordOptions& options);

// Files of any exchange format, logs and tracks into one file. The numbers of `as` are those of
// ConvertAs.
struct ConvertCommandOptions {
  std::vector<std::string> inputs;  // "-": standard input
  std::string output;               // "-": standard output
  std::string from;  // of standard input: a format by its extension; empty: recognized
  std::string to;    // a format by its extension; empty: that of the output
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
  std::string track;      // number (from 1) or name of a track in a library; empty: all
  int32_t speedUnit = 0;  // SpeedUnit of the speeds in the file
  bool asRecorded = false;
  bool json = false;
};
int runInfo(const InfoOptions& options);

// The track and waypoint libraries beside a settings file.
struct LibraryOptions {
  enum class Action { list, show, rename, remove, import, exportOne };
  Action action = Action::list;
  std::string file;        // the settings; empty: vgps.xml in the program's folder
  bool waypoints = false;  // instead of tracks
  bool json = false;
  std::string entry;  // number, from 1, or name; of an export also "all"
  std::string name;
  std::vector<std::string> inputs;
  std::string output;
};
int runLibrary(const LibraryOptions& options);

// Converts track files. Points are numbered from 1, as in the program.
struct TrackOptions {
  enum class Action { join, split, reverse, thin, trim };
  Action action = Action::join;
  std::vector<std::string> files;
  std::string output;
  std::string secondOutput;  // for a split
  uint32_t at = 0;           // for a split: the first point of the second part
  double meters = 0;         // for thinning; 0: the program's default
  double angle = 0;          // for thinning, degrees; 0: the program's default
  std::string from, to;      // for trimming: a point number or local time; empty: the track's end
};
int runTrack(const TrackOptions& options);

struct GeoOptions {
  enum class Action { distance, bearing, destination, area, utm, dms, mgrs, locator };
  Action action = Action::distance;
  std::vector<std::string> positions;  // each as LAT,LON
  int32_t unit = 0;                    // DistanceUnit
  int32_t ellipsoid = 0;               // index
  int digits = 0;                      // digits of each number of a grid reference
  int pairs = 0;                       // character pairs in a locator
  double course = 0;                   // degrees true
  double way = 0;                      // distance, in `unit`
  bool asRecorded = false;             // measure on the sphere, as when recording
  bool json = false;
};
int runGeo(const GeoOptions& options);

struct RecoverOptions {
  enum class Action { tell, continueRecording, save, discard };
  Action action = Action::tell;
  std::string journal;     // journal of `record`; empty: the program's journal
  bool discarded = false;  // use the recently discarded recordings
  uint32_t number = 0;     // of the discarded recording; 0: all
  std::string file;        // empty: vgps.xml in the program's folder
  // For continueRecording:
  std::string port;
  uint32_t speed = 9600;
  Simulated simulated = Simulated::none;
  double seconds = 0;  // 0: until stopped
};
int runRecover(const RecoverOptions& options);

// "cannot read FILE", or "FILE is not a regular file".
std::string cannotRead(const std::string& file);

// Prints one line to standard error and returns the exit status for failure.
int fail(std::string_view message);

// Prints a one-line warning to standard error.
void warn(std::string_view message);

// Flushes standard output. Reports an error (such as a full disk) and returns the exit status.
int finishOutput();

}  // namespace vgps
