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

// The settings dialogs as data. Their layouts are resources, which a language library may replace;
// what a control means is a row here, and a few functions fill any dialog and take it back.
namespace vgps {

struct Dialog;

// Probes ports, on the thread that calls it, and gives the numbers of those that answered. Asks
// with the number of each port, once or more often, whether to stop.
using PortSearch =
    std::function<std::vector<uint32_t>(const std::function<bool(uint32_t port)>& cancelled)>;

// What a dialog works on.
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
  text,      // cut to the characters that the setting may have
  list,      // one of the items; what is none of them is kept while nothing is chosen
  radio,     // likewise, each a button of its own
  box,       // an edit box with suggestions
  switched,  // a whole number with a check box; stored negated while that is off
  colour,    // a button that shows it and asks for another
};

// One of several values: an item of a list, or a radio button with its control.
struct DialogChoice {
  int32_t value;
  Text text;
  uint16_t control = 0;
};

// An item that is known only at run time.
struct DialogItem {
  std::string shown;
  std::string value;  // what is stored
};

// A number outside the bounds becomes `instead` when the dialog is confirmed.
struct Correction {
  int32_t lowest = std::numeric_limits<int32_t>::min();
  int32_t highest = std::numeric_limits<int32_t>::max();
  int32_t instead = 0;
};

// A number stands for its control in the layouts that language libraries bring; a front end without
// layouts shows the labels, whose "&" stands before the letter that leads there.
struct DialogField {
  uint16_t control;
  Text label;  // of the box that switches it, or of all radio buttons, where there are some
  FieldKind kind;
  uint16_t switchControl = 0;  // the check box of a switched number
  Setting setting;
  Correction correction{};
  std::span<const DialogChoice> choices{};
  std::vector<DialogItem> (*items)(const DialogContext& context) = nullptr;  // instead of choices
  std::span<const uint16_t> disables{};  // controls that mean nothing while this is checked
};

enum class ActionKind : uint8_t { chooseFile, chooseFolder, playSound, preset, searchPorts };

// A kind of files that the user chooses from.
struct FileFilter {
  Text text{};
  const char* pattern = "";
};

// A button that does something while the dialog stays open.
struct DialogAction {
  uint16_t control;
  Text label;
  ActionKind kind;
  uint16_t target = 0;  // the control with the file or folder
  FileFilter files{};
  const char* sound = nullptr;  // the program's own, when there is no file
  const RecordingPreset* preset = nullptr;
};

struct Dialog {
  Command command;                       // that opens it
  const char* layout;                    // the name of its resource
  Text texts;                            // the first of the hundred numbers of its texts
  std::span<const SettingGroup> groups;  // that OK saves
  std::span<const DialogField> fields;
  std::span<const DialogAction> actions{};
};

// A word of a dialog's layout in the language of the user; empty when it is none of the dialog's
// texts: a language library's own layout has its own words.
std::string_view dialogText(std::string_view word, Text texts);

// All dialogs, ascending by command.
std::span<const Dialog> dialogs();
// Null when the command opens none of these.
const Dialog* findDialog(Command command);

// Whether the program does something with at least one of its settings.
bool editsSettingsInUse(const Dialog& dialog);

// Shows the settings in use, and enables what they leave enabled.
void fillDialog(const Dialog& dialog, DialogView& view, const DialogContext& context);

// OK: takes the controls over into the settings in use, corrected, and saves the dialog's groups. A
// document that cannot be written is told; the settings hold all the same until the program ends.
void confirmDialog(const Dialog& dialog, DialogView& view, DialogContext& context);

// A control was pressed or checked. True when the port search is to be started: it takes a thread
// and so is the caller's.
bool pressControl(const Dialog& dialog, DialogView& view, uint16_t control);

// What the speed box says, for the search; 0 when it reads as nothing.
uint32_t searchSpeed(DialogView& view);
// Tells which ports answered, one message for each, or that none did. The first one goes into a
// port box that is empty.
void tellSearchResult(DialogView& view, std::span<const uint32_t> answered);

}  // namespace vgps
