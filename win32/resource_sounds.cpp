#include "win32/resource_sounds.h"

#include <windows.h>

#include <mmsystem.h>

#include "win32/wide.h"

namespace vgps {

void ResourceSounds::play(const char* name) {
  PlaySoundW(wideFromUtf8(name).c_str(), GetModuleHandleW(nullptr),
             SND_RESOURCE | SND_ASYNC | SND_NODEFAULT);
}

}  // namespace vgps
