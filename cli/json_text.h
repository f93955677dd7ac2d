#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace vgps {

using Json = nlohmann::ordered_json;

// Invalid UTF-8 bytes become U+FFFD. `indent` -1 prints a single line.
std::string jsonText(const Json& json, int indent);

}  // namespace vgps
