// The build states the pointer width it targets (the i386 toolchain file
// says 32); a toolchain that silently produced 64-bit code would otherwise
// pass the 32-bit suite without testing anything 32-bit.
#include <climits>
#include <cstdint>

#ifndef ZENTA_TARGET_BITS
#error "ZENTA_TARGET_BITS must be defined by the build"
#endif

static_assert(sizeof(void*) * CHAR_BIT == ZENTA_TARGET_BITS, "the compiler does not produce code of the width the build targets");
static_assert(sizeof(std::uintptr_t) == sizeof(void*), "addresses must fit std::uintptr_t exactly");
