#pragma once

// Numbers of the resources, read by the resource compiler and by C++.
#define PROGRAM_ICON 1
