#pragma once

#include <cstdio>
#include <string>

// Paths are UTF-8 everywhere. Chosen at link time.
namespace vgps {

// fopen with a UTF-8 path; null when the system refuses.
std::FILE* openFile(const std::string& path, const char* mode);

// The folder of the running program, without a separator at its end.
std::string programFolder();

}  // namespace vgps
