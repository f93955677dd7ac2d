#include "app/config_store.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "platform/files.h"
#include "xml/profile.h"

namespace vgps {
namespace {

// "vgps.xml" becomes "vgps.bad".
std::string badName(const std::string& path) {
  const size_t name = path.find_last_of("/\\") + 1;
  const size_t dot = path.rfind('.');
  return path.substr(0, dot == std::string::npos || dot < name ? path.size() : dot) + ".bad";
}

bool copyFile(const XmlFiles& files, const std::string& from, const std::string& to) {
  void* const source = files.open(from, XmlFiles::Access::read);
  if (source == nullptr) return false;
  void* const target = files.open(to, XmlFiles::Access::overwrite);
  bool good = target != nullptr;
  std::vector<char> buffer(65536);
  for (size_t got = buffer.size(); good && got == buffer.size();) {
    got = files.read(source, buffer.data(), buffer.size());
    good = files.write(target, buffer.data(), got) == got;
  }
  good = files.close(source) && good;
  if (target != nullptr) good = files.close(target) && good;
  return good;
}

}  // namespace

ConfigStore::ConfigStore(const XmlFiles& files) : files_(&files), document_(files) {}

bool ConfigStore::open(const std::string& path) {
  path_ = path;
  changed_ = false;
  changes_ = {};
  changes_.begin(path);
  const XmlLoadStatus status = document_.Load(path, XmlLoadMode::file).status;
  // A file that another program holds for a moment is there all the same, and its settings must
  // not be overwritten with defaults.
  FileStamp stamp;
  const bool missing =
      status == XmlLoadStatus::noFile && (!fileStamp(path, stamp) || stamp.size == 0);
  damaged_ = status != XmlLoadStatus::loaded && status != XmlLoadStatus::empty && !missing;
  return !damaged_;
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
  // Another program may have changed what this one still has as it was.
  if (isNew || XmlGetString(row.path, row.key, "", nullptr, &document_).empty()) {
    XmlSetString(row.path, row.key, value, nullptr, &document_);
  }
  changed_ = true;
}

void ConfigStore::setOther(const std::string& path, const std::string& key,
                           const std::string& value) {
  XmlSetString(path, key, value, nullptr, &document_);
  changes_.note(path, key, value);
  changed_ = true;
}

bool ConfigStore::keepDamagedFile() {
  if (!damaged_) return true;
  damaged_ = !copyFile(*files_, path_, badName(path_));
  return !damaged_;
}

bool ConfigStore::save() {
  if (!changed_) return true;
  if (!damaged_) changes_.bringInto(document_, path_, *files_);
  if (!keepDamagedFile() || document_.Save(path_) == 0) return false;
  changes_.saved(path_);
  changed_ = false;
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
  for (const SettingRow& row : settingRows()) {
    if (row.type == SettingType::string) {
      setText(settings, row, store.string(row));
      store.know(row, textOf(settings, row));
    } else {
      setNumber(settings, row, correctedNumber(row, store.number(row)));
      store.know(row, numberOf(settings, row));
    }
  }
  return settings;
}

bool saveSettings(ConfigStore& store, const Settings& settings, SettingGroup group) {
  for (const SettingRow& row : settingRows()) {
    if (row.group != group) continue;
    if (row.type == SettingType::string) {
      store.set(row, textOf(settings, row));
    } else {
      store.set(row, numberOf(settings, row));
    }
  }
  return store.save();
}

}  // namespace vgps
