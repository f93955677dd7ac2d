#pragma once

#include <string>

#include "platform/exclusive_file.h"
#include "xml/document.h"

namespace vgps {

// The operations for reading and writing the settings file; tests make them fail.
struct SettingsDisk {
  const XmlFiles* files = &systemFiles();
  ExclusiveOpener open = openExclusive;
  int waitForOthersMs = 5000;  // wait for another program that is using the file
};

// The contents of vgps.xml. Programs take turns reading and writing it with a lock, which the
// caller must hold. An interrupted save is completed before anything else.
class SettingsFile {
 public:
  explicit SettingsFile(const SettingsDisk& disk) : disk_(disk) {}

  void setPath(const std::string& path) { path_ = path; }
  const std::string& path() const { return path_; }
  const SettingsDisk& disk() const { return disk_; }

  enum class Reading { read, missing, unreadable };
  Reading read(std::string& bytes);

  // Saves the document in place and sets `text` to the contents of the file. Returns false if it
  // could not be written: then the file has its old text again, or the next `read` restores the old
  // or the new one.
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
