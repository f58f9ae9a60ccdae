#include "CimXml.h"

#include <charconv>

#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"
#include "Utf8Text.h"

using namespace NVURZENTA20;
typedef TCIMValue::TCIMType TType;

namespace {

const char kReplacement[] = "\xEF\xBF\xBD";

void AppendReferenceContent(std::string& out, const TCIMReference& path);

TNamedValues KeysOf(const TCIMReference& path) {
    TNamedValues keys;
    keys.reserve(path.GetKeyCount());
    path.EnumerateKeyBindings([&keys](std::pair<std::string, TCIMValue> binding) {
        keys.push_back(std::move(binding));
        return true;
    });
    return keys;
}

// A reference value: the path with its namespace when it names one.
void AppendValueReference(std::string& out, const TCIMReference& path) {
    out += "<VALUE.REFERENCE>";
    AppendReferenceContent(out, path);
    out += "</VALUE.REFERENCE>";
}

void AppendReferenceContent(std::string& out, const TCIMReference& path) {
    const std::string nameSpace = path.GetNameSpaceName();
    if (nameSpace.empty()) {
        AppendInstanceName(out, path.GetClassName(), KeysOf(path));
        return;
    }
    out += "<LOCALINSTANCEPATH>";
    AppendLocalNamespacePath(out, nameSpace);
    AppendInstanceName(out, path.GetClassName(), KeysOf(path));
    out += "</LOCALINSTANCEPATH>";
}

template <class TNumber>
void AppendNumber(std::string& out, TNumber number) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof(text), number).ptr;
    out.append(text, end);
}

// The text of a non-null scalar that is not a reference.
void AppendScalarText(std::string& out, const TCIMValue& value) {
    const TType type = value.GetType();
    if (type.IsInteger()) {
        // Integers are by far the most common values: no string on the way.
        if (type.IsSigned()) return AppendNumber(out, static_cast<long long>(value));
        return AppendNumber(out, static_cast<unsigned long long>(value));
    }
    if (type == TType::kBoolean) {
        out += static_cast<bool>(value) ? "TRUE" : "FALSE";
        return;
    }
    if (type == TType::kString) return AppendXmlEscaped(out, value.GetStringView());
    // Other text (date-times, reals, char16) is made in a buffer the next
    // value reuses.
    static thread_local std::string text;
    text.clear();
    value.AppendText(text);
    AppendXmlEscaped(out, text);
}

const char* KeyValueType(TType type) {
    if (type == TType::kBoolean) return "boolean";
    if (type.IsInteger() || type.IsReal()) return "numeric";
    return "string";
}

// True when every byte of `text` goes into XML as it is: printable ASCII
// other than the markup characters. Most names and values are.
struct TPlainXmlTable {
    bool plain[256];
    TPlainXmlTable() {
        for (int c = 0; c < 256; ++c) {
            plain[c] = c >= 0x20 && c < 0x7F && c != '&' && c != '<' && c != '>' && c != '"' && c != '\'';
        }
    }
};
const TPlainXmlTable kPlainXml;

bool IsPlainXml(std::string_view text) {
    for (const char ch : text) {
        if (!kPlainXml.plain[static_cast<unsigned char>(ch)]) return false;
    }
    return true;
}

}  // namespace

void AppendXmlEscaped(std::string& out, std::string_view text) {
    if (IsPlainXml(text)) {
        out.append(text.data(), text.size());
        return;
    }
    AppendValidUtf8(out, text, [](std::string& escaped, unsigned char c) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            case '\'': escaped += "&apos;"; break;
            case '\t': escaped += "&#9;"; break;
            case '\n': escaped += "&#10;"; break;
            case '\r': escaped += "&#13;"; break;
            default:
                // XML 1.0 cannot carry other control characters, not even as references.
                if (c < 0x20 || c == 0x7F) {
                    escaped += kReplacement;
                } else {
                    escaped += static_cast<char>(c);
                }
        }
    });
}

void AppendXmlAttribute(std::string& out, const char* name, const std::string& value) {
    out += ' ';
    out += name;
    out += "=\"";
    AppendXmlEscaped(out, value);
    out += '"';
}

const char* CimXmlTypeName(TType type) {
    static const char* const kNames[] = {"",       "boolean", "uint8",  "sint8",  "uint16",   "sint16",
                                         "uint32", "sint32",  "uint64", "sint64", "real32",   "real64",
                                         "char16", "string",  "datetime", "reference"};
    const unsigned code = static_cast<unsigned>(type) & ~static_cast<unsigned>(TType::kArrayFlag);
    return code < sizeof(kNames) / sizeof(kNames[0]) ? kNames[code] : "";
}

bool IsPlainCimXmlScalar(const TCIMValue& value) {
    return !value.IsNull() && !value.IsArray() && value.GetType() != TType::kReference;
}

void AppendCimXmlScalarText(std::string& out, const TCIMValue& value) { AppendScalarText(out, value); }

void AppendCimXmlValue(std::string& out, const TCIMValue& value) {
    if (value.IsNull()) return;
    const bool isReference = value.GetType() == TType::kReference;
    if (!value.IsArray()) {
        if (isReference) return AppendValueReference(out, static_cast<TCIMReference>(value));
        out += "<VALUE>";
        AppendScalarText(out, value);
        out += "</VALUE>";
        return;
    }
    const std::vector<TCIMValue>& elements = value;
    out += isReference ? "<VALUE.REFARRAY>" : "<VALUE.ARRAY>";
    for (const TCIMValue& element : elements) {
        if (element.IsNull()) {
            out += "<VALUE.NULL/>";
        } else if (isReference) {
            AppendValueReference(out, static_cast<TCIMReference>(element));
        } else {
            out += "<VALUE>";
            AppendScalarText(out, element);
            out += "</VALUE>";
        }
    }
    out += isReference ? "</VALUE.REFARRAY>" : "</VALUE.ARRAY>";
}

void AppendLocalNamespacePath(std::string& out, const std::string& nameSpace) {
    out += "<LOCALNAMESPACEPATH>";
    std::size_t start = 0;
    while (start <= nameSpace.size()) {
        std::size_t end = nameSpace.find('/', start);
        if (end == std::string::npos) end = nameSpace.size();
        if (end > start) {
            out += "<NAMESPACE";
            AppendXmlAttribute(out, "NAME", nameSpace.substr(start, end - start));
            out += "/>";
        }
        start = end + 1;
    }
    out += "</LOCALNAMESPACEPATH>";
}

void AppendNamespacePath(std::string& out, const std::string& host, const std::string& nameSpace) {
    out += "<NAMESPACEPATH><HOST>";
    AppendXmlEscaped(out, host);
    out += "</HOST>";
    AppendLocalNamespacePath(out, nameSpace);
    out += "</NAMESPACEPATH>";
}

void AppendInstanceName(std::string& out, const std::string& className, const TNamedValues& keys) {
    AppendInstanceNameOpening(out, className);
    AppendKeyBindings(out, keys);
    out += "</INSTANCENAME>";
}

void AppendInstanceNameOpening(std::string& out, const std::string& className) {
    out += "<INSTANCENAME";
    AppendXmlAttribute(out, "CLASSNAME", className);
    out += '>';
}

void AppendKeyBindings(std::string& out, const TNamedValues& keys) {
    for (const auto& key : keys) {
        out += "<KEYBINDING";
        AppendXmlAttribute(out, "NAME", key.first);
        out += '>';
        const TCIMValue& value = key.second;
        if (value.GetType() == TType::kReference && !value.IsNull() && !value.IsArray()) {
            AppendValueReference(out, static_cast<TCIMReference>(value));
        } else {
            out += "<KEYVALUE VALUETYPE=\"";
            out += KeyValueType(value.GetType());
            out += "\">";
            // A key is never an array; one that is anyway keeps its text.
            if (value.IsArray()) {
                AppendXmlEscaped(out, value.ToString());
            } else if (!value.IsNull()) {
                AppendScalarText(out, value);
            }
            out += "</KEYVALUE>";
        }
        out += "</KEYBINDING>";
    }
}

void AppendInstancePath(std::string& out, const std::string& namespacePath, const std::string& className,
                        const TNamedValues& keys) {
    out += "<INSTANCEPATH>";
    out += namespacePath;
    AppendInstanceName(out, className, keys);
    out += "</INSTANCEPATH>";
}

void AppendQualifiers(std::string& out, const ICIMNamedElement& element) {
    element.EnumerateQualifiers(
        [&out](boost::shared_ptr<ICIMQualifier> qualifier) {
            const TCIMValue value = qualifier->GetValue();
            const ICIMQualifierDecl::EFlavor flavor = qualifier->GetFlavor();
            out += "<QUALIFIER";
            AppendXmlAttribute(out, "NAME", qualifier->GetName());
            const boost::shared_ptr<const ICIMQualifierDecl> decl = qualifier->GetDecl();
            AppendXmlAttribute(out, "TYPE", CimXmlTypeName(decl ? decl->GetType() : value.GetType()));
            if (flavor & ICIMQualifierDecl::kDisableOverride) out += " OVERRIDABLE=\"false\"";
            if (flavor & ICIMQualifierDecl::kRestricted) out += " TOSUBCLASS=\"false\"";
            if (flavor & ICIMQualifierDecl::kTranslatable) out += " TRANSLATABLE=\"true\"";
            out += '>';
            AppendCimXmlValue(out, value);
            out += "</QUALIFIER>";
            return true;
        },
        TCIMContext());
}

void AppendErrorElement(std::string& out, int code, const std::string& description) {
    out += "<ERROR CODE=\"";
    AppendNumber(out, code);
    out += '"';
    AppendXmlAttribute(out, "DESCRIPTION", description);
    out += "/>";
}
