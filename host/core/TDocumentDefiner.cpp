#include "TDocumentDefiner.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ICIMClass.h"
#include "ICIMInstance.h"
#include "ICIMNamespace.h"
#include "CIMNames.h"
#include "TCIMReference.h"
#include "TValueText.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;
typedef boost::shared_ptr<ICIMClass> TClassPtr;

// The qualifier the CMPI library puts on each class a provider serves: it
// is the host's mark, not part of what a document defines.
const char kProviderQualifier[] = "PLUGINNAME";

// Fills the flavor pairs a declaration leaves open with the defaults:
// overridable, to subclasses, not translatable.
ICIMQualifierDecl::EFlavor WithDefaultFlavors(int bits) {
    if ((bits & (ICIMQualifierDecl::kEnableOverride | ICIMQualifierDecl::kDisableOverride)) == 0) {
        bits |= ICIMQualifierDecl::kEnableOverride;
    }
    if ((bits & (ICIMQualifierDecl::kToSubclass | ICIMQualifierDecl::kRestricted)) == 0) {
        bits |= ICIMQualifierDecl::kToSubclass;
    }
    return static_cast<ICIMQualifierDecl::EFlavor>(bits);
}

std::string TypeText(T type, bool isArray) { return type.GetName() + (isArray ? "[]" : ""); }

// --- values ---------------------------------------------------------------

const char* KindName(TRawValue::EKind kind) {
    switch (kind) {
        case TRawValue::kString: return "a string";
        case TRawValue::kInteger: return "an integer";
        case TRawValue::kReal: return "a real number";
        case TRawValue::kBoolean: return "a boolean";
        case TRawValue::kChar: return "a char16 character";
        case TRawValue::kArray: return "an array";
        case TRawValue::kReference: return "a reference";
        case TRawValue::kAlias: return "an alias";
        default: return "a value";
    }
}

// Whether a MOF literal of `kind` may be given to a declaration of `type`.
bool LiteralFits(TRawValue::EKind kind, T type) {
    switch (kind) {
        case TRawValue::kText: return true;
        case TRawValue::kString: return type == T::kString || type == T::kDateTime || type == T::kChar16;
        case TRawValue::kInteger: return type.IsInteger() || type.IsReal();
        case TRawValue::kReal: return type.IsReal();
        case TRawValue::kBoolean: return type == T::kBoolean;
        case TRawValue::kChar: return type == T::kChar16 || type == T::kString;
        default: return false;
    }
}

class TValueResolver {
public:
    typedef std::map<std::string, TCIMReference> TAliases;

    TValueResolver(const boost::shared_ptr<ICIMNamespace>& ns, const TAliases* aliases = nullptr)
        : fNamespace(ns), fAliases(aliases) {}

    // `what` names the holder in errors ("property Foo.Bar").
    TCIMValue Resolve(const TRawValue& raw, T type, bool isArray, const std::string& what) const {
        if (raw.kind == TRawValue::kAbsent || raw.kind == TRawValue::kNull) return NullOf(type, isArray);
        if (isArray != (raw.kind == TRawValue::kArray)) {
            FailAt(raw.at, what + " is declared " + TypeText(type, isArray) + ", not given " +
                               (isArray ? "a single value" : "an array"));
        }
        if (!isArray) return Scalar(raw, type, what);
        std::vector<TCIMValue> elements;
        elements.reserve(raw.elements.size());
        for (const auto& element : raw.elements) {
            if (element.kind == TRawValue::kArray) FailAt(element.at, what + ": arrays do not nest");
            elements.push_back(element.kind == TRawValue::kNull ? NullOf(type, false) : Scalar(element, type, what));
        }
        TCIMValue value;
        value.Set(type, static_cast<unsigned int>(elements.size()), std::move(elements));
        return value;
    }

private:
    TCIMValue Scalar(const TRawValue& raw, T type, const std::string& what) const {
        if (type == T::kReference) return TCIMValue(Reference(raw, what));
        if (!LiteralFits(raw.kind, type)) {
            FailAt(raw.at, what + " is declared " + type.GetName() + ", not given " + KindName(raw.kind));
        }
        TCIMValue value;
        std::string reason;
        if (!ParseValueText(type, raw.text, value, reason)) FailAt(raw.at, what + ": " + reason);
        return value;
    }

    TCIMReference Reference(const TRawValue& raw, const std::string& what) const {
        switch (raw.kind) {
            case TRawValue::kReference: return FromBindings(raw, what);
            case TRawValue::kString: return FromPathText(raw, what);
            case TRawValue::kAlias: return FromAlias(raw, what);
            default: FailAt(raw.at, what + " is declared a reference, not given " + std::string(KindName(raw.kind)));
        }
    }

    TCIMReference FromBindings(const TRawValue& raw, const std::string& what) const {
        TCIMReference reference(fNamespace, TCIMContext());
        reference.SetClassName(raw.text);
        if (!raw.referenceNamespace.empty()) reference.SetNameSpaceName(raw.referenceNamespace);
        for (const auto& key : raw.keys) {
            const TRawValue& value = key.second;
            if (value.kind == TRawValue::kReference) {
                reference.AddKeyValue(key.first, TCIMValue(FromBindings(value, what)));
            } else {
                reference.AddKeyValue(key.first, KeyValue(value, raw.text, key.first, what));
            }
        }
        return reference;
    }

    // A key gets the type its class declares; without a declaration, the
    // type the document names, else what its text looks like.
    TCIMValue KeyValue(const TRawValue& raw, const std::string& className, const std::string& keyName,
                       const std::string& what) const {
        T type = DeclaredKeyType(className, keyName);
        T::ECIMType named = T::kNone;
        if (type == T::kNone && !raw.typeHint.empty() && T::FromName(raw.typeHint, named)) {
            type = named;
        } else if (type == T::kNone && raw.valueType == "boolean") {
            type = T::kBoolean;
        } else if (type == T::kNone && raw.valueType == "numeric") {
            const std::string& text = raw.text;
            type = text.find_first_of(".eE") != std::string::npos ? T::kReal64
                   : text.find('-') != std::string::npos          ? T::kSint64
                                                                   : T::kUint64;
        } else if (type == T::kNone) {
            type = T::kString;
        }
        TCIMValue value;
        std::string reason;
        if (!ParseValueText(type, raw.text, value, reason)) FailAt(raw.at, what + ": key " + keyName + ": " + reason);
        return value;
    }

    T DeclaredKeyType(const std::string& className, const std::string& keyName) const {
        TClassPtr cls = fNamespace ? fNamespace->GetClass(className, TCIMContext()) : TClassPtr();
        boost::shared_ptr<ICIMPropertyDecl> decl = cls ? cls->GetPropertyDecl(keyName, TCIMContext())
                                                       : boost::shared_ptr<ICIMPropertyDecl>();
        if (!decl || decl->GetType() == T::kReference || decl->IsArray()) return T::kNone;
        return decl->GetType();
    }

    // MOF writes a reference as object path text; its keys get the types
    // the class declares.
    TCIMReference FromPathText(const TRawValue& raw, const std::string& what) const {
        TCIMReference parsed;
        try {
            parsed = TCIMReference::Parse(raw.text);
        } catch (const TZENTAException& e) {
            FailAt(raw.at, what + ": " + e.GetMessage());
        }
        TCIMReference reference(fNamespace, TCIMContext());
        reference.SetClassName(parsed.GetClassName());
        if (!parsed.GetNameSpaceName().empty()) reference.SetNameSpaceName(parsed.GetNameSpaceName());
        parsed.EnumerateKeyBindings([&](std::pair<std::string, TCIMValue> key) {
            const T declared = DeclaredKeyType(parsed.GetClassName(), key.first);
            TCIMValue value = key.second;
            if (declared != T::kNone && !value.IsNull() && value.GetType() != declared) {
                std::string reason;
                if (!ParseValueText(declared, value.ToString(), value, reason)) {
                    FailAt(raw.at, what + ": key " + key.first + ": " + reason);
                }
            }
            reference.AddKeyValue(key.first, value);
            return true;
        });
        return reference;
    }

    TCIMReference FromAlias(const TRawValue& raw, const std::string& what) const {
        auto found = fAliases ? fAliases->find(NameKey(raw.text)) : TAliases::const_iterator();
        if (!fAliases || found == fAliases->end()) {
            FailAt(raw.at, what + ": alias $" + raw.text + " names no instance written before it");
        }
        return found->second;
    }

    boost::shared_ptr<ICIMNamespace> fNamespace;
    const TAliases* fAliases;
};

// A single value written where an array is declared, as the array of that
// one element: MOF registrations and qualifiers often write it so.
TRawValue OneElementArrayIfNeeded(const TRawValue& value, bool isArray) {
    if (!isArray || value.kind == TRawValue::kArray || value.kind == TRawValue::kAbsent ||
        value.kind == TRawValue::kNull) {
        return value;
    }
    TRawValue array;
    array.kind = TRawValue::kArray;
    array.at = value.at;
    array.elements.push_back(value);
    return array;
}

// --- qualifier declarations ----------------------------------------------

// A qualifier declaration the document introduces. Its qualifiers are
// built on it while the document is defined; the namespace gets the
// declaration itself only once every class is in place.
class TDocumentQualifierDecl : public ICIMQualifierDecl {
public:
    TDocumentQualifierDecl(const std::string& name, const TCIMValue& value, EScope scope, EFlavor flavor)
        : fName(name), fDefault(value), fScope(scope), fFlavor(flavor) {}

    std::string GetName() const override { return fName; }
    TCIMValue::TCIMType GetType() const override { return fDefault.GetType(); }
    bool IsArray() const override { return fDefault.IsArray(); }
    TCIMValue GetDefaultValue() const override { return fDefault; }
    EScope GetScope() const override { return fScope; }
    EFlavor GetFlavor() const override { return fFlavor; }

private:
    std::string fName;
    TCIMValue fDefault;
    EScope fScope;
    EFlavor fFlavor;
};

struct TResolvedQualifier {
    TSourceLocation at;
    boost::shared_ptr<const ICIMQualifierDecl> decl;
    TCIMValue value;
    D::EFlavor flavor;  // the flavors the document wrote; none: the declaration's
};
typedef std::vector<TResolvedQualifier> TResolvedQualifiers;

struct TResolvedFeature {
    const TFeaturePlan* plan;
    TCIMValue defaultValue;
    TResolvedQualifiers qualifiers;
};

struct TResolvedMethod {
    const TMethodPlan* plan;
    TResolvedQualifiers qualifiers;
    std::vector<TResolvedFeature> parameters;
};

struct TResolvedClass {
    const TClassPlan* plan;
    TResolvedQualifiers qualifiers;
    std::vector<TResolvedFeature> properties;
    std::vector<TResolvedMethod> methods;
    TClassPtr existing;  // the same class, already in the namespace
};

// --- comparing a class with the one already defined ------------------------

struct TQualifierShape {
    TCIMValue value;
    int flavor;
    bool operator==(const TQualifierShape& other) const { return value == other.value && flavor == other.flavor; }
};

// One element of a class (the class, a property, a method, a parameter)
// as far as its definition goes.
struct TElementShape {
    std::string form;  // type, array-ness, reference class, return type
    TCIMValue defaultValue;
    std::map<std::string, TQualifierShape> qualifiers;
    bool operator==(const TElementShape& other) const {
        return form == other.form && defaultValue == other.defaultValue && qualifiers == other.qualifiers;
    }
};
typedef std::map<std::string, TElementShape> TClassShape;

std::string FeatureForm(T type, bool isArray, const std::string& referenceClass) {
    return TypeText(type, isArray) + " " + NameKey(referenceClass);
}

bool IsHostMark(const std::string& qualifier) { return SameCIMName(qualifier, kProviderQualifier); }

// The element's own qualifiers, not those it inherits, nor the host's mark.
std::map<std::string, TQualifierShape> OwnQualifiers(const ICIMNamedElement& element) {
    std::map<std::string, TQualifierShape> shapes;
    element.EnumerateQualifiers(
        [&](boost::shared_ptr<ICIMQualifier> qualifier) {
            bool propagated = false;
            element.GetQualifier(qualifier->GetName(), propagated, TCIMContext());
            if (!propagated && !IsHostMark(qualifier->GetName())) {
                shapes[NameKey(qualifier->GetName())] = TQualifierShape{qualifier->GetValue(), qualifier->GetFlavor()};
            }
            return true;
        },
        TCIMContext());
    return shapes;
}

// The document's qualifiers as the existing element would hold them: the
// element makes each qualifier, so flavors merge as they did before.
std::map<std::string, TQualifierShape> PlannedQualifiers(const ICIMNamedElement* element,
                                                         const TResolvedQualifiers& qualifiers) {
    std::map<std::string, TQualifierShape> shapes;
    for (const auto& q : qualifiers) {
        if (IsHostMark(q.decl->GetName())) continue;
        int flavor = q.flavor;
        if (element) {
            boost::shared_ptr<ICIMQualifier> made =
                q.flavor != D::kFlavorNone ? element->AllocateQualifier(q.decl, q.value, q.flavor, TCIMContext())
                                           : element->AllocateQualifier(q.decl, q.value, TCIMContext());
            flavor = made->GetFlavor();
        }
        shapes[NameKey(q.decl->GetName())] = TQualifierShape{q.value, flavor};
    }
    return shapes;
}

TClassShape ShapeOfExisting(const ICIMClass& cls) {
    TClassShape shape;
    const std::string name = cls.GetName(TCIMContext());
    TClassPtr superClass = cls.GetSuperClass(TCIMContext());
    TElementShape& top = shape["class"];
    top.form = superClass ? NameKey(superClass->GetName(TCIMContext())) : std::string();
    top.qualifiers = OwnQualifiers(cls);
    cls.EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> decl) {
            if (!SameCIMName(decl->GetClassOrigin(), name)) return true;
            TElementShape& property = shape["property " + NameKey(decl->GetName())];
            property.form = FeatureForm(decl->GetType(), decl->IsArray(), decl->GetReferenceClassName());
            property.defaultValue = decl->GetDefaultValue();
            property.qualifiers = OwnQualifiers(*decl);
            return true;
        },
        TCIMContext());
    cls.EnumerateMethodDecls(
        [&](boost::shared_ptr<ICIMMethodDecl> decl) {
            if (!SameCIMName(decl->GetClassOrigin(), name)) return true;
            const std::string key = "method " + NameKey(decl->GetName());
            TElementShape& method = shape[key];
            method.form = decl->GetReturnType().GetName();
            method.qualifiers = OwnQualifiers(*decl);
            int index = 0;
            decl->EnumerateParameterDecls(
                [&](boost::shared_ptr<ICIMParameterDecl> parameter) {
                    TElementShape& p = shape[key + " parameter " + std::to_string(index++)];
                    p.form = NameKey(parameter->GetName()) + " " +
                             FeatureForm(parameter->GetType(), parameter->IsArray(), parameter->GetReferenceClassName());
                    p.qualifiers = OwnQualifiers(*parameter);
                    return true;
                },
                TCIMContext());
            return true;
        },
        TCIMContext());
    return shape;
}

TClassShape ShapeOfPlan(const TResolvedClass& resolved, const ICIMClass& existing) {
    TClassShape shape;
    const TClassPlan& plan = *resolved.plan;
    TElementShape& top = shape["class"];
    top.form = NameKey(plan.superClass);
    top.qualifiers = PlannedQualifiers(&existing, resolved.qualifiers);
    for (const auto& property : resolved.properties) {
        TElementShape& element = shape["property " + NameKey(property.plan->name)];
        element.form = FeatureForm(property.plan->type, property.plan->isArray, property.plan->referenceClass);
        element.defaultValue = property.defaultValue;
        element.qualifiers =
            PlannedQualifiers(existing.GetPropertyDecl(property.plan->name, TCIMContext()).get(), property.qualifiers);
    }
    for (const auto& method : resolved.methods) {
        const std::string key = "method " + NameKey(method.plan->name);
        boost::shared_ptr<ICIMMethodDecl> decl = existing.GetMethodDecl(method.plan->name, TCIMContext());
        TElementShape& element = shape[key];
        element.form = method.plan->returnType.GetName();
        element.qualifiers = PlannedQualifiers(decl.get(), method.qualifiers);
        int index = 0;
        for (const auto& parameter : method.parameters) {
            const TFeaturePlan& p = *parameter.plan;
            TElementShape& pe = shape[key + " parameter " + std::to_string(index++)];
            pe.form = NameKey(p.name) + " " + FeatureForm(p.type, p.isArray, p.referenceClass);
            pe.qualifiers = PlannedQualifiers(decl ? decl->GetParameterDecl(p.name, TCIMContext()).get() : nullptr,
                                              parameter.qualifiers);
        }
    }
    return shape;
}

// The first element whose definition differs, "" when none does.
std::string FirstDifference(const TClassShape& before, const TClassShape& now) {
    auto a = before.begin();
    auto b = now.begin();
    while (a != before.end() || b != now.end()) {
        if (b == now.end() || (a != before.end() && a->first < b->first)) return a->first + " is missing";
        if (a == before.end() || b->first < a->first) return b->first + " is new";
        if (!(a->second == b->second)) return a->first + " differs";
        ++a;
        ++b;
    }
    return std::string();
}

// --- classes ----------------------------------------------------------------

class TClassDefiner {
public:
    TClassDefiner(const boost::shared_ptr<ICIMNamespace>& ns, const TDocumentPlan& plan, EDocumentRole role)
        : fNamespace(ns), fPlan(plan), fRole(role), fValues(ns) {}

    std::vector<TClassPtr> Define() {
        for (const auto& decl : fPlan.qualifierDecls) ResolveDecl(decl);
        std::vector<TResolvedClass> classes;
        classes.reserve(fPlan.classes.size());
        for (const auto& plan : fPlan.classes) classes.push_back(ResolveClass(plan));
        const std::vector<std::size_t> order = DefinitionOrder(classes);
        for (auto& resolved : classes) CheckReferenceClasses(resolved);
        for (auto& resolved : classes) {
            if (resolved.existing) CheckRedefinition(resolved);
        }
        return DefineInOrder(classes, order);
    }

private:
    struct TDeclaredHere {
        TSourceLocation at;
        boost::shared_ptr<ICIMQualifierDecl> decl;
        bool isNew;  // not yet in the namespace
    };

    void ResolveDecl(const TQualifierDeclPlan& plan) {
        const std::string what = "qualifier " + plan.name;
        const TCIMValue value = fValues.Resolve(plan.defaultValue, plan.type, plan.isArray, what);
        if (fDecls.count(NameKey(plan.name))) FailAt(plan.at, what + " is declared twice");
        boost::shared_ptr<ICIMQualifierDecl> existing = fNamespace->GetQualifierDecl(plan.name, TCIMContext());
        if (existing && (existing->GetType() != plan.type || existing->IsArray() != plan.isArray)) {
            FailAt(plan.at, what + " is declared " + TypeText(plan.type, plan.isArray) + " here and " +
                                TypeText(existing->GetType(), existing->IsArray()) + " in the namespace");
        }
        // A repeated declaration of the same type is accepted: this
        // document's qualifiers follow it, the namespace keeps its own.
        boost::shared_ptr<ICIMQualifierDecl> decl(
            new TDocumentQualifierDecl(plan.name, value, plan.scope, WithDefaultFlavors(plan.flavor)));
        fDecls[NameKey(plan.name)] = TDeclaredHere{plan.at, decl, !existing};
    }

    boost::shared_ptr<const ICIMQualifierDecl> LookupDecl(const std::string& name) const {
        auto here = fDecls.find(NameKey(name));
        if (here != fDecls.end()) return here->second.decl;
        return fNamespace->GetQualifierDecl(name, TCIMContext());
    }

    TResolvedQualifiers ResolveQualifiers(const TQualifierPlans& plans, const std::string& owner) const {
        TResolvedQualifiers resolved;
        std::set<std::string> names;
        for (const auto& plan : plans) {
            TResolvedQualifier q;
            q.at = plan.at;
            q.decl = LookupDecl(plan.name);
            if (!q.decl) FailAt(plan.at, "qualifier " + plan.name + " is not declared");
            if (!names.insert(NameKey(plan.name)).second) FailAt(plan.at, owner + " has qualifier " + plan.name + " twice");
            const T type = q.decl->GetType();
            if (plan.hasType && plan.type != type) {
                FailAt(plan.at, "qualifier " + plan.name + " is declared " + type.GetName());
            }
            q.value = QualifierValue(plan, *q.decl);
            q.flavor = plan.flavor;
            resolved.push_back(q);
        }
        return resolved;
    }

    TCIMValue QualifierValue(const TQualifierPlan& plan, const ICIMQualifierDecl& decl) const {
        const T type = decl.GetType();
        const std::string what = "qualifier " + plan.name;
        // A boolean qualifier written without a value means TRUE.
        if (plan.value.kind == TRawValue::kAbsent && type == T::kBoolean && !decl.IsArray()) return TCIMValue(true);
        return fValues.Resolve(OneElementArrayIfNeeded(plan.value, decl.IsArray()), type, decl.IsArray(), what);
    }

    TResolvedFeature ResolveFeature(const TFeaturePlan& plan, const std::string& owner) const {
        TResolvedFeature resolved;
        resolved.plan = &plan;
        const std::string what = owner + "." + plan.name;
        resolved.qualifiers = ResolveQualifiers(plan.qualifiers, what);
        resolved.defaultValue = fValues.Resolve(plan.defaultValue, plan.type, plan.isArray, what);
        return resolved;
    }

    TResolvedClass ResolveClass(const TClassPlan& plan) const {
        TResolvedClass resolved;
        resolved.plan = &plan;
        resolved.qualifiers = ResolveQualifiers(plan.qualifiers, "class " + plan.name);
        std::set<std::string> members;
        for (const auto& property : plan.properties) {
            if (!members.insert("p:" + NameKey(property.name)).second) {
                FailAt(property.at, "class " + plan.name + " declares " + property.name + " twice");
            }
            resolved.properties.push_back(ResolveFeature(property, "property " + plan.name));
        }
        for (const auto& method : plan.methods) {
            if (!members.insert("m:" + NameKey(method.name)).second) {
                FailAt(method.at, "class " + plan.name + " declares " + method.name + " twice");
            }
            TResolvedMethod m;
            m.plan = &method;
            const std::string what = plan.name + "." + method.name;
            m.qualifiers = ResolveQualifiers(method.qualifiers, "method " + what);
            std::set<std::string> names;
            for (const auto& parameter : method.parameters) {
                if (!names.insert(NameKey(parameter.name)).second) {
                    FailAt(parameter.at, "method " + method.name + " declares parameter " + parameter.name + " twice");
                }
                m.parameters.push_back(ResolveFeature(parameter, "parameter " + what));
            }
            resolved.methods.push_back(m);
        }
        return resolved;
    }

    bool IsKnownClass(const std::string& name) const {
        return fByName.count(NameKey(name)) != 0 || static_cast<bool>(fNamespace->GetClass(name, TCIMContext()));
    }

    void CheckReferenceClasses(const TResolvedClass& resolved) const {
        const auto check = [&](const TFeaturePlan& feature) {
            if (!feature.referenceClass.empty() && !IsKnownClass(feature.referenceClass)) {
                FailAt(feature.at, "reference class " + feature.referenceClass + " of " + feature.name +
                                       " is not defined");
            }
        };
        for (const auto& property : resolved.plan->properties) check(property);
        for (const auto& method : resolved.plan->methods) {
            for (const auto& parameter : method.parameters) check(parameter);
        }
    }

    // Indices of `classes` with every superclass before its subclasses;
    // also finds the classes the namespace has already.
    std::vector<std::size_t> DefinitionOrder(std::vector<TResolvedClass>& classes) {
        for (std::size_t i = 0; i < classes.size(); ++i) {
            const TClassPlan& plan = *classes[i].plan;
            if (!fByName.insert(std::make_pair(NameKey(plan.name), i)).second) {
                FailAt(plan.at, "class " + plan.name + " is defined twice in the document");
            }
            classes[i].existing = fNamespace->GetClass(plan.name, TCIMContext());
        }
        std::vector<std::size_t> order;
        std::vector<int> state(classes.size(), 0);  // 0 new, 1 being placed, 2 placed
        for (std::size_t i = 0; i < classes.size(); ++i) Place(classes, i, state, order);
        return order;
    }

    // Walks up the superclasses the document defines without recursing,
    // so that a long chain of classes cannot exhaust the stack.
    void Place(const std::vector<TResolvedClass>& classes, std::size_t first, std::vector<int>& state,
               std::vector<std::size_t>& order) const {
        std::vector<std::size_t> chain;
        for (std::size_t index = first; state[index] != 2;) {
            const TClassPlan& plan = *classes[index].plan;
            if (state[index] == 1) FailAt(plan.at, "class " + plan.name + " derives from itself");
            state[index] = 1;
            chain.push_back(index);
            if (plan.superClass.empty()) break;
            auto found = fByName.find(NameKey(plan.superClass));
            if (found != fByName.end()) {
                index = found->second;
                continue;
            }
            if (!fNamespace->GetClass(plan.superClass, TCIMContext())) {
                FailAt(plan.at, "superclass " + plan.superClass + " of class " + plan.name + " is not defined");
            }
            break;
        }
        for (auto index = chain.rbegin(); index != chain.rend(); ++index) {
            state[*index] = 2;
            order.push_back(*index);
        }
    }

    // A class the namespace has already may be defined again identically,
    // unless another module's document defined it: a module never takes
    // over another module's class.
    void CheckRedefinition(const TResolvedClass& resolved) const {
        const TClassPlan& plan = *resolved.plan;
        TDefinitionOrigin origin;
        const bool known = TDocumentMemory::FindClass(resolved.existing, origin);
        if (known && fRole == EDocumentRole::kModule && origin.role == EDocumentRole::kModule && origin.at.file &&
            *origin.at.file != fPlan.path) {
            FailAt(plan.at, "class " + plan.name + " is already defined by another module, at " + origin.at.ToString());
        }
        const std::string difference =
            FirstDifference(ShapeOfExisting(*resolved.existing), ShapeOfPlan(resolved, *resolved.existing));
        if (!difference.empty()) {
            FailAt(plan.at, "class " + plan.name + " is already defined differently, at " +
                                (known ? origin.at.ToString() : std::string("the namespace")) + " (" + difference +
                                ")");
        }
    }

    std::vector<TClassPtr> DefineInOrder(const std::vector<TResolvedClass>& classes,
                                         const std::vector<std::size_t>& order) {
        std::vector<TClassPtr> made(classes.size());
        std::vector<TClassPtr> added;
        TSourceLocation at = TSourceLocation();
        try {
            for (std::size_t index : order) {
                const TResolvedClass& resolved = classes[index];
                at = resolved.plan->at;
                if (resolved.existing) {
                    made[index] = resolved.existing;
                    continue;
                }
                TClassPtr superClass;
                if (!resolved.plan->superClass.empty()) {
                    auto found = fByName.find(NameKey(resolved.plan->superClass));
                    superClass = found != fByName.end() ? made[found->second]
                                                        : fNamespace->GetClass(resolved.plan->superClass, TCIMContext());
                }
                TClassPtr cls = fNamespace->AllocateClass(resolved.plan->name, superClass, TCIMContext());
                added.push_back(cls);
                made[index] = cls;
                DefineMembers(*cls, resolved, at);
            }
            for (const auto& declared : fDecls) {
                if (!declared.second.isNew) continue;
                at = declared.second.at;
                const ICIMQualifierDecl& decl = *declared.second.decl;
                fNamespace->AllocateQualifierDecl(decl.GetName(), decl.GetDefaultValue(), decl.GetScope(),
                                                  decl.GetFlavor(), TCIMContext());
            }
        } catch (const TZENTAException& e) {
            RemoveAgain(added);
            FailAt(at, e.GetMessage());
        } catch (...) {
            RemoveAgain(added);
            throw;
        }
        for (std::size_t index : order) {
            if (!classes[index].existing) {
                TDocumentMemory::RememberClass(made[index], TDefinitionOrigin{classes[index].plan->at, fRole});
            }
        }
        return made;
    }

    static void RemoveAgain(const std::vector<TClassPtr>& added) {
        for (auto cls = added.rbegin(); cls != added.rend(); ++cls) {
            try {
                (*cls)->RemoveFromNamespace(TCIMContext());
            } catch (...) {
                // Best effort: the original failure is the one to report.
            }
        }
    }

    static void AddQualifiers(ICIMNamedElement& element, const TResolvedQualifiers& qualifiers, TSourceLocation& at) {
        for (const auto& q : qualifiers) {
            at = q.at;
            element.AddQualifier(q.flavor != D::kFlavorNone
                                     ? element.AllocateQualifier(q.decl, q.value, q.flavor, TCIMContext())
                                     : element.AllocateQualifier(q.decl, q.value, TCIMContext()),
                                 TCIMContext());
        }
    }

    static void DefineMembers(ICIMClass& cls, const TResolvedClass& resolved, TSourceLocation& at) {
        AddQualifiers(cls, resolved.qualifiers, at);
        for (const auto& property : resolved.properties) {
            at = property.plan->at;
            boost::shared_ptr<ICIMPropertyDecl> decl =
                cls.AllocatePropertyDecl(property.plan->name, property.defaultValue, TCIMContext());
            if (!property.plan->referenceClass.empty()) decl->SetReferenceClassName(property.plan->referenceClass);
            AddQualifiers(*decl, property.qualifiers, at);
        }
        for (const auto& method : resolved.methods) {
            at = method.plan->at;
            boost::shared_ptr<ICIMMethodDecl> decl =
                cls.AllocateMethodDecl(method.plan->name, method.plan->returnType, TCIMContext());
            AddQualifiers(*decl, method.qualifiers, at);
            for (const auto& parameter : method.parameters) {
                const TFeaturePlan& p = *parameter.plan;
                at = p.at;
                boost::shared_ptr<ICIMParameterDecl> declared =
                    decl->AllocateParameterDecl(p.name, p.type, p.isArray, p.referenceClass, TCIMContext());
                AddQualifiers(*declared, parameter.qualifiers, at);
            }
        }
    }

    boost::shared_ptr<ICIMNamespace> fNamespace;
    const TDocumentPlan& fPlan;
    EDocumentRole fRole;
    TValueResolver fValues;
    std::map<std::string, TDeclaredHere> fDecls;
    std::map<std::string, std::size_t> fByName;
};

// --- instances ----------------------------------------------------------------

class TInstanceMaker {
public:
    TInstanceMaker(const boost::shared_ptr<ICIMNamespace>& ns, const TDocumentPlan& plan)
        : fNamespace(ns), fPlan(plan), fValues(ns, &fAliases) {}

    std::vector<boost::shared_ptr<ICIMInstance> > Make() {
        std::vector<boost::shared_ptr<ICIMInstance> > instances;
        for (const auto& plan : fPlan.instances) instances.push_back(MakeInstance(plan));
        return instances;
    }

private:
    boost::shared_ptr<ICIMInstance> MakeInstance(const TInstancePlan& plan) {
        TClassPtr cls = fNamespace->GetClass(plan.className, TCIMContext());
        if (!cls) FailAt(plan.at, "instance of unknown class " + plan.className);
        boost::shared_ptr<ICIMInstance> instance = cls->AllocateInstance(TCIMContext());
        std::set<std::string> given;
        for (const auto& property : plan.properties) {
            if (!given.insert(NameKey(property.name)).second) {
                FailAt(property.at, "the instance gives property " + property.name + " twice");
            }
            SetProperty(*cls, *instance, property);
        }
        if (!plan.alias.empty()) {
            if (!fAliases.insert(std::make_pair(NameKey(plan.alias), instance->GetReference(TCIMContext()))).second) {
                FailAt(plan.at, "alias $" + plan.alias + " is given twice");
            }
        }
        return instance;
    }

    void SetProperty(ICIMClass& cls, ICIMInstance& instance, const TPropertyValuePlan& property) const {
        const std::string className = cls.GetName(TCIMContext());
        boost::shared_ptr<ICIMPropertyDecl> decl = cls.GetPropertyDecl(property.name, TCIMContext());
        if (!decl) FailAt(property.at, "class " + className + " has no property " + property.name);
        const std::string what = "property " + className + "." + property.name;
        const bool isReference = decl->GetType() == T::kReference;
        // A single value given to an array property is its only element
        // (registrations often write Namespaces = "root/cimv2"), but an array
        // is never given to a single-valued one.
        if (property.hasForm &&
            (property.isReference != isReference || (!isReference && property.isArray && !decl->IsArray()) ||
             (property.type != T::kNone && property.type != decl->GetType()))) {
            FailAt(property.at, what + " is declared " + TypeText(decl->GetType(), decl->IsArray()));
        }
        const TCIMValue value = fValues.Resolve(OneElementArrayIfNeeded(property.value, decl->IsArray()), decl->GetType(),
                                                decl->IsArray(), what);
        try {
            instance.SetPropertyValue(property.name, value, TCIMContext());
        } catch (const TZENTAException& e) {
            FailAt(property.at, e.GetMessage());
        }
    }

    boost::shared_ptr<ICIMNamespace> fNamespace;
    const TDocumentPlan& fPlan;
    TValueResolver::TAliases fAliases;
    TValueResolver fValues;
};

}  // namespace

std::vector<TClassPtr> DefineClasses(const boost::shared_ptr<ICIMNamespace>& ns, const TDocumentPlan& plan,
                                     EDocumentRole role) {
    return TClassDefiner(ns, plan, role).Define();
}

std::vector<boost::shared_ptr<ICIMInstance> > MakeInstances(const boost::shared_ptr<ICIMNamespace>& ns,
                                                            const TDocumentPlan& plan) {
    return TInstanceMaker(ns, plan).Make();
}

}  // namespace NVURZENTA20
