// Reads CIM-XML class documents (qualifier declarations and classes) and
// registration documents (instances) into a namespace. A class document is
// read and checked completely before the namespace changes; if the
// namespace still refuses a definition, the classes added so far are
// removed again, so a failing document leaves the namespace as it was.
#include "TNamespacePopulator.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include "ICIMNamespace.h"
#include "TCIMXMLDocument.h"
#include "TCIMXMLValues.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;

std::string NameKey(std::string name) {
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

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

struct TQualifierPlan {
    pugi::xml_node node;
    boost::shared_ptr<const ICIMQualifierDecl> decl;
    TCIMValue value;
    bool ownFlavor;
    D::EFlavor flavor;
};
typedef std::vector<TQualifierPlan> TQualifierPlans;

struct TPropertyPlan {
    pugi::xml_node node;
    std::string name;
    TCIMValue value;
    std::string referenceClass;
    TQualifierPlans qualifiers;
};

struct TParameterPlan {
    pugi::xml_node node;
    std::string name;
    TCIMValue::TCIMType type;
    bool isArray;
    std::string referenceClass;
    TQualifierPlans qualifiers;
};

struct TMethodPlan {
    pugi::xml_node node;
    std::string name;
    TCIMValue::TCIMType returnType;
    TQualifierPlans qualifiers;
    std::vector<TParameterPlan> parameters;
};

struct TClassPlan {
    pugi::xml_node node;
    std::string name;
    std::string superClass;
    TQualifierPlans qualifiers;
    std::vector<TPropertyPlan> properties;
    std::vector<TMethodPlan> methods;
};

// The flavor attributes of a QUALIFIER or QUALIFIER.DECLARATION. With
// `defaults` the DSP0201 defaults fill in absent attributes (overridable,
// to subclass, not translatable); without, only the attributes present
// count.
D::EFlavor ReadFlavor(const TCIMXMLDocument& document, pugi::xml_node node, bool defaults) {
    int flavor = D::kFlavorNone;
    if (defaults || node.attribute("OVERRIDABLE")) {
        flavor |= document.BoolAttribute(node, "OVERRIDABLE", true) ? D::kEnableOverride : D::kDisableOverride;
    }
    if (defaults || node.attribute("TOSUBCLASS")) {
        flavor |= document.BoolAttribute(node, "TOSUBCLASS", true) ? D::kToSubclass : D::kRestricted;
    }
    if (document.BoolAttribute(node, "TRANSLATABLE", false)) flavor |= D::kTranslatable;
    return static_cast<D::EFlavor>(flavor);
}

D::EScope ReadScope(const TCIMXMLDocument& document, pugi::xml_node declaration) {
    pugi::xml_node scope = declaration.child("SCOPE");
    if (!scope) return D::kScopeAny;
    static const struct {
        const char* attribute;
        D::EScope bit;
    } kScopes[] = {{"CLASS", D::kScopeClass},         {"ASSOCIATION", D::kScopeAssociation},
                   {"INDICATION", D::kScopeIndication}, {"PROPERTY", D::kScopeProperty},
                   {"REFERENCE", D::kScopeReference},   {"METHOD", D::kScopeMethod},
                   {"PARAMETER", D::kScopeParameter}};
    int bits = D::kScopeNone;
    for (const auto& entry : kScopes) {
        if (document.BoolAttribute(scope, entry.attribute, false)) bits |= entry.bit;
    }
    return static_cast<D::EScope>(bits);
}

class TClassDocumentReader {
public:
    TClassDocumentReader(const TCIMXMLDocument& document, boost::shared_ptr<ICIMNamespace> ns)
        : fDocument(document), fNamespace(ns), fValues(document, ns) {}

    std::vector<boost::shared_ptr<ICIMClass> > Populate() {
        const TCIMXMLDocument::TItems items = fDocument.CollectItems();
        for (const auto& node : items.qualifierDecls) ReadQualifierDecl(node);
        std::vector<TClassPlan> plans;
        for (const auto& node : items.classes) plans.push_back(ReadClass(node));
        return Define(plans, DefinitionOrder(plans));
    }

private:
    void ReadQualifierDecl(pugi::xml_node node) {
        const std::string name = fDocument.RequireAttribute(node, "NAME");
        const TCIMValue::TCIMType type = fDocument.TypeAttribute(node, "TYPE");
        const bool isArray = fDocument.BoolAttribute(node, "ISARRAY", false);
        const TCIMValue value = fValues.ReadContainedValue(node, type, isArray);
        for (const auto& known : fNewDecls) {
            if (NameKey(known.second->GetName()) == NameKey(name)) {
                fDocument.Fail(node, "qualifier " + name + " is declared twice");
            }
        }
        boost::shared_ptr<ICIMQualifierDecl> existing = fNamespace->GetQualifierDecl(name, TCIMContext());
        if (existing) {
            if (existing->GetType() != type || existing->IsArray() != isArray) {
                fDocument.Fail(node, "qualifier " + name + " is declared with another type in the namespace");
            }
            return;
        }
        fNewDecls.push_back(std::make_pair(node, boost::shared_ptr<ICIMQualifierDecl>(new TDocumentQualifierDecl(
                                                     name, value, ReadScope(fDocument, node),
                                                     ReadFlavor(fDocument, node, true)))));
    }

    boost::shared_ptr<const ICIMQualifierDecl> LookupDecl(const std::string& name) const {
        for (const auto& known : fNewDecls) {
            if (NameKey(known.second->GetName()) == NameKey(name)) return known.second;
        }
        return fNamespace->GetQualifierDecl(name, TCIMContext());
    }

    // The QUALIFIER children of `owner`; propagated copies are left out
    // (the namespace propagates qualifiers itself).
    TQualifierPlans ReadQualifiers(pugi::xml_node owner) const {
        TQualifierPlans qualifiers;
        for (pugi::xml_node node = owner.child("QUALIFIER"); node; node = node.next_sibling("QUALIFIER")) {
            if (fDocument.BoolAttribute(node, "PROPAGATED", false)) continue;
            qualifiers.push_back(ReadQualifier(node));
        }
        return qualifiers;
    }

    TQualifierPlan ReadQualifier(pugi::xml_node node) const {
        const std::string name = fDocument.RequireAttribute(node, "NAME");
        TQualifierPlan plan;
        plan.node = node;
        plan.decl = LookupDecl(name);
        if (!plan.decl) fDocument.Fail(node, "unknown qualifier " + name);
        const TCIMValue::TCIMType type = plan.decl->GetType();
        if (node.attribute("TYPE") && fDocument.TypeAttribute(node, "TYPE") != type) {
            fDocument.Fail(node, "qualifier " + name + " is declared " + type.GetName());
        }
        const bool hasValue = node.find_child([](pugi::xml_node n) { return n.type() == pugi::node_element; });
        // A boolean qualifier written without a value means TRUE, as in MOF.
        plan.value = !hasValue && type == T::kBoolean && !plan.decl->IsArray()
                         ? TCIMValue(true)
                         : fValues.ReadContainedValue(node, type, plan.decl->IsArray());
        plan.flavor = ReadFlavor(fDocument, node, false);
        plan.ownFlavor = plan.flavor != D::kFlavorNone;
        return plan;
    }

    TClassPlan ReadClass(pugi::xml_node node) const {
        TClassPlan plan;
        plan.node = node;
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.superClass = node.attribute("SUPERCLASS").value();
        plan.qualifiers = ReadQualifiers(node);
        std::set<std::string> members;
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            if (child.type() != pugi::node_element || IsElement(child, "QUALIFIER")) continue;
            const bool isMethod = IsElement(child, "METHOD");
            if (!isMethod && !IsElement(child, "PROPERTY") && !IsElement(child, "PROPERTY.ARRAY") &&
                !IsElement(child, "PROPERTY.REFERENCE")) {
                fDocument.Fail(child, std::string("unknown element ") + child.name() + " in class " + plan.name);
            }
            if (fDocument.BoolAttribute(child, "PROPAGATED", false)) continue;
            const std::string name = fDocument.RequireAttribute(child, "NAME");
            if (!members.insert((isMethod ? "m:" : "p:") + NameKey(name)).second) {
                fDocument.Fail(child, "class " + plan.name + " declares " + name + " twice");
            }
            if (isMethod) {
                plan.methods.push_back(ReadMethod(child));
            } else {
                plan.properties.push_back(ReadProperty(child));
            }
        }
        return plan;
    }

    TPropertyPlan ReadProperty(pugi::xml_node node) const {
        TPropertyPlan plan;
        plan.node = node;
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.qualifiers = ReadQualifiers(node);
        if (IsElement(node, "PROPERTY.REFERENCE")) {
            plan.referenceClass = node.attribute("REFERENCECLASS").value();
            plan.value = fValues.ReadContainedValue(node, T::kReference, false);
        } else {
            plan.value =
                fValues.ReadContainedValue(node, fDocument.TypeAttribute(node, "TYPE"), IsElement(node, "PROPERTY.ARRAY"));
        }
        return plan;
    }

    TMethodPlan ReadMethod(pugi::xml_node node) const {
        TMethodPlan plan;
        plan.node = node;
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.returnType = node.attribute("TYPE") ? fDocument.TypeAttribute(node, "TYPE") : T(T::kNone);
        plan.qualifiers = ReadQualifiers(node);
        std::set<std::string> names;
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            if (child.type() != pugi::node_element || IsElement(child, "QUALIFIER")) continue;
            TParameterPlan parameter = ReadParameter(child);
            if (!names.insert(NameKey(parameter.name)).second) {
                fDocument.Fail(child, "method " + plan.name + " declares parameter " + parameter.name + " twice");
            }
            plan.parameters.push_back(parameter);
        }
        return plan;
    }

    TParameterPlan ReadParameter(pugi::xml_node node) const {
        const std::string element = node.name();
        const bool isReference = element == "PARAMETER.REFERENCE" || element == "PARAMETER.REFARRAY";
        if (!isReference && element != "PARAMETER" && element != "PARAMETER.ARRAY") {
            fDocument.Fail(node, "unknown element " + element + " in a method");
        }
        TParameterPlan plan;
        plan.node = node;
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.type = isReference ? T(T::kReference) : fDocument.TypeAttribute(node, "TYPE");
        plan.isArray = element == "PARAMETER.ARRAY" || element == "PARAMETER.REFARRAY";
        plan.referenceClass = node.attribute("REFERENCECLASS").value();
        plan.qualifiers = ReadQualifiers(node);
        return plan;
    }

    // Indices of `plans` with every superclass before its subclasses.
    std::vector<std::size_t> DefinitionOrder(const std::vector<TClassPlan>& plans) const {
        std::map<std::string, std::size_t> byName;
        for (std::size_t i = 0; i < plans.size(); ++i) {
            const TClassPlan& plan = plans[i];
            if (!byName.insert(std::make_pair(NameKey(plan.name), i)).second) {
                fDocument.Fail(plan.node, "class " + plan.name + " is defined twice in the document");
            }
            if (fNamespace->GetClass(plan.name, TCIMContext())) {
                fDocument.Fail(plan.node, "class " + plan.name + " is already defined in the namespace");
            }
        }
        std::vector<std::size_t> order;
        std::vector<int> state(plans.size(), 0);  // 0 new, 1 being placed, 2 placed
        for (std::size_t i = 0; i < plans.size(); ++i) Place(plans, byName, i, state, order);
        return order;
    }

    void Place(const std::vector<TClassPlan>& plans, const std::map<std::string, std::size_t>& byName,
               std::size_t index, std::vector<int>& state, std::vector<std::size_t>& order) const {
        if (state[index] == 2) return;
        const TClassPlan& plan = plans[index];
        if (state[index] == 1) fDocument.Fail(plan.node, "class " + plan.name + " derives from itself");
        state[index] = 1;
        if (!plan.superClass.empty()) {
            auto found = byName.find(NameKey(plan.superClass));
            if (found != byName.end()) {
                Place(plans, byName, found->second, state, order);
            } else if (!fNamespace->GetClass(plan.superClass, TCIMContext())) {
                fDocument.Fail(plan.node, "superclass " + plan.superClass + " of class " + plan.name + " is not defined");
            }
        }
        state[index] = 2;
        order.push_back(index);
    }

    std::vector<boost::shared_ptr<ICIMClass> > Define(const std::vector<TClassPlan>& plans,
                                                       const std::vector<std::size_t>& order) {
        std::vector<boost::shared_ptr<ICIMClass> > made(plans.size());
        std::vector<boost::shared_ptr<ICIMClass> > added;
        std::map<std::string, boost::shared_ptr<ICIMClass> > defined;
        pugi::xml_node at;
        try {
            for (std::size_t index : order) {
                const TClassPlan& plan = plans[index];
                at = plan.node;
                boost::shared_ptr<ICIMClass> superClass;
                if (!plan.superClass.empty()) {
                    auto found = defined.find(NameKey(plan.superClass));
                    superClass = found != defined.end() ? found->second
                                                        : fNamespace->GetClass(plan.superClass, TCIMContext());
                }
                boost::shared_ptr<ICIMClass> cls = fNamespace->AllocateClass(plan.name, superClass, TCIMContext());
                added.push_back(cls);
                made[index] = defined[NameKey(plan.name)] = cls;
                DefineMembers(*cls, plan, at);
            }
            for (const auto& declared : fNewDecls) {
                at = declared.first;
                const ICIMQualifierDecl& decl = *declared.second;
                fNamespace->AllocateQualifierDecl(decl.GetName(), decl.GetDefaultValue(), decl.GetScope(),
                                                  decl.GetFlavor(), TCIMContext());
            }
        } catch (const TZENTAException& e) {
            RemoveAgain(added);
            fDocument.Fail(at, e.what());
        } catch (...) {
            RemoveAgain(added);
            throw;
        }
        return made;
    }

    static void RemoveAgain(const std::vector<boost::shared_ptr<ICIMClass> >& added) {
        for (auto cls = added.rbegin(); cls != added.rend(); ++cls) {
            try {
                (*cls)->RemoveFromNamespace(TCIMContext());
            } catch (...) {
                // Best effort: the original failure is the one to report.
            }
        }
    }

    static void AddQualifiers(ICIMNamedElement& element, const TQualifierPlans& qualifiers, pugi::xml_node& at) {
        for (const auto& plan : qualifiers) {
            at = plan.node;
            element.AddQualifier(plan.ownFlavor ? element.AllocateQualifier(plan.decl, plan.value, plan.flavor, TCIMContext())
                                                : element.AllocateQualifier(plan.decl, plan.value, TCIMContext()),
                                 TCIMContext());
        }
    }

    static void DefineMembers(ICIMClass& cls, const TClassPlan& plan, pugi::xml_node& at) {
        AddQualifiers(cls, plan.qualifiers, at);
        for (const auto& property : plan.properties) {
            at = property.node;
            boost::shared_ptr<ICIMPropertyDecl> decl = cls.AllocatePropertyDecl(property.name, property.value, TCIMContext());
            if (!property.referenceClass.empty()) decl->SetReferenceClassName(property.referenceClass);
            AddQualifiers(*decl, property.qualifiers, at);
        }
        for (const auto& method : plan.methods) {
            at = method.node;
            boost::shared_ptr<ICIMMethodDecl> decl = cls.AllocateMethodDecl(method.name, method.returnType, TCIMContext());
            AddQualifiers(*decl, method.qualifiers, at);
            for (const auto& parameter : method.parameters) {
                at = parameter.node;
                boost::shared_ptr<ICIMParameterDecl> declared = decl->AllocateParameterDecl(
                    parameter.name, parameter.type, parameter.isArray, parameter.referenceClass, TCIMContext());
                AddQualifiers(*declared, parameter.qualifiers, at);
            }
        }
    }

    const TCIMXMLDocument& fDocument;
    boost::shared_ptr<ICIMNamespace> fNamespace;
    TCIMXMLValueReader fValues;
    std::vector<std::pair<pugi::xml_node, boost::shared_ptr<ICIMQualifierDecl> > > fNewDecls;
};

class TInstanceDocumentReader {
public:
    TInstanceDocumentReader(const TCIMXMLDocument& document, boost::shared_ptr<ICIMNamespace> ns)
        : fDocument(document), fNamespace(ns), fValues(document, ns) {}

    std::vector<boost::shared_ptr<ICIMInstance> > Read() const {
        std::vector<boost::shared_ptr<ICIMInstance> > instances;
        for (const auto& node : fDocument.CollectItems().instances) instances.push_back(ReadInstance(node));
        return instances;
    }

private:
    boost::shared_ptr<ICIMInstance> ReadInstance(pugi::xml_node node) const {
        const std::string className = fDocument.RequireAttribute(node, "CLASSNAME");
        boost::shared_ptr<ICIMClass> cls = fNamespace->GetClass(className, TCIMContext());
        if (!cls) fDocument.Fail(node, "instance of unknown class " + className);
        boost::shared_ptr<ICIMInstance> instance = cls->AllocateInstance(TCIMContext());
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            if (child.type() != pugi::node_element || IsElement(child, "QUALIFIER")) continue;
            ReadProperty(*cls, *instance, child);
        }
        return instance;
    }

    static const char* ElementFor(const ICIMPropertyDecl& decl) {
        if (decl.GetType() == T::kReference) return "PROPERTY.REFERENCE";
        return decl.IsArray() ? "PROPERTY.ARRAY" : "PROPERTY";
    }

    void ReadProperty(ICIMClass& cls, ICIMInstance& instance, pugi::xml_node node) const {
        const std::string element = node.name();
        if (element != "PROPERTY" && element != "PROPERTY.ARRAY" && element != "PROPERTY.REFERENCE") {
            fDocument.Fail(node, "unknown element " + element + " in an instance");
        }
        const std::string name = fDocument.RequireAttribute(node, "NAME");
        const std::string className = cls.GetName(TCIMContext());
        boost::shared_ptr<ICIMPropertyDecl> decl = cls.GetPropertyDecl(name, TCIMContext());
        if (!decl) fDocument.Fail(node, "class " + className + " has no property " + name);
        const std::string declared = decl->GetType().GetName() + (decl->IsArray() ? "[]" : "");
        if (element != ElementFor(*decl) ||
            (node.attribute("TYPE") && fDocument.TypeAttribute(node, "TYPE") != decl->GetType())) {
            fDocument.Fail(node, "property " + className + "." + name + " is declared " + declared);
        }
        const TCIMValue value = fValues.ReadContainedValue(node, decl->GetType(), decl->IsArray());
        try {
            instance.SetPropertyValue(name, value, TCIMContext());
        } catch (const TZENTAException& e) {
            fDocument.Fail(node, e.what());
        }
    }

    const TCIMXMLDocument& fDocument;
    boost::shared_ptr<ICIMNamespace> fNamespace;
    TCIMXMLValueReader fValues;
};

void RequireNamespace(const boost::shared_ptr<ICIMNamespace>& ns, const std::string& path) {
    if (!ns) throw TZENTAException(TZENTAStatusCode::kInvalidNamespace, "no namespace to read " + path + " into");
}

}  // namespace

std::vector<boost::shared_ptr<ICIMClass> > TNamespacePopulator::PopulateFromXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                                                                   std::string path) {
    TCIMXMLDocument document(path);
    if (!document.Load()) return std::vector<boost::shared_ptr<ICIMClass> >();
    RequireNamespace(ns, path);
    return TClassDocumentReader(document, ns).Populate();
}

std::vector<boost::shared_ptr<ICIMInstance> > TNamespacePopulator::PopulateFromRegXMLFile(
    boost::shared_ptr<ICIMNamespace> ns, std::string path) {
    TCIMXMLDocument document(path);
    if (!document.Load()) return std::vector<boost::shared_ptr<ICIMInstance> >();
    RequireNamespace(ns, path);
    return TInstanceDocumentReader(document, ns).Read();
}

}  // namespace NVURZENTA20
