// One request to the host, as the tool's command line or a WBEM client
// states it. Requests travel from the caller to the worker process that
// answers them, so they are plain data with a text form.
#ifndef ZENTA_OPS_REQUEST_H
#define ZENTA_OPS_REQUEST_H

#include <string>
#include <vector>

enum class EVerb {
    kProviders,               // the providers and the classes they serve
    kClasses,                 // class summaries (name, superclass, provider, ...)
    kGetClass,
    kEnumerateClasses,
    kEnumerateClassNames,
    kEnumerateInstances,
    kEnumerateInstanceNames,
    kGetInstance,
    kInvokeMethod,
    kAssociators,
    kAssociatorNames,
    kReferences,
    kReferenceNames,
    kEnumerateQualifiers,
    kGetQualifier
};

// How the worker writes the answer.
enum class EFormat { kText, kJson, kCimXml };

// A method argument. Command-line arguments are NAME=TEXT, read by the type
// the parameter is declared with (arrays as comma-separated elements); WBEM
// clients send arrays element by element and may send a null.
struct TArgument {
    std::string name;
    std::string text;
    bool isList = false;             // `items` holds the elements
    std::vector<std::string> items;
    bool isNull = false;
};

struct TAssociationFilter {
    std::string assocClass;  // associators only
    std::string resultClass;
    std::string role;
    std::string resultRole;  // associators only
};

struct TRequest {
    EVerb verb = EVerb::kProviders;
    EFormat format = EFormat::kText;
    std::string nameSpace;  // as the client named it; "" is the served one
    std::string className;  // class verbs (empty: the root classes)
    std::string path;       // object path text: instance verbs, methods
    std::string methodName;
    std::vector<TArgument> arguments;
    std::string qualifierName;
    TAssociationFilter filter;
    bool hasPropertyList = false;  // without one every property is answered
    std::vector<std::string> propertyList;
    bool deep = true;  // subclasses' classes or properties too
    bool localOnly = false;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;

    // The request as a user would type it, for messages: ei CIM_Process.
    std::string Describe() const;
    std::string Serialize() const;
    // Throws std::runtime_error on text that Serialize did not write.
    static TRequest Deserialize(const std::string& text);
};

#endif
