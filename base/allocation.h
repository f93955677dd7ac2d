#pragma once

namespace vgps {

// What the C library's functions for memory do not report by themselves: a failed one ends like a
// failed `new`, at the one place of the program that catches it.
[[noreturn]] void failAllocation();

// The running thread has no such place (a writer or reader thread, a destructor): calls `tell`,
// then ends the program with status 1.
void endWithoutMemory(void (*tell)());

}  // namespace vgps
