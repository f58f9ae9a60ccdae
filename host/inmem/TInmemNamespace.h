// The in-memory repository namespace: classes (looked up without regard to
// case), qualifier declarations and, through the classes, instances.
#ifndef ZENTA_HOST_INMEM_TINMEMNAMESPACE_H
#define ZENTA_HOST_INMEM_TINMEMNAMESPACE_H

#include <string>
#include <unordered_map>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "ICIMNamespace.h"
#include "TInmemSupport.h"

namespace NVURZENTA20 {

class TInmemClass;

class TInmemNamespace : public ICIMNamespace, public boost::enable_shared_from_this<TInmemNamespace> {
public:
    // The origin ("nspID") of the requests the repository passes on.
    static const char* const kRoutedOrigin;

    // Always own the namespace by a shared pointer (classes refer back to it).
    static boost::shared_ptr<TInmemNamespace> Create();
    ~TInmemNamespace() override;

    // The "inmem" namespace provider.
    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext context) const override;
    // The namespace requests are routed through (a namespace manager); held
    // weakly. Association walks enumerate through it.
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall, TCIMContext context) override;
    // A repository has no underlying namespace: kUnsupportedNamespace.
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying, TCIMContext context) override;
    // kDuplicateClass for a name in use, kMissingSuperclass for a superclass
    // this namespace does not hold (`superClass` is matched by name, so it
    // may be a wrapper of one of its classes).
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass,
                                               TCIMContext context) override;
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override;
    void EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) override;
    // A repository serves no providers: the callback is never called.
    void EnumerateProviders(const TProviderCallback& callback, TCIMContext context) override;
    // Declaring a name again returns the existing declaration when it is the
    // same, and throws kAlreadyExists when it differs.
    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name, const TCIMValue& value,
                                                               ICIMQualifierDecl::EScope scope,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) override;
    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                          TCIMContext context) const override;
    void EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext context) const override;
    // kUnsupportedOperation: the repository raises no indications.
    void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter, const TInstanceCallback& callback,
                   TCIMContext context) override;
    // The filed instance with that path, or an empty pointer. The path must
    // name the instance's own class, as CIM instance names do: a path naming
    // a superclass finds nothing, although the walk passes subclasses.
    // Instances of a class a provider serves (one marked "PLUGINNAME") live
    // with the provider: when none of them is filed here, the request goes
    // on through the upcall namespace, marked as the repository's own
    // ("nspID" = "repository"), and a class it cannot route has none.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path, TCIMContext context) const override;
    // kInstanceNotFound when no instance has that path.
    void DeleteInstance(const TCIMReference& path, TCIMContext context) override;
    // Sets the given property values, all or none; key properties cannot
    // change (kInvalidProperty). kInstanceNotFound when no instance has
    // that path.
    void ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) override;
    // kQueryNotSupported.
    void ExecuteQuery(const TInstanceCallback& callback, std::string& query, std::string& language,
                      TCIMContext context) override;
    // Drops the instances filed on behalf of requests (every instance that
    // is not a repository instance); the repository's own stay.
    void ClearInstances() override;
    // Namespaces are not copied: assigns nothing.
    ICIMNamespace& operator=(ICIMNamespace& other) override;

    boost::shared_ptr<ICIMNamespace> GetUpcallNamespace() const { return fUpcall.lock(); }
    // The namespace through which requests are routed: the upcall
    // namespace when one is set and alive, else this one.
    boost::shared_ptr<ICIMNamespace> GetRoutingNamespace();
    // Every class, in the order it was defined.
    std::vector<boost::shared_ptr<TInmemClass> > GetClasses() const { return fClassOrder; }

    // Used by TInmemClass::AddToNamespace / RemoveFromNamespace.
    bool FileClass(boost::shared_ptr<TInmemClass> cls);
    void UnfileClass(boost::shared_ptr<TInmemClass> cls);

private:
    TInmemNamespace();
    boost::shared_ptr<TInmemClass> FindClass(const std::string& name) const;
    boost::shared_ptr<ICIMInstance> FindInstance(const TCIMReference& path) const;
    boost::shared_ptr<ICIMInstance> ServedInstance(const TCIMReference& path, TCIMContext context) const;
    boost::shared_ptr<ICIMInstance> RequireInstance(const TCIMReference& path) const;
    void UnfileTree(boost::shared_ptr<ICIMClass> cls);

    boost::weak_ptr<ICIMNamespace> fUpcall;
    boost::shared_ptr<TInmemClass> fRoot;
    std::unordered_map<std::string, boost::shared_ptr<TInmemClass>, TNameHash, TNameEqual> fClasses;
    std::vector<boost::shared_ptr<TInmemClass> > fClassOrder;
    std::vector<boost::shared_ptr<ICIMQualifierDecl> > fQualifierDecls;
};

}  // namespace NVURZENTA20

#endif
