#include "TInmemQualifier.h"

#include "TInmemSupport.h"

namespace NVURZENTA20 {

namespace {

typedef ICIMQualifierDecl D;

// Within one pair of opposite flavor bits, the qualifier's own choice wins.
int MergePair(int declared, int own, int first, int second) {
    const int pair = first | second;
    return (own & pair) != 0 ? (declared & ~pair) | (own & pair) : declared;
}

boost::shared_ptr<const ICIMQualifierDecl> RequireDecl(boost::shared_ptr<const ICIMQualifierDecl> decl) {
    if (!decl) ThrowStatus(TZENTAStatusCode::kInvalidQualifier, "a qualifier needs a declaration");
    return decl;
}

}  // namespace

TInmemQualifierDecl::TInmemQualifierDecl(const std::string& name, const TCIMValue& value, EScope scope,
                                         EFlavor flavor)
    : fName(name), fDefault(value), fScope(scope), fFlavor(flavor) {
    if (name.empty()) ThrowStatus(TZENTAStatusCode::kInvalidQualifier, "a qualifier declaration needs a name");
    if (value.GetType() == TCIMValue::TCIMType::kNone) {
        ThrowStatus(TZENTAStatusCode::kTypeMismatch, "qualifier " + name + " needs a typed default value");
    }
}

bool TInmemQualifierDecl::SameAs(const ICIMQualifierDecl& other) const {
    return GetType() == other.GetType() && IsArray() == other.IsArray() && fDefault == other.GetDefaultValue() &&
           fScope == other.GetScope() && fFlavor == other.GetFlavor();
}

TInmemQualifier::TInmemQualifier(boost::shared_ptr<const ICIMQualifierDecl> decl, const TCIMValue& value,
                                 ICIMQualifierDecl::EFlavor flavor)
    : fDecl(RequireDecl(decl)), fFlavor(flavor) {
    SetValue(value);
}

void TInmemQualifier::SetValue(const TCIMValue& value) {
    fValue = CheckDeclaredValue(fDecl->GetType(), fDecl->IsArray(), value, "qualifier " + fDecl->GetName());
    NoteSchemaChange();
}

ICIMQualifierDecl::EFlavor MergeFlavor(ICIMQualifierDecl::EFlavor declared, ICIMQualifierDecl::EFlavor own) {
    int merged = MergePair(declared, own, D::kEnableOverride, D::kDisableOverride);
    merged = MergePair(merged, own, D::kToSubclass, D::kRestricted);
    return static_cast<ICIMQualifierDecl::EFlavor>(merged | (own & D::kTranslatable));
}

bool Propagates(const ICIMQualifier& qualifier) {
    return (qualifier.GetFlavor() & D::kRestricted) == 0;
}

boost::shared_ptr<ICIMQualifier> TQualifierSet::Allocate(boost::shared_ptr<const ICIMQualifierDecl> decl,
                                                         const TCIMValue& value,
                                                         ICIMQualifierDecl::EFlavor flavor) {
    RequireDecl(decl);
    return boost::shared_ptr<ICIMQualifier>(
        new TInmemQualifier(decl, value, MergeFlavor(decl->GetFlavor(), flavor)));
}

void TQualifierSet::Add(boost::shared_ptr<ICIMQualifier> qualifier, const ICIMNamedElement* parent,
                        const std::string& owner) {
    if (!qualifier) ThrowStatus(TZENTAStatusCode::kInvalidArgument, "no qualifier given for " + owner);
    const std::string name = qualifier->GetName();
    boost::shared_ptr<const ICIMQualifierDecl> decl = qualifier->GetDecl();
    if (decl && (decl->GetScope() & fScope) == 0) {
        ThrowStatus(TZENTAStatusCode::kInvalidQualifier, "qualifier " + name + " may not stand on " + owner);
    }
    boost::shared_ptr<ICIMQualifier> inherited = Inherited(name, parent);
    if (inherited && (inherited->GetFlavor() & D::kDisableOverride) != 0 &&
        inherited->GetValue() != qualifier->GetValue()) {
        ThrowStatus(TZENTAStatusCode::kInvalidQualifier,
                    "qualifier " + name + " of " + owner + " may not override the inherited value");
    }
    NoteSchemaChange();
    for (auto& own : fOwn) {
        if (SameName(own->GetName(), name)) {
            own = qualifier;
            return;
        }
    }
    fOwn.push_back(qualifier);
}

boost::shared_ptr<ICIMQualifier> TQualifierSet::FindOwn(const std::string& name) const {
    for (const auto& own : fOwn) {
        if (SameName(own->GetName(), name)) return own;
    }
    return boost::shared_ptr<ICIMQualifier>();
}

boost::shared_ptr<ICIMQualifier> TQualifierSet::Inherited(const std::string& name, const ICIMNamedElement* parent) {
    if (!parent) return boost::shared_ptr<ICIMQualifier>();
    boost::shared_ptr<ICIMQualifier> qualifier = parent->GetQualifier(name, TCIMContext());
    return qualifier && Propagates(*qualifier) ? qualifier : boost::shared_ptr<ICIMQualifier>();
}

boost::shared_ptr<ICIMQualifier> TQualifierSet::Get(const std::string& name, bool& propagated,
                                                    const ICIMNamedElement* parent) const {
    boost::shared_ptr<ICIMQualifier> own = FindOwn(name);
    propagated = false;
    if (own) return own;
    boost::shared_ptr<ICIMQualifier> inherited = Inherited(name, parent);
    propagated = static_cast<bool>(inherited);
    return inherited;
}

void TQualifierSet::Enumerate(const TQualifierCallback& callback, const ICIMNamedElement* parent) const {
    for (const auto& own : fOwn) {
        if (!callback(own)) return;
    }
    if (!parent) return;
    parent->EnumerateQualifiers(
        [&](boost::shared_ptr<ICIMQualifier> inherited) {
            if (!Propagates(*inherited) || FindOwn(inherited->GetName())) return true;
            return callback(inherited);
        },
        TCIMContext());
}

}  // namespace NVURZENTA20
