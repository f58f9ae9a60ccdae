// Blocks for the records a provider makes by the thousand in one request
// (an instance record and an object path per instance returned, string
// records for every name it reads), all freed together when the registry
// is cleared. The allocator keeps only a handful
// of freed blocks of a size close at hand; the rest of a request's records
// went the allocator's slow road both ways, at about a tenth of the cost of
// serving an instance. Here the freed blocks of one record type are kept
// for the next request.
//
// At most kKeptBlocks are kept per record type, so that one huge request
// does not pin its memory for the life of the process. Under
// AddressSanitizer every block goes straight to the allocator, so that a
// provider using a record after the registry freed it is still caught.
#ifndef ZENTA_CMPI_RECORDPOOL_H
#define ZENTA_CMPI_RECORDPOOL_H

#include <atomic>
#include <cstddef>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZENTA_RECORD_POOL_ENABLED 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZENTA_RECORD_POOL_ENABLED 0
#endif
#endif
#ifndef ZENTA_RECORD_POOL_ENABLED
#define ZENTA_RECORD_POOL_ENABLED 1
#endif

// A base that gives the record type TRecord its allocation functions. A
// block of another size (a type derived from TRecord) goes to the
// allocator.
template <class TRecord>
class TPooledRecord {
public:
    static constexpr std::size_t kKeptBlocks = 4096;

    static void* operator new(std::size_t size)
    {
        if (ZENTA_RECORD_POOL_ENABLED && size == sizeof(TRecord)) {
            if (void* kept = Take()) return kept;
        }
        return ::operator new(size);
    }

    static void operator delete(void* block, std::size_t size)
    {
        if (block == nullptr) return;
        if (ZENTA_RECORD_POOL_ENABLED && size == sizeof(TRecord) && Keep(block)) return;
        ::operator delete(block);
    }

    // The bytes of the blocks kept for reuse, as the allocator counts them
    // (its chunk of a block: the size and a size word, in 16-byte steps):
    // memory the process holds for this record type while no record uses it.
    static std::size_t KeptBytes()
    {
        const std::size_t chunk = (sizeof(TRecord) + sizeof(std::size_t) + 15) / 16 * 16;
        TSpinLock lock(fgLock);
        return fgKept * (chunk < 32 ? 32 : chunk);
    }

private:
    struct TFreeBlock {
        TFreeBlock* next;
    };

    // Records are made and freed on the host's request thread; the lock is
    // for a provider that makes records on threads of its own, and is never
    // held for more than a few instructions.
    class TSpinLock {
    public:
        explicit TSpinLock(std::atomic_flag& flag) : fFlag(flag)
        {
            while (fFlag.test_and_set(std::memory_order_acquire)) {
            }
        }
        ~TSpinLock() { fFlag.clear(std::memory_order_release); }

    private:
        std::atomic_flag& fFlag;
    };

    static void* Take()
    {
        TSpinLock lock(fgLock);
        TFreeBlock* block = fgFree;
        if (block == nullptr) return nullptr;
        fgFree = block->next;
        --fgKept;
        return block;
    }

    static bool Keep(void* memory)
    {
        static_assert(sizeof(TRecord) >= sizeof(TFreeBlock), "a record must hold a free-list link");
        TSpinLock lock(fgLock);
        if (fgKept == kKeptBlocks) return false;
        TFreeBlock* block = static_cast<TFreeBlock*>(memory);
        block->next = fgFree;
        fgFree = block;
        ++fgKept;
        return true;
    }

    static inline std::atomic_flag fgLock = ATOMIC_FLAG_INIT;
    static inline TFreeBlock* fgFree = nullptr;
    static inline std::size_t fgKept = 0;
};

#endif
