// A CIM class. The virtual operations stand in the host's slot order;
// binary plug-ins depend on it, so never insert, remove or reorder them.
#ifndef ZENTA_HOST_ICIMCLASS_H
#define ZENTA_HOST_ICIMCLASS_H

#include <string>

#include <boost/shared_ptr.hpp>

#include "ICIMElement.h"
#include "ICIMMethodDecl.h"
#include "ICIMNamedElement.h"
#include "ICIMProperty.h"
#include "ICIMPropertyDecl.h"
#include "TCIMValue.h"
#include "ZentaTypes.h"

namespace NVURZENTA20 {

class ICIMClass : public ICIMElement, public ICIMNamedElement {
public:
    virtual ~ICIMClass() {}

    virtual bool AddToNamespace(TCIMContext context) = 0;
    virtual void RemoveFromNamespace(TCIMContext context) = 0;
    virtual void ModifyClass(boost::shared_ptr<ICIMClass> modified, TCIMContext context) = 0;
    virtual std::string GetName(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const = 0;
    virtual bool IsAssociation(TCIMContext context) const = 0;
    virtual bool IsAbstract(TCIMContext context) const = 0;
    virtual bool IsRootClass(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext context) const = 0;
    virtual void EnumerateSubClasses(const TClassCallback& callback, bool deep, TCIMContext context) = 0;
    virtual bool IsSubclassOf(boost::shared_ptr<const ICIMClass> other, TCIMContext context) const = 0;
    // Classes reachable from this one through associations, filtered by
    // association class, result class, role and result role ("" = any).
    virtual void EnumerateAssociatedClasses(const TClassCallback& callback, const std::string& assocClass,
                                            const std::string& resultClass, const std::string& role,
                                            const std::string& resultRole, TCIMContext context) = 0;
    // Association classes that can refer to this class.
    virtual void EnumerateAssociationClasses(const TClassCallback& callback, const std::string& resultClass,
                                             const std::string& role, TCIMContext context) = 0;
    virtual void EnumerateKeyNames(const TKeyNameCallback& callback, TCIMContext context) const = 0;
    // Declares a property; `value` gives its type, array-ness and default
    // (a typed null for no default).
    virtual boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name,
                                                                     const TCIMValue& value,
                                                                     TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name,
                                                                TCIMContext context) const = 0;
    virtual void EnumeratePropertyDecls(const TPropertyDeclCallback& callback, TCIMContext context) const = 0;
    // The class-level (static) value of a declared property.
    virtual boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) = 0;
    virtual void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) = 0;
    virtual void EnumerateStaticProperties(const TPropertyCallback& callback, TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext context) = 0;
    virtual void EnumerateInstances(const TInstanceCallback& callback, bool deep, TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string& name,
                                                                 TCIMValue::TCIMType returnType,
                                                                 TCIMContext context) = 0;
    virtual boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string& name,
                                                            TCIMContext context) const = 0;
    virtual void EnumerateMethodDecls(const TMethodDeclCallback& callback, TCIMContext context) const = 0;
    // A class (static) method; `parameters` carries the parameters in and
    // out. Returns the method's return value.
    virtual TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) = 0;
    virtual bool operator==(ICIMClass& other) const = 0;
    virtual bool operator<(ICIMClass& other) const = 0;
    virtual ICIMClass& operator=(const ICIMClass& other) = 0;
    virtual void AddChildClass(boost::shared_ptr<ICIMClass> child) = 0;
    virtual void RemoveChildClass(boost::shared_ptr<ICIMClass> child) = 0;
    // Files an instance with the class; true when it was filed.
    virtual bool AddInstance(boost::shared_ptr<ICIMInstance> instance) = 0;
    virtual void RemoveInstance(boost::shared_ptr<ICIMInstance> instance) = 0;
    virtual void AddAssociationClass(boost::shared_ptr<ICIMClass> association) = 0;
    virtual void RemoveAssociationClass(boost::shared_ptr<ICIMClass> association) = 0;
    virtual void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) = 0;
    virtual void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) = 0;
    virtual void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) = 0;
    virtual void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) = 0;

protected:
    ICIMClass() {}
    ICIMClass(const ICIMClass&) : ICIMElement(), ICIMNamedElement() {}
};

}  // namespace NVURZENTA20

#endif
