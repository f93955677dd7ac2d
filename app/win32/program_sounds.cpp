#include "app/win32/program_sounds.h"

#include <windows.h>

#include <mmsystem.h>

#include "app/session/apply_settings.h"
#include "platform/files.h"
#include "platform/win32/wide.h"

namespace vgps {

void ProgramSounds::useFilesOf(const Settings& settings) {
  const std::lock_guard lock(mutex_);
  for (const char* const name : {"OK", "ERR2", "TURN", "SPD", "FORBIDDEN"}) {
    files_[name] = soundFile(settings, name);
  }
}

std::string ProgramSounds::fileOf(const char* name) {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(name);
  return found == files_.end() ? std::string() : found->second;
}

void ProgramSounds::play(const char* name) { playSound(fileOf(name), name); }

void playSound(const std::string& file, const char* name) {
  const bool isThere = !file.empty() && fileExists(file) && !isFolder(file);
  if (isThere &&
      PlaySoundW(wideFromUtf8(file).c_str(), nullptr, SND_FILENAME | SND_ASYNC | SND_NODEFAULT)) {
    return;
  }
  PlaySoundW(wideFromUtf8(name).c_str(), GetModuleHandleW(nullptr),
             SND_RESOURCE | SND_ASYNC | SND_NODEFAULT);
}

}  // namespace vgps
