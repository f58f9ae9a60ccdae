#include "Request.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

using nlohmann::json;

namespace {

struct TVerbName {
    EVerb verb;
    const char* name;
};
// The short names of the tool's command line, which messages quote.
const TVerbName kVerbNames[] = {
    {EVerb::kProviders, "providers"},         {EVerb::kClasses, "classes"},
    {EVerb::kGetClass, "gc"},                 {EVerb::kEnumerateClasses, "ec"},
    {EVerb::kEnumerateClassNames, "ecn"},     {EVerb::kEnumerateInstances, "ei"},
    {EVerb::kEnumerateInstanceNames, "ein"},  {EVerb::kGetInstance, "gi"},
    {EVerb::kInvokeMethod, "im"},             {EVerb::kAssociators, "ai"},
    {EVerb::kAssociatorNames, "ain"},         {EVerb::kReferences, "ri"},
    {EVerb::kReferenceNames, "rin"},          {EVerb::kEnumerateQualifiers, "eq"},
    {EVerb::kGetQualifier, "gq"}};

const char* VerbName(EVerb verb) {
    for (const TVerbName& entry : kVerbNames) {
        if (entry.verb == verb) return entry.name;
    }
    return "?";
}

EVerb VerbNamed(const std::string& name) {
    for (const TVerbName& entry : kVerbNames) {
        if (name == entry.name) return entry.verb;
    }
    throw std::runtime_error("unknown verb " + name);
}

json ArgumentJson(const TArgument& argument) {
    return json{{"name", argument.name}, {"text", argument.text}, {"isList", argument.isList},
                {"items", argument.items}, {"isNull", argument.isNull}};
}

TArgument ArgumentOf(const json& object) {
    TArgument argument;
    argument.name = object.at("name").get<std::string>();
    argument.text = object.at("text").get<std::string>();
    argument.isList = object.at("isList").get<bool>();
    argument.items = object.at("items").get<std::vector<std::string> >();
    argument.isNull = object.at("isNull").get<bool>();
    return argument;
}

}  // namespace

std::string TRequest::Describe() const {
    std::string text = VerbName(verb);
    for (const std::string* part : {&path, &className, &methodName, &qualifierName}) {
        if (!part->empty()) text += " " + *part;
    }
    return text;
}

std::string TRequest::Serialize() const {
    json arguments = json::array();
    for (const TArgument& argument : this->arguments) arguments.push_back(ArgumentJson(argument));
    const json object = {{"verb", VerbName(verb)},
                         {"format", static_cast<int>(format)},
                         {"namespace", nameSpace},
                         {"class", className},
                         {"path", path},
                         {"method", methodName},
                         {"arguments", arguments},
                         {"qualifier", qualifierName},
                         {"filter", {filter.assocClass, filter.resultClass, filter.role, filter.resultRole}},
                         {"hasPropertyList", hasPropertyList},
                         {"propertyList", propertyList},
                         {"deep", deep},
                         {"localOnly", localOnly},
                         {"includeQualifiers", includeQualifiers},
                         {"includeClassOrigin", includeClassOrigin}};
    // Names and values come from users and need not be UTF-8.
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

TRequest TRequest::Deserialize(const std::string& text) {
    try {
        const json object = json::parse(text);
        TRequest request;
        request.verb = VerbNamed(object.at("verb").get<std::string>());
        const int format = object.at("format").get<int>();
        if (format < 0 || format > static_cast<int>(EFormat::kCimXml)) throw std::runtime_error("unknown format");
        request.format = static_cast<EFormat>(format);
        request.nameSpace = object.at("namespace").get<std::string>();
        request.className = object.at("class").get<std::string>();
        request.path = object.at("path").get<std::string>();
        request.methodName = object.at("method").get<std::string>();
        for (const json& argument : object.at("arguments")) request.arguments.push_back(ArgumentOf(argument));
        request.qualifierName = object.at("qualifier").get<std::string>();
        const json& filter = object.at("filter");
        request.filter = {filter.at(0).get<std::string>(), filter.at(1).get<std::string>(),
                          filter.at(2).get<std::string>(), filter.at(3).get<std::string>()};
        request.hasPropertyList = object.at("hasPropertyList").get<bool>();
        request.propertyList = object.at("propertyList").get<std::vector<std::string> >();
        request.deep = object.at("deep").get<bool>();
        request.localOnly = object.at("localOnly").get<bool>();
        request.includeQualifiers = object.at("includeQualifiers").get<bool>();
        request.includeClassOrigin = object.at("includeClassOrigin").get<bool>();
        return request;
    } catch (const json::exception& error) {
        throw std::runtime_error(std::string("malformed request: ") + error.what());
    }
}
