#pragma once

#include <cstddef>
#include <string>

namespace vgps {

// What a receiver of twelve satellites says in `count` epochs: GGA, RMC, GSA and three GSV each,
// with CR LF. A walk with turns and stops; every value changes from epoch to epoch and many change
// their length, so that nothing can be learned by heart. The same text every time.
std::string makeEpochs(size_t count);

// A log of at least so many bytes; false when it cannot be written.
bool writeEpochs(const std::string& path, size_t bytes);

}  // namespace vgps
