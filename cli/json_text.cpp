#include "cli/json_text.h"

namespace vgps {

std::string jsonText(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace vgps
