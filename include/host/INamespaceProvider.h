// A namespace provider: a plug-in that contributes namespaces to the host.
// Slot order is fixed.
#ifndef ZENTA_HOST_INAMESPACEPROVIDER_H
#define ZENTA_HOST_INAMESPACEPROVIDER_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class INamespaceProvider {
public:
    enum ENamespaceType {
        kProviderNamespace = 0,    // serves classes through plug-ins
        kRepositoryNamespace = 1,  // stores classes and instances itself
        kManagerNamespace = 2      // routes requests to other namespaces
    };

    virtual ~INamespaceProvider() {}
    virtual const std::string& GetName(TCIMContext context) const = 0;
    // Makes a new namespace. With `populate` true a repository namespace is
    // filled with the host's standard documents; plug-in namespaces ignore it.
    virtual boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext context, bool populate) const = 0;
    virtual ENamespaceType GetType(TCIMContext context) const = 0;
    virtual bool IsIndicationsSupported(TCIMContext context) const = 0;

protected:
    INamespaceProvider() {}
};

}  // namespace NVURZENTA20

#endif
