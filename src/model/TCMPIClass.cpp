#include "TCMPIClass.h"

#include <utility>

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

#include "CmpiCast.h"
#include "TCMPIInstance.h"
#include "TCMPIMethodCall.h"
#include "TCMPINamespace.h"
#include "TCMPINamespaceProvider.h"
#include "TCMPIProvider.h"
#include "TRootObject.h"
#include "TZENTAException.h"
#include "providerDriver.h"

using namespace NVURZENTA20;

namespace {

// Deep enumeration: each subclass is wrapped and enumerated in turn, its
// instances going to the caller's callback.
struct TEnumerateCmpiSubClassInstances {
    explicit TEnumerateCmpiSubClassInstances(const TInstanceCallback& callback) : fCallback(callback) {}
    bool HandleInstance(boost::shared_ptr<ICIMInstance> instance) { return fCallback(instance); }
    const TInstanceCallback& fCallback;
};

struct TEnumerateCmpiSubClasses {
    TEnumerateCmpiSubClasses(const TInstanceCallback& callback, const TCIMContext& context)
        : fCallback(callback), fContext(context) {}
    bool HandleSubClass(boost::shared_ptr<ICIMClass> subClass) {
        // A subclass no provider serves has no instances to ask for; it must
        // not fail the enumeration of its served relatives.
        if (!subClass->GetQualifier("PLUGINNAME", TCIMContext())) return true;
        boost::shared_ptr<TCMPIClass> wrapper(new TCMPIClass(TCMPINamespaceProvider::GetNamespace(), subClass));
        TEnumerateCmpiSubClassInstances forward(fCallback);
        wrapper->EnumerateInstancesImpl(
            boost::bind(&TEnumerateCmpiSubClassInstances::HandleInstance, &forward, boost::placeholders::_1), false,
            fContext);
        return true;
    }
    const TInstanceCallback& fCallback;
    TCIMContext fContext;
};

}  // namespace

std::stack<const TInstanceCallback*>& TCMPIClass::fgEnumerateInstancesCallback() {
    static std::stack<const TInstanceCallback*> stack;
    return stack;
}

std::stack<bool>& TCMPIClass::fgEnumerateInstancesContinue() {
    static std::stack<bool> stack;
    return stack;
}

std::stack<boost::shared_ptr<const ICIMClass> >& TCMPIClass::fgEnumerateInstancesClass() {
    static std::stack<boost::shared_ptr<const ICIMClass> > stack;
    return stack;
}

TCMPIClass::TCMPIClass(boost::shared_ptr<TCMPINamespace> ns, boost::shared_ptr<ICIMClass> cls)
    : fNamespace(ns), fClass(cls) {}

TCMPIClass::~TCMPIClass() {}

boost::shared_ptr<TCMPINamespace> TCMPIClass::GetCMPINamespace() const {
    return boost::shared_ptr<TCMPINamespace>(fNamespace);
}

// --- Forwarded to the wrapped class -------------------------------------

bool TCMPIClass::Validate(TCIMContext context) const { return fClass->Validate(context); }
bool TCMPIClass::AddToNamespace(TCIMContext context) { return fClass->AddToNamespace(context); }
void TCMPIClass::RemoveFromNamespace(TCIMContext context) { fClass->RemoveFromNamespace(context); }
void TCMPIClass::ModifyClass(boost::shared_ptr<ICIMClass> modified, TCIMContext context) {
    fClass->ModifyClass(modified, context);
}
std::string TCMPIClass::GetName(TCIMContext context) const { return fClass->GetName(context); }
boost::shared_ptr<ICIMNamespace> TCMPIClass::GetNamespace(TCIMContext context) const {
    return fClass->GetNamespace(context);
}
bool TCMPIClass::IsAssociation(TCIMContext context) const { return fClass->IsAssociation(context); }
bool TCMPIClass::IsAbstract(TCIMContext context) const { return fClass->IsAbstract(context); }
bool TCMPIClass::IsRootClass(TCIMContext context) const { return fClass->IsRootClass(context); }
boost::shared_ptr<ICIMClass> TCMPIClass::GetSuperClass(TCIMContext context) const {
    return fClass->GetSuperClass(context);
}
bool TCMPIClass::IsSubclassOf(boost::shared_ptr<const ICIMClass> other, TCIMContext context) const {
    return fClass->IsSubclassOf(other, context);
}
void TCMPIClass::EnumerateKeyNames(const TKeyNameCallback& callback, TCIMContext context) const {
    fClass->EnumerateKeyNames(callback, context);
}
boost::shared_ptr<ICIMPropertyDecl> TCMPIClass::AllocatePropertyDecl(const std::string& name,
                                                                     const TCIMValue& value, TCIMContext context) {
    return fClass->AllocatePropertyDecl(name, value, context);
}
boost::shared_ptr<ICIMPropertyDecl> TCMPIClass::GetPropertyDecl(const std::string& name,
                                                                TCIMContext context) const {
    return fClass->GetPropertyDecl(name, context);
}
void TCMPIClass::EnumeratePropertyDecls(const TPropertyDeclCallback& callback, TCIMContext context) const {
    fClass->EnumeratePropertyDecls(callback, context);
}
boost::shared_ptr<ICIMProperty> TCMPIClass::GetProperty(const std::string& name, TCIMContext context) {
    return fClass->GetProperty(name, context);
}
void TCMPIClass::SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) {
    fClass->SetPropertyValue(name, value, context);
}
void TCMPIClass::EnumerateStaticProperties(const TPropertyCallback& callback, TCIMContext context) {
    fClass->EnumerateStaticProperties(callback, context);
}
boost::shared_ptr<ICIMMethodDecl> TCMPIClass::AllocateMethodDecl(const std::string& name,
                                                                 TCIMValue::TCIMType returnType,
                                                                 TCIMContext context) {
    return fClass->AllocateMethodDecl(name, returnType, context);
}
boost::shared_ptr<ICIMMethodDecl> TCMPIClass::GetMethodDecl(const std::string& name, TCIMContext context) const {
    return fClass->GetMethodDecl(name, context);
}
void TCMPIClass::EnumerateMethodDecls(const TMethodDeclCallback& callback, TCIMContext context) const {
    fClass->EnumerateMethodDecls(callback, context);
}
void TCMPIClass::AddChildClass(boost::shared_ptr<ICIMClass> child) { fClass->AddChildClass(child); }
void TCMPIClass::RemoveChildClass(boost::shared_ptr<ICIMClass> child) { fClass->RemoveChildClass(child); }
void TCMPIClass::RemoveInstance(boost::shared_ptr<ICIMInstance> instance) { fClass->RemoveInstance(instance); }
void TCMPIClass::AddAssociationClass(boost::shared_ptr<ICIMClass> association) {
    fClass->AddAssociationClass(association);
}
void TCMPIClass::RemoveAssociationClass(boost::shared_ptr<ICIMClass> association) {
    fClass->RemoveAssociationClass(association);
}
void TCMPIClass::AddPropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) { fClass->AddPropertyDecl(decl); }
void TCMPIClass::RemovePropertyDecl(boost::shared_ptr<ICIMPropertyDecl> decl) { fClass->RemovePropertyDecl(decl); }
void TCMPIClass::AddMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) { fClass->AddMethodDecl(decl); }
void TCMPIClass::RemoveMethodDecl(boost::shared_ptr<ICIMMethodDecl> decl) { fClass->RemoveMethodDecl(decl); }
void TCMPIClass::AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext context) {
    fClass->AddQualifier(qualifier, context);
}
boost::shared_ptr<ICIMQualifier> TCMPIClass::AllocateQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                               const TCIMValue& value, TCIMContext context) const {
    return fClass->AllocateQualifier(decl, value, context);
}
boost::shared_ptr<ICIMQualifier> TCMPIClass::AllocateQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                               const TCIMValue& value,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) const {
    return fClass->AllocateQualifier(decl, value, flavor, context);
}
boost::shared_ptr<ICIMQualifier> TCMPIClass::GetQualifier(const std::string& name, TCIMContext context) const {
    return fClass->GetQualifier(name, context);
}
void TCMPIClass::EnumerateQualifiers(const TQualifierCallback& callback, TCIMContext context) const {
    fClass->EnumerateQualifiers(callback, context);
}
boost::shared_ptr<ICIMQualifier> TCMPIClass::GetQualifier(const std::string& name, bool& propagated,
                                                          TCIMContext context) const {
    return fClass->GetQualifier(name, propagated, context);
}

// Wrapped classes compare by what they wrap.
bool TCMPIClass::operator==(ICIMClass& other) const {
    TCMPIClass* wrapper = dynamic_cast<TCMPIClass*>(&other);
    return *fClass == (wrapper ? *wrapper->fClass : other);
}
bool TCMPIClass::operator<(ICIMClass& other) const {
    TCMPIClass* wrapper = dynamic_cast<TCMPIClass*>(&other);
    return *fClass < (wrapper ? *wrapper->fClass : other);
}
ICIMClass& TCMPIClass::operator=(const ICIMClass&) { return *this; }
void TCMPIClass::ClearInstances() {}

// --- Classes reached from this one come back wrapped ---------------------

void TCMPIClass::EnumerateSubClasses(const TClassCallback& callback, bool deep, TCIMContext context) {
    TCreateWrappedCmpiClass wrap(GetCMPINamespace(), callback);
    fClass->EnumerateSubClasses(wrap, deep, context);
}

void TCMPIClass::EnumerateAssociatedClasses(const TClassCallback& callback, const std::string& assocClass,
                                            const std::string& resultClass, const std::string& role,
                                            const std::string& resultRole, TCIMContext context) {
    TCreateWrappedCmpiClass wrap(GetCMPINamespace(), callback);
    fClass->EnumerateAssociatedClasses(wrap, assocClass, resultClass, role, resultRole, context);
}

void TCMPIClass::EnumerateAssociationClasses(const TClassCallback& callback, const std::string& resultClass,
                                             const std::string& role, TCIMContext context) {
    TCreateWrappedCmpiClass wrap(GetCMPINamespace(), callback);
    fClass->EnumerateAssociationClasses(wrap, resultClass, role, context);
}

// --- The road to the provider --------------------------------------------

std::string TCMPIClass::GetPluginName() const {
    return static_cast<std::string>(fClass->GetQualifier("PLUGINNAME", TCIMContext())->GetValue());
}

boost::shared_ptr<TCMPIProvider> TCMPIClass::FindProvider(const std::string& pluginName) const {
    return GetCMPINamespace()->SearchForPluginByName(pluginName);
}

// Providers start on the first request that needs them.
void TCMPIClass::StartProviderIfNeeded(const boost::shared_ptr<TCMPIProvider>& provider,
                                       const std::string& pluginName) const {
    if (provider->IsInitialized()) return;
    try {
        provider->Initialize(GetCMPINamespace()->GetBroker());
    } catch (const TZENTAException&) {
        TRootObject::GetCoreLogger()->Log(0, "Plugin: Error initializing " + pluginName);
    }
}

boost::shared_ptr<ICIMInstance> TCMPIClass::AllocateInstance(TCIMContext context) {
    return boost::make_shared<TCMPIInstance>(shared_from_this(), context);
}

void TCMPIClass::EnumerateInstances(const TInstanceCallback& callback, bool deep, TCIMContext context) {
    TCIMContext copy(context);
    EnumerateInstancesImpl(callback, deep, copy);
}

// One entry on the three enumeration stacks for the length of a downcall.
// Popped on every way out: a stale entry left by a failed request would
// misroute the instances of every later enumeration in this process.
class TCMPIClass::TEnumerationFrame {
public:
    TEnumerationFrame(const TInstanceCallback& callback, boost::shared_ptr<const ICIMClass> cls) {
        fgEnumerateInstancesCallback().push(&callback);
        fgEnumerateInstancesContinue().push(true);
        fgEnumerateInstancesClass().push(cls);
    }
    ~TEnumerationFrame() {
        fgEnumerateInstancesCallback().pop();
        fgEnumerateInstancesContinue().pop();
        fgEnumerateInstancesClass().pop();
    }
};

void TCMPIClass::EnumerateInstancesImpl(const TInstanceCallback& callback, bool deep, TCIMContext context) const {
    {
        TEnumerationFrame frame(callback, shared_from_this());
        std::string pluginName = GetPluginName();
        boost::shared_ptr<TCMPINamespace> ns = GetCMPINamespace();
        boost::shared_ptr<TCMPIProvider> provider = FindProvider(pluginName);
        StartProviderIfNeeded(provider, pluginName);
        enumInstances(ns->GetBroker().get(), provider->GetProviderInfo().get(), GetName(TCIMContext()).c_str());
    }

    // Every subclass at every depth is enumerated on its own, so that each
    // provider is asked only for the class it serves.
    if (deep) {
        TEnumerateCmpiSubClasses subClasses(callback, context);
        fClass->EnumerateSubClasses(
            boost::bind(&TEnumerateCmpiSubClasses::HandleSubClass, &subClasses, boost::placeholders::_1), true,
            context);
    }
}

// The same class object has the same name: the names are compared only
// when the instance's class is another object.
bool TCMPIClass::AddInstance(boost::shared_ptr<ICIMInstance> instance) {
    std::stack<bool>& goOn = fgEnumerateInstancesContinue();
    if (goOn.empty()) return fClass->AddInstance(instance);
    if (!goOn.top()) return false;
    const boost::shared_ptr<ICIMClass> instanceClass = instance->GetClass(TCIMContext());
    const boost::shared_ptr<const ICIMClass>& enumerated = fgEnumerateInstancesClass().top();
    if (instanceClass != enumerated &&
        instanceClass->GetName(TCIMContext()) != enumerated->GetName(TCIMContext())) {
        return fClass->AddInstance(instance);
    }
    if ((*fgEnumerateInstancesCallback().top())(std::move(instance))) return true;
    goOn.top() = false;
    return false;
}

boost::shared_ptr<ICIMInstance> TCMPIClass::GetInstance(const TCIMReference& path, TCIMContext) {
    std::string pluginName = GetPluginName();
    boost::shared_ptr<TCMPIProvider> provider = FindProvider(pluginName);
    StartProviderIfNeeded(provider, pluginName);
    return getInstance(GetCMPINamespace()->GetBroker().get(), provider->GetProviderInfo().get(), path);
}

TCIMValue TCMPIClass::InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext) {
    boost::shared_ptr<TCMPIInstance> instance = cmpiCast<TCMPIInstance>(AllocateInstance(TCIMContext()));
    TCMPIMethodCall call(shared_from_this(), name);
    call.Run(instance->BuildPath(TCIMContext()), parameters);
    return TCIMValue();
}
