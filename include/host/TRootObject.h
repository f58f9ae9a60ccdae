// Process-wide services of the host.
#ifndef ZENTA_HOST_TROOTOBJECT_H
#define ZENTA_HOST_TROOTOBJECT_H

#include <boost/shared_ptr.hpp>

#include "ICoreLogger.h"
#include "INamespaceProviderManager.h"

namespace NVURZENTA20 {

class TRootObject {
public:
    // The logger all host and plug-in messages go to.
    static boost::shared_ptr<ICoreLogger> GetCoreLogger();
    // The registry of namespace providers.
    static boost::shared_ptr<INamespaceProviderManager> GetNamespaceProviderManager();
};

}  // namespace NVURZENTA20

#endif
