#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

// Every text that the program shows, by the names in res/texts.def.
namespace vgps {

#pragma push_macro("TEXT")  // a system header has one of its own
#undef TEXT
enum class Text : uint32_t {
#define TEXT(number, name, english) name = (number),
#include "res/texts.def"
#undef TEXT
};
#pragma pop_macro("TEXT")

// The text that stands so many numbers behind another: of a list whose texts follow one another.
constexpr Text operator+(Text first, uint32_t steps) {
  return static_cast<Text>(static_cast<uint32_t>(first) + steps);
}

// The text in the language in use; empty for a number without one. Valid until the source of the
// texts changes.
std::string_view textOf(Text text);

// The text with its "%s" or "%u" replaced by the values, in their order.
std::string textWith(Text text, std::string_view value);
std::string textWith(Text text, std::string_view first, std::string_view second);

// The text in the language in use whose English one, among those from `first` to `last`, is
// `english`; empty when there is none.
std::string_view textLike(std::string_view english, Text first, Text last);

// Every text, ascending by number.
std::span<const Text> allTexts();

// A language library's texts stand in place of the English ones. `source` gives the text of a
// number, empty where the library has none: the English one is shown then. It is asked once for
// each number, here. An empty function brings English back. Before any other thread is started.
using TextSource = std::function<std::string(uint32_t)>;
void setTextSource(const TextSource& source);

}  // namespace vgps
