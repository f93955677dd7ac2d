#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "app/desktop/command.h"
#include "app/settings/config_store.h"
#include "app/settings/settings.h"
#include "app/settings/settings_table.h"
#include "base/texts.h"
#include "platform/dialog_view.h"
#include "platform/serial_port.h"
#include "track/options.h"

// The settings dialogs as data. Their layouts are resources, which a language library may replace.
// The meaning of each control is a row here, and a few functions fill any dialog and read it back.
namespace vgps {

struct Dialog;

// Probes ports on the calling thread and returns the numbers of those that answered. Calls
// `cancelled` with the number of each port, at least once, to ask whether to stop.
using PortSearch =
    std::function<std::vector<uint32_t>(const std::function<bool(uint32_t port)>& cancelled)>;

// The data that a dialog works on.
struct DialogContext {
  ConfigStore& store;                          // that OK saves into
  Settings& settings;                          // in use: shown, and changed by OK
  std::vector<PortName> ports{};               // that are really there
  std::function<void(const Dialog&)> saved{};  // its settings have changed and are to be followed
  bool night = false;                          // it is to be dark
  // Makes ready for a search at this speed, on the user-interface thread; the search itself may
  // run on another one. Empty: nothing can be searched here.
  std::function<PortSearch(uint32_t speed)> beginPortSearch{};
};

enum class FieldKind : uint8_t {
  check,     // a flag, or a number that is 0 or 1
  number,    // a whole number in an edit box
  decimal,   // two decimals, as they are stored
  text,      // limited to the maximum length of the setting
  list,      // one of the items; any other value is kept unless the user selects one
  radio,     // the same, as radio buttons
  box,       // an edit box with suggestions
  switched,  // a whole number with a check box; stored negated while unchecked
  color,     // a button that shows a color and opens a color dialog
};

// One of several values: a list item, or a radio button with its control.
struct DialogChoice {
  int32_t value;
  Text text;
  uint16_t control = 0;
};

// An item that is only known at run time.
struct DialogItem {
  std::string shown;
  std::string value;  // the stored text
};

// A number out of range is replaced by `instead` when the dialog is confirmed.
struct Correction {
  int32_t lowest = std::numeric_limits<int32_t>::min();
  int32_t highest = std::numeric_limits<int32_t>::max();
  int32_t instead = 0;
};

// One setting in a dialog. Layouts from language libraries refer to a control by its number. A
// front end without layouts shows the labels, in which "&" marks the access key.
struct DialogField {
  uint16_t control;
  Text label;  // of the check box, or of the group of radio buttons, if any
  FieldKind kind;
  uint16_t switchControl = 0;  // the check box, for FieldKind::switched
  Setting setting;
  Correction correction{};
  std::span<const DialogChoice> choices{};
  std::vector<DialogItem> (*items)(const DialogContext& context) = nullptr;  // replaces choices
  std::span<const uint16_t> disables{};  // controls that have no effect while this is checked
};

enum class ActionKind : uint8_t { chooseFile, chooseFolder, playSound, preset, searchPorts };

// A type of files for the user to choose from.
struct FileFilter {
  Text text{};
  const char* pattern = "";
};

// A button that performs an action while the dialog stays open.
struct DialogAction {
  uint16_t control;
  Text label;
  ActionKind kind;
  uint16_t target = 0;  // the control with the file or folder
  FileFilter files{};
  const char* sound = nullptr;  // the program's own sound, if there is no file
  const RecordingPreset* preset = nullptr;
};

struct Dialog {
  Command command;                       // the command that opens it
  const char* layout;                    // name of its layout resource
  Text texts;                            // the first of its hundred text numbers
  std::span<const SettingGroup> groups;  // the groups that OK saves
  std::span<const DialogField> fields;
  std::span<const DialogAction> actions{};
};

// Translates a word of a dialog's layout; empty if it is not one of the dialog's texts, because a
// language library's own layout is already translated.
std::string_view dialogText(std::string_view word, Text texts);

// All dialogs, in ascending order of command.
std::span<const Dialog> dialogs();
// Returns null if the command does not open one of these dialogs.
const Dialog* findDialog(Command command);

// Whether the program does something with at least one of its settings.
bool editsSettingsInUse(const Dialog& dialog);

// Shows the settings in use, and enables what they leave enabled.
void fillDialog(const Dialog& dialog, DialogView& view, const DialogContext& context);

// OK: stores the controls' values, corrected, in the current settings and saves the dialog's
// groups. If the document cannot be written, the user is told, and the settings apply until the
// program ends.
void confirmDialog(const Dialog& dialog, DialogView& view, DialogContext& context);

// Handles a pressed or checked control. Returns true if the caller must start the port search,
// which needs a thread.
bool pressControl(const Dialog& dialog, DialogView& view, uint16_t control);

// The baud rate in the speed box, for the search; 0 if it is empty.
uint32_t searchSpeed(DialogView& view);
// Reports the ports that answered, one message each, or that none did. The first one is entered in
// the port box if that is empty.
void tellSearchResult(DialogView& view, std::span<const uint32_t> answered);

}  // namespace vgps
