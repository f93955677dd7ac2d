#pragma once

#include <map>
#include <mutex>
#include <string>

#include "platform/sounds.h"

namespace vgps {

struct Settings;

// Starts playing a sound file, or the program's own sound `name` if the file is missing or `file`
// is empty, and returns at once. An unknown sound is silent.
void playSound(const std::string& file, const char* name);

// Plays the sound files in the settings, or the program's own sounds where none is set or the file
// is missing.
class ProgramSounds : public Sounds {
 public:
  // Uses the sound files of `settings` from now on.
  void useFilesOf(const Settings& settings);

  void play(const char* name) override;

 private:
  std::string fileOf(const char* name);

  std::mutex mutex_;  // sounds are also played on the reader's thread
  std::map<std::string, std::string, std::less<>> files_;
};

}  // namespace vgps
