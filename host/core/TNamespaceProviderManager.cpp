#include "TNamespaceProviderManager.h"

#include "TZENTAException.h"

namespace NVURZENTA20 {

TNamespaceProviderManager::TNamespaceProviderManager() {}

TNamespaceProviderManager::~TNamespaceProviderManager() {}

void TNamespaceProviderManager::RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) {
    if (!provider) {
        throw TZENTAException(TZENTAStatusCode::kInvalidArgument, "cannot register an empty namespace provider");
    }
    // The name is asked before the lock is taken: a provider is foreign code.
    const std::string name = provider->GetName(TCIMContext());
    std::lock_guard<std::mutex> lock(fMutex);
    fProviders[name] = provider;
}

void TNamespaceProviderManager::UnregisterNamespaceProvider(const std::string& name) {
    std::lock_guard<std::mutex> lock(fMutex);
    fProviders.erase(name);
}

boost::shared_ptr<INamespaceProvider> TNamespaceProviderManager::GetNamespaceProvider(const std::string& name) const {
    std::lock_guard<std::mutex> lock(fMutex);
    const TProviderMap::const_iterator found = fProviders.find(name);
    return found == fProviders.end() ? boost::shared_ptr<INamespaceProvider>() : found->second;
}

void TNamespaceProviderManager::EnumerateNamespaceProviders(const TNamespaceProviderCallback& callback) const {
    TProviderMap snapshot;
    {
        std::lock_guard<std::mutex> lock(fMutex);
        snapshot = fProviders;
    }
    for (const TProviderMap::value_type& entry : snapshot) {
        if (!callback(entry.second)) {
            return;
        }
    }
}

}  // namespace NVURZENTA20
