// The host namespace that plug-ins call back into: it stands over the
// repository namespace and routes requests that come from providers to the
// namespace provider that serves the class asked for. Implemented in
// libinmem.nsp.so; docs/namespace-manager.md describes the routing.
#ifndef ZENTA_HOST_TNAMESPACEMANAGER_H
#define ZENTA_HOST_TNAMESPACEMANAGER_H

#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include "ICIMNamespace.h"
#include "INamespaceProvider.h"

namespace NVURZENTA20 {

class TNamespaceManager : public ICIMNamespace, public boost::enable_shared_from_this<TNamespaceManager> {
public:
    // The context entry that marks a request as coming from a provider, and
    // the qualifier that names the provider serving a class.
    static const char* const kOriginKey;          // "nspID"
    static const char* const kProviderQualifier;  // "PLUGINNAME"
    // Whether a provider serves `cls`: it carries a provider's name.
    static bool IsProviderServed(const ICIMClass& cls);

    // A manager over `repository` (kMissingRepository when empty). The
    // manager becomes the repository's upcall namespace, so that
    // repository objects route their own requests through it.
    static boost::shared_ptr<TNamespaceManager> Create(boost::shared_ptr<ICIMNamespace> repository);
    // The namespace provider "manager" (type kManagerNamespace): it makes a
    // manager over a new in-memory repository.
    static boost::shared_ptr<INamespaceProvider> GetManagerProvider();

    ~TNamespaceManager() override;

    // Attaches a provider namespace under `name`, held strongly; attaching
    // a name again replaces the namespace in its place. The manager itself
    // or an empty pointer is refused (kInvalidArgument).
    void AttachProviderNamespace(const std::string& name, boost::shared_ptr<ICIMNamespace> ns);
    // Unknown names are ignored.
    void DetachProviderNamespace(const std::string& name);
    // Empty when nothing is attached under `name`.
    boost::shared_ptr<ICIMNamespace> GetProviderNamespace(const std::string& name) const;
    boost::shared_ptr<ICIMNamespace> GetRepository() const { return fRepository; }
    // The provider namespace that serves the class `name`; empty when the
    // repository does. kNotFound and kProviderFailure as GetClass.
    boost::shared_ptr<ICIMNamespace> GetServingNamespace(const std::string& name) const;

    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext context) const override;
    // The manager is the top of the routing: kUnsupportedOperation.
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall, TCIMContext context) override;
    // Attaches `underlying` under its namespace provider's name.
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying, TCIMContext context) override;
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass,
                                               TCIMContext context) override;
    // Plain requests: the repository's answer (possibly empty). Requests
    // with a non-empty "nspID": the serving provider namespace's class for a
    // class marked with "PLUGINNAME", else the repository's; kNotFound for
    // an unknown class, kProviderFailure for a marked class whose provider
    // no attached namespace lists.
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override;
    void EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) override;
    // The providers of the attached namespaces, in attach order.
    void EnumerateProviders(const TProviderCallback& callback, TCIMContext context) override;
    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name, const TCIMValue& value,
                                                               ICIMQualifierDecl::EScope scope,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) override;
    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                          TCIMContext context) const override;
    void EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext context) const override;
    void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter, const TInstanceCallback& callback,
                   TCIMContext context) override;
    // Routed as GetClass, by the path's class, when `context` or the path's
    // own context carries a non-empty "nspID": a provider-served instance is
    // asked of the serving namespace (one provider call) and, when that finds
    // none, looked for among the instances the provider enumerates. A plain
    // request goes to the repository, which routes the classes of providers
    // back here.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path, TCIMContext context) const override;
    void DeleteInstance(const TCIMReference& path, TCIMContext context) override;
    void ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) override;
    void ExecuteQuery(const TInstanceCallback& callback, std::string& query, std::string& language,
                      TCIMContext context) override;
    void ClearInstances() override;
    // Managers are not copied: assigns nothing.
    ICIMNamespace& operator=(ICIMNamespace& other) override;

private:
    typedef std::vector<std::pair<std::string, boost::shared_ptr<ICIMNamespace> > > TProviderNamespaces;

    // GetClass with the context read in place: what paths naming this
    // manager resolve their class with (TCIMReference::RegisterClassLookup).
    boost::shared_ptr<ICIMClass> LookUpClass(const std::string& name, const TCIMContext& context);
    static boost::shared_ptr<ICIMClass> LookUpClassOf(ICIMNamespace& manager, const std::string& name,
                                                      const TCIMContext& context);

    // Where the requests of providers for one class go: the repository's
    // class, the namespace serving it (empty: the repository), and the class
    // a request with nothing but its origin in the context gets (set on the
    // first such request, under the lock). Every instance a provider makes
    // asks for its class, so routes are kept until a class or the attached
    // namespaces change.
    struct TRoute {
        unsigned long generation;
        boost::shared_ptr<ICIMClass> repositoryClass;
        boost::shared_ptr<ICIMNamespace> serving;
        boost::shared_ptr<ICIMClass> servedClass;
    };
    typedef boost::shared_ptr<TRoute> TRoutePtr;
    // By class name, without regard to ASCII case.
    struct TRouteHash {
        std::size_t operator()(const std::string& name) const;
    };
    struct TRouteEqual {
        bool operator()(const std::string& a, const std::string& b) const;
    };
    typedef std::unordered_map<std::string, TRoutePtr, TRouteHash, TRouteEqual> TRoutes;
    // The routes found last, by the name they were asked for: a provider
    // asks for the same few classes for every instance it makes (an
    // association and the classes its ends name).
    struct TRecentRoute {
        std::string name;
        TRoutePtr route;
    };
    static const std::size_t kRecentRoutes = 4;

    explicit TNamespaceManager(boost::shared_ptr<ICIMNamespace> repository);

    // The route of the class `name` (kNotFound, kProviderFailure as GetClass).
    TRoutePtr Route(const std::string& name, const TCIMContext& plain) const;
    // The route known for `name`, or empty; the lock must be held.
    TRoutePtr KnownRoute(const std::string& name, unsigned long generation) const;
    void ForgetRoutes();

    // The repository's class; kNotFound when it has none.
    boost::shared_ptr<ICIMClass> RepositoryClass(const std::string& name, const TCIMContext& plain) const;
    static boost::shared_ptr<ICIMClass> ServedClass(boost::shared_ptr<ICIMNamespace> serving,
                                                    const std::string& name, const TCIMContext& plain);
    boost::shared_ptr<ICIMNamespace> ServingNamespace(const ICIMClass& cls) const;

    boost::shared_ptr<ICIMNamespace> fRepository;
    TProviderNamespaces fProviderNamespaces;  // in attach order
    mutable std::mutex fRoutesLock;
    mutable TRoutes fRoutes;
    mutable TRecentRoute fRecent[kRecentRoutes];
    mutable std::size_t fNextRecent = 0;
};

}  // namespace NVURZENTA20

#endif
