#include "app/settings/config_store.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "files/bad_copies.h"
#include "files/input_file.h"
#include "files/retry.h"
#include "platform/files.h"
#include "xml/profile.h"

namespace vgps {
namespace {

// Returns false if the file cannot be read to its end.
bool readBytes(const XmlFiles& files, const std::string& path, std::string& out) {
  void* const file = files.open(path, XmlFiles::Access::read);
  if (file == nullptr) return false;
  readToEnd([&](char* to, size_t size) { return files.read(file, to, size); }, out);
  return files.close(file);
}

// Retries, because another program may be using the file for a moment.
bool readSoon(const XmlFiles& files, const std::string& path, std::string& out) {
  constexpr int kTries = 10;
  return retry(kTries, std::chrono::milliseconds(20), [&] { return readBytes(files, path, out); });
}

// Overwrites the file or creates it.
bool writeBytes(const XmlFiles& files, const std::string& path, std::string_view bytes) {
  void* const file = files.open(path, XmlFiles::Access::overwrite);
  if (file == nullptr) return false;
  const bool whole = files.write(file, bytes.data(), bytes.size()) == bytes.size();
  return files.close(file) && whole;
}

// Whether there are bytes that never occur in text. UTF-16 files, which start with a mark, are
// text.
bool isBinary(std::string_view bytes) {
  const bool wide = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
  return !wide && bytes.find('\0') != std::string_view::npos;
}

}  // namespace

ConfigStore::ConfigStore(const XmlFiles& files) : files_(&files), document_(files) {}

bool ConfigStore::open(const std::string& path) {
  path_ = path;
  changed_ = news_ = saveFailed_ = saveFailureTold_ = false;
  changes_ = {};
  return load();
}

bool ConfigStore::load() {
  changes_.begin(path_);
  const XmlLoadStatus status = document_.Load(path_, XmlLoadMode::file).status;
  // A file that another program is using for a moment exists all the same, and its settings must
  // not be overwritten with defaults.
  FileStamp stamp;
  const bool missing =
      status == XmlLoadStatus::noFile && (!fileStamp(path_, stamp) || stamp.size == 0);
  const bool good = status == XmlLoadStatus::loaded || status == XmlLoadStatus::empty || missing;
  readable_ = good || status == XmlLoadStatus::noElement;
  backUpBeforeSave_ = !good || (status == XmlLoadStatus::loaded && isForeign());
  return good;
}

// Files of any kind may contain tags: another program's document, or even an executable.
bool ConfigStore::isForeign() {
  std::string bytes;
  return document_.GetRootElement().storedName() != "root" || !readBytes(*files_, path_, bytes) ||
         isBinary(bytes);
}

double ConfigStore::number(const SettingRow& row) {
  XmlDocument* const document = &document_;
  switch (row.type) {
    case SettingType::real:
      return XmlGetFloat(row.path, row.key, static_cast<float>(row.number), nullptr, document);
    case SettingType::colour:
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

bool ConfigStore::hasNews() {
  if (isFullyLoaded() && changes_.mergeIfFileChanged(document_, path_, *files_)) news_ = true;
  return std::exchange(news_, false);
}

bool ConfigStore::backUpFile() {
  if (!backUpBeforeSave_) return true;
  std::string bytes;
  backUpBeforeSave_ = !readBytes(*files_, path_, bytes) || keepAsBad(path_, bytes).empty();
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

// If the disk fails halfway, the old text is restored.
bool ConfigStore::writeDocument() {
  std::string old;
  const bool isNew = !fileExists(path_);
  if (!isNew && !readSoon(*files_, path_, old)) return false;
  if (document_.Save(path_) != 0) return true;
  std::string now;
  if (isNew) {
    removeFile(path_);
  } else if (!readBytes(*files_, path_, now) || now != old) {
    writeBytes(*files_, path_, old);
  }
  return false;
}

bool ConfigStore::save() {
  if (!changed_) return true;
  saveFailed_ = !isReadableNow();
  if (!saveFailed_ && !backUpBeforeSave_ && changes_.mergeIfFileChanged(document_, path_, *files_))
    news_ = true;
  saveFailed_ = saveFailed_ || !backUpFile() || !writeDocument();
  if (saveFailed_) return false;
  changes_.saved(path_);
  changed_ = saveFailureTold_ = false;
  return true;
}

bool ConfigStore::tellSaveFailure(const std::function<void(std::string_view message)>& tell) {
  if (!saveFailed_ || std::exchange(saveFailureTold_, true)) return false;
  tell(textWith(Text::settingsNotWritten, path_));
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
  if (!store.hasNews()) return false;
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
