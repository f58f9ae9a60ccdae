// The registry of namespace providers, keyed by the name each provider
// reports. Thread-safe; callbacks of an enumeration run without the lock
// held, so they may register or unregister providers themselves.
#ifndef ZENTA_HOST_CORE_TNAMESPACEPROVIDERMANAGER_H
#define ZENTA_HOST_CORE_TNAMESPACEPROVIDERMANAGER_H

#include <map>
#include <mutex>
#include <string>

#include "INamespaceProviderManager.h"

namespace NVURZENTA20 {

class TNamespaceProviderManager : public INamespaceProviderManager {
public:
    TNamespaceProviderManager();
    ~TNamespaceProviderManager() override;

    // Throws TZENTAException (kInvalidArgument) for an empty pointer.
    void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) override;
    // Unknown names are ignored.
    void UnregisterNamespaceProvider(const std::string& name) override;
    // Empty when no provider of that name is registered.
    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(const std::string& name) const override;
    // In ascending name order, over the providers registered when the walk
    // starts.
    void EnumerateNamespaceProviders(const TNamespaceProviderCallback& callback) const override;

private:
    typedef std::map<std::string, boost::shared_ptr<INamespaceProvider> > TProviderMap;

    mutable std::mutex fMutex;
    TProviderMap fProviders;

    TNamespaceProviderManager(const TNamespaceProviderManager&) = delete;
    TNamespaceProviderManager& operator=(const TNamespaceProviderManager&) = delete;
};

}  // namespace NVURZENTA20

#endif
