#include "CimXmlRequest.h"

#include <strings.h>

#include <cstring>
#include <stdexcept>
#include <vector>

#include <pugixml.hpp>

namespace {

// A request the server understands but cannot answer: a CIM error.
struct TCimFailure {
    ECimStatus status;
    std::string description;
};

// A document the server cannot use: an HTTP error.
struct THttpFailure {
    int httpStatus;
    std::string cimError;
    std::string description;
};

[[noreturn]] void Invalid(const std::string& description) {
    throw THttpFailure{400, "request-not-valid", description};
}

[[noreturn]] void BadParameter(const std::string& description) {
    throw TCimFailure{ECimStatus::kInvalidParameter, description};
}

bool Is(const pugi::xml_node& node, const char* name) { return std::strcmp(node.name(), name) == 0; }

bool SameName(const std::string& a, const char* b) { return strcasecmp(a.c_str(), b) == 0; }

// CIM names (classes, properties, methods, qualifiers): letters, digits
// and underscores, not starting with a digit. Names reach object path text,
// where anything else would change what the text means.
bool IsCimName(const std::string& name) {
    if (name.empty() || (name[0] >= '0' && name[0] <= '9')) return false;
    for (const char c : name) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (!(u >= 0x80 || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_')) {
            return false;
        }
    }
    return true;
}

std::string RequireName(const pugi::xml_node& node, const char* attribute) {
    const pugi::xml_attribute found = node.attribute(attribute);
    if (!found) Invalid(std::string(node.name()) + " lacks its " + attribute + " attribute");
    const std::string name = found.value();
    if (!IsCimName(name)) BadParameter(std::string(node.name()) + " " + attribute + " \"" + name + "\" is not a CIM name");
    return name;
}

// The element children of `node` (comments and text between are skipped).
std::vector<pugi::xml_node> Elements(const pugi::xml_node& node) {
    std::vector<pugi::xml_node> children;
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
        if (child.type() == pugi::node_element) children.push_back(child);
    }
    return children;
}

pugi::xml_node OnlyChild(const pugi::xml_node& node, const char* name) {
    const std::vector<pugi::xml_node> children = Elements(node);
    if (children.size() != 1 || !Is(children[0], name)) {
        Invalid(std::string(node.name()) + " must hold exactly one " + name);
    }
    return children[0];
}

void CheckShape(const pugi::xml_document& document, const TCallLimits& limits) {
    std::size_t elements = 0;
    std::size_t depth = 0;
    // Iterative: the depth of a hostile document must not become ours.
    pugi::xml_node node = document.first_child();
    while (node) {
        if (node.type() == pugi::node_element && ++elements > limits.maxElements) {
            throw THttpFailure{413, "request-not-valid",
                               "the request holds more than " + std::to_string(limits.maxElements) + " elements"};
        }
        if (node.first_child()) {
            if (++depth > limits.maxDepth) {
                throw THttpFailure{400, "request-not-valid",
                                   "the request nests elements deeper than " + std::to_string(limits.maxDepth)};
            }
            node = node.first_child();
            continue;
        }
        while (node && !node.next_sibling()) {
            node = node.parent();
            if (depth == 0) return;
            --depth;
        }
        if (node) node = node.next_sibling();
    }
}

std::string Namespace(const pugi::xml_node& localNamespacePath) {
    std::string name;
    for (const pugi::xml_node& segment : Elements(localNamespacePath)) {
        if (!Is(segment, "NAMESPACE") || !segment.attribute("NAME")) Invalid("LOCALNAMESPACEPATH holds NAMESPACE elements only");
        if (!name.empty()) name += '/';
        name += segment.attribute("NAME").value();
    }
    if (name.empty()) Invalid("LOCALNAMESPACEPATH names no namespace");
    return name;
}

// Text of a quoted key value in object path text.
void AppendQuoted(std::string& out, const std::string& text) {
    out += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    out += '"';
}

std::string ReferenceText(const pugi::xml_node& valueReference);

// Class.Key="value",... from an INSTANCENAME.
std::string InstanceNameText(const pugi::xml_node& instanceName) {
    std::string text = RequireName(instanceName, "CLASSNAME");
    bool first = true;
    for (const pugi::xml_node& binding : Elements(instanceName)) {
        if (!Is(binding, "KEYBINDING")) BadParameter("INSTANCENAME: only KEYBINDING elements name keys");
        const std::string key = RequireName(binding, "NAME");
        text += first ? '.' : ',';
        first = false;
        text += key;
        text += '=';
        const std::vector<pugi::xml_node> content = Elements(binding);
        if (content.size() != 1) Invalid("KEYBINDING " + key + " must hold one KEYVALUE or VALUE.REFERENCE");
        const pugi::xml_node value = content[0];
        if (Is(value, "KEYVALUE")) {
            AppendQuoted(text, value.text().get());
        } else if (Is(value, "VALUE.REFERENCE")) {
            AppendQuoted(text, ReferenceText(value));
        } else {
            Invalid("KEYBINDING " + key + " must hold one KEYVALUE or VALUE.REFERENCE");
        }
    }
    return text;
}

// "namespace:Class.Key=..." of a path that names its namespace.
std::string WithNamespace(const pugi::xml_node& localNamespacePath, const std::string& path) {
    return Namespace(localNamespacePath) + ":" + path;
}

std::string ClassPathOrInstanceText(const pugi::xml_node& node) {
    if (Is(node, "INSTANCENAME")) return InstanceNameText(node);
    if (Is(node, "CLASSNAME")) return RequireName(node, "NAME");
    const std::vector<pugi::xml_node> parts = Elements(node);
    if ((Is(node, "LOCALINSTANCEPATH") || Is(node, "LOCALCLASSPATH")) && parts.size() == 2 &&
        Is(parts[0], "LOCALNAMESPACEPATH")) {
        return WithNamespace(parts[0], ClassPathOrInstanceText(parts[1]));
    }
    if ((Is(node, "INSTANCEPATH") || Is(node, "CLASSPATH")) && parts.size() == 2 && Is(parts[0], "NAMESPACEPATH")) {
        // The host part names this server (or another, which it cannot reach
        // anyway); the namespace decides.
        const std::vector<pugi::xml_node> location = Elements(parts[0]);
        if (location.size() != 2 || !Is(location[1], "LOCALNAMESPACEPATH")) Invalid("NAMESPACEPATH: HOST, LOCALNAMESPACEPATH");
        return WithNamespace(location[1], ClassPathOrInstanceText(parts[1]));
    }
    Invalid(std::string("unexpected ") + node.name() + " in an object path");
}

std::string ReferenceText(const pugi::xml_node& valueReference) {
    const std::vector<pugi::xml_node> content = Elements(valueReference);
    if (content.size() != 1) Invalid("VALUE.REFERENCE must hold one path");
    return ClassPathOrInstanceText(content[0]);
}

bool BooleanOf(const pugi::xml_node& value, const std::string& parameter) {
    const std::string text = value.text().get();
    if (SameName(text, "TRUE")) return true;
    if (SameName(text, "FALSE")) return false;
    BadParameter(parameter + ": \"" + text + "\" is no boolean");
}

// The content of a parameter: at most one element.
pugi::xml_node ContentOf(const pugi::xml_node& parameter, const std::string& name) {
    const std::vector<pugi::xml_node> content = Elements(parameter);
    if (content.size() > 1) Invalid(name + " holds more than one value");
    return content.empty() ? pugi::xml_node() : content[0];
}

struct TIntrinsicParameters {
    TRequest& request;
    const std::string& method;

    void Read(const pugi::xml_node& parameter);

private:
    bool Boolean(const pugi::xml_node& value, const std::string& name) {
        if (!value || !Is(value, "VALUE")) BadParameter(method + ": " + name + " takes a boolean VALUE");
        return BooleanOf(value, name);
    }
    std::string ClassName(const pugi::xml_node& value, const std::string& name) {
        if (!value) return std::string();
        if (!Is(value, "CLASSNAME")) BadParameter(method + ": " + name + " takes a CLASSNAME");
        return RequireName(value, "NAME");
    }
    std::string Text(const pugi::xml_node& value, const std::string& name) {
        if (!value) return std::string();
        if (!Is(value, "VALUE")) BadParameter(method + ": " + name + " takes a string VALUE");
        return value.text().get();
    }
    void ObjectName(const pugi::xml_node& value);
    void PropertyList(const pugi::xml_node& value);
};

void TIntrinsicParameters::ObjectName(const pugi::xml_node& value) {
    if (value && Is(value, "INSTANCENAME")) {
        request.path = InstanceNameText(value);
        return;
    }
    if (value && Is(value, "CLASSNAME")) {
        throw TCimFailure{ECimStatus::kNotSupported,
                          method + " of a class is not supported: this server walks the associations of instances"};
    }
    BadParameter(method + ": ObjectName takes an INSTANCENAME");
}

void TIntrinsicParameters::PropertyList(const pugi::xml_node& value) {
    if (!value) return;  // a null list: every property
    if (!Is(value, "VALUE.ARRAY")) BadParameter(method + ": PropertyList takes a VALUE.ARRAY");
    request.hasPropertyList = true;
    for (const pugi::xml_node& item : Elements(value)) {
        if (!Is(item, "VALUE")) BadParameter(method + ": PropertyList holds VALUE elements only");
        request.propertyList.push_back(item.text().get());
    }
}

bool IsAssociators(EVerb verb) { return verb == EVerb::kAssociators || verb == EVerb::kAssociatorNames; }
bool IsWalk(EVerb verb) {
    return IsAssociators(verb) || verb == EVerb::kReferences || verb == EVerb::kReferenceNames;
}

void TIntrinsicParameters::Read(const pugi::xml_node& parameter) {
    const std::string name = parameter.attribute("NAME").value();
    const pugi::xml_node value = ContentOf(parameter, name);
    const EVerb verb = request.verb;
    const bool walk = IsWalk(verb);
    const bool associators = IsAssociators(verb);
    const bool names = verb == EVerb::kEnumerateInstanceNames || verb == EVerb::kAssociatorNames ||
                       verb == EVerb::kReferenceNames || verb == EVerb::kEnumerateClassNames;
    const bool classVerb = verb == EVerb::kGetClass || verb == EVerb::kEnumerateClasses ||
                           verb == EVerb::kEnumerateClassNames;
    if (SameName(name, "ClassName") && (classVerb || verb == EVerb::kEnumerateInstances ||
                                        verb == EVerb::kEnumerateInstanceNames)) {
        request.className = ClassName(value, name);
    } else if (SameName(name, "InstanceName") && verb == EVerb::kGetInstance) {
        if (!value || !Is(value, "INSTANCENAME")) BadParameter(method + ": InstanceName takes an INSTANCENAME");
        request.path = InstanceNameText(value);
    } else if (SameName(name, "ObjectName") && walk) {
        ObjectName(value);
    } else if (SameName(name, "AssocClass") && associators) {
        request.filter.assocClass = ClassName(value, name);
    } else if (SameName(name, "ResultClass") && walk) {
        request.filter.resultClass = ClassName(value, name);
    } else if (SameName(name, "Role") && walk) {
        request.filter.role = Text(value, name);
    } else if (SameName(name, "ResultRole") && associators) {
        request.filter.resultRole = Text(value, name);
    } else if (SameName(name, "DeepInheritance") &&
               (verb == EVerb::kEnumerateInstances || verb == EVerb::kEnumerateClasses ||
                verb == EVerb::kEnumerateClassNames)) {
        request.deep = Boolean(value, name);
    } else if (SameName(name, "LocalOnly") && (verb == EVerb::kGetClass || verb == EVerb::kEnumerateClasses ||
                                               verb == EVerb::kGetInstance || verb == EVerb::kEnumerateInstances)) {
        request.localOnly = Boolean(value, name);
    } else if (SameName(name, "IncludeQualifiers") && !names && verb != EVerb::kGetQualifier &&
               verb != EVerb::kEnumerateQualifiers) {
        request.includeQualifiers = Boolean(value, name);
    } else if (SameName(name, "IncludeClassOrigin") && !names && verb != EVerb::kGetQualifier &&
               verb != EVerb::kEnumerateQualifiers) {
        request.includeClassOrigin = Boolean(value, name);
    } else if (SameName(name, "PropertyList") && (verb == EVerb::kGetClass || verb == EVerb::kGetInstance ||
                                                  verb == EVerb::kEnumerateInstances ||
                                                  verb == EVerb::kAssociators || verb == EVerb::kReferences)) {
        PropertyList(value);
    } else if (SameName(name, "QualifierName") && verb == EVerb::kGetQualifier) {
        request.qualifierName = Text(value, name);
    } else {
        BadParameter(method + " takes no parameter \"" + name + "\"");
    }
}

struct TIntrinsic {
    const char* name;
    EVerb verb;
};
const TIntrinsic kIntrinsics[] = {{"GetClass", EVerb::kGetClass},
                                  {"EnumerateClasses", EVerb::kEnumerateClasses},
                                  {"EnumerateClassNames", EVerb::kEnumerateClassNames},
                                  {"GetInstance", EVerb::kGetInstance},
                                  {"EnumerateInstances", EVerb::kEnumerateInstances},
                                  {"EnumerateInstanceNames", EVerb::kEnumerateInstanceNames},
                                  {"Associators", EVerb::kAssociators},
                                  {"AssociatorNames", EVerb::kAssociatorNames},
                                  {"References", EVerb::kReferences},
                                  {"ReferenceNames", EVerb::kReferenceNames},
                                  {"EnumerateQualifiers", EVerb::kEnumerateQualifiers},
                                  {"GetQualifier", EVerb::kGetQualifier}};

// The defaults DSP0200 gives each operation's optional parameters.
void SetDefaults(TRequest& request) {
    switch (request.verb) {
        case EVerb::kGetClass:
            request.localOnly = true;
            request.includeQualifiers = true;
            break;
        case EVerb::kEnumerateClasses:
            request.deep = false;
            request.localOnly = true;
            request.includeQualifiers = true;
            break;
        case EVerb::kEnumerateClassNames: request.deep = false; break;
        case EVerb::kGetInstance:
        case EVerb::kEnumerateInstances: request.localOnly = true; break;
        default: break;
    }
}

void RequireParameters(const TRequest& request, const std::string& method) {
    const bool needsClass = request.verb == EVerb::kGetClass || request.verb == EVerb::kEnumerateInstances ||
                            request.verb == EVerb::kEnumerateInstanceNames;
    if (needsClass && request.className.empty()) BadParameter(method + " needs ClassName");
    const bool needsPath = request.verb == EVerb::kGetInstance || IsWalk(request.verb);
    if (needsPath && request.path.empty()) {
        BadParameter(method + (request.verb == EVerb::kGetInstance ? " needs InstanceName" : " needs ObjectName"));
    }
    if (request.verb == EVerb::kGetQualifier && request.qualifierName.empty()) BadParameter(method + " needs QualifierName");
}

void ReadIntrinsic(const pugi::xml_node& call, TCimCall& parsed) {
    parsed.methodName = call.attribute("NAME").value();
    const TIntrinsic* found = nullptr;
    for (const TIntrinsic& entry : kIntrinsics) {
        if (parsed.methodName == entry.name) found = &entry;
    }
    const std::vector<pugi::xml_node> parts = Elements(call);
    if (parts.empty() || !Is(parts[0], "LOCALNAMESPACEPATH")) Invalid("IMETHODCALL starts with LOCALNAMESPACEPATH");
    parsed.request.nameSpace = Namespace(parts[0]);
    if (found == nullptr) {
        throw TCimFailure{ECimStatus::kNotSupported,
                          "the operation " + parsed.methodName + " is not supported: this server only reads"};
    }
    parsed.request.verb = found->verb;
    SetDefaults(parsed.request);
    TIntrinsicParameters parameters{parsed.request, parsed.methodName};
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (!Is(parts[i], "IPARAMVALUE") || !parts[i].attribute("NAME")) Invalid("IMETHODCALL holds IPARAMVALUE elements");
        parameters.Read(parts[i]);
    }
    RequireParameters(parsed.request, parsed.methodName);
}

TArgument ArgumentOf(const pugi::xml_node& parameter) {
    TArgument argument;
    argument.name = RequireName(parameter, "NAME");
    const pugi::xml_node value = ContentOf(parameter, argument.name);
    if (!value) {
        argument.isNull = true;
    } else if (Is(value, "VALUE")) {
        argument.text = value.text().get();
    } else if (Is(value, "VALUE.REFERENCE")) {
        argument.text = ReferenceText(value);
    } else if (Is(value, "VALUE.ARRAY") || Is(value, "VALUE.REFARRAY")) {
        argument.isList = true;
        const bool references = Is(value, "VALUE.REFARRAY");
        for (const pugi::xml_node& item : Elements(value)) {
            if (Is(item, "VALUE.NULL")) BadParameter("parameter " + argument.name + ": arrays with null elements are not supported");
            if (!Is(item, references ? "VALUE.REFERENCE" : "VALUE")) Invalid("parameter " + argument.name + ": unexpected " + item.name());
            argument.items.push_back(references ? ReferenceText(item) : std::string(item.text().get()));
        }
    } else {
        BadParameter("parameter " + argument.name + ": " + value.name() + " is not a value this server reads");
    }
    return argument;
}

void ReadExtrinsic(const pugi::xml_node& call, TCimCall& parsed) {
    parsed.intrinsic = false;
    parsed.methodName = RequireName(call, "NAME");
    parsed.request.verb = EVerb::kInvokeMethod;
    parsed.request.methodName = parsed.methodName;
    const std::vector<pugi::xml_node> parts = Elements(call);
    if (parts.empty() || !(Is(parts[0], "LOCALINSTANCEPATH") || Is(parts[0], "LOCALCLASSPATH"))) {
        Invalid("METHODCALL starts with LOCALINSTANCEPATH or LOCALCLASSPATH");
    }
    const std::vector<pugi::xml_node> location = Elements(parts[0]);
    if (location.size() != 2 || !Is(location[0], "LOCALNAMESPACEPATH")) Invalid(std::string(parts[0].name()) + ": LOCALNAMESPACEPATH, then the name");
    parsed.request.nameSpace = Namespace(location[0]);
    if (!Is(location[1], Is(parts[0], "LOCALCLASSPATH") ? "CLASSNAME" : "INSTANCENAME")) {
        Invalid(std::string(parts[0].name()) + " names the wrong kind of object");
    }
    parsed.request.path = ClassPathOrInstanceText(location[1]);
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (!Is(parts[i], "PARAMVALUE")) Invalid("METHODCALL holds PARAMVALUE elements");
        parsed.request.arguments.push_back(ArgumentOf(parts[i]));
    }
}

void CheckVersions(const pugi::xml_node& cim, const pugi::xml_node& message) {
    const std::string cimVersion = cim.attribute("CIMVERSION").value();
    const std::string dtdVersion = cim.attribute("DTDVERSION").value();
    const std::string protocolVersion = message.attribute("PROTOCOLVERSION").value();
    if (cimVersion.compare(0, 2, "2.") != 0) {
        throw THttpFailure{501, "unsupported-cim-version", "CIMVERSION \"" + cimVersion + "\" is not 2.x"};
    }
    if (dtdVersion.compare(0, 2, "2.") != 0) {
        throw THttpFailure{501, "unsupported-dtd-version", "DTDVERSION \"" + dtdVersion + "\" is not 2.x"};
    }
    if (protocolVersion.compare(0, 2, "1.") != 0) {
        throw THttpFailure{501, "unsupported-protocol-version",
                           "PROTOCOLVERSION \"" + protocolVersion + "\" is not 1.x"};
    }
}

void ReadDocument(const pugi::xml_document& document, TCimCall& parsed) {
    const std::vector<pugi::xml_node> top = Elements(document);
    if (top.size() != 1 || !Is(top[0], "CIM")) Invalid("the document is not one CIM element");
    const pugi::xml_node message = OnlyChild(top[0], "MESSAGE");
    if (!message.attribute("ID")) Invalid("MESSAGE lacks its ID");
    parsed.messageId = message.attribute("ID").value();
    CheckVersions(top[0], message);
    const std::vector<pugi::xml_node> requests = Elements(message);
    if (requests.size() == 1 && Is(requests[0], "MULTIREQ")) {
        throw THttpFailure{501, "multiple-requests-unsupported", "this server answers one request per message"};
    }
    const pugi::xml_node simple = OnlyChild(message, "SIMPLEREQ");
    const std::vector<pugi::xml_node> calls = Elements(simple);
    if (calls.size() != 1) Invalid("SIMPLEREQ must hold one call");
    if (Is(calls[0], "IMETHODCALL")) {
        ReadIntrinsic(calls[0], parsed);
    } else if (Is(calls[0], "METHODCALL")) {
        ReadExtrinsic(calls[0], parsed);
    } else {
        Invalid(std::string("SIMPLEREQ holds ") + calls[0].name() + ", not a method call");
    }
}

}  // namespace

TCimCall ParseCimCall(const char* data, std::size_t size, const TCallLimits& limits) {
    TCimCall parsed;
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(data, size, pugi::parse_default | pugi::parse_ws_pcdata_single, pugi::encoding_utf8);
    if (!result) {
        parsed.description = std::string("the request is not well-formed XML: ") + result.description() +
                             " at byte " + std::to_string(result.offset);
        return parsed;
    }
    try {
        CheckShape(document, limits);
        ReadDocument(document, parsed);
        parsed.outcome = TCimCall::kCall;
        parsed.request.format = EFormat::kCimXml;
    } catch (const TCimFailure& failure) {
        parsed.outcome = TCimCall::kCimError;
        parsed.status = failure.status;
        parsed.description = failure.description;
    } catch (const THttpFailure& failure) {
        parsed.outcome = TCimCall::kHttpError;
        parsed.httpStatus = failure.httpStatus;
        parsed.cimError = failure.cimError;
        parsed.description = failure.description;
    }
    return parsed;
}
