#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "app/settings/config_store.h"
#include "app/settings/options_table.h"
#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "cli/commands.h"
#include "platform/files.h"

namespace vgps {
namespace {

const char* typeName(SettingType type) {
  constexpr std::array<const char*, 5> kNames = {"int", "flag", "float", "string", "color"};
  return kNames[static_cast<size_t>(type)];
}

// A 32-bit value in the short decimal form that the user wrote: 0.01, not 0.00999999977.
std::string numberText(const SettingRow& row, double value) {
  if (row.type != SettingType::real) return decimalText(static_cast<int64_t>(value));
  constexpr size_t kLongest = 32;
  char text[kLongest];
  constexpr double kMost = std::numeric_limits<float>::max();
  const auto shown = static_cast<float>(std::clamp(value, -kMost, kMost));
  const auto end = std::to_chars(text, text + kLongest, shown).ptr;
  return {text, end};
}

nlohmann::ordered_json jsonNumber(const SettingRow& row, double value) {
  if (row.type == SettingType::real) return leadingDouble(numberText(row, value));
  return static_cast<int64_t>(value);
}

std::string valueText(ConfigStore& store, const SettingRow& row) {
  if (row.type == SettingType::string) return store.string(row);
  return numberText(row, store.number(row));
}

nlohmann::ordered_json jsonRow(ConfigStore& store, const SettingRow& row) {
  nlohmann::ordered_json json;
  json["path"] = row.path;
  json["key"] = row.key;
  json["type"] = typeName(row.type);
  if (row.type == SettingType::string) {
    json["default"] = row.text;
    json["value"] = validUtf8(store.string(row));
  } else {
    json["default"] = jsonNumber(row, row.number);
    json["value"] = jsonNumber(row, store.number(row));
  }
  json["label"] = optionLabel(row.path, row.key);
  return json;
}

int listSettings(ConfigStore& store, bool json) {
  if (json) {
    auto list = nlohmann::ordered_json::array();
    for (const SettingRow& row : settingRows()) list.push_back(jsonRow(store, row));
    std::puts(list.dump(2).c_str());
    return finishOutput();
  }
  for (const SettingRow& row : settingRows()) {
    const std::string address = std::string(row.path) + " " + row.key;
    const std::string value = valueText(store, row);
    std::printf("%-24s %-7s %-12s %s", address.c_str(), typeName(row.type), value.c_str(),
                optionLabel(row.path, row.key));
    if (row.type != SettingType::string) {
      const double stored = store.number(row);
      const double used = correctedNumber(row, stored);
      if (used != stored) {
        std::printf(" (used as %s)", numberText(row, used).c_str());
      }
    }
    std::putchar('\n');
  }
  return finishOutput();
}

bool isNumber(std::string_view text, bool whole) {
  const size_t first = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  const std::string_view digits = text.substr(first);
  if (digits.find_first_not_of(whole ? "0123456789" : "0123456789.") != std::string_view::npos) {
    return false;
  }
  return digits.find_first_of("0123456789") != std::string_view::npos &&
         digits.find('.') == digits.rfind('.');
}

// The countdown is stored as a flag, but it is a number.
bool isFlag(const SettingRow& row) { return std::holds_alternative<bool Settings::*>(row.member); }

// Returns what is allowed if the value is invalid for the row; empty if it is valid.
std::string whatIsAllowed(const SettingRow& row, std::string_view text) {
  constexpr double kLargestColor = 0xFFFFFF;
  constexpr double kLargestReal = 1e9;  // far beyond any use, and still exact when read back
  const double value = leadingDouble(text);
  switch (row.type) {
    case SettingType::string: return {};
    case SettingType::real:
      return isNumber(text, false) && std::fabs(value) <= kLargestReal
                 ? ""
                 : "a decimal number from -1000000000 to 1000000000";
    case SettingType::flag:
    case SettingType::integer:
      if (isFlag(row)) return isNumber(text, true) && (value == 0 || value == 1) ? "" : "0 or 1";
      if (isNumber(text, true) && value >= INT32_MIN && value <= INT32_MAX) return {};
      return "a whole number";
    case SettingType::color:
      if (isNumber(text, true) && value >= 0 && value <= kLargestColor) return {};
      return "a color from 0 to 16777215";
  }
  return {};
}

std::string inUse(const std::string& path) {
  return path + " is in use by another program; try again";
}

int setSetting(ConfigStore& store, const SettingRow& row, const std::string& text) {
  const std::string allowed = whatIsAllowed(row, text);
  if (!allowed.empty()) {
    return fail(std::string(row.path) + " " + row.key + " must be " + allowed + ", not '" + text +
                "'");
  }
  if (row.type == SettingType::string) {
    store.set(row, std::string_view(text));
    if (firstUtf16Units(text, row.characters).size() < text.size()) {
      std::fprintf(stderr, "vgps: only the first %u characters are used\n",
                   unsigned{row.characters});
    }
  } else {
    store.set(row, leadingDouble(text));
  }
  if (store.save()) return 0;
  return fail(store.heldByAnother() ? inUse(store.path()) : "cannot write " + store.path());
}

}  // namespace

std::vector<std::string> withValueMarked(std::vector<std::string> words) {
  if (words.empty() || words[0] != "settings") return words;
  std::vector<std::string> marked = {words[0]};
  std::vector<std::string> rest;
  for (size_t i = 1; i < words.size(); ++i) {
    const bool fileFollows = words[i] == "--file" && i + 1 < words.size();
    if (fileFollows) marked.push_back(words[i++]);
    (fileFollows || words[i].starts_with("--file=") ? marked : rest).push_back(words[i]);
  }
  constexpr size_t kValue = 3;  // after "set", the path, and the key
  const bool sets = rest.size() == kValue + 1 && rest[0] == "set" && rest[kValue - 1] != "--";
  if (sets) rest.insert(rest.begin() + kValue, "--");
  marked.insert(marked.end(), rest.begin(), rest.end());
  return marked;
}

int runSettings(const SettingsOptions& options) {
  const std::string path = options.file.empty() ? programFolder() + "/vgps.xml" : options.file;
  ConfigStore store;
  const bool good = store.open(path);
  if (!store.readable()) return fail(store.heldByAnother() ? inUse(path) : cannotRead(path));
  if (!good) {
    std::fprintf(stderr, "vgps: %s: %s\n", path.c_str(),
                 std::string(textOf(Text::settingsDamaged)).c_str());
  }
  if (options.action == SettingsOptions::Action::list) return listSettings(store, options.json);
  const SettingRow* const row = findSetting(options.path, options.key);
  if (row == nullptr) return fail("unknown setting " + options.path + " " + options.key);
  if (options.action == SettingsOptions::Action::set) {
    return setSetting(store, *row, options.value);
  }
  std::puts(valueText(store, *row).c_str());
  return finishOutput();
}

}  // namespace vgps
