#include "TInmemClass.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>

#include "TInmemAssociations.h"
#include "TInmemInstance.h"
#include "TInmemNamespace.h"
#include "TInmemSupport.h"

namespace NVURZENTA20 {

namespace {

typedef ICIMQualifierDecl D;

const int kClassScope = D::kScopeClass | D::kScopeAssociation | D::kScopeIndication;

template <class T>
void EraseByIdentityOrName(std::vector<boost::shared_ptr<T> >& decls, const boost::shared_ptr<T>& decl) {
    if (!decl) return;
    const std::string name = decl->GetName();
    decls.erase(std::remove_if(decls.begin(), decls.end(),
                               [&](const boost::shared_ptr<T>& own) {
                                   return own == decl || SameName(own->GetName(), name);
                               }),
                decls.end());
}

template <class T>
void PutByName(std::vector<boost::shared_ptr<T> >& decls, const boost::shared_ptr<T>& decl, const char* what) {
    if (!decl) ThrowStatus(TZENTAStatusCode::kInvalidArgument, std::string("no ") + what + " declaration given");
    for (auto& own : decls) {
        if (SameName(own->GetName(), decl->GetName())) {
            own = decl;
            return;
        }
    }
    decls.push_back(decl);
}

template <class T>
boost::shared_ptr<T> FindByName(const std::vector<boost::shared_ptr<T> >& decls, const std::string& name) {
    for (const auto& decl : decls) {
        if (SameName(decl->GetName(), name)) return decl;
    }
    return boost::shared_ptr<T>();
}

template <class T, class Callback>
void Visit(const std::vector<boost::shared_ptr<T> >& items, const Callback& callback) {
    for (const auto& item : items) {
        if (!callback(item)) return;
    }
}

}  // namespace

const char* const TInmemClass::kRootName = "<root>";

TInmemClass::TInmemClass(boost::weak_ptr<TInmemNamespace> ns, const std::string& name,
                         boost::shared_ptr<TInmemClass> superClass)
    : TInmemNamedElement<ICIMClass>(kClassScope), fNamespace(ns), fName(name), fSuperClass(superClass) {
    if (name.empty()) ThrowStatus(TZENTAStatusCode::kInvalidClass, "a class needs a name");
}

bool TInmemClass::IsPseudoRoot() const {
    return fName == kRootName;
}

bool TInmemClass::Validate(TCIMContext context) const {
    boost::shared_ptr<TInmemNamespace> ns = fNamespace.lock();
    if (fSuperClass && (!ns || ns->GetClass(fSuperClass->fName, context) != fSuperClass)) return false;
    const TLayoutPtr layout = GetLayout();
    for (const auto& decl : layout->decls) {
        if (decl->GetType() == TCIMValue::TCIMType::kReference && decl->GetReferenceClassName().empty()) {
            return false;
        }
    }
    return true;
}

bool TInmemClass::AddToNamespace(TCIMContext) {
    boost::shared_ptr<TInmemNamespace> ns = fNamespace.lock();
    if (!ns) ThrowStatus(TZENTAStatusCode::kInvalidNamespace, "the namespace of class " + fName + " is gone");
    return ns->FileClass(shared_from_this());
}

void TInmemClass::RemoveFromNamespace(TCIMContext) {
    boost::shared_ptr<TInmemNamespace> ns = fNamespace.lock();
    if (ns) ns->UnfileClass(shared_from_this());
}

void TInmemClass::ModifyClass(boost::shared_ptr<ICIMClass> modified, TCIMContext) {
    if (!modified) ThrowStatus(TZENTAStatusCode::kInvalidArgument, "no class given to modify " + fName);
    CopyDeclarationsFrom(*modified);
}

ICIMClass& TInmemClass::operator=(const ICIMClass& other) {
    if (&other != this) CopyDeclarationsFrom(other);
    return *this;
}

void TInmemClass::CopyDeclarationsFrom(const ICIMClass& other) {
    const std::string origin = other.GetName(TCIMContext());
    std::vector<boost::shared_ptr<ICIMQualifier> > qualifiers;
    other.EnumerateQualifiers(
        [&](boost::shared_ptr<ICIMQualifier> qualifier) {
            bool propagated = false;
            other.GetQualifier(qualifier->GetName(), propagated, TCIMContext());
            if (!propagated) qualifiers.push_back(qualifier);
            return true;
        },
        TCIMContext());
    std::vector<boost::shared_ptr<ICIMPropertyDecl> > properties;
    other.EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> decl) {
            if (SameName(decl->GetClassOrigin(), origin)) properties.push_back(decl);
            return true;
        },
        TCIMContext());
    std::vector<boost::shared_ptr<ICIMMethodDecl> > methods;
    other.EnumerateMethodDecls(
        [&](boost::shared_ptr<ICIMMethodDecl> decl) {
            if (SameName(decl->GetClassOrigin(), origin)) methods.push_back(decl);
            return true;
        },
        TCIMContext());
    // Check every qualifier before anything changes.
    TQualifierSet replacement(kClassScope);
    for (const auto& qualifier : qualifiers) replacement.Add(qualifier, fSuperClass.get(), DescribeElement());
    fQualifiers = replacement;
    fOwnProperties = properties;
    fOwnMethods = methods;
    fClassValues.clear();
    NoteSchemaChange();
}

boost::shared_ptr<ICIMNamespace> TInmemClass::GetNamespace(TCIMContext) const {
    return fNamespace.lock();
}

bool TInmemClass::HasQualifierTrue(const char* name) const {
    boost::shared_ptr<ICIMQualifier> qualifier = GetQualifier(name, TCIMContext());
    return qualifier && IsTrue(qualifier->GetValue());
}

bool TInmemClass::IsAssociation(TCIMContext) const {
    return HasQualifierTrue("Association");
}

bool TInmemClass::IsAbstract(TCIMContext) const {
    return IsPseudoRoot() || HasQualifierTrue("Abstract");
}

bool TInmemClass::IsRootClass(TCIMContext) const {
    return !fSuperClass && !IsPseudoRoot();
}

boost::shared_ptr<ICIMClass> TInmemClass::GetSuperClass(TCIMContext) const {
    return fSuperClass;
}

std::vector<boost::shared_ptr<ICIMClass> > TInmemClass::GetChildren() const {
    std::vector<boost::shared_ptr<ICIMClass> > children;
    for (const auto& weak : fChildren) {
        if (boost::shared_ptr<ICIMClass> child = weak.lock()) children.push_back(child);
    }
    return children;
}

bool TInmemClass::WalkSubClasses(const TClassCallback& callback, bool deep) {
    for (const auto& child : GetChildren()) {
        if (!callback(child)) return false;
        if (!deep) continue;
        boost::shared_ptr<TInmemClass> inmem = boost::dynamic_pointer_cast<TInmemClass>(child);
        if (inmem) {
            if (!inmem->WalkSubClasses(callback, true)) return false;
        } else {
            bool goOn = true;
            child->EnumerateSubClasses([&](boost::shared_ptr<ICIMClass> c) { return goOn = callback(c); }, true,
                                       TCIMContext());
            if (!goOn) return false;
        }
    }
    return true;
}

void TInmemClass::EnumerateSubClasses(const TClassCallback& callback, bool deep, TCIMContext) {
    WalkSubClasses(callback, deep);
}

bool TInmemClass::IsSubclassOf(boost::shared_ptr<const ICIMClass> other, TCIMContext) const {
    if (!other) return false;
    return fSuperClass && ClassIsOrDerivesFrom(fSuperClass, other->GetName(TCIMContext()));
}

void TInmemClass::EnumerateAssociatedClasses(const TClassCallback& callback, const std::string& assocClass,
                                             const std::string& resultClass, const std::string& role,
                                             const std::string& resultRole, TCIMContext) {
    EnumerateAssociatedClassesOf(shared_from_this(), callback, assocClass, resultClass, role, resultRole);
}

void TInmemClass::EnumerateAssociationClasses(const TClassCallback& callback, const std::string& resultClass,
                                              const std::string& role, TCIMContext) {
    EnumerateAssociationClassesOf(shared_from_this(), callback, resultClass, role);
}

void TInmemClass::EnumerateKeyNames(const TKeyNameCallback& callback, TCIMContext) const {
    const TLayoutPtr layout = GetLayout();
    for (std::size_t key : layout->keys) {
        if (!callback(&layout->slots[key].name)) return;
    }
}

std::vector<boost::shared_ptr<ICIMPropertyDecl> > TInmemClass::MergedPropertyDecls() const {
    std::vector<boost::shared_ptr<ICIMPropertyDecl> > inherited;
    if (fSuperClass) inherited = fSuperClass->GetLayout()->decls;
    return MergeDeclarations(std::move(inherited), fOwnProperties);
}

// Readers may share a class across threads: the layout is swapped whole.
TLayoutPtr TInmemClass::GetLayout() const {
    TLayoutPtr layout = boost::atomic_load(&fLayout);
    if (layout && layout->generation == SchemaGeneration()) return layout;
    layout = boost::make_shared<const TInstanceLayout>(MergedPropertyDecls());
    boost::atomic_store(&fLayout, layout);
    return layout;
}

std::vector<boost::shared_ptr<ICIMMethodDecl> > TInmemClass::GetMethodDecls() const {
    std::vector<boost::shared_ptr<ICIMMethodDecl> > inherited;
    if (fSuperClass) inherited = fSuperClass->GetMethodDecls();
    return MergeDeclarations(std::move(inherited), fOwnMethods);
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::AllocatePropertyDecl(const std::string& name,
                                                                      const TCIMValue& value, TCIMContext context) {
    if (FindByName(fOwnProperties, name)) {
        ThrowStatus(TZENTAStatusCode::kAlreadyExists, "class " + fName + " already declares property " + name);
    }
    boost::shared_ptr<const ICIMPropertyDecl> overridden;
    if (fSuperClass) overridden = fSuperClass->GetPropertyDecl(name, context);
    boost::shared_ptr<ICIMPropertyDecl> decl(new TInmemPropertyDecl(name, value, fName, overridden));
    fOwnProperties.push_back(decl);
    NoteSchemaChange();
    return decl;
}

boost::shared_ptr<ICIMPropertyDecl> TInmemClass::GetPropertyDecl(const std::string& name,
                                                                 TCIMContext context) const {
    boost::shared_ptr<ICIMPropertyDecl> own = FindByName(fOwnProperties, name);
    if (own || !fSuperClass) return own;
    return fSuperClass->GetPropertyDecl(name, context);
}

// An instance being made asks for the whole layout at once (through any
// class that wraps this one); everybody else visits the declarations.
void TInmemClass::EnumeratePropertyDecls(const TPropertyDeclCallback& callback, TCIMContext) const {
    const TLayoutPtr layout = GetLayout();
    if (const TLayoutRequest* request = callback.target<TLayoutRequest>()) {
        request->Answer(layout);
        return;
    }
    Visit(layout->decls, callback);
}

boost::shared_ptr<TInmemProperty> TInmemClass::ClassProperty(boost::shared_ptr<ICIMPropertyDecl> decl) {
    boost::shared_ptr<TInmemProperty>& slot = fClassValues[NameKey(decl->GetName())];
    if (!slot || slot->GetDecl() != decl) slot.reset(new TInmemProperty(decl));
    return slot;
}

boost::shared_ptr<ICIMProperty> TInmemClass::GetProperty(const std::string& name, TCIMContext context) {
    boost::shared_ptr<ICIMPropertyDecl> decl = GetPropertyDecl(name, context);
    if (!decl) return boost::shared_ptr<ICIMProperty>();
    return ClassProperty(decl);
}

void TInmemClass::SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) {
    boost::shared_ptr<ICIMPropertyDecl> decl = GetPropertyDecl(name, context);
    if (!decl) ThrowStatus(TZENTAStatusCode::kInvalidProperty, "class " + fName + " has no property " + name);
    ClassProperty(decl)->SetValue(value);
}

void TInmemClass::EnumerateStaticProperties(const TPropertyCallback& callback, TCIMContext) {
    const TLayoutPtr layout = GetLayout();
    for (const auto& decl : layout->decls) {
        if (!callback(ClassProperty(decl))) return;
    }
}

boost::shared_ptr<ICIMInstance> TInmemClass::AllocateInstance(TCIMContext) {
    return boost::make_shared<TInmemInstance>(shared_from_this(), TInmemInstance::kRepositoryInstance);
}

bool TInmemClass::WalkInstances(const TInstanceCallback& callback, bool deep) {
    // A copy: a callback may file or remove instances.
    const std::vector<boost::shared_ptr<ICIMInstance> > instances(fInstances);
    for (const auto& instance : instances) {
        if (!callback(instance)) return false;
    }
    if (!deep) return true;
    for (const auto& child : GetChildren()) {
        boost::shared_ptr<TInmemClass> inmem = boost::dynamic_pointer_cast<TInmemClass>(child);
        if (inmem) {
            if (!inmem->WalkInstances(callback, true)) return false;
        } else {
            bool goOn = true;
            child->EnumerateInstances([&](boost::shared_ptr<ICIMInstance> i) { return goOn = callback(i); }, true,
                                      TCIMContext());
            if (!goOn) return false;
        }
    }
    return true;
}

void TInmemClass::EnumerateInstances(const TInstanceCallback& callback, bool deep, TCIMContext) {
    WalkInstances(callback, deep);
}

boost::shared_ptr<ICIMMethodDecl> TInmemClass::AllocateMethodDecl(const std::string& name,
                                                                  TCIMValue::TCIMType returnType,
                                                                  TCIMContext context) {
    if (FindByName(fOwnMethods, name)) {
        ThrowStatus(TZENTAStatusCode::kAlreadyExists, "class " + fName + " already declares method " + name);
    }
    boost::shared_ptr<const ICIMMethodDecl> overridden;
    if (fSuperClass) overridden = fSuperClass->GetMethodDecl(name, context);
    boost::shared_ptr<ICIMMethodDecl> decl(new TInmemMethodDecl(name, returnType, fName, overridden));
    fOwnMethods.push_back(decl);
    return decl;
}

boost::shared_ptr<ICIMMethodDecl> TInmemClass::GetMethodDecl(const std::string& name, TCIMContext context) const {
    boost::shared_ptr<ICIMMethodDecl> own = FindByName(fOwnMethods, name);
    if (own || !fSuperClass) return own;
    return fSuperClass->GetMethodDecl(name, context);
}

void TInmemClass::EnumerateMethodDecls(const TMethodDeclCallback& callback, TCIMContext) const {
    Visit(GetMethodDecls(), callback);
}

TCIMValue TInmemClass::InvokeMethod(const std::string& name, TCIMContext&, TCIMContext context) {
    if (!GetMethodDecl(name, context)) {
        ThrowStatus(TZENTAStatusCode::kMethodNotFound, "class " + fName + " has no method " + name);
    }
    ThrowStatus(TZENTAStatusCode::kUnsupportedOperation,
                "method " + fName + "." + name + " has no implementation in the repository");
}

bool TInmemClass::operator==(ICIMClass& other) const {
    return SameName(fName, other.GetName(TCIMContext()));
}

bool TInmemClass::operator<(ICIMClass& other) const {
    return NameKey(fName) < NameKey(other.GetName(TCIMContext()));
}

// Finds a child by its address, in constant time: a namespace files every
// root class under one pseudo-class, which thereby gets a child for every
// root class there is. A child that has gone may have left its address to a
// new class; that one is a new child and goes at the end.
void TInmemClass::AddChildClass(boost::shared_ptr<ICIMClass> child) {
    if (!child) return;
    const auto found = fChildIndex.find(child.get());
    if (found != fChildIndex.end() && fChildren[found->second].lock() == child) return;
    fChildIndex[child.get()] = fChildren.size();
    fChildren.push_back(child);
}

void TInmemClass::RemoveChildClass(boost::shared_ptr<ICIMClass> child) {
    fChildren.erase(std::remove_if(fChildren.begin(), fChildren.end(),
                                   [&](const boost::weak_ptr<ICIMClass>& weak) {
                                       boost::shared_ptr<ICIMClass> existing = weak.lock();
                                       return !existing || existing == child;
                                   }),
                    fChildren.end());
    fChildIndex.clear();
    for (std::size_t i = 0; i < fChildren.size(); ++i) {
        if (boost::shared_ptr<ICIMClass> existing = fChildren[i].lock()) fChildIndex[existing.get()] = i;
    }
}

bool TInmemClass::IsInstanceOfThisOrSubclass(ICIMInstance& instance) const {
    boost::shared_ptr<ICIMClass> cls = instance.GetClass(TCIMContext());
    return cls && ClassIsOrDerivesFrom(cls, fName);
}

bool TInmemClass::AddInstance(boost::shared_ptr<ICIMInstance> instance) {
    if (!instance || !IsInstanceOfThisOrSubclass(*instance)) return false;
    const TCIMReference path = instance->GetReference(TCIMContext());
    for (const auto& filed : fInstances) {
        if (filed == instance || filed->GetReference(TCIMContext()) == path) return false;
    }
    fInstances.push_back(instance);
    return true;
}

void TInmemClass::RemoveInstance(boost::shared_ptr<ICIMInstance> instance) {
    if (!instance) return;
    auto found = std::find(fInstances.begin(), fInstances.end(), instance);
    if (found == fInstances.end()) {
        const TCIMReference path = instance->GetReference(TCIMContext());
        found = std::find_if(fInstances.begin(), fInstances.end(), [&](const boost::shared_ptr<ICIMInstance>& filed) {
            return filed->GetReference(TCIMContext()) == path;
        });
    }
    if (found != fInstances.end()) fInstances.erase(found);
}

void TInmemClass::ClearRequestInstances() {
    fInstances.erase(std::remove_if(fInstances.begin(), fInstances.end(),
                                    [](const boost::shared_ptr<ICIMInstance>& instance) {
                                        const TInmemInstance* inmem =
                                            dynamic_cast<const TInmemInstance*>(instance.get());
                                        return !inmem || inmem->GetKind() != TInmemInstance::kRepositoryInstance;
                                    }),
                     fInstances.end());
}

void TInmemClass::AddAssociationClass(boost::shared_ptr<ICIMClass> association) {
    if (!association) return;
    for (const auto& existing : GetExplicitAssociationClasses()) {
        if (existing == association) return;
    }
    fAssociationClasses.push_back(association);
}

void TInmemClass::RemoveAssociationClass(boost::shared_ptr<ICIMClass> association) {
    fAssociationClasses.erase(std::remove_if(fAssociationClasses.begin(), fAssociationClasses.end(),
                                             [&](const boost::weak_ptr<ICIMClass>& weak) {
                                                 boost::shared_ptr<ICIMClass> existing = weak.lock();
                                                 return !existing || existing == association;
                                             }),
                              fAssociationClasses.end());
}

std::vector<boost::shared_ptr<ICIMClass> > TInmemClass::GetExplicitAssociationClasses() const {
    std::vector<boost::shared_ptr<ICIMClass> > associations;
    for (const auto& weak : fAssociationClasses) {
        if (boost::shared_ptr<ICIMClass> association = weak.lock()) associations.push_back(association);
    }
    return associations;
}

void TInmemClass::AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) {
    PutByName(fOwnProperties, decl, "property");
    NoteSchemaChange();
}

void TInmemClass::RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) {
    EraseByIdentityOrName(fOwnProperties, decl);
    NoteSchemaChange();
}

void TInmemClass::AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) {
    PutByName(fOwnMethods, decl, "method");
}

void TInmemClass::RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) {
    EraseByIdentityOrName(fOwnMethods, decl);
}

}  // namespace NVURZENTA20
