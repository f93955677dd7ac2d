#pragma once

#include <map>
#include <string>
#include <string_view>

#include "app/settings/settings.h"
#include "platform/files.h"
#include "xml/document.h"

namespace vgps {

// The changes this program made to the settings. If another program has written the file since it
// was read, only these changes are applied to the new contents.
class ConfigChanges {
 public:
  // The document at `path` was just read or written.
  void begin(const std::string& path) { fileExists_ = fileStamp(path, stamp_); }

  // Records the value that was read from the document, in its written form.
  void setBaseline(const SettingRow& row, std::string text) {
    baseline_[keyOf(row)] = std::move(text);
  }
  // Use this if the value was corrected after reading, so that the corrected one counts as changed.
  void forget(const SettingRow& row) { baseline_.erase(keyOf(row)); }
  // Whether a value differs from the last known one. If so, records it as a change.
  bool note(const SettingRow& row, const std::string& text);
  // Records a change of a key that is not in the table.
  void note(std::string path, std::string key, std::string text);

  // Whether there are changes, and only to settings in these groups.
  bool areOnlyOf(std::span<const SettingGroup> groups) const;

  // Whether another program seems to have written the file since it was read.
  bool isFileAnother(const std::string& path) const {
    FileStamp now;
    return fileStamp(path, now) && !(fileExists_ && now == stamp_);
  }
  // Applies the changes to another document.
  void applyTo(XmlDocument& document) const;
  void saved(const std::string& path) {
    changes_.clear();
    begin(path);
  }

 private:
  struct Key {
    std::string path, key;
    // NOLINTNEXTLINE(modernize-use-nullptr): the comparison with 0 that is made for it
    auto operator<=>(const Key&) const = default;
  };
  static Key keyOf(const SettingRow& row) { return {row.path, row.key}; }

  FileStamp stamp_;
  bool fileExists_ = false;
  std::map<Key, std::string> baseline_;
  std::map<Key, std::string> changes_;
};

}  // namespace vgps
