#include "app/settings/config_changes.h"

#include <algorithm>

#include <utility>

#include "xml/profile.h"

namespace vgps {

bool ConfigChanges::note(const SettingRow& row, const std::string& text) {
  const auto known = baseline_.find(keyOf(row));
  if (known != baseline_.end() && known->second == text) return false;
  baseline_[keyOf(row)] = text;
  changes_[keyOf(row)] = text;
  return true;
}

void ConfigChanges::note(std::string path, std::string key, std::string text) {
  changes_[{std::move(path), std::move(key)}] = std::move(text);
}

void ConfigChanges::applyTo(XmlDocument& document) const {
  for (const auto& [key, text] : changes_) {
    XmlSetString(key.path, key.key, text, nullptr, &document);
  }
}

bool ConfigChanges::areOnlyOf(std::span<const SettingGroup> groups) const {
  const auto isOne = [&](const auto& change) {
    const SettingRow* const row = findSetting(change.first.path, change.first.key);
    return row != nullptr && std::find(groups.begin(), groups.end(), row->group) != groups.end();
  };
  return !changes_.empty() && std::all_of(changes_.begin(), changes_.end(), isOne);
}

}  // namespace vgps
