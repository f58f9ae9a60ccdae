#include "TRootObject.h"

#include "TCoreLogger.h"
#include "TNamespaceProviderManager.h"

namespace NVURZENTA20 {

// Both services are created on first use and never destroyed: plug-ins
// register from their static initialisers and may still log while other
// static objects are torn down at exit. The shared pointers themselves are
// leaked too, so even a call made after static destruction finds them
// intact; they stay reachable, which LeakSanitizer accepts.

boost::shared_ptr<ICoreLogger> TRootObject::GetCoreLogger() {
    static const boost::shared_ptr<ICoreLogger>* const logger =
        new boost::shared_ptr<ICoreLogger>(new TCoreLogger);
    return *logger;
}

boost::shared_ptr<INamespaceProviderManager> TRootObject::GetNamespaceProviderManager() {
    static const boost::shared_ptr<INamespaceProviderManager>* const manager =
        new boost::shared_ptr<INamespaceProviderManager>(new TNamespaceProviderManager);
    return *manager;
}

}  // namespace NVURZENTA20
