#include "app/desktop/dialog_hidden_option.h"

#include <algorithm>

#include "base/texts.h"
#include "xml/profile.h"

namespace vgps {
namespace {

// Not the same element as "cfg\\other", where the loader reads "fzsl": names are case-sensitive,
// and documents have their hidden options here.
constexpr const char* kPath = "Cfg\\Other";

// Any other text would produce a document that cannot be read.
bool isAttributeName(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto goesOn = [&](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '_';
  };
  return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), goesOn);
}

}  // namespace

bool editHiddenOption(ConfigStore& store, const TextPrompt& prompt, const TextTeller& tell) {
  const auto title = prompt(textOf(Text::optionCaption), textOf(Text::optionTitle), "");
  if (!title) return false;
  if (!isAttributeName(*title)) {
    tell(textOf(Text::badOptionTitle));
    return false;
  }
  const auto value =
      prompt(textOf(Text::optionCaption), textOf(Text::optionValue), store.other(kPath, *title));
  if (!value) return false;
  store.setOther(kPath, *title, *value);
  store.save();
  store.reportSaveFailureOnce(tell);
  return true;
}

}  // namespace vgps
