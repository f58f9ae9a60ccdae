// Property, method and parameter declarations of repository classes, and
// the property values of instances and classes.
#ifndef ZENTA_HOST_INMEM_TINMEMDECLARATIONS_H
#define ZENTA_HOST_INMEM_TINMEMDECLARATIONS_H

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMProperty.h"
#include "ICIMPropertyDecl.h"
#include "TInmemQualifier.h"
#include "TInmemSupport.h"

namespace NVURZENTA20 {

class TInmemPropertyDecl : public TInmemNamedElement<ICIMPropertyDecl> {
public:
    // `overridden` is the superclass's declaration of the same name, if any:
    // its propagating qualifiers and its reference class carry over, and the
    // type must be the same (kTypeMismatch otherwise).
    TInmemPropertyDecl(const std::string& name, const TCIMValue& defaultValue, const std::string& classOrigin,
                       boost::shared_ptr<const ICIMPropertyDecl> overridden);

    std::string GetName() const override { return fName; }
    TCIMValue::TCIMType GetType() const override { return fDefault.GetType(); }
    bool IsArray() const override { return fDefault.IsArray(); }
    TCIMValue GetDefaultValue() const override { return fDefault; }
    void SetDefaultValue(const TCIMValue& value) override;
    std::string GetReferenceClassName() const override { return fReferenceClass; }
    void SetReferenceClassName(const std::string& name) override;
    std::string GetClassOrigin() const override { return fClassOrigin; }
    bool IsKey() const override;

protected:
    boost::shared_ptr<const ICIMNamedElement> Parent() const override { return fOverridden; }
    std::string DescribeElement() const override { return "property " + fClassOrigin + "." + fName; }

private:
    std::string fName;
    TCIMValue fDefault;
    std::string fReferenceClass;
    std::string fClassOrigin;
    boost::shared_ptr<const ICIMPropertyDecl> fOverridden;
};

class TInmemParameterDecl : public TInmemNamedElement<ICIMParameterDecl> {
public:
    TInmemParameterDecl(const std::string& name, TCIMValue::TCIMType type, bool isArray,
                        const std::string& referenceClass, const std::string& methodName,
                        boost::shared_ptr<const ICIMParameterDecl> overridden);

    std::string GetName() const override { return fName; }
    TCIMValue::TCIMType GetType() const override { return fType; }
    bool IsArray() const override { return fIsArray; }
    std::string GetReferenceClassName() const override { return fReferenceClass; }

protected:
    boost::shared_ptr<const ICIMNamedElement> Parent() const override { return fOverridden; }
    std::string DescribeElement() const override { return "parameter " + fMethodName + "." + fName; }

private:
    std::string fName;
    TCIMValue::TCIMType fType;
    bool fIsArray;
    std::string fReferenceClass;
    std::string fMethodName;
    boost::shared_ptr<const ICIMParameterDecl> fOverridden;
};

class TInmemMethodDecl : public TInmemNamedElement<ICIMMethodDecl> {
public:
    // `overridden` as for properties; the return type must be the same.
    TInmemMethodDecl(const std::string& name, TCIMValue::TCIMType returnType, const std::string& classOrigin,
                     boost::shared_ptr<const ICIMMethodDecl> overridden);

    std::string GetName() const override { return fName; }
    TCIMValue::TCIMType GetReturnType() const override { return fReturnType; }
    // A second parameter of the same name is refused (kAlreadyExists).
    boost::shared_ptr<ICIMParameterDecl> AllocateParameterDecl(const std::string& name, TCIMValue::TCIMType type,
                                                               bool isArray, const std::string& referenceClass,
                                                               TCIMContext context) override;
    boost::shared_ptr<ICIMParameterDecl> GetParameterDecl(const std::string& name,
                                                          TCIMContext context) const override;
    void EnumerateParameterDecls(const TParameterDeclCallback& callback, TCIMContext context) const override;
    std::string GetClassOrigin() const override { return fClassOrigin; }

protected:
    boost::shared_ptr<const ICIMNamedElement> Parent() const override { return fOverridden; }
    std::string DescribeElement() const override { return "method " + fClassOrigin + "." + fName; }

private:
    std::string fName;
    TCIMValue::TCIMType fReturnType;
    std::string fClassOrigin;
    boost::shared_ptr<const ICIMMethodDecl> fOverridden;
    std::vector<boost::shared_ptr<ICIMParameterDecl> > fParameters;
};

// A property value (of an instance, or the class-level value of a class):
// writes are checked against the declaration.
class TInmemProperty : public ICIMProperty {
public:
    explicit TInmemProperty(boost::shared_ptr<ICIMPropertyDecl> decl);

    std::string GetName() const override { return fDecl->GetName(); }
    TCIMValue GetValue() const override { return fValue; }
    void SetValue(const TCIMValue& value) override;
    boost::shared_ptr<ICIMPropertyDecl> GetDecl() const override { return fDecl; }

private:
    boost::shared_ptr<ICIMPropertyDecl> fDecl;
    TCIMValue fValue;
};

// A class's effective declarations: the inherited ones in their order, each
// replaced by an own declaration of the same name, then the remaining own
// ones in the order they were made. Every instance a class makes asks for
// them, so each name is read only once (declarations hand out copies of
// their names) and the result is sized once.
template <class Decl>
std::vector<boost::shared_ptr<Decl> > MergeDeclarations(std::vector<boost::shared_ptr<Decl> > inherited,
                                                        const std::vector<boost::shared_ptr<Decl> >& own) {
    std::vector<std::string> names;
    names.reserve(inherited.size() + own.size());
    for (const auto& slot : inherited) names.push_back(slot->GetName());
    inherited.reserve(inherited.size() + own.size());
    for (const auto& decl : own) {
        const std::string name = decl->GetName();
        std::size_t slot = 0;
        while (slot < names.size() && !SameName(names[slot], name)) ++slot;
        if (slot < names.size()) {
            inherited[slot] = decl;
            names[slot] = name;
        } else {
            inherited.push_back(decl);
            names.push_back(name);
        }
    }
    return inherited;
}

}  // namespace NVURZENTA20

#endif
