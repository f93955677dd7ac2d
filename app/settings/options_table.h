#pragma once

#include <string_view>
#include <vector>

#include <cstddef>
#include <span>
#include <string>

#include "app/settings/config_store.h"

// The rows of the options grid: every setting that the user can edit as a line of text, with its
// label.
namespace vgps {

struct OptionRow {
  const char* label;    // "*": a separator between groups, without a value
  const char* choices;  // allowed values separated by "|||"; empty: any text
  const char* path;
  const char* key;

  constexpr bool isSeparator() const { return std::string_view(label) == "*"; }
};

std::span<const OptionRow> optionRows();

// The allowed values in order. A trailing "|||" adds an empty choice.
std::vector<std::string_view> choicesOf(const OptionRow& row);

// The label of a setting; empty if the grid does not show it.
const char* optionLabel(std::string_view path, std::string_view key);

// The row's value in the document; "" if it has none.
std::string optionText(ConfigStore& store, const OptionRow& row);

// Stores a text in the document as the user typed it. Returns false for a separator.
bool setOption(ConfigStore& store, const OptionRow& row, const std::string& text);

}  // namespace vgps
