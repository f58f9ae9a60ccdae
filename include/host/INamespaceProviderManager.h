// The registry with which namespace providers announce themselves when
// they are loaded. Registration is the first slot after the destructor.
#ifndef ZENTA_HOST_INAMESPACEPROVIDERMANAGER_H
#define ZENTA_HOST_INAMESPACEPROVIDERMANAGER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "INamespaceProvider.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class INamespaceProviderManager {
public:
    virtual ~INamespaceProviderManager() {}
    // Registers a provider under its GetName(); a later registration of the
    // same name replaces the earlier one.
    virtual void RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) = 0;
    virtual void UnregisterNamespaceProvider(const std::string& name) = 0;
    virtual boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(const std::string& name) const = 0;
    virtual void EnumerateNamespaceProviders(const TNamespaceProviderCallback& callback) const = 0;
};

}  // namespace NVURZENTA20

#endif
