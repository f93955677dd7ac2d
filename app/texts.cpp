#include "app/texts.h"

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

}  // namespace

std::string_view textOf(uint32_t number) {
  for (const Text& text : kTexts) {
    if (text.number == number) return text.english;
  }
  return {};
}

std::string textWith(uint32_t number, std::string_view value) {
  std::string text(textOf(number));
  const size_t percent = text.find('%');
  if (percent != std::string::npos) text.replace(percent, 2, value);
  return text;
}

}  // namespace vgps
