// Qualifier declarations, qualifiers, and the qualifier handling shared by
// every named element of the repository (classes, property, method and
// parameter declarations).
#ifndef ZENTA_HOST_INMEM_TINMEMQUALIFIER_H
#define ZENTA_HOST_INMEM_TINMEMQUALIFIER_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMNamedElement.h"
#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"
#include "TCIMValue.h"

namespace NVURZENTA20 {

class TInmemQualifierDecl : public ICIMQualifierDecl {
public:
    // `value` gives the type, the array-ness and the default (a typed null
    // for no default).
    TInmemQualifierDecl(const std::string& name, const TCIMValue& value, EScope scope, EFlavor flavor);

    std::string GetName() const override { return fName; }
    TCIMValue::TCIMType GetType() const override { return fDefault.GetType(); }
    bool IsArray() const override { return fDefault.IsArray(); }
    TCIMValue GetDefaultValue() const override { return fDefault; }
    EScope GetScope() const override { return fScope; }
    EFlavor GetFlavor() const override { return fFlavor; }

    // Same type, array-ness, default, scope and flavor.
    bool SameAs(const ICIMQualifierDecl& other) const;

private:
    std::string fName;
    TCIMValue fDefault;
    EScope fScope;
    EFlavor fFlavor;
};

class TInmemQualifier : public ICIMQualifier {
public:
    TInmemQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl, const TCIMValue& value,
                    ICIMQualifierDecl::EFlavor flavor);

    std::string GetName() const override { return fDecl->GetName(); }
    TCIMValue GetValue() const override { return fValue; }
    void SetValue(const TCIMValue& value) override;
    ICIMQualifierDecl::EFlavor GetFlavor() const override { return fFlavor; }
    boost::shared_ptr<const ICIMQualifierDecl> GetDecl() const override { return fDecl; }

private:
    boost::shared_ptr<const ICIMQualifierDecl> fDecl;
    TCIMValue fValue;
    ICIMQualifierDecl::EFlavor fFlavor;
};

// A qualifier's own flavor bits replace the declaration's in each pair
// they set (override: enable/disable; propagation: to-subclass/restricted);
// translatable adds.
ICIMQualifierDecl::EFlavor MergeFlavor(ICIMQualifierDecl::EFlavor declared, ICIMQualifierDecl::EFlavor own);
// A qualifier reaches subclasses (and overriding declarations) unless it is
// restricted.
bool Propagates(const ICIMQualifier& qualifier);

// The qualifier operations of a named element. The element tells where
// qualifiers may stand (its scope) and which element it inherits from (the
// superclass, or the declaration it overrides); own qualifiers come first,
// then the parent's propagating ones that are not overridden.
class TQualifierSet {
public:
    explicit TQualifierSet(int scope) : fScope(scope) {}

    // Replaces an own qualifier of the same name. Refuses a qualifier out of
    // scope, and one that changes the value of an inherited qualifier whose
    // flavor disables overriding (kInvalidQualifier).
    void Add(boost::shared_ptr<ICIMQualifier> qualifier, const ICIMNamedElement* parent, const std::string& owner);
    boost::shared_ptr<ICIMQualifier> Get(const std::string& name, bool& propagated,
                                         const ICIMNamedElement* parent) const;
    void Enumerate(const TQualifierCallback& callback, const ICIMNamedElement* parent) const;
    // The own qualifiers, in the order they were added.
    const std::vector<boost::shared_ptr<ICIMQualifier> >& Own() const { return fOwn; }
    void Clear() { fOwn.clear(); }

    static boost::shared_ptr<ICIMQualifier> Allocate(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                     const TCIMValue& value, ICIMQualifierDecl::EFlavor flavor);

private:
    boost::shared_ptr<ICIMQualifier> FindOwn(const std::string& name) const;
    static boost::shared_ptr<ICIMQualifier> Inherited(const std::string& name, const ICIMNamedElement* parent);

    int fScope;
    std::vector<boost::shared_ptr<ICIMQualifier> > fOwn;
};

// Implements ICIMNamedElement for `Base` through a TQualifierSet.
// `Parent()` names the element whose qualifiers propagate to this one.
template <class Base>
class TInmemNamedElement : public Base {
public:
    void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext) override {
        fQualifiers.Add(qualifier, Parent().get(), DescribeElement());
    }
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                       const TCIMValue& value, TCIMContext) const override {
        return TQualifierSet::Allocate(decl, value, ICIMQualifierDecl::kFlavorNone);
    }
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                       const TCIMValue& value, ICIMQualifierDecl::EFlavor flavor,
                                                       TCIMContext) const override {
        return TQualifierSet::Allocate(decl, value, flavor);
    }
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TCIMContext) const override {
        bool propagated = false;
        return fQualifiers.Get(name, propagated, Parent().get());
    }
    void EnumerateQualifiers(const TQualifierCallback& callback, TCIMContext) const override {
        fQualifiers.Enumerate(callback, Parent().get());
    }
    boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, bool& propagated,
                                                  TCIMContext) const override {
        return fQualifiers.Get(name, propagated, Parent().get());
    }

protected:
    explicit TInmemNamedElement(int scope) : fQualifiers(scope) {}

    virtual boost::shared_ptr<const ICIMNamedElement> Parent() const = 0;
    // "class Foo", "property Foo.Bar" ... for messages.
    virtual std::string DescribeElement() const = 0;

    TQualifierSet fQualifiers;
};

}  // namespace NVURZENTA20

#endif
