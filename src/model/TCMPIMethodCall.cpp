#include "TCMPIMethodCall.h"

#include "TCMPIClass.h"
#include "TCMPINamespace.h"
#include "TCMPIProvider.h"
#include "TZENTAException.h"
#include "providerDriver.h"

using namespace NVURZENTA20;

TCMPIMethodCall::TCMPIMethodCall(boost::shared_ptr<TCMPIClass> cls, const std::string& method)
    : fClass(cls), fMethod(method) {}

// No provider is started here: a method can only reach a provider that an
// earlier enumeration or get has started.
boost::shared_ptr<TCMPIProvider> TCMPIMethodCall::FindStartedProvider() const {
    boost::shared_ptr<ICIMQualifier> tag = fClass->GetQualifier("PLUGINNAME", TCIMContext());
    if (!tag) {
        throw TZENTAException(TZENTAStatusCode::kNotFound,
                              "class " + fClass->GetName(TCIMContext()) + " is served by no provider");
    }
    std::string pluginName = tag->GetValue();
    TCMPINamespace::TProviderList& providers = fClass->GetCMPINamespace()->GetProvidersContainer();
    for (std::size_t i = 0; i < providers.size(); ++i) {
        if (providers[i]->HasName(pluginName) && providers[i]->IsInitialized()) {
            return providers[i];
        }
    }
    throw TZENTAException(TZENTAStatusCode::kNotFound, "no started provider " + pluginName);
}

bool TCMPIMethodCall::HasTrueQualifier(const std::string& parameter, const char* qualifier) const {
    boost::shared_ptr<ICIMQualifier> found = fClass->GetMethodDecl(fMethod, TCIMContext())
                                                 ->GetParameterDecl(parameter, TCIMContext())
                                                 ->GetQualifier(qualifier, TCIMContext());
    return found && static_cast<bool>(found->GetValue());
}

void TCMPIMethodCall::Run(const TCIMReference& path, TCIMContext& parameters) const {
    boost::shared_ptr<TCMPIProvider> provider = FindStartedProvider();
    TCIMContext in;
    TCIMContext out;
    for (TCIMContext::const_iterator entry = parameters.begin(); entry != parameters.end(); ++entry) {
        if (HasTrueQualifier(entry->first, "OUT")) out.insert(*entry);
        if (HasTrueQualifier(entry->first, "IN")) in.insert(*entry);
    }
    invokeMethod(provider->GetProviderInfo().get(), path, fMethod, &in, &out);
    parameters = out;
}
