#include "bench/xml_settings.h"

#include <chrono>
#include <string_view>

#include "app/settings/config_store.h"
#if VEXA_HAVE_PUGIXML
#include <pugixml.hpp>
#endif

namespace vgps {
namespace {

double changed(const SettingRow& row) { return row.number == 1 ? 0 : row.number + 1; }

bool readByUs(const std::string& file) {
  ConfigStore store;
  if (!store.open(file)) return false;
  const Settings settings = loadSettings(store);
  return settings.baudRate == 9601 && settings.trackStorePath == "cfg\\vgps tlp";
}

#if VEXA_HAVE_PUGIXML
pugi::xml_attribute attributeOf(const pugi::xml_document& document, const SettingRow& row) {
  pugi::xml_node node = document.document_element();
  std::string_view path = row.path;
  while (!path.empty()) {
    const std::string name(path.substr(0, path.find('\\')));
    path.remove_prefix(std::min(path.size(), name.size() + 1));
    node = node.child(name.c_str());
  }
  return node.attribute(row.key);
}

bool readByPugixml(const std::string& file) {
  pugi::xml_document document;
  if (!document.load_file(file.c_str())) return false;
  Settings settings;
  for (const SettingRow& row : settingRows()) {
    const pugi::xml_attribute attribute = attributeOf(document, row);
    switch (row.type) {
      case SettingType::string: setText(settings, row, attribute.as_string(row.text)); break;
      case SettingType::real:
        setNumber(settings, row, attribute.as_float(static_cast<float>(row.number)));
        break;
      default: setNumber(settings, row, attribute.as_int(static_cast<int32_t>(row.number))); break;
    }
  }
  return settings.baudRate == 9601 && settings.trackStorePath == "cfg\\vgps tlp";
}
#endif

}  // namespace

bool writeAllSettings(const std::string& file) {
  ConfigStore store;
  store.open(file);
  for (const SettingRow& row : settingRows()) {
    if (row.type == SettingType::string) {
      store.set(row, std::string(row.path) + " " + row.key);
    } else {
      store.set(row, changed(row));
    }
  }
  return store.save();
}

std::optional<double> timeSettings(const std::string& library, const std::string& file) {
  const auto start = std::chrono::steady_clock::now();
  bool read = false;
  if (library == "ours") read = readByUs(file);
#if VEXA_HAVE_PUGIXML
  if (library == "pugixml") read = readByPugixml(file);
#endif
  const auto end = std::chrono::steady_clock::now();
  if (!read) return std::nullopt;
  return std::chrono::duration<double, std::milli>(end - start).count();
}

}  // namespace vgps
