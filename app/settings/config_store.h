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

  // Reads the file; from then on the store speaks of it. False when the file is there and is no
  // whole document: empty, without an element, or cut off before its root ends. What can be read is
  // used, other keys have their defaults, and the file is copied to "vgps.bad" beside it before it
  // is overwritten ("vgps-2.bad" and on where there are earlier ones). So is one that can be read
  // but is no document of settings. A missing file is none of that: a program that starts for the
  // first time.
  bool open(const std::string& path);

  // Returns false if the file's contents could not be read: it is a folder, in use by another
  // program, or access is denied. Its contents may be intact.
  bool readable() const { return readable_; }
  // Whether the last reading or saving waited in vain for another program to be done with the file.
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

  // Writes the document when it was changed; what another program wrote meanwhile stays, but for
  // the keys that were changed here. False when it could not be written, or another program did not
  // let go of the file; it stays changed then, and the file is as it was. Nothing is written over a
  // file that cannot be read.
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
  std::string bytes_;  // the file as it was read or written last
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
