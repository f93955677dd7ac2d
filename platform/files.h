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

// Standard input in binary mode.
std::FILE* standardInput();

// The folder of the running program, without a trailing separator.
std::string programFolder();

// The path of a file in a folder, joined with the system's separator.
std::string pathIn(std::string_view folder, std::string_view name);

bool isFolder(const std::string& path);

// Creates the folder if necessary. Returns false if it does not exist afterwards. Its parent folder
// must exist.
bool makeFolder(const std::string& path);

// Whether a file or folder of that name exists, even if it cannot be opened.
bool fileExists(const std::string& path);

// Renames `from` to `to` in the same folder, replacing an existing `to`. One of the two files
// exists at every moment, even during a power failure. Returns false if nothing was changed.
bool replaceFile(const std::string& from, const std::string& to);

// The result of renaming without replacing.
enum class RenameResult {
  renamed,
  taken,    // a file, folder, or link has that name; nothing was changed
  refused,  // failed for another reason; nothing was changed
};

// Renames `from` to `to` in the same folder unless `to` exists.
RenameResult renameUnlessTaken(const std::string& from, const std::string& to);

// What a path refers to after following all links.
enum class FileKind {
  none,     // nothing exists there
  regular,  // bytes on a disk
  other,    // a folder, a device, a pipe, or inaccessible
};
FileKind fileKind(const std::string& path);

// Whether a folder, device, or pipe has this name, which must not be opened as a file.
bool isNotAFile(const std::string& path);

// The path of the actual file after following all links (it need not exist). Empty if the links
// lead nowhere.
std::string resolveLinks(const std::string& path);

// Whether two paths refer to the same file, even one that does not exist yet.
bool isSameFile(const std::string& a, const std::string& b);

// Gives `to` the access permissions of `from`, as far as the system permits.
void copyPermissions(const std::string& from, const std::string& to);

bool removeFile(const std::string& path);

// Flush a file, or the names in its folder, to disk. The first returns false if the system reports
// an error; the second does what the system allows.
bool flushFile(const std::string& path);
void flushFolderOf(const std::string& path);

// Used to tell whether a file has changed.
struct FileStamp {
  uint64_t size = 0;  // bytes
  // The time of the last change, in system-specific units.
  int64_t time = 0;
  bool operator==(const FileStamp&) const = default;
};
// Returns false if there is no such regular file.
bool fileStamp(const std::string& path, FileStamp& stamp);

// The time since the file was last changed, in seconds by the system's clock; negative if it lies
// in the future, 0 if there is no such file.
double fileAge(const std::string& path);

// The reason of the last system error on this thread. Valid only directly after the call that
// failed.
enum class FileFault {
  unknown,
  noFolder,
  notAFolder,
  isFolder,
  noPermission,
  noSpace,
  inUse,
  badName
};
FileFault lastFileFault();

// The names of the files in a folder (without subfolders), in no particular order.
std::vector<std::string> filesIn(const std::string& folder);

}  // namespace vgps
