// The namespace provider of the in-memory repository ("inmem"). It is
// registered with the host's namespace-provider manager when the library is
// loaded.
#ifndef ZENTA_HOST_INMEM_TINMEMNAMESPACEPROVIDER_H
#define ZENTA_HOST_INMEM_TINMEMNAMESPACEPROVIDER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "INamespaceProvider.h"

namespace NVURZENTA20 {

class TInmemNamespaceProvider : public INamespaceProvider {
public:
    static boost::shared_ptr<TInmemNamespaceProvider> GetInstance();

    const std::string& GetName(TCIMContext context) const override;
    // A new, empty repository; with `populate` it holds the host's standard
    // qualifier declarations and registration classes.
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext context, bool populate) const override;
    ENamespaceType GetType(TCIMContext) const override { return kRepositoryNamespace; }
    bool IsIndicationsSupported(TCIMContext) const override { return false; }

private:
    TInmemNamespaceProvider() {}
};

}  // namespace NVURZENTA20

#endif
