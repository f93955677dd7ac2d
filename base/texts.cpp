#include "base/texts.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vgps {
namespace {

struct Text {
  uint32_t number;
  std::string_view english;
};

constexpr Text kTexts[] = {
#define TEXT(number, english) {number, english},
#include "res/texts.def"
#undef TEXT
};

constexpr bool numbersAscend() {
  for (size_t i = 1; i < std::size(kTexts); ++i) {
    if (kTexts[i].number <= kTexts[i - 1].number) return false;
  }
  return true;
}
static_assert(numbersAscend());

// Of the language library, beside the English ones; empty where it has none.
using Translations = std::array<std::string, std::size(kTexts)>;

Translations& translations() {
  static Translations texts;
  return texts;
}

// Replaces the first "%s", "%u" or "%i" at or behind `from`; where the rest begins.
size_t replaceNext(std::string& text, size_t from, std::string_view value) {
  const size_t percent = text.find('%', from);
  if (percent == std::string::npos) return text.size();
  text.replace(percent, 2, value);
  return percent + value.size();
}

// The first one with that number or a higher one.
const Text* firstFrom(uint32_t number) {
  return std::lower_bound(std::begin(kTexts), std::end(kTexts), number,
                          [](const Text& text, uint32_t wanted) { return text.number < wanted; });
}

std::string_view inLanguage(const Text& text) {
  const std::string& translated = translations()[static_cast<size_t>(&text - kTexts)];
  return translated.empty() ? text.english : std::string_view(translated);
}

}  // namespace

std::string_view textOf(uint32_t number) {
  const Text* const found = firstFrom(number);
  return found == std::end(kTexts) || found->number != number ? std::string_view()
                                                              : inLanguage(*found);
}

std::string_view textLike(std::string_view english, uint32_t first, uint32_t last) {
  for (const Text* text = firstFrom(first); text != std::end(kTexts) && text->number <= last;
       ++text) {
    if (text->english == english) return inLanguage(*text);
  }
  return {};
}

std::string textWith(uint32_t number, std::string_view value) {
  std::string text(textOf(number));
  replaceNext(text, 0, value);
  return text;
}

std::string textWith(uint32_t number, std::string_view first, std::string_view second) {
  std::string text(textOf(number));
  replaceNext(text, replaceNext(text, 0, first), second);
  return text;
}

std::span<const uint32_t> textNumbers() {
  static constexpr auto kNumbers = [] {
    std::array<uint32_t, std::size(kTexts)> numbers{};
    for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = kTexts[i].number;
    return numbers;
  }();
  return kNumbers;
}

void setTextSource(const TextSource& source) {
  for (size_t i = 0; i < std::size(kTexts); ++i) {
    translations()[i] = source ? source(kTexts[i].number) : std::string();
  }
}

}  // namespace vgps
