#include "ClassContent.h"

#include "Collect.h"

#include <strings.h>

#include "ICIMClass.h"
#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMPropertyDecl.h"
#include "ICIMQualifier.h"

using namespace NVURZENTA20;

bool SameName(const std::string& a, const std::string& b) { return strcasecmp(a.c_str(), b.c_str()) == 0; }

bool ContainsName(const std::vector<std::string>& names, const std::string& name) {
    for (const std::string& candidate : names) {
        if (SameName(candidate, name)) return true;
    }
    return false;
}

std::vector<boost::shared_ptr<ICIMQualifier> > QualifiersOf(const ICIMNamedElement& element) {
    std::vector<boost::shared_ptr<ICIMQualifier> > qualifiers;
    element.EnumerateQualifiers(AppendTo(qualifiers), TCIMContext());
    return qualifiers;
}

std::vector<boost::shared_ptr<ICIMParameterDecl> > ParametersOf(const ICIMMethodDecl& method) {
    std::vector<boost::shared_ptr<ICIMParameterDecl> > parameters;
    method.EnumerateParameterDecls(AppendTo(parameters), TCIMContext());
    return parameters;
}

TClassContent SelectClassContent(const TClassView& view) {
    const ICIMClass& cls = *view.cls;
    TClassContent content;
    content.name = cls.GetName(TCIMContext());
    const boost::shared_ptr<ICIMClass> superClass = cls.GetSuperClass(TCIMContext());
    if (superClass) content.superClass = superClass->GetName(TCIMContext());

    std::vector<boost::shared_ptr<ICIMPropertyDecl> > properties;
    cls.EnumeratePropertyDecls(AppendTo(properties), TCIMContext());
    for (const auto& property : properties) {
        if (view.localOnly && !SameName(property->GetClassOrigin(), content.name)) continue;
        if (view.hasPropertyList && !ContainsName(*view.propertyList, property->GetName())) continue;
        content.properties.push_back(property);
    }
    std::vector<boost::shared_ptr<ICIMMethodDecl> > methods;
    cls.EnumerateMethodDecls(AppendTo(methods), TCIMContext());
    for (const auto& method : methods) {
        if (view.localOnly && !SameName(method->GetClassOrigin(), content.name)) continue;
        content.methods.push_back(method);
    }
    return content;
}
