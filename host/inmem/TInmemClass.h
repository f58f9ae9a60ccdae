// A class of the in-memory repository: its own declarations and qualifiers,
// what it inherits from its superclass, its static property values and the
// instances filed with it.
#ifndef ZENTA_HOST_INMEM_TINMEMCLASS_H
#define ZENTA_HOST_INMEM_TINMEMCLASS_H

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "ICIMClass.h"
#include "TInmemDeclarations.h"
#include "TInmemLayout.h"
#include "TInmemQualifier.h"

namespace NVURZENTA20 {

class TInmemNamespace;

class TInmemClass : public TInmemNamedElement<ICIMClass>, public boost::enable_shared_from_this<TInmemClass> {
public:
    // The name of the pseudo-class whose subclasses are the root classes.
    static const char* const kRootName;

    // A class holds its superclass strongly and its namespace and
    // subclasses weakly (the namespace owns the classes).
    TInmemClass(boost::weak_ptr<TInmemNamespace> ns, const std::string& name,
                boost::shared_ptr<TInmemClass> superClass);

    // True when every reference property names the class it refers to and
    // the superclass is still in the namespace.
    bool Validate(TCIMContext context) const override;
    // Files the class in its namespace again after RemoveFromNamespace; false
    // when it is filed already.
    bool AddToNamespace(TCIMContext context) override;
    // Removes the class and its subclasses (with their instances) from the
    // namespace.
    void RemoveFromNamespace(TCIMContext context) override;
    // Takes over `modified`'s own qualifiers and the declarations that
    // originate in it; instances made before keep their property sets.
    void ModifyClass(boost::shared_ptr<ICIMClass> modified, TCIMContext context) override;
    std::string GetName(TCIMContext) const override { return fName; }
    boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const override;
    bool IsAssociation(TCIMContext context) const override;
    bool IsAbstract(TCIMContext context) const override;
    bool IsRootClass(TCIMContext context) const override;
    boost::shared_ptr<ICIMClass> GetSuperClass(TCIMContext context) const override;
    // Subclasses in the order they were defined; deep walks depth-first.
    void EnumerateSubClasses(const TClassCallback& callback, bool deep, TCIMContext context) override;
    // Strict: a class is not a subclass of itself. Compares names, so
    // `other` may be a wrapper of a repository class.
    bool IsSubclassOf(boost::shared_ptr<const ICIMClass> other, TCIMContext context) const override;
    void EnumerateAssociatedClasses(const TClassCallback& callback, const std::string& assocClass,
                                    const std::string& resultClass, const std::string& role,
                                    const std::string& resultRole, TCIMContext context) override;
    void EnumerateAssociationClasses(const TClassCallback& callback, const std::string& resultClass,
                                     const std::string& role, TCIMContext context) override;
    void EnumerateKeyNames(const TKeyNameCallback& callback, TCIMContext context) const override;
    // A second own declaration of the same name is refused (kAlreadyExists);
    // one that overrides an inherited declaration must keep its type.
    boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name, const TCIMValue& value,
                                                             TCIMContext context) override;
    boost::shared_ptr<ICIMPropertyDecl> GetPropertyDecl(const std::string& name,
                                                        TCIMContext context) const override;
    void EnumeratePropertyDecls(const TPropertyDeclCallback& callback, TCIMContext context) const override;
    // Class-level values exist for every declared property and start from
    // the declaration's default; GetProperty of an undeclared name is empty.
    boost::shared_ptr<ICIMProperty> GetProperty(const std::string& name, TCIMContext context) override;
    void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) override;
    void EnumerateStaticProperties(const TPropertyCallback& callback, TCIMContext context) override;
    // A TInmemInstance of kind kRepositoryInstance.
    boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext context) override;
    // The filed instances in filing order; deep adds the subclasses'.
    void EnumerateInstances(const TInstanceCallback& callback, bool deep, TCIMContext context) override;
    boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string& name, TCIMValue::TCIMType returnType,
                                                         TCIMContext context) override;
    boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(const std::string& name, TCIMContext context) const override;
    void EnumerateMethodDecls(const TMethodDeclCallback& callback, TCIMContext context) const override;
    // Repository classes have no method implementations: kMethodNotFound
    // for an undeclared method, kUnsupportedOperation otherwise.
    TCIMValue InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) override;
    // By name (case-insensitive).
    bool operator==(ICIMClass& other) const override;
    bool operator<(ICIMClass& other) const override;
    // As ModifyClass.
    ICIMClass& operator=(const ICIMClass& other) override;
    void AddChildClass(boost::shared_ptr<ICIMClass> child) override;
    void RemoveChildClass(boost::shared_ptr<ICIMClass> child) override;
    // Files an instance of this class or of a subclass. False when it is of
    // another class, or when it (or an instance with the same path) is
    // filed already.
    bool AddInstance(boost::shared_ptr<ICIMInstance> instance) override;
    void RemoveInstance(boost::shared_ptr<ICIMInstance> instance) override;
    // Association classes declared to refer to this class in addition to
    // those the namespace holds.
    void AddAssociationClass(boost::shared_ptr<ICIMClass> association) override;
    void RemoveAssociationClass(boost::shared_ptr<ICIMClass> association) override;
    void AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) override;
    void RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) override;
    void AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) override;
    void RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) override;

    // What the instances of this class share: built once and again only
    // after a declaration or qualifier of any class has changed.
    TLayoutPtr GetLayout() const;
    std::vector<boost::shared_ptr<ICIMMethodDecl> > GetMethodDecls() const;
    std::vector<boost::shared_ptr<ICIMClass> > GetExplicitAssociationClasses() const;
    // Drops the instances that are not repository instances (those filed on
    // behalf of a request, e.g. by a provider's enumeration).
    void ClearRequestInstances();
    // Drops every filed instance (the class leaves its namespace, or the
    // namespace ends: filed instances refer back to their class).
    void DropInstances() { fInstances.clear(); }
    boost::shared_ptr<TInmemClass> GetInmemSuperClass() const { return fSuperClass; }
    std::vector<boost::shared_ptr<ICIMClass> > GetChildren() const;
    bool IsPseudoRoot() const;

protected:
    boost::shared_ptr<const ICIMNamedElement> Parent() const override { return fSuperClass; }
    std::string DescribeElement() const override { return "class " + fName; }

private:
    bool WalkSubClasses(const TClassCallback& callback, bool deep);
    bool WalkInstances(const TInstanceCallback& callback, bool deep);
    bool HasQualifierTrue(const char* name) const;
    bool IsInstanceOfThisOrSubclass(ICIMInstance& instance) const;
    void CopyDeclarationsFrom(const ICIMClass& other);
    std::vector<boost::shared_ptr<ICIMPropertyDecl> > MergedPropertyDecls() const;
    boost::shared_ptr<TInmemProperty> ClassProperty(boost::shared_ptr<ICIMPropertyDecl> decl);

    boost::weak_ptr<TInmemNamespace> fNamespace;
    std::string fName;
    boost::shared_ptr<TInmemClass> fSuperClass;
    std::vector<boost::weak_ptr<ICIMClass> > fChildren;
    // Where each child stands in fChildren: the pseudo-class under which
    // every root class is filed has as many children as there are roots.
    std::unordered_map<const ICIMClass*, std::size_t> fChildIndex;
    std::vector<boost::shared_ptr<ICIMPropertyDecl> > fOwnProperties;
    std::vector<boost::shared_ptr<ICIMMethodDecl> > fOwnMethods;
    std::map<std::string, boost::shared_ptr<TInmemProperty> > fClassValues;  // by NameKey
    std::vector<boost::shared_ptr<ICIMInstance> > fInstances;
    std::vector<boost::weak_ptr<ICIMClass> > fAssociationClasses;
    mutable TLayoutPtr fLayout;  // read and replaced atomically
};

}  // namespace NVURZENTA20

#endif
