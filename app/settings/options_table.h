#pragma once

#include <string_view>
#include <vector>

#include <cstddef>
#include <span>
#include <string>

#include "app/settings/config_store.h"

// The rows of the options grid: every setting that the user may edit as a line of text, under the
// label that it has there.
namespace vgps {

struct OptionRow {
  const char* label;    // "*": a line between two groups, without a value
  const char* choices;  // allowed values with "|||" between; empty: any text
  const char* path;
  const char* key;

  constexpr bool isSeparator() const { return std::string_view(label) == "*"; }
};

std::span<const OptionRow> optionRows();

// The allowed values in their order; what stands behind a last "|||" is an empty one.
std::vector<std::string_view> choicesOf(const OptionRow& row);

// The label of a setting, empty when the grid does not show it.
const char* optionLabel(std::string_view path, std::string_view key);

// What the document holds for the row, "" where it holds nothing.
std::string optionText(ConfigStore& store, const OptionRow& row);

// Puts a text as it was typed into the document. Separators have no place there: false.
bool setOption(ConfigStore& store, const OptionRow& row, const std::string& text);

}  // namespace vgps
