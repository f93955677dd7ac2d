#pragma once

#include <string>

#include "platform/exclusive_file.h"
#include "xml/document.h"

namespace vgps {

// What the settings' file is read and written with; a test lets it fail.
struct SettingsDisk {
  const XmlFiles* files = &systemFiles();
  ExclusiveOpener open = openExclusive;
  int waitForOthersMs = 5000;  // for another program that reads or writes the file
};

// The bytes of vgps.xml. Programs that read or write them take turns by the file's lock, which the
// caller holds; a save that was interrupted is finished before anything else.
class SettingsFile {
 public:
  explicit SettingsFile(const SettingsDisk& disk) : disk_(disk) {}

  void setPath(const std::string& path) { path_ = path; }
  const std::string& path() const { return path_; }
  const SettingsDisk& disk() const { return disk_; }

  enum class Reading { read, missing, unreadable };
  Reading read(std::string& bytes);

  // Saves the document in place; `text` is then what the file holds. False when it could not be
  // written: the file has its old text again, or gets one of the two from the next `read`.
  bool write(XmlDocument& document, std::string& text);

 private:
  Reading readBytes(std::string& bytes) const;
  Reading readWithRetry(std::string& bytes) const;
  bool writeBytes(std::string_view bytes) const;
  bool finishInterrupted(std::string& text);

  SettingsDisk disk_;
  std::string path_;
};

}  // namespace vgps
