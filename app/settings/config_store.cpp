#include "app/settings/config_store.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "files/bad_copies.h"
#include "files/file_lock.h"
#include "xml/foreign.h"
#include "xml/profile.h"

namespace vgps {
namespace {

// Tags can be found in files of any kind: a document of another program, or a program.
bool isForeign(const XmlDocument& document, std::string_view bytes) {
  return document.GetRootElement().storedName() != "root" || isBinary(bytes);
}

}  // namespace

ConfigStore::ConfigStore(const SettingsDisk& disk) : file_(disk), document_(*disk.files) {}

// Between programs one at a time reads or changes the file. A folder that takes no lock file takes
// no other change either. False when another program did not let go.
template <class Work>
bool ConfigStore::withLock(Work work) {
  const SettingsDisk& disk = file_.disk();
  const FileLock lock(lockPathOf(path()), disk.open, disk.waitForOthersMs);
  heldByAnother_ = lock.state() == FileOpening::inUse;
  return !heldByAnother_ && work();
}

bool ConfigStore::open(const std::string& path) {
  file_.setPath(path);
  changed_ = news_ = saveFailed_ = saveFailureTold_ = false;
  changes_ = {};
  const bool good = withLock([this] { return load(); });
  if (heldByAnother_) {
    document_ = XmlDocument(*file_.disk().files);
    bytes_.clear();
    readable_ = backUpBeforeSave_ = false;
  }
  return good;
}

bool ConfigStore::load() {
  changes_.begin(path());
  const SettingsFile::Reading reading = file_.read(bytes_);
  // A file that another program holds for a moment is there all the same, and its settings must
  // not be overwritten with defaults.
  const XmlLoadResult result = document_.Load(bytes_, XmlLoadMode::text);
  readable_ =
      reading != SettingsFile::Reading::unreadable && result.status != XmlLoadStatus::tooLarge;
  document_.setFileName(path());
  const bool missing = reading == SettingsFile::Reading::missing;
  const bool whole = result && result.rootEnds;
  backUpBeforeSave_ = readable_ && !missing && (!whole || isForeign(document_, bytes_));
  return missing || (readable_ && whole);
}

double ConfigStore::number(const SettingRow& row) {
  XmlDocument* const document = &document_;
  switch (row.type) {
    case SettingType::real:
      return XmlGetFloat(row.path, row.key, static_cast<float>(row.number), nullptr, document);
    case SettingType::color:
      return static_cast<uint32_t>(
          XmlGetInt64(row.path, row.key, static_cast<int64_t>(row.number), nullptr, document));
    case SettingType::integer:
    case SettingType::flag:
      return XmlGetInt(row.path, row.key, static_cast<int32_t>(row.number), nullptr, document);
    case SettingType::string: break;
  }
  return 0;
}

std::string ConfigStore::string(const SettingRow& row) {
  const std::string value = XmlGetString(row.path, row.key, row.text, nullptr, &document_);
  return std::string(firstUtf16Units(value, row.characters));
}

std::string ConfigStore::written(const SettingRow& row, double value) {
  return row.type == SettingType::real ? fixedText(value, 2)
                                       : decimalText(static_cast<int64_t>(value));
}

void ConfigStore::set(const SettingRow& row, double value) { set(row, written(row, value)); }

void ConfigStore::set(const SettingRow& row, std::string_view value) {
  const bool isNew = changes_.note(row, std::string(value));
  // Writes the value only if it changed here or is missing: another program may have written a
  // newer one.
  if (isNew || XmlGetString(row.path, row.key, "", nullptr, &document_).empty()) {
    XmlSetString(row.path, row.key, value, nullptr, &document_);
  }
  changed_ = true;
}

std::string ConfigStore::other(const std::string& path, const std::string& key) {
  return XmlGetString(path, key, "", nullptr, &document_);
}

void ConfigStore::setOther(const std::string& path, const std::string& key,
                           const std::string& value) {
  XmlSetString(path, key, value, nullptr, &document_);
  changes_.note(path, key, value);
  changed_ = news_ = true;
}

void ConfigStore::take(const SettingRow& row, Settings& settings) {
  if (row.type == SettingType::string) {
    setText(settings, row, string(row));
    changes_.setBaseline(row, textOf(settings, row));
    return;
  }
  const double value = number(row);
  const double corrected = correctedNumber(row, value);
  setNumber(settings, row, corrected);
  if (corrected == value) {
    changes_.setBaseline(row, written(row, value));
  } else {
    changes_.forget(row);  // the corrected value is written when its group is saved
  }
}

void ConfigStore::put(const SettingRow& row, const Settings& settings) {
  if (row.type == SettingType::string) {
    set(row, textOf(settings, row));
  } else {
    set(row, numberOf(settings, row));
  }
}

// What another program has written since, with the changes that were made here. False when the file
// is damaged; then the document stays as it is.
bool ConfigStore::mergeFile() {
  std::string now;
  if (file_.read(now) != SettingsFile::Reading::read || now == bytes_) return true;
  XmlDocument theirs(*file_.disk().files);
  const XmlLoadResult result = theirs.Load(now, XmlLoadMode::text);
  if (!result || !result.rootEnds) return false;
  changes_.begin(path());
  bytes_ = std::move(now);
  document_ = std::move(theirs);
  document_.setFileName(path());
  changes_.applyTo(document_);
  return news_ = true;
}

bool ConfigStore::hasExternalChanges() {
  if (isFullyLoaded() && changes_.isFileAnother(path())) withLock([this] { return mergeFile(); });
  return std::exchange(news_, false);
}

bool ConfigStore::backUpFile() {
  if (!backUpBeforeSave_) return true;
  std::string bytes;
  backUpBeforeSave_ = file_.read(bytes) != SettingsFile::Reading::read ||
                      saveBadCopy(path(), bytes, file_.disk().open).empty();
  return !backUpBeforeSave_;
}

// A file that is in use may be intact, so only our changes are written to it, as soon as it can be
// read.
bool ConfigStore::isReadableNow() {
  if (readable_) return true;
  load();
  changes_.applyTo(document_);
  news_ = news_ || readable_;
  return readable_;
}

bool ConfigStore::saveLocked() {
  if (!isReadableNow()) return false;
  if (!backUpBeforeSave_) backUpBeforeSave_ = !mergeFile();
  return backUpFile() && file_.write(document_, bytes_);
}

bool ConfigStore::save() {
  if (!changed_) return true;
  saveFailed_ = !withLock([this] { return saveLocked(); });
  if (saveFailed_) return false;
  changes_.saved(path());
  changed_ = saveFailureTold_ = false;
  return true;
}

bool ConfigStore::reportSaveFailureOnce(const std::function<void(std::string_view message)>& tell) {
  if (!saveFailed_ || std::exchange(saveFailureTold_, true)) return false;
  tell(textWith(Text::settingsNotWritten, path()));
  return true;
}

double correctedNumber(const SettingRow& row, double value) {
  switch (row.rule) {
    case RangeRule::upToFive: return value > 5 || value <= 0 ? row.number : value;
    case RangeRule::upToTen: return value > 10 ? 0 : value;
    case RangeRule::upToFifty: return value > 50 ? row.number : value;
    case RangeRule::notZero: return value == 0 ? row.number : value;
    case RangeRule::forcedOff: return 0;
    case RangeRule::none: break;
  }
  return value;
}

Settings loadSettings(ConfigStore& store) {
  Settings settings;
  for (const SettingRow& row : settingRows()) store.take(row, settings);
  return settings;
}

bool refreshSettings(ConfigStore& store, Settings& settings) {
  if (!store.hasExternalChanges()) return false;
  for (const SettingRow& row : settingRows()) {
    if (row.rule != RangeRule::forcedOff) store.take(row, settings);
  }
  return true;
}

bool saveSettings(ConfigStore& store, const Settings& settings,
                  std::span<const SettingGroup> groups) {
  for (const SettingRow& row : settingRows()) {
    if (std::find(groups.begin(), groups.end(), row.group) != groups.end()) {
      store.put(row, settings);
    }
  }
  return store.save();
}

}  // namespace vgps
