#pragma once

#include <cstdio>
#include <string>
#include <string_view>

// Paths are UTF-8 everywhere. Chosen at link time.
namespace vgps {

// fopen with a UTF-8 path; null when the system refuses.
std::FILE* openFile(const std::string& path, const char* mode);

// The folder of the running program, without a separator at its end.
std::string programFolder();

// The path of a file in a folder, with the system's separator between them.
std::string pathIn(std::string_view folder, std::string_view name);

bool isFolder(const std::string& path);

// Whether there is a file or folder of that name, also one that nobody may open.
bool fileExists(const std::string& path);

// Gives `from` the name `to` of the same folder, in place of what had that name. At no moment,
// not even of a power cut, is there neither of the two. False when everything is as it was.
bool replaceFile(const std::string& from, const std::string& to);

bool removeFile(const std::string& path);

}  // namespace vgps
