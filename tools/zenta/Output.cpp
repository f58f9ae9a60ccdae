#include "Output.h"

#include <cmath>
#include <cstdio>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

using NVURZENTA20::TCIMValue;
typedef nlohmann::ordered_json TJson;
typedef TCIMValue::TCIMType TType;

namespace {

const char kIndent[] = "    ";

std::string MofString(const std::string& text) {
    std::string quoted = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        switch (c) {
            case '"': quoted += "\\\""; break;
            case '\\': quoted += "\\\\"; break;
            case '\n': quoted += "\\n"; break;
            case '\r': quoted += "\\r"; break;
            case '\t': quoted += "\\t"; break;
            default:
                if (c < 0x20 || c == 0x7F) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof(escaped), "\\x%02X", c);
                    quoted += escaped;
                } else {
                    quoted += static_cast<char>(c);
                }
        }
    }
    return quoted + "\"";
}

bool IsQuoted(TType type) {
    return type == TType::kString || type == TType::kChar16 || type == TType::kDateTime ||
           type == TType::kReference;
}

std::string MofScalar(const TCIMValue& value) {
    if (value.IsNull()) return "NULL";
    const std::string text = value.ToString();
    return IsQuoted(value.GetType()) ? MofString(text) : text;
}

const std::vector<TCIMValue>& Elements(const TCIMValue& value) { return value; }

TJson JsonScalar(const TCIMValue& value) {
    if (value.IsNull()) return nullptr;
    const TType type = value.GetType();
    if (type == TType::kBoolean) return static_cast<bool>(value);
    if (type.IsInteger()) {
        if (type.IsSigned()) return static_cast<long long>(value);
        return static_cast<unsigned long long>(value);
    }
    if (type.IsReal()) {
        const double number = value;
        // JSON has no NaN or infinity: those travel as their CIM text.
        if (std::isfinite(number)) return number;
    }
    return value.ToString();
}

TJson JsonValue(const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) return JsonScalar(value);
    TJson array = TJson::array();
    const std::vector<TCIMValue>& elements = Elements(value);
    for (std::size_t i = 0; i < elements.size(); ++i) array.push_back(JsonScalar(elements[i]));
    return array;
}

TJson JsonValues(const TNamedValues& values) {
    TJson object = TJson::object();
    for (std::size_t i = 0; i < values.size(); ++i) object[values[i].first] = JsonValue(values[i].second);
    return object;
}

TJson JsonInstance(const TInstanceRecord& instance) {
    TJson object;
    object["className"] = instance.className;
    object["path"] = instance.path;
    object["properties"] = JsonValues(instance.properties);
    return object;
}

TJson JsonProvider(const TProviderRecord& provider) {
    TJson object;
    object["name"] = provider.name;
    object["module"] = provider.module;
    object["description"] = provider.description;
    object["classes"] = provider.classes;
    return object;
}

TJson JsonClass(const TClassRecord& cls) {
    TJson object;
    object["name"] = cls.name;
    object["superClass"] = cls.superClass.empty() ? TJson(nullptr) : TJson(cls.superClass);
    object["provider"] = cls.provider.empty() ? TJson(nullptr) : TJson(cls.provider);
    object["abstract"] = cls.isAbstract;
    object["association"] = cls.isAssociation;
    return object;
}

template <class TRecord>
TJson JsonList(const std::vector<TRecord>& records, TJson (*convert)(const TRecord&)) {
    TJson array = TJson::array();
    for (std::size_t i = 0; i < records.size(); ++i) array.push_back(convert(records[i]));
    return array;
}

void WriteAssignments(std::ostream& out, const TNamedValues& values, const char* indent) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        out << indent << values[i].first << " = " << MofValue(values[i].second) << ";\n";
    }
}

void WriteInstance(std::ostream& out, const TInstanceRecord& instance) {
    out << "// " << instance.path << "\n";
    out << "instance of " << instance.className << " {\n";
    WriteAssignments(out, instance.properties, kIndent);
    out << "};\n";
}

void WriteProvider(std::ostream& out, const TProviderRecord& provider) {
    out << provider.name << "\n";
    out << kIndent << "module:      " << provider.module << "\n";
    out << kIndent << "description: " << provider.description << "\n";
    out << kIndent << "classes:    ";
    for (std::size_t i = 0; i < provider.classes.size(); ++i) out << " " << provider.classes[i];
    out << "\n";
}

void WriteMethod(std::ostream& out, const TMethodRecord& method) {
    // The out parameters are the answer; the return value is shown only
    // when one reached the host.
    if (!method.returnValue.IsNull()) out << "ReturnValue = " << MofValue(method.returnValue) << ";\n";
    WriteAssignments(out, method.outParameters, "");
}

}  // namespace

std::string MofValue(const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) return MofScalar(value);
    std::string text = "{";
    const std::vector<TCIMValue>& elements = Elements(value);
    for (std::size_t i = 0; i < elements.size(); ++i) text += (i == 0 ? "" : ", ") + MofScalar(elements[i]);
    return text + "}";
}

std::string RenderText(const TRequestResult& result) {
    std::ostringstream out;
    switch (result.kind) {
        case TRequestResult::kProviders:
            for (std::size_t i = 0; i < result.providers.size(); ++i) WriteProvider(out, result.providers[i]);
            break;
        case TRequestResult::kClasses:
            for (std::size_t i = 0; i < result.classes.size(); ++i) out << result.classes[i].name << "\n";
            break;
        case TRequestResult::kInstances:
        case TRequestResult::kInstance:
            for (std::size_t i = 0; i < result.instances.size(); ++i) {
                if (i > 0) out << "\n";
                WriteInstance(out, result.instances[i]);
            }
            break;
        case TRequestResult::kPaths:
            for (std::size_t i = 0; i < result.paths.size(); ++i) out << result.paths[i] << "\n";
            break;
        case TRequestResult::kMethod:
            WriteMethod(out, result.method);
            break;
    }
    return out.str();
}

std::string RenderJson(const TRequestResult& result) {
    TJson document;
    switch (result.kind) {
        case TRequestResult::kProviders: document["providers"] = JsonList(result.providers, JsonProvider); break;
        case TRequestResult::kClasses: document["classes"] = JsonList(result.classes, JsonClass); break;
        case TRequestResult::kInstances: document["instances"] = JsonList(result.instances, JsonInstance); break;
        case TRequestResult::kInstance: document["instance"] = JsonInstance(result.instances.at(0)); break;
        case TRequestResult::kPaths: document["paths"] = result.paths; break;
        case TRequestResult::kMethod:
            document["path"] = result.method.path;
            document["method"] = result.method.method;
            document["returnValue"] = JsonValue(result.method.returnValue);
            document["outParameters"] = JsonValues(result.method.outParameters);
            break;
    }
    // Process names and command lines need not be UTF-8: replace what is not.
    return document.dump(2, ' ', false, TJson::error_handler_t::replace) + "\n";
}
