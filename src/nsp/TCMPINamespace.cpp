#include "TCMPINamespace.h"

#include <cstdint>
#include <cstdlib>

#include <boost/make_shared.hpp>

#include "CmpiCast.h"
#include "TCMPIClass.h"
#include "TCMPINamespaceProvider.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "cmpiBroker.h"
#include "cmpiBrokerEnc.h"

using namespace NVURZENTA20;

namespace {

const char kPluginTypeKey[] = "pluginType";
const signed char kCmpiPluginType = 4;
const signed char kAnyPluginType = -1;

// Context entries of type uint64 carry the address of a shared pointer to a
// namespace that lives in the caller's memory. Returns false when the entry
// is absent or of another type.
bool ReadNamespaceEntry(const TCIMContext& context, const char* key, boost::shared_ptr<ICIMNamespace>& out) {
    TCIMContext::const_iterator entry = context.find(key);
    if (entry == context.end() || entry->second.GetType() != TCIMValue::TCIMType::kUint64) return false;
    unsigned long long address = entry->second;
    out = *reinterpret_cast<boost::shared_ptr<ICIMNamespace>*>(static_cast<std::uintptr_t>(address));
    return true;
}

bool IsBiosProviderShown() {
    const char* setting = std::getenv("ZENTA_BIOSPROVIDER");
    if (setting == nullptr) return false;
    std::string lowered(setting);
    for (std::string::iterator c = lowered.begin(); c != lowered.end(); ++c) *c = std::tolower(*c);
    return lowered == "yes";
}

bool IsBiosModule(const boost::shared_ptr<IProvider>& provider) {
    std::string module = provider->GetModuleName(TCIMContext());
    return module == "bios" || module == "libbios";
}

// Offers each provider to the callback; false once the callback asked to stop.
template <class TList>
bool OfferProviders(const TList& providers, bool showBios, const TProviderCallback& callback) {
    for (typename TList::const_iterator p = providers.begin(); p != providers.end(); ++p) {
        if (!showBios && IsBiosModule(*p)) continue;
        if (!callback(*p)) return false;
    }
    return true;
}

}  // namespace

bool TCreateWrappedCmpiClass::operator()(boost::shared_ptr<ICIMClass> cls) const {
    boost::shared_ptr<ICIMClass> wrapper(new TCMPIClass(fNamespace, cls));
    return fCallback(wrapper);
}

TCMPINamespace::TCMPINamespace(TCIMContext context) {
    if (!ReadNamespaceEntry(context, "repository", fRepository)) {
        throw TZENTAException(TZENTAStatusCode::kMissingRepository,
                              "TCMPINamespace: the context has no \"repository\" namespace");
    }
    boost::shared_ptr<ICIMNamespace> upcall;
    if (ReadNamespaceEntry(context, "upcall", upcall)) fUpcallNamespace = upcall;

    fBroker.reset(new CMPIBroker());
    fBroker->hdl = &fUpcallNamespace;
    fBroker->bft = cmpiBrokerFt;
    fBroker->eft = cmpiBrokerEncFt;
    fBroker->xft = nullptr;
}

TCMPINamespace::~TCMPINamespace() {
    fUpcallNamespace.reset();
    fBroker.reset();
    fClassProviders.clear();
    fProviders.clear();
    fRepository.reset();
}

boost::shared_ptr<INamespaceProvider> TCMPINamespace::GetNamespaceProvider(TCIMContext) const {
    return TCMPINamespaceProvider::GetInstance();
}

void TCMPINamespace::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall, TCIMContext) {
    fUpcallNamespace = upcall;
}

void TCMPINamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) {
    throw TZENTAException(TZENTAStatusCode::kUnsupportedNamespace,
                          "TCMPINamespace: underlying namespaces are not supported");
}

boost::shared_ptr<ICIMClass> TCMPINamespace::AllocateClass(const std::string& name,
                                                           boost::shared_ptr<ICIMClass> superClass,
                                                           TCIMContext context) {
    boost::shared_ptr<ICIMClass> cls = fRepository->AllocateClass(name, superClass, context);
    return boost::shared_ptr<ICIMClass>(new TCMPIClass(shared_from_this(), cls));
}

boost::shared_ptr<ICIMClass> TCMPINamespace::GetClass(const std::string& name, TCIMContext context) {
    if (name == "<root>") {
        boost::shared_ptr<ICIMClass> root = fRepository->GetClass("<root>", TCIMContext());
        return boost::shared_ptr<ICIMClass>(new TCMPIClass(shared_from_this(), root));
    }
    boost::shared_ptr<ICIMClass> cls = fUpcallNamespace.lock()->GetClass(name, context);
    if (!cls) return cls;
    // One allocation for the wrapper and its count: every instance a
    // provider makes asks for its class and keeps the wrapper.
    return boost::make_shared<TCMPIClass>(shared_from_this(), cls);
}

void TCMPINamespace::EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) {
    TCreateWrappedCmpiClass wrap(shared_from_this(), callback);
    fUpcallNamespace.lock()->EnumerateRootClasses(wrap, context);
}

void TCMPINamespace::EnumerateProviders(const TProviderCallback& callback, TCIMContext context) {
    TCIMContext::const_iterator pluginType = context.find(kPluginTypeKey);
    if (pluginType != context.end()) {
        if (pluginType->second.GetType() != TCIMValue::TCIMType::kSint8) {
            TRootObject::GetCoreLogger()->Log(
                0,
                "Invalid context pluginType datatype provided to TPluginManagerNamespace::EnumerateProviders(), "
                "must be of type kSint8.");
            throw TZENTAException(TZENTAStatusCode::kInvalidContext, "pluginType must be of type kSint8");
        }
        signed char wanted = pluginType->second;
        if (wanted != kCmpiPluginType && wanted != kAnyPluginType) return;
    }
    bool showBios = IsBiosProviderShown();
    if (!OfferProviders(fClassProviders, showBios, callback)) return;
    OfferProviders(fProviders, showBios, callback);
}

boost::shared_ptr<ICIMQualifierDecl> TCMPINamespace::AllocateQualifierDecl(const std::string& name,
                                                                           const TCIMValue& value,
                                                                           ICIMQualifierDecl::EScope scope,
                                                                           ICIMQualifierDecl::EFlavor flavor,
                                                                           TCIMContext context) {
    return fRepository->AllocateQualifierDecl(name, value, scope, flavor, context);
}

// Answered by the upcall namespace, unlike the other qualifier operations:
// providers' classes are tagged with declarations the host resolves there.
boost::shared_ptr<ICIMQualifierDecl> TCMPINamespace::GetQualifierDecl(const std::string& name,
                                                                      TCIMContext context) const {
    return fUpcallNamespace.lock()->GetQualifierDecl(name, context);
}

void TCMPINamespace::EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext context) const {
    fRepository->EnumerateQualifierDecls(callback, context);
}

void TCMPINamespace::Subscribe(boost::shared_ptr<ICIMIndicationFilter>, const TInstanceCallback&, TCIMContext) {
    throw TZENTAException(TZENTAStatusCode::kUnsupportedOperation, "TCMPINamespace: indications are not supported");
}

boost::shared_ptr<ICIMInstance> TCMPINamespace::GetInstance(const TCIMReference& path, TCIMContext context) const {
    TCMPINamespace* self = const_cast<TCMPINamespace*>(this);
    boost::shared_ptr<TCMPIClass> cls =
        cmpiCast<TCMPIClass>(self->GetClass(path.GetClassName(), TCIMContext()));
    return cls->GetInstance(path, context);
}

void TCMPINamespace::DeleteInstance(const TCIMReference& path, TCIMContext context) {
    fRepository->DeleteInstance(path, context);
}

void TCMPINamespace::ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) {
    fRepository->ModifyInstance(path, values, context);
}

void TCMPINamespace::ExecuteQuery(const TInstanceCallback& callback, std::string& query, std::string& language,
                                  TCIMContext context) {
    fRepository->ExecuteQuery(callback, query, language, context);
}

void TCMPINamespace::ClearInstances() { TCMPINamespaceProvider::ClearNamespace(); }

ICIMNamespace& TCMPINamespace::operator=(ICIMNamespace&) { return *this; }

boost::shared_ptr<ICIMNamespace> TCMPINamespace::GetUpcallNamespace() const { return fUpcallNamespace.lock(); }
