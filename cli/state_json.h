#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "app/app_state.h"

// The state as JSON. Numbers print so that they read back to the same double.
namespace vgps {

using Json = nlohmann::ordered_json;

// Every value of the fix and its connection; no ticks, carried bytes or handles.
Json fixJson(const FixRecord& values, const GpsFix& connection);

// Everything that `replay` and `monitor` print.
Json stateJson(const UiFix& shown, const GpsFix& connection);

// Bytes that are no UTF-8 become U+FFFD. `indent` -1: one line.
std::string jsonText(const Json& json, int indent);

}  // namespace vgps
