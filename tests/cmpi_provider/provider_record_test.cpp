// The provider record takes over its loader record even when it cannot: if
// the allocation of its shared owner fails, the loader record is freed once
// and the failure reaches the caller. This program replaces the global
// allocation functions, so that the next allocation can be made to fail and
// the frees of one address counted (a second free of it is counted, not
// done, so that the test reports it instead of the allocator aborting).
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "TCMPIProvider.h"
#include "providerInit.h"

namespace {

bool gFailNextAllocation = false;
const void* gWatched = nullptr;
int gWatchedFrees = 0;

void* Allocate(std::size_t size) {
    if (gFailNextAllocation) {
        gFailNextAllocation = false;
        throw std::bad_alloc();
    }
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void Free(void* memory) noexcept {
    if (memory != nullptr && memory == gWatched && gWatchedFrees++ > 0) return;
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return Allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete[](void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Free(memory); }

TEST(ProviderRecord, AFailedTakeOverFreesTheLoaderRecordOnceAndFailsTheConstruction) {
    _ProviderInfo* info = new _ProviderInfo();
    gWatched = info;
    gWatchedFrees = 0;
    gFailNextAllocation = true;
    EXPECT_THROW(TCMPIProvider provider(info), std::bad_alloc);
    EXPECT_EQ(gWatchedFrees, 1);
    gWatched = nullptr;

    // Without a failure the record owns the loader record and frees it with itself.
    info = new _ProviderInfo();
    gWatched = info;
    gWatchedFrees = 0;
    {
        TCMPIProvider provider(info);
        EXPECT_EQ(provider.GetProviderInfo().get(), info);
        EXPECT_EQ(gWatchedFrees, 0);
    }
    EXPECT_EQ(gWatchedFrees, 1);
    gWatched = nullptr;
}
