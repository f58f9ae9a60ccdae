#include "CimXmlAnswer.h"

#include <strings.h>
#include <unistd.h>

#include "CimXml.h"
#include "ClassContent.h"
#include "ICIMClass.h"
#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMPropertyDecl.h"
#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"
#include "ToolError.h"

using namespace NVURZENTA20;
typedef TCIMValue::TCIMType TType;

namespace {

const char kEmbeddedObject[] = " EmbeddedObject=\"object\"";
const char kEmbeddedInstance[] = " EmbeddedObject=\"instance\"";

// ` NAME="value"` for values that are plain words (types, booleans).
void AppendWordAttribute(std::string& out, const char* name, const char* value) {
    out += ' ';
    out += name;
    out += "=\"";
    out += value;
    out += '"';
}

// The element of a property (or parameter, with `parameter`) by its type.
const char* PropertyElement(TType type, bool isArray, bool parameter) {
    const bool isReference = type == TType::kReference;
    if (parameter) {
        if (isReference) return isArray ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE";
        return isArray ? "PARAMETER.ARRAY" : "PARAMETER";
    }
    if (isReference && !isArray) return "PROPERTY.REFERENCE";
    return isArray ? "PROPERTY.ARRAY" : "PROPERTY";
}

// TYPE or, for references, REFERENCECLASS (when the class names one).
void AppendTypeAttributes(std::string& out, TType type, const std::string& referenceClass, bool isArray) {
    if (type != TType::kReference) {
        AppendWordAttribute(out, "TYPE", CimXmlTypeName(type));
        return;
    }
    if (!referenceClass.empty()) AppendXmlAttribute(out, "REFERENCECLASS", referenceClass);
    // An array of references has no element of its own among properties.
    if (isArray) AppendWordAttribute(out, "TYPE", "reference");
}

// CLASSORIGIN (and PROPAGATED when the element comes from a superclass).
template <class TElement>
void AppendOrigin(std::string& out, const TElement& element, const std::string& className, bool include) {
    if (!include) return;
    const std::string origin = element.GetClassOrigin();
    if (origin.empty()) return;
    AppendXmlAttribute(out, "CLASSORIGIN", origin);
    if (strcasecmp(origin.c_str(), className.c_str()) != 0) out += " PROPAGATED=\"true\"";
}

void AppendPropertyDecl(std::string& out, const ICIMPropertyDecl& property, const TClassView& view,
                        const std::string& className) {
    const TType type = property.GetType();
    const char* element = PropertyElement(type, property.IsArray(), false);
    out += '<';
    out += element;
    AppendXmlAttribute(out, "NAME", property.GetName());
    AppendTypeAttributes(out, type, property.GetReferenceClassName(), property.IsArray());
    AppendOrigin(out, property, className, view.includeClassOrigin);
    out += '>';
    if (view.includeQualifiers) AppendQualifiers(out, property);
    AppendCimXmlValue(out, property.GetDefaultValue());
    out += "</";
    out += element;
    out += '>';
}

void AppendParameter(std::string& out, const ICIMParameterDecl& parameter, bool includeQualifiers) {
    const TType type = parameter.GetType();
    const char* element = PropertyElement(type, parameter.IsArray(), true);
    out += '<';
    out += element;
    AppendXmlAttribute(out, "NAME", parameter.GetName());
    // A reference parameter array has an element of its own: no TYPE then.
    AppendTypeAttributes(out, type, type == TType::kReference ? parameter.GetReferenceClassName() : std::string(),
                         false);
    out += '>';
    if (includeQualifiers) AppendQualifiers(out, parameter);
    out += "</";
    out += element;
    out += '>';
}

void AppendMethodDecl(std::string& out, const ICIMMethodDecl& method, const TClassView& view,
                      const std::string& className) {
    out += "<METHOD";
    AppendXmlAttribute(out, "NAME", method.GetName());
    const char* returnType = CimXmlTypeName(method.GetReturnType());
    if (*returnType != '\0') AppendWordAttribute(out, "TYPE", returnType);
    AppendOrigin(out, method, className, view.includeClassOrigin);
    out += '>';
    if (view.includeQualifiers) AppendQualifiers(out, method);
    for (const auto& parameter : ParametersOf(method)) AppendParameter(out, *parameter, view.includeQualifiers);
    out += "</METHOD>";
}

// PARAMTYPE of a method's value: the declared type, else the value's own.
const char* ParamType(const TCIMValue& value, const ICIMParameterDecl* decl) {
    return CimXmlTypeName(decl != nullptr ? decl->GetType() : value.GetType());
}

}  // namespace

std::string LocalHostName() {
    char name[256] = {0};
    if (gethostname(name, sizeof(name) - 1) != 0 || name[0] == '\0') return "localhost";
    return name;
}

TCimXmlAnswer::TCimXmlAnswer(TOutputBuffer& out, EVerb verb, const std::string& host, const std::string& nameSpace)
    : fOut(out), fVerb(verb) {
    AppendNamespacePath(fNamespacePath, host, nameSpace);
}

void TCimXmlAnswer::Provider(const TProviderView&) {
    throw TToolError("the provider list has no CIM-XML form", ECimStatus::kNotSupported);
}

void TCimXmlAnswer::ClassSummary(const TClassSummary& summary) { ClassName(summary.name); }

void TCimXmlAnswer::ClassName(const std::string& name) {
    std::string& out = fOut.Text();
    out += "<CLASSNAME";
    AppendXmlAttribute(out, "NAME", name);
    out += "/>";
    fOut.Pass();
}

void TCimXmlAnswer::Class(const TClassView& view) {
    const TClassContent content = SelectClassContent(view);
    std::string& out = fOut.Text();
    out += "<CLASS";
    AppendXmlAttribute(out, "NAME", content.name);
    if (!content.superClass.empty()) AppendXmlAttribute(out, "SUPERCLASS", content.superClass);
    out += '>';
    if (view.includeQualifiers) AppendQualifiers(out, *view.cls);
    for (const auto& property : content.properties) AppendPropertyDecl(out, *property, view, content.name);
    for (const auto& method : content.methods) AppendMethodDecl(out, *method, view, content.name);
    out += "</CLASS>";
    fOut.Pass();
}

const char* TCimXmlAnswer::EmbeddedObjectAttribute(const ICIMPropertyDecl* decl) {
    if (decl == nullptr) return "";
    const char* attribute = "";
    for (const auto& qualifier : QualifiersOf(*decl)) {
        const TCIMValue value = qualifier->GetValue();
        if (strcasecmp(qualifier->GetName().c_str(), "EmbeddedObject") == 0 && !value.IsNull() &&
            value.GetType() == TType::kBoolean && static_cast<bool>(value)) {
            attribute = kEmbeddedObject;
        } else if (strcasecmp(qualifier->GetName().c_str(), "EmbeddedInstance") == 0 && !value.IsNull()) {
            attribute = kEmbeddedInstance;
        }
    }
    return attribute;
}

void TCimXmlAnswer::AppendPropertyOpening(std::string& out, const TPropertyView& property,
                                          const TInstanceView& instance) {
    const TCIMValue& value = *property.value;
    const ICIMPropertyDecl* decl = property.decl;
    const TType type = decl != nullptr ? decl->GetType() : value.GetType();
    const bool isArray = decl != nullptr ? decl->IsArray() : value.IsArray();
    out += '<';
    out += PropertyElement(type, isArray, false);
    AppendXmlAttribute(out, "NAME", *property.name);
    // The reference class is asked only of references: it is a string made per call.
    AppendTypeAttributes(out, type,
                         decl != nullptr && type == TType::kReference ? decl->GetReferenceClassName() : std::string(),
                         isArray);
    if (decl != nullptr) AppendOrigin(out, *decl, *instance.className, instance.includeClassOrigin);
    if (type == TType::kString) out += EmbeddedObjectAttribute(decl);
    out += '>';
    if (instance.includeQualifiers && decl != nullptr) AppendQualifiers(out, *decl);
}

const TCimXmlAnswer::TPropertyTags& TCimXmlAnswer::TagsOf(const TPropertyView& property,
                                                          const TInstanceView& instance) {
    std::vector<TPropertyTags>& known = fClass->properties;
    std::size_t& next = fClass->next;
    if (next < known.size() && known[next].decl == property.decl) return known[next++];
    for (std::size_t i = 0; i < known.size(); ++i) {
        if (known[i].decl != property.decl) continue;
        next = i + 1;
        return known[i];
    }
    TPropertyTags tags;
    tags.decl = property.decl;
    AppendPropertyOpening(tags.opening, property, instance);
    tags.closing = std::string("</") + PropertyElement(property.decl->GetType(), property.decl->IsArray(), false) + ">";
    tags.openingWithValue = tags.opening + "<VALUE>";
    tags.closingWithValue = "</VALUE>" + tags.closing;
    known.push_back(std::move(tags));
    next = known.size();
    return known.back();
}

void TCimXmlAnswer::AppendProperty(std::string& out, const TPropertyView& property, const TInstanceView& instance) {
    const TCIMValue& value = *property.value;
    if (property.decl == nullptr) {
        AppendPropertyOpening(out, property, instance);
        AppendCimXmlValue(out, value);
        out += "</";
        out += PropertyElement(value.GetType(), value.IsArray(), false);
        out += '>';
        return;
    }
    const TPropertyTags& tags = TagsOf(property, instance);
    // Most values are one <VALUE>: its tags come with the property's.
    if (IsPlainCimXmlScalar(value)) {
        out += tags.openingWithValue;
        AppendCimXmlScalarText(out, value);
        out += tags.closingWithValue;
        return;
    }
    out += tags.opening;
    AppendCimXmlValue(out, value);
    out += tags.closing;
}

void TCimXmlAnswer::UpdateClassTags(const std::string& className) {
    if (fClass != nullptr && className == *fClassName) return;
    const auto found = fClasses.emplace(className, TClassTags());
    fClass = &found.first->second;
    fClassName = &found.first->first;
    if (!found.second) return;
    fClass->instanceOpening = "<INSTANCE";
    AppendXmlAttribute(fClass->instanceOpening, "CLASSNAME", className);
    fClass->instanceOpening += '>';
    AppendInstanceNameOpening(fClass->nameOpening, className);
}

void TCimXmlAnswer::AppendInstance(std::string& out, const TInstanceView& instance) {
    UpdateClassTags(*instance.className);
    out += fClass->instanceOpening;
    for (const TPropertyView& property : *instance.properties) AppendProperty(out, property, instance);
    out += "</INSTANCE>";
}

void TCimXmlAnswer::Instance(const TInstanceView& instance) {
    std::string& out = fOut.Text();
    if (fKind == EAnswerKind::kInstance) {
        AppendInstance(out, instance);
    } else if (fVerb == EVerb::kAssociators || fVerb == EVerb::kReferences) {
        out += "<VALUE.OBJECTWITHPATH>";
        AppendInstancePath(out, fNamespacePath, *instance.path.className, *instance.path.keys);
        AppendInstance(out, instance);
        out += "</VALUE.OBJECTWITHPATH>";
    } else {
        out += "<VALUE.NAMEDINSTANCE>";
        // The instance's path and the instance name one class.
        UpdateClassTags(*instance.className);
        out += fClass->nameOpening;
        AppendKeyBindings(out, *instance.path.keys);
        out += "</INSTANCENAME>";
        AppendInstance(out, instance);
        out += "</VALUE.NAMEDINSTANCE>";
    }
    fOut.Pass();
}

void TCimXmlAnswer::Path(const TPathView& path) {
    std::string& out = fOut.Text();
    if (fKind == EAnswerKind::kObjectPaths) {
        out += "<OBJECTPATH>";
        AppendInstancePath(out, fNamespacePath, *path.className, *path.keys);
        out += "</OBJECTPATH>";
    } else {
        AppendInstanceName(out, *path.className, *path.keys);
    }
    fOut.Pass();
}

void TCimXmlAnswer::Method(const TMethodView& method) {
    std::string& out = fOut.Text();
    // The library does not carry a method's return value to the host. The
    // answer still starts with a RETURNVALUE, as wbemcli requires one before
    // the output parameters; without a value to give it holds an empty,
    // untyped VALUE (wbemcli crashes on a RETURNVALUE without any VALUE).
    if (method.returnValue.IsNull()) {
        out += "<RETURNVALUE><VALUE></VALUE></RETURNVALUE>";
    } else {
        out += "<RETURNVALUE";
        AppendWordAttribute(out, "PARAMTYPE", ParamType(method.returnValue, nullptr));
        out += '>';
        AppendCimXmlValue(out, method.returnValue);
        out += "</RETURNVALUE>";
    }
    for (std::size_t i = 0; i < method.outParameters.size(); ++i) {
        const auto& parameter = method.outParameters[i];
        const ICIMParameterDecl* decl = i < method.outDecls.size() ? method.outDecls[i] : nullptr;
        out += "<PARAMVALUE";
        AppendXmlAttribute(out, "NAME", decl != nullptr ? decl->GetName() : parameter.first);
        const char* type = ParamType(parameter.second, decl);
        if (*type != '\0') AppendWordAttribute(out, "PARAMTYPE", type);
        out += '>';
        AppendCimXmlValue(out, parameter.second);
        out += "</PARAMVALUE>";
    }
    fOut.Pass();
}

void TCimXmlAnswer::QualifierDecl(const ICIMQualifierDecl& decl) {
    static const struct {
        ICIMQualifierDecl::EScope scope;
        const char* attribute;
    } kScopes[] = {{ICIMQualifierDecl::kScopeClass, "CLASS"},
                   {ICIMQualifierDecl::kScopeAssociation, "ASSOCIATION"},
                   {ICIMQualifierDecl::kScopeReference, "REFERENCE"},
                   {ICIMQualifierDecl::kScopeProperty, "PROPERTY"},
                   {ICIMQualifierDecl::kScopeMethod, "METHOD"},
                   {ICIMQualifierDecl::kScopeParameter, "PARAMETER"},
                   {ICIMQualifierDecl::kScopeIndication, "INDICATION"}};
    std::string& out = fOut.Text();
    const int flavor = decl.GetFlavor();
    out += "<QUALIFIER.DECLARATION";
    AppendXmlAttribute(out, "NAME", decl.GetName());
    AppendWordAttribute(out, "TYPE", CimXmlTypeName(decl.GetType()));
    if (decl.IsArray()) out += " ISARRAY=\"true\"";
    AppendWordAttribute(out, "OVERRIDABLE", flavor & ICIMQualifierDecl::kDisableOverride ? "false" : "true");
    AppendWordAttribute(out, "TOSUBCLASS", flavor & ICIMQualifierDecl::kRestricted ? "false" : "true");
    AppendWordAttribute(out, "TRANSLATABLE", flavor & ICIMQualifierDecl::kTranslatable ? "true" : "false");
    out += "><SCOPE";
    for (const auto& entry : kScopes) {
        AppendWordAttribute(out, entry.attribute, decl.GetScope() & entry.scope ? "true" : "false");
    }
    out += "/>";
    AppendCimXmlValue(out, decl.GetDefaultValue());
    out += "</QUALIFIER.DECLARATION>";
    fOut.Pass();
}
