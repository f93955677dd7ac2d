#include "app/settings/config_changes.h"

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

}  // namespace vgps
