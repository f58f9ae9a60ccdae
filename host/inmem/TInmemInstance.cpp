#include "TInmemInstance.h"

#include <utility>
#include <vector>

#include <boost/core/null_deleter.hpp>
#include <boost/make_shared.hpp>

#include "ICIMClass.h"
#include "TInmemAssociations.h"
#include "TInmemLayout.h"
#include "TInmemSupport.h"

namespace NVURZENTA20 {

// A property of an instance: a view of one of its slots.
class TInmemInstance::TProperty : public ICIMProperty {
public:
    TProperty() : fOwner(nullptr), fSlot(0) {}
    void Bind(TInmemInstance* owner, std::size_t slot) {
        fOwner = owner;
        fSlot = slot;
    }

    std::string GetName() const override { return Slot().name; }
    TCIMValue GetValue() const override { return fOwner->fValues[fSlot]; }
    void SetValue(const TCIMValue& value) override { fOwner->SetSlot(fSlot, value); }
    boost::shared_ptr<ICIMPropertyDecl> GetDecl() const override { return Slot().decl; }

private:
    const TInstanceLayout::TSlot& Slot() const { return fOwner->fLayout->slots[fSlot]; }

    TInmemInstance* fOwner;
    std::size_t fSlot;
};

TInmemInstance::TInmemInstance(boost::shared_ptr<ICIMClass> cls, int kind)
    : fClass(cls), fKind(kind), fProperties(nullptr) {
    if (!cls) ThrowStatus(TZENTAStatusCode::kInvalidClass, "an instance needs a class");
    std::vector<boost::shared_ptr<ICIMPropertyDecl> > collected;
    TLayoutPtr layout;
    cls->EnumeratePropertyDecls(TLayoutRequest(collected, layout), TCIMContext());
    if (!layout) layout = boost::make_shared<const TInstanceLayout>(collected);
    fLayout = layout;
    fValues.reset(new TCIMValue[layout->Size()]);
    for (std::size_t slot = 0; slot < layout->Size(); ++slot) fValues[slot] = layout->slots[slot].defaultValue;
}

TInmemInstance::~TInmemInstance() { delete[] fProperties.load(std::memory_order_acquire); }

std::size_t TInmemInstance::SlotOf(const std::string& name) const { return fLayout->Find(name); }

void TInmemInstance::SetSlot(std::size_t slot, const TCIMValue& value) {
    const TInstanceLayout::TSlot& declared = fLayout->slots[slot];
    if (HasDeclaredType(declared.type, declared.isArray, value)) {
        fValues[slot] = value;
        return;
    }
    fValues[slot] = CheckDeclaredValue(declared.type, declared.isArray, value, "property " + declared.name);
}

// Two readers may get here at once: the first set of objects in place wins.
TInmemInstance::TProperty* TInmemInstance::Properties() const {
    TProperty* made = fProperties.load(std::memory_order_acquire);
    if (made != nullptr) return made;
    std::unique_ptr<TProperty[]> fresh(new TProperty[fLayout->Size()]);
    for (std::size_t slot = 0; slot < fLayout->Size(); ++slot) {
        fresh[slot].Bind(const_cast<TInmemInstance*>(this), slot);
    }
    if (fProperties.compare_exchange_strong(made, fresh.get(), std::memory_order_acq_rel)) return fresh.release();
    return made;
}

// An instance that no shared pointer owns (one on the stack) hands out
// properties that do not keep it alive.
boost::shared_ptr<ICIMProperty> TInmemInstance::PropertyAt(std::size_t slot) const {
    boost::shared_ptr<const TInmemInstance> owner = weak_from_this().lock();
    ICIMProperty* property = &Properties()[slot];
    if (!owner) return boost::shared_ptr<ICIMProperty>(property, boost::null_deleter());
    return boost::shared_ptr<ICIMProperty>(owner, property);
}

std::size_t TInmemInstance::GetPropertyCount() const { return fLayout->Size(); }

const std::string& TInmemInstance::GetPropertyName(std::size_t index) const { return fLayout->slots[index].name; }

const TCIMValue& TInmemInstance::GetPropertyValue(std::size_t index) const { return fValues[index]; }

bool TInmemInstance::Validate(TCIMContext) const {
    for (std::size_t key : fLayout->keys) {
        if (fValues[key].IsNull()) return false;
    }
    return true;
}

bool TInmemInstance::AddToNamespace(TCIMContext) {
    if (fKind != kRepositoryInstance) return false;
    return fClass->AddInstance(shared_from_this());
}

void TInmemInstance::CopyValuesFrom(const ICIMInstance& other) {
    std::vector<std::pair<std::size_t, TCIMValue> > updates;
    for (std::size_t slot = 0; slot < fLayout->Size(); ++slot) {
        const TInstanceLayout::TSlot& declared = fLayout->slots[slot];
        boost::shared_ptr<ICIMProperty> source = other.GetProperty(declared.name, TCIMContext());
        if (!source) continue;
        updates.push_back(std::make_pair(slot, CheckDeclaredValue(declared.type, declared.isArray, source->GetValue(),
                                                                  "property " + declared.name)));
    }
    for (const auto& update : updates) fValues[update.first] = update.second;
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

// The path is made from the layout's key slots in place, not by asking the
// class for its key names and each property by name.
TCIMReference TInmemInstance::GetReference(TCIMContext context) const {
    TCIMReference path(fClass->GetNamespace(context), context);
    path.SetClassName(fClass->GetName(context));
    for (const std::size_t slot : fLayout->keys) path.AddKeyValue(fLayout->slots[slot].name, fValues[slot]);
    return path;
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
    const std::size_t slot = SlotOf(name);
    if (slot == fLayout->Size()) return boost::shared_ptr<ICIMProperty>();
    return PropertyAt(slot);
}

void TInmemInstance::SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext) {
    const std::size_t slot = SlotOf(name);
    if (slot == fLayout->Size()) {
        ThrowStatus(TZENTAStatusCode::kInvalidProperty,
                    "class " + fClass->GetName(TCIMContext()) + " has no property " + name);
    }
    SetSlot(slot, value);
}

void TInmemInstance::EnumerateProperties(const TPropertyCallback& callback, TCIMContext) {
    for (std::size_t slot = 0; slot < fLayout->Size(); ++slot) {
        if (!callback(PropertyAt(slot))) return;
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
