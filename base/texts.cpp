#include "base/texts.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vgps {
namespace {

struct Row {
  Text text;
  std::string_view english;
};

constexpr Row kTexts[] = {
#define TEXT(number, name, english) {Text::name, english},
#include "res/texts.def"
#undef TEXT
};

constexpr bool numbersAscend() {
  for (size_t i = 1; i < std::size(kTexts); ++i) {
    if (kTexts[i].text <= kTexts[i - 1].text) return false;
  }
  return true;
}
static_assert(numbersAscend());

// The texts of the language library, parallel to kTexts; empty to show the English one.
using Translations = std::array<std::string, std::size(kTexts)>;

Translations& translations() {
  static Translations texts;
  return texts;
}

// Replaces the first "%s", "%u", or "%i" at or after `from`. Returns the position after it.
size_t replaceNext(std::string& text, size_t from, std::string_view value) {
  const size_t percent = text.find('%', from);
  if (percent == std::string::npos) return text.size();
  text.replace(percent, 2, value);
  return percent + value.size();
}

// The first row with this number or a higher one.
const Row* firstFrom(Text text) {
  return std::lower_bound(std::begin(kTexts), std::end(kTexts), text,
                          [](const Row& row, Text wanted) { return row.text < wanted; });
}

std::string_view inLanguage(const Row& row) {
  const std::string& translated = translations()[static_cast<size_t>(&row - kTexts)];
  return translated.empty() ? row.english : std::string_view(translated);
}

}  // namespace

std::string_view textOf(Text text) {
  const Row* const found = firstFrom(text);
  return found == std::end(kTexts) || found->text != text ? std::string_view() : inLanguage(*found);
}

std::string_view translationOf(std::string_view english, Text first, Text last) {
  for (const Row* row = firstFrom(first); row != std::end(kTexts) && row->text <= last; ++row) {
    if (row->english == english) return inLanguage(*row);
  }
  return {};
}

std::string textWith(Text text, std::string_view value) {
  std::string filled(textOf(text));
  replaceNext(filled, 0, value);
  return filled;
}

std::string textWith(Text text, std::string_view first, std::string_view second) {
  std::string filled(textOf(text));
  replaceNext(filled, replaceNext(filled, 0, first), second);
  return filled;
}

std::span<const Text> allTexts() {
  static constexpr auto kAll = [] {
    std::array<Text, std::size(kTexts)> texts{};
    for (size_t i = 0; i < texts.size(); ++i) texts[i] = kTexts[i].text;
    return texts;
  }();
  return kAll;
}

void setTextSource(const TextSource& source) {
  for (size_t i = 0; i < std::size(kTexts); ++i) {
    const auto number = static_cast<uint32_t>(kTexts[i].text);
    translations()[i] = source ? source(number) : std::string();
  }
}

}  // namespace vgps
