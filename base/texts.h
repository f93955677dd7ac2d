#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

// Every text that a person sees, by its number in res/texts.def.
namespace vgps {

// The text of that number in the language of the person; empty when there is none. Valid until the
// source of the texts changes.
std::string_view textOf(uint32_t number);

// The text with its "%s" or "%u" replaced by the values, in their order.
std::string textWith(uint32_t number, std::string_view value);
std::string textWith(uint32_t number, std::string_view first, std::string_view second);

// The text in the language of the person whose English one, among the numbers from `first` to
// `last`, is `english`; empty when none is.
std::string_view textLike(std::string_view english, uint32_t first, uint32_t last);

// Every number that has an English text, ascending.
std::span<const uint32_t> textNumbers();

// A language library's texts stand in place of the English ones. `source` gives the text of a
// number, empty where the library has none: the English one is shown then. It is asked once for
// each number, here. An empty function brings English back. Before any other thread is started.
using TextSource = std::function<std::string(uint32_t)>;
void setTextSource(const TextSource& source);

}  // namespace vgps
