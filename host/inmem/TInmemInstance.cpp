#include "TInmemInstance.h"

#include <utility>

#include <boost/make_shared.hpp>

#include "ICIMClass.h"
#include "TInmemAssociations.h"
#include "TInmemDeclarations.h"
#include "TInmemSupport.h"

namespace NVURZENTA20 {

namespace {

// Room for the properties of most classes up front; an instance keeps no
// spare capacity for its life.
const std::size_t kTypicalPropertyCount = 16;

}  // namespace

TInmemInstance::TInmemInstance(boost::shared_ptr<ICIMClass> cls, int kind) : fClass(cls), fKind(kind) {
    if (!cls) ThrowStatus(TZENTAStatusCode::kInvalidClass, "an instance needs a class");
    fProperties.reserve(kTypicalPropertyCount);
    cls->EnumeratePropertyDecls(
        [this](boost::shared_ptr<ICIMPropertyDecl> decl) {
            fProperties.push_back(boost::make_shared<TInmemProperty>(decl));
            return true;
        },
        TCIMContext());
    fProperties.shrink_to_fit();
}

TInmemInstance::~TInmemInstance() {}

boost::shared_ptr<ICIMProperty> TInmemInstance::FindProperty(const std::string& name) const {
    for (const auto& property : fProperties) {
        if (SameName(property->GetName(), name)) return property;
    }
    return boost::shared_ptr<ICIMProperty>();
}

bool TInmemInstance::Validate(TCIMContext) const {
    for (const auto& property : fProperties) {
        if (property->GetDecl()->IsKey() && property->GetValue().IsNull()) return false;
    }
    return true;
}

bool TInmemInstance::AddToNamespace(TCIMContext) {
    if (fKind != kRepositoryInstance) return false;
    return fClass->AddInstance(shared_from_this());
}

void TInmemInstance::CopyValuesFrom(const ICIMInstance& other) {
    std::vector<std::pair<boost::shared_ptr<ICIMProperty>, TCIMValue> > updates;
    for (const auto& property : fProperties) {
        boost::shared_ptr<ICIMProperty> source = other.GetProperty(property->GetName(), TCIMContext());
        if (!source) continue;
        boost::shared_ptr<ICIMPropertyDecl> decl = property->GetDecl();
        updates.push_back(std::make_pair(property, CheckDeclaredValue(decl->GetType(), decl->IsArray(),
                                                                      source->GetValue(),
                                                                      "property " + property->GetName())));
    }
    for (const auto& update : updates) update.first->SetValue(update.second);
}

void TInmemInstance::ModifyInstance(boost::shared_ptr<ICIMInstance> modified, TCIMContext) {
    if (!modified) ThrowStatus(TZENTAStatusCode::kInvalidArgument, "no instance given to modify with");
    CopyValuesFrom(*modified);
}

ICIMInstance& TInmemInstance::operator=(const ICIMInstance& other) {
    if (&other != this) CopyValuesFrom(other);
    return *this;
}

void TInmemInstance::Delete(TCIMContext) {
    fClass->RemoveInstance(shared_from_this());
}

TCIMReference TInmemInstance::GetReference(TCIMContext context) const {
    return BuildPath(context);
}

boost::shared_ptr<ICIMClass> TInmemInstance::GetClass(TCIMContext) const {
    return fClass;
}

void TInmemInstance::EnumerateAssociatedInstances(const TInstanceCallback& callback, const std::string& assocClass,
                                                  const std::string& resultClass, const std::string& role,
                                                  const std::string& resultRole, TCIMContext context) {
    EnumerateAssociatedInstancesOf(*this, callback, assocClass, resultClass, role, resultRole, context);
}

void TInmemInstance::EnumerateAssociationInstances(const TInstanceCallback& callback, const std::string& resultClass,
                                                   const std::string& role, TCIMContext context) {
    EnumerateAssociationInstancesOf(*this, callback, resultClass, role, context);
}

boost::shared_ptr<ICIMProperty> TInmemInstance::GetProperty(const std::string& name, TCIMContext) const {
    return FindProperty(name);
}

void TInmemInstance::SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext) {
    boost::shared_ptr<ICIMProperty> property = FindProperty(name);
    if (!property) {
        ThrowStatus(TZENTAStatusCode::kInvalidProperty,
                    "class " + fClass->GetName(TCIMContext()) + " has no property " + name);
    }
    property->SetValue(value);
}

void TInmemInstance::EnumerateProperties(const TPropertyCallback& callback, TCIMContext) {
    for (const auto& property : fProperties) {
        if (!callback(property)) return;
    }
}

TCIMValue TInmemInstance::InvokeMethod(const std::string& name, TCIMContext&, TCIMContext context) {
    const std::string className = fClass->GetName(context);
    if (!fClass->GetMethodDecl(name, context)) {
        ThrowStatus(TZENTAStatusCode::kMethodNotFound, "class " + className + " has no method " + name);
    }
    ThrowStatus(TZENTAStatusCode::kUnsupportedOperation,
                "method " + className + "." + name + " has no implementation for in-memory instances");
}

bool TInmemInstance::operator==(ICIMInstance& other) const {
    return GetReference(TCIMContext()) == other.GetReference(TCIMContext());
}

bool TInmemInstance::operator<(ICIMInstance& other) const {
    return GetReference(TCIMContext()).GetPath() < other.GetReference(TCIMContext()).GetPath();
}

}  // namespace NVURZENTA20
