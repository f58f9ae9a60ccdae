// A CIM namespace. The virtual operations stand in the host's slot order;
// binary plug-ins depend on it, so never insert, remove or reorder them.
#ifndef ZENTA_HOST_ICIMNAMESPACE_H
#define ZENTA_HOST_ICIMNAMESPACE_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMClass.h"
#include "ICIMIndicationFilter.h"
#include "ICIMInstance.h"
#include "ICIMQualifierDecl.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class ICIMNamespace {
public:
    virtual ~ICIMNamespace() {}

    virtual boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext context) const = 0;
    virtual void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall, TCIMContext context) = 0;
    virtual void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying, TCIMContext context) = 0;
    // Defines a class (an empty superclass makes a root class).
    virtual boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name,
                                                       boost::shared_ptr<ICIMClass> superClass,
                                                       TCIMContext context) = 0;
    // The class of that name, or an empty pointer. "<root>" names the
    // pseudo-class whose subclasses are the root classes.
    virtual boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) = 0;
    virtual void EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) = 0;
    virtual void EnumerateProviders(const TProviderCallback& callback, TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name,
                                                                       const TCIMValue& value,
                                                                       ICIMQualifierDecl::EScope scope,
                                                                       ICIMQualifierDecl::EFlavor flavor,
                                                                       TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name,
                                                                  TCIMContext context) const = 0;
    virtual void EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext context) const = 0;
    virtual void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter, const TInstanceCallback& callback,
                           TCIMContext context) = 0;
    // The instance the path names, or an empty pointer.
    virtual boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& path, TCIMContext context) const = 0;
    virtual void DeleteInstance(const TCIMReference& path, TCIMContext context) = 0;
    // `values` maps property names to their new values.
    virtual void ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) = 0;
    virtual void ExecuteQuery(const TInstanceCallback& callback, std::string& query, std::string& language,
                              TCIMContext context) = 0;
    // Releases instances the namespace holds on behalf of its requests.
    virtual void ClearInstances() = 0;
    virtual ICIMNamespace& operator=(ICIMNamespace& other) = 0;

protected:
    ICIMNamespace() {}
    ICIMNamespace(const ICIMNamespace&) {}
};

}  // namespace NVURZENTA20

#endif
