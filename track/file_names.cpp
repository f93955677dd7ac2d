#include "track/file_names.h"

#include <cstdio>

#include "base/number.h"
#include "platform/files.h"

namespace vgps {
namespace {

// The first unused path "NAME<between>NUMBER.XML" with a number in the range; number 0 has no
// suffix.
std::string firstFree(std::string_view folder, std::string_view name, std::string_view between,
                      int first, int last) {
  const std::string stem = fileNameFrom(name);
  for (int number = first; number <= last; ++number) {
    std::string file = stem;
    if (number > 0) file.append(between).append(std::to_string(number));
    std::string path = pathIn(folder, file + ".XML");
    if (!fileExists(path)) return path;
  }
  return {};
}

// Windows reserves these names for devices, in every folder and with any extension.
bool isDevice(std::string_view name) {
  std::string stem(name.substr(0, name.find('.')));
  stem.erase(stem.find_last_not_of(' ') + 1);
  for (char& c : stem) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  for (const char* device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"}) {
    if (stem == device) return true;
  }
  constexpr size_t kNumbered = 4;
  return stem.size() == kNumbered && isDigit(stem.back()) &&
         (stem.starts_with("COM") || stem.starts_with("LPT"));
}

}  // namespace

std::string trackNameFromTime(const DateTime& local) {
  char name[64];
  std::snprintf(name, sizeof name, "Track%02u_%02u_%02u_%02u_%02u", unsigned{local.day},
                unsigned{local.month}, unsigned{local.year}, unsigned{local.hour},
                unsigned{local.minute});
  return name;
}

std::string fileNameFrom(std::string_view name) {
  std::string file(name);
  for (char& c : file) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos) c = '_';
  }
  return isDevice(file) ? "_" + file : file;
}

std::string freeTrackPath(std::string_view folder, std::string_view name) {
  return firstFree(folder, name, " - ", 0, 9);
}

std::string freeImportPath(std::string_view folder, std::string_view name) {
  return firstFree(folder, name, "-", 1, 99);
}

}  // namespace vgps
