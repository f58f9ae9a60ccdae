#include "MofText.h"

#include <cstdio>

#include "ClassContent.h"
#include "ICIMClass.h"
#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMPropertyDecl.h"
#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"

using namespace NVURZENTA20;
typedef TCIMValue::TCIMType TType;

namespace {

const char kIndent[] = "    ";

bool IsQuoted(TType type) {
    return type == TType::kString || type == TType::kChar16 || type == TType::kDateTime ||
           type == TType::kReference;
}

void AppendMofScalar(std::string& out, const TCIMValue& value) {
    if (value.IsNull()) {
        out += "NULL";
    } else if (value.GetType() == TType::kString) {
        AppendMofString(out, value.GetStringView());
    } else if (IsQuoted(value.GetType())) {
        // Date-times, char16 and references are quoted from their text,
        // made in a buffer that the next value reuses.
        static thread_local std::string text;
        text.clear();
        value.AppendText(text);
        AppendMofString(out, text);
    } else {
        value.AppendText(out);
    }
}

std::string TypeName(TType type, const std::string& referenceClass) {
    if (type == TType::kReference) return (referenceClass.empty() ? std::string("Object") : referenceClass) + " REF";
    return type.GetName();
}

// [Key, Description("...")] before an element; nothing when it has none.
void AppendQualifierList(std::string& out, const ICIMNamedElement& element, bool include, const char* indent,
                         bool ownLine) {
    if (!include) return;
    const auto qualifiers = QualifiersOf(element);
    if (qualifiers.empty()) return;
    out += indent;
    out += '[';
    for (std::size_t i = 0; i < qualifiers.size(); ++i) {
        if (i > 0) out += ", ";
        out += qualifiers[i]->GetName();
        const TCIMValue value = qualifiers[i]->GetValue();
        // A true boolean qualifier is written by its name alone.
        if (value.GetType() == TType::kBoolean && !value.IsArray() && !value.IsNull() && static_cast<bool>(value)) {
            continue;
        }
        if (value.IsArray() && !value.IsNull()) {
            AppendMofValue(out, value);
        } else {
            out += '(';
            AppendMofValue(out, value);
            out += ')';
        }
    }
    out += ']';
    out += ownLine ? "\n" : " ";
}

void AppendOrigin(std::string& out, const std::string& origin, bool include) {
    if (include && !origin.empty()) out += std::string(kIndent) + "// from " + origin + "\n";
}

void AppendProperty(std::string& out, const ICIMPropertyDecl& property, const TClassView& view) {
    AppendOrigin(out, property.GetClassOrigin(), view.includeClassOrigin);
    AppendQualifierList(out, property, view.includeQualifiers, kIndent, true);
    out += kIndent;
    out += TypeName(property.GetType(), property.GetReferenceClassName()) + " " + property.GetName();
    if (property.IsArray()) out += "[]";
    const TCIMValue defaultValue = property.GetDefaultValue();
    if (!defaultValue.IsNull()) {
        out += " = ";
        AppendMofValue(out, defaultValue);
    }
    out += ";\n";
}

void AppendMethod(std::string& out, const ICIMMethodDecl& method, const TClassView& view) {
    AppendOrigin(out, method.GetClassOrigin(), view.includeClassOrigin);
    AppendQualifierList(out, method, view.includeQualifiers, kIndent, true);
    const TType returnType = method.GetReturnType();
    out += kIndent;
    out += (returnType == TType::kNone ? std::string("void") : returnType.GetName()) + " " + method.GetName() + "(";
    const auto parameters = ParametersOf(method);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const ICIMParameterDecl& parameter = *parameters[i];
        if (i > 0) out += ", ";
        AppendQualifierList(out, parameter, view.includeQualifiers, "", false);
        out += TypeName(parameter.GetType(), parameter.GetReferenceClassName()) + " " + parameter.GetName();
        if (parameter.IsArray()) out += "[]";
    }
    out += ");\n";
}

std::string ScopeText(int scope) {
    static const struct {
        int bit;
        const char* name;
    } kScopes[] = {{ICIMQualifierDecl::kScopeClass, "class"},         {ICIMQualifierDecl::kScopeAssociation, "association"},
                   {ICIMQualifierDecl::kScopeIndication, "indication"}, {ICIMQualifierDecl::kScopeProperty, "property"},
                   {ICIMQualifierDecl::kScopeReference, "reference"},   {ICIMQualifierDecl::kScopeMethod, "method"},
                   {ICIMQualifierDecl::kScopeParameter, "parameter"}};
    if ((scope & ICIMQualifierDecl::kScopeAny) == ICIMQualifierDecl::kScopeAny) return "any";
    std::string text;
    for (const auto& entry : kScopes) {
        if (scope & entry.bit) text += (text.empty() ? "" : ", ") + std::string(entry.name);
    }
    return text;
}

std::string FlavorText(int flavor) {
    std::string text;
    const auto add = [&text](const char* word) { text += (text.empty() ? "" : ", ") + std::string(word); };
    if (flavor & ICIMQualifierDecl::kDisableOverride) add("DisableOverride");
    if (flavor & ICIMQualifierDecl::kRestricted) add("Restricted");
    if (flavor & ICIMQualifierDecl::kTranslatable) add("Translatable");
    return text;
}

}  // namespace

void AppendMofString(std::string& out, std::string_view text) {
    out += '"';
    // Runs of characters that need no escape are copied whole.
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c != '"' && c != '\\' && c != 0x7F) continue;
        out.append(text.data() + start, i - start);
        start = i + 1;
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default: {
                char escaped[8];
                std::snprintf(escaped, sizeof(escaped), "\\x%02X", c);
                out += escaped;
            }
        }
    }
    out.append(text.data() + start, text.size() - start);
    out += '"';
}

void AppendMofValue(std::string& out, const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) {
        AppendMofScalar(out, value);
        return;
    }
    const std::vector<TCIMValue>& elements = value;
    out += '{';
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0) out += ", ";
        AppendMofScalar(out, elements[i]);
    }
    out += '}';
}

std::string MofValue(const TCIMValue& value) {
    std::string text;
    AppendMofValue(text, value);
    return text;
}

void AppendMofClass(std::string& out, const TClassView& view) {
    const TClassContent content = SelectClassContent(view);
    AppendQualifierList(out, *view.cls, view.includeQualifiers, "", true);
    out += "class " + content.name;
    if (!content.superClass.empty()) out += " : " + content.superClass;
    out += " {\n";
    for (const auto& property : content.properties) AppendProperty(out, *property, view);
    for (const auto& method : content.methods) AppendMethod(out, *method, view);
    out += "};\n";
}

void AppendMofQualifierDecl(std::string& out, const ICIMQualifierDecl& decl) {
    out += "Qualifier " + decl.GetName() + " : " + decl.GetType().GetName();
    if (decl.IsArray()) out += "[]";
    const TCIMValue defaultValue = decl.GetDefaultValue();
    if (!defaultValue.IsNull()) {
        out += " = ";
        AppendMofValue(out, defaultValue);
    }
    out += ", Scope(" + ScopeText(decl.GetScope()) + ")";
    const std::string flavor = FlavorText(decl.GetFlavor());
    if (!flavor.empty()) out += ", Flavor(" + flavor + ")";
    out += ";\n";
}
