// The file this program was started from, to start it again as a worker or
// a module probe. It is the path the program was executed by (made
// absolute), not /proc/self/exe: under a tool such as valgrind that link
// names the tool, and a worker started through it would be the tool too.
#ifndef ZENTA_OPS_SELFEXECUTABLE_H
#define ZENTA_OPS_SELFEXECUTABLE_H

#include <string>

// Fixed at the first call: make it early in main(), before any chdir.
const std::string& SelfExecutable();

#endif
