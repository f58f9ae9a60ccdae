#include "TNamespaceManager.h"

#include <algorithm>

#include "IProvider.h"
#include "TInmemNamespaceProvider.h"
#include "TInmemSupport.h"

namespace NVURZENTA20 {

namespace {

// The key as a string made once: every class look-up of a provider reads
// it, and the context's map looks keys up as strings.
const std::string& OriginKey() {
    static const std::string* const key = new std::string(TNamespaceManager::kOriginKey);
    return *key;
}

// Whether the request carries a non-empty "nspID" string (a plain request
// does not). A provider's request carries that entry alone: it is read
// without a search.
bool HasRequestOrigin(const TCIMContext& context) {
    const auto found = context.size() == 1 ? context.begin() : context.find(OriginKey());
    if (found == context.end() || found->first != OriginKey()) return false;
    const TCIMValue& origin = found->second;
    return !origin.IsNull() && !origin.IsArray() && origin.GetType() == TCIMValue::TCIMType::kString &&
           !origin.GetStringView().empty();
}

// Compared as strings: their lengths tell most names apart at once.
bool IsRootClassName(const std::string& name) {
    static const std::string* const root = new std::string("<root>");
    return name == *root;
}

// A routed request goes on as a plain one: the provider namespace answers
// class look-ups by asking the manager again, and must get the
// repository's answer then.
TCIMContext PlainContext(const TCIMContext& context) {
    TCIMContext plain;
    for (const auto& entry : context) {
        if (entry.first != OriginKey()) plain.insert(plain.end(), entry);
    }
    return plain;
}

class TManagerProvider : public INamespaceProvider {
public:
    const std::string& GetName(TCIMContext) const override {
        static const std::string name("manager");
        return name;
    }
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext context, bool populate) const override {
        return TNamespaceManager::Create(TInmemNamespaceProvider::GetInstance()->AllocateNamespace(context, populate));
    }
    ENamespaceType GetType(TCIMContext) const override { return kManagerNamespace; }
    bool IsIndicationsSupported(TCIMContext) const override { return false; }
};

}  // namespace

const char* const TNamespaceManager::kOriginKey = "nspID";
const char* const TNamespaceManager::kProviderQualifier = "PLUGINNAME";

bool TNamespaceManager::IsProviderServed(const ICIMClass& cls) {
    const boost::shared_ptr<ICIMQualifier> marker = cls.GetQualifier(kProviderQualifier, TCIMContext());
    return marker && !marker->GetValue().IsNull();
}

boost::shared_ptr<TNamespaceManager> TNamespaceManager::Create(boost::shared_ptr<ICIMNamespace> repository) {
    if (!repository) ThrowStatus(TZENTAStatusCode::kMissingRepository, "a namespace manager needs a repository");
    boost::shared_ptr<TNamespaceManager> manager(new TNamespaceManager(repository));
    repository->SetUpcallNamespace(manager, TCIMContext());
    return manager;
}

boost::shared_ptr<INamespaceProvider> TNamespaceManager::GetManagerProvider() {
    static const boost::shared_ptr<INamespaceProvider> provider(new TManagerProvider);
    return provider;
}

TNamespaceManager::TNamespaceManager(boost::shared_ptr<ICIMNamespace> repository) : fRepository(repository) {
    TCIMReference::RegisterClassLookup(this, &TNamespaceManager::LookUpClassOf);
}

TNamespaceManager::~TNamespaceManager() { TCIMReference::UnregisterClassLookup(this); }

// Registered for this manager only: `manager` is one.
boost::shared_ptr<ICIMClass> TNamespaceManager::LookUpClassOf(ICIMNamespace& manager, const std::string& name,
                                                              const TCIMContext& context) {
    return static_cast<TNamespaceManager&>(manager).LookUpClass(name, context);
}

void TNamespaceManager::AttachProviderNamespace(const std::string& name, boost::shared_ptr<ICIMNamespace> ns) {
    if (!ns || ns.get() == this) {
        ThrowStatus(TZENTAStatusCode::kInvalidArgument, "cannot attach that namespace as provider namespace " + name);
    }
    ForgetRoutes();
    for (auto& attached : fProviderNamespaces) {
        if (attached.first == name) {
            attached.second = ns;
            return;
        }
    }
    fProviderNamespaces.push_back(std::make_pair(name, ns));
}

void TNamespaceManager::DetachProviderNamespace(const std::string& name) {
    ForgetRoutes();
    fProviderNamespaces.erase(std::remove_if(fProviderNamespaces.begin(), fProviderNamespaces.end(),
                                             [&](const TProviderNamespaces::value_type& attached) {
                                                 return attached.first == name;
                                             }),
                              fProviderNamespaces.end());
}

boost::shared_ptr<ICIMNamespace> TNamespaceManager::GetProviderNamespace(const std::string& name) const {
    for (const auto& attached : fProviderNamespaces) {
        if (attached.first == name) return attached.second;
    }
    return boost::shared_ptr<ICIMNamespace>();
}

boost::shared_ptr<INamespaceProvider> TNamespaceManager::GetNamespaceProvider(TCIMContext) const {
    return GetManagerProvider();
}

void TNamespaceManager::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) {
    ThrowStatus(TZENTAStatusCode::kUnsupportedOperation, "the namespace manager has no upcall namespace");
}

void TNamespaceManager::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying, TCIMContext context) {
    if (!underlying) ThrowStatus(TZENTAStatusCode::kInvalidArgument, "no namespace given to attach");
    boost::shared_ptr<INamespaceProvider> provider = underlying->GetNamespaceProvider(context);
    if (!provider) ThrowStatus(TZENTAStatusCode::kInvalidArgument, "the namespace to attach has no provider");
    AttachProviderNamespace(provider->GetName(context), underlying);
}

boost::shared_ptr<ICIMClass> TNamespaceManager::AllocateClass(const std::string& name,
                                                              boost::shared_ptr<ICIMClass> superClass,
                                                              TCIMContext context) {
    return fRepository->AllocateClass(name, superClass, context);
}

boost::shared_ptr<ICIMNamespace> TNamespaceManager::ServingNamespace(const ICIMClass& cls) const {
    boost::shared_ptr<ICIMQualifier> marker = cls.GetQualifier(kProviderQualifier, TCIMContext());
    if (!marker) return boost::shared_ptr<ICIMNamespace>();
    const TCIMValue value = marker->GetValue();
    if (value.IsNull()) return boost::shared_ptr<ICIMNamespace>();
    const std::string provider = value;
    for (const auto& attached : fProviderNamespaces) {
        bool serves = false;
        attached.second->EnumerateProviders(
            [&](boost::shared_ptr<IProvider> candidate) {
                serves = candidate && candidate->GetName(TCIMContext()) == provider;
                return !serves;
            },
            TCIMContext());
        if (serves) return attached.second;
    }
    ThrowStatus(TZENTAStatusCode::kProviderFailure, "class " + cls.GetName(TCIMContext()) + " is served by provider " +
                                                        provider + ", which no attached namespace lists");
}

boost::shared_ptr<ICIMClass> TNamespaceManager::RepositoryClass(const std::string& name,
                                                                const TCIMContext& plain) const {
    boost::shared_ptr<ICIMClass> cls = fRepository->GetClass(name, plain);
    if (!cls) ThrowStatus(TZENTAStatusCode::kNotFound, "class " + name + " not found");
    return cls;
}

boost::shared_ptr<ICIMClass> TNamespaceManager::ServedClass(boost::shared_ptr<ICIMNamespace> serving,
                                                            const std::string& name, const TCIMContext& plain) {
    boost::shared_ptr<ICIMClass> served = serving->GetClass(name, plain);
    if (!served) ThrowStatus(TZENTAStatusCode::kNotFound, "the provider namespace does not know class " + name);
    return served;
}

std::size_t TNamespaceManager::TRouteHash::operator()(const std::string& name) const { return TNameHash()(name); }

bool TNamespaceManager::TRouteEqual::operator()(const std::string& a, const std::string& b) const {
    return SameName(a, b);
}

void TNamespaceManager::ForgetRoutes() {
    std::lock_guard<std::mutex> lock(fRoutesLock);
    fRoutes.clear();
    for (TRecentRoute& recent : fRecent) recent.route.reset();
}

TNamespaceManager::TRoutePtr TNamespaceManager::KnownRoute(const std::string& name, unsigned long generation) const {
    for (const TRecentRoute& recent : fRecent) {
        if (recent.route && recent.route->generation == generation && recent.name == name) return recent.route;
    }
    const TRoutes::const_iterator known = fRoutes.find(name);
    if (known == fRoutes.end() || known->second->generation != generation) return TRoutePtr();
    TRecentRoute& slot = fRecent[fNextRecent];
    fNextRecent = (fNextRecent + 1) % kRecentRoutes;
    slot.name = name;
    slot.route = known->second;
    return slot.route;
}

TNamespaceManager::TRoutePtr TNamespaceManager::Route(const std::string& name, const TCIMContext& plain) const {
    const unsigned long generation = SchemaGeneration();
    {
        std::lock_guard<std::mutex> lock(fRoutesLock);
        TRoutePtr known = KnownRoute(name, generation);
        if (known) return known;
    }
    TRoutePtr route(new TRoute);
    route->generation = generation;
    route->repositoryClass = RepositoryClass(name, plain);
    route->serving = ServingNamespace(*route->repositoryClass);
    std::lock_guard<std::mutex> lock(fRoutesLock);
    fRoutes[name] = route;
    return route;
}

boost::shared_ptr<ICIMNamespace> TNamespaceManager::GetServingNamespace(const std::string& name) const {
    return Route(name, TCIMContext())->serving;
}

// The provider namespace's class is kept only for requests whose context
// holds nothing but their origin: another entry might change its answer.
boost::shared_ptr<ICIMClass> TNamespaceManager::GetClass(const std::string& name, TCIMContext context) {
    return LookUpClass(name, context);
}

boost::shared_ptr<ICIMClass> TNamespaceManager::LookUpClass(const std::string& name, const TCIMContext& context) {
    if (!HasRequestOrigin(context) || IsRootClassName(name)) return fRepository->GetClass(name, context);
    // A context of the origin alone (the usual provider request) is answered
    // from a known route under one lock, without making the plain context.
    if (context.size() == 1) {
        std::lock_guard<std::mutex> lock(fRoutesLock);
        const TRoutePtr known = KnownRoute(name, SchemaGeneration());
        if (known && !known->serving) return known->repositoryClass;
        if (known && known->servedClass) return known->servedClass;
    }
    const TCIMContext plain = PlainContext(context);
    const TRoutePtr route = Route(name, plain);
    if (!route->serving) return route->repositoryClass;
    if (plain.empty()) {
        std::lock_guard<std::mutex> lock(fRoutesLock);
        if (route->servedClass) return route->servedClass;
    }
    boost::shared_ptr<ICIMClass> served = ServedClass(route->serving, name, plain);
    if (plain.empty()) {
        std::lock_guard<std::mutex> lock(fRoutesLock);
        route->servedClass = served;
    }
    return served;
}

void TNamespaceManager::EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) {
    fRepository->EnumerateRootClasses(callback, context);
}

void TNamespaceManager::EnumerateProviders(const TProviderCallback& callback, TCIMContext context) {
    for (const auto& attached : fProviderNamespaces) {
        bool goOn = true;
        attached.second->EnumerateProviders(
            [&](boost::shared_ptr<IProvider> provider) {
                goOn = callback(provider);
                return goOn;
            },
            context);
        if (!goOn) return;
    }
}

boost::shared_ptr<ICIMQualifierDecl> TNamespaceManager::AllocateQualifierDecl(const std::string& name,
                                                                              const TCIMValue& value,
                                                                              ICIMQualifierDecl::EScope scope,
                                                                              ICIMQualifierDecl::EFlavor flavor,
                                                                              TCIMContext context) {
    return fRepository->AllocateQualifierDecl(name, value, scope, flavor, context);
}

boost::shared_ptr<ICIMQualifierDecl> TNamespaceManager::GetQualifierDecl(const std::string& name,
                                                                         TCIMContext context) const {
    return fRepository->GetQualifierDecl(name, context);
}

void TNamespaceManager::EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext context) const {
    fRepository->EnumerateQualifierDecls(callback, context);
}

void TNamespaceManager::Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter, const TInstanceCallback& callback,
                                  TCIMContext context) {
    fRepository->Subscribe(filter, callback, context);
}

boost::shared_ptr<ICIMInstance> TNamespaceManager::GetInstance(const TCIMReference& path, TCIMContext context) const {
    if (!HasRequestOrigin(context) && !HasRequestOrigin(path.GetContext())) {
        return fRepository->GetInstance(path, context);
    }
    const TCIMContext plain = PlainContext(context);
    const TRoutePtr route = Route(path.GetClassName(), plain);
    if (!route->serving) return fRepository->GetInstance(path, plain);
    boost::shared_ptr<ICIMInstance> found = route->serving->GetInstance(path, plain);
    if (found) return found;
    // A provider that does not get single instances still serves those it
    // enumerates.
    ServedClass(route->serving, path.GetClassName(), plain)->EnumerateInstances(
        [&](boost::shared_ptr<ICIMInstance> instance) {
            if (instance && instance->GetReference(plain) == path) found = instance;
            return !found;
        },
        false, plain);
    return found;
}

void TNamespaceManager::DeleteInstance(const TCIMReference& path, TCIMContext context) {
    fRepository->DeleteInstance(path, context);
}

void TNamespaceManager::ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) {
    fRepository->ModifyInstance(path, values, context);
}

void TNamespaceManager::ExecuteQuery(const TInstanceCallback& callback, std::string& query, std::string& language,
                                     TCIMContext context) {
    fRepository->ExecuteQuery(callback, query, language, context);
}

void TNamespaceManager::ClearInstances() {
    fRepository->ClearInstances();
}

ICIMNamespace& TNamespaceManager::operator=(ICIMNamespace&) {
    return *this;
}

}  // namespace NVURZENTA20
