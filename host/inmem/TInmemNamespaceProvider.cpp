#include "TInmemNamespaceProvider.h"

#include <exception>

#include "TInmemNamespace.h"
#include "TNamespaceManager.h"
#include "TRootObject.h"
#include "TStandardDocuments.h"

namespace NVURZENTA20 {

boost::shared_ptr<TInmemNamespaceProvider> TInmemNamespaceProvider::GetInstance() {
    static const boost::shared_ptr<TInmemNamespaceProvider> instance(new TInmemNamespaceProvider);
    return instance;
}

const std::string& TInmemNamespaceProvider::GetName(TCIMContext) const {
    static const std::string name("inmem");
    return name;
}

boost::shared_ptr<ICIMNamespace> TInmemNamespaceProvider::AllocateNamespace(TCIMContext, bool populate) const {
    boost::shared_ptr<TInmemNamespace> ns = TInmemNamespace::Create();
    if (populate) LoadStandardDocuments(ns);
    return ns;
}

namespace {

// Runs when the dynamic loader maps the library, like every namespace
// provider's registration. An exception must not escape a static
// initialiser (it would end the process), so a failure is logged instead.
struct TRegistration {
    TRegistration() {
        try {
            boost::shared_ptr<INamespaceProviderManager> manager = TRootObject::GetNamespaceProviderManager();
            manager->RegisterNamespaceProvider(TInmemNamespaceProvider::GetInstance());
            manager->RegisterNamespaceProvider(TNamespaceManager::GetManagerProvider());
        } catch (const std::exception& e) {
            TRootObject::GetCoreLogger()->Log(ICoreLogger::kError,
                                              std::string("inmem: namespace provider registration failed: ") + e.what());
        }
    }
};

const TRegistration kRegistration;

}  // namespace

}  // namespace NVURZENTA20
