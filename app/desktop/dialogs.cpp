#include "app/desktop/dialogs.h"

#include <algorithm>
#include <cstdlib>

#include "app/settings/settings_in_use.h"
#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "res/dialog_ids.h"

namespace vgps {
namespace {

constexpr int kStoredDecimals = 2;
constexpr size_t kNumberCharacters = 11;  // length of the lowest 32-bit number

std::vector<DialogItem> itemsOf(const DialogField& field, const DialogContext& context) {
  if (field.items != nullptr) return field.items(context);
  std::vector<DialogItem> items;
  for (const DialogChoice& choice : field.choices) {
    items.push_back({std::string(textOf(choice.text)), decimalText(int64_t{choice.value})});
  }
  return items;
}

int placeOf(std::span<const DialogItem> items, const std::string& value) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const DialogItem& item) { return item.value == value; });
  return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

void setItems(DialogView& view, uint16_t control, std::span<const DialogItem> items) {
  std::vector<std::string> shown;
  for (const DialogItem& item : items) shown.push_back(item.shown);
  view.setItems(control, shown);
}

int32_t wholeOf(const DialogField& field, const Settings& settings) {
  return static_cast<int32_t>(numberOf(settings, *field.setting));
}

// The value as the document stores it, as text.
std::string storedText(const DialogField& field, const Settings& settings) {
  const SettingRow& row = *field.setting;
  switch (row.type) {
    case SettingType::string: return textOf(settings, row);
    case SettingType::real: return fixedText(numberOf(settings, row), kStoredDecimals);
    default: return decimalText(static_cast<int64_t>(numberOf(settings, row)));
  }
}

void fillRadio(const DialogField& field, DialogView& view, int32_t value) {
  for (const DialogChoice& choice : field.choices) {
    view.setChecked(choice.control, choice.value == value);
  }
}

void fillField(const DialogField& field, DialogView& view, const DialogContext& context) {
  const Settings& settings = context.settings;
  const SettingRow& row = *field.setting;
  switch (field.kind) {
    case FieldKind::check: view.setChecked(field.control, numberOf(settings, row) != 0); break;
    case FieldKind::color:
      view.setColor(field.control, static_cast<Color>(numberOf(settings, row)));
      break;
    case FieldKind::radio: fillRadio(field, view, wholeOf(field, settings)); break;
    case FieldKind::list: {
      const std::vector<DialogItem> items = itemsOf(field, context);
      setItems(view, field.control, items);
      view.select(field.control, placeOf(items, storedText(field, settings)));
      break;
    }
    case FieldKind::switched: {
      const auto value = int64_t{wholeOf(field, settings)};
      view.setChecked(field.switchControl, value > 0);
      view.setText(field.control, decimalText(std::abs(value)));
      break;
    }
    case FieldKind::box: setItems(view, field.control, itemsOf(field, context)); [[fallthrough]];
    case FieldKind::number:
    case FieldKind::decimal:
    case FieldKind::text:
      view.limitText(field.control,
                     row.type == SettingType::string ? row.characters : kNumberCharacters);
      view.setText(field.control, storedText(field, settings));
      break;
  }
}

// The loader's rule also applies to what the user enters, except that the user may switch on a flag
// that is switched off at every start.
double corrected(const DialogField& field, double value) {
  if (value < field.correction.lowest || value > field.correction.highest) {
    return field.correction.instead;
  }
  const SettingRow& row = *field.setting;
  return row.rule == RangeRule::forcedOff ? value : correctedNumber(row, value);
}

// Users type the decimal separator of their region, whatever the program shows.
double decimalOf(std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  return leadingDouble(text);
}

// If a suggestion was chosen, the box shows more than the stored value.
std::string typedText(const DialogField& field, DialogView& view, const DialogContext& context) {
  std::string text = view.text(field.control);
  if (field.kind == FieldKind::box) {
    for (const DialogItem& item : itemsOf(field, context)) {
      if (item.shown == text) return item.value;
    }
  }
  return text;
}

void acceptRadio(const DialogField& field, DialogView& view, Settings& settings) {
  for (const DialogChoice& choice : field.choices) {
    if (view.checked(choice.control)) setNumber(settings, *field.setting, choice.value);
  }
}

void acceptList(const DialogField& field, DialogView& view, DialogContext& context) {
  const std::vector<DialogItem> items = itemsOf(field, context);
  const int place = view.selected(field.control);
  if (place < 0 || static_cast<size_t>(place) >= items.size()) return;
  setNumber(context.settings, *field.setting, leadingInt(items[static_cast<size_t>(place)].value));
}

int32_t switchedNumber(const DialogField& field, DialogView& view) {
  const auto value = static_cast<int32_t>(
      std::clamp<int64_t>(std::abs(int64_t{leadingInt(view.text(field.control))}), 0, INT32_MAX));
  return view.checked(field.switchControl) ? value : -value;
}

void acceptText(const DialogField& field, DialogView& view, DialogContext& context) {
  const SettingRow& row = *field.setting;
  const std::string text = typedText(field, view, context);
  if (row.type == SettingType::string) {
    setText(context.settings, row, std::string(firstUtf16Units(text, row.characters)));
  } else {
    setNumber(context.settings, row, corrected(field, leadingInt(text)));
  }
}

void acceptField(const DialogField& field, DialogView& view, DialogContext& context) {
  Settings& settings = context.settings;
  const SettingRow& row = *field.setting;
  switch (field.kind) {
    case FieldKind::check: setNumber(settings, row, view.checked(field.control) ? 1 : 0); break;
    case FieldKind::color: setNumber(settings, row, view.color(field.control)); break;
    case FieldKind::radio: acceptRadio(field, view, settings); break;
    case FieldKind::list: acceptList(field, view, context); break;
    case FieldKind::switched: setNumber(settings, row, switchedNumber(field, view)); break;
    case FieldKind::decimal:
      setNumber(settings, row, corrected(field, decimalOf(view.text(field.control))));
      break;
    case FieldKind::number:
    case FieldKind::text:
    case FieldKind::box: acceptText(field, view, context); break;
  }
}

bool isUnused(const DialogField& field) { return !isInUse(*field.setting); }

// Settings of features that do not exist yet are shown, but nothing could come of changing them.
void disableUnused(const Dialog& dialog, DialogView& view) {
  const auto disable = [&](uint16_t control) {
    view.enable(control, false);
    for (const DialogAction& action : dialog.actions) {
      if (action.target == control) view.enable(action.control, false);
    }
  };
  for (const DialogField& field : dialog.fields) {
    if (!isUnused(field)) continue;
    disable(field.control);
    if (field.switchControl != 0) disable(field.switchControl);
    for (const DialogChoice& choice : field.choices) {
      if (choice.control != 0) disable(choice.control);
    }
  }
}

// A checked box stays enabled whatever else is checked: a document that has two of them set would
// otherwise leave the user with nothing to press.
void enableControls(const Dialog& dialog, DialogView& view) {
  const auto isOff = [&](uint16_t control) {
    return std::any_of(dialog.fields.begin(), dialog.fields.end(), [&](const DialogField& field) {
      return field.kind == FieldKind::check && view.checked(field.control) &&
             std::find(field.disables.begin(), field.disables.end(), control) !=
                 field.disables.end();
    });
  };
  for (const DialogField& field : dialog.fields) {
    for (const uint16_t control : field.disables) {
      view.enable(control, view.checked(control) || !isOff(control));
    }
    if (field.kind == FieldKind::switched) {
      view.enable(field.control, view.checked(field.switchControl));
    }
  }
  disableUnused(dialog, view);
}

// The control for a setting; 0 if there is none.
uint16_t controlOf(const Dialog& dialog, Setting setting) {
  for (const DialogField& field : dialog.fields) {
    if (field.setting == setting) return field.control;
  }
  return 0;
}

void showPreset(const Dialog& dialog, DialogView& view, const RecordingPreset& preset) {
  const auto show = [&](Setting setting, int32_t value) {
    view.setText(controlOf(dialog, setting), decimalText(int64_t{value}));
  };
  show(&Settings::recordMinSpeed, preset.speed);
  show(&Settings::recordAngle, preset.angle);
  show(&Settings::recordAltitude, preset.altitude);
}

bool act(const Dialog& dialog, DialogView& view, const DialogAction& action) {
  switch (action.kind) {
    case ActionKind::chooseFile:
      if (const auto path = view.chooseFile(textOf(action.files.text), action.files.pattern,
                                            view.text(action.target))) {
        view.setText(action.target, *path);
      }
      break;
    case ActionKind::chooseFolder:
      if (const auto path = view.chooseFolder(view.text(action.target))) {
        view.setText(action.target, *path);
      }
      break;
    case ActionKind::playSound: view.playSound(view.text(action.target), action.sound); break;
    case ActionKind::preset: showPreset(dialog, view, *action.preset); break;
    case ActionKind::searchPorts: return true;
  }
  return false;
}

}  // namespace

const Dialog* findDialog(Command command) {
  for (const Dialog& dialog : dialogs()) {
    if (dialog.command == command) return &dialog;
  }
  return nullptr;
}

std::string_view dialogText(std::string_view word, Text texts) {
  const std::string_view own =
      texts == Text{} ? std::string_view() : translationOf(word, texts, texts + 99);
  return own.empty() ? translationOf(word, Text::ok, Text::cancel) : own;
}

bool editsSettingsInUse(const Dialog& dialog) {
  return !std::all_of(dialog.fields.begin(), dialog.fields.end(), isUnused);
}

void fillDialog(const Dialog& dialog, DialogView& view, const DialogContext& context) {
  for (const DialogField& field : dialog.fields) fillField(field, view, context);
  if (std::any_of(dialog.fields.begin(), dialog.fields.end(), isUnused)) {
    view.showNote(textOf(Text::graySettings));
  }
  enableControls(dialog, view);
}

void confirmDialog(const Dialog& dialog, DialogView& view, DialogContext& context) {
  for (const DialogField& field : dialog.fields) {
    const bool whole = field.switchControl == 0 || view.has(field.switchControl);
    if (view.has(field.control) && whole) acceptField(field, view, context);
  }
  saveSettings(context.store, context.settings, dialog.groups);
  if (context.saved) context.saved(dialog);
  context.store.reportSaveFailureOnce([&](std::string_view text) { view.tell(text); });
}

bool pressControl(const Dialog& dialog, DialogView& view, uint16_t control) {
  for (const DialogAction& action : dialog.actions) {
    if (action.control == control) return act(dialog, view, action);
  }
  for (const DialogField& field : dialog.fields) {
    if (field.kind == FieldKind::color && field.control == control) {
      if (const auto chosen = view.chooseColor(view.color(control))) {
        view.setColor(control, *chosen);
      }
    }
  }
  enableControls(dialog, view);
  return false;
}

uint32_t searchSpeed(DialogView& view) {
  return static_cast<uint32_t>(std::max(0, leadingInt(view.text(CONTROL_BAUD_RATE))));
}

void tellSearchResult(DialogView& view, std::span<const uint32_t> answered) {
  if (answered.empty()) {
    view.tell(textOf(Text::noPortAnswered));
    return;
  }
  if (view.text(CONTROL_PORT).empty()) {
    view.setText(CONTROL_PORT, "COM" + decimalText(int64_t{answered.front()}));
  }
  for (const uint32_t port : answered) {
    view.tell(textWith(Text::portFound, decimalText(int64_t{port})));
  }
}

}  // namespace vgps
