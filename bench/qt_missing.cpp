#include "bench/qt_positioning.h"

namespace vgps {

QtPositioning::QtPositioning() : source_(nullptr) {}
QtPositioning::~QtPositioning() = default;
bool QtPositioning::installed() { return false; }
size_t QtPositioning::readLog(const std::string&) { return 0; }
size_t QtPositioning::parseLines(const std::string&) { return 0; }

}  // namespace vgps
