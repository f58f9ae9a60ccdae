#include "SelfExecutable.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/auxv.h>
#include <unistd.h>

namespace {

std::string FindSelf() {
    const char* executed = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
    char resolved[PATH_MAX];
    if (executed != nullptr && realpath(executed, resolved) != nullptr) return resolved;
    const ssize_t length = readlink("/proc/self/exe", resolved, sizeof(resolved) - 1);
    return std::string(resolved, length > 0 ? static_cast<std::size_t>(length) : 0);
}

}  // namespace

const std::string& SelfExecutable() {
    static const std::string self = FindSelf();
    return self;
}
