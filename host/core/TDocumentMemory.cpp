#include "TDocumentMemory.h"

#include <map>
#include <mutex>
#include <utility>

#include <boost/weak_ptr.hpp>

namespace NVURZENTA20 {

namespace {

// Entries keyed by the address of a host object, with a weak pointer that
// tells whether the object at that address is still the one remembered.
template <class TObject, class TValue>
class TObjectMemory {
public:
    TValue& At(const boost::shared_ptr<TObject>& object) {
        PruneWhenGrown();
        TEntry& entry = fEntries[object.get()];
        if (entry.first.expired() || entry.first.lock() != object) entry = TEntry(object, TValue());
        return entry.second;
    }

    const TValue* Find(const boost::shared_ptr<TObject>& object) const {
        auto found = fEntries.find(object.get());
        if (found == fEntries.end() || found->second.first.lock() != object) return nullptr;
        return &found->second.second;
    }

private:
    typedef std::pair<boost::weak_ptr<TObject>, TValue> TEntry;

    void PruneWhenGrown() {
        if (fEntries.size() < 2 * fSizeAfterPrune + 64) return;
        for (auto entry = fEntries.begin(); entry != fEntries.end();) {
            entry = entry->second.first.expired() ? fEntries.erase(entry) : std::next(entry);
        }
        fSizeAfterPrune = fEntries.size();
    }

    std::map<const TObject*, TEntry> fEntries;
    std::size_t fSizeAfterPrune = 0;
};

struct TMemory {
    std::mutex lock;
    TObjectMemory<ICIMClass, TDefinitionOrigin> classes;
    TObjectMemory<ICIMNamespace, std::map<std::string, TSourceLocation> > providers;
};

TMemory& Memory() {
    static TMemory memory;
    return memory;
}

}  // namespace

void TDocumentMemory::RememberClass(const boost::shared_ptr<ICIMClass>& cls, const TDefinitionOrigin& origin) {
    if (!cls) return;
    std::lock_guard<std::mutex> guard(Memory().lock);
    Memory().classes.At(cls) = origin;
}

bool TDocumentMemory::FindClass(const boost::shared_ptr<ICIMClass>& cls, TDefinitionOrigin& origin) {
    if (!cls) return false;
    std::lock_guard<std::mutex> guard(Memory().lock);
    const TDefinitionOrigin* found = Memory().classes.Find(cls);
    if (found) origin = *found;
    return found != nullptr;
}

TSourceLocation TDocumentMemory::RememberProvider(const boost::shared_ptr<ICIMNamespace>& ns,
                                                  const std::string& provider, const TSourceLocation& at) {
    if (!ns) return TSourceLocation();
    std::lock_guard<std::mutex> guard(Memory().lock);
    std::map<std::string, TSourceLocation>& registered = Memory().providers.At(ns);
    auto known = registered.insert(std::make_pair(provider, at));
    const TSourceLocation& earlier = known.first->second;
    if (known.second || !earlier.file || !at.file || *earlier.file == *at.file) {
        known.first->second = at;
        return TSourceLocation();
    }
    return earlier;
}

}  // namespace NVURZENTA20
