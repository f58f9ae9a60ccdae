#include "JsonAnswer.h"

#include "ClassContent.h"
#include "ICIMClass.h"
#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMPropertyDecl.h"
#include "ICIMQualifier.h"
#include "ICIMQualifierDecl.h"

using namespace NVURZENTA20;

namespace {

// The key of each kind's answer; null for the answers that are fields of
// the top object themselves (a method's).
struct TKindKey {
    EAnswerKind kind;
    const char* key;
    bool isList;
};
const TKindKey kKindKeys[] = {{EAnswerKind::kProviders, "providers", true},
                              {EAnswerKind::kClassSummaries, "classes", true},
                              {EAnswerKind::kClassNames, "classNames", true},
                              {EAnswerKind::kClasses, "classDeclarations", true},
                              {EAnswerKind::kClass, "class", false},
                              {EAnswerKind::kInstances, "instances", true},
                              {EAnswerKind::kInstance, "instance", false},
                              {EAnswerKind::kInstancePaths, "paths", true},
                              {EAnswerKind::kObjectPaths, "paths", true},
                              {EAnswerKind::kMethod, nullptr, false},
                              {EAnswerKind::kQualifierDecls, "qualifiers", true},
                              {EAnswerKind::kQualifierDecl, "qualifier", false}};

const char* const kScopeNames[] = {"class", "association", "indication", "property", "reference", "method", "parameter"};

}  // namespace

void TJsonAnswer::Begin(EAnswerKind kind) {
    fJson.BeginObject();
    for (const TKindKey& entry : kKindKeys) {
        if (entry.kind != kind || entry.key == nullptr) continue;
        fJson.Key(entry.key);
        fInList = entry.isList;
        if (fInList) fJson.BeginArray();
    }
}

void TJsonAnswer::End() {
    if (fInList) fJson.EndArray();
    fJson.EndObject();
    fOut.Append('\n');
}

void TJsonAnswer::OptionalName(const std::string& name) {
    if (name.empty()) {
        fJson.Null();
    } else {
        fJson.String(name);
    }
}

void TJsonAnswer::Provider(const TProviderView& provider) {
    fJson.BeginObject();
    fJson.Key("name");
    fJson.String(provider.name);
    fJson.Key("module");
    fJson.String(provider.module);
    fJson.Key("description");
    fJson.String(provider.description);
    fJson.Key("classes");
    fJson.BeginArray();
    for (const std::string& cls : provider.classes) fJson.String(cls);
    fJson.EndArray();
    fJson.EndObject();
    fOut.Pass();
}

void TJsonAnswer::ClassSummary(const TClassSummary& summary) {
    fJson.BeginObject();
    fJson.Key("name");
    fJson.String(summary.name);
    fJson.Key("superClass");
    OptionalName(summary.superClass);
    fJson.Key("provider");
    OptionalName(summary.provider);
    fJson.Key("abstract");
    fJson.Bool(summary.isAbstract);
    fJson.Key("association");
    fJson.Bool(summary.isAssociation);
    fJson.EndObject();
    fOut.Pass();
}

void TJsonAnswer::ClassName(const std::string& name) {
    fJson.String(name);
    fOut.Pass();
}

void TJsonAnswer::Qualifiers(const ICIMNamedElement& element) {
    fJson.Key("qualifiers");
    fJson.BeginObject();
    for (const auto& qualifier : QualifiersOf(element)) {
        fJson.Key(qualifier->GetName());
        fJson.Value(qualifier->GetValue());
    }
    fJson.EndObject();
}

void TJsonAnswer::Class(const TClassView& view) {
    const TClassContent content = SelectClassContent(view);
    fJson.BeginObject();
    fJson.Key("name");
    fJson.String(content.name);
    fJson.Key("superClass");
    OptionalName(content.superClass);
    if (view.includeQualifiers) Qualifiers(*view.cls);
    fJson.Key("properties");
    fJson.BeginArray();
    for (const auto& property : content.properties) {
        fJson.BeginObject();
        fJson.Key("name");
        fJson.String(property->GetName());
        fJson.Key("type");
        fJson.String(property->GetType().GetName());
        fJson.Key("array");
        fJson.Bool(property->IsArray());
        if (property->GetType() == TCIMValue::TCIMType::kReference) {
            fJson.Key("referenceClass");
            OptionalName(property->GetReferenceClassName());
        }
        fJson.Key("default");
        fJson.Value(property->GetDefaultValue());
        if (view.includeClassOrigin) {
            fJson.Key("classOrigin");
            fJson.String(property->GetClassOrigin());
        }
        if (view.includeQualifiers) Qualifiers(*property);
        fJson.EndObject();
    }
    fJson.EndArray();
    fJson.Key("methods");
    fJson.BeginArray();
    for (const auto& method : content.methods) {
        fJson.BeginObject();
        fJson.Key("name");
        fJson.String(method->GetName());
        fJson.Key("returnType");
        OptionalName(method->GetReturnType().GetName());
        if (view.includeClassOrigin) {
            fJson.Key("classOrigin");
            fJson.String(method->GetClassOrigin());
        }
        if (view.includeQualifiers) Qualifiers(*method);
        fJson.Key("parameters");
        fJson.BeginArray();
        for (const auto& parameter : ParametersOf(*method)) {
            fJson.BeginObject();
            fJson.Key("name");
            fJson.String(parameter->GetName());
            fJson.Key("type");
            fJson.String(parameter->GetType().GetName());
            fJson.Key("array");
            fJson.Bool(parameter->IsArray());
            if (view.includeQualifiers) Qualifiers(*parameter);
            fJson.EndObject();
        }
        fJson.EndArray();
        fJson.EndObject();
    }
    fJson.EndArray();
    fJson.EndObject();
    fOut.Pass();
}

void TJsonAnswer::Instance(const TInstanceView& instance) {
    fJson.BeginObject();
    fJson.Key("className");
    fJson.String(*instance.className);
    fJson.Key("path");
    fJson.String(*instance.path.text);
    fJson.Key("properties");
    fJson.BeginObject();
    for (const TPropertyView& property : *instance.properties) {
        fJson.Key(*property.name);
        fJson.Value(*property.value);
    }
    fJson.EndObject();
    fJson.EndObject();
    fOut.Pass();
}

void TJsonAnswer::Path(const TPathView& path) {
    fJson.String(*path.text);
    fOut.Pass();
}

void TJsonAnswer::Method(const TMethodView& method) {
    fJson.Key("path");
    fJson.String(method.path);
    fJson.Key("method");
    fJson.String(method.method);
    fJson.Key("returnValue");
    fJson.Value(method.returnValue);
    fJson.Key("outParameters");
    fJson.BeginObject();
    for (const auto& parameter : method.outParameters) {
        fJson.Key(parameter.first);
        fJson.Value(parameter.second);
    }
    fJson.EndObject();
    fOut.Pass();
}

void TJsonAnswer::QualifierDecl(const ICIMQualifierDecl& decl) {
    fJson.BeginObject();
    fJson.Key("name");
    fJson.String(decl.GetName());
    fJson.Key("type");
    fJson.String(decl.GetType().GetName());
    fJson.Key("array");
    fJson.Bool(decl.IsArray());
    fJson.Key("default");
    fJson.Value(decl.GetDefaultValue());
    fJson.Key("scope");
    fJson.BeginArray();
    for (int bit = 0; bit < 7; ++bit) {
        if (decl.GetScope() & (1 << bit)) fJson.String(kScopeNames[bit]);
    }
    fJson.EndArray();
    fJson.Key("overridable");
    fJson.Bool(!(decl.GetFlavor() & ICIMQualifierDecl::kDisableOverride));
    fJson.Key("toSubclass");
    fJson.Bool(!(decl.GetFlavor() & ICIMQualifierDecl::kRestricted));
    fJson.Key("translatable");
    fJson.Bool((decl.GetFlavor() & ICIMQualifierDecl::kTranslatable) != 0);
    fJson.EndObject();
    fOut.Pass();
}
