#include "TInmemNamespace.h"

#include <algorithm>

#include "TInmemClass.h"
#include "TInmemNamespaceProvider.h"
#include "TInmemQualifier.h"
#include "TInmemSupport.h"
#include "TNamespaceManager.h"

namespace NVURZENTA20 {

const char* const TInmemNamespace::kRoutedOrigin = "repository";

boost::shared_ptr<TInmemNamespace> TInmemNamespace::Create() {
    boost::shared_ptr<TInmemNamespace> ns(new TInmemNamespace);
    ns->fRoot.reset(new TInmemClass(ns, TInmemClass::kRootName, boost::shared_ptr<TInmemClass>()));
    return ns;
}

TInmemNamespace::TInmemNamespace() {}

TInmemNamespace::~TInmemNamespace() {
    // A filed instance holds its class and the class holds the instance:
    // release them, or the pair would outlive the namespace.
    for (const auto& cls : fClassOrder) cls->DropInstances();
}

boost::shared_ptr<INamespaceProvider> TInmemNamespace::GetNamespaceProvider(TCIMContext) const {
    return TInmemNamespaceProvider::GetInstance();
}

void TInmemNamespace::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall, TCIMContext) {
    fUpcall = upcall;
}

void TInmemNamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace>, TCIMContext) {
    ThrowStatus(TZENTAStatusCode::kUnsupportedNamespace, "a repository namespace has no underlying namespace");
}

boost::shared_ptr<ICIMNamespace> TInmemNamespace::GetRoutingNamespace() {
    boost::shared_ptr<ICIMNamespace> upcall = fUpcall.lock();
    if (upcall) return upcall;
    return shared_from_this();
}

boost::shared_ptr<TInmemClass> TInmemNamespace::FindClass(const std::string& name) const {
    auto found = fClasses.find(name);
    return found == fClasses.end() ? boost::shared_ptr<TInmemClass>() : found->second;
}

boost::shared_ptr<ICIMClass> TInmemNamespace::AllocateClass(const std::string& name,
                                                            boost::shared_ptr<ICIMClass> superClass, TCIMContext) {
    boost::shared_ptr<TInmemClass> parent;
    if (superClass) {
        const std::string superName = superClass->GetName(TCIMContext());
        parent = FindClass(superName);
        if (!parent) {
            ThrowStatus(TZENTAStatusCode::kMissingSuperclass,
                        "superclass " + superName + " of class " + name + " is not in the namespace");
        }
    }
    if (name == TInmemClass::kRootName) {
        ThrowStatus(TZENTAStatusCode::kInvalidClass, "the name " + name + " is reserved");
    }
    boost::shared_ptr<TInmemClass> cls(new TInmemClass(shared_from_this(), name, parent));
    FileClass(cls);
    return cls;
}

bool TInmemNamespace::FileClass(boost::shared_ptr<TInmemClass> cls) {
    const std::string name = cls->GetName(TCIMContext());
    boost::shared_ptr<TInmemClass> existing = FindClass(name);
    if (existing == cls) return false;
    if (existing) ThrowStatus(TZENTAStatusCode::kDuplicateClass, "class " + name + " is defined already");
    boost::shared_ptr<TInmemClass> parent = cls->GetInmemSuperClass();
    if (parent && FindClass(parent->GetName(TCIMContext())) != parent) {
        ThrowStatus(TZENTAStatusCode::kMissingSuperclass,
                    "superclass " + parent->GetName(TCIMContext()) + " of class " + name + " is not in the namespace");
    }
    fClasses[name] = cls;
    fClassOrder.push_back(cls);
    NoteSchemaChange();
    (parent ? parent : fRoot)->AddChildClass(cls);
    return true;
}

void TInmemNamespace::UnfileClass(boost::shared_ptr<TInmemClass> cls) {
    if (FindClass(cls->GetName(TCIMContext())) != cls) return;
    boost::shared_ptr<TInmemClass> parent = cls->GetInmemSuperClass();
    (parent ? parent : fRoot)->RemoveChildClass(cls);
    UnfileTree(cls);
    NoteSchemaChange();
}

void TInmemNamespace::UnfileTree(boost::shared_ptr<ICIMClass> cls) {
    boost::shared_ptr<TInmemClass> inmem = boost::dynamic_pointer_cast<TInmemClass>(cls);
    if (!inmem) return;
    // The subclasses leave the namespace too; filing one again later links
    // it back to its superclass.
    for (const auto& child : inmem->GetChildren()) {
        UnfileTree(child);
        inmem->RemoveChildClass(child);
    }
    inmem->DropInstances();
    fClasses.erase(inmem->GetName(TCIMContext()));
    fClassOrder.erase(std::remove(fClassOrder.begin(), fClassOrder.end(), inmem), fClassOrder.end());
}

boost::shared_ptr<ICIMClass> TInmemNamespace::GetClass(const std::string& name, TCIMContext) {
    if (name == TInmemClass::kRootName) return fRoot;
    return FindClass(name);
}

void TInmemNamespace::EnumerateRootClasses(const TClassCallback& callback, TCIMContext context) {
    fRoot->EnumerateSubClasses(callback, false, context);
}

void TInmemNamespace::EnumerateProviders(const TProviderCallback&, TCIMContext) {}

boost::shared_ptr<ICIMQualifierDecl> TInmemNamespace::AllocateQualifierDecl(const std::string& name,
                                                                            const TCIMValue& value,
                                                                            ICIMQualifierDecl::EScope scope,
                                                                            ICIMQualifierDecl::EFlavor flavor,
                                                                            TCIMContext context) {
    boost::shared_ptr<TInmemQualifierDecl> decl(new TInmemQualifierDecl(name, value, scope, flavor));
    boost::shared_ptr<ICIMQualifierDecl> existing = GetQualifierDecl(name, context);
    if (existing) {
        if (decl->SameAs(*existing)) return existing;
        ThrowStatus(TZENTAStatusCode::kAlreadyExists, "qualifier " + name + " is declared otherwise already");
    }
    fQualifierDecls.push_back(decl);
    return decl;
}

boost::shared_ptr<ICIMQualifierDecl> TInmemNamespace::GetQualifierDecl(const std::string& name, TCIMContext) const {
    for (const auto& decl : fQualifierDecls) {
        if (SameName(decl->GetName(), name)) return decl;
    }
    return boost::shared_ptr<ICIMQualifierDecl>();
}

void TInmemNamespace::EnumerateQualifierDecls(const TQualifierDeclCallback& callback, TCIMContext) const {
    for (const auto& decl : fQualifierDecls) {
        if (!callback(decl)) return;
    }
}

void TInmemNamespace::Subscribe(boost::shared_ptr<ICIMIndicationFilter>, const TInstanceCallback&, TCIMContext) {
    ThrowStatus(TZENTAStatusCode::kUnsupportedOperation, "the repository raises no indications");
}

boost::shared_ptr<ICIMInstance> TInmemNamespace::FindInstance(const TCIMReference& path) const {
    boost::shared_ptr<TInmemClass> cls = FindClass(path.GetClassName());
    boost::shared_ptr<ICIMInstance> found;
    if (!cls) return found;
    cls->EnumerateInstances(
        [&](boost::shared_ptr<ICIMInstance> instance) {
            if (instance->GetReference(TCIMContext()) == path) found = instance;
            return !found;
        },
        true, TCIMContext());
    return found;
}

boost::shared_ptr<ICIMInstance> TInmemNamespace::RequireInstance(const TCIMReference& path) const {
    boost::shared_ptr<ICIMInstance> instance = FindInstance(path);
    if (!instance) ThrowStatus(TZENTAStatusCode::kInstanceNotFound, "no instance " + path.GetPath());
    return instance;
}

boost::shared_ptr<ICIMInstance> TInmemNamespace::GetInstance(const TCIMReference& path, TCIMContext context) const {
    boost::shared_ptr<ICIMInstance> filed = FindInstance(path);
    return filed ? filed : ServedInstance(path, context);
}

// The paths the host builds for a provider's instances name the class's
// namespace, this one: they must find the instance all the same.
boost::shared_ptr<ICIMInstance> TInmemNamespace::ServedInstance(const TCIMReference& path, TCIMContext context) const {
    const boost::shared_ptr<TInmemClass> cls = FindClass(path.GetClassName());
    const boost::shared_ptr<ICIMNamespace> upcall = fUpcall.lock();
    if (!cls || !upcall || upcall.get() == this || !TNamespaceManager::IsProviderServed(*cls)) {
        return boost::shared_ptr<ICIMInstance>();
    }
    context[TNamespaceManager::kOriginKey] = TCIMValue(kRoutedOrigin);
    try {
        return upcall->GetInstance(path, context);
    } catch (const TZENTAException&) {
        return boost::shared_ptr<ICIMInstance>();
    }
}

void TInmemNamespace::DeleteInstance(const TCIMReference& path, TCIMContext context) {
    RequireInstance(path)->Delete(context);
}

void TInmemNamespace::ModifyInstance(const TCIMReference& path, TCIMContext values, TCIMContext context) {
    boost::shared_ptr<ICIMInstance> instance = RequireInstance(path);
    // Check every value before the first one is written.
    for (const auto& entry : values) {
        boost::shared_ptr<ICIMProperty> property = instance->GetProperty(entry.first, context);
        if (!property) {
            ThrowStatus(TZENTAStatusCode::kInvalidProperty, "instance " + path.GetPath() + " has no property " + entry.first);
        }
        boost::shared_ptr<ICIMPropertyDecl> decl = property->GetDecl();
        CheckDeclaredValue(decl->GetType(), decl->IsArray(), entry.second, "property " + entry.first);
        if (decl->IsKey() && property->GetValue() != entry.second) {
            ThrowStatus(TZENTAStatusCode::kInvalidProperty, "key property " + entry.first + " cannot change");
        }
    }
    for (const auto& entry : values) instance->SetPropertyValue(entry.first, entry.second, context);
}

void TInmemNamespace::ExecuteQuery(const TInstanceCallback&, std::string& query, std::string& language, TCIMContext) {
    ThrowStatus(TZENTAStatusCode::kQueryNotSupported,
                "the repository does not evaluate " + language + " queries: " + query);
}

void TInmemNamespace::ClearInstances() {
    for (const auto& cls : fClassOrder) cls->ClearRequestInstances();
}

ICIMNamespace& TInmemNamespace::operator=(ICIMNamespace&) {
    return *this;
}

}  // namespace NVURZENTA20
