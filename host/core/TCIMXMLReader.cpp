#include "TCIMXMLReader.h"

#include "TCIMXMLDocument.h"

namespace NVURZENTA20 {

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;

bool IsAnyElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

pugi::xml_node FirstElement(pugi::xml_node parent) {
    return parent.find_child([](pugi::xml_node n) { return IsAnyElement(n); });
}

class TCIMXMLPlanReader {
public:
    explicit TCIMXMLPlanReader(const TCIMXMLDocument& document) : fDocument(document) {}

    TDocumentPlan Read() const {
        TDocumentPlan plan;
        plan.path = fDocument.GetPath();
        const TCIMXMLDocument::TItems items = fDocument.CollectItems();
        for (const auto& node : items.qualifierDecls) plan.qualifierDecls.push_back(ReadQualifierDecl(node));
        for (const auto& node : items.classes) plan.classes.push_back(ReadClass(node));
        for (const auto& node : items.instances) plan.instances.push_back(ReadInstance(node));
        return plan;
    }

private:
    // The flavor attributes of a QUALIFIER or QUALIFIER.DECLARATION. With
    // `defaults` the DSP0201 defaults fill in absent attributes
    // (overridable, to subclass, not translatable); without, only the
    // attributes present count.
    // The flavors written; the defaults of a declaration are the definer's.
    D::EFlavor ReadFlavor(pugi::xml_node node) const {
        int flavor = D::kFlavorNone;
        if (node.attribute("OVERRIDABLE")) {
            flavor |= fDocument.BoolAttribute(node, "OVERRIDABLE", true) ? D::kEnableOverride : D::kDisableOverride;
        }
        if (node.attribute("TOSUBCLASS")) {
            flavor |= fDocument.BoolAttribute(node, "TOSUBCLASS", true) ? D::kToSubclass : D::kRestricted;
        }
        if (fDocument.BoolAttribute(node, "TRANSLATABLE", false)) flavor |= D::kTranslatable;
        return static_cast<D::EFlavor>(flavor);
    }

    D::EScope ReadScope(pugi::xml_node declaration) const {
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
            if (fDocument.BoolAttribute(scope, entry.attribute, false)) bits |= entry.bit;
        }
        return static_cast<D::EScope>(bits);
    }

    TQualifierDeclPlan ReadQualifierDecl(pugi::xml_node node) const {
        TQualifierDeclPlan plan;
        plan.at = fDocument.LocationOf(node);
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.type = fDocument.TypeAttribute(node, "TYPE");
        plan.isArray = fDocument.BoolAttribute(node, "ISARRAY", false);
        plan.defaultValue = ReadContainedValue(node);
        plan.scope = ReadScope(node);
        plan.flavor = ReadFlavor(node);
        return plan;
    }

    // The QUALIFIER children of `owner`; propagated copies are left out
    // (the namespace propagates qualifiers itself).
    TQualifierPlans ReadQualifiers(pugi::xml_node owner) const {
        TQualifierPlans qualifiers;
        for (pugi::xml_node node = owner.child("QUALIFIER"); node; node = node.next_sibling("QUALIFIER")) {
            if (fDocument.BoolAttribute(node, "PROPAGATED", false)) continue;
            TQualifierPlan plan;
            plan.at = fDocument.LocationOf(node);
            plan.name = fDocument.RequireAttribute(node, "NAME");
            plan.hasType = static_cast<bool>(node.attribute("TYPE"));
            if (plan.hasType) plan.type = fDocument.TypeAttribute(node, "TYPE");
            plan.value = ReadContainedValue(node);
            plan.flavor = ReadFlavor(node);
            qualifiers.push_back(plan);
        }
        return qualifiers;
    }

    TClassPlan ReadClass(pugi::xml_node node) const {
        TClassPlan plan;
        plan.at = fDocument.LocationOf(node);
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.superClass = node.attribute("SUPERCLASS").value();
        plan.qualifiers = ReadQualifiers(node);
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            if (!IsAnyElement(child) || IsElement(child, "QUALIFIER")) continue;
            const bool isMethod = IsElement(child, "METHOD");
            if (!isMethod && !IsElement(child, "PROPERTY") && !IsElement(child, "PROPERTY.ARRAY") &&
                !IsElement(child, "PROPERTY.REFERENCE")) {
                fDocument.Fail(child, std::string("unknown element ") + child.name() + " in class " + plan.name);
            }
            if (fDocument.BoolAttribute(child, "PROPAGATED", false)) continue;
            if (isMethod) {
                plan.methods.push_back(ReadMethod(child));
            } else {
                plan.properties.push_back(ReadProperty(child));
            }
        }
        return plan;
    }

    TFeaturePlan ReadProperty(pugi::xml_node node) const {
        TFeaturePlan plan = Named<TFeaturePlan>(node);
        if (IsElement(node, "PROPERTY.REFERENCE")) {
            plan.type = T::kReference;
            plan.referenceClass = node.attribute("REFERENCECLASS").value();
        } else {
            plan.type = fDocument.TypeAttribute(node, "TYPE");
            plan.isArray = IsElement(node, "PROPERTY.ARRAY");
        }
        plan.defaultValue = ReadContainedValue(node);
        return plan;
    }

    // A plan of an element with a NAME, its place and its qualifiers.
    template <class TPlan>
    TPlan Named(pugi::xml_node node) const {
        TPlan plan;
        plan.at = fDocument.LocationOf(node);
        plan.name = fDocument.RequireAttribute(node, "NAME");
        plan.qualifiers = ReadQualifiers(node);
        return plan;
    }

    TMethodPlan ReadMethod(pugi::xml_node node) const {
        TMethodPlan plan = Named<TMethodPlan>(node);
        plan.returnType = node.attribute("TYPE") ? fDocument.TypeAttribute(node, "TYPE") : T(T::kNone);
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            if (!IsAnyElement(child) || IsElement(child, "QUALIFIER")) continue;
            plan.parameters.push_back(ReadParameter(child));
        }
        return plan;
    }

    TFeaturePlan ReadParameter(pugi::xml_node node) const {
        const std::string element = node.name();
        const bool isReference = element == "PARAMETER.REFERENCE" || element == "PARAMETER.REFARRAY";
        if (!isReference && element != "PARAMETER" && element != "PARAMETER.ARRAY") {
            fDocument.Fail(node, "unknown element " + element + " in a method");
        }
        TFeaturePlan plan = Named<TFeaturePlan>(node);
        plan.type = isReference ? T(T::kReference) : fDocument.TypeAttribute(node, "TYPE");
        plan.isArray = element == "PARAMETER.ARRAY" || element == "PARAMETER.REFARRAY";
        plan.referenceClass = node.attribute("REFERENCECLASS").value();
        return plan;
    }

    TInstancePlan ReadInstance(pugi::xml_node node) const {
        TInstancePlan plan;
        plan.at = fDocument.LocationOf(node);
        plan.className = fDocument.RequireAttribute(node, "CLASSNAME");
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            if (!IsAnyElement(child) || IsElement(child, "QUALIFIER")) continue;
            const std::string element = child.name();
            if (element != "PROPERTY" && element != "PROPERTY.ARRAY" && element != "PROPERTY.REFERENCE") {
                fDocument.Fail(child, "unknown element " + element + " in an instance");
            }
            TPropertyValuePlan property;
            property.at = fDocument.LocationOf(child);
            property.name = fDocument.RequireAttribute(child, "NAME");
            property.hasForm = true;
            property.isReference = element == "PROPERTY.REFERENCE";
            property.isArray = element == "PROPERTY.ARRAY";
            if (child.attribute("TYPE")) property.type = fDocument.TypeAttribute(child, "TYPE");
            property.value = ReadContainedValue(child);
            plan.properties.push_back(property);
        }
        return plan;
    }

    // --- values ---

    // The value `holder` contains: its first element child other than
    // QUALIFIER and SCOPE, or nothing.
    TRawValue ReadContainedValue(pugi::xml_node holder) const {
        for (pugi::xml_node child = holder.first_child(); child; child = child.next_sibling()) {
            if (!IsAnyElement(child) || IsElement(child, "QUALIFIER") || IsElement(child, "SCOPE")) continue;
            return ReadValue(child, 0);
        }
        TRawValue absent;
        absent.at = fDocument.LocationOf(holder);
        return absent;
    }

    TRawValue ReadValue(pugi::xml_node element, int depth) const {
        TRawValue value;
        value.at = fDocument.LocationOf(element);
        if (IsElement(element, "VALUE")) {
            value.kind = TRawValue::kText;
            value.text = element.text().get();
        } else if (IsElement(element, "VALUE.NULL")) {
            value.kind = TRawValue::kNull;
        } else if (IsElement(element, "VALUE.ARRAY") || IsElement(element, "VALUE.REFARRAY")) {
            value.kind = TRawValue::kArray;
            for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
                if (!IsAnyElement(child)) continue;
                if (IsElement(child, "VALUE.ARRAY") || IsElement(child, "VALUE.REFARRAY")) {
                    fDocument.Fail(child, "arrays do not nest");
                }
                value.elements.push_back(ReadValue(child, depth + 1));
            }
        } else if (IsElement(element, "VALUE.REFERENCE")) {
            ReadReference(element, value, depth);
        } else {
            fDocument.Fail(element, std::string("expected a value, found ") + element.name());
        }
        return value;
    }

    void RequireDepth(pugi::xml_node at, int depth) const {
        if (depth > fDocument.GetLimits().maxNesting) {
            fDocument.Fail(at, "values are nested more than " + std::to_string(fDocument.GetLimits().maxNesting) +
                                   " deep");
        }
    }

    void ReadReference(pugi::xml_node element, TRawValue& value, int depth) const {
        RequireDepth(element, depth);
        value.kind = TRawValue::kReference;
        pugi::xml_node form = FirstElement(element);
        pugi::xml_node instanceName;
        if (IsElement(form, "INSTANCENAME")) {
            instanceName = form;
        } else if (IsElement(form, "LOCALINSTANCEPATH") || IsElement(form, "INSTANCEPATH")) {
            instanceName = form.child("INSTANCENAME");
            value.referenceNamespace = NamespaceNameOf(form, depth);
        } else if (IsElement(form, "CLASSNAME")) {
            value.text = fDocument.RequireAttribute(form, "NAME");
            return;
        } else {
            fDocument.Fail(form ? form : element, "VALUE.REFERENCE holds no instance name");
        }
        if (!instanceName) fDocument.Fail(form, std::string(form.name()) + " holds no INSTANCENAME");
        ReadInstanceName(instanceName, value, depth);
    }

    void ReadInstanceName(pugi::xml_node name, TRawValue& value, int depth) const {
        value.text = fDocument.RequireAttribute(name, "CLASSNAME");
        for (pugi::xml_node binding = name.first_child(); binding; binding = binding.next_sibling()) {
            if (!IsAnyElement(binding)) continue;
            if (!IsElement(binding, "KEYBINDING")) {
                fDocument.Fail(binding, std::string("expected KEYBINDING, found ") + binding.name());
            }
            const std::string keyName = fDocument.RequireAttribute(binding, "NAME");
            pugi::xml_node inner = FirstElement(binding);
            TRawValue key;
            key.at = fDocument.LocationOf(inner ? inner : binding);
            if (IsElement(inner, "KEYVALUE")) {
                key.kind = TRawValue::kText;
                key.text = inner.text().get();
                if (inner.attribute("TYPE")) key.typeHint = fDocument.TypeAttribute(inner, "TYPE").GetName();
                key.valueType = inner.attribute("VALUETYPE").value();
            } else if (IsElement(inner, "VALUE.REFERENCE")) {
                ReadReference(inner, key, depth + 1);
            } else {
                fDocument.Fail(inner ? inner : binding, "KEYBINDING " + keyName + " holds no KEYVALUE");
            }
            value.keys.push_back(std::make_pair(keyName, key));
        }
    }

    // The NAMESPACE names of a (LOCAL)NAMESPACEPATH below `path`, joined by "/".
    std::string NamespaceNameOf(pugi::xml_node path, int depth) const {
        RequireDepth(path, depth);
        std::string name;
        for (pugi::xml_node child = path.first_child(); child; child = child.next_sibling()) {
            if (IsElement(child, "NAMESPACE")) {
                if (!name.empty()) name += "/";
                name += child.attribute("NAME").value();
            } else if (IsElement(child, "NAMESPACEPATH") || IsElement(child, "LOCALNAMESPACEPATH")) {
                name += NamespaceNameOf(child, depth + 1);
            }
        }
        return name;
    }

    const TCIMXMLDocument& fDocument;
};

}  // namespace

TDocumentPlan ReadCIMXMLPlan(const std::string& path, std::string text, const TDocumentLimits& limits) {
    TCIMXMLDocument document(path, limits);
    document.Parse(std::move(text));
    return TCIMXMLPlanReader(document).Read();
}

}  // namespace NVURZENTA20
