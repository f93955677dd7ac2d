#include "tests/places.h"

const char* sourceFolder() { return SOURCE_DIR; }

const char* vgpsProgram() { return VGPS_PROGRAM; }
