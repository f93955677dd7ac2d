#pragma once

namespace vgps {

inline constexpr char kVersion[] = "0.1.0";

}  // namespace vgps
