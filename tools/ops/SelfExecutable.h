// The file this program was started from, to start it again as a worker or
// a module probe. It is the path the program was executed by (made
// absolute), not /proc/self/exe: under a tool such as valgrind that link
// names the tool, and a worker started through it would be the tool too.
#ifndef ZENTA_OPS_SELFEXECUTABLE_H
#define ZENTA_OPS_SELFEXECUTABLE_H

#include <sys/prctl.h>
#include <sys/types.h>
#include <unistd.h>

#include <csignal>
#include <string>

// Fixed at the first call: make it early in main(), before any chdir.
const std::string& SelfExecutable();

// Starts `arguments` (SelfExecutable() first, null-terminated) in a child
// that is killed when this process ends, however it ends. `prepare` runs in
// the child just before the exec: everything it needs must be made before
// the call, since between fork and exec a threaded parent's child may only
// make plain system calls. The child's pid, or -1 (errno set).
template <class TPrepare>
pid_t StartSelf(char* const* arguments, TPrepare prepare) {
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child != 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    prepare();
    execv(arguments[0], arguments);
    _exit(127);
}

#endif
