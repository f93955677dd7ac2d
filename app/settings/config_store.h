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

// The settings document "vgps.xml", open for the whole run of the program.
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

  // False when the system did not give the file's bytes: it is a folder, somebody else holds it, or
  // nobody may read it. What is in it may be whole.
  bool readable() const { return readable_; }
  // Whether the last reading or saving waited in vain for another program to be done with the file.
  bool heldByAnother() const { return heldByAnother_; }

  // Whether all that the file holds is known, and it is a document of settings or nothing yet.
  bool isFullyLoaded() const { return readable_ && !backUpBeforeSave_; }

  const std::string& path() const { return file_.path(); }

  // One setting as the document holds it, or its default. Strings are cut to the row's length,
  // never inside a character. Flags are the number that stands there.
  double number(const SettingRow& row);
  std::string string(const SettingRow& row);

  // Into the document, as the row's type is written: whole numbers and colours in decimal, other
  // numbers with two decimals.
  void set(const SettingRow& row, double value);
  void set(const SettingRow& row, std::string_view value);

  bool changed() const { return changed_; }
  bool changedOnly(std::span<const SettingGroup> groups) const {
    return changed_ && changes_.areOnlyOf(groups);
  }

  // A text of the document as it stands, whole; "" where there is none. Whoever sets one does not
  // set the member of `Settings`: that is what `refreshSettings` is for.
  std::string other(const std::string& path, const std::string& key);
  void setOther(const std::string& path, const std::string& key, const std::string& value);

  // One setting as the document holds it, corrected, into its member. A value that is no other one
  // when it is put back leaves alone what stands there.
  void take(const SettingRow& row, Settings& settings);
  // The member into the document.
  void put(const SettingRow& row, const Settings& settings);

  // Whether the document holds, since it was opened or this was asked, what no `put` brought:
  // another program has written the file, or `setOther` was called.
  bool hasNews();

  // Writes the document when it was changed; what another program wrote meanwhile stays, but for
  // the keys that were changed here. False when it could not be written, or another program did not
  // let go of the file; it stays changed then, and the file is as it was. Nothing is written over a
  // file that cannot be read.
  bool save();

  // Tells that the last `save` failed, unless that was told since one succeeded: the user hears it
  // once, and not with every setting. Whether it was told now.
  bool tellSaveFailure(const std::function<void(std::string_view message)>& tell);

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
  bool backUpBeforeSave_ = false;  // the file on disk is to be kept before it is overwritten
};

// What the start-up makes of the document: every key in the order of the table, with the
// corrections of its row.
Settings loadSettings(ConfigStore& store);

// What has come into the document by another way than `saveSettings`: the options grid, the raw
// editor, another program. False, and nothing was read, when there is no such thing. A flag that
// every start switches off stays as it is in this run.
bool refreshSettings(ConfigStore& store, Settings& settings);

// The value of a row after its correction.
double correctedNumber(const SettingRow& row, double value);

// The values of these groups into the document, and the document to disk. False when that failed.
bool saveSettings(ConfigStore& store, const Settings& settings,
                  std::span<const SettingGroup> groups);
inline bool saveSettings(ConfigStore& store, const Settings& settings, SettingGroup group) {
  return saveSettings(store, settings, std::span(&group, 1));
}

}  // namespace vgps
