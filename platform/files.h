#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

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

// By what a file is known to be the same as before.
struct FileStamp {
  uint64_t size = 0;  // bytes
  int64_t time = 0;   // of the last change, in the system's finest units from a start of its own
  bool operator==(const FileStamp&) const = default;
};
// False when there is no such file, or it is a folder.
bool fileStamp(const std::string& path, FileStamp& stamp);

// The names of the files in a folder, not of its folders, in no order.
std::vector<std::string> filesIn(const std::string& folder);

}  // namespace vgps
