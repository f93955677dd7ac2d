#include "track/file_names.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

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
  constexpr size_t kFront = 3;
  if (!stem.starts_with("COM") && !stem.starts_with("LPT")) return false;
  const std::string_view number = std::string_view(stem).substr(kFront);
  constexpr std::string_view kSuperscripts[] = {"\u00B9", "\u00B2", "\u00B3"};
  return (number.size() == 1 && isDigit(number[0])) ||
         std::find(std::begin(kSuperscripts), std::end(kSuperscripts), number) !=
             std::end(kSuperscripts);
}

// File systems take 255 bytes; the rest is for a number and the extension.
std::string_view shortened(std::string_view name) {
  constexpr size_t kLongest = 200;
  if (name.size() <= kLongest) return name;
  size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80) --end;
  return name.substr(0, end);
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
  std::string file(shortened(name));
  for (char& c : file) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos) c = '_';
  }
  return isDevice(file) ? "_" + file : file;
}

std::string freeTrackPath(std::string_view folder, std::string_view name) {
  return firstFree(folder, name, " - ", 0, 9);
}

std::string laterTrackPath(std::string_view folder, std::string_view name) {
  return firstFree(folder, name, " - ", 10, 999);
}

std::string freeImportPath(std::string_view folder, std::string_view name) {
  return firstFree(folder, name, "-", 1, 99);
}

}  // namespace vgps
