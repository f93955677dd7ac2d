#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace vgps {

using Json = nlohmann::ordered_json;

// Bytes that are no UTF-8 become U+FFFD. `indent` -1: one line.
std::string jsonText(const Json& json, int indent);

}  // namespace vgps
