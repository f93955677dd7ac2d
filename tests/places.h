// Where the tests find what lies beside them; known to the build only.
#pragma once

// The folder of the sources, no separator at the end.
const char* sourceFolder();

// The program `vgps` that the whole-program tests start.
const char* vgpsProgram();
