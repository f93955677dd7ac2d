#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

// All texts that the program shows, by their names in res/texts.def.
namespace vgps {

#pragma push_macro("TEXT")  // a system header defines its own
#undef TEXT
enum class Text : uint32_t {
#define TEXT(number, name, english) name = (number),
#include "res/texts.def"
#undef TEXT
};
#pragma pop_macro("TEXT")

// The text `steps` numbers after `first`, for lists of texts with consecutive numbers.
constexpr Text operator+(Text first, uint32_t steps) {
  return static_cast<Text>(static_cast<uint32_t>(first) + steps);
}

// The text in the current language; empty if the number has no text. Valid until setTextSource is
// called again.
std::string_view textOf(Text text);

// The text with its placeholders ("%s", "%u") replaced by the values in order.
std::string textWith(Text text, std::string_view value);
std::string textWith(Text text, std::string_view first, std::string_view second);

// Looks up the text from `first` to `last` whose English version is `english` and returns it in the
// current language; empty if there is none.
std::string_view translationOf(std::string_view english, Text first, Text last);

// Every text, ascending by number.
std::span<const Text> allTexts();

// Replaces the English texts with those of a language library. `source` returns the text of a
// number, or an empty string to keep the English one; it is called once per number, during this
// call. An empty function restores English. Call this before starting other threads.
using TextSource = std::function<std::string(uint32_t)>;
void setTextSource(const TextSource& source);

}  // namespace vgps
