#include "app/settings/settings.h"

#include <array>
#include <type_traits>
#include <utility>

#include "app/settings/settings_table.h"

namespace vgps {
namespace {

// Measures each text only once, because compilers limit the steps of a constant evaluation.
constexpr bool keysAreUnique() {
  std::array<std::string_view, kSettingRows.size()> keys;
  for (size_t i = 0; i < kSettingRows.size(); ++i) {
    keys[i] = kSettingRows[i].key;
    for (size_t k = 0; k < i; ++k) {
      if (keys[k] == keys[i] && std::string_view(kSettingRows[k].path) == kSettingRows[i].path)
        return false;
    }
  }
  return true;
}
static_assert(keysAreUnique());

constexpr bool membersAreUnique() {
  for (size_t i = 0; i < kSettingRows.size(); ++i) {
    for (size_t k = 0; k < i; ++k) {
      if (kSettingRows[k].member == kSettingRows[i].member) return false;
    }
  }
  return true;
}
static_assert(membersAreUnique());

}  // namespace

Settings::Settings() {
  for (const SettingRow& row : kSettingRows) {
    if (row.type == SettingType::string) {
      setText(*this, row, row.text);
    } else {
      setNumber(*this, row, row.number);
    }
  }
}

double numberOf(const Settings& settings, const SettingRow& row) {
  return std::visit(
      [&](auto member) -> double {
        if constexpr (std::is_same_v<decltype(member), std::string Settings::*>) {
          return 0;
        } else {
          return static_cast<double>(settings.*member);
        }
      },
      row.member);
}

void setNumber(Settings& settings, const SettingRow& row, double value) {
  std::visit(
      [&](auto member) {
        using Value = std::remove_reference_t<decltype(settings.*member)>;
        if constexpr (std::is_same_v<Value, bool>) {
          settings.*member = value != 0;
        } else if constexpr (!std::is_same_v<Value, std::string>) {
          settings.*member = static_cast<Value>(value);
        }
      },
      row.member);
}

const std::string& textOf(const Settings& settings, const SettingRow& row) {
  static const std::string kNone;
  const auto* const member = std::get_if<std::string Settings::*>(&row.member);
  return member == nullptr ? kNone : settings.**member;
}

void setText(Settings& settings, const SettingRow& row, std::string value) {
  if (const auto* const member = std::get_if<std::string Settings::*>(&row.member)) {
    settings.** member = std::move(value);
  }
}

std::span<const SettingRow> settingRows() { return kSettingRows; }

const SettingRow* findSetting(std::string_view path, std::string_view key) {
  for (const SettingRow& row : kSettingRows) {
    if (path == row.path && key == row.key) return &row;
  }
  return nullptr;
}

}  // namespace vgps
