#include "Requests.h"

#include <algorithm>

#include "ICIMMethodDecl.h"
#include "ICIMParameterDecl.h"
#include "ICIMPropertyDecl.h"
#include "ICIMQualifier.h"
#include "IProvider.h"
#include "TZENTAException.h"
#include "ToolError.h"
#include "ValueText.h"

using namespace NVURZENTA20;

namespace {

const char kProviderQualifier[] = "PLUGINNAME";
const char kVerboseHint[] = " (--log-level 3 shows the provider's trace)";

// How the CMPI library reports a provider that failed: log lines that
// start with these texts and end with the provider's (or method's) name.
struct TFailureMarker {
    const char* prefix;
    const char* before;
    const char* after;
};
const TFailureMarker kEnumerationFailed = {"providerDriver::enumInstances failed for ", "provider ",
                                           " failed to enumerate instances"};
const TFailureMarker kStartFailed = {"Plugin: Error initializing ", "provider ", " failed to start"};
const TFailureMarker kMethodFailed = {"providerDriver::invokeMethod ", "method ", " failed in its provider"};
const TFailureMarker kGetFailed = {"providerDriver::getInstance failed for ", "provider ",
                                   " did not return it"};
const TFailureMarker* const kRequestFailures[] = {&kStartFailed, &kEnumerationFailed, &kMethodFailed};

// The message of the first line that carries `marker`, or "".
std::string FindFailure(const std::vector<TLogLine>& lines, const TFailureMarker& marker) {
    const std::string prefix = marker.prefix;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].text.compare(0, prefix.size(), prefix) == 0) {
            return marker.before + lines[i].text.substr(prefix.size()) + marker.after;
        }
    }
    return std::string();
}

template <class X>
struct TAppend {
    std::vector<boost::shared_ptr<X> >* target;
    bool operator()(boost::shared_ptr<X> element) const {
        target->push_back(element);
        return true;
    }
};

template <class X>
TAppend<X> AppendTo(std::vector<boost::shared_ptr<X> >& target) {
    TAppend<X> append = {&target};
    return append;
}

bool HasTrueQualifier(const ICIMNamedElement& element, const char* name) {
    boost::shared_ptr<ICIMQualifier> qualifier = element.GetQualifier(name, TCIMContext());
    if (!qualifier) return false;
    const TCIMValue value = qualifier->GetValue();
    return !value.IsNull() && static_cast<bool>(value);
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

TClassRecord ClassRecordOf(const ICIMClass& cls) {
    TClassRecord record;
    record.name = cls.GetName(TCIMContext());
    boost::shared_ptr<ICIMClass> superClass = cls.GetSuperClass(TCIMContext());
    if (superClass) record.superClass = superClass->GetName(TCIMContext());
    record.provider = ProviderOf(cls);
    record.isAbstract = cls.IsAbstract(TCIMContext());
    record.isAssociation = cls.IsAssociation(TCIMContext());
    return record;
}

bool ByName(const TClassRecord& a, const TClassRecord& b) { return a.name < b.name; }

TRequestResult InstancesResult(const std::vector<boost::shared_ptr<ICIMInstance> >& instances) {
    TRequestResult result;
    result.kind = TRequestResult::kInstances;
    for (std::size_t i = 0; i < instances.size(); ++i) result.instances.push_back(RecordOf(*instances[i]));
    return result;
}

}  // namespace

std::string ProviderOf(const ICIMClass& cls) {
    boost::shared_ptr<ICIMQualifier> tag = cls.GetQualifier(kProviderQualifier, TCIMContext());
    if (!tag || tag->GetValue().IsNull()) return std::string();
    return tag->GetValue();
}

TInstanceRecord RecordOf(ICIMInstance& instance) {
    TInstanceRecord record;
    record.className = instance.GetClass(TCIMContext())->GetName(TCIMContext());
    record.path = instance.GetReference(TCIMContext()).GetPath();
    std::vector<boost::shared_ptr<ICIMProperty> > properties;
    instance.EnumerateProperties(AppendTo(properties), TCIMContext());
    for (std::size_t i = 0; i < properties.size(); ++i) {
        record.properties.push_back(std::make_pair(properties[i]->GetName(), properties[i]->GetValue()));
    }
    return record;
}

boost::shared_ptr<ICIMClass> TRequests::RequireClass(const std::string& name) {
    boost::shared_ptr<ICIMClass> cls;
    if (!name.empty()) cls = fSession.GetNamespace()->GetClass(name, TCIMContext());
    if (!cls) throw TToolError("unknown class " + Quoted(name));
    return cls;
}

boost::shared_ptr<ICIMClass> TRequests::RequireServedClass(const std::string& name) {
    boost::shared_ptr<ICIMClass> cls = RequireClass(name);
    if (ProviderOf(*cls).empty()) {
        throw TToolError("class " + cls->GetName(TCIMContext()) + " is served by no provider" +
                         (cls->IsAbstract(TCIMContext()) ? " (it is abstract; ask for its instances with ei)" : ""));
    }
    return cls;
}

void TRequests::CheckProviders(const std::string& request) {
    const std::vector<TLogLine> lines = fSession.GetLog().Collect();
    for (const TFailureMarker* marker : kRequestFailures) {
        const std::string failure = FindFailure(lines, *marker);
        if (!failure.empty()) throw TToolError(request + ": provider failure: " + failure + kVerboseHint);
    }
}

TRequests::TInstances TRequests::CollectInstances(const std::string& className) {
    std::vector<boost::shared_ptr<ICIMClass> > classes(1, RequireClass(className));
    classes.front()->EnumerateSubClasses(AppendTo(classes), true, TCIMContext());
    TInstances instances;
    for (std::size_t i = 0; i < classes.size(); ++i) {
        // Each served class is asked for its own instances: a class no
        // provider serves (an abstract base, say) contributes none.
        if (!ProviderOf(*classes[i]).empty()) {
            classes[i]->EnumerateInstances(AppendTo(instances), false, TCIMContext());
        }
    }
    CheckProviders("enumerating " + classes.front()->GetName(TCIMContext()));
    return instances;
}

TCIMReference TRequests::ReadPath(const std::string& text, bool instancePath) {
    TCIMReference parsed;
    try {
        parsed = TCIMReference::Parse(text);
    } catch (const TZENTAException& failure) {
        throw TToolError("malformed object path " + Quoted(text) + ": " + failure.GetMessage());
    }
    boost::shared_ptr<ICIMClass> cls = RequireClass(parsed.GetClassName());
    const std::string className = cls->GetName(TCIMContext());
    TCIMReference typed(fSession.GetManager(), TCIMContext());
    typed.SetClassName(className);
    const TReferenceReader readReference = [this](const std::string& nested) { return ReadPath(nested, true); };
    parsed.EnumerateKeyBindings([&](std::pair<std::string, TCIMValue> binding) {
        boost::shared_ptr<ICIMPropertyDecl> decl = cls->GetPropertyDecl(binding.first, TCIMContext());
        if (!decl || !decl->IsKey()) {
            throw TToolError("object path " + Quoted(text) + ": " + binding.first + " is not a key of " + className);
        }
        typed.AddKeyValue(decl->GetName(), ValueFromText(binding.second.ToString(), decl->GetType(), decl->IsArray(),
                                                         readReference, "key " + decl->GetName()));
        return true;
    });
    if (!instancePath && typed.GetKeyCount() == 0) return typed;
    cls->EnumerateKeyNames([&](const std::string* key) {
        if (!typed.HasKey(*key)) {
            throw TToolError("object path " + Quoted(text) + " lacks the key " + *key + " of " + className);
        }
        return true;
    }, TCIMContext());
    if (typed.GetKeyCount() == 0) {
        throw TToolError("object path " + Quoted(text) + " names no instance: " + className + " has no keys");
    }
    return typed;
}

boost::shared_ptr<ICIMInstance> TRequests::RequireInstance(const TCIMReference& path) {
    RequireServedClass(path.GetClassName());
    boost::shared_ptr<ICIMInstance> instance = fSession.GetNamespace()->GetInstance(path, TCIMContext());
    const std::vector<TLogLine> lines = fSession.GetLog().Collect();
    if (!instance) {
        const std::string reason = FindFailure(lines, kGetFailed);
        throw TToolError("no instance " + path.GetPath() + (reason.empty() ? "" : ": " + reason));
    }
    return instance;
}

TCIMContext TRequests::ReadArguments(const ICIMMethodDecl& method, const std::vector<std::string>& arguments) {
    TCIMContext parameters;
    const TReferenceReader readReference = [this](const std::string& text) { return ReadPath(text, true); };
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::size_t equals = arguments[i].find('=');
        if (equals == std::string::npos || equals == 0) {
            throw TToolError("argument " + Quoted(arguments[i]) + " is not NAME=VALUE");
        }
        const std::string name = arguments[i].substr(0, equals);
        boost::shared_ptr<ICIMParameterDecl> decl = method.GetParameterDecl(name, TCIMContext());
        if (!decl) throw TToolError("method " + method.GetName() + " has no parameter " + name);
        if (!HasTrueQualifier(*decl, "IN")) {
            throw TToolError("parameter " + decl->GetName() + " of " + method.GetName() + " is not an input");
        }
        // The library matches parameter names exactly: use the declared one.
        const TCIMValue value = ValueFromText(arguments[i].substr(equals + 1), decl->GetType(), decl->IsArray(),
                                              readReference, "parameter " + decl->GetName());
        if (!parameters.insert(std::make_pair(decl->GetName(), value)).second) {
            throw TToolError("parameter " + decl->GetName() + " is given twice");
        }
    }
    return parameters;
}

TRequestResult TRequests::Providers() {
    std::vector<boost::shared_ptr<IProvider> > providers;
    fSession.GetManager()->EnumerateProviders(AppendTo(providers), TCIMContext());
    TRequestResult result;
    result.kind = TRequestResult::kProviders;
    for (std::size_t i = 0; i < providers.size(); ++i) {
        TProviderRecord record;
        record.name = providers[i]->GetName(TCIMContext());
        record.module = providers[i]->GetModuleName(TCIMContext());
        record.description = providers[i]->GetDescription(TCIMContext());
        std::vector<boost::shared_ptr<ICIMClass> > classes;
        providers[i]->EnumerateClassesProvided(AppendTo(classes), TCIMContext());
        for (std::size_t c = 0; c < classes.size(); ++c) record.classes.push_back(classes[c]->GetName(TCIMContext()));
        result.providers.push_back(record);
    }
    fSession.GetLog().Collect();
    return result;
}

TRequestResult TRequests::Classes(const std::string& className, bool deep) {
    std::vector<boost::shared_ptr<ICIMClass> > classes;
    if (className.empty()) {
        fSession.GetNamespace()->EnumerateRootClasses(AppendTo(classes), TCIMContext());
        const std::size_t roots = classes.size();
        for (std::size_t i = 0; deep && i < roots; ++i) {
            classes[i]->EnumerateSubClasses(AppendTo(classes), true, TCIMContext());
        }
    } else {
        RequireClass(className)->EnumerateSubClasses(AppendTo(classes), deep, TCIMContext());
    }
    TRequestResult result;
    result.kind = TRequestResult::kClasses;
    for (std::size_t i = 0; i < classes.size(); ++i) result.classes.push_back(ClassRecordOf(*classes[i]));
    std::sort(result.classes.begin(), result.classes.end(), ByName);
    fSession.GetLog().Collect();
    return result;
}

TRequestResult TRequests::EnumerateInstances(const std::string& className) {
    return InstancesResult(CollectInstances(className));
}

TRequestResult TRequests::EnumerateInstanceNames(const std::string& className) {
    const TInstances instances = CollectInstances(className);
    TRequestResult result;
    result.kind = TRequestResult::kPaths;
    for (std::size_t i = 0; i < instances.size(); ++i) {
        result.paths.push_back(instances[i]->GetReference(TCIMContext()).GetPath());
    }
    return result;
}

TRequestResult TRequests::GetInstance(const std::string& pathText) {
    boost::shared_ptr<ICIMInstance> instance = RequireInstance(ReadPath(pathText, true));
    TRequestResult result;
    result.kind = TRequestResult::kInstance;
    result.instances.push_back(RecordOf(*instance));
    return result;
}

TRequestResult TRequests::InvokeMethod(const std::string& pathText, const std::string& methodName,
                                       const std::vector<std::string>& arguments) {
    const TCIMReference path = ReadPath(pathText, false);
    boost::shared_ptr<ICIMClass> cls = RequireServedClass(path.GetClassName());
    boost::shared_ptr<ICIMMethodDecl> method = cls->GetMethodDecl(methodName, TCIMContext());
    if (!method) throw TToolError("unknown method " + methodName + " of class " + cls->GetName(TCIMContext()));
    TCIMContext parameters = ReadArguments(*method, arguments);

    TRequestResult result;
    result.kind = TRequestResult::kMethod;
    result.method.path = path.GetPath();
    result.method.method = method->GetName();
    // A method reaches only a provider that has started, and providers
    // start on their first enumeration or get.
    if (path.GetKeyCount() == 0) {
        TInstances ignored;
        cls->EnumerateInstances(AppendTo(ignored), false, TCIMContext());
        CheckProviders("starting the provider of " + cls->GetName(TCIMContext()));
        result.method.returnValue = cls->InvokeMethod(method->GetName(), parameters, TCIMContext());
    } else {
        result.method.returnValue = RequireInstance(path)->InvokeMethod(method->GetName(), parameters, TCIMContext());
    }
    CheckProviders("calling " + method->GetName());
    result.method.outParameters.assign(parameters.begin(), parameters.end());
    return result;
}

TRequestResult TRequests::Associators(const std::string& pathText, const TAssociationFilter& filter) {
    if (!filter.assocClass.empty()) RequireClass(filter.assocClass);
    if (!filter.resultClass.empty()) RequireClass(filter.resultClass);
    boost::shared_ptr<ICIMInstance> source = RequireInstance(ReadPath(pathText, true));
    TInstances found;
    source->EnumerateAssociatedInstances(AppendTo(found), filter.assocClass, filter.resultClass, filter.role,
                                         filter.resultRole, TCIMContext());
    CheckProviders("walking the associations of " + pathText);
    return InstancesResult(found);
}

TRequestResult TRequests::References(const std::string& pathText, const TAssociationFilter& filter) {
    if (!filter.resultClass.empty()) RequireClass(filter.resultClass);
    boost::shared_ptr<ICIMInstance> source = RequireInstance(ReadPath(pathText, true));
    TInstances found;
    source->EnumerateAssociationInstances(AppendTo(found), filter.resultClass, filter.role, TCIMContext());
    CheckProviders("walking the references of " + pathText);
    return InstancesResult(found);
}
