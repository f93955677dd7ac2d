#include "cli/program.h"
#include "platform/console.h"

int main(int argc, char** argv) { return vgps::runProgram(vgps::commandLineArguments(argc, argv)); }
