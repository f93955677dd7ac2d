#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "app/settings/config_changes.h"
#include "app/settings/settings.h"
#include "app/settings/settings_file.h"
#include "xml/document.h"

namespace vgps {

// The settings document "vgps.xml", kept in memory while the program runs.
class ConfigStore {
 public:
  explicit ConfigStore(const SettingsDisk& disk = {});

  // Reads the file at `path`, which is used from then on. Returns false if the file exists but is
  // not a complete document: it is empty, has no element, or ends before its root element does.
  // Then the readable part is used, other keys have their defaults, and the file is copied to
  // "vgps.bad" next to it ("vgps-2.bad" etc. if that exists) before it is overwritten. The same
  // copy is made of a file that is readable but not a settings document. A missing file is normal:
  // the first start of the program.
  bool open(const std::string& path);

  // Returns false if the file's contents could not be read: it is a folder, in use by another
  // program, or access is denied. Its contents may be intact.
  bool readable() const { return readable_; }
  // Whether the last load or save timed out because another program was using the file.
  bool heldByAnother() const { return heldByAnother_; }

  // Whether the file was read completely and is a settings document or empty.
  bool isFullyLoaded() const { return readable_ && !backUpBeforeSave_; }

  const std::string& path() const { return file_.path(); }

  // The value of a setting in the document, or its default. Strings are limited to the row's
  // length, without splitting a character. Flags are returned as the stored number.
  double number(const SettingRow& row);
  std::string string(const SettingRow& row);

  // Writes a value to the document in the format of the row's type: whole numbers and colors in
  // decimal, other numbers with two decimals.
  void set(const SettingRow& row, double value);
  void set(const SettingRow& row, std::string_view value);

  bool changed() const { return changed_; }
  bool changedOnly(std::span<const SettingGroup> groups) const {
    return changed_ && changes_.areOnlyOf(groups);
  }

  // Any value of the document in full length; "" if it does not exist. setOther does not update the
  // member of `Settings`; call `refreshSettings` for that.
  std::string other(const std::string& path, const std::string& key);
  void setOther(const std::string& path, const std::string& key, const std::string& value);

  // Reads a setting from the document, corrects it, and stores it in its member. Writing the same
  // value back with `put` does not change the document.
  void take(const SettingRow& row, Settings& settings);
  // Writes the member to the document.
  void put(const SettingRow& row, const Settings& settings);

  // Whether the document has changed, since it was opened or since the last call, other than
  // through `put`: another program has written the file, or `setOther` was called.
  bool hasExternalChanges();

  // Writes the document if it was changed. Changes made by other programs meanwhile are kept,
  // except for keys that were changed here too. Returns false if writing failed or another program
  // did not release the file; then the file is unchanged and the changes are still pending. A file
  // that cannot be read is never overwritten.
  bool save();

  // Reports that the last `save` failed, unless that was reported since the last success, so that
  // the user is told once and not for every setting. Returns whether it was reported now.
  bool reportSaveFailureOnce(const std::function<void(std::string_view message)>& tell);

 private:
  template <class Work>
  bool withLock(Work work);
  bool load();
  bool isReadableNow();
  bool mergeFile();
  bool saveLocked();
  bool backUpFile();
  static std::string written(const SettingRow& row, double value);

  SettingsFile file_;
  XmlDocument document_;
  std::string bytes_;  // the file's contents when last read or written
  ConfigChanges changes_;
  bool changed_ = false;
  bool news_ = false;
  bool readable_ = true;
  bool heldByAnother_ = false;
  bool saveFailed_ = false;
  bool saveFailureTold_ = false;
  bool backUpBeforeSave_ = false;  // back up the file on disk before overwriting it
};

// Reads all settings at startup, in the order of the table, and applies the correction of each row.
Settings loadSettings(ConfigStore& store);

// Reads settings that reached the document other than through `saveSettings`: from the options
// grid, the raw editor, or another program. Returns false if there are none. A flag that is
// switched off at every start keeps its current value.
bool refreshSettings(ConfigStore& store, Settings& settings);

// The value of a row after its correction.
double correctedNumber(const SettingRow& row, double value);

// Writes the values of these groups to the document and saves it. Returns false if saving failed.
bool saveSettings(ConfigStore& store, const Settings& settings,
                  std::span<const SettingGroup> groups);
inline bool saveSettings(ConfigStore& store, const Settings& settings, SettingGroup group) {
  return saveSettings(store, settings, std::span(&group, 1));
}

}  // namespace vgps
