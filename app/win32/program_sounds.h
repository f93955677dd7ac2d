#pragma once

#include <map>
#include <mutex>
#include <string>

#include "platform/sounds.h"

namespace vgps {

struct Settings;

// Starts the sound of a file, or the program's own of that name where the file is missing or none
// is named, and returns at once. A sound that the program does not have is silence.
void playSound(const std::string& file, const char* name);

// Plays the sound files of the settings, and the program's own sounds where none is set or the
// file is missing.
class ProgramSounds : public Sounds {
 public:
  // From now on those of `settings`.
  void useFilesOf(const Settings& settings);

  void play(const char* name) override;

 private:
  std::string fileOf(const char* name);

  std::mutex mutex_;  // sounds are played on the reader's thread too
  std::map<std::string, std::string, std::less<>> files_;
};

}  // namespace vgps
