// Which module file holds each registered provider and which factories the
// module exports for it, as the module survey found them. The worker uses
// it to name the module of a provider that crashed or hung and to tell a
// user that a provider has no MI of the kind a request needs, which the
// library itself passes over in silence.
#ifndef ZENTA_OPS_PROVIDERINDEX_H
#define ZENTA_OPS_PROVIDERINDEX_H

#include <map>
#include <set>
#include <string>

// The MI kinds of the factory names: P_Create_<Kind>MI.
extern const char* const kMiKinds[];  // "Instance", "Association", "Method", "Indication", "Property"
const int kMiKindCount = 5;

struct TProviderEntry {
    std::string module;           // the module's file name: System.cmpi.so
    std::set<std::string> kinds;  // MI kinds it has a factory for (its own or the generic one)
    bool kindsKnown = true;       // false: the module's symbols could not be read
};

class TProviderIndex {
public:
    void Add(const std::string& provider, const TProviderEntry& entry) { fEntries[provider] = entry; }
    // Null for a provider no module registers.
    const TProviderEntry* Find(const std::string& provider) const;
    bool Has(const std::string& provider, const char* kind) const;

    std::string Serialize() const;
    static TProviderIndex Deserialize(const std::string& text);

private:
    std::map<std::string, TProviderEntry> fEntries;
};

#endif
