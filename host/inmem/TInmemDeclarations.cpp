#include "TInmemDeclarations.h"

namespace NVURZENTA20 {

namespace {

typedef ICIMQualifierDecl D;

void RequireName(const std::string& name, const char* what) {
    if (name.empty()) ThrowStatus(TZENTAStatusCode::kInvalidArgument, std::string("a ") + what + " needs a name");
}

void RequireSameType(TCIMValue::TCIMType type, bool isArray, TCIMValue::TCIMType inheritedType,
                     bool inheritedArray, const std::string& what) {
    if (type != inheritedType || isArray != inheritedArray) {
        ThrowStatus(TZENTAStatusCode::kTypeMismatch, what + " overrides a " +
                                                         DescribeType(inheritedType, inheritedArray) +
                                                         " with a " + DescribeType(type, isArray));
    }
}

int PropertyScope(const TCIMValue& value) {
    return value.GetType() == TCIMValue::TCIMType::kReference ? D::kScopeReference : D::kScopeProperty;
}

}  // namespace

TInmemPropertyDecl::TInmemPropertyDecl(const std::string& name, const TCIMValue& defaultValue,
                                       const std::string& classOrigin,
                                       boost::shared_ptr<const ICIMPropertyDecl> overridden)
    : TInmemNamedElement<ICIMPropertyDecl>(PropertyScope(defaultValue)), fName(name),
      fClassOrigin(classOrigin), fOverridden(overridden) {
    RequireName(name, "property");
    if (defaultValue.GetType() == TCIMValue::TCIMType::kNone) {
        ThrowStatus(TZENTAStatusCode::kTypeMismatch, DescribeElement() + " needs a typed value");
    }
    fDefault = CheckDeclaredValue(defaultValue.GetType(), defaultValue.IsArray(), defaultValue, DescribeElement());
    if (overridden) {
        RequireSameType(GetType(), IsArray(), overridden->GetType(), overridden->IsArray(), DescribeElement());
        fReferenceClass = overridden->GetReferenceClassName();
    }
}

void TInmemPropertyDecl::SetDefaultValue(const TCIMValue& value) {
    fDefault = CheckDeclaredValue(GetType(), IsArray(), value, DescribeElement());
    NoteSchemaChange();
}

void TInmemPropertyDecl::SetReferenceClassName(const std::string& name) {
    fReferenceClass = name;
    NoteSchemaChange();
}

bool TInmemPropertyDecl::IsKey() const {
    boost::shared_ptr<ICIMQualifier> key = GetQualifier("Key", TCIMContext());
    return key && IsTrue(key->GetValue());
}

TInmemParameterDecl::TInmemParameterDecl(const std::string& name, TCIMValue::TCIMType type, bool isArray,
                                         const std::string& referenceClass, const std::string& methodName,
                                         boost::shared_ptr<const ICIMParameterDecl> overridden)
    : TInmemNamedElement<ICIMParameterDecl>(D::kScopeParameter), fName(name), fType(type), fIsArray(isArray),
      fReferenceClass(referenceClass), fMethodName(methodName), fOverridden(overridden) {
    RequireName(name, "parameter");
    if (type == TCIMValue::TCIMType::kNone) {
        ThrowStatus(TZENTAStatusCode::kTypeMismatch, DescribeElement() + " needs a type");
    }
    if (overridden) {
        RequireSameType(type, isArray, overridden->GetType(), overridden->IsArray(), DescribeElement());
    }
}

TInmemMethodDecl::TInmemMethodDecl(const std::string& name, TCIMValue::TCIMType returnType,
                                   const std::string& classOrigin, boost::shared_ptr<const ICIMMethodDecl> overridden)
    : TInmemNamedElement<ICIMMethodDecl>(D::kScopeMethod), fName(name), fReturnType(returnType),
      fClassOrigin(classOrigin), fOverridden(overridden) {
    RequireName(name, "method");
    if (overridden) {
        RequireSameType(returnType, false, overridden->GetReturnType(), false, DescribeElement());
    }
}

boost::shared_ptr<ICIMParameterDecl> TInmemMethodDecl::AllocateParameterDecl(const std::string& name,
                                                                             TCIMValue::TCIMType type, bool isArray,
                                                                             const std::string& referenceClass,
                                                                             TCIMContext context) {
    if (GetParameterDecl(name, context)) {
        ThrowStatus(TZENTAStatusCode::kAlreadyExists, DescribeElement() + " already has a parameter " + name);
    }
    boost::shared_ptr<const ICIMParameterDecl> overridden;
    if (fOverridden) overridden = fOverridden->GetParameterDecl(name, context);
    boost::shared_ptr<ICIMParameterDecl> parameter(
        new TInmemParameterDecl(name, type, isArray, referenceClass, fClassOrigin + "." + fName, overridden));
    fParameters.push_back(parameter);
    return parameter;
}

boost::shared_ptr<ICIMParameterDecl> TInmemMethodDecl::GetParameterDecl(const std::string& name,
                                                                        TCIMContext) const {
    for (const auto& parameter : fParameters) {
        if (SameName(parameter->GetName(), name)) return parameter;
    }
    return boost::shared_ptr<ICIMParameterDecl>();
}

void TInmemMethodDecl::EnumerateParameterDecls(const TParameterDeclCallback& callback, TCIMContext) const {
    for (const auto& parameter : fParameters) {
        if (!callback(parameter)) return;
    }
}

TInmemProperty::TInmemProperty(boost::shared_ptr<ICIMPropertyDecl> decl) : fDecl(decl) {
    if (!decl) ThrowStatus(TZENTAStatusCode::kInvalidProperty, "a property needs a declaration");
    fValue = decl->GetDefaultValue();
}

// A value of the declared type is stored as it is; the checked road (with
// its message text and the typed null) is taken only when it is needed.
void TInmemProperty::SetValue(const TCIMValue& value) {
    if (HasDeclaredType(fDecl->GetType(), fDecl->IsArray(), value)) {
        fValue = value;
        return;
    }
    fValue = CheckDeclaredValue(fDecl->GetType(), fDecl->IsArray(), value, "property " + fDecl->GetName());
}

}  // namespace NVURZENTA20
